#include "lib/charstr.h"
#include "support/child.h"
#include "usr/edcdlg.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace
{
const int modes[] = {EDC_XLOAD, EDC_XSTORE, EDC_XMERGE, EDC_XMATCH};
const int valueStates[] = {EDC_VUDF, EDC_VVAL};
const int stringStates[] = {EDC_VUDF, EDC_VVAL, EDC_VNUL, 0, 7};

// What an exchange must leave, told from the states and from whether the contents agree.
struct OUTCOME {
    bool result;
    bool fieldIsOther; // the field is now a copy of the other
    bool otherIsField;
    bool fieldUndefined; // and nothing else about it changed
};

OUTCOME Expected(int mode, int field, int other, bool sameContent)
{
    bool equal = field == other && (field != EDC_VVAL || sameContent);
    switch (mode) {
    case EDC_XLOAD:
        return {true, true, false, false};
    case EDC_XSTORE:
        return {true, false, field != EDC_VUDF, false};
    case EDC_XMERGE:
        return {true, false, false, !equal};
    default:
        return {field == EDC_VUDF || equal, false, false, false};
    }
}

std::string Show(const TEdcInt &v)
{
    return std::to_string(v.id) + ":" + std::to_string(v.value);
}
std::string Show(const TEdcFloat &v)
{
    return std::to_string(v.id) + ":" + std::to_string(v.value);
}
std::string Show(const TEdcTime &v)
{
    std::string shown = std::to_string(v.id);
    for (short part : {v.year, v.month, v.day, v.hour, v.minute, v.second})
        shown += ":" + std::to_string(part);
    return shown;
}
std::string Show(const TEdcAStr &v)
{
    return std::to_string(v.id) + ":" + v.text;
}

template <class T>
T InState(T value, int id)
{
    value.id = id;
    return value;
}

/// All modes, all states, contents equal and not.
template <class T, size_t N>
void CheckExchange(const T &one, const T &two, const int (&states)[N])
{
    for (int mode : modes)
        for (int fieldState : states)
            for (int otherState : states)
                for (bool same : {true, false}) {
                    T field = InState(one, fieldState);
                    T other = InState(same ? one : two, otherState);
                    std::string fieldBefore = Show(field), otherBefore = Show(other);
                    OUTCOME expected = Expected(mode, fieldState, otherState, same);
                    SCOPED_TRACE(std::to_string(mode) + " " + fieldBefore + " with " + otherBefore);
                    EXPECT_EQ(field.Exchange(mode, other), expected.result);
                    EXPECT_EQ(Show(other), expected.otherIsField ? fieldBefore : otherBefore);
                    if (expected.fieldUndefined)
                        EXPECT_EQ(field.id, EDC_VUDF);
                    else
                        EXPECT_EQ(Show(field), expected.fieldIsOther ? otherBefore : fieldBefore);
                }
}

template <class T>
T Text(const char *s)
{
    T string;
    string = s;
    return string;
}
} // namespace

TEST(Exchange, OfIntegersFollowsStateAndContent)
{
    CheckExchange(TEdcInt(5), TEdcInt(6), valueStates);
}

TEST(Exchange, OfFloatsFollowsStateAndContent)
{
    CheckExchange(TEdcFloat(5.5), TEdcFloat(-2.25), valueStates);
}

TEST(Exchange, OfTimesFollowsStateAndEachField)
{
    const TEdcTime base(2000, 1, 2, 3, 4, 5);
    const TEdcTime others[] = {{2001, 1, 2, 3, 4, 5}, {2000, 2, 2, 3, 4, 5}, {2000, 1, 3, 3, 4, 5},
                               {2000, 1, 2, 4, 4, 5}, {2000, 1, 2, 3, 5, 5}, {2000, 1, 2, 3, 4, -1}};
    for (const TEdcTime &other : others)
        CheckExchange(base, other, valueStates);
}

TEST(Exchange, OfStringsFollowsStateAndContent)
{
    CheckExchange(Text<TEdcShortStr>("Erdgas"), Text<TEdcShortStr>("Propan"), stringStates);
    CheckExchange(Text<TEdcLongStr>("Erdgas"), Text<TEdcLongStr>(""), stringStates);
}

