// What tests of the design dialogs share: everything that the six dialogs fill, runs of a dialog with a user in
// it, and the message boxes over it.
#ifndef TESTS_USR_ZULDLGCASE_H
#define TESTS_USR_ZULDLGCASE_H

#include "lib/platform.h"
#include "lib/xfail.h"
#include "support/programtables.h"
#include "support/testapp.h"
#include "usr/edcutils.h"
#include "usr/zuldlg.h"
#include "win/boxes.h"
#include "win/testdialog.h"
#include "win/testdoor.h"
#include "win/utf8.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

/// Every control that holds a value: its dialog's number and its own.
enum KEY {
    NEW_LENGTH = 4500100,
    NEW_WIDTH,
    NEW_HEIGHT,
    MAP_HEIGHT = 4501100,
    MAP_MIN,
    MAP_MAX,
    MAP_AIR,
    MAP_DRAFT,
    MAP_FINE,
    PERIOD_DAYS = 4502100,
    MEAN_OUT,
    DESIGN_OUT,
    WEEK_DAYS,
    DAY_HOURS,
    RUN_AIR,
    RESULT,
    REDUCED_AIR,
    FLOOR_K = 4503100,
    FLOOR_TEMP = 4503102,
    WALL_K = 4503103,
    WALL_TEMP = 4503105,
    CEILING_K = 4503107,
    CEILING_TEMP = 4503109,
    AIR_CHANGE = 4503111,
    AIR_TEMP = 4503112,
    FUEL = 4504100,
    REGULATION = 4504101,
    PRICE = 4504103,
    TECH_GAIN = 4504104,
    WORK_CLASS = 4505100,
    POSITION = 4505101
};
enum { NEW = 4500, UPDATE = 4501, PERIOD = 4502, INSULATION = 4503, ENERGY = 4504, HYGIENE = 4505 };

inline int DialogOf(int key)
{
    return key / 1000;
}
inline int IdOf(int key)
{
    return key % 1000;
}

/// What the dialogs fill, each field with a value of its own that its dialog takes and shows in full.
struct DESIGN {
    TZulNewData sizes;
    TZulUpdateData update;
    EmROOMDATA data;

    DESIGN()
    {
        sizes.length.Set(60);
        sizes.width.Set(30.5);
        sizes.height.Set(8.25);
        update.height.Set(1.5);
        update.minInte.Set(20);
        update.maxInte.Set(180);
        update.airTemp.Set(14.5);
        data.periodDays = 210;
        data.weekDays = 5;
        data.dayHours = 7.5;
        data.meanOutTemp = 3.8;
        data.designOutTemp = -15;
        data.runAirTemp = 15;
        data.resultTemp = 18;
        data.reducedAirTemp = 5;
        data.constr[0].k = 0.41;
        data.constr[0].tExt = 6;
        data.constr[1].k = 0.42;
        data.constr[1].tExt = -16;
        data.constr[2].k = 0.43;
        data.constr[2].tExt = -17;
        data.airChange = 0.75;
        data.airTemp = -14;
        data.regulation = 0.95;
        data.fuelPrice = 12.5;
        data.techGain = 1500;
        data.workClass = 3;
        data.position = EM_SITTING;
    }
};

inline std::string Shown(const TEdcFloat &v)
{
    return v.id == EDC_VVAL ? EdcFormat("%.15g", v.value) : "?";
}
inline std::string Shown(double v)
{
    return EdcFormat("%.15g", v);
}

