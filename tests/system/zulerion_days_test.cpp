// Days of a person's work in any order: halls are made, opened, changed, drawn upon, evaluated, printed and
// saved, wherever chance leads. After each act the window shows what it ought to, nothing is left to be done,
// no message tells of a failure, and a saved hall comes back as it was.
#include "zulerioncase.h"

#include "support/chance.h"

namespace
{
using testdoor::DialogBox;
using testdoor::ModalBox;

class Days : public Zulerion
{
protected:
    /// One day of so many acts.
    void Live(unsigned start, int acts)
    {
        CHANCE chance(start);
        OpenSample(chance.Of(halls));
        for (int i = 0; i < acts && !HasFailure(); ++i) {
            std::string act = Act(chance);
            SCOPED_TRACE(testing::Message() << "day " << start << ", act " << i << ": " << act);
            EXPECT_EQ(testdoor::PendingScripts(), 0);
            EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
            EXPECT_STREQ(xCode, XNULL);
            EXPECT_EQ(Doc().obsolete, 0);
            EXPECT_EQ(Doc().locked, 0);
            SettleBehindMessages();
            EXPECT_LT(StrangePixels(), 10) << "a ghost has more";
        }
        if (Doc().modified)
            Expect(WIN_ID_NO);
        Choose(CLOSE);
        EXPECT_TRUE(IsEmptyWindow());
    }

private:
    /// Pixels that a fresh paint of everything changes. The edges of big glyphs, painted in strips or in one,
    /// may differ by shades that nobody sees.
    long StrangePixels()
    {
        enum { SHADE = 32 };
        std::vector<TColor> now = testdoor::Pixels(Doc());
        Doc().Invalidate();
        testdoor::Settle();
        std::vector<TColor> fresh = testdoor::Pixels(Doc());
        long strange = 0;
        for (size_t i = 0; i < fresh.size(); ++i)
            strange += std::abs(now[i].red - fresh[i].red) > SHADE ||
                       std::abs(now[i].green - fresh[i].green) > SHADE ||
                       std::abs(now[i].blue - fresh[i].blue) > SHADE;
        return strange;
    }

    static constexpr const char *halls[] = {"Werkstatt", "Produktionshalle", "Logistikhalle"};

