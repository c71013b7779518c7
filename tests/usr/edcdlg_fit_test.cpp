// Every dialog of the program on the screen, looked at by its geometry: nothing is cut, covered or out of
// reach, and the keyboard finds everything. The checker is shown bad dialogs first. With ZUL_PICTURES naming a
// folder a picture of each dialog is left there.
#include "lib/charstr.h"
#include "support/programtables.h"
#include "support/testapp.h"
#include "win/boxes.h"
#include "win/dialog.h"
#include "win/testdialog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <set>

namespace
{
const TSize LARGEST = {1000, 700}; // toolkit's units: a screen of 1024 x 768 with its bars

/// What is wrong with a dialog; controls are counted from 0 as they stand in the resource, -1 for none.
struct Finding {
    std::string what;
    int control;
    int other = -1;
    std::string detail = ""; // for whoever mends it

    bool operator==(const Finding &f) const
    {
        return what == f.what && control == f.control && other == f.other;
    }
};
using Findings = std::vector<Finding>;

std::ostream &operator<<(std::ostream &out, const Finding &f)
{
    return out << f.what << " " << f.control << " " << f.other << " " << f.detail;
}

bool TakesFocus(const ResCONTROL &line)
{
    return line.kind != RES_LABEL && line.kind != RES_PICTURE && line.kind != RES_FRAME;
}

bool IsField(const ResCONTROL &line)
{
    return line.kind == RES_EDIT || line.kind == RES_MEMO || line.kind == RES_COMBO ||
           line.kind == RES_CHOICE || line.kind == RES_LIST;
}

bool Contains(const TRect &outer, const TRect &inner)
{
    return inner.left >= outer.left && inner.right <= outer.right && inner.top >= outer.top &&
           inner.bottom <= outer.bottom;
}

/// A dialog on the screen and the resource that it should show.
class Checker
{
public:
    Checker(const ResDIALOG &aDialog, testdoor::DialogBox &aBox)
        : dialog(aDialog), box(aBox), extent(aBox.Extent())
    {
        std::vector<testdoor::Placed> left = aBox.Layout(); // frames stand behind what they hold
        for (int i = 0; i < dialog.count; ++i)
            Take(dialog.controls[i], left);
        unasked = static_cast<int>(left.size());
    }

    Findings Check()
    {
        if (static_cast<int>(layout.size()) != dialog.count || unasked != 0)
            return {{"lines", static_cast<int>(layout.size()), unasked, ""}};
        if (extent.cx > LARGEST.cx || extent.cy > LARGEST.cy)
            Add("large", -1);
        for (int i = 0; i < dialog.count; ++i) {
            CheckPlace(i);
            CheckNames(i);
            for (int k = 0; k < i; ++k)
                CheckPair(i, k);
        }
        CheckTabs(TabOrder());
        for (int i = 0; i + 1 < dialog.count; ++i)
            CheckMnemonic(i);
        return found;
    }

    /// Numbers of those that Tab visits, in the order of the resource.
    std::vector<int> TabOrder() const
    {
        std::vector<int> order;
        for (int i = 0; i < dialog.count; ++i) {
            const ResCONTROL &line = dialog.controls[i];
            if (TakesFocus(line) && Placed(i).shown && !(line.style & (RES_NOTAB | RES_GREY)))
                order.push_back(line.id);
        }
        return order;
    }

    Findings CheckTabs(const std::vector<int> &order)
    {
        if (order.empty())
            return found;
        if (box.Focus() != order[0])
            Add("focus", IndexOf(order[0]));
        for (size_t i = 1; i <= order.size(); ++i) {
            box.Press("Tab");
            int next = order[i % order.size()];
            if (box.Focus() != next)
                Add("tab", IndexOf(next));
        }
        return found;
    }

private:
    /// The first of those that can be what the line has made.
    void Take(const ResCONTROL &line, std::vector<testdoor::Placed> &left)
    {
        auto made = std::find_if(left.begin(), left.end(), [&](const testdoor::Placed &placed) {
            return placed.id == line.id && placed.text == line.text &&
                   placed.isFrame == (line.kind == RES_FRAME);
        });
        if (made == left.end())
            return;
        layout.push_back(*made);
        left.erase(made);
    }
    void Add(const char *what, int control, int other = -1)
    {
        found.push_back({what, control, other, DetailOf(control)});
    }
    /// The control with what it has and what it needs.
    std::string DetailOf(int control) const
    {
        if (control < 0)
            return {};
        const testdoor::Placed &placed = Placed(control);
        return std::to_string(placed.id) + " \"" + placed.text + "\" has " +
               std::to_string(placed.rect.Width()) + " x " + std::to_string(placed.rect.Height()) + ", needs " +
               std::to_string(placed.needed.cx) + " x " + std::to_string(placed.needed.cy);
    }
    const testdoor::Placed &Placed(int i) const { return layout[static_cast<size_t>(i)]; }
    int IndexOf(int id) const
    {
        int i = 0;
        while (dialog.controls[i].id != id)
            ++i;
        return i;
    }

