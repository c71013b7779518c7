// A dialog of a test's own lines, with controls that a test binds to them, and ears for beeps.
#ifndef TESTS_WIN_CONTROLFIXTURE_H
#define TESTS_WIN_CONTROLFIXTURE_H

#include "dialogfixture.h"
#include "support/metawriter.h"
#include "win/application.h"
#include "win/resources.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

/// Pictures of one colour, beside which the dialogs of the test stand.
class Pictures
{
protected:
    enum { SQUARE = 50, WIDE = 51 }; // 24 x 24 and 48 x 24 px, both red all over

    Pictures()
    {
        auto bytes = reinterpret_cast<const uint8_t *>(red.data());
        pictures[0] = {SQUARE, bytes, red.size(), 24, 24, 0, 0};
        pictures[1] = {WIDE, bytes, red.size(), 48, 24, 0, 0};
        pictureTables.pictures = pictures;
        pictureTables.pictureCount = 2;
        formerTables = SetResourceTables(&pictureTables);
    }
    ~Pictures() { SetResourceTables(formerTables); }

private:
    std::string red = EnhancedFile({{39, {1, 0, 0x0000FF, 0}},
                                    {37, {1}},
                                    {37, {0x80000008}},
                                    {3, {0, 0, 1600, 1600, 4, 0, 0, 1600, 0, 1600, 1600, 0, 1600}}});
    ResPICTURE pictures[2];
    ResTABLES pictureTables = {};
    const ResTABLES *formerTables;
};

/// Hears the beeps while it lives.
class Beeps
{
public:
    Beeps()
    {
        count = 0;
        former = SetBeepSink([] { ++count; });
    }
    ~Beeps() { SetBeepSink(former); }
    Beeps(const Beeps &) = delete;
    Beeps &operator=(const Beeps &) = delete;
    int Read() { return std::exchange(count, 0); }

private:
    static inline int count = 0;
    BeepSink former;
};

class Controls : private Pictures, public Dialogs
{
protected:
    enum { TESTED = 7100 };
    using Pictures::SQUARE;
    using Pictures::WIDE;

    /// A dialog of these lines; controls can be bound to them now.
    HearingDialog *Make(std::vector<ResCONTROL> lines)
    {
        tables.Add(TESTED, "Prüfung", std::move(lines));
        dialog = std::make_unique<HearingDialog>(TESTED, diary);
        dialog->passive = true;
        return dialog.get();
    }

    testdoor::DialogBox Open()
    {
        dialog->Create();
        testdoor::Settle();
        diary.Read();
        return testdoor::DialogBox(*dialog);
    }

    testdoor::DialogBox Open(std::vector<ResCONTROL> lines)
    {
        Make(std::move(lines));
        return Open();
    }

    void TearDown() override
    {
        dialog.reset();
        Dialogs::TearDown();
    }

    std::unique_ptr<HearingDialog> dialog;
    Beeps beeps;
};

/// A line at its place, in dialog units.
inline ResCONTROL Placed(ResCONTROL line, int x, int y, int width, int height)
{
    line.x = x;
    line.y = y;
    line.width = width;
    line.height = height;
    return line;
}

#endif