TEST(Exchange, OfListItemsGoesByTheIdentifierAlone)
{
    TEdcShortStr field = Text<TEdcShortStr>("links"), other = Text<TEdcShortStr>("rechts");
    field.id = other.id = 3;
    EXPECT_TRUE(field.Exchange(EDC_XMATCH, other, true));
    other.id = 4;
    EXPECT_FALSE(field.Exchange(EDC_XMATCH, other, true));
}

TEST(Exchange, KnowsNoOtherModes)
{
    TEdcInt one(1), two(2);
    TEdcShortStr text = Text<TEdcShortStr>("a"), other = Text<TEdcShortStr>("b");
    for (int mode : {-1, 0, 5}) {
        EXPECT_FALSE(one.Exchange(mode, two));
        EXPECT_FALSE(text.Exchange(mode, other));
        EXPECT_EQ(Show(one) + Show(two) + Show(text) + Show(other), "-3:1-3:2-3:a-3:b");
    }
}

TEST(Exchange, ANewValueIsUndefinedAndStoresNothing)
{
    TEdcInt number(7), newNumber;
    TEdcFloat real(1.5), newReal;
    TEdcTime time(2000, 1, 2, 3, 4, 5), newTime;
    TEdcShortStr text = Text<TEdcShortStr>("alt"), newText;
    TEdcLongStr longText = Text<TEdcLongStr>("alt"), newLongText;
    for (const TEdcValue *value :
         std::initializer_list<const TEdcValue *>{&newNumber, &newReal, &newTime, &newText, &newLongText})
        EXPECT_EQ(value->id, EDC_VUDF);
    EXPECT_TRUE(newNumber.Exchange(EDC_XSTORE, number));
    EXPECT_TRUE(newReal.Exchange(EDC_XSTORE, real));
    EXPECT_TRUE(newTime.Exchange(EDC_XSTORE, time));
    EXPECT_TRUE(newText.Exchange(EDC_XSTORE, text));
    EXPECT_TRUE(newLongText.Exchange(EDC_XSTORE, longText));
    EXPECT_EQ(Show(number), "-3:7");
    EXPECT_EQ(Show(real), "-3:1.500000");
    EXPECT_EQ(Show(time), "-3:2000:1:2:3:4:5");
    EXPECT_EQ(Show(text) + Show(longText), "-3:alt-3:alt");
}

TEST(Exchange, MergingFloatsHasNoTolerance)
{
    TEdcFloat field(1.0), same(1.0), near(1.0000001);
    field.Exchange(EDC_XMERGE, same);
    EXPECT_EQ(field.id, EDC_VVAL);
    field.Exchange(EDC_XMERGE, near);
    EXPECT_EQ(field.id, EDC_VUDF);
}

TEST(Exchange, ANumberThatIsNoneDiffersFromItself)
{
    TEdcFloat field(std::nan("")), other(std::nan(""));
    EXPECT_FALSE(field.Exchange(EDC_XMATCH, other));
}

TEST(Exchange, MergingTwoUndefinedValuesStaysUndefined)
{
    TEdcFloat field, other;
    field.Exchange(EDC_XMERGE, other);
    EXPECT_EQ(field.id, EDC_VUDF);
    TEdcShortStr text, otherText;
    text.Exchange(EDC_XMERGE, otherText);
    EXPECT_EQ(text.id, EDC_VUDF);
}

TEST(Exchange, MergingAValueWithNothingIsUndefined)
{
    TEdcShortStr field = Text<TEdcShortStr>("Modell"), other = Text<TEdcShortStr>("Modell");
    other.id = EDC_VNUL;
    field.Exchange(EDC_XMERGE, other);
    EXPECT_EQ(field.id, EDC_VUDF);
}

