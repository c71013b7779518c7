// The dialogs of introduction and closing text: texts of all lengths on their way into the report and back,
// byte for byte, and the value and the field that a text of 16 KB needs.
#include "support/chance.h"
#include "support/child.h"
#include "zuldlgcase.h"
#include "usr/zulartic.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace
{
using testdoor::DialogBox;

enum { HEAD = 100, TEXT = 101, AUTHOR = 102 };
const char missing[] = "Wert muss eingegeben, bzw. gewählt werden.";
const char source[] = "usr/zulartic_dialogs.cpp";
const size_t LONGEST = 16383;

/// Lines of words with umlauts and other characters, parted by CR LF, with empty lines; exactly so long.
std::string LongText(size_t length)
{
    CHANCE chance(5);
    const char *const words[] = {"Halle",
                                 "W\xE4rme",
                                 "Stra\xDF"
                                 "e",
                                 "\xD6l",
                                 "m\xB2",
                                 "\x80",
                                 "%s",
                                 "100%",
                                 "a_b",
                                 "c^d",
                                 "e~f",
                                 "g!h",
                                 "K&L",
                                 "\"x\"",
                                 "\\n",
                                 "\t."};
    std::string text;
    while (text.size() < length) {
        text += chance.Of(words);
        text += chance.One(9) ? "\r\n" : " ";
        text += chance.One(30) ? "\r\n" : "";
    }
    text.resize(length);
    if (text.back() == '\r') // no half of a line break
        text.back() = '.';
    return text;
}

void Fill(char *to, const std::string &text)
{
    std::memcpy(to, text.c_str(), text.size() + 1);
}

class TextDialogs : public DialogCase
{
protected:
    TextDialogs() : conclusion("Schlußfolgerung", 20010203)
    {
        Fill(article.head, "Entwurf");
        Fill(article.text, "F\xFCr Halle 7");
        Fill(conclusion.head, "Schlu\xDF");
        Fill(conclusion.text, "Erste Zeile\r\n\r\nDritte Zeile");
        Fill(conclusion.author, "M. M\xFCller");
    }

    bool EditArticle(const USER &user)
    {
        InDialog(user);
        bool confirmed = ZulEditArticle(&article);
        EXPECT_STREQ(xCode, XNULL);
        return confirmed;
    }
    bool EditConclusion(const USER &user)
    {
        InDialog(user);
        bool confirmed = ZulEditConclusion(&conclusion);
        EXPECT_STREQ(xCode, XNULL);
        return confirmed;
    }
    static void Confirm(DialogBox &box) { EXPECT_EQ(PressOk(box), ""); }
    static void Leave(DialogBox &box) { box.Press("Esc"); }

    EmARTICLE article;
    EmCONCLUSION conclusion;
};

/// The closing text's dialog without waiting for its end.
struct OPENED {
    TZulConclusionData record;
    TZulConclusionDialog dialog;
    TZulEdit *edit; // the dialog's

    OPENED() : dialog(record), edit(dynamic_cast<TZulEdit *>(dialog.Controls()[1])) { dialog.Create(); }
};
} // namespace

TEST_F(TextDialogs, ShowTheirTextsAndGiveThemBack)
{
    EXPECT_TRUE(EditArticle([](DialogBox &box) {
        EXPECT_EQ(box.Caption(), "Einleitungstext");
        EXPECT_EQ(box.Text(HEAD), "Entwurf");
        EXPECT_EQ(box.Text(TEXT), "F\xFCr Halle 7");
        Confirm(box);
    }));
    EXPECT_STREQ(article.head, "Entwurf");
    EXPECT_STREQ(article.text, "F\xFCr Halle 7");
    EXPECT_EQ(article.level, 1);
    EXPECT_TRUE(EditConclusion([](DialogBox &box) {
        EXPECT_EQ(ToUtf8(box.Caption().c_str()), "Schlußtext");
        EXPECT_EQ(box.Text(HEAD), "Schlu\xDF");
        EXPECT_EQ(box.Text(TEXT), "Erste Zeile\r\n\r\nDritte Zeile");
        EXPECT_EQ(box.Text(AUTHOR), "M. M\xFCller");
        Confirm(box);
    }));
    EXPECT_STREQ(conclusion.head, "Schlu\xDF");
    EXPECT_STREQ(conclusion.text, "Erste Zeile\r\n\r\nDritte Zeile");
    EXPECT_STREQ(conclusion.author, "M. M\xFCller");
    EXPECT_EQ(conclusion.date, 20010203) << "the date is the document's business";
}

