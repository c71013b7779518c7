// A folder with a hall and its models, and zulcalc run on it as a child process. The model's intensity is a
// plane over the floor, so that every figure of the hall can be calculated by hand.
#ifndef TESTS_TOOLS_ZULCALC_FIXTURE_H
#define TESTS_TOOLS_ZULCALC_FIXTURE_H

#include "ker/emroom.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

struct ProgramEnd {
    int exitCode = -1; // of a program that exited, else -1
    std::string out;
    std::string err;
};

struct PngPicture {
    int width = 0;
    int height = 0;
    int bitDepth = 0;
    int colorType = 0;
    std::vector<std::vector<int>> palette; // red, green, blue
    std::vector<std::vector<int>> rows;    // palette indices
};

PngPicture ReadPng(const std::string &path);
std::string FileBytes(const std::string &path); // "" where there is none
bool FileExists(const std::string &path);

/// 6 x 4 x 5 m with one emitter of 2 kW in the middle, 4 m up.
class ZulcalcFolder : public testing::Test
{
protected:
    ZulcalcFolder();
    ~ZulcalcFolder() override;

    /// Makes the folder Modely the one of this process too.
    void UseModelFolder();
    /// Saves a model of 1 kW with 100 + slope * x W/m2, x in the emitter's coordinates.
    void MakeModel(const char *name, double slope);
    /// The hall's file, from `room`.
    void SaveHall(const std::string &name = "halle.sc1");
    EmEMITTER *Hang(const char *model, const AgPOINT &pos, double power);

    std::string Path(const std::string &name) const { return folder + '/' + name; }
    /// Runs zulcalc in the folder on its models, standard output to a file of that path if one is given.
    ProgramEnd Run(std::vector<std::string> args, const std::string &output = "");
    /// The figures of halle.sc1.
    nlohmann::json Figures(std::vector<std::string> args = {});

    std::string folder;
    std::string program; // the one that runs
    bool passModels = true;
    std::unique_ptr<EmROOM> room;
};

#endif
