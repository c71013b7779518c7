// Typed files beside item-by-item stdio: tag and payload each with a call of its own. Both write and read the
// same records in the same iteration; the files must be equal byte by byte and so must be what is read. The
// counter `ratio` is the time of the typed file over that of stdio, each the best of all iterations.
#include "lib/cde.h"
#include "lib/xfail.h"
#include "twin.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "lib/xon.h"

namespace
{
/// The plain twin. Returns nothing about failures: a file that differs shows them.
class PlainFILE
{
public:
    PlainFILE(const char *path, const char *mode) : f(fopen(path, mode)) {}
    ~PlainFILE()
    {
        if (f)
            fclose(f);
    }

    void Close()
    {
        fclose(f);
        f = NULL;
    }
    void PutSection(int num) { Put(CDE_SECTION, &num, sizeof num); }
    void PutEnd() { Tag(CDE_END); }
    void PutInt(int value) { Put(CDE_INT, &value, sizeof value); }
    void PutReal(double value) { Put(CDE_REAL, &value, sizeof value); }
    void PutStr(const char *s)
    {
        unsigned char len = static_cast<unsigned char>(strlen(s));
        Put(CDE_STR, &len, 1);
        fwrite(s, 1, len, f);
    }
    void PutHeader(const char *type, int ver)
    {
        unsigned char len = static_cast<unsigned char>(strlen(type));
        Put(CDE_HEADER, &len, 1);
        fwrite(type, 1, len, f);
        fwrite(&ver, sizeof ver, 1, f);
    }

    int GetSection() { return Get<int>(CDE_SECTION); }
    int GetInt() { return Get<int>(CDE_INT); }
    double GetReal() { return Get<double>(CDE_REAL); }
    void GetStr(char *s, int max)
    {
        char stored[CdeMAXSTR];
        unsigned char len = Get<unsigned char>(CDE_STR);
        if (fread(stored, 1, len, f) != len)
            bad = true;
        size_t kept = len < max - 1 ? len : static_cast<size_t>(max - 1);
        memcpy(s, stored, kept);
        s[kept] = '\0';
    }
    int GetHeader(const char *type, int)
    {
        char stored[CdeMAXSTR];
        unsigned char len = Get<unsigned char>(CDE_HEADER);
        int ver = -1;
        if (fread(stored, 1, len, f) != len || fread(&ver, sizeof ver, 1, f) != 1 ||
            strncmp(stored, type, len) != 0)
            bad = true;
        return ver;
    }
    void EndSection(int) { Check(CDE_END); }
    bool bad = false;

private:
    FILE *f;

    void Tag(unsigned char tag) { fwrite(&tag, 1, 1, f); }
    void Put(unsigned char tag, const void *payload, size_t size)
    {
        Tag(tag);
        fwrite(payload, size, 1, f);
    }
    void Check(unsigned char tag)
    {
        unsigned char found = 0;
        if (fread(&found, 1, 1, f) != 1 || found != tag)
            bad = true;
    }
    template <class T>
    T Get(unsigned char tag)
    {
        T value = {};
        Check(tag);
        if (fread(&value, sizeof value, 1, f) != 1)
            bad = true;
        return value;
    }
};

/// A sum over all that is read, by bits, in order.
class CHECKSUM
{
public:
    uint64_t sum = 0;

