// lgomake: makes a logo file from a metafile. The picture is read before anything is written, and the logo
// behind it, so that what stands at the end is a logo that the program shows.
#include "lib/charstr.h"
#include "tools/console.h"
#include "tools/console_german.h"
#include "usr/edcitem.h"
#include "win/metafile.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <unistd.h>

#include "lib/xon.h"

namespace
{
enum { DONE = 0, FAILED = 1, MISUSED = 2 }; // exit status
enum { LOGO_NAME_MAX = 31 };                // characters

void CheckBack(const CdeFILENAME &logo)
{
    __enter
        CdeFILENAME folder = logo;
        folder.CutName();
        SetLogoDirectory(folder.IsBlank() ? "." : static_cast<const char *>(folder)); __test;
        LoadLogo(logo.GetName()); __test;
    __point
    __treat
}

int Misused(const char *text)
{
    std::fprintf(stderr, "%s\nAufruf: lgomake BILD LOGO\n", text);
    return MISUSED;
}

/// Says what is wrong with a picture that is none.
bool IsPicture(const CdeFILENAME &picture, std::string path)
{
    bool isSound = false;
    __enter
        ConsoleDisarm(path.data());
        isSound = LoadLogoPicture(picture) != NULL; __test;
    __point
        __repair;
        std::error_code unknown;
        if (xRepaired == XFOPEN && std::filesystem::is_regular_file(path, unknown) &&
            access(path.c_str(), R_OK) == 0)
            std::fprintf(stderr, "\"%s\" ist keine Metadatei, die das Programm zeigen kann.\n", path.c_str());
        else
            __report;
    __treat
    return isSound;
}

int Make(const std::string &picturePath, const std::string &logoPath)
{
    int status = FAILED;
    __enter
        CdeFILENAME picture, logo;
        std::error_code unknown; // of files that are not there
        ConsoleName(picture, picturePath.c_str(), XFOPEN); __test;
        ConsoleName(logo, logoPath.c_str(), XFCREATE); __test;
        if (std::filesystem::equivalent(picturePath, logoPath, unknown)) {
            status = Misused("Das Bild würde durch seine eigene Logodatei ersetzt.");
        } else if (StrLength(logo.GetName()) > LOGO_NAME_MAX) {
            status = Misused("Der Name der Logodatei hat mehr als 31 Zeichen.");
        } else if (IsPicture(picture, picturePath)) {
            MakeLogo(logo, picture); __test;
            CheckBack(logo); __test;
            status = DONE;
        }
    __point
        __repair;
        __report;
    __treat
    return status;
}

int Start(int argc, char **argv)
{
    int status = FAILED;
    __enter
        std::string picture, logo;
        CLI::App app(
            "Macht aus einer Metadatei (.emf, .wmf) eine Logodatei (.lgo). Die Logodatei merkt sich ihren "
            "Namen: Wird sie umbenannt, zeigt das Programm sie nicht mehr.",
            "lgomake");
        ConsoleSpeakGerman(app);
        app.add_option("BILD", picture, "Metadatei")->required()->type_name("");
        app.add_option("LOGO", logo, "Logodatei, Name mit höchstens 31 Zeichen")->required()->type_name("");
        try {
            app.parse(argc, argv);
            status = Make(picture, logo);
        } catch (const CLI::CallForHelp &) {
            ConsoleWrite(app.help()); __test;
            status = DONE;
        } catch (const CLI::ParseError &) {
            status = Misused("Genau ein Bild und eine Logodatei werden gebraucht.");
        }
    __point
        __repair;
        __report;
        status = FAILED;
    __treat
    return status;
}
} // namespace

int main(int argc, char **argv)
{
    ConsoleStart();
    return Start(argc, argv);
}