TEST_F(TextDialogs, TakeWhatIsTyped)
{
    EXPECT_TRUE(EditArticle([](DialogBox &box) {
        box.Type(HEAD, "Halle Süd");
        box.Type(TEXT, "eins\nzwei");
        Confirm(box);
    }));
    EXPECT_STREQ(article.head, "Halle S\xFC"
                               "d");
    EXPECT_STREQ(article.text, "eins\r\nzwei");
    EXPECT_TRUE(EditConclusion([](DialogBox &box) {
        box.Type(HEAD, "Ende");
        box.Type(TEXT, "Größe: 5 €\n\nGruß");
        box.Type(AUTHOR, "Jürgen");
        Confirm(box);
    }));
    EXPECT_STREQ(conclusion.head, "Ende");
    EXPECT_STREQ(conclusion.text, "Gr\xF6\xDF"
                                  "e: 5 \x80\r\n\r\nGru\xDF");
    EXPECT_STREQ(conclusion.author, "J\xFCrgen");
}

TEST_F(TextDialogs, AskForAHeading)
{
    auto refuse = [](DialogBox &box) {
        for (const char *input : {"", "    "}) {
            box.Type(HEAD, input);
            EXPECT_EQ(PressOk(box), missing);
            EXPECT_EQ(box.Focus(), HEAD);
        }
        box.Paste(HEAD, "\r\n");
        EXPECT_EQ(PressOk(box), missing);
        box.Press("Esc");
    };
    EXPECT_FALSE(EditArticle(refuse));
    EXPECT_FALSE(EditConclusion(refuse));
    EXPECT_STREQ(article.head, "Entwurf");
    EXPECT_STREQ(conclusion.head, "Schlu\xDF");
}

TEST_F(TextDialogs, EmptyATextThatWasEmptied)
{
    auto empty = [](DialogBox &box) {
        box.Type(TEXT, "");
        Confirm(box);
    };
    EXPECT_TRUE(EditArticle(empty));
    EXPECT_STREQ(article.text, "");
    EXPECT_STREQ(article.head, "Entwurf");
    EXPECT_TRUE(EditConclusion([](DialogBox &box) {
        box.Type(TEXT, "");
        box.Type(AUTHOR, "");
        Confirm(box);
    }));
    EXPECT_STREQ(conclusion.text, "");
    EXPECT_STREQ(conclusion.author, "");
    EXPECT_STREQ(conclusion.head, "Schlu\xDF");
    EXPECT_TRUE(EditConclusion([](DialogBox &box) {
        EXPECT_EQ(box.Text(TEXT), "");
        EXPECT_EQ(box.Text(AUTHOR), "");
        Confirm(box);
    })) << "and an empty one stays";
    EXPECT_STREQ(conclusion.text, "");
}

TEST_F(TextDialogs, ChangeNothingWhenTheyAreLeft)
{
    const std::function<void(DialogBox &)> ways[] = {
        [](DialogBox &box) { box.Press("Esc"); },
        [](DialogBox &box) { box.Click(WIN_ID_CANCEL); },
        [](DialogBox &box) { box.CloseByFrame(); },
    };
    for (const auto &leave : ways) {
        auto user = [&leave](DialogBox &box) {
            box.Type(HEAD, "anders");
            box.Type(TEXT, "anders");
            leave(box);
        };
        EXPECT_FALSE(EditArticle(user));
        EXPECT_FALSE(EditConclusion(user));
        EXPECT_STREQ(article.head, "Entwurf");
        EXPECT_STREQ(article.text, "F\xFCr Halle 7");
        EXPECT_STREQ(conclusion.head, "Schlu\xDF");
        EXPECT_STREQ(conclusion.text, "Erste Zeile\r\n\r\nDritte Zeile");
        EXPECT_STREQ(conclusion.author, "M. M\xFCller");
    }
}

