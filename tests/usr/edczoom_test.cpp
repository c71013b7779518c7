// The zoom of a view: presets, the free percentage, bounds, and the dialog that asks for it.
#include "lib/xfail.h"
#include "support/child.h"
#include "support/programtables.h"
#include "support/recorddc.h"
#include "support/testapp.h"
#include "usr/edcbase1.h"
#include "usr/edcutils.h"
#include "win/boxes.h"
#include "win/testdialog.h"

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace
{
const char *const SOURCE = "usr/edcbase1_zoom.cpp";
enum { TWOFOLD = 20200, STANDARD = 20201, WINDOW = 20202, NONE = 20203 };

TEdcZoom ZoomOf(std::initializer_list<int> percents)
{
    TEdcZoom zoom;
    for (int percent : percents)
        zoom.Add(percent, 0);
    return zoom;
}

/// What a free text in the box makes of the zoom.
int CustomOf(const std::string &text)
{
    TEdcZoom zoom = ZoomOf({50, 60});
    TEdcZoomChoice choice;
    choice.Load(zoom);
    choice.selected = -1;
    choice.text = text;
    choice.Store(zoom);
    EXPECT_EQ(zoom.presetIndex, -1);
    return zoom.custom;
}
} // namespace

TEST(TEdcZoom, StartsAtAHundredPercent)
{
    TEdcZoom zoom;
    EXPECT_EQ(zoom.count, 0);
    EXPECT_EQ(zoom.presetIndex, 0);
    EXPECT_EQ(zoom.custom, 100);
    EXPECT_EQ(zoom.Percent(), 100);
    EXPECT_EQ(zoom.Scale(), 1.0);
}

TEST(TEdcZoom, TakesThePresetThatIsInRangeElseTheFreePercentage)
{
    TEdcZoom zoom = ZoomOf({50, 60});
    zoom.custom = 70;
    struct {
        int preset, percent;
    } rows[] = {{0, 50}, {1, 60}, {2, 70}, {9, 70}, {10, 70}, {INT_MAX, 70}, {-1, 70}, {INT_MIN, 70}};
    for (const auto &row : rows) {
        zoom.presetIndex = row.preset;
        EXPECT_EQ(zoom.Percent(), row.percent) << row.preset;
        EXPECT_EQ(zoom.Scale(), row.percent * 0.01);
    }
}

TEST(TEdcZoom, ForgetsItsPresetsAndKeepsItsChoice)
{
    TEdcZoom zoom = ZoomOf({50, 60});
    zoom.SetCustom(70);
    zoom.SetPreset(1);
    zoom.Clear();
    EXPECT_EQ(zoom.count, 0);
    EXPECT_EQ(zoom.presetIndex, 1);
    EXPECT_EQ(zoom.Percent(), 70);
    zoom.Add(80, 0);
    zoom.Add(90, 0);
    EXPECT_EQ(zoom.Percent(), 90);
}

TEST(TEdcZoom, TakesAFreePercentageBelowOneAsAHundred)
{
    struct {
        int given, custom;
    } rows[] = {{1, 1}, {100, 100}, {250, 250}, {0, 100}, {-1, 100}, {INT_MIN, 100}, {INT_MAX, INT_MAX}};
    for (const auto &row : rows) {
        TEdcZoom zoom = ZoomOf({50});
        zoom.SetCustom(row.given);
        EXPECT_EQ(zoom.presetIndex, -1);
        EXPECT_EQ(zoom.Percent(), row.custom) << row.given;
    }
}

TEST(TEdcZoom, DropsTheEleventhPreset)
{
    TEdcZoom zoom;
    for (int i = 0; i < 12; ++i)
        zoom.Add(10 + i, STANDARD);
    EXPECT_EQ(zoom.count, 10);
    EXPECT_EQ(zoom.PresetPercent(9), 19);
    EXPECT_EQ(zoom.custom, 100);
    EXPECT_EQ(zoom.presetIndex, 0);
}

TEST(TEdcZoom, TakesAPresetBelowOneAsAHundred)
{
    TEdcZoom zoom = ZoomOf({0, -5, 1, 30});
    EXPECT_EQ(zoom.PresetPercent(0), 100);
    EXPECT_EQ(zoom.PresetPercent(1), 100);
    EXPECT_EQ(zoom.PresetPercent(2), 1);
    EXPECT_EQ(zoom.PresetPercent(3), 30);
}

