// Fields of text: what they let in, what they keep, and the way back.
#include "controlfixture.h"
#include "support/chance.h"

#include <algorithm>
#include <cstring>

#include "lib/xon.h"

namespace
{
/// A number with a point; "böse" will not do.
class PointValidator : public TValidator
{
public:
    explicit PointValidator(const char *aHint = "0 bis 9") : hint(aHint)
    {
        options = WIN_VALIDATOR_TRANSFER | WIN_VALIDATOR_POINT;
    }
    bool IsValid(const char *text) override
    {
        seen = text;
        if (fail)
            XRaise(XLIMIT, __FILE__, __LINE__);
        return !fail && seen != "b\366se";
    }
    void Error(TWindow *window) override
    {
        ++errors;
        owner = window;
    }
    std::string Hint() const override { return hint; }

    std::string seen;
    int errors = 0;
    TWindow *owner = NULL;
    bool fail = false;

private:
    std::string hint;
};

/// Takes small letters only, while they are typed.
class SmallLetters : public TValidator
{
public:
    bool IsValidInput(const char *text, bool) const override
    {
        return std::all_of(text, text + std::strlen(text), [](char c) { return c >= 'a' && c <= 'z'; });
    }
};

std::string Selected(const TEdit &edit)
{
    int start = 0;
    int end = 0;
    edit.GetSelection(start, end);
    return edit.Text().substr(static_cast<size_t>(start), static_cast<size_t>(end - start));
}

class Edits : public Controls
{
protected:
    enum { FIELD = 10, OTHER = 11 };

    /// An edit of one line or many, in a dialog with another field behind it.
    testdoor::DialogBox OpenField(ResCONTROLKIND kind, int textLimit = 0, TValidator *validator = NULL)
    {
        Make({Placed(Line(kind, FIELD), 2, 2, 120, kind == RES_MEMO ? 60 : 13),
              Placed(Line(RES_EDIT, OTHER), 2, 70, 120, 13)});
        edit = new TEdit(dialog.get(), FIELD, textLimit, validator);
        return Open();
    }

    TEdit *edit = NULL; // the dialog's
};

struct CASE {
    const char *given;    // UTF-8
    const char *expected; // Windows-1252
    int beeps;
};

const CASE typedTable[] = {
    {"abc", "abc", 0},
    {"Grüße €", "Gr\374\337e \200", 0},
    {"„Maß“ – ½", "\204Ma\337\223 \226 \275", 0},
    {"aőb", "ab", 1},
    {"☃", "", 1},
    {"日本x", "x", 2},
    {"😀y", "y", 1},
    {"1,5", "1,5", 0},
    {"-1.5e-3", "-1.5e-3", 0},
    {"0123456789", "0123456789", 0},
    {"a b", "a b", 0},
    {"a\xC2\xA0z", "a\240z", 0}, // a blank that does not break
    {"12345678901234567890123456789012", "1234567890123456789012345678901", 1},
    {"&<b>", "&<b>", 0},
};

const CASE pastedTable[] = {
    {"abc", "abc", 0},
    {"Grüße €", "Gr\374\337e \200", 0},
    {"Maß\nFluß", "Ma\337 Flu\337", 0},
    {"a\r\nb\rc", "a b c", 0},
    {"a\xE2\x80\xA8z\xE2\x80\xA9y", "a z y", 0}, // the line breaks of word processors
    {"ende\n", "ende ", 0},
    {"\n\n", "  ", 0},
    {"a\tb", "a\tb", 0},
    {"u\xCC\x88o\xCC\x88", "\374\366", 0}, // letters with their accents behind them
    {"o\xCC\x8B", "", 1},
    {"abcőxyz", "", 1},
    {"\x01", "", 1},
    {"a\x7Fz", "", 1},
    {"😀", "", 1},
    {"1,5", "1,5", 0},
    {"-7", "-7", 0},
};
} // namespace

TEST_F(Edits, KeysTypeWhatTheCharacterSetHolds)
{
    auto box = OpenField(RES_EDIT, 32);
    for (const CASE &row : typedTable) {
        SCOPED_TRACE(row.given);
        edit->SetText("");
        box.Type(FIELD, row.given);
        EXPECT_EQ(edit->Text(), row.expected);
        EXPECT_EQ(box.Text(FIELD), row.expected);
        EXPECT_EQ(beeps.Read(), row.beeps);
    }
    EXPECT_EQ(diary.Read(), "") << "edits report nothing";
}

