// A designer at the program: what a person does to make a hall, by mouse, keys and dialogs alone, in the frame
// that the start-up code builds. Coordinates are metres on the opened plan; numbers go into fields as they are
// written down. Each step says where the program did not do what its user expects.
#ifndef TESTS_SYSTEM_HALLDESIGNER_H
#define TESTS_SYSTEM_HALLDESIGNER_H

#include "samples/halltables.h"
#include "support/folder.h"
#include "usr/edcapp.h"
#include "usr/zuldoc.h"
#include "win/boxes.h"
#include "win/frame.h"
#include "win/testdialog.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace designer
{
using testdoor::DialogBox;
using testdoor::ModalBox;
using FILL = std::function<void(DialogBox &)>;

// Commands of the menus, of the bar and of the popup menus.
enum Command {
    NEW = 20003,
    CLOSE = 20007,
    SAVE = 20009,
    SAVE_AS = 20011,
    PRINT = 20013,
    ZOOM = 20019,
    UPDATE = 20023,
    BACK = 20035,
    ARTICLE = 1503,
    PERIOD = 1505,
    INSULATION = 1507,
    ENERGY = 1509,
    ELEMENTS = 1511,
    UNITS = 1513,
    HYGIENE = 1523,
    CLOSING = 1527,
};

/// As a designer writes it into a field: at most six digits.
std::string Written(double value);

class HallDesigner
{
public:
    HallDesigner(); // at the empty window of a program folder of its own, like that of the build
    ~HallDesigner();
    HallDesigner(const HallDesigner &) = delete;
    HallDesigner &operator=(const HallDesigner &) = delete;

    TDecoratedFrame &Frame() { return *application->MainWindow(); }
    TZulDoc &Doc() { return *static_cast<TZulDoc *>(AppDocument()); }
    EmROOM &Room() { return *Doc().Room(); }
    const FOLDER &Folder() const { return folder; }
    std::string ProgramFile(const std::string &file) const { return folder.Path("Zulerion/" + file); }

    // The menus and the data of the hall.
    void Choose(int command);
    void Press(int gadget);
    void Key(const char *name);
    void Open(const std::string &native);
    void NewHall(const AgPOINT &size);
    void FillPeriod(const EmROOMDATA &data);
    void FillInsulation(const EmROOMDATA &data); // what is as cold as the outside comes by the buttons
    void FillEnergy(const EmROOMDATA &data);
    void FillHygiene(const EmROOMDATA &data);
    void FillTexts(const HALLTABLE &hall);
    void Evaluate(); // F5, with the parameters as the dialog offers them
    void SaveAs(const std::string &native);
    void Print(const std::string &native);

    // Plans.
    void OpenPlan(TEdcBlock *plan); // scrolls to it in the report and double-clicks
    void ClosePlan();               // Esc
    TEdcBlock *FloorPlan() { return Doc().RoomBlock(); }
    TEdcBlock *PlanOf(int surface); // ON_FLOOR to ON_WALL_D
    TEdcSpriteManager &Sprites();   // of the opened plan
    TEdcAxes &Axes();
    TEdcDrawLayer &Layer();
    TEdcDrawSprite &Focus() { return *Layer().DrawFocus(); }
    void Zoom(const std::string &percent); // "" for the whole plan
    void ShowAround(double x, double y);   // in the middle of the window, as far as the plan scrolls
    TPoint At(double x, double y);         // window px

    // Hands.
    void Click(TPoint at, unsigned keys = 0);
    void Drag(TPoint from, TPoint to, testdoor::Button button = testdoor::LEFT, unsigned keys = 0);
    void DoubleClick(TPoint at);
    void RightClick(TPoint at);
    void Take(int layer, int tool); // by the bar
    void Creator(int layer, int tool, const FILL &fill);

    // The dialogs of the plans. The thing at that place has, or gets, the focus.
    struct PLACE {
        double x = 0, y = 0; // m
        double angle = 0;    // degrees
        int anchor = 108;    // of the dialog's nine
        bool sync = false;
        bool copy = false;
        bool keepsAngle = false; // whatever the dialog shows
    };
    void Locate(TPoint at, const PLACE &place);
    void PutExactly(const AgPOINT &place, const AgPOINT &size,
                    double degrees); // what stands there about already
    void LocateCorner(int corner, double x, double y);
    void Edit(TPoint at, const FILL &fill); // double click, then the dialog

    // Rows of the tables.
    void PlaceEmitters(const EMITTERROW &row);
    void PlaceOpenings(const OPENINGROW &row);
    /// With the creator taken. Emitters have no size here.
    void PlaceRow(const AgPOINT &first, const AgPOINT &step, int count, const AgPOINT &size, double degrees);
    void DrawOpening(const OPENINGROW &row);
    void DrawZone(const ZONEROW &row);
    void DrawZoneOnGrid(const ZONEROW &row); // large enough for the mouse alone
    void PlaceUnits(const UNITROW &row);

    static FILL EmitterFill(const EMITTERROW &row);
    static FILL OpeningFill(const OPENINGROW &row, bool withSize);
    static FILL RowFill(const AgPOINT &first, const AgPOINT &step, int count, double degrees);
    static void Box(const FILL &fill, int answer = WIN_ID_OK);

private:
    FOLDER folder;
    std::unique_ptr<TEdcApplication> application;
    int count = 1;
    char name[9] = "Zulerion";
    char *values[2] = {name, NULL};
};

/// The element of a catalogue of that group, chosen.
void ChooseElement(const std::string &group, const std::string &element);
/// UTF-8 as fields show it.
std::string Shown(const std::string &utf8);
/// Catalogue elements whose transmittance a row of the tables has; empty for none.
std::pair<std::string, std::string> ElementOf(const OPENINGROW &row);
} // namespace designer

#endif