TEST_F(TextDialogs, HoldNoMoreThanTheirTextsHave)
{
    const std::string letters(400, 'x');
    auto paste = [&letters](DialogBox &box, int id) {
        box.Paste(id, letters);
        return box.Text(id).size();
    };
    EXPECT_TRUE(EditArticle([&](DialogBox &box) {
        EXPECT_EQ(paste(box, HEAD), 255u);
        EXPECT_EQ(paste(box, TEXT), 255u);
        box.TypeKeys("y");
        EXPECT_EQ(box.Text(TEXT), std::string(255, 'x')) << "full";
        Confirm(box);
    }));
    EXPECT_EQ(std::string(article.head), std::string(255, 'x'));
    EXPECT_EQ(std::string(article.text), std::string(255, 'x'));
    EXPECT_TRUE(EditConclusion([&](DialogBox &box) {
        EXPECT_EQ(paste(box, HEAD), 255u);
        EXPECT_EQ(paste(box, AUTHOR), 31u);
        Confirm(box);
    }));
    EXPECT_EQ(std::string(conclusion.head), std::string(255, 'x'));
    EXPECT_EQ(std::string(conclusion.author), std::string(31, 'x'));
}

TEST_F(TextDialogs, CountALineBreakOfTheIntroductionAsTwoCharacters)
{
    std::string lines; // 127 line breaks and a letter
    for (int i = 0; i < 127; ++i)
        lines += "\n";
    EXPECT_TRUE(EditArticle([&lines](DialogBox &box) {
        box.Paste(TEXT, "a" + lines + "bcd");
        EXPECT_EQ(box.Text(TEXT).size(), 255u);
        Confirm(box);
    }));
    EXPECT_EQ(std::strlen(article.text), 255u);
    EXPECT_EQ(article.text[0], 'a');
    EXPECT_EQ(std::string(article.text + 251), "\r\n\r\n");
}

TEST_F(TextDialogs, ShowAnIntroductionAtItsLimitWhole)
{
    std::string text = LongText(255);
    Fill(article.text, text);
    Fill(article.head, std::string(255, '\xDC'));
    EXPECT_TRUE(EditArticle([&text](DialogBox &box) {
        EXPECT_EQ(box.Text(TEXT), text);
        EXPECT_EQ(box.Text(HEAD), std::string(255, '\xDC'));
        Confirm(box);
    }));
    EXPECT_EQ(article.text, text);
    EXPECT_EQ(article.head, std::string(255, '\xDC'));
}

TEST_F(TextDialogs, CarryALongClosingTextByteForByte)
{
    for (size_t length : {size_t{1}, size_t{255}, size_t{256}, size_t{1023}, size_t{8000}, LONGEST}) {
        std::string text = LongText(length);
        ASSERT_EQ(text.size(), length);
        Fill(conclusion.text, text);
        EXPECT_TRUE(EditConclusion([&text](DialogBox &box) {
            EXPECT_EQ(box.Text(TEXT), text);
            Confirm(box);
        }));
        EXPECT_EQ(conclusion.text, text) << length;
    }
}

TEST_F(TextDialogs, TakeALongClosingTextFromTheClipboardAndCutWhatIsMore)
{
    std::string text = LongText(20000);
    std::string pasted = ToUtf8(text.c_str());
    EXPECT_TRUE(EditConclusion([&](DialogBox &box) {
        box.Paste(TEXT, pasted);
        box.Press("Ctrl+End");
        box.TypeKeys("x");
        Confirm(box);
    }));
    std::string stored = conclusion.text;
    EXPECT_GE(stored.size(), LONGEST - 1); // no half of a line break
    EXPECT_LE(stored.size(), LONGEST);
    size_t same = std::min(stored.size(), LONGEST - 1);
    EXPECT_EQ(stored.substr(0, same), text.substr(0, same));
}

TEST_F(TextDialogs, KeepCarriageReturnAndLineFeedTogetherAtTheLimit)
{
    EXPECT_TRUE(EditConclusion([](DialogBox &box) {
        box.Paste(TEXT, std::string(LONGEST - 1, 'x') + "\nmehr");
        Confirm(box);
    }));
    EXPECT_EQ(std::string(conclusion.text), std::string(LONGEST - 1, 'x'));
}

TEST_F(TextDialogs, BreakALineWithReturnInATextOnly)
{
    EXPECT_TRUE(EditConclusion([](DialogBox &box) {
        box.Type(TEXT, "a");
        box.Press("Return");
        box.TypeKeys("b");
        EXPECT_EQ(box.Text(TEXT), "a\r\nb");
        box.Press("Alt+N");
        EXPECT_EQ(box.Focus(), AUTHOR);
        box.Press("Return");
    }));
    EXPECT_STREQ(conclusion.text, "a\r\nb");
}

