// The failure protocol: where a failure is raised, which way it takes, who may take it off, and which misuse
// ends the process with which text.
#include "lib/xfail.h"
#include "support/child.h"

#if defined(__enter) || defined(__test) || defined(__raise) || defined(__point) || defined(__treat) ||         \
    defined(__repair) || defined(__report)
#error "a header leaves macros of the failure protocol behind"
#endif

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "lib/xon.h"

namespace
{
struct State {
    XCODE code = xCode, repaired = xRepaired;
    const char *file = xFile;
    int line = xLine, depth = xDepth, hit = xHit;
    void (*hook)() = xHook;
};
const State atStart; // before any test

const std::string here = "tests/lib/xfail_test.cpp";
std::string trace; // what ran, one letter a step
int marked = 0;    // the line that a failure or a text should name

class Protocol : public testing::Test
{
protected:
    void SetUp() override
    {
        trace.clear();
        marked = 0;
        xRepaired = XNULL;
    }
    void TearDown() override
    {
        xCode = XNULL;
        xDepth = 0;
        xHook = NULL;
    }
};

/// Raises `code` unless it is XNULL, and marks the place.
void Fail(XCODE code)
{
    __enter
        if (code != XNULL) {
            marked = __LINE__ + 1;
            __raise(code);
        }
        trace += 'w'; // went well
    __point
        trace += 'f';
    __treat
}

/// Throws: 0 nothing, 1 out of memory, 2 another exception, 3 something that is none, 4 a size that cannot be.
void Throw(int what)
{
    switch (what) {
    case 1:
        throw std::bad_alloc();
    case 2:
        throw std::runtime_error("another one");
    case 3:
        throw 42;
    case 4:
        throw std::bad_array_new_length();
    }
}

/// Marks its __point.
void CatchAtPoint(int what)
{
    __enter
        Throw(what);
        trace += 'w';
        marked = __LINE__ + 1;
    __point
        trace += 'r';
    __treat
}

/// A caller that does as it should; -1 stands for no result.
int Tested(XCODE code)
{
    int result = -1;
    __enter
        trace += 'b';
        Fail(code); __test;
        trace += 'e';
        result = 5;
    __point
        trace += 'r';
    __treat
    return result;
}

std::string MissingAt(int line)
{
    return "Missing: __point/__treat, file " + here + ", line " + std::to_string(line);
}

std::string DuringRepair(const std::string &first, int firstLine, const std::string &second, int secondLine)
{
    return "Exception during repair!\nRepaired exception: " + first + ", file " + here + ", line " +
           std::to_string(firstLine) + "\nNew exception: " + second + ", file " + here + ", line " +
           std::to_string(secondLine);
}
} // namespace

TEST_F(Protocol, StartsClear)
{
    EXPECT_EQ(atStart.code, XNULL);
    EXPECT_EQ(atStart.repaired, XNULL);
    EXPECT_STREQ(atStart.file, "");
    EXPECT_EQ(atStart.line, 0);
    EXPECT_EQ(atStart.depth, 0);
    EXPECT_EQ(atStart.hit, 0);
    EXPECT_EQ(atStart.hook, static_cast<void (*)()>(NULL));
}

TEST_F(Protocol, CodesAreTheAddressesOfTheirOwnNames)
{
    const struct {
        XCODE code;
        const char *name;
    } rows[] = {
        {XNULL, "XNULL"},     {XUNKNOWN, "XUNKNOWN"}, {XALLOC, "XALLOC"},
        {XLIMIT, "XLIMIT"},   {XFFOUND, "XFFOUND"},   {XCDE_INVOLVED, "XCDE_INVOLVED"},
        {XFOPEN, "XFOPEN"},   {XFCREATE, "XFCREATE"}, {XFREAD, "XFREAD"},
        {XFWRITE, "XFWRITE"}, {XDCREATE, "XDCREATE"}, {XGENERAL, "XGENERAL"},
    };
    for (const auto &row : rows) {
        EXPECT_STREQ(row.code, row.name);
        for (const auto &other : rows)
            EXPECT_EQ(row.code == other.code, &row == &other);
    }
}

TEST_F(Protocol, EachParameterHasABufferOf256)
{
    for (size_t size : {sizeof xFFoundName, sizeof xFOpenName, sizeof xFCreateName, sizeof xFReadName,
                        sizeof xFWriteName, sizeof xDCreateName, sizeof xGeneralText})
        EXPECT_EQ(size, 256u);
}

