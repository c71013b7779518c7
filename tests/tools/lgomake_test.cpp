// lgomake as its user meets it.
#include "usr/edcitem.h"

#include "support/folder.h"
#include "support/logofile.h"

#include "win/metafile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "lib/xon.h"

namespace
{
/// Runs the program with these arguments in a folder of its own, as a shell reads them.
class LgoMake : public testing::Test
{
protected:
    FOLDER folder;
    std::string out, err;

    int Run(const std::string &arguments)
    {
        std::string command = "cd " + folder.path + " && " LGOMAKE " " + arguments + " >" + shown.Path("out") +
                              " 2>" + shown.Path("err") + " </dev/null";
        int status = std::system(command.c_str());
        out = shown.Get("out");
        err = shown.Get("err");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    bool Loads(const char *name) const
    {
        SetLogoDirectory(folder.Name("").c_str());
        std::unique_ptr<TMetafile> image = LoadLogo(name);
        xCode = XNULL;
        SetLogoDirectory(NULL);
        return image != NULL;
    }

private:
    FOLDER shown;
};
} // namespace

TEST_F(LgoMake, MakesALogoFromEachKindOfMetafile)
{
    const std::pair<const char *, std::string> pictures[] = {
        {"a.emf", SmallEnhanced()}, {"b.wmf", PlaceableFile({}, SmallPlain())}, {"c.wmf", SmallPlain()}};
    for (const auto &[name, bytes] : pictures) {
        folder.Put(name, bytes);
        EXPECT_EQ(Run(std::string(name) + " Torvane.lgo"), 0) << err;
        EXPECT_EQ(out + err, "");
        EXPECT_EQ(folder.Get("Torvane.lgo"), LogoFile("Torvane.lgo", 'T', bytes));
        EXPECT_TRUE(Loads("Torvane.lgo"));
    }
    mkdir(folder.Path("unten").c_str(), 0700);
    EXPECT_EQ(Run("a.emf unten/Zulerio.lgo"), 0) << err;
    EXPECT_EQ(Run("../" + folder.path.substr(folder.path.rfind('/') + 1) + "/a.emf " + folder.Path("d.lgo")), 0)
        << err;
    EXPECT_TRUE(Loads("d.lgo"));
    EXPECT_EQ(folder.List(),
              (std::set<std::string>{"Torvane.lgo", "a.emf", "b.wmf", "c.wmf", "d.lgo", "unten"}));
}

TEST_F(LgoMake, TellsWhyThereIsNoLogoAndLeavesTheFormerOne)
{
    folder.Put("gut.emf", SmallEnhanced());
    folder.Put("kurz.emf", SmallEnhanced().substr(0, 150));
    folder.Put("leer.emf", "");
    folder.Put("da.lgo", "alt");
    const struct {
        const char *arguments, *message;
    } rows[] = {
        {"kurz.emf da.lgo", "\"kurz.emf\" ist keine Metadatei, die das Programm zeigen kann."},
        {"leer.emf da.lgo", "\"leer.emf\" ist keine Metadatei"},
        {"fehlt.emf da.lgo", "Datei \"fehlt.emf\" kann nicht geöffnet werden!"},
        {". da.lgo", "."},
        {"gut.emf nirgends/da.lgo", "Datei \"nirgends/da.lgo\""},
        {"gut.emf unten", "unten"},
    };
    mkdir(folder.Path("unten").c_str(), 0700);
    for (const auto &row : rows) {
        EXPECT_EQ(Run(row.arguments), 1) << row.arguments;
        EXPECT_EQ(out, "");
        EXPECT_NE(err.find(row.message), std::string::npos) << err;
    }
    EXPECT_EQ(folder.Get("da.lgo"), "alt");
    EXPECT_EQ(folder.List(), (std::set<std::string>{"da.lgo", "gut.emf", "kurz.emf", "leer.emf", "unten"}));
}

TEST_F(LgoMake, DoesNotReplaceThePictureItself)
{
    folder.Put("bild.lgo", SmallEnhanced());
    EXPECT_EQ(Run("bild.lgo ./bild.lgo"), 2);
    EXPECT_NE(err.find("Das Bild würde durch seine eigene Logodatei ersetzt."), std::string::npos) << err;
    EXPECT_EQ(folder.Get("bild.lgo"), SmallEnhanced());
}

TEST_F(LgoMake, RefusesANameThatALogoFileCannotHold)
{
    folder.Put("gut.emf", SmallEnhanced());
    EXPECT_EQ(Run("gut.emf n123456789012345678901234567.lgo"), 2); // 32 characters
    EXPECT_NE(err.find("Der Name der Logodatei hat mehr als 31 Zeichen."), std::string::npos) << err;
    EXPECT_EQ(Run("gut.emf n12345678901234567890123456.lgo"), 0) << err;
}

TEST_F(LgoMake, ExplainsItselfInGerman)
{
    EXPECT_EQ(Run("--help"), 0);
    EXPECT_NE(out.find("Aufruf: lgomake"), std::string::npos) << out;
    EXPECT_NE(out.find("höchstens 31 Zeichen"), std::string::npos) << out;
    EXPECT_EQ(err, "");
    for (const char *arguments : {"", "a.emf", "a.emf b.lgo c", "--quer a.emf b.lgo"}) {
        EXPECT_EQ(Run(arguments), 2) << arguments;
        EXPECT_EQ(err, "Genau ein Bild und eine Logodatei werden gebraucht.\nAufruf: lgomake BILD LOGO\n");
    }
}
