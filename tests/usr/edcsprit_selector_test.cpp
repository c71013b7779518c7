#include "gesture.h"
#include "support/freshpaint.h"
#include "support/recorddc.h"
#include "support/testsprite.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{
/// Sprites a, b and c beside each other, d over c. Places: A, B, C (c and d), D (d alone), E (nothing).
const struct {
    const char *name;
    TRect place;
} sprites[] = {
    {"a", {10, 10, 30, 30}}, {"b", {50, 10, 70, 30}}, {"c", {90, 10, 110, 30}}, {"d", {100, 10, 130, 30}}};

TPoint Place(char name)
{
    switch (name) {
    case 'A':
        return {15, 15};
    case 'B':
        return {55, 15};
    case 'C':
        return {105, 15};
    case 'D':
        return {120, 15};
    default:
        return {180, 120};
    }
}

struct Row {
    const char *name;
    const char *selected; // before, in the order of selecting
    char focus;           // before, 0 for none
    const char *events;
    const char *calls;  // without those of painting
    const char *lists;  // painting, selection, focus
    const char *states; // of the selector; what is "outside" stays so up to the next press
};
const Row rows[] = {
    // Presses that end where they began.
    {"a press selects", "", 0, "L+A L-A", "", "bcda a a", "0 0"},
    {"a press selects instead of others", "bc", 'b', "L+A L-A", "", "dcba a a", "0 0"},
    {"a press keeps a selection of many and moves the focus", "abc", 'a', "L+B L-B", "", "dcab abc b", "0 0"},
    {"a press on the focus changes nothing", "ab", 'a', "L+A L-A", "", "cdba ab a", "0 0"},
    {"a press on a selected sprite without a focus", "ab", 0, "L+B L-B", "", "cdab ab b", "0 0"},
    {"a press beside the sprites clears the selection", "ab", 'a', "L+E L-E", "", "cdba  -", "0 0"},
    {"the topmost sprite is hit", "", 0, "L+C L-C", "", "abcd d d", "0 0"},
    {"and another one once it is on top", "c", 0, "L+C L-C", "", "abdc c c", "0 0"},
    {"what is under it is hit beside it", "c", 0, "L+D L-D", "", "abcd d d", "0 0"},
    {"Ctrl presses like none", "ab", 'a', "cL+B cL-B", "", "cdab ab b", "0 0"},
    {"Shift beside the sprites clears the focus only", "ab", 'a', "sL+E sL-E", "", "cdba ab -", "0 0"},
    {"Shift selects", "a", 'a', "sL+B sL-B", "", "cdab ab b", "0 0"},
    {"Shift deselects", "ab", 'a', "sL+B sL-B", "", "cdab a a", "0 0"},
    {"Shift deselects the focus", "ab", 'a', "sL+A sL-A", "", "cdba b -", "0 0"},
    {"Shift acts on the release", "a", 'a', "sL+B", "", "bcda a a", "1 0"},
    {"Shift that is let go in between does nothing", "a", 'a', "sL+B L-B", "", "bcda a a", "0 0"},
    {"a plain press that ends with Shift toggles", "a", 0, "L+A sL-A", "", "bcda  -", "0 0"},
    {"a move to where the pointer is moves nothing", "a", 'a', "L+A MA MA L-A", "", "bcda a a", "0 0"},
    {"a release without a press", "a", 'a', "L-A R-A sL-B MB", "", "bcda a a", "0 0"},

    // Drags.
    {"a drag", "", 0, "L+A M20,25 M25,25 L-30,25",
     "a.begin1@15,15+5,10 a.drag1@15,15+5,10 a.drag1@15,15+10,10 a.drop1@15,15+15,10 ", "bcda a a", "0 0"},
    {"a drag is on until the release", "", 0, "L+A M20,25", "a.begin1@15,15+5,10 a.drag1@15,15+5,10 ",
     "bcda a a", "1 0 drag"},
    {"a drag back to the press", "", 0, "L+A M20,15 MA L-A",
     "a.begin1@15,15+5,0 a.drag1@15,15+5,0 a.drag1@15,15+0,0 a.drop1@15,15+0,0 ", "bcda a a", "0 0"},
    {"the focus goes first", "cab", 'b', "L+A M16,15 L-16,15",
     "a.begin1@15,15+1,0 c.begin1@15,15+1,0 b.begin1@15,15+1,0 "
     "a.drag1@15,15+1,0 c.drag1@15,15+1,0 b.drag1@15,15+1,0 "
     "a.drop1@15,15+1,0 c.drop1@15,15+1,0 b.drop1@15,15+1,0 ",
     "dcba cab a", "0 0"},
    {"Shift and a move add a sprite and drag all", "b", 'b', "sL+A sM15,16 L-15,16",
     "a.begin5@15,15+0,1 b.begin5@15,15+0,1 a.drag5@15,15+0,1 b.drag5@15,15+0,1 a.drop1@15,15+0,1 "
     "b.drop1@15,15+0,1 ",
     "cdba ba a", "0 0"},
    {"Shift and a move keep what is selected", "ba", 'b', "sL+A sM15,16 sL-15,16",
     "a.begin5@15,15+0,1 b.begin5@15,15+0,1 a.drag5@15,15+0,1 b.drag5@15,15+0,1 a.drop5@15,15+0,1 "
     "b.drop5@15,15+0,1 ",
     "cdba ba a", "0 0"},
    {"keys go with each step", "a", 'a', "L+A sM16,15 scM17,15 cM18,15 M19,15 L-19,15",
     "a.begin5@15,15+1,0 a.drag5@15,15+1,0 a.drag13@15,15+2,0 a.drag9@15,15+3,0 a.drag1@15,15+4,0 "
     "a.drop1@15,15+4,0 ",
     "bcda a a", "0 0"},
    {"Ctrl copies, and the copy is selected", "a", 'a', "L+A M15,60 cL-15,60",
     "a.begin1@15,15+0,45 a.drag1@15,15+0,45 a.drop9@15,15+0,45 ", "bcdaa' a' -", "0 0"},
    {"copies of many end with the last of the old ones", "abc", 'b', "L+A M15,60 cL-15,60",
     "a.begin1@15,15+0,45 b.begin1@15,15+0,45 c.begin1@15,15+0,45 "
     "a.drag1@15,15+0,45 b.drag1@15,15+0,45 c.drag1@15,15+0,45 "
     "a.drop9@15,15+0,45 b.drop9@15,15+0,45 c.drop9@15,15+0,45 ",
     "dabca'b'c' a'b'c' -", "0 0"},
    {"the right button drags too", "", 0, "R+A M15,60 R-15,61",
     "a.begin2@15,15+0,45 a.drag2@15,15+0,45 a.drop2@15,15+0,46 ", "bcda a a", "0 0"},
    {"and drags all", "ab", 'b', "R+A scM15,60 sR-15,60",
     "a.begin14@15,15+0,45 b.begin14@15,15+0,45 a.drag14@15,15+0,45 b.drag14@15,15+0,45 a.drop6@15,15+0,45 "
     "b.drop6@15,15+0,45 ",
     "cdba ab a", "0 0"},

    // The rubber band.
    {"a band selects what lies in it", "d", 'd', "L+E M5,5 L-5,5", "", "abcd abcd -", "0 0"},
    {"a band from the left", "", 0, "L+0,0 M80,40 L-80,40", "", "cdab ab -", "0 0"},
    {"a band is on until the release", "", 0, "L+E M5,5", "", "abcd  -", "1 0 band"},
    {"a band counts as it stood last", "", 0, "L+E M5,5 M170,110 M40,5 L-5,5", "", "abcd bcd -", "0 0"},
    {"a band over parts selects nothing", "", 0, "L+E M60,15 L-60,15", "", "abcd  -", "0 0"},
    {"a band of no width", "", 0, "L+E M180,5 L-180,5", "", "abcd  -", "0 0"},
    {"a band with Shift only adds", "a", 'a', "sL+E sM40,5 sL-40,5", "", "abcd abcd -", "0 0"},
    {"a band without Shift begins anew", "a", 'a', "L+E M40,5 L-40,5", "", "abcd bcd -", "0 0"},
    {"the right button draws no band", "a", 'a', "R+E M5,5 R-5,5", "", "bcda  -", "0 0"},

    // Menus and double clicks.
    {"a right click", "", 0, "R+A R-A", "ly.menu0@15,15 ", "bcda a a", "0 0"},
    {"a right click in a selection of many", "ab", 'b', "sR+A sR-A", "ly.menu4@15,15 ", "cdba ab a", "0 0"},
    {"a right click beside the sprites", "ab", 'b', "R+E R-E", "ly.menu0@180,120 ", "cdab  -", "0 0"},
    {"no menu where the pointer has moved", "a", 0, "R+E M5,5 R-6,5", "", "bcda  -", "0 0"},
    {"a menu where it came back", "a", 0, "R+E M5,5 ME R-E", "ly.menu0@180,120 ", "bcda  -", "0 0"},
    {"no menu after a drag", "", 0, "R+A M16,15 MA R-A",
     "a.begin2@15,15+1,0 a.drag2@15,15+1,0 a.drag2@15,15+0,0 a.drop2@15,15+0,0 ", "bcda a a", "0 0"},
    {"a double click opens", "", 0, "L+A L-A LLA L-A", "ly.open0@15,15 ", "bcda a a", "0 0"},
    {"a double click opens on its release", "", 0, "L+A L-A LLA", "", "bcda a a", "2 0"},
    {"keys and place of the release", "ab", 'b', "L+A L-A sLLA sL-B", "ly.open4@55,15 ", "cdba ab a", "0 0"},
    {"a double click does not drag", "", 0, "L+A L-A LLA M60,60 L-60,60", "ly.open0@60,60 ", "bcda a a", "0 0"},
    {"a double click opens outside too", "", 0, "L+A L-A LLA O+ L--9,15", "ly.open0@-9,15 ", "bcda a a",
     "0 0 outside"},
    {"the right button takes a double click back", "", 0, "L+A L-A LLA R+A L-A R-A", "", "bcda a a", "0 0"},
    {"no double click under the right button", "", 0, "R+A LLA L-A R-A", "ly.menu0@15,15 ", "bcda a a", "0 0"},

    // Leaving the view.
    {"a drag is hidden outside", "ab", 'a', "L+A M16,15 O+",
     "a.begin1@15,15+1,0 b.begin1@15,15+1,0 a.drag1@15,15+1,0 b.drag1@15,15+1,0 a.hide b.hide ", "cdba ab a",
     "1 0 drag outside"},
    {"and goes on inside", "a", 'a', "L+A M16,15 O+ O-17,15 L-18,15",
     "a.begin1@15,15+1,0 a.drag1@15,15+1,0 a.hide a.show a.drag1@15,15+2,0 a.drop1@15,15+3,0 ", "bcda a a",
     "0 0"},
    {"a drop outside", "ab", 'b', "L+A M16,15 O+ L--9,15",
     "a.begin1@15,15+1,0 b.begin1@15,15+1,0 a.drag1@15,15+1,0 b.drag1@15,15+1,0 a.hide b.hide "
     "a.drop1@15,15+-24,0 "
     "b.drop1@15,15+-24,0 ",
     "cdba ab a", "0 0 outside"},
    {"a drop of the right button outside", "a", 'a', "R+A M16,15 O+ R--9,15",
     "a.begin2@15,15+1,0 a.drag2@15,15+1,0 a.hide a.drop2@15,15+-24,0 ", "bcda a a", "0 0 outside"},
    {"outside before the first move", "a", 'a', "L+A O+ L--9,15", "", "bcda a a", "0 0 outside"},
    {"and back", "a", 'a', "L+A O+ O-16,15 L-16,15", "a.begin1@15,15+1,0 a.drag1@15,15+1,0 a.drop1@15,15+1,0 ",
     "bcda a a", "0 0"},
    {"Shift outside toggles nothing", "ab", 'a', "sL+A O+ sL--9,15", "", "cdba ab a", "0 0 outside"},
    {"a band outside selects nothing", "a", 'a', "sL+E M5,5 O+ L--9,15", "", "bcda a -", "0 0 outside"},
    {"a band that comes back", "", 0, "L+E M170,5 O+ O-40,5 L-40,5", "", "abcd bcd -", "0 0"},
    {"a right click outside", "", 0, "R+A O+ R--9,15", "", "bcda a a", "0 0 outside"},
    {"a press after leaving is inside again", "", 0, "L+A O+ L--9,15 L+B M56,15 L-56,15",
     "b.begin1@55,15+1,0 b.drag1@55,15+1,0 b.drop1@55,15+1,0 ", "cdab b b", "0 0"},

    // The other button.
    {"the right button takes a drag back", "a", 'a', "L+A M16,15 R+16,15",
     "a.begin1@15,15+1,0 a.drag1@15,15+1,0 a.hide a.drop1@15,15+1,0 ", "bcda a a", "0 0 outside"},
    {"and nothing comes behind it", "a", 'a', "L+A M16,15 R+16,15 M60,60 L-60,60 M50,50 R-16,15",
     "a.begin1@15,15+1,0 a.drag1@15,15+1,0 a.hide a.drop1@15,15+1,0 ", "bcda a a", "0 0 outside"},
    {"the left button takes a drag back", "a", 'a', "R+A M16,15 L+16,15 L-16,15 R-16,15",
     "a.begin2@15,15+1,0 a.drag2@15,15+1,0 a.hide a.drop2@15,15+1,0 ", "bcda a a", "0 0 outside"},
    {"the right button takes a band back", "a", 'a', "sL+E M5,5 R+5,5 R-5,5 L-5,5", "", "bcda a -",
     "0 0 outside"},
    {"the right button takes Shift back", "a", 'a', "sL+B sR+B sL-B sR-B", "", "bcda a a", "0 0 outside"},
    {"the left button takes a menu back", "", 0, "R+A L+A L-A R-A", "", "bcda a a", "0 0 outside"},
    {"outside the drag is hidden already", "a", 'a', "L+A M16,15 O+ R+-9,15 R--9,15 L--9,15",
     "a.begin1@15,15+1,0 a.drag1@15,15+1,0 a.hide a.drop1@15,15+-24,0 ", "bcda a a", "0 0 outside"},
    {"for the left button too", "a", 'a', "R+A M16,15 O+ L+-9,15 L--9,15 R--9,15",
     "a.begin2@15,15+1,0 a.drag2@15,15+1,0 a.hide a.drop2@15,15+-24,0 ", "bcda a a", "0 0 outside"},
    {"then a press begins anew", "a", 'a', "L+A M16,15 R+16,15 R-16,15 L-16,15 L+A M15,16 L-15,16",
     "a.begin1@15,15+1,0 a.drag1@15,15+1,0 a.hide a.drop1@15,15+1,0 a.begin1@15,15+0,1 a.drag1@15,15+0,1 "
     "a.drop1@15,15+0,1 ",
     "bcda a a", "0 0"},
};

