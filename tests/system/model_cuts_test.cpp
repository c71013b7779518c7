// The sample models of the program folder, cut: read whole they load, cut anywhere before their last section
// ends they are refused. A model is a megabyte, and to read what is left of it after each of a million cuts
// takes hours; so the test cuts at every byte near each section's border and in steps between. ZUL_EVERY_CUT=1
// in the environment cuts at every byte: tools/soak does.
#include "support/memdisk.h"

#include "ker/emmodel.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>

namespace
{
std::vector<std::filesystem::path> ModelFiles()
{
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(ZUL_PROGRAM_FOLDER "/Modely"))
        if (entry.path().extension() == ".gim")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::string Bytes(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// Bytes of the item at `pos` of a sound model file.
size_t ItemLength(const std::string &bytes, size_t pos)
{
    unsigned char tag = bytes[pos];
    if (tag == CDE_END)
        return 1;
    if (tag == CDE_REAL)
        return 9;
    if (tag == CDE_STR)
        return 2 + static_cast<unsigned char>(bytes[pos + 1]);
    if (tag == CDE_HEADER)
        return 6 + static_cast<unsigned char>(bytes[pos + 1]);
    return 5; // a section or an integer
}

/// Lengths to cut the file to: all around sections and integers, and every `step`th.
std::set<size_t> Cuts(const std::string &bytes, size_t step)
{
    std::set<size_t> cuts;
    for (size_t pos = 0; pos < bytes.size(); pos += ItemLength(bytes, pos)) {
        unsigned char tag = bytes[pos];
        if (tag != CDE_REAL)
            for (size_t cut = pos; cut <= pos + ItemLength(bytes, pos) && cut <= bytes.size(); ++cut)
                cuts.insert(cut);
    }
    for (size_t cut = 0; cut < bytes.size(); cut += step)
        cuts.insert(cut);
    cuts.insert(bytes.size());
    return cuts;
}

XCODE LoadCut(const std::string &bytes, size_t length)
{
    MemPut("/mem/m.gim", bytes.substr(0, length));
    ModelRelease(ModelAcquire("m"));
    XCODE code = xCode;
    xCode = XNULL;
    return code;
}
} // namespace

TEST(SampleModels, AreRefusedWhereverTheyAreCut)
{
    const char *every = getenv("ZUL_EVERY_CUT");
    size_t step = every != NULL && strcmp(every, "1") == 0 ? 1 : 9973;
    SetModelFolder("\\mem");
    std::vector<std::filesystem::path> files = ModelFiles();
    EXPECT_GE(files.size(), 6u);
    for (const auto &path : files) {
        const std::string bytes = Bytes(path);
        MemDisk memory;
        for (size_t cut : Cuts(bytes, step)) {
            // The last two bytes are the ends of the last layer and of the table: a file may end before them.
            XCODE wanted = cut + 2 >= bytes.size() ? XNULL : XFREAD;
            ASSERT_STREQ(LoadCut(bytes, cut), wanted) << path << " cut to " << cut << " of " << bytes.size();
        }
    }
    SetModelFolder("");
}