TEST_F(TextDialogs, OfTheClosingTextMoveItWithoutTheFrameworksValues)
{
    OPENED opened;
    ASSERT_NE(opened.edit, nullptr);
    std::string text = LongText(LONGEST);
    auto value = std::make_unique<TZulLargeStr>();
    auto read = std::make_unique<TZulLargeStr>();
    value->Set(EDC_VVAL, text.c_str());
    opened.edit->SetValue(*value);
    opened.edit->GetValue(*read);
    EXPECT_EQ(read->id, EDC_VVAL);
    EXPECT_EQ(read->text, text);

    value->id = EDC_VUDF;
    opened.edit->SetValue(*value);
    EXPECT_EQ(opened.edit->Text(), "") << "an undefined value shows as empty";
    opened.edit->GetValue(*read);
    EXPECT_EQ(read->id, EDC_VUDF) << "and empty reads as undefined";

    opened.edit->SetText("  ");
    opened.edit->GetValue(*read);
    EXPECT_EQ(read->id, EDC_VVAL) << "blanks are a text";
    EXPECT_STREQ(read->text, "  ");
}

TEST_F(TextDialogs, OfTheClosingTextTellWhatDoesNotFit)
{
    OPENED opened;
    opened.edit->SetText(std::string(300, 'x').c_str());
    TEdcLongStr small;
    opened.edit->GetValue(small);
    EXPECT_EQ(small.id, EDC_VUDF);
    EXPECT_EQ(std::string(small.text), std::string(255, 'x'));
}

TEST_F(TextDialogs, OfTheClosingTextOfferTheSelection)
{
    OPENED opened;
    opened.edit->SetText("eins\r\nzwei\r\ndrei");
    opened.edit->SetSelection(6, 10);
    int start = 0, end = 0;
    opened.edit->GetSelection(start, end);
    EXPECT_EQ(start, 6);
    EXPECT_EQ(end, 10);
    opened.edit->ReplaceSelection("zwo\r\nund");
    EXPECT_EQ(opened.edit->Text(), "eins\r\nzwo\r\nund\r\ndrei");
    opened.edit->SetSelection(0, -1);
    opened.edit->GetSelection(start, end);
    EXPECT_EQ(start, 0);
    EXPECT_EQ(end, opened.edit->TextLength());
}

TEST(TextDialogsWithoutAText, AreAFaultOfTheProgram)
{
    TestApplication();
    EXPECT_TRUE(AbortsOnAssertion("articObj != NULL", source, [] { ZulEditArticle(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("conclObj != NULL", source, [] { ZulEditConclusion(NULL); }));
}

TEST(LargeStrings, HoldSixteenKilobytesWithTheTerminator)
{
    auto value = std::make_unique<TZulLargeStr>();
    EXPECT_EQ(value->id, EDC_VUDF);
    EXPECT_EQ(value->max, 16384);
    EXPECT_STREQ(value->text, "");
    EXPECT_EQ(value->Size(), static_cast<int>(sizeof(TZulLargeStr)));
    *value = std::string(LONGEST, 'x').c_str();
    EXPECT_EQ(value->id, EDC_VVAL);
    EXPECT_EQ(std::strlen(value->text), LONGEST);
    *value = std::string(LONGEST + 1, 'y').c_str();
    EXPECT_EQ(value->id, EDC_VUDF);
    EXPECT_EQ(std::string(value->text), std::string(LONGEST, 'y')) << "cut";
}

TEST(LargeStrings, AreCopiedWithTheirText)
{
    auto value = std::make_unique<TZulLargeStr>();
    *value = "Text";
    auto copy = std::make_unique<TZulLargeStr>(*value);
    auto other = std::make_unique<TZulLargeStr>();
    *other = *value;
    *value = "anders";
    for (const TZulLargeStr *taken : {copy.get(), other.get()}) {
        EXPECT_EQ(taken->id, EDC_VVAL);
        EXPECT_STREQ(taken->text, "Text");
        EXPECT_NE(taken->text, value->text) << "each has its own storage";
    }
    char *own = copy->text;
    copy->text = NULL;
    copy->BindText();
    EXPECT_EQ(copy->text, own);
}

TEST(LargeStrings, StandInARecordThatIsWalkedByTheirSize)
{
    auto record = std::make_unique<TZulConclusionData>();
    char *at = reinterpret_cast<char *>(static_cast<TEdcValue *>(&record->head));
    at += record->head.Size();
    EXPECT_EQ(at, reinterpret_cast<char *>(static_cast<TEdcValue *>(&record->text)));
    at += record->text.Size();
    EXPECT_EQ(at, reinterpret_cast<char *>(static_cast<TEdcValue *>(&record->author)));
}