TEST(TEdcZoom, LabelsItsPresets)
{
    TEdcZoom zoom;
    for (int label : std::initializer_list<int>{TWOFOLD, STANDARD, WINDOW, NONE, 0})
        zoom.Add(100, label);
    const char *const labels[] = {"zweifach", "standardm\xE4\xDFig", "ins Fenster", "keine", ""};
    for (int i = 0; i < 5; ++i)
        EXPECT_STREQ(zoom.PresetLabel(i, 224), labels[i]);
}

TEST(TEdcZoom, CutsALabelToWhatIsAskedAndTo256)
{
    TEdcZoom zoom;
    zoom.Add(100, WINDOW);
    zoom.Add(100, 20206);
    struct {
        int preset, maxlen;
        const char *label;
    } rows[] = {{0, 0, ""}, {0, 1, "i"}, {0, 3, "ins"}, {0, 11, "ins Fenster"}, {0, INT_MAX, "ins Fenster"}};
    for (const auto &row : rows)
        EXPECT_STREQ(zoom.PresetLabel(row.preset, row.maxlen), row.label);
    int longest = 0; // of the numbered texts
    for (int id = 0; id < 33000; ++id) {
        zoom.labels[1] = id;
        size_t whole = strlen(GetResString(id));
        longest = std::max(longest, static_cast<int>(whole));
        ASSERT_EQ(strlen(zoom.PresetLabel(1, INT_MAX)), id == 0 ? 0 : std::min<size_t>(whole, 256)) << id;
        ASSERT_EQ(strlen(zoom.PresetLabel(1, 20)), id == 0 ? 0 : std::min<size_t>(whole, 20)) << id;
    }
    EXPECT_GT(longest, 256) << "no text is long enough to be cut";
}

TEST(TEdcZoom, RefusesPresetsThatAreNotThere)
{
    const char *const range = "presetIndex >= 0 && presetIndex < count";
    TEdcZoom zoom = ZoomOf({50, 60});
    EXPECT_TRUE(AbortsOnAssertion("presetIndex >= 0", SOURCE, [&] { zoom.SetPreset(-1); }));
    EXPECT_TRUE(AbortsOnAssertion(range, SOURCE, [&] { zoom.PresetPercent(-1); }));
    EXPECT_TRUE(AbortsOnAssertion(range, SOURCE, [&] { zoom.PresetPercent(2); }));
    EXPECT_TRUE(AbortsOnAssertion(range, SOURCE, [&] { zoom.PresetLabel(2, 10); }));
    EXPECT_TRUE(AbortsOnAssertion(range, SOURCE, [&] { zoom.PresetLabel(-1, 10); }));
    EXPECT_TRUE(AbortsOnAssertion("maxlen >= 0", SOURCE, [&] { zoom.PresetLabel(0, -1); }));
    zoom.SetPreset(2); // the presets may come later
    EXPECT_EQ(zoom.Percent(), 100);
}

TEST(TEdcZoom, FitsASizeIntoAWindow)
{
    TRecordDC dc(100);
    TEdcZoom zoom;
    TEdcSize page(8, 10); // 800 by 1000 px
    struct {
        int w, h, mode, percent;
    } rows[] = {
        {800, 1000, 1, 100}, {400, 1000, 1, 50},  {400, 1000, 2, 100}, {400, 1000, 3, 50},
        {1600, 500, 1, 50},  {1600, 500, 2, 200}, {1600, 500, 3, 200}, {1600, 500, 4, 100},
        {1600, 500, 0, 100}, {807, 1000, 3, 100}, {808, 1000, 3, 101}, {799, 1000, 3, 99},
        {0, 0, 1, 1},        {7, 7, 1, 1},        {0, 1000, 2, 100},   {INT_MAX, INT_MAX, 1, 214748364},
    };
    for (const auto &row : rows)
        EXPECT_EQ(zoom.Fit(dc, page, row.w, row.h, row.mode), row.percent)
            << row.w << " x " << row.h << " mode " << row.mode;
    EXPECT_EQ(zoom.Fit(dc, TEdcSize(0.01, 0.01), INT_MAX, INT_MAX, 1), INT_MAX);
}