TEST_F(Edits, APasteIsTakenWholeOrNotAtAll)
{
    auto box = OpenField(RES_EDIT, 32);
    for (const CASE &row : pastedTable) {
        SCOPED_TRACE(row.given);
        edit->SetText("");
        box.Paste(FIELD, row.given);
        EXPECT_EQ(edit->Text(), row.expected);
        EXPECT_EQ(beeps.Read(), row.beeps);
        edit->SetText("");
        box.PasteByMenu(FIELD, row.given);
        EXPECT_EQ(edit->Text(), row.expected) << "by the menu";
        EXPECT_EQ(beeps.Read(), row.beeps);
        edit->SetText("");
        box.DropText(FIELD, row.given);
        EXPECT_EQ(edit->Text(), row.expected) << "dropped";
        EXPECT_EQ(beeps.Read(), row.beeps);
    }
}

TEST_F(Edits, AnInputMethodGivesWhatTheCharacterSetHolds)
{
    const CASE table[] = {
        {"é", "\351", 0},         {"ő", "", 1}, {"ab\ncd", "ab cd", 0},
        {"o\xCC\x88", "\366", 0}, {"", "", 0},  {",", ",", 0},
    };
    auto box = OpenField(RES_EDIT, 32);
    for (const CASE &row : table) {
        SCOPED_TRACE(row.given);
        edit->SetText("");
        edit->TakeFocus();
        box.Commit(row.given);
        EXPECT_EQ(edit->Text(), row.expected);
        EXPECT_EQ(beeps.Read(), row.beeps);
    }
    box.Commit(std::string(300, 'x'));
    EXPECT_EQ(edit->TextLength(), 31);
    EXPECT_EQ(beeps.Read(), 1);
}

TEST_F(Edits, ThreeHundredCharactersIntoThirtyTwoKeepThirtyOne)
{
    auto box = OpenField(RES_EDIT, 32);
    box.Type(FIELD, std::string(300, 'x'));
    EXPECT_EQ(edit->Text(), std::string(31, 'x'));
    EXPECT_EQ(beeps.Read(), 269);
    box.Paste(FIELD, std::string(300, 'y'));
    EXPECT_EQ(edit->Text(), std::string(31, 'y'));
    EXPECT_EQ(beeps.Read(), 1);
    box.PasteKeys("z");
    EXPECT_EQ(edit->Text(), std::string(31, 'y'));
    EXPECT_EQ(beeps.Read(), 1) << "there is no room behind it";
    edit->SetSelection(10, 20);
    box.PasteKeys("zwanzig Zeichen Text");
    EXPECT_EQ(edit->Text(), std::string(10, 'y') + "zwanzig Ze" + std::string(11, 'y'));
    EXPECT_EQ(beeps.Read(), 1);
    edit->SetText(std::string(300, '\200').c_str());
    EXPECT_EQ(edit->Text(), std::string(31, '\200'));
    edit->SetSelection(31, 31);
    edit->ReplaceSelection("q");
    EXPECT_EQ(edit->TextLength(), 31);
    EXPECT_EQ(beeps.Read(), 1);
}

TEST_F(Edits, WithoutALimitAFieldTakesAMillionCharacters)
{
    auto box = OpenField(RES_EDIT);
    std::string pasted(1000000, '7');
    box.Paste(FIELD, pasted);
    EXPECT_TRUE(edit->Text() == pasted);
    EXPECT_EQ(beeps.Read(), 0);
}

TEST_F(Edits, TheCommaKeyTypesAPointWhereNumbersHaveOne)
{
    auto box = OpenField(RES_EDIT, 32, new PointValidator);
    box.Type(FIELD, "1,5");
    EXPECT_EQ(edit->Text(), "1.5");
    box.Press("Num+,");
    EXPECT_EQ(edit->Text(), "1.5.");
    box.Paste(FIELD, "1,5");
    EXPECT_EQ(edit->Text(), "1,5") << "what is pasted stays as it is";
    box.Paste(FIELD, ",");
    EXPECT_EQ(edit->Text(), ",");
    box.Type(FIELD, "2");
    box.Commit(",");
    EXPECT_EQ(edit->Text(), "2.") << "an input method stands between";
    edit->SetValidator(NULL);
    box.Type(FIELD, "1,5");
    EXPECT_EQ(edit->Text(), "1,5");
    EXPECT_EQ(beeps.Read(), 0);
}