    void CheckPlace(int i)
    {
        const testdoor::Placed &placed = Placed(i);
        if (!placed.shown)
            return;
        if (placed.needed.cx > placed.rect.Width() || placed.needed.cy > placed.rect.Height())
            Add("cut", i);
        if (!Contains({0, 0, extent.cx, extent.cy}, placed.rect))
            Add("outside", i);
    }

    void CheckNames(int i)
    {
        const ResCONTROL &line = dialog.controls[i];
        if (line.picture != 0 && !FindPicture(line.picture))
            Add("picture", i);
        if (IsField(line) && box.AccessibleName(line.id).empty())
            Add("name", i);
    }

    /// Two that are shown stand apart, or one wholly within a frame.
    void CheckPair(int i, int k)
    {
        const testdoor::Placed &a = Placed(i);
        const testdoor::Placed &b = Placed(k);
        bool apart = a.rect.right <= b.rect.left || b.rect.right <= a.rect.left ||
                     a.rect.bottom <= b.rect.top || b.rect.bottom <= a.rect.top;
        bool framed = (a.isFrame && Contains(a.rect, b.rect)) || (b.isFrame && Contains(b.rect, a.rect));
        if (a.shown && b.shown && !apart && !framed)
            Add("overlap", i, k);
    }

    /// The key of a label leads to the control behind it.
    void CheckMnemonic(int i)
    {
        const ResCONTROL &line = dialog.controls[i];
        std::string text = Placed(i).text;
        size_t mark = text.find('&');
        if (line.kind != RES_LABEL || mark == std::string::npos || !Placed(i).shown || !Placed(i + 1).shown)
            return;
        box.Press(("Alt+" + std::string(1, ChrUpper(text[mark + 1]))).c_str());
        if (box.Focus() != dialog.controls[i + 1].id)
            Add("mnemonic", i);
    }

    const ResDIALOG &dialog;
    testdoor::DialogBox &box;
    std::vector<testdoor::Placed> layout; // in the order of the resource
    int unasked = 0;                      // controls that no line of the resource has made
    TSize extent;
    Findings found;
};

/// A control that the form of a dialog does not show.
class HiddenControl : public TControl
{
public:
    using TControl::TControl;
    void SetupWindow() override { ShowWindow(false); }
};

/// Shows the dialog without some of its controls.
void Show(int id, const std::vector<int> &hidden, const std::function<void(testdoor::DialogBox &)> &look)
{
    testdoor::Script([&](testdoor::ModalBox &modal) {
        testdoor::DialogBox box(modal);
        look(box);
        modal.Answer(WIN_ID_CANCEL);
        modal.Press("Esc");
    });
    TDialog dialog(NULL, id);
    for (int control : hidden)
        new HiddenControl(&dialog, control);
    EXPECT_EQ(dialog.Execute(), WIN_ID_CANCEL);
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
}

/// A dialog that shows some of its controls at a time.
struct FORM {
    int dialog;
    const char *name;
    std::vector<int> hidden;
};
const FORM forms[] = {
    {22010, "-picking", {101, 102, 103, 104, 105}},
    {22010, "-editing", {1, 2}},
    {22020, "-picking", {102, 103, 104, 105, 106, 107, 108, 109, 110}},
    {22020, "-editing", {1, 2}},
};

std::vector<FORM> FormsOf(int dialog)
{
    std::vector<FORM> found;
    std::copy_if(std::begin(forms), std::end(forms), std::back_inserter(found),
                 [=](const FORM &form) { return form.dialog == dialog; });
    if (found.empty())
        found.push_back({dialog, "", {}});
    return found;
}

class Fit : public testing::Test
{
protected:
    Fit()
    {
        TestApplication();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
    }
};
} // namespace

TEST_F(Fit, EveryDialogOfTheProgramShowsAllThatItHoldsAndIsReachedByKeys)
{
    ProgramTables tables;
    ASSERT_GT(resDialogCount, 0);
    for (int i = 0; i < resDialogCount; ++i)
        for (const FORM &form : FormsOf(resDialogs[i].id)) {
            std::string name = std::to_string(form.dialog) + form.name;
            Show(form.dialog, form.hidden, [&](testdoor::DialogBox &box) {
                if (const char *folder = getenv("ZUL_PICTURES")) {
                    EXPECT_TRUE(box.SaveScreenshot((std::string(folder) + "/" + name + ".png").c_str()));
                }
                EXPECT_EQ(Checker(resDialogs[i], box).Check(), Findings()) << name;
                EXPECT_EQ(box.Caption(), resDialogs[i].caption);
            });
        }
}