TEST_F(Protocol, AFunctionThatGoesWellRunsItsBodyAlone)
{
    EXPECT_EQ(Tested(XNULL), 5);
    EXPECT_EQ(trace, "bwe");
    EXPECT_EQ(xCode, XNULL);
    EXPECT_EQ(xDepth, 0);
}

TEST_F(Protocol, AFailedCallSkipsTheRestRunsTheRepairOnceAndStaysPending)
{
    EXPECT_EQ(Tested(XFREAD), -1);
    EXPECT_EQ(trace, "bfr");
    EXPECT_EQ(xCode, XFREAD);
    EXPECT_EQ(xRepaired, XNULL);
    EXPECT_EQ(xFile, here);
    EXPECT_EQ(xLine, marked);
    EXPECT_EQ(xDepth, 0);
}

TEST_F(Protocol, EntryIsRefusedWhileAFailureIsPending)
{
    Fail(XFWRITE);
    trace.clear();
    EXPECT_EQ(Tested(XFREAD), -1) << "the default of the result";
    EXPECT_EQ(trace, "") << "neither body nor repair";
    EXPECT_EQ(xCode, XFWRITE);
    CatchAtPoint(1);
    EXPECT_EQ(xCode, XFWRITE) << "nothing was thrown either";
}

TEST_F(Protocol, AFailurePassesThroughEveryLevelOnItsWayUp)
{
    auto middle = [] {
        __enter
            Tested(XLIMIT); __test;
            trace += 'x';
        __point
            trace += 'm';
        __treat
    };
    auto outer = [&] {
        __enter
            middle(); __test;
            trace += 'x';
        __point
            trace += 'o';
            __repair;
        __treat
    };
    outer();
    EXPECT_EQ(trace, "bfrmo");
    EXPECT_EQ(xCode, XNULL);
    EXPECT_EQ(xRepaired, XLIMIT);
}

TEST_F(Protocol, ALoopLeavesByTheSameJumpAndEndsItsLocals)
{
    struct Local {
        ~Local() { trace += '~'; }
    };
    __enter
        for (int i = 0; i < 5; ++i) {
            Local local;
            Fail(i == 2 ? XFREAD : XNULL); __test;
            trace += '.';
        }
        trace += 'x';
    __point
        __repair;
    __treat
    EXPECT_EQ(trace, "w.~w.~f~");
    EXPECT_EQ(xRepaired, XFREAD);
}

TEST_F(Protocol, AnExceptionInABodyBecomesAFailureAtItsPoint)
{
    const struct {
        int what;
        XCODE code;
    } rows[] = {{1, XALLOC}, {2, XUNKNOWN}, {3, XUNKNOWN}, {4, XALLOC}};
    CatchAtPoint(0);
    int point = marked;
    for (const auto &row : rows) {
        trace.clear();
        xRepaired = XFREAD;
        CatchAtPoint(row.what);
        EXPECT_EQ(trace, "r");
        EXPECT_EQ(xCode, row.code);
        EXPECT_EQ(xRepaired, XNULL);
        EXPECT_EQ(xFile, here);
        EXPECT_EQ(xLine, point);
        xCode = XNULL;
    }
}

TEST_F(Protocol, AContainerThatRefusesALengthIsAnUnknownFailure)
{
    std::vector<char> block;
    __enter
        block.reserve(block.max_size() + 1);
        trace += 'x';
    __point
        trace += 'r';
        __repair;
    __treat
    EXPECT_EQ(trace, "r");
    EXPECT_EQ(xRepaired, XUNKNOWN);
}

TEST_F(Protocol, RepairStatementsCallFunctionsInFull)
{
    __enter
        Fail(XFREAD); __test;
    __point
        trace.clear();
        EXPECT_EQ(xDepth, 1);
        EXPECT_EQ(xCode, XFREAD);
        EXPECT_EQ(Tested(XNULL), 5);
        EXPECT_EQ(trace, "bwe");
        EXPECT_EQ(xDepth, 1);
    __treat
    EXPECT_EQ(xCode, XFREAD) << "repair statements do not clear the failure";
    EXPECT_EQ(xDepth, 0);
}