TEST_F(Edits, AValidatorMayRefuseWhatIsTyped)
{
    for (ResCONTROLKIND kind : {RES_EDIT, RES_MEMO}) {
        auto box = OpenField(kind, 32, new SmallLetters);
        box.Type(FIELD, "a1b");
        EXPECT_EQ(edit->Text(), "ab");
        EXPECT_EQ(beeps.Read(), 1);
        box.PasteKeys("c2");
        EXPECT_EQ(edit->Text(), "ab");
        EXPECT_EQ(beeps.Read(), 1);
        edit->SetSelection(0, 1);
        box.PasteKeys("xyz");
        EXPECT_EQ(edit->Text(), "xyzb");
        EXPECT_EQ(beeps.Read(), 0);
    }
}

TEST_F(Edits, EveryChangeOfTheUserIsUndone)
{
    for (ResCONTROLKIND kind : {RES_EDIT, RES_MEMO}) {
        SCOPED_TRACE(kind);
        auto box = OpenField(kind, 32);
        box.Type(FIELD, "abc");
        box.PasteKeys("defő");
        box.PasteKeys("def");
        EXPECT_EQ(edit->Text(), "abcdef");
        box.Press("Ctrl+Z");
        EXPECT_EQ(edit->Text(), "abc");
        box.Press("Ctrl+Z");
        EXPECT_EQ(edit->Text(), "");
        box.Press("Ctrl+Shift+Z");
        EXPECT_EQ(edit->Text(), "abc");
        edit->SetSelection(0, 2);
        edit->ReplaceSelection("\344\366\374");
        EXPECT_EQ(edit->Text(), "\344\366\374c");
        box.Press("Ctrl+Z");
        EXPECT_EQ(edit->Text(), "abc");
        edit->SetText("neu");
        box.Press("Ctrl+Z");
        EXPECT_EQ(edit->Text(), "neu") << "what the program sets is where it begins";
        beeps.Read();
    }
}

TEST_F(Edits, TheMenuOfAFieldIsGerman)
{
    for (ResCONTROLKIND kind : {RES_EDIT, RES_MEMO}) {
        auto box = OpenField(kind, 32);
        EXPECT_EQ(box.FieldMenu(FIELD),
                  (std::vector<std::string>{"&R\374ckg\344ngig", "Wieder&herstellen", "&Ausschneiden",
                                            "&Kopieren", "&Einf\374gen", "L\366schen", "Alles ausw\344hlen"}));
    }
}

TEST_F(Edits, MnemonicsAndCommandsTypeNothing)
{
    for (ResCONTROLKIND kind : {RES_EDIT, RES_MEMO}) {
        auto box = OpenField(kind, 32);
        box.Type(FIELD, "abc");
        for (const char *key : {"Alt+X", "Ctrl+X", "Ctrl+B", "Ctrl+Shift+B", "F7", "Shift", "Left"})
            box.Press(key);
        EXPECT_EQ(edit->Text(), "abc");
        EXPECT_EQ(beeps.Read(), 0);
    }
}

TEST_F(Edits, TextsAndSelectionsAreInCharacters)
{
    auto box = OpenField(RES_EDIT, 32);
    edit->SetText("H\366he \200");
    EXPECT_EQ(edit->TextLength(), 6);
    char buffer[32];
    EXPECT_EQ(edit->GetText(buffer, 32), 6);
    EXPECT_STREQ(buffer, "H\366he \200");
    EXPECT_EQ(edit->GetText(buffer, 4), 3);
    EXPECT_STREQ(buffer, "H\366h");
    EXPECT_EQ(edit->GetText(buffer, 1), 0);
    EXPECT_STREQ(buffer, "");
    buffer[0] = 'x';
    EXPECT_EQ(edit->GetText(buffer, 0), 0);
    EXPECT_EQ(buffer[0], 'x');

    const struct {
        int start, end;
        const char *selected;
    } table[] = {
        {0, -1, "H\366he \200"}, {1, 3, "\366h"},  {3, 1, "\366h"}, {2, 2, ""},
        {-5, 2, "H\366"},        {4, 99, " \200"}, {99, 99, ""},
    };
    for (const auto &row : table) {
        edit->SetSelection(row.start, row.end);
        EXPECT_EQ(Selected(*edit), row.selected) << row.start << " " << row.end;
        EXPECT_EQ(box.SelectedText(FIELD), row.selected);
    }
    edit->SetSelection(2, 2);
    int start = 0;
    int end = 0;
    edit->GetSelection(start, end);
    EXPECT_EQ(start, 2);
    EXPECT_EQ(end, 2);
    edit->SetSelection(1, 4);
    edit->ReplaceSelection("");
    EXPECT_EQ(edit->Text(), "H \200");
    edit->ReplaceSelection("\344");
    EXPECT_EQ(edit->Text(), "H\344 \200");
}