/// Calls without those that only paint.
std::string Deeds(const std::string &calls)
{
    std::string deeds;
    for (size_t from = 0, to; (to = calls.find(' ', from)) != std::string::npos; from = to + 1) {
        std::string word = calls.substr(from, to + 1 - from);
        if (word.find(".paint") == std::string::npos && word.find(".decorate") == std::string::npos)
            deeds += word;
    }
    return deeds;
}

TTestSprite *ByName(const TTestLayer &ly, char name)
{
    TEdcSprite *spr = ly.LnkFirst();
    while (static_cast<TTestSprite *>(spr)->name[0] != name)
        spr = ly.LnkNext(spr);
    return static_cast<TTestSprite *>(spr);
}

/// The sprites as a row wants them.
void Arrange(TTestLayer &ly, const Row &row)
{
    ly.DeleteAll(false);
    for (const auto &spr : sprites)
        ly.Put(spr.name, spr.place);
    ly.SetActive(true);
    for (const char *name = row.selected; *name; ++name)
        ly.Select(ByName(ly, *name), true, NULL);
    ly.SetFocus(row.focus ? ByName(ly, row.focus) : NULL, NULL);
}

std::string Lists(const TTestLayer &ly)
{
    return ly.Pnt() + " " + ly.Sel() + " " + ly.FocusName();
}