TEST(TEdcZoom, FitsWhatHasNoExtentAtAHundredPercent)
{
    TRecordDC dc(100);
    TEdcZoom zoom;
    for (int mode : {1, 2, 3, 4}) {
        EXPECT_EQ(zoom.Fit(dc, TEdcSize(0, 10), 500, 500, mode), 100);
        EXPECT_EQ(zoom.Fit(dc, TEdcSize(8, 0.004), 500, 500, mode), 100);
        EXPECT_EQ(zoom.Fit(dc, TEdcSize(0, 0), -1, -1, mode), 100);
    }
}

TEST(TEdcZoom, RefusesAWindowOfNegativeExtent)
{
    TRecordDC dc(100);
    TEdcZoom zoom;
    for (TSize window : {TSize{-1, 10}, TSize{10, -1}})
        EXPECT_TRUE(AbortsOnAssertion("scaleX >= 0 && scaleY >= 0", SOURCE,
                                      [&] { zoom.Fit(dc, TEdcSize(8, 10), window.cx, window.cy, 1); }));
}

TEST(TEdcZoom, KeepsTheScaledSizeWithinItsBounds)
{
    TRecordDC dc(100);
    struct {
        double width, height; // inches at 100 px
        int lower, upper;
    } rows[] = {
        {8, 10, 10000 / 800 + 1, 800000 / 1000},
        {10, 8, 10000 / 800 + 1, 800000 / 1000},
        {1, 1, 101, 8000},
        {0.01, 0.01, 10001, 800000},
        {0.01, 100, 80, 80}, // the long side decides where both cannot be kept
        {1, 9000, 1, 1},     // 900000 px are too many at any percentage
        {1e30, 1e30, 1, 1},
        {0, 10, 100, 100},
        {10, 0, 100, 100},
    };
    for (const auto &row : rows) {
        TEdcZoom zoom = ZoomOf({1, row.lower, row.lower + 1, row.upper - 1, row.upper, INT_MAX});
        zoom.custom = INT_MAX;
        zoom.Limit(dc, TEdcSize(row.width, row.height));
        for (int i = 0; i < zoom.count; ++i) {
            EXPECT_GE(zoom.PresetPercent(i), row.lower) << row.width << " x " << row.height;
            EXPECT_LE(zoom.PresetPercent(i), row.upper);
        }
        EXPECT_EQ(zoom.PresetPercent(0), row.lower) << row.width << " x " << row.height;
        EXPECT_EQ(zoom.PresetPercent(5), row.upper) << row.width << " x " << row.height;
        EXPECT_EQ(zoom.custom, row.upper);
        zoom.custom = INT_MIN;
        zoom.Limit(dc, TEdcSize(row.width, row.height));
        EXPECT_EQ(zoom.custom, row.lower);
    }
}

TEST(TEdcZoom, LeavesAlonePercentagesWithinItsBounds)
{
    TRecordDC dc(100);
    TEdcZoom zoom = ZoomOf({13, 50, 800});
    zoom.SetCustom(77);
    zoom.Limit(dc, TEdcSize(8, 10));
    EXPECT_EQ(zoom.PresetPercent(0), 13);
    EXPECT_EQ(zoom.PresetPercent(1), 50);
    EXPECT_EQ(zoom.PresetPercent(2), 800);
    EXPECT_EQ(zoom.Percent(), 77);
}

TEST(TEdcZoom, PrintsA4SmallerOnAFinerPrinter)
{
    TEdcSize page(19.0, 27.7, EDC_UCM); // A4 with margins of 1 cm
    struct {
        int dpi, percent;
    } rows[] = {{300, 100}, {600, 100}, {1200, 61}};
    for (const auto &row : rows) {
        TRecordDC dc(row.dpi);
        TEdcZoom zoom;
        zoom.SetCustom(100);
        zoom.Limit(dc, page);
        EXPECT_EQ(zoom.Percent(), row.percent) << row.dpi;
    }
}

TEST(TEdcZoomChoice, ShowsThePresetsWithTheirPercentages)
{
    TEdcZoom zoom;
    zoom.Add(87, WINDOW);
    zoom.Add(120, STANDARD);
    zoom.Add(64, 0);
    zoom.SetPreset(1);
    TEdcZoomChoice choice;
    choice.Load(zoom);
    ASSERT_EQ(choice.entries.size(), 3u);
    EXPECT_EQ(choice.entries[0], "ins Fenster (87%)");
    EXPECT_EQ(choice.entries[1], "standardm\xE4\xDFig (120%)");
    EXPECT_EQ(choice.entries[2], " (64%)");
    EXPECT_EQ(choice.selected, 1);
    EXPECT_EQ(choice.text, choice.entries[1]);
}