TEST_F(Edits, WhatTheProgramSetsShowsFromItsBeginningInOneLine)
{
    auto box = OpenField(RES_EDIT, 256);
    edit->SetText("eins\r\nzwei\ndrei");
    EXPECT_EQ(edit->Text(), "eins zwei drei");
    int start = -1;
    int end = -1;
    edit->GetSelection(start, end);
    EXPECT_EQ(start, 0);
    EXPECT_EQ(end, 0);
    edit->SetText("");
    EXPECT_EQ(edit->TextLength(), 0);
    EXPECT_EQ(box.Text(FIELD), "");
}

TEST_F(Edits, TheFocusSelectsWhatCanBeTypedOver)
{
    for (ResCONTROLKIND kind : {RES_EDIT, RES_MEMO}) {
        auto box = OpenField(kind, 32);
        edit->SetText("alt");
        box.Click(OTHER);
        EXPECT_FALSE(edit->HasFocus());
        edit->TakeFocus();
        EXPECT_TRUE(edit->HasFocus());
        EXPECT_EQ(box.Focus(), FIELD);
        EXPECT_EQ(box.SelectedText(FIELD), "alt");
        edit->SetSelection(1, 1);
        edit->TakeFocus();
        EXPECT_EQ(box.SelectedText(FIELD), "alt") << "also where it is already";
        box.TypeKeys("neu");
        EXPECT_EQ(edit->Text(), "neu");
    }
}

TEST_F(Edits, AFieldThatIsNotValidStaysInTheWay)
{
    auto *validator = new PointValidator;
    auto box = OpenField(RES_EDIT, 32, validator);
    box.Type(FIELD, "gut");
    EXPECT_TRUE(edit->CanClose());
    EXPECT_EQ(validator->seen, "gut");
    EXPECT_EQ(validator->errors, 0);

    box.Type(FIELD, "böse");
    box.Click(OTHER);
    EXPECT_FALSE(edit->IsValid(false));
    EXPECT_EQ(validator->errors, 0) << "nobody asked why";
    EXPECT_EQ(box.Focus(), OTHER);
    EXPECT_FALSE(edit->CanClose());
    EXPECT_EQ(validator->errors, 1);
    EXPECT_EQ(validator->owner, edit);
    EXPECT_EQ(box.Focus(), FIELD);
    EXPECT_EQ(box.SelectedText(FIELD), "b\366se");

    edit->EnableWindow(false);
    EXPECT_TRUE(edit->CanClose()) << "a disabled field is never in the way";
    edit->EnableWindow(true);
    edit->SetValidator(NULL);
    EXPECT_TRUE(edit->IsValid(true));
    EXPECT_TRUE(edit->CanClose());
}

TEST_F(Edits, AValidatorSeesTheWholeText)
{
    auto *validator = new PointValidator;
    OpenField(RES_MEMO, 16384, validator);
    std::string text(16383, '\344');
    edit->SetText(text.c_str());
    EXPECT_TRUE(edit->IsValid(true));
    EXPECT_TRUE(validator->seen == text);
}

TEST_F(Edits, AFailureInAValidatorKeepsTheDialogOpenAndPending)
{
    auto *validator = new PointValidator;
    OpenField(RES_EDIT, 32, validator);
    validator->fail = true;
    bool can = true;
    XCODE failed = XNULL;
    __enter
        can = edit->CanClose(); __test;
    __point
        failed = xCode;
        __repair;
    __treat
    EXPECT_FALSE(can);
    EXPECT_EQ(failed, XLIMIT);
    EXPECT_EQ(validator->errors, 0);
}