/// A selector on a layer that is on no screen, driven as the document drives it.
class Selector : public testing::Test
{
protected:
    Selector() { selector.SetLayer(&ly); }

    void Fill(const Row &row)
    {
        Arrange(ly, row);
        log.Take();
        doc.obsolete = 0;
    }
    void Send(const GestureEvent &event)
    {
        switch (event.kind) {
        case GestureEvent::LEFT_DOWN:
            selector.LeftDown(dc, event.keys, event.at);
            break;
        case GestureEvent::LEFT_UP:
            selector.LeftUp(dc, event.keys, event.at);
            break;
        case GestureEvent::LEFT_DOUBLE:
            selector.LeftDouble(dc, event.keys, event.at);
            break;
        case GestureEvent::RIGHT_DOWN:
            selector.RightDown(dc, event.keys, event.at);
            break;
        case GestureEvent::RIGHT_UP:
            selector.RightUp(dc, event.keys, event.at);
            break;
        case GestureEvent::LEAVE:
        case GestureEvent::COME_BACK:
            selector.Outside(dc, event.kind == GestureEvent::LEAVE);
            selector.MouseMove(dc, event.keys, event.at);
            break;
        case GestureEvent::MOVE:
            selector.MouseMove(dc, event.keys, event.at);
            break;
        }
    }
    void Play(const std::string &events)
    {
        for (const GestureEvent &event : ParseGesture(events, Place))
            Send(event);
    }
    bool AnyDrags() const
    {
        bool any = false;
        for (TEdcSprite *spr = ly.LnkFirst(); spr; spr = spr->lnkNext)
            any |= static_cast<TTestSprite *>(spr)->drags;
        return any;
    }
    XCODE TakeFailure() { return std::exchange(xCode, XNULL); }

