// What a designer waits for: the start of the program up to its first painted window, and a full update of the
// sample hall of 60 x 30 m, from the lists to the maps, laid out and painted. The start stands beside that of
// an empty window of the same toolkit, in processes of their own and by the clock on the wall; the update
// beside the same report evaluated point by point.
#include "screen.h"
#include "lib/cde.h"
#include "lib/disk.h"
#include "support/plainpass.h"
#include "usr/edcapp.h"
#include "usr/zuldoc.h"
#include "win/boxes.h"
#include "win/frame.h"

#include <cstring>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "lib/xon.h"

namespace
{
std::string InProgramFolder(const char *name)
{
    char folder[NATIVE_MAX];
    return NameFromNative(folder, ZUL_PROGRAM_FOLDER, sizeof folder) ? std::string(folder) + '\\' + name : name;
}

void FindData()
{
    SetLogoDirectory(InProgramFolder("").c_str());
    SetModelFolder(InProgramFolder("Modely").c_str());
}

/// The program as it starts, up to its first paint.
void StartProgram(int &argc, char **argv)
{
    TEdcApplication application(argc, argv);
    TEdcApplication::startUp = ZulStartUp;
    application.InitMainWindow();
    application.MainWindow()->Create();
    FindData();
    while (application.MainWindow()->Client().NeedsPaint())
        application.PumpWaitingMessages();
    _exit(0);
}

/// An empty window of the toolkit in a frame.
void StartEmpty(int &argc, char **argv)
{
    TApplication application("leer", argc, argv);
    TWindow client;
    TDecoratedFrame frame("leer", client);
    frame.Create();
    while (client.NeedsPaint())
        application.PumpWaitingMessages();
    _exit(0);
}

double WallSeconds()
{
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

/// From the start of a process of this program to its end.
double SecondsOf(const char *what)
{
    double start = WallSeconds();
    pid_t child = fork();
    if (child == 0) {
        execl("/proc/self/exe", "application_bench", what, static_cast<char *>(NULL));
        _exit(1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0) {
        fprintf(stderr, "%s fails\n", what);
        exit(1);
    }
    return WallSeconds() - start;
}

void Start(benchmark::State &state, const char *what)
{
    static double twin = 0;
    double least = 1e9;
    for (auto _ : state) {
        double seconds = SecondsOf(what);
        state.SetIterationTime(seconds);
        least = std::min(least, seconds);
    }
    if (strcmp(what, "--empty") == 0)
        twin = least;
    state.counters["times"] = twin / least;
}

/// The sample hall in the program's own document, in a window.
struct Hall {
    Hall()
    {
        static int argc = 1;
        static char name[] = "bench";
        static char *argv[] = {name, NULL};
        static TEdcApplication application(argc, argv);
        FindData();
        ZulStartUp();
        doc = static_cast<TZulDoc *>(AppDocument());
        doc->Create();
        testdoor::ResizeClient(*doc, WINDOW);
        testdoor::Enable();
        TZulRoomBlock::askParams = [](TZulUpdateData &) { return true; };
        std::string hall = ZUL_PROGRAM_FOLDER "/Beispiele/Produktionshalle.sc1";
        testdoor::Script([hall](testdoor::ModalBox &box) {
            box.FileName(hall);
            box.Answer(WIN_ID_OK);
        });
        doc->EvCommand(20005);
        testdoor::Settle();
    }
    ~Hall() { ZulShutDown(); }
    void Refresh(int level)
    {
        doc->Refresh(level);
        testdoor::Settle();
    }
    TZulDoc *doc;
};

void UpdateTwin(benchmark::State &state)
{
    Hall hall;
    TZulMapInfo info;
    ZulPassMap map;
    ZulHygieneMaps maps;
    auto work = [&] {
        hall.Refresh(EDC_UPDATE);
        PlainRunPass(*hall.doc->Room(), TZulUpdateData().Params(), info, map);
        PlainJudgePlan(*hall.doc->Room(), info, map, maps);
    };
    Measure(state, "update", true, work, [&] { return Checksum(info, map); });
}

void Update(benchmark::State &state)
{
    Hall hall;
    auto sum = [&hall] { return Checksum(hall.doc->MapInfo(), hall.doc->RoomBlock()->Map()); };
    Measure(
        state, "update", false, [&hall] { hall.Refresh(EDC_RECALC); }, sum);
}
} // namespace

BENCHMARK_CAPTURE(Start, Twin, "--empty")->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK_CAPTURE(Start, Program, "--start")->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(UpdateTwin)->Unit(benchmark::kMillisecond);
BENCHMARK(Update)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    if (argc > 1 && strcmp(argv[1], "--start") == 0)
        StartProgram(argc, argv);
    if (argc > 1 && strcmp(argv[1], "--empty") == 0)
        StartEmpty(argc, argv);
    return RunOffScreen(argc, argv);
}