TEST_F(Protocol, FunctionsCalledDuringRepairNeverRunTheirOwnRepair)
{
    auto helper = [] {
        __enter
            trace += 'h'; __test; // off
            trace += 'i';
        __point
            trace += 'x';
        __treat
    };
    __enter
        Fail(XFREAD); __test;
    __point
        helper(); __test; // off here too
        trace += 'd';
    __treat
    EXPECT_EQ(trace, "fhid");
}

TEST_F(Protocol, ATakenOffFailureIsKeptUntilTheNextRaiseOrRepair)
{
    xHit = 7;
    __enter
        Fail(XFOPEN); __test;
    __point
        __repair;
        EXPECT_EQ(xCode, XNULL);
        EXPECT_EQ(xRepaired, XFOPEN);
        EXPECT_EQ(xHit, 0);
        EXPECT_EQ(xDepth, 1);
        __report; // without a hook
    __treat
    EXPECT_EQ(xCode, XNULL);
    EXPECT_EQ(xRepaired, XFOPEN);
    EXPECT_EQ(Tested(XNULL), 5);
    EXPECT_EQ(xRepaired, XFOPEN) << "what goes well leaves it";
    Fail(XLIMIT);
    EXPECT_EQ(xRepaired, XNULL);
}

namespace
{
int reports;
State reported;

void KeepReport()
{
    ++reports;
    reported = State();
}

/// An entry point of a window system.
void EntryPoint(XCODE code)
{
    __enter
        Tested(code); __test;
    __point
        __repair;
        __report;
    __treat
}
} // namespace

TEST_F(Protocol, ReportCallsTheHookWithTheFailureTakenOff)
{
    reports = 0;
    SetFailureHook(KeepReport);
    EXPECT_EQ(xHook, KeepReport);
    EntryPoint(XNULL);
    EXPECT_EQ(reports, 0);
    xHit = 1;
    EntryPoint(XFREAD);
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(reported.repaired, XFREAD);
    EXPECT_EQ(reported.code, XNULL);
    EXPECT_EQ(reported.hit, 0);
    EXPECT_EQ(reported.depth, 1) << "the hook may call anything";
    EXPECT_EQ(reported.line, marked);
    EXPECT_EQ(xCode, XNULL);
    SetFailureHook(NULL);
    EntryPoint(XFREAD);
    EXPECT_EQ(reports, 1) << "without a hook it vanishes";
    EXPECT_EQ(xCode, XNULL);
}

TEST_F(Protocol, ReportWithNothingTakenOffCallsNoHook)
{
    reports = 0;
    SetFailureHook(KeepReport);
    __report;
    EXPECT_EQ(reports, 0);
}

TEST_F(Protocol, InlineRepairDealsWithAnExpectedFailureInTheBody)
{
    __enter
        Fail(XFOPEN);
        __repair;
        EXPECT_TRUE(xDepth == 0 && xRepaired == XFOPEN);
        EXPECT_EQ(xCode, XNULL);
        Fail(XNULL);
        __repair;
        EXPECT_TRUE(xRepaired == XNULL) << "the call went well";
        Fail(XFREAD); __test;
        trace += 'x';
    __point
        trace += 'r';
    __treat
    EXPECT_EQ(trace, "fwfr");
    EXPECT_EQ(xCode, XFREAD);
}

TEST_F(Protocol, ARetryLoopGoesOnUntilTheCallSucceeds)
{
    int tries = 0;
    __enter
        do {
            Fail(++tries < 4 ? XFREAD : XNULL);
            __repair;
        } while (xDepth == 0 && xRepaired != XNULL);
        trace += 'e';
    __point
        trace += 'x';
    __treat
    EXPECT_EQ(tries, 4);
    EXPECT_EQ(trace, "fffwe");
    EXPECT_EQ(xCode, XNULL);
}

TEST_F(Protocol, AScanSkipsWhatFailsAndGoesOn)
{
    std::string kept;
    __enter
        for (char c : std::string("abcd")) {
            Fail(c == 'b' || c == 'c' ? XCDE_INVOLVED : XNULL);
            __repair;
            kept += xDepth == 0 && xRepaired != XNULL ? '-' : c;
        }
    __point
        trace += 'x';
    __treat
    EXPECT_EQ(kept, "a--d");
}