TEST(Exchange, TextsAgreeWhateverCaseAndBlanksUnlessExact)
{
    const struct {
        const char *field, *other;
        bool loose, exact;
    } rows[] = {
        {"Abc", "ABC ", true, false}, {"Abc", "Abc", true, true},  {"Abc", "Abd", false, false},
        {"a b", "A  B", true, false}, {"a b", "ab", false, false}, {"\xE4", "\xC4", true, false},
        {"", "  ", true, false},      {"a?", "ab", false, false},  {"*", "abc", false, false},
    };
    for (const auto &row : rows)
        for (bool exact : {false, true}) {
            SCOPED_TRACE(std::string(row.field) + "/" + row.other + (exact ? " exact" : ""));
            bool agree = exact ? row.exact : row.loose;
            TEdcShortStr field = Text<TEdcShortStr>(row.field), other = Text<TEdcShortStr>(row.other);
            EXPECT_EQ(field.Exchange(EDC_XMATCH, other, exact), agree);
            EXPECT_TRUE(field.Exchange(EDC_XMERGE, other, exact));
            EXPECT_EQ(field.id, agree ? EDC_VVAL : EDC_VUDF);
        }
}

TEST(Exchange, TellsThatATextDidNotFit)
{
    const std::string forty(40, 'x');
    TEdcLongStr wide = Text<TEdcLongStr>(forty.c_str());
    TEdcShortStr narrow;
    EXPECT_FALSE(narrow.Exchange(EDC_XLOAD, wide));
    EXPECT_EQ(Show(narrow), "-2:" + forty.substr(0, 31));

    narrow = "alt";
    EXPECT_FALSE(wide.Exchange(EDC_XSTORE, narrow));
    EXPECT_EQ(Show(narrow), "-2:" + forty.substr(0, 31));

    wide.id = EDC_VUDF;
    EXPECT_TRUE(narrow.Exchange(EDC_XLOAD, wide)) << "nothing was lost that had been known";
    EXPECT_EQ(narrow.id, EDC_VUDF);
}

TEST(Exchange, EditsSeveralObjectsFieldByField)
{
    TEdcFloat objects[] = {2.0, 2.0, 3.0};
    TEdcFloat field;
    field.Exchange(EDC_XLOAD, objects[0]);
    field.Exchange(EDC_XMERGE, objects[1]);
    EXPECT_EQ(Show(field), "-3:2.000000");
    field.Exchange(EDC_XMERGE, objects[2]);
    EXPECT_EQ(field.id, EDC_VUDF);
    for (TEdcFloat &object : objects)
        field.Exchange(EDC_XSTORE, object);
    EXPECT_EQ(Show(objects[0]) + Show(objects[2]), "-3:2.000000-3:3.000000") << "the user typed nothing";
    field = 4.5;
    for (TEdcFloat &object : objects) {
        field.Exchange(EDC_XSTORE, object);
        EXPECT_EQ(Show(object), "-3:4.500000");
    }
}

namespace
{
struct RECORD {
    TEdcInt number = 1;
    TEdcFloat real = 2.5;
    TEdcShortStr name;
    TEdcTime time = {2000, 1, 2, 3, 4, 5};
    TEdcLongStr note;
    TEdcInt last = 9;
};
} // namespace

TEST(ValueRecord, IsWalkedBySizes)
{
    RECORD record;
    const TEdcValue *fields[] = {&record.number, &record.real, &record.name,
                                 &record.time,   &record.note, &record.last};
    const char *at = reinterpret_cast<const char *>(&record);
    for (const TEdcValue *field : fields) {
        ASSERT_EQ(static_cast<const void *>(at), static_cast<const void *>(field));
        at += reinterpret_cast<const TEdcValue *>(at)->Size();
    }
    EXPECT_EQ(at, reinterpret_cast<const char *>(&record + 1));
}

TEST(ValueRecord, TellsTheWidthOfEachClass)
{
    char buffer[4];
    EXPECT_EQ(TEdcValue().Size(), static_cast<int>(sizeof(TEdcValue)));
    EXPECT_EQ(TEdcInt().Size(), static_cast<int>(sizeof(TEdcInt)));
    EXPECT_EQ(TEdcFloat().Size(), static_cast<int>(sizeof(TEdcFloat)));
    EXPECT_EQ(TEdcTime().Size(), static_cast<int>(sizeof(TEdcTime)));
    EXPECT_EQ(TEdcAStr(buffer, 4, EDC_VUDF).Size(), static_cast<int>(sizeof(TEdcAStr)));
    EXPECT_EQ(TEdcShortStr().Size(), static_cast<int>(sizeof(TEdcShortStr)));
    EXPECT_EQ(TEdcLongStr().Size(), static_cast<int>(sizeof(TEdcLongStr)));
}