/// All that the dialogs fill, so that a test sees what has changed and what has not.
inline std::map<int, std::string> Values(const DESIGN &d)
{
    const EmCONSTRUCTION *c = d.data.constr;
    return {{NEW_LENGTH, Shown(d.sizes.length)},
            {NEW_WIDTH, Shown(d.sizes.width)},
            {NEW_HEIGHT, Shown(d.sizes.height)},
            {MAP_HEIGHT, Shown(d.update.height)},
            {MAP_MIN, Shown(d.update.minInte)},
            {MAP_MAX, Shown(d.update.maxInte)},
            {MAP_AIR, Shown(d.update.airTemp)},
            {MAP_DRAFT, std::to_string(d.update.draft.value)},
            {MAP_FINE, std::to_string(d.update.fineScale.value)},
            {PERIOD_DAYS, std::to_string(d.data.periodDays)},
            {MEAN_OUT, Shown(d.data.meanOutTemp)},
            {DESIGN_OUT, Shown(d.data.designOutTemp)},
            {WEEK_DAYS, std::to_string(d.data.weekDays)},
            {DAY_HOURS, Shown(d.data.dayHours)},
            {RUN_AIR, Shown(d.data.runAirTemp)},
            {RESULT, Shown(d.data.resultTemp)},
            {REDUCED_AIR, Shown(d.data.reducedAirTemp)},
            {FLOOR_K, Shown(c[0].k)},
            {FLOOR_TEMP, Shown(c[0].tExt)},
            {WALL_K, Shown(c[2].k)},
            {WALL_TEMP, Shown(c[2].tExt)},
            {CEILING_K, Shown(c[1].k)},
            {CEILING_TEMP, Shown(c[1].tExt)},
            {AIR_CHANGE, Shown(d.data.airChange)},
            {AIR_TEMP, Shown(d.data.airTemp)},
            {FUEL, std::to_string(d.data.fuelType)},
            {REGULATION, Shown(d.data.regulation)},
            {PRICE, Shown(d.data.fuelPrice)},
            {TECH_GAIN, Shown(d.data.techGain)},
            {WORK_CLASS, std::to_string(d.data.workClass)},
            {POSITION, std::to_string(d.data.position)}};
}

/// The program's texts, dialogs, pictures and services, and no box that nobody expected.
class DialogCase : public testing::Test
{
protected:
    using USER = std::function<void(testdoor::DialogBox &)>;

    DialogCase()
    {
        EdcUseResources();
        SetFailureHook(EdcFailureHook);
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
    }
    ~DialogCase() override
    {
        SetFailureHook(NULL);
        SetResTextSink(NULL);
        EXPECT_EQ(testdoor::PendingScripts(), 0) << "a script waited for a box that never came";
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    /// The next modal box is a dialog, and this happens in it.
    static void InDialog(const USER &user)
    {
        testdoor::Script([user](testdoor::ModalBox &face) {
            EXPECT_EQ(face.Kind(), "dialog");
            testdoor::DialogBox box(face);
            user(box);
        });
    }

    /// Presses OK and reads what the message box says, UTF-8; "" where none came.
    static std::string PressOk(testdoor::DialogBox &box)
    {
        return SaidWhile([&box] { box.Click(WIN_ID_OK); });
    }

    /// Does something and answers the message that it brings.
    static std::string SaidWhile(const std::function<void()> &act)
    {
        std::string said;
        testdoor::Script([&said](testdoor::ModalBox &face) {
            EXPECT_EQ(face.Kind(), "message");
            said = ToUtf8(face.Text().c_str());
            face.Answer(WIN_ID_OK);
        });
        act();
        if (said.empty()) {
            EXPECT_EQ(testdoor::PendingScripts(), 1);
        }
        return said;
    }

    static std::string TextOf(const testdoor::DialogBox &box, int id) { return ToUtf8(box.Text(id).c_str()); }

    /// Whether the control's text stands whole in its place.
    static bool Fits(const testdoor::DialogBox &box, int id)
    {
        for (const testdoor::Placed &placed : box.Layout())
            if (placed.id == id)
                return placed.needed.cx <= placed.rect.Width() && placed.needed.cy <= placed.rect.Height();
        return false;
    }

    TestServices services;
    ProgramTables tables;
};

/// The six design dialogs.
class DesignDialogs : public DialogCase
{
protected:
    /// Runs a dialog on the design with a user who does that. @return whether it ended with OK
    bool Run(int dialog, const USER &user)
    {
        InDialog(user);
        bool confirmed = Execute(dialog);
        EXPECT_STREQ(xCode, XNULL);
        return confirmed;
    }

    DESIGN design;

private:
    bool Execute(int dialog)
    {
        switch (dialog) {
        case NEW:
            return TZulNewDialog(design.sizes).Execute() == WIN_ID_OK;
        case UPDATE:
            return TZulUpdateDialog(design.update).Execute() == WIN_ID_OK;
        case PERIOD:
            return ZulEditPeriod(design.data);
        case INSULATION:
            return ZulEditInsulation(design.data);
        case ENERGY:
            return ZulEditEnergy(design.data);
        default:
            return ZulEditHygiene(design.data);
        }
    }
};

#endif