    SpriteLog log;
    TTestDoc doc;
    TRecordDC dc;
    TTestLayer ly{"ly", 7, EDC_LoACTIVABLE | EDC_LoVISIBLE, log};
    TTestSelector selector{41};
};

TEST_F(Selector, MakesOfEachGestureWhatItMeans)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Fill(row);
        Play(row.events);
        EXPECT_EQ(Deeds(log.Take()), row.calls);
        EXPECT_EQ(Lists(ly), row.lists);
        EXPECT_EQ(selector.States(), row.states);
        EXPECT_TRUE(ly.IsSound());
        EXPECT_EQ(AnyDrags(), std::string(row.states).find("drag") != std::string::npos);
        selector.Activate(false); // for the next one
    }
}

TEST_F(Selector, PaintsAtOnceWhatAPressChanges)
{
    const struct {
        const char *name, *selected;
        char focus;
        const char *events, *calls;
        int level;
    } table[] = {
        {"first", "", 0, "L+A", "a.paint a.paint a.decorate ", 0},
        {"instead", "b", 'b', "L+A", "b.decorate b.paint b.paint a.paint a.paint a.decorate ", 0},
        {"focus", "ab", 'b', "L+A", "b.decorate b.paint a.paint a.decorate ", 0},
        {"none", "ab", 'b', "L+E", "b.decorate a.paint b.paint b.paint ", 0},
        {"added", "b", 'b', "sL+A sL-A", "b.decorate a.paint b.paint a.paint a.decorate ", 0},
        {"taken out", "ba", 'b', "sL+A sL-A", "b.decorate a.paint b.decorate ", 0},
        {"banded", "d", 'd', "sL+E sM5,5 sL-5,5", "d.decorate d.paint a.paint b.paint c.paint ", 0},
        {"dropped", "ab", 'a', "L+A M16,15 L-16,15", "", EDC_PAINT},
    };
    for (const auto &row : table) {
        Fill({row.name, row.selected, row.focus, NULL, NULL, NULL, NULL});
        Play(row.events);
        std::string calls = log.Take();
        EXPECT_EQ(Deeds(calls).empty() ? calls : "", row.calls) << row.name;
        EXPECT_EQ(doc.obsolete, row.level) << row.name;
    }
}