TEST_F(Edits, ATooltipSaysWhatWillDoUnlessTheProgramHasGivenOne)
{
    auto box = OpenField(RES_EDIT, 32, new PointValidator("0 bis 365"));
    EXPECT_EQ(box.Tip(FIELD), "0 bis 365");
    edit->SetValidator(new PointValidator("1 m\262"));
    EXPECT_EQ(box.Tip(FIELD), "1 m\262");
    edit->SetValidator(NULL);
    EXPECT_EQ(box.Tip(FIELD), "");
    edit->SetTip("eigener");
    edit->SetValidator(new PointValidator("egal"));
    EXPECT_EQ(box.Tip(FIELD), "eigener");
    edit->SetTip("<b>0 < x</b>");
    EXPECT_EQ(box.Tip(FIELD), "<qt>&lt;b&gt;0 &lt; x&lt;/b&gt;</qt>") << "shown as it is written";
    edit->SetTip("");
    EXPECT_EQ(box.Tip(FIELD), "");
}

TEST_F(Edits, WithoutItsWindowAnEditReadsAsEmpty)
{
    auto *validator = new PointValidator;
    Make({Line(RES_EDIT, FIELD)});
    edit = new TEdit(dialog.get(), FIELD, 32, validator);
    auto isEmpty = [this] {
        char buffer[8] = "x";
        int start = 7;
        int end = 7;
        edit->SetText("verloren");
        edit->ReplaceSelection("verloren");
        edit->SetSelection(1, 2);
        edit->GetSelection(start, end);
        edit->TakeFocus();
        edit->SetTip("verloren");
        return edit->Text().empty() && edit->TextLength() == 0 && edit->GetText(buffer, 8) == 0 &&
               buffer[0] == '\0' && start == 0 && end == 0 && edit->IsValid(true) && edit->CanClose();
    };
    EXPECT_TRUE(isEmpty());
    auto box = Open();
    EXPECT_EQ(box.Text(FIELD), "") << "nothing of it is left";
    EXPECT_EQ(box.Tip(FIELD), "0 bis 9");
    edit->SetText("da");
    EXPECT_EQ(edit->Text(), "da");
    dialog->Destroy(WIN_ID_CANCEL);
    testdoor::Settle();
    EXPECT_TRUE(isEmpty());
}

TEST_F(Edits, AMemoHoldsSixteenKilobytes)
{
    auto box = OpenField(RES_MEMO, 16384);
    std::string text;
    while (text.size() < 20000)
        text += "Halle mit W\344nden\r\n";
    edit->SetText(text.c_str());
    EXPECT_TRUE(edit->Text() == text.substr(0, 16383));
    EXPECT_EQ(edit->TextLength(), 16383);
    std::vector<char> buffer(16384);
    EXPECT_EQ(edit->GetText(buffer.data(), 16384), 16383);
    EXPECT_TRUE(buffer.data() == text.substr(0, 16383));

    edit->SetText((std::string(16382, 'x') + "\r\n").c_str());
    EXPECT_TRUE(edit->Text() == std::string(16382, 'x')) << "half a line break is none";
    edit->SetSelection(16382, 16382);
    box.Press("Return");
    EXPECT_EQ(edit->TextLength(), 16382);
    EXPECT_EQ(beeps.Read(), 1);
    box.TypeKeys("y");
    EXPECT_EQ(edit->TextLength(), 16383);
    EXPECT_EQ(beeps.Read(), 0);
}

TEST_F(Edits, AMegabyteIntoAMemoKeepsWhatFits)
{
    auto box = OpenField(RES_MEMO, 16384);
    std::string pasted;
    while (pasted.size() < 1000000)
        pasted += "eine Zeile\n";
    box.Paste(FIELD, pasted);
    std::string expected;
    while (expected.size() + 12 <= 16383)
        expected += "eine Zeile\r\n";
    expected += "eine Z";
    expected.resize(16383);
    EXPECT_TRUE(edit->Text() == expected.substr(0, 16383));
    EXPECT_EQ(beeps.Read(), 1);
    edit->SetText("");
    box.Paste(FIELD, pasted + "ő");
    EXPECT_EQ(edit->TextLength(), 0);
    EXPECT_EQ(beeps.Read(), 1);
}

TEST_F(Edits, WithoutALimitAMemoTakesAMegabyte)
{
    auto box = OpenField(RES_MEMO);
    std::string pasted;
    std::string expected;
    while (pasted.size() < 1000000) {
        pasted += "eine Zeile von vielen\n";
        expected += "eine Zeile von vielen\r\n";
    }
    box.Paste(FIELD, pasted);
    EXPECT_TRUE(edit->Text() == expected);
    EXPECT_EQ(edit->TextLength(), static_cast<int>(expected.size()));
}