TEST_F(Protocol, InlineRepairTakesNothingOffWhileAnotherFailureIsUnderRepair)
{
    auto scan = [] {
        __enter
            Fail(XNULL);
            __repair;
            trace += xDepth == 0 && xRepaired != XNULL ? 'x' : 's';
        __point
        __treat
    };
    __enter
        Fail(XFREAD); __test;
    __point
        scan();
        EXPECT_EQ(xCode, XFREAD);
        EXPECT_EQ(xRepaired, XNULL);
    __treat
    EXPECT_EQ(trace, "fws");
    EXPECT_EQ(xCode, XFREAD);
}

TEST_F(Protocol, BlocksFollowEachOtherInOneFunction)
{
    auto twice = [](XCODE first, XCODE second) {
        __enter
            Fail(first); __test;
            trace += '1';
        __point
            trace += 'r';
        __treat
        __enter
            Fail(second); __test;
            trace += '2';
        __point
            trace += 's';
        __treat
    };
    const struct {
        XCODE first, second;
        const char *trace;
    } rows[] = {{XNULL, XNULL, "w1w2"}, {XFREAD, XNULL, "fr"}, {XNULL, XFREAD, "w1fs"}};
    for (const auto &row : rows) {
        trace.clear();
        twice(row.first, row.second);
        EXPECT_EQ(trace, row.trace);
        xCode = XNULL;
    }
}

TEST_F(Protocol, BlocksNestInBodiesAndInRepairSections)
{
    auto nest = [](XCODE inner, XCODE outer) {
        __enter
            __enter
                Fail(inner); __test;
                trace += '1';
            __point
                trace += 'i';
            __treat
            __test;
            Fail(outer); __test;
            trace += '2';
        __point
            trace += 'o';
            __enter
                Fail(XNULL); __test;
                trace += '3';
            __point
            trace += 'x';
        __treat
        __repair;
        __treat
    };
    const struct {
        XCODE inner, outer;
        const char *trace;
    } rows[] = {{XNULL, XNULL, "w1w2"}, {XFREAD, XNULL, "fiow3"}, {XNULL, XFREAD, "w1fow3"}};
    for (const auto &row : rows) {
        trace.clear();
        nest(row.inner, row.outer);
        EXPECT_EQ(trace, row.trace);
        EXPECT_EQ(xCode, XNULL);
    }
}

TEST_F(Protocol, AnInnerBlockMayTakeItsFailureOff)
{
    __enter
        __enter
            Fail(XFREAD); __test;
        __point
            __repair;
        __treat
        __test;
        trace += 'e';
    __point
        trace += 'x';
    __treat
    EXPECT_EQ(trace, "fe");
    EXPECT_EQ(xRepaired, XFREAD);
}

TEST_F(Protocol, AGuardedLambdaInABodyIsAFunctionOfItsOwn)
{
    __enter
        auto lambda = [](XCODE code) {
            __enter
                Fail(code); __test;
                trace += 'l';
            __point
                trace += 'r';
            __treat
        };
        lambda(XNULL); __test;
        lambda(XLIMIT); __test;
        trace += 'x';
    __point
        trace += 'o';
        __repair;
    __treat
    EXPECT_EQ(trace, "wlfro");
}

namespace
{
/// Forgets a test; marks its __point.
void Untested(XCODE code, int what = 0)
{
    __enter
        Fail(code);
        Throw(what);
        marked = __LINE__ + 1;
    __point
        trace += 'r';
    __treat
}

/// Raises on top of what it did not test; marks its second raise.
void RaiseTwice(XCODE code)
{
    __enter
        Fail(code);
        marked = __LINE__ + 2;
        if (code != XNULL)
            __raise(XLIMIT);
    __point
    __treat
}

/// Fails and lets `repair` run; marks __treat, and hands back where the failure was raised.
int FailAndRepair(XCODE code, const std::function<void()> &repair)
{
    int raised = 0;
    __enter
        raised = __LINE__ + 2;
        if (code != XNULL)
            __raise(code);
    __point
        repair();
    __treat
    marked = __LINE__ - 1;
    return raised;
}
} // namespace

TEST_F(Protocol, AForgottenTestEndsTheProcessAtItsPoint)
{
    Untested(XNULL);
    EXPECT_TRUE(AbortsWith(MissingAt(marked), [] { Untested(XFREAD); }));
}