TEST_F(Selector, InvertsADottedRectangleForTheBand)
{
    Fill(rows[0]);
    dc.SetPen({.color = {1, 2, 3}, .width = 4});
    TDCState before = dc.State();
    const char *const band = "Rect 5,7,180,120 pen ffffff dot brush none xor\n";
    for (const char *events : {"L+E M5,7", "L+5,7 ME", "L+180,7 M5,120", "L+5,120 M180,7"}) {
        dc.calls.clear();
        Play(events);
        EXPECT_EQ(dc.calls, band) << events;
        selector.Outside(dc, true); // takes it away
        selector.Outside(dc, false);
        EXPECT_EQ(dc.calls, std::string(band) + band + band) << events;
        dc.calls.clear();
        selector.MouseMove(dc, 0, {1, 1});
        EXPECT_EQ(dc.calls.find(band), 0u) << "the old one goes first";
        EXPECT_EQ(std::count(dc.calls.begin(), dc.calls.end(), '\n'), 2);
        selector.RightDown(dc, 0, {1, 1});
        EXPECT_TRUE(selector.IsIdle());
    }
    EXPECT_EQ(dc.State().pen, before.pen);
    EXPECT_EQ(dc.State().mix, before.mix);
    EXPECT_EQ(dc.State().opaque, before.opaque);
}

TEST_F(Selector, WithoutALayerNothingHappens)
{
    Fill(rows[0]);
    selector.SetLayer(NULL);
    for (const char *events :
         {"L+A M16,15 L-16,15", "sL+A sL-A", "R+A R-A", "L+A L-A LLA L-A", "L+E M5,5 O+ O-6,6"})
        Play(events);
    selector.OpenAt(0, {});
    selector.MenuAt(0, {});
    EXPECT_EQ(log.Take(), "");
    EXPECT_EQ(selector.States(), "0 0");
    EXPECT_EQ(dc.calls, "");
}

TEST_F(Selector, ALayerThatGoesInTheMiddleLeavesNoGesture)
{
    for (const char *events : {"L+A M16,15", "L+E M5,5", "R+A M16,15", "L+A L-A LLA"}) {
        Fill(rows[0]);
        Play(events);
        selector.Activate(false); // as the manager does it
        selector.SetLayer(NULL);
        selector.LeftUp(dc, 0, {16, 15});
        selector.RightUp(dc, 0, {16, 15});
        selector.SetLayer(&ly);
        selector.Activate(true);
        EXPECT_EQ(selector.States(), "0 0") << events;
        log.Take();
        Play("L+B M56,15 L-56,15");
        EXPECT_EQ(Deeds(log.Take()), "b.begin1@55,15+1,0 b.drag1@55,15+1,0 b.drop1@55,15+1,0 ") << events;
    }
}

TEST_F(Selector, ASelectionThatIsDeletedInADragEndsItQuietly)
{
    for (const char *press : {"L+A M16,15", "R+A M16,15"}) {
        Fill(rows[0]);
        Play(press);
        ly.DeleteSelected(false);
        Play("M40,40 O+ O-30,30 M31,30 L-31,30 R-31,30");
        EXPECT_TRUE(selector.IsIdle()) << press;
        EXPECT_EQ(ly.Lnk(), "bcd");
        EXPECT_TRUE(ly.IsSound());
    }
}