TEST(TEdcZoomChoice, CutsALabelTo224Characters)
{
    int cut = 0;
    TEdcZoom zoom;
    zoom.Add(50, 0);
    TEdcZoomChoice choice;
    for (int id = 1; id < 33000; ++id) {
        std::string label = GetResString(id);
        if (label.size() < 224)
            continue;
        zoom.labels[0] = id;
        choice.Load(zoom);
        EXPECT_EQ(choice.entries[0], label.substr(0, 224) + " (50%)");
        ++cut;
    }
    EXPECT_GT(cut, 0) << "no text is long enough to be cut";
}

TEST(TEdcZoomChoice, ShowsTheFreePercentageWhereNoPresetApplies)
{
    TEdcZoom zoom = ZoomOf({50, 60});
    TEdcZoomChoice choice;
    zoom.SetCustom(75);
    choice.Load(zoom);
    EXPECT_EQ(choice.selected, -1);
    EXPECT_EQ(choice.text, "75%");
    zoom.SetPreset(5); // a preset that this view does not have
    choice.Load(zoom);
    EXPECT_EQ(choice.selected, -1);
    EXPECT_EQ(choice.text, "75%");
}

TEST(TEdcZoomChoice, LoadedTwiceShowsTheSecondZoomOnly)
{
    TEdcZoomChoice choice;
    choice.Load(ZoomOf({50, 60}));
    choice.Load(ZoomOf({70}));
    ASSERT_EQ(choice.entries.size(), 1u);
    EXPECT_EQ(choice.entries[0], " (70%)");
}

TEST(TEdcZoomChoice, GivesTheChosenPresetBack)
{
    TEdcZoom zoom = ZoomOf({50, 60});
    zoom.SetCustom(75);
    TEdcZoomChoice choice;
    choice.Load(zoom);
    choice.selected = 1;
    choice.Store(zoom);
    EXPECT_EQ(zoom.presetIndex, 1);
    EXPECT_EQ(zoom.Percent(), 60);
    EXPECT_EQ(zoom.custom, 75);
}

TEST(TEdcZoomChoice, ReadsANumberUpToTheFirstCharacterThatIsNoDigit)
{
    struct {
        const char *text;
        int custom;
    } rows[] = {
        {"150%", 150},
        {"150", 150},
        {" 42 %", 42},
        {"+33", 33},
        {"12.9", 12},
        {"7e3", 7},
        {"abc", 100},
        {"", 100},
        {"%", 100},
        {"ins Fenster (87%)", 100},
        {"0", 100},
        {"-5", 100},
        {"- 5", 100},
        {"0x20", 100},
        {"999999999", 999999999},
        {"99999999999999", INT_MAX},
        {"999999999999999999999999999999999999", INT_MAX},
        {"-99999999999999999999999999999999999", 100},
    };
    for (const auto &row : rows)
        EXPECT_EQ(CustomOf(row.text), row.custom) << '"' << row.text << '"';
}

TEST(TEdcZoomChoice, ShowsTheLimitedPercentageTheNextTime)
{
    TRecordDC dc(100);
    for (const char *text : {"801%", "999999999", "99999999999999"}) {
        TEdcZoom zoom;
        zoom.SetCustom(CustomOf(text));
        zoom.Limit(dc, TEdcSize(8, 10));
        TEdcZoomChoice choice;
        choice.Load(zoom);
        EXPECT_EQ(choice.text, "800%") << text;
    }
}

namespace
{
enum { BOX = 100, OK = WIN_ID_OK, CANCEL = WIN_ID_CANCEL };
using User = std::function<void(testdoor::DialogBox &)>;

/// A view of two presets, 87 and 120 percent, the second chosen, and a user at its dialog.
class ZoomDialog : public testing::Test
{
protected:
    ZoomDialog()
    {
        TestApplication();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
        zoom.Add(87, WINDOW);
        zoom.Add(120, STANDARD);
        zoom.SetPreset(1);
    }
    ~ZoomDialog() override
    {
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0) << "the user left the dialog open";
    }