TEST_F(Protocol, AnExceptionOnTopOfAForgottenTestIsMissingToo)
{
    Untested(XNULL);
    int point = marked;
    for (int what : {1, 2, 3})
        EXPECT_TRUE(AbortsWith(MissingAt(point), [=] { Untested(XFREAD, what); }));
}

TEST_F(Protocol, ARaiseOnTopOfAPendingFailureEndsTheProcessAtTheRaise)
{
    RaiseTwice(XNULL);
    EXPECT_TRUE(AbortsWith(MissingAt(marked), [] { RaiseTwice(XFREAD); }));
}

TEST_F(Protocol, ARaiseDuringRepairEndsTheProcessWithBothPlaces)
{
    int raised = FailAndRepair(XNULL, NULL);
    RaiseTwice(XNULL);
    Fail(XLIMIT); // marks
    xCode = XNULL;
    int second = marked;
    EXPECT_TRUE(AbortsWith(DuringRepair("XFREAD", raised, "XLIMIT", second),
                           [] { FailAndRepair(XFREAD, [] { Fail(XLIMIT); }); }));
}

TEST_F(Protocol, AnExceptionInABodyDuringRepairEndsTheProcessAtItsPoint)
{
    int raised = FailAndRepair(XNULL, NULL);
    CatchAtPoint(0);
    const struct {
        int what;
        const char *code;
    } rows[] = {{1, "XALLOC"}, {2, "XUNKNOWN"}, {3, "XUNKNOWN"}};
    for (const auto &row : rows)
        EXPECT_TRUE(AbortsWith(DuringRepair("XFREAD", raised, row.code, marked),
                               [=] { FailAndRepair(XFREAD, [=] { CatchAtPoint(row.what); }); }));
}

TEST_F(Protocol, AnExceptionInRepairStatementsEndsTheProcessAtTheirTreat)
{
    int raised = FailAndRepair(XNULL, NULL);
    int treat = marked;
    const struct {
        int what;
        const char *code;
    } rows[] = {{1, "XALLOC"}, {2, "XUNKNOWN"}, {3, "XUNKNOWN"}};
    for (const auto &row : rows)
        EXPECT_TRUE(AbortsWith(DuringRepair("XFREAD", raised, row.code, treat),
                               [=] { FailAndRepair(XFREAD, [=] { Throw(row.what); }); }));
}

TEST_F(Protocol, AfterTheFailureIsTakenOffANewOneInTheSectionStillEndsTheProcess)
{
    Fail(XLIMIT); // marks
    xCode = XNULL;
    std::string text = "Terminate on exception: XLIMIT, file " + here + ", line " + std::to_string(marked);
    EXPECT_TRUE(AbortsWith(text, [] {
        __enter
            Fail(XFREAD); __test;
        __point
            __repair;
            Fail(XLIMIT);
        __treat
    }));
}

TEST_F(Protocol, TheStatesFollowEachOtherAsTheyShould)
{
    enum Kind { CLEAR, PENDING, REPAIRING };
    auto kind = [] { return xDepth > 0 ? REPAIRING : xCode != XNULL ? PENDING : CLEAR; };
    Kind during = CLEAR;
    const struct {
        const char *event;
        Kind from;
        std::function<void()> happen;
        Kind to;
    } rows[] = {
        {"a raise", CLEAR, [] { Fail(XFREAD); }, PENDING},
        {"an exception at a point", CLEAR, [] { CatchAtPoint(1); }, PENDING},
        {"nothing", CLEAR, [] { Fail(XNULL); }, CLEAR},
        {"entry", PENDING, [] { Fail(XLIMIT); }, PENDING},
        {"a section without repair", CLEAR, [] { FailAndRepair(XFREAD, [] {}); }, PENDING},
        {"a section with repair", CLEAR, [] { EntryPoint(XFREAD); }, CLEAR},
        {"arrival at a section", CLEAR,
         [&] {
             FailAndRepair(XFREAD, [&] { during = kind(); });
             EXPECT_EQ(during, REPAIRING);
         },
         PENDING},
    };
    for (const auto &row : rows) {
        xCode = row.from == PENDING ? XFWRITE : XNULL;
        row.happen();
        EXPECT_EQ(kind(), row.to) << row.event;
        EXPECT_EQ(xDepth, 0);
    }
}
