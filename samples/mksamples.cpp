// Writes the sample halls: mksamples MODELS HALLS, the folder in which the models are found and the one that
// the hall files go to. Part of the build.
#include "lib/cde.h"
#include "samples/samplehalls.h"
#include "tools/console.h"

#include <cstdio>
#include <memory>

#include "lib/xon.h"

static void WriteHall(const CdeFILENAME &folder, int i)
{
    EmROOM *room = NULL;
    __enter
        CdeFILENAME name(folder);
        CdeFILE file;
        name.AddName(SampleHallFile(i));
        room = MakeSampleHall(i); __test;
        file.OpenReplacing(name); __test;
        room->Write(file); __test;
        file.Close(); __test;
        delete room;
    __point
        delete room;
    __treat
}

static int Run(const char *models, const char *halls)
{
    int status = 1;
    __enter
        CdeFILENAME folder;
        ConsoleName(folder, models, XFOPEN); __test;
        SetModelFolder(folder); __test;
        ConsoleName(folder, halls, XFCREATE); __test;
        for (int i = 0; i < SAMPLE_HALLS; ++i) {
            WriteHall(folder, i); __test;
        }
        status = 0;
    __point
        __repair;
        __report;
    __treat
    return status;
}

int main(int argc, char **argv)
{
    ConsoleStart();
    if (argc == 3)
        return Run(argv[1], argv[2]);
    std::fprintf(stderr, "Aufruf: mksamples MODELLE HALLEN\n");
    return 2;
}