    void Add(double value)
    {
        uint64_t bits;
        memcpy(&bits, &value, sizeof bits);
        sum = sum * 31 + bits;
    }
    void Add(const char *s) { sum = sum * 31 + std::hash<std::string_view>()(s); }
};

// The records, written and read by either file. `__test` costs the plain file its two loads as well.

template <class F>
void WriteHall(F &file)
{
    __enter
        file.PutSection(0); __test;
        for (int i = 0; i < 5000; ++i) {
            file.PutSection(0); __test;
            for (int j = 0; j < 3; ++j) {
                file.PutReal(i * 0.37 + j); __test;
            }
            file.PutReal(i * 0.01); __test;
            file.PutReal(0.5); __test;
            file.PutStr("Strahler D 12-4"); __test;
            file.PutInt(i % 3); __test;
            file.PutReal(11500); __test;
            file.PutReal(0.62); __test;
            file.PutStr("an der Decke, Reihe 7"); __test;
            file.PutInt(0); __test;
            file.PutEnd(); __test;
        }
        file.PutEnd(); __test;
    __point
    __treat
}

template <class F>
uint64_t ReadHall(F &file)
{
    CHECKSUM read;
    __enter
        char text[64];
        file.GetSection(); __test;
        for (int i = 0; i < 5000; ++i) {
            file.GetSection(); __test;
            for (int j = 0; j < 5; ++j) {
                double value = file.GetReal(); __test;
                read.Add(value);
            }
            file.GetStr(text, sizeof text); __test;
            read.Add(text);
            int kind = file.GetInt(); __test;
            read.Add(kind);
            for (int j = 0; j < 2; ++j) {
                double value = file.GetReal(); __test;
                read.Add(value);
            }
            file.GetStr(text, sizeof text); __test;
            read.Add(text);
            int flags = file.GetInt(); __test;
            read.Add(flags);
            file.EndSection(1); __test;
        }
        file.EndSection(1); __test;
    __point
    __treat
    return read.sum;
}

enum { LAYERS = 16, COLUMNS = 121, ROWS = 121 }; // of reals: 2.1 MB

template <class F>
void WriteModel(F &file)
{
    __enter
        file.PutHeader("IE/GIM", 1); __test;
        file.PutSection(0); __test;
        file.PutInt(LAYERS); __test;
        for (int iz = 0; iz < LAYERS; ++iz) {
            file.PutInt(COLUMNS); __test;
            file.PutInt(ROWS); __test;
            for (int i = 0; i < COLUMNS * ROWS; ++i) {
                file.PutReal(iz + i * 0.125); __test;
            }
        }
        file.PutEnd(); __test;
    __point
    __treat
}

template <class F>
uint64_t ReadModel(F &file)
{
    CHECKSUM read;
    __enter
        file.GetHeader("IE/GIM", 1); __test;
        file.GetSection(); __test;
        int layers = file.GetInt(); __test;
        for (int iz = 0; iz < layers; ++iz) {
            int columns = file.GetInt(); __test;
            int rows = file.GetInt(); __test;
            for (int i = 0; i < columns * rows; ++i) {
                double value = file.GetReal(); __test;
                read.Add(value);
            }
        }
        file.EndSection(1); __test;
    __point
    __treat
    return read.sum;
}

/// A folder that goes with the benchmark.
class FOLDER
{
public:
    FOLDER()
    {
        char pattern[] = "/tmp/typed_files_XXXXXX";
        path = mkdtemp(pattern) ? pattern : ".";
    }
    ~FOLDER() { std::filesystem::remove_all(path); }
    std::string path;
};

std::string BytesOf(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

using TypedWriter = void (*)(CdeFILE &);
using PlainWriter = void (*)(PlainFILE &);
using TypedReader = uint64_t (*)(CdeFILE &);
using PlainReader = uint64_t (*)(PlainFILE &);

/// Takes a failure off and gives it to the benchmark.
void Settle(benchmark::State &state)
{
    if (xCode == XNULL)
        return;
    state.SkipWithError(xCode);
    xCode = XNULL;
}

void Write(benchmark::State &state, TypedWriter typedWriter, PlainWriter plainWriter)
{
    FOLDER folder;
    std::string typedPath = folder.path + "/typed";
    std::string plainPath = folder.path + "/plain";
    double typedTime = 1e9, plainTime = 1e9;
    for (auto _ : state) {
        std::filesystem::remove(typedPath);
        std::filesystem::remove(plainPath);
        double start = Seconds();
        CdeFILE typed;
        typed.Open(typedPath.c_str(), "c");
        typedWriter(typed);
        typed.Close();
        double took = Seconds() - start;
        start = Seconds();
        PlainFILE plain(plainPath.c_str(), "w+b");
        plainWriter(plain);
        plain.Close();
        plainTime = std::min(plainTime, Seconds() - start);
        typedTime = std::min(typedTime, took);
        state.SetIterationTime(took);
    }
    Settle(state);
    std::string bytes = BytesOf(typedPath);
    if (bytes != BytesOf(plainPath))
        state.SkipWithError("the files differ");
    state.counters["ratio"] = typedTime / plainTime;
    state.counters["bytes"] = static_cast<double>(bytes.size());
    state.counters["checksum"] = static_cast<double>(std::hash<std::string>()(bytes) % 1000000);
}

void Read(benchmark::State &state, TypedWriter writer, TypedReader typedReader, PlainReader plainReader,
          bool walk)
{
    FOLDER folder;
    std::string path = folder.path + "/file";
    CdeFILE file;
    file.Open(path.c_str(), "c");
    writer(file);
    file.Close();
    double typedTime = 1e9, plainTime = 1e9, walkTime = 1e9;
    uint64_t typedSum = 0, plainSum = 1;
    for (auto _ : state) {
        double start = Seconds();
        file.Open(path.c_str(), "o");
        if (walk)
            file.Walk();
        double walked = Seconds() - start;
        typedSum = typedReader(file);
        file.Close();
        double took = Seconds() - start;
        start = Seconds();
        PlainFILE plain(path.c_str(), "r+b");
        plainSum = plainReader(plain);
        plain.Close();
        plainTime = std::min(plainTime, Seconds() - start);
        typedTime = std::min(typedTime, took);
        walkTime = std::min(walkTime, walked);
        if (plain.bad)
            state.SkipWithError("the plain reader failed");
        state.SetIterationTime(took);
    }
    Settle(state);
    if (typedSum != plainSum)
        state.SkipWithError("the readers differ");
    state.counters["ratio"] = typedTime / plainTime;
    if (walk)
        state.counters["walk_of_reading"] = walkTime / (typedTime - walkTime);
    state.counters["checksum"] = static_cast<double>(typedSum % 1000000);
}
} // namespace

BENCHMARK_CAPTURE(Write, hall, WriteHall<CdeFILE>, WriteHall<PlainFILE>)->UseManualTime();
BENCHMARK_CAPTURE(Write, model, WriteModel<CdeFILE>, WriteModel<PlainFILE>)->UseManualTime();
BENCHMARK_CAPTURE(Read, hall, WriteHall<CdeFILE>, ReadHall<CdeFILE>, ReadHall<PlainFILE>, false)
    ->UseManualTime();
BENCHMARK_CAPTURE(Read, model, WriteModel<CdeFILE>, ReadModel<CdeFILE>, ReadModel<PlainFILE>, false)
    ->UseManualTime();
BENCHMARK_CAPTURE(Read, hall_walked, WriteHall<CdeFILE>, ReadHall<CdeFILE>, ReadHall<PlainFILE>, true)
    ->UseManualTime();
BENCHMARK_CAPTURE(Read, model_walked, WriteModel<CdeFILE>, ReadModel<CdeFILE>, ReadModel<PlainFILE>, true)
    ->UseManualTime();

BENCHMARK_MAIN();