TEST_F(Edits, LinesOfAMemoArePartedByCrLfWhateverCameIn)
{
    const CASE table[] = {
        {"a\nb", "a\r\nb", 0},
        {"a\rb", "a\r\nb", 0},
        {"a\r\nb", "a\r\nb", 0},
        {"a\n\rb", "a\r\n\r\nb", 0},
        {"\n", "\r\n", 0},
        {"a\xE2\x80\xA8z", "a\r\nz", 0},
        {"a\xC2\xA0z\tb", "a\240z\tb", 0},
        {"Öl €", "\326l \200", 0},
        {"aő\nb", "", 1},
    };
    auto box = OpenField(RES_MEMO, 100);
    for (const CASE &row : table) {
        SCOPED_TRACE(row.expected);
        edit->SetText("");
        box.Paste(FIELD, row.given);
        EXPECT_EQ(edit->Text(), row.expected);
        EXPECT_EQ(beeps.Read(), row.beeps);
        edit->SetText("");
        box.DropText(FIELD, row.given);
        EXPECT_EQ(edit->Text(), row.expected) << "dropped";
        EXPECT_EQ(beeps.Read(), row.beeps);
        edit->SetText("");
        box.PasteByMenu(FIELD, row.given);
        EXPECT_EQ(edit->Text(), row.expected) << "by the menu";
        EXPECT_EQ(beeps.Read(), row.beeps);
        edit->SetText(row.expected);
        EXPECT_EQ(edit->Text(), row.expected);
        EXPECT_EQ(edit->TextLength(), static_cast<int>(std::strlen(row.expected)));
    }
    edit->SetText("a\nb\rc");
    EXPECT_EQ(edit->Text(), "a\r\nb\r\nc");
    box.Type(FIELD, "d\ne");
    EXPECT_EQ(edit->Text(), "d\r\ne");
    box.Press("Shift+Return");
    EXPECT_EQ(edit->Text(), "d\r\ne\r\n");
    edit->TakeFocus();
    box.Commit("ő");
    EXPECT_EQ(edit->Text(), "d\r\ne\r\n");
    EXPECT_EQ(beeps.Read(), 1);
    EXPECT_EQ(diary.Read(), "") << "Return stays in the memo";
}

TEST_F(Edits, TabLeavesAMemo)
{
    auto box = OpenField(RES_MEMO, 100);
    box.Type(FIELD, "a\tb");
    EXPECT_EQ(edit->Text(), "a");
    EXPECT_EQ(box.Text(OTHER), "b");
}

TEST_F(Edits, WhatIsCopiedFromAMemoComesBackAsItWas)
{
    auto box = OpenField(RES_MEMO, 100);
    edit->SetText("12\240000\r\n\200 \344\ttab");
    edit->TakeFocus();
    box.Press("Ctrl+C");
    edit->SetText("");
    box.Press("Ctrl+V");
    EXPECT_EQ(edit->Text(), "12\240000\r\n\200 \344\ttab");
}

TEST_F(Edits, TextsOfAllCharactersComeBackFromAMemo)
{
    OpenField(RES_MEMO);
    CHANCE chance(20);
    for (int i = 0; i < 50; ++i) {
        std::string text;
        for (int n = chance.Int(0, 399); n > 0; --n) {
            int c = 31 + chance.Int(0, 224);
            text += c == 31 ? std::string("\r\n") : std::string(1, static_cast<char>(c == 127 ? 9 : c));
        }
        edit->SetText(text.c_str());
        ASSERT_EQ(edit->Text(), text);
        edit->SetSelection(0, -1);
        edit->ReplaceSelection(text.c_str());
        ASSERT_EQ(edit->Text(), text);
    }
}

namespace
{
/// The same text and selection as a plain string: CR LF between the lines, positions within it at the line's
/// end.
struct TWIN {
    explicit TWIN(int aRoom) : room(aRoom) {}

    static std::string Lines(const std::string &given)
    {
        std::string lines;
        for (size_t i = 0; i < given.size(); ++i) {
            if (given[i] == '\r' && i + 1 < given.size() && given[i + 1] == '\n')
                continue;
            bool isBreak = given[i] == '\r' || given[i] == '\n';
            lines += isBreak ? std::string("\r\n") : std::string(1, given[i]);
        }
        return lines;
    }