    /// The dialog's result; an answer goes to the zoom.
    int Ask(const User &user)
    {
        testdoor::Script([&](testdoor::ModalBox &box) {
            testdoor::DialogBox dialog(box);
            user(dialog);
        });
        choice.Load(zoom);
        TEdcZoomDialog dialog(NULL, choice);
        int answer = dialog.Execute();
        EXPECT_STREQ(xCode, XNULL);
        if (answer == WIN_ID_OK)
            choice.Store(zoom);
        return answer;
    }

    ProgramTables tables;
    TEdcZoom zoom;
    TEdcZoomChoice choice;
};

const char *const standard = "standardm\xE4\xDFig (120%)";
} // namespace

TEST_F(ZoomDialog, OpensWithTheChosenPresetReadyToBeTypedOver)
{
    Ask([](testdoor::DialogBox &dialog) {
        EXPECT_EQ(dialog.Caption(), "Vergr\xF6\xDF"
                                    "erung");
        EXPECT_EQ(dialog.AccessibleName(BOX), dialog.Caption());
        EXPECT_EQ(dialog.Entries(BOX), (std::vector<std::string>{"ins Fenster (87%)", standard}));
        EXPECT_EQ(dialog.Selected(BOX), 1);
        EXPECT_EQ(dialog.Text(BOX), standard);
        EXPECT_EQ(dialog.Focus(), BOX);
        EXPECT_EQ(dialog.SelectedText(BOX), standard);
        EXPECT_EQ(dialog.Text(OK) + " " + dialog.Text(CANCEL), "OK Abbrechen");
        dialog.TypeKeys("55");
        dialog.Press("Return");
    });
    EXPECT_EQ(zoom.presetIndex, -1);
    EXPECT_EQ(zoom.custom, 55);
}

TEST_F(ZoomDialog, OpensWithTheFreePercentageWhereNoPresetApplies)
{
    zoom.SetCustom(75);
    EXPECT_EQ(Ask([](testdoor::DialogBox &dialog) {
                  EXPECT_EQ(dialog.Selected(BOX), -1);
                  EXPECT_EQ(dialog.Text(BOX), "75%");
                  EXPECT_EQ(dialog.SelectedText(BOX), "75%");
                  dialog.Click(OK);
              }),
              WIN_ID_OK);
    EXPECT_EQ(zoom.presetIndex, -1);
    EXPECT_EQ(zoom.custom, 75);
}

TEST_F(ZoomDialog, ConfirmedAsItStandsKeepsThePreset)
{
    EXPECT_EQ(Ask([](testdoor::DialogBox &dialog) { dialog.Press("Return"); }), WIN_ID_OK);
    EXPECT_EQ(zoom.presetIndex, 1);
    EXPECT_EQ(zoom.custom, 100);
}

TEST_F(ZoomDialog, TakesWhatIsTypedAsAPercentage)
{
    const struct {
        std::string typed; // UTF-8
        int custom;
    } rows[] = {
        {"150%", 150},
        {"150", 150},
        {" 42 %", 42},
        {"abc", 100},
        {"", 100},
        {"0", 100},
        {"-5", 100},
        {"1e400", 1},
        {"nan", 100},
        {"inf", 100},
        {"1,5", 1},
        {"standardmäßig (120%)", 100}, // typed, not chosen
        {std::string(300, '9'), INT_MAX},
        {"7" + std::string(299, ' '), 7},
        {"1Ω2", 12}, // cannot be typed
    };
    for (const auto &row : rows) {
        zoom.SetPreset(1);
        size_t length = 0;
        EXPECT_EQ(Ask([&](testdoor::DialogBox &dialog) {
                      dialog.Type(BOX, row.typed);
                      length = dialog.Text(BOX).size();
                      EXPECT_EQ(dialog.Selected(BOX), -1) << row.typed;
                      dialog.Click(OK);
                  }),
                  WIN_ID_OK);
        EXPECT_EQ(zoom.presetIndex, -1) << row.typed;
        EXPECT_EQ(zoom.custom, row.custom) << row.typed;
        EXPECT_LE(length, 255u) << row.typed;
    }
}

TEST_F(ZoomDialog, TakesAPastedLineBreakAsABlank)
{
    Ask([](testdoor::DialogBox &dialog) {
        dialog.Paste(BOX, "64\n0");
        EXPECT_EQ(dialog.Text(BOX), "64 0");
        dialog.Click(OK);
    });
    EXPECT_EQ(zoom.custom, 64);
}

