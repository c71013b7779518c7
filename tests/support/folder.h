// A folder of a test's own on the real disk, with what a test asks about files there.
#ifndef TESTS_SUPPORT_FOLDER_H
#define TESTS_SUPPORT_FOLDER_H

#include "lib/disk.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <unistd.h>

/// Made with the object and removed with it, whatever it holds.
class FOLDER
{
public:
    std::string path; // native

    FOLDER()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "zulerion_test_XXXXXX").string();
        if (mkdtemp(pattern.data()) == NULL)
            throw std::runtime_error("no folder for a test");
        path = pattern;
    }
    ~FOLDER() { std::filesystem::remove_all(path); }
    FOLDER(const FOLDER &) = delete;
    FOLDER &operator=(const FOLDER &) = delete;

    std::string Path(const std::string &file) const { return path + "/" + file; }
    /// The name of a file in it as the system has it.
    std::string Name(const std::string &file) const
    {
        char name[NATIVE_MAX];
        if (!NameFromNative(name, Path(file).c_str(), sizeof name))
            throw std::runtime_error("no name for " + file);
        return name;
    }
    void Put(const std::string &file, const std::string &bytes) const
    {
        std::ofstream(Path(file), std::ios::binary) << bytes;
    }
    std::string Get(const std::string &file) const
    {
        std::ifstream in(Path(file), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    std::set<std::string> List() const
    {
        std::set<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(path))
            names.insert(entry.path().filename().string());
        return names;
    }
};

/// While it lives, this is the temporary folder.
class TMPDIR
{
public:
    explicit TMPDIR(const std::string &path) : former(getenv("TMPDIR") ? getenv("TMPDIR") : "")
    {
        setenv("TMPDIR", path.c_str(), 1);
    }
    ~TMPDIR()
    {
        if (former.empty())
            unsetenv("TMPDIR");
        else
            setenv("TMPDIR", former.c_str(), 1);
    }
    TMPDIR(const TMPDIR &) = delete;
    TMPDIR &operator=(const TMPDIR &) = delete;

private:
    std::string former;
};

/// Descriptors that this process has open: equal before and after what leaks none.
inline int OpenDescriptors()
{
    int count = 0;
    for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

/// While it lives, a test that runs as the superuser has the rights of a plain user, so that marks of
/// permission count.
class PLAINUSER
{
public:
    PLAINUSER() : former(geteuid())
    {
        if (former == 0 && seteuid(65534) != 0)
            throw std::runtime_error("cannot give up the superuser's rights");
    }
    ~PLAINUSER()
    {
        if (former == 0 && seteuid(0) != 0)
            std::abort();
    }
    PLAINUSER(const PLAINUSER &) = delete;
    PLAINUSER &operator=(const PLAINUSER &) = delete;

private:
    uid_t former;
};

#endif
