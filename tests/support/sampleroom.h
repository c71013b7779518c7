// Random halls with all that a hall can hold, built through the kernel, and a hall file's way through memory.
// Small on purpose: some kilobytes, so that a test can afford hundreds of them. Free of the test framework,
// since the fuzz targets use it too.
#ifndef TESTS_SUPPORT_SAMPLEROOM_H
#define TESTS_SUPPORT_SAMPLEROOM_H

#include "ker/emroom.h"
#include "support/chance.h"

#include <memory>
#include <string>

/// A few small models. They stay in the kernel's cache for the life of this object, so that a hall that names
/// them is read without touching a model folder.
class SAMPLEMODELS
{
public:
    enum { COUNT = 5 };

    SAMPLEMODELS(); // through a folder of its own, which is gone again when it returns
    ~SAMPLEMODELS();
    SAMPLEMODELS(const SAMPLEMODELS &) = delete;
    SAMPLEMODELS &operator=(const SAMPLEMODELS &) = delete;

    EmMODEL *Model(int i) const { return models[i]; } // view

    /// One of them, made anew and in no cache: the caller deletes it.
    static EmMODEL *Make(int i);

private:
    EmMODEL *models[COUNT]; // counted
};

/// The most of each kind that a random hall gets.
struct SAMPLECOUNTS {
    int emitters = 6;
    int airHeaters = 3;
    int holes = 2; // a surface
    int zones = 3;
    int textLength = 200; // characters of each text, as far as its field takes them
};

/// A hall of 1 to 120 m with random contents; the same for the same start.
std::unique_ptr<EmROOM> MakeSampleRoom(unsigned start, const SAMPLEMODELS &models,
                                       const SAMPLECOUNTS &counts = SAMPLECOUNTS());

/// A hall in which nothing is missing: each model, openings on all six surfaces, all texts.
std::unique_ptr<EmROOM> MakeFullRoom(const SAMPLEMODELS &models);

/// A hall without size, as it is made before a file is read into it.
std::unique_ptr<EmROOM> MakeEmptyRoom();

/// What the hall's file holds. A failure is left pending.
std::string RoomBytes(const EmROOM &room);
/// Reads a hall from bytes. A failure is left pending, with the room as far as it was read.
std::unique_ptr<EmROOM> RoomOfBytes(const std::string &bytes);

/// The pending failure, taken off.
XCODE TakeFailure();

/// Asks a room all that the program asks, at some points of it; the sum of the answers, so that none is left
/// out. For halls of any content: no answer has to be finite.
double AskAll(EmROOM &room);

#endif