TEST(ValueRecord, ACopyHasItsOwnTexts)
{
    RECORD one;
    one.name = "Halle 1";
    one.note = "Notiz";
    RECORD two = one;
    RECORD three;
    three = one;
    one.name = "Halle 2";
    one.note = "";
    for (const RECORD *copy : {&two, &three}) {
        EXPECT_EQ(Show(copy->name) + Show(copy->note), "-3:Halle 1-3:Notiz");
        EXPECT_GE(copy->name.text, reinterpret_cast<const char *>(&copy->name));
        EXPECT_LT(copy->name.text, reinterpret_cast<const char *>(&copy->name + 1));
    }
}

TEST(ValueRecord, StringsAreBoundToTheirOwnStorageAnew)
{
    TEdcShortStr name = Text<TEdcShortStr>("Halle");
    TEdcLongStr note = Text<TEdcLongStr>("Notiz");
    char *texts[] = {name.text, note.text};
    for (TEdcAStr *string : std::initializer_list<TEdcAStr *>{&name, &note}) {
        string->text = NULL;
        string->BindText();
    }
    EXPECT_EQ(name.text, texts[0]);
    EXPECT_EQ(note.text, texts[1]);
    char buffer[4] = "abc";
    TEdcAStr wrap(buffer, 4, EDC_VVAL);
    wrap.BindText();
    EXPECT_EQ(wrap.text, buffer);
}

TEST(StringAssignment, TakesStateAndTextOver)
{
    TEdcShortStr from = Text<TEdcShortStr>("Nr. 5");
    from.id = 5;
    TEdcLongStr to;
    to = from;
    EXPECT_EQ(Show(to), "5:Nr. 5");
    TEdcAStr &same = to;
    to = same;
    EXPECT_EQ(Show(to), "5:Nr. 5");
}

TEST(StringAssignment, FromATextHoldsAValue)
{
    char buffer[4];
    TEdcAStr wrap(buffer, 4, EDC_VUDF);
    wrap = "abc";
    EXPECT_EQ(Show(wrap), "-3:abc");
    wrap = "abcd";
    EXPECT_EQ(Show(wrap), "-2:abc");
}

TEST(StringAssignment, ReadsNothingBehindABufferThatWasNeverFilled)
{
    char buffer[4] = {'a', 'b', 'c', 'd'};
    TEdcAStr wrap(buffer, 4, EDC_VUDF);
    TEdcShortStr to = Text<TEdcShortStr>("alt");
    to = wrap;
    EXPECT_EQ(Show(to), "-2:alt");
}

TEST(StringAssignment, CopiesTheCutTextOfAnUndefinedValue)
{
    TEdcShortStr cut, to;
    cut.Set(EDC_VVAL, std::string(40, 'x').c_str());
    to = cut;
    EXPECT_EQ(Show(to), "-2:" + std::string(31, 'x'));
}

TEST(Times, SettingOneHalfKeepsOrClearsTheOther)
{
    TEdcTime time(2000, 1, 2, 3, 4, 5);
    time.id = EDC_VUDF;
    time.SetDate(1999, 12, 31, false);
    EXPECT_EQ(Show(time), "-3:1999:12:31:3:4:5");
    time.SetTime(6, 7, 8, false);
    EXPECT_EQ(Show(time), "-3:1999:12:31:6:7:8");
    time.SetDate(1999, 12, 30, true);
    EXPECT_EQ(Show(time), "-3:1999:12:30:-1:-1:-1");
    time.SetTime(1, 2, 3, true);
    EXPECT_EQ(Show(time), "-3:-1:-1:-1:1:2:3");
    TEdcTime date;
    date.SetDate(2024, 2, 29, false);
    EXPECT_EQ(Show(date), "-3:2024:2:29:-1:-1:-1");
}

TEST(Numbers, SettingOneGivesItAState)
{
    TEdcInt number;
    number.Set(-3);
    TEdcFloat real;
    real.Set(0.25);
    EXPECT_EQ(Show(number) + Show(real), "-3:-3-3:0.250000");
}