    static std::string Cut(std::string lines, size_t left)
    {
        if (lines.size() <= left)
            return lines;
        if (left > 0 && lines[left - 1] == '\r')
            --left;
        lines.resize(left);
        return lines;
    }

    void Replace(const std::string &given)
    {
        std::string lines = Lines(given);
        std::string fitting = Cut(lines, static_cast<size_t>(room) - (text.size() - (end - start)));
        beeps += fitting.size() < lines.size();
        if (fitting.empty() && !given.empty())
            return;
        text.replace(start, end - start, fitting);
        start = end = start + fitting.size();
    }

    void Set(const std::string &given)
    {
        text = Cut(Lines(given), static_cast<size_t>(room));
        start = end = 0;
    }

    void Select(size_t a, size_t b)
    {
        start = Whole(std::min(a, b));
        end = Whole(std::max(a, b));
    }

    void Delete()
    {
        if (start == end && end < text.size())
            end += text[end] == '\r' ? 2 : 1;
        Erase();
    }

    void Back()
    {
        if (start == end && start > 0)
            start -= text[start - 1] == '\n' ? 2 : 1;
        Erase();
    }

    size_t Whole(size_t at) const
    {
        at = std::min(at, text.size());
        return at > 0 && text[at - 1] == '\r' ? at - 1 : at;
    }

    int room; // characters
    std::string text;
    size_t start = 0;
    size_t end = 0;
    int beeps = 0;

private:
    void Erase()
    {
        text.erase(start, end - start);
        end = start;
    }
};

std::string RandomPiece(CHANCE &chance)
{
    static const char *const parts[] = {"a", "\344\366\374", "\n", "\r\n", "\r", " ", "\200", "xyz ", "\t", ""};
    std::string piece;
    for (int n = chance.Int(0, 5); n > 0; --n)
        piece += parts[chance.Int(0, 9)];
    return piece;
}
} // namespace

TEST_F(Edits, RandomEditsOfAMemoAgreeWithAPlainString)
{
    auto box = OpenField(RES_MEMO, 121);
    TWIN twin(120);
    CHANCE chance(1);
    edit->TakeFocus();
    for (int step = 0; step < 4000; ++step) {
        SCOPED_TRACE(step);
        std::string piece = RandomPiece(chance);
        int a = chance.Int(0, 129);
        int b = chance.Int(0, 2) == 0 ? a + chance.Int(0, 29) : a;
        switch (chance.Int(0, 7)) {
        case 0:
        case 1:
            edit->SetSelection(a, b);
            twin.Select(static_cast<size_t>(a), static_cast<size_t>(b));
            break;
        case 2:
        case 3:
            edit->ReplaceSelection(piece.c_str());
            twin.Replace(piece);
            break;
        case 4:
            box.TypeKeys("ü\n");
            twin.Replace("\374");
            twin.Replace("\n");
            break;
        case 5:
            box.Press("Delete");
            twin.Delete();
            break;
        case 6:
            box.Press("Backspace");
            twin.Back();
            break;
        default:
            if (chance.Int(0, 19) == 0) {
                edit->SetText(piece.c_str());
                twin.Set(piece);
            }
        }
        ASSERT_EQ(edit->Text(), twin.text);
        ASSERT_EQ(edit->TextLength(), static_cast<int>(twin.text.size()));
        int start = -1;
        int end = -1;
        edit->GetSelection(start, end);
        ASSERT_EQ(start, static_cast<int>(twin.start));
        ASSERT_EQ(end, static_cast<int>(twin.end));
    }
    EXPECT_EQ(beeps.Read(), twin.beeps);
    EXPECT_GT(twin.beeps, 10) << "the limit was met";
}

TEST_F(Edits, WhatWasTakenFromAMemoIsUndoneStepByStep)
{
    auto box = OpenField(RES_MEMO, 200);
    edit->SetText("eins\r\nzwei\r\ndrei");
    edit->SetSelection(2, 12);
    EXPECT_EQ(box.SelectedText(FIELD), "ns\r\nzwei\r\n");
    edit->TakeFocus();
    edit->SetSelection(2, 12);
    edit->ReplaceSelection("x\r\ny");
    EXPECT_EQ(edit->Text(), "eix\r\nydrei");
    box.Press("Ctrl+Z");
    EXPECT_EQ(edit->Text(), "eins\r\nzwei\r\ndrei");
}
