// The manual that the build prints, and the tool that prints it.
#include "support/folder.h"
#include "support/pdftext.h"
#include "support/runprogram.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
const std::string manual = std::string(ZUL_PROGRAM_FOLDER) + "/Torvane.pdf";

class Manual : public testing::Test
{
protected:
    ProgramRun Make(std::vector<std::string> args)
    {
        args.insert(args.begin(), MKMANUAL_PROGRAM);
        return RunProgram(args, folder.path);
    }

    FOLDER folder;
};

const PdfWord *Find(const std::vector<PdfWord> &words, const std::string &text)
{
    auto found =
        std::find_if(words.begin(), words.end(), [&](const PdfWord &word) { return word.text == text; });
    return found == words.end() ? NULL : &*found;
}
} // namespace

TEST_F(Manual, HasItsChaptersInOrderAndANumberOnEachPage)
{
    std::vector<PdfPage> pages = PdfPages(manual);
    std::vector<PdfWord> words = PdfWords(manual);
    EXPECT_GE(pages.size(), 4u);
    EXPECT_EQ(PdfTitle(manual), "Zulerion – Handbuch");
    std::string heads; // words as tall as a chapter's
    for (const PdfWord &word : words)
        if (word.bottom - word.y > 17 && word.bottom - word.y < 25)
            heads += word.text + " ";
    EXPECT_EQ(heads, "Überblick Programmstart Neue Halle Pläne Dialoge Auswertung Bericht und Druck Kataloge ");
    for (int page = 1; page <= static_cast<int>(pages.size()); ++page)
        EXPECT_TRUE(std::any_of(words.begin(), words.end(), [page](const PdfWord &word) {
            return word.page == page && word.y > 780 && word.text == std::to_string(page);
        })) << page;
    for (const PdfWord &word : words)
        EXPECT_TRUE(word.x > 70 && word.right < 540 && word.bottom < 810) << word.text;
}

TEST_F(Manual, EachMarkHasItsPlace)
{
    folder.Put("a.txt",
               "= Titel\n\n== Kapitel\nEin Absatz\nin zwei Zeilen.\n- Punkt\n  geht weiter\n12. Schritt\n"
               "| Wort | Erklärung\n=== Abschnitt\n\nm^2^~hoch\n");
    ProgramRun run = Make({"a.pdf", "a.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    std::vector<PdfWord> words = PdfWords(folder.Path("a.pdf"));
    auto place = [&](const char *text) { return *Find(words, text); };
    for (const char *text :
         {"Titel", "Kapitel", "Absatz", "Punkt", "12.", "Schritt", "Wort", "Erklärung", "Abschnitt"})
        ASSERT_TRUE(Find(words, text)) << text;
    EXPECT_NEAR(place("Ein").y, place("Zeilen.").y, 0.1) << "lines of a paragraph flow";
    EXPECT_NEAR(place("•").y, place("Punkt").y, 0.1);
    EXPECT_LT(place("•").right, place("Punkt").x);
    EXPECT_NEAR(place("weiter").y, place("Punkt").y, 0.1);
    EXPECT_NEAR(place("12.").y, place("Schritt").y, 0.1);
    EXPECT_NEAR(place("Wort").y, place("Erklärung").y, 0.5);
    EXPECT_GT(place("Erklärung").x, place("Wort").right + 72);
    EXPECT_GT(place("Abschnitt").y, place("Wort").y);
}

TEST_F(Manual, LongChaptersGoOnOverPages)
{
    std::string text = "= Titel\n\n";
    for (int i = 1; i <= 200; ++i)
        text += "Absatz" + std::to_string(i) + "\n\n";
    folder.Put("a.txt", text);
    ASSERT_EQ(Make({"a.pdf", "a.txt"}).exitCode, 0);
    std::vector<PdfWord> words = PdfWords(folder.Path("a.pdf"));
    const PdfWord *last = Find(words, "Absatz200");
    ASSERT_TRUE(last) << "none is lost at the end";
    EXPECT_EQ(last->page, static_cast<int>(PdfPages(folder.Path("a.pdf")).size()));
    EXPECT_GT(last->page, 4);
}

TEST_F(Manual, WhatCannotBeReadIsNamed)
{
    folder.Put("a.txt", "= Titel\n");
    folder.Put("fremd.txt", "Τίτλος\n");
    folder.Put("leer.txt", "");
    EXPECT_EQ(Make({}).exitCode, 2);
    EXPECT_EQ(Make({"a.pdf"}).exitCode, 2);
    for (const char *name : {"fehlt.txt", "fremd.txt", "leer.txt"}) {
        ProgramRun run = Make({"a.pdf", name});
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.err, std::string("mkmanual: cannot read ") + name + "\n");
    }
    EXPECT_FALSE(folder.List().contains("a.pdf"));
    EXPECT_EQ(Make({"nirgends/a.pdf", "a.txt"}).exitCode, 1);
}