    std::string Act(CHANCE &chance)
    {
        if (Doc().Room() == NULL)
            return OpenAny(chance);
        switch (chance.Int(0, Doc().openedBlk ? 9 : 11)) {
        case 0:
            return Evaluate(chance);
        case 1:
            return EditAny(chance);
        case 2:
            return Look(chance);
        case 3:
            return ResizeAny(chance);
        case 4:
            return PrintAny(chance);
        default:
            return Doc().openedBlk ? Watched(chance, [&] { return Draw(chance); }) : LeaveReport(chance);
        }
    }
    /// What a tool brings up is confirmed or left. A message may only tell what the tool still needs.
    static std::string Watched(CHANCE &chance, const std::function<std::string()> &act)
    {
        enum { BOXES = 6 };
        std::string seen;
        int answer = chance.One(2) ? WIN_ID_OK : WIN_ID_CANCEL;
        for (int i = 0; i < BOXES; ++i)
            testdoor::Script([&seen, i, answer](ModalBox &box) {
                bool isMessage = box.Kind() == "message";
                std::string text = isMessage ? ToUtf8(box.Text().c_str()) : "";
                EXPECT_TRUE(!isMessage || text.find("spezifizieren") != std::string::npos ||
                            text.find("muss eingegeben") != std::string::npos)
                    << text;
                seen += ", sees " + box.Kind() + " " + ToUtf8(box.Caption().c_str());
                box.Answer(isMessage ? WIN_ID_OK : i == 0 ? answer : static_cast<int>(WIN_ID_CANCEL));
            });
        std::string told = act();
        testdoor::PendingScripts();
        return told + seen;
    }
    std::string LeaveReport(CHANCE &chance)
    {
        switch (chance.Int(0, 5)) {
        case 0:
            return OpenAny(chance);
        case 1:
            return SaveAndReturn();
        case 2:
            if (Doc().modified)
                Expect(WIN_ID_NO);
            Key("Ctrl+F4");
            return "closes";
        default:
            return OpenPlan(chance);
        }
    }
    std::string OpenAny(CHANCE &chance)
    {
        bool asks = Doc().path != NULL && Doc().modified;
        if (chance.One(2)) {
            const char *sizes[] = {"1", "7.5", "24", "80", "333"};
            const char *length = chance.Of(sizes), *width = chance.Of(sizes);
            InDialog("Neu", [=](DialogBox &box) {
                box.Type(100, length);
                box.Type(101, width);
                box.Type(102, "5");
                box.Click(WIN_ID_OK);
            });
            if (asks)
                Expect(WIN_ID_NO);
            Key("Ctrl+N");
            return std::string("makes a hall of ") + length + " x " + width;
        }
        std::string hall = chance.Of(halls);
        ChooseFile("open", Sample(hall));
        if (asks)
            Expect(WIN_ID_NO);
        Key("Ctrl+O");
        return "opens " + hall;
    }
    std::string Evaluate(CHANCE &chance)
    {
        const char *heights[] = {"0", "1.5", "30"};
        const char *airs[] = {"", "18", "-40"};
        const char *height = chance.Of(heights), *air = chance.Of(airs);
        bool isRun = !chance.One(4);
        InDialog("Aktualisierung", [=](DialogBox &box) {
            box.Type(100, height);
            box.Type(103, air);
            box.Click(isRun ? WIN_ID_OK : WIN_ID_CANCEL);
        });
        Key("F5");
        return std::string(isRun ? "evaluates" : "evaluates nothing") + " at " + height + " m, " + air + " C";
    }
    std::string EditAny(CHANCE &chance)
    {
        switch (chance.Int(0, 2)) {
        case 0: {
            int entry = chance.Int(0, 5);
            Edit(HYGIENE, "Arbeitsbedingungen", [entry](DialogBox &box) { box.Choose(100, entry); });
            return "chooses class " + std::to_string(entry);
        }
        case 1: {
            const char *gains[] = {"0", "4.5", "1e6"};
            const char *gain = chance.Of(gains);
            Edit(ENERGY, "Wärmequellen", [gain](DialogBox &box) { box.Type(104, gain); });
            return std::string("gains ") + gain;
        }
        default: {
            std::string text;
            for (int i = chance.Int(0, 29); i > 0; --i)
                text += "Noch ein Satz, der etwas sagt. " + std::string(chance.One(3) ? "\n\n" : "");
            Edit(CONCLUSION, "Schlußtext", [&text](DialogBox &box) { box.Paste(101, text); });
            return "writes " + std::to_string(text.size()) + " characters";
        }
        }
    }
    std::string Look(CHANCE &chance)
    {
        const char *keys[] = {"Home", "End", "PgUp", "PgDown", "Down", "Up"};
        TRect client = Doc().GetClientRect();
        TPoint at = {chance.Int(0, std::max(client.right, 1) - 1),
                     chance.Int(0, std::max(client.bottom, 1) - 1)};
        switch (chance.Int(0, 2)) {
        case 0: {
            const char *key = chance.Of(keys);
            Key(key);
            return key;
        }
        case 1:
            testdoor::Wheel(Doc(), at, chance.Int(-4, 4));
            testdoor::Settle();
            return "turns the wheel";
        default:
            testdoor::Wheel(Doc(), at, chance.Int(-12, 12), WIN_KEY_CTRL);
            testdoor::Settle();
            return "zooms";
        }
    }
    std::string ResizeAny(CHANCE &chance)
    {
        TSize size = {chance.Int(400, 1100), chance.Int(300, 900)};
        testdoor::ResizeClient(Doc(), size);
        testdoor::Settle();
        return Format("resizes to %d x %d", size.cx, size.cy);
    }
    std::string PrintAny(CHANCE &chance)
    {
        int page = chance.Int(0, 3);
        size_t pages = PdfPages(Print(page, page)).size();
        EXPECT_TRUE(page == 0 || pages == 1);
        return Format("prints page %d", page);
    }
    std::string SaveAndReturn()
    {
        std::filesystem::remove(folder.Path("halle.sc1"));
        ChooseFile("save", folder.Path("halle.sc1"));
        Key("Ctrl+Shift+S");
        std::string bytes = folder.Get("halle.sc1");
        EXPECT_NE(bytes, "");
        Key("Ctrl+F4");
        OpenHall(folder.Path("halle.sc1"));
        ChooseFile("save", folder.Path("zwei.sc1"));
        Key("Ctrl+Shift+S");
        EXPECT_EQ(folder.Get("zwei.sc1"), bytes);
        std::filesystem::remove(folder.Path("zwei.sc1"));
        return "saves and comes back";
    }
    std::string OpenPlan(CHANCE &chance)
    {
        const int plans[] = {2, 2, 2, 6, 8, 10, 12, 14};
        TEdcBlock *plan = Doc().Parts()[static_cast<size_t>(chance.Of(plans))];
        ScrollTo(plan);
        TRect place = Doc().ToWindow(plan->rect.Rect());
        testdoor::DoubleClick(Doc(), {place.left + 3, place.top + 3});
        testdoor::Settle();
        EXPECT_EQ(Doc().openedBlk, plan);
        return "opens a plan";
    }
    std::string Draw(CHANCE &chance)
    {
        const int gadgets[] = {21011, 21511, 21515, 2001, 3001, 5001};
        const char *keys[] = {"Ctrl+A", "Ctrl+A", "Del", "Esc"};
        switch (chance.Int(0, 5)) {
        case 0:
        case 1: {
            int gadget = chance.Of(gadgets);
            bool pressed = Press(gadget);
            return Format("%s %d", pressed ? "presses" : "finds grey", gadget);
        }
        case 2: {
            const char *key = chance.Of(keys);
            Key(key);
            return key;
        }
        default:
            return Drag(chance);
        }
    }
    std::string Drag(CHANCE &chance)
    {
        TRect client = Doc().GetClientRect();
        TPoint from = {chance.Int(0, client.right - 1), chance.Int(0, client.bottom - 1)};
        TPoint to = {chance.Int(0, client.right - 1), chance.Int(0, client.bottom - 1)};
        unsigned keys = static_cast<unsigned>(chance.Int(0, 3)) * WIN_KEY_SHIFT; // none, Shift, Ctrl, both
        testdoor::Press(Doc(), from, testdoor::LEFT, keys);
        for (int i = 1; i <= 3; ++i)
            testdoor::Move(Doc(), {from.x + (to.x - from.x) * i / 3, from.y + (to.y - from.y) * i / 3}, keys,
                           true);
        testdoor::Release(Doc(), to, testdoor::LEFT, keys);
        testdoor::Settle();
        return Format("drags from %d, %d to %d, %d with %u", from.x, from.y, to.x, to.y, keys);
    }
};

TEST_F(Days, InAnyOrderLeaveNothingBehind)
{
    for (unsigned start = 1; start <= 4 && !HasFailure(); ++start)
        Live(start, 30);
}
} // namespace