/// After a failure, a release or a press at the latest makes all well.
TEST_F(Selector, WhereverAGestureFailsTheNextPressStartsClean)
{
    int failures = 0;
    for (const Row &row : rows)
        for (int n = 1;; ++n) {
            SCOPED_TRACE(testing::Message() << row.name << ", call " << n);
            Fill(row);
            selector.Activate(true);
            log.queries = true;
            log.fired = 0;
            log.failAt = n;
            for (const GestureEvent &event : ParseGesture(row.events, Place)) {
                bool before = log.fired > 0;
                Send(event);
                if (log.fired > 0 && !before) {
                    EXPECT_EQ(TakeFailure(), XALLOC);
                    EXPECT_EQ(selector.States().substr(0, 3), "0 0");
                    EXPECT_GE(doc.obsolete, EDC_PAINT);
                }
                EXPECT_STREQ(xCode, XNULL);
                EXPECT_TRUE(ly.IsSound());
            }
            bool fired = log.fired > 0;
            log.failAt = 0;
            log.queries = false;
            Play("L+E L-E R+E R-E");
            EXPECT_TRUE(selector.IsIdle());
            EXPECT_EQ(ly.Sel(), "");
            log.Take();
            Play("L+E M1,1 L-1,1");
            EXPECT_EQ(ly.CountSel(), ly.CountLnk());
            EXPECT_EQ(Deeds(log.Take()), "");
            EXPECT_TRUE(selector.IsIdle());
            failures += fired;
            if (!fired)
                break;
        }
    EXPECT_GT(failures, 600);
}

TEST_F(Selector, EachStepOfADragReachesAThousandSprites)
{
    enum { SPRITES = 1000 };
    for (int i = 0; i < SPRITES; ++i)
        ly.Put("x", {i % 40 * 10, i / 40 * 10, i % 40 * 10 + 8, i / 40 * 10 + 8});
    ly.SetActive(true);
    ly.SelectAll(true, NULL);
    Play("L+4,4 M14,9 M24,14 L-24,14");
    int at = 0;
    for (TEdcSprite *spr = ly.LnkFirst(); spr; spr = ly.LnkNext(spr), ++at) {
        int x = at % 40 * 10 + 20, y = at / 40 * 10 + 10;
        EXPECT_EQ(static_cast<TTestSprite *>(spr)->place, (TRect{x, y, x + 8, y + 8}));
    }
    EXPECT_EQ(ly.CountSel(), SPRITES);
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Selector, SpritesHearOfShiftAndCtrlOnly)
{
    const unsigned others = 0x1 | 0x2 | 0x10 | EDC_KEY_TAKEBACK;
    Fill({"", "a", 'a', NULL, NULL, NULL, NULL});
    selector.LeftDown(dc, others, Place('A'));
    selector.MouseMove(dc, others, {16, 15});
    selector.MouseMove(dc, others | WIN_KEY_SHIFT | WIN_KEY_CTRL, {17, 15});
    selector.LeftUp(dc, others | WIN_KEY_SHIFT, {17, 15});
    EXPECT_EQ(Deeds(log.Take()), "a.begin1@15,15+1,0 a.drag1@15,15+1,0 a.drag13@15,15+2,0 a.drop5@15,15+2,0 ");
}

TEST_F(Selector, ADropThatFailsLeavesNothingDragging)
{
    for (int n = 1; n <= 3; ++n) {
        Fill({"", "abc", 'a', NULL, NULL, NULL, NULL});
        Play("L+A M16,15");
        log.failAt = n;
        selector.LeftUp(dc, 0, {16, 15});
        EXPECT_EQ(TakeFailure(), XALLOC);
        EXPECT_EQ(selector.States(), "0 0");
        EXPECT_TRUE(ly.IsSound());
        log.Take();
        Play("M30,30 L-30,30");
        EXPECT_EQ(log.Take(), "");
    }
}

TEST_F(Selector, AFailedDragIsTakenBackAndMovesNothing)
{
    for (int n = 1; n <= 6; ++n) { // the handles, begin and drag of both
        Fill({"", "ab", 'a', NULL, NULL, NULL, NULL});
        Play("L+A");
        log.failAt = n;
        selector.MouseMove(dc, 0, {16, 15});
        EXPECT_EQ(TakeFailure(), XALLOC);
        selector.Outside(dc, true); // what the document does behind a failure
        selector.LeftUp(dc, 0, {16, 15});
        EXPECT_TRUE(selector.IsIdle());
        EXPECT_FALSE(AnyDrags());
        for (const auto &spr : sprites)
            EXPECT_EQ(ByName(ly, spr.name[0])->place, spr.place);
    }
}

TEST_F(Selector, APressBehindAFailedDragBeginsItsOwn)
{
    for (const char *press : {"L+B M56,15 L-56,15", "R+B M56,15 R-56,15"}) {
        Fill({"", "a", 'a', NULL, NULL, NULL, NULL});
        Play("L+A");
        log.failAt = 4; // the handles went and came, a has begun
        selector.MouseMove(dc, 0, {16, 15});
        EXPECT_EQ(TakeFailure(), XALLOC);
        EXPECT_TRUE(AnyDrags());
        log.Take();
        Play(press);
        std::string mode = press[0] == 'L' ? "1" : "2";
        EXPECT_EQ(Deeds(log.Take()), "a.hide a.drop1@15,15+40,0 b.begin" + mode + "@55,15+1,0 b.drag" + mode +
                                         "@55,15+1,0 b.drop" + mode + "@55,15+1,0 ");
        EXPECT_FALSE(AnyDrags());
    }
}