TEST_F(Fit, EveryFormBelongsToADialogAndHidesControlsOfIt)
{
    ProgramTables tables;
    for (const FORM &form : forms) {
        const ResDIALOG *dialog = FindDialog(form.dialog);
        ASSERT_NE(dialog, nullptr) << form.dialog;
        for (int id : form.hidden)
            EXPECT_TRUE(std::any_of(dialog->controls, dialog->controls + dialog->count,
                                    [=](const ResCONTROL &line) { return line.id == id; }))
                << form.dialog << form.name << " " << id;
    }
}

namespace
{
/// A dialog with all the faults that a resource can have.
const ResCONTROL badLines[] = {
    {RES_LABEL, -1, "&Ein Text, der breiter ist als sein Platz", 0, 7, 7, 20, 10, 0},
    {RES_EDIT, 10, "", 0, 7, 18, 100, 13, 0},
    {RES_BUTTON, 11, "OK", 0, 7, 40, 50, 14, 0},
    {RES_BUTTON, 12, "Abbrechen", 0, 50, 45, 50, 14, 0}, // over the other
    {RES_CHECK, 13, "&Ebenso", 0, 150, 60, 60, 12, 0},   // reaches out, with the key of the label
    {RES_FRAME, -1, "Rahmen", 0, 7, 65, 60, 30, 0},
    {RES_EDIT, 14, "", 0, 12, 77, 60, 13, 0}, // half in the frame, and without a name
    {RES_PICTURE, -1, "", 9999, 120, 7, 20, 20, 0},
    {RES_BUTTON, 15, "Zu flach", 0, 120, 40, 50, 4, 0},
};
const ResDIALOG badDialogs[] = {
    {1, "Schlecht", 200, 100, badLines, static_cast<int>(std::size(badLines))},
    {2, "Zu breit", 900, 100, badLines + 1, 1},
    {3, "Zu hoch", 200, 900, badLines + 1, 1},
};

class BadTables
{
public:
    BadTables() : former(SetResourceTables(&tables)) {}
    ~BadTables() { SetResourceTables(former); }
    BadTables(const BadTables &) = delete;
    BadTables &operator=(const BadTables &) = delete;

private:
    ResTABLES tables = {NULL, 0, NULL, 0, NULL, 0, badDialogs, static_cast<int>(std::size(badDialogs))};
    const ResTABLES *former;
};
} // namespace

TEST_F(Fit, TheCheckerFindsEachFaultOfABadDialog)
{
    BadTables tables;
    Show(1, {}, [](testdoor::DialogBox &box) {
        Findings expected = {{"cut", 0},        {"overlap", 3, 2}, {"outside", 4}, {"name", 6},
                             {"overlap", 6, 5}, {"picture", 7},    {"cut", 8},     {"mnemonic", 0}};
        EXPECT_EQ(Checker(badDialogs[0], box).Check(), expected);
    });
    for (int i : {1, 2})
        Show(badDialogs[i].id, {}, [&](testdoor::DialogBox &box) {
            EXPECT_EQ(Checker(badDialogs[i], box).Check(), (Findings{{"large", -1}, {"name", 0}}));
        });
}

TEST_F(Fit, TheCheckerFindsAnotherOrderOfTab)
{
    BadTables tables;
    Show(1, {}, [](testdoor::DialogBox &box) {
        Checker checker(badDialogs[0], box);
        std::vector<int> order = checker.TabOrder();
        EXPECT_EQ(order, (std::vector<int>{10, 11, 12, 13, 14, 15}));
        std::swap(order[2], order[3]);
        EXPECT_EQ(checker.CheckTabs(order), (Findings{{"tab", 4}, {"tab", 3}}));
    });
    Show(1, {11, 13}, [](testdoor::DialogBox &box) {
        EXPECT_EQ(Checker(badDialogs[0], box).TabOrder(), (std::vector<int>{10, 12, 14, 15}));
    });
}

TEST_F(Fit, TheCheckerTellsAMissingLine)
{
    BadTables tables;
    Show(2, {}, [](testdoor::DialogBox &box) {
        EXPECT_EQ(Checker(badDialogs[0], box).Check(), (Findings{{"lines", 1, 0}}));
    });
    Show(1, {}, [](testdoor::DialogBox &box) {
        EXPECT_EQ(Checker(badDialogs[1], box).Check(), (Findings{{"lines", 1, 8}}));
    });
}
