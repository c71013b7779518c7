// The evaluation of a hall against its plain twin: the whole run, and the judging of the plan behind it. Each
// fast figure carries the ratio to the twin, taken in the same run, as its counter "times"; the results must
// agree bit for bit, or the program ends with an error.
#include "ker/emfield_lanes.h"
#include "support/fieldhall.h"
#include "support/plainpass.h"
#include "twin.h"

#include <functional>
#include <string>

namespace
{
struct CASE {
    const char *name;
    FIELDGRID hall;
    bool draft;
};

const CASE cases[] = {
    {"6_emitters", {20, 12, 6, 3, 2}, false},
    {"24_emitters", {60, 30, 8, 6, 4}, false},
    {"200_emitters", {200, 100, 12, 20, 10}, false},
    {"6_emitters_quarter_turn", {20, 12, 6, 3, 2, AgPI / 2}, false},
    {"24_emitters_quarter_turn", {60, 30, 8, 6, 4, AgPI / 2}, false},
    {"200_emitters_quarter_turn", {200, 100, 12, 20, 10, AgPI / 2}, false},
    {"6_emitters_aslant", {20, 12, 6, 3, 2, 0.7, 0.4}, false},
    {"24_emitters_aslant", {60, 30, 8, 6, 4, 0.7, 0.4}, false},
    {"200_emitters_aslant", {200, 100, 12, 20, 10, 0.7, 0.4}, false},
    {"6_emitters_draft", {20, 12, 6, 3, 2}, true},
    {"24_emitters_draft", {60, 30, 8, 6, 4}, true},
    {"200_emitters_draft", {200, 100, 12, 20, 10}, true},
};

enum WAY { PLAIN_TWIN, PORTABLE, BEST };

/// The twin has lanes of its own.
void MeasureWay(benchmark::State &state, const std::string &key, WAY way, const std::function<void()> &work,
                const std::function<unsigned long long()> &sum)
{
    EmSetLanes(way == PORTABLE ? &EmLanesPlain : NULL);
    Measure(state, key, way == PLAIN_TWIN, work, sum);
    EmSetLanes(NULL);
}

void Pass(benchmark::State &state, const CASE &c, WAY way)
{
    auto hall = MakeGridHall(c.hall);
    ZulPassParams params;
    params.draft = c.draft;
    params.height = 1;
    TZulMapInfo info;
    ZulPassMap map;
    auto run = way == PLAIN_TWIN ? PlainRunPass : ZulRunPass;
    MeasureWay(
        state, std::string("pass/") + c.name, way, [&] { run(hall->room, params, info, map); },
        [&] { return Checksum(info, map); });
}

void Judge(benchmark::State &state, const CASE &c, WAY way)
{
    auto hall = MakeGridHall(c.hall);
    ZulPassParams params;
    params.draft = c.draft;
    TZulMapInfo info;
    ZulPassMap map;
    ZulRunPass(hall->room, params, info, map);
    ZulHygieneMaps maps;
    auto run = way == PLAIN_TWIN ? PlainJudgePlan : ZulJudgePlan;
    MeasureWay(
        state, std::string("judge/") + c.name, way, [&] { run(hall->room, info, map, maps); },
        [&] { return Checksum(maps); });
}

/// The twin comes first: the others take their ratio to it.
void Register(const char *what, void (*function)(benchmark::State &, const CASE &, WAY), const CASE &c)
{
    static const char *const ways[] = {"plain_twin", "portable", "best"};
    for (WAY way : {PLAIN_TWIN, PORTABLE, BEST}) {
        std::string name = std::string(what) + "/" + c.name + "/" + ways[way];
        benchmark::RegisterBenchmark(name.c_str(), [=, &c](benchmark::State &state) {
            function(state, c, way);
        })->Unit(benchmark::kMillisecond);
    }
}
} // namespace

int main(int argc, char **argv)
{
    for (const CASE &c : cases) {
        Register("pass", Pass, c);
        Register("judge", Judge, c);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