TEST_F(Selector, ADragThatCannotEvenBeTakenBackIsLeftAlone)
{
    Fill({"", "a", 'a', NULL, NULL, NULL, NULL});
    Play("L+A M16,15");
    log.onwards = true;
    log.failAt = 1;
    selector.MouseMove(dc, 0, {17, 15});
    EXPECT_EQ(TakeFailure(), XALLOC);
    selector.LeftUp(dc, 0, {17, 15});
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_TRUE(selector.IsIdle());
    log.onwards = false;
    log.failAt = 0;
    log.Take();
    Play("L+E");
    EXPECT_EQ(Deeds(log.Take()), "");
    EXPECT_EQ(ByName(ly, 'a')->place, sprites[0].place);
}

TEST_F(Selector, ABandStaysABandWhereAFocusComesUnderIt)
{
    Fill(rows[0]);
    Play("L+E M5,5");
    ly.SelectAll(true, NULL);
    ly.SetFocus(ly.LnkFirst(), NULL);
    Play("M6,6 M40,5 L-40,5");
    EXPECT_EQ(Deeds(log.Take()), "");
    EXPECT_TRUE(selector.IsIdle());
    EXPECT_TRUE(ly.IsSound());
}

/// The same gestures with real events, in a window.
class SelectorInAWindow : public testing::Test
{
protected:
    SelectorInAWindow()
    {
        blk = new TSpriteBlock(log, 3, 2);
        doc.LinkBlock(blk, NULL, true);
        doc.docZoom.SetCustom(100);
        doc.blockZoom.SetCustom(100);
        doc.Create();
        testdoor::ResizeClient(doc, {240, 160}); // smaller than the block: it can be scrolled
        doc.Start("C:\\x.tst");
        doc.OpenBlock(blk);
        doc.Refresh(0);
        testdoor::Settle();
    }
    ~SelectorInAWindow() override
    {
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        EXPECT_FALSE(doc.HasCapture());
    }

    void Fill(const Row &row)
    {
        Arrange(blk->main, row);
        doc.Refresh(0);
        testdoor::Settle();
        log.Take();
    }
    TPoint InWindow(TPoint p) { return doc.ToWindow(p + TPoint{blk->rect.x, blk->rect.y}); }
    void Send(const GestureEvent &event)
    {
        TPoint at = InWindow(event.at);
        bool left = doc.leftDown > 0, right = doc.rightDown > 0;
        switch (event.kind) {
        case GestureEvent::LEFT_DOWN:
            testdoor::Press(doc, at, testdoor::LEFT, event.keys);
            break;
        case GestureEvent::LEFT_UP:
            testdoor::Release(doc, at, testdoor::LEFT, event.keys);
            break;
        case GestureEvent::LEFT_DOUBLE:
            doc.EvLButtonDblClk(event.keys, at);
            break;
        case GestureEvent::RIGHT_DOWN:
            testdoor::Press(doc, at, testdoor::RIGHT, event.keys);
            break;
        case GestureEvent::RIGHT_UP:
            testdoor::Release(doc, at, testdoor::RIGHT, event.keys);
            break;
        case GestureEvent::LEAVE:
        case GestureEvent::COME_BACK:
        case GestureEvent::MOVE:
            if (doc.leftDown == 2) // it was not the desktop that sent the double click
                doc.EvMouseMove(event.keys, at);
            else
                testdoor::Move(doc, at, event.keys, left, right);
            break;
        }
    }
    void Play(const std::string &events)
    {
        for (const GestureEvent &event : ParseGesture(events, Place))
            Send(event);
    }
    void LetGo()
    {
        for (testdoor::Button button : {testdoor::LEFT, testdoor::RIGHT})
            if (button == testdoor::LEFT ? doc.leftDown > 0 : doc.rightDown > 0)
                testdoor::Release(doc, InWindow({181, 121}), button);
    }

    SpriteLog log;
    TTestDoc doc;
    TSpriteBlock *blk;
};

TEST_F(SelectorInAWindow, EachGestureMeansTheSameAndLeavesNoTraces)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Fill(row);
        Play(row.events);
        EXPECT_EQ(Lists(blk->main), row.lists);
        EXPECT_EQ(blk->selector.States(), row.states);
        EXPECT_EQ(doc.obsolete, 0);
        LetGo();
        EXPECT_TRUE(blk->selector.IsIdle());
        EXPECT_TRUE(blk->main.IsSound());
        EXPECT_TRUE(LooksFresh(doc));
    }
}