TEST_F(ZoomDialog, TakesAPresetByMouse)
{
    EXPECT_EQ(Ask([](testdoor::DialogBox &dialog) {
                  dialog.Choose(BOX, 0);
                  EXPECT_EQ(dialog.Text(BOX), "ins Fenster (87%)");
                  dialog.Click(OK);
              }),
              WIN_ID_OK);
    EXPECT_EQ(zoom.presetIndex, 0);
}

TEST_F(ZoomDialog, TakesAPresetByKeys)
{
    EXPECT_EQ(Ask([](testdoor::DialogBox &dialog) {
                  dialog.Press("Up");
                  dialog.Press("Return");
              }),
              WIN_ID_OK);
    EXPECT_EQ(zoom.presetIndex, 0);
    EXPECT_EQ(Ask([](testdoor::DialogBox &dialog) {
                  dialog.Drop(BOX);
                  dialog.Press("Down");
                  dialog.Press("Return"); // closes the list
                  EXPECT_FALSE(dialog.IsDropped(BOX));
                  dialog.Press("Return");
              }),
              WIN_ID_OK);
    EXPECT_EQ(zoom.presetIndex, 1);
}

TEST_F(ZoomDialog, TakesWhatTheUserDidLast)
{
    Ask([](testdoor::DialogBox &dialog) {
        dialog.Choose(BOX, 0);
        dialog.Type(BOX, "33");
        dialog.Click(OK);
    });
    EXPECT_EQ(zoom.Percent(), 33);
    Ask([](testdoor::DialogBox &dialog) {
        dialog.Type(BOX, "44");
        dialog.Choose(BOX, 0);
        dialog.Click(OK);
    });
    EXPECT_EQ(zoom.presetIndex, 0);
    EXPECT_EQ(zoom.custom, 33);
}

TEST_F(ZoomDialog, LeftWithoutAnAnswerChangesNothing)
{
    const User exits[] = {[](testdoor::DialogBox &dialog) { dialog.Press("Esc"); },
                          [](testdoor::DialogBox &dialog) { dialog.Click(CANCEL); },
                          [](testdoor::DialogBox &dialog) { dialog.CloseByFrame(); }};
    for (const User &leave : exits) {
        EXPECT_EQ(Ask([&](testdoor::DialogBox &dialog) {
                      dialog.Type(BOX, "200%");
                      leave(dialog);
                  }),
                  WIN_ID_CANCEL);
        EXPECT_EQ(choice.selected, 1);
        EXPECT_EQ(choice.text, standard);
        EXPECT_EQ(zoom.presetIndex, 1);
    }
}

TEST_F(ZoomDialog, IsWalkedByKeysAlone)
{
    Ask([](testdoor::DialogBox &dialog) {
        for (int next : {OK, CANCEL, BOX, OK}) {
            dialog.Press("Tab");
            EXPECT_EQ(dialog.Focus(), next);
        }
        dialog.Press("Shift+Tab");
        dialog.Press("Shift+Tab");
        EXPECT_EQ(dialog.Focus(), CANCEL);
        dialog.Press("Alt+V");
        EXPECT_EQ(dialog.Focus(), BOX);
        dialog.Press("Shift+Tab");
        dialog.Press("Return"); // on the button that has the focus
    });
    EXPECT_EQ(choice.selected, 1);
}

TEST_F(ZoomDialog, WithoutPresetsStillTakesAPercentage)
{
    zoom.Clear();
    Ask([](testdoor::DialogBox &dialog) {
        EXPECT_TRUE(dialog.Entries(BOX).empty());
        EXPECT_EQ(dialog.Text(BOX), "100%");
        dialog.Press("Down");
        dialog.Type(BOX, "50");
        dialog.Press("Return");
    });
    EXPECT_EQ(zoom.Percent(), 50);
}

TEST_F(ZoomDialog, RunsAnyNumberOfTimes)
{
    choice.Load(zoom);
    TEdcZoomDialog dialog(NULL, choice);
    for (const char *text : {"50", "60%", "70"}) {
        testdoor::Script([&](testdoor::ModalBox &box) {
            testdoor::DialogBox shown(box);
            EXPECT_EQ(shown.Entries(BOX).size(), 2u);
            shown.Type(BOX, text);
            shown.Click(OK);
        });
        EXPECT_EQ(dialog.Execute(), WIN_ID_OK);
        EXPECT_EQ(choice.text, text);
        EXPECT_EQ(choice.selected, -1);
    }
}