TEST_F(SelectorInAWindow, NothingIsLeftBehindWhereTheWindowIsSettledAfterEachEvent)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Fill(row);
        for (const GestureEvent &event : ParseGesture(row.events, Place)) {
            Send(event);
            testdoor::Settle();
        }
        LetGo();
        EXPECT_TRUE(LooksFresh(doc));
    }
}

TEST_F(SelectorInAWindow, EscTakesAnyGestureBackAndKeepsTheSelection)
{
    for (const Row &row : rows) {
        std::string states = row.states;
        if (states.find("drag") == std::string::npos && states.find("band") == std::string::npos)
            continue;
        SCOPED_TRACE(row.name);
        Fill(row);
        Play(row.events);
        std::string selected = blk->main.Sel();
        testdoor::Key(doc, "Esc");
        EXPECT_TRUE(blk->selector.IsIdle());
        EXPECT_EQ(blk->main.Sel(), selected);
        for (const auto &spr : sprites)
            EXPECT_EQ(ByName(blk->main, spr.name[0])->place, spr.place);
        EXPECT_EQ(doc.openedBlk, blk);
        EXPECT_TRUE(LooksFresh(doc));
        LetGo();
    }
}

TEST_F(SelectorInAWindow, EscUnderADoubleClickOpensNothing)
{
    Fill(rows[0]);
    Play("L+A L-A LLA");
    testdoor::Key(doc, "Esc");
    EXPECT_TRUE(blk->selector.IsIdle());
    LetGo();
    EXPECT_EQ(Deeds(log.Take()), "");
    testdoor::DoubleClick(doc, InWindow(Place('A')));
    EXPECT_EQ(Deeds(log.Take()), "main.open0@15,15 ");
}

TEST_F(SelectorInAWindow, GhostAndBandComeOffWhereThePictureMovesUnderThem)
{
    for (const char *press : {"L+A M40,40", "L+E M5,5", "R+A M40,40"}) {
        SCOPED_TRACE(press);
        Fill(rows[0]);
        doc.Scroller()->ScrollTo(0, 0);
        testdoor::Settle();
        Play(press);
        testdoor::Wheel(doc, {50, 50}, -1);
        testdoor::Key(doc, "Right");
        Play("M60,60");
        testdoor::Move(doc, {400, 300}, 0, doc.leftDown > 0, doc.rightDown > 0); // outside: it scrolls
        EXPECT_TRUE(doc.autoScroll);
        doc.scrollTick -= 1000;
        doc.IdleAction(0);
        Play("M150,100");
        testdoor::Settle();
        LetGo();
        EXPECT_GT(doc.Scroller()->XPos(), 0);
        EXPECT_TRUE(LooksFresh(doc));
    }
}

TEST_F(SelectorInAWindow, APressThatBringsTheFocusDoesNotPaintOverTheBand)
{
    Fill(rows[0]);
    doc.EvSetFocus(); // all is invalid, and no turn of the message loop comes before the moves
    Play("L+E M170,40");
    testdoor::Settle();
    Play("M175,40 L-175,40");
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(SelectorInAWindow, AFailureInAGestureIsReportedOnceAndLeavesTheWindowUsable)
{
    for (const char *events : {"L+A M16,15 M20,20 L-20,20", "sL+E M5,5 L-5,5", "R+A M16,15 R-16,15"})
        for (int n = 1;; ++n) {
            SCOPED_TRACE(testing::Message() << events << ", call " << n);
            Fill({"", "b", 'b', NULL, NULL, NULL, NULL});
            TestHook hook;
            log.fired = 0;
            log.failAt = n;
            Play(events);
            log.failAt = 0;
            LetGo();
            bool inPaint = blk->manager.IsSuspended(); // a failure of painting ends there
            EXPECT_EQ(hook.Reports() + inPaint, log.fired);
            EXPECT_EQ(doc.leftDown + doc.rightDown, 0);
            if (inPaint) {
                doc.CloseBlock();
                doc.OpenBlock(blk);
            }
            doc.Refresh(0);
            EXPECT_TRUE(blk->selector.IsIdle());
            EXPECT_TRUE(LooksFresh(doc));
            Play("L+E L-E");
            EXPECT_EQ(blk->main.Sel(), "");
            EXPECT_TRUE(blk->main.IsSound());
            if (log.fired == 0)
                break;
        }
}

TEST_F(SelectorInAWindow, ARealDoubleClickOpensAndARightClickAsksForTheMenu)
{
    Fill(rows[0]);
    testdoor::DoubleClick(doc, InWindow(Place('A')), WIN_KEY_SHIFT);
    EXPECT_EQ(Deeds(log.Take()), "main.open4@15,15 ");
    testdoor::Click(doc, InWindow(Place('B')), testdoor::RIGHT);
    EXPECT_EQ(Deeds(log.Take()), "main.menu0@55,15 ");
    EXPECT_EQ(blk->main.Sel(), "b");
    EXPECT_TRUE(LooksFresh(doc));
}
} // namespace
