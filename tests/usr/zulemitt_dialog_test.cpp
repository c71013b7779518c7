// The emitters' dialog as a designer meets it: which models and outputs it offers, what it refuses, what it
// gives to a new emitter or to each of the selected ones, and what it does where models are missing or damaged.
#include "win/shell.h"
#include "zuldlgcase.h"
#include "zulemittcase.h"

#include <functional>
#include <optional>

namespace
{
using testdoor::DialogBox;
using TEXTS = std::vector<std::string>;

enum { MODEL = 100, OUTPUT = 101, INFO = 102, HEIGHT_FIELD = 103, TILT = 104, SKETCH = 105 };
const char missing[] = "Wert muss eingegeben, bzw. gewählt werden.";

std::string opened; // native or not, what the desktop was asked to show

class EmitterDialogs : public DialogCase, protected EmitterBench
{
protected:
    EmitterDialogs()
    {
        opened.clear();
        LayOut();
    }
    ~EmitterDialogs() override
    {
        SetShellDoor(TShellDoor());
        EXPECT_STREQ(xCode, XNULL);
    }

    /// Asks for new emitters' parameters. @return what the layer gives to the tool
    void *Create(const USER &user, bool first = true)
    {
        InDialog(user);
        return layer.QueryCreation(EDC_TlSTOCK, first);
    }
    /// Opens the dialog on all emitters of the set.
    void Edit(const USER &user)
    {
        LayOut();
        layer.SetActive(true);
        layer.SelectAll(true, NULL);
        layer.SetFocus(layer.SelFirst(), NULL);
        doc.obsolete = 0;
        InDialog(user);
        layer.Open();
    }
    static void ChooseModel(DialogBox &box, const std::string &name)
    {
        TEXTS entries = box.Entries(MODEL);
        auto at = std::find(entries.begin(), entries.end(), name);
        ASSERT_NE(at, entries.end()) << name;
        box.Choose(MODEL, static_cast<int>(at - entries.begin()));
    }
    static void Ok(DialogBox &box) { box.Click(WIN_ID_OK); }
    static void Leave(DialogBox &box) { box.Click(WIN_ID_CANCEL); }
    static void Door(bool canOpen, bool opens)
    {
        TShellDoor door;
        door.canOpen = canOpen ? [](const char *) { return true; } : [](const char *) { return false; };
        if (opens)
            door.open = [](const char *file) { return opened = file, 42; };
        else
            door.open = [](const char *) -> int { return WIN_SHELL_NOFILE; };
        SetShellDoor(door);
    }
};

/// An emitter as the combinations need it.
struct VALUES {
    std::string model;
    double output, height, tilt; // W, m, degrees
};
} // namespace

TEST_F(EmitterDialogs, ForANewEmitterOffersNoneAndTheModelsInOrderAndStartsWithNone)
{
    home.Put({.name = "Anders"});
    Create([](DialogBox &box) {
        EXPECT_EQ(box.Caption(), "Infrastrahler");
        EXPECT_EQ(box.Entries(MODEL), (TEXTS{"(nichts)", "Anders", "Kurz", "Lang"}));
        EXPECT_EQ(TextOf(box, MODEL), "(nichts)");
        EXPECT_EQ(TextOf(box, OUTPUT), "0");
        EXPECT_EQ(box.Entries(OUTPUT), TEXTS{"0"});
        EXPECT_FALSE(box.IsEnabled(OUTPUT));
        EXPECT_FALSE(box.IsEnabled(INFO));
        EXPECT_EQ(TextOf(box, INFO), "&Tech. Info. ...");
        EXPECT_EQ(TextOf(box, HEIGHT_FIELD), "");
        EXPECT_EQ(TextOf(box, TILT), "0");
        EXPECT_TRUE(box.IsShown(SKETCH));
        EXPECT_EQ(box.Tip(MODEL), "");
        Leave(box);
    });
}

TEST_F(EmitterDialogs, ForTheSelectedOffersToLeaveTheModelAsItIs)
{
    Hang("Lang", {1, 2, 5}, 0, 0.25);
    Edit([](DialogBox &box) {
        EXPECT_EQ(box.Entries(MODEL), (TEXTS{"(Auswahl)", "(nichts)", "Kurz", "Lang"}));
        EXPECT_EQ(TextOf(box, MODEL), "Lang");
        EXPECT_EQ(box.Entries(OUTPUT), (TEXTS{"(Auswahl)", "20000", "12000"}));
        EXPECT_EQ(TextOf(box, OUTPUT), "20000");
        EXPECT_EQ(TextOf(box, HEIGHT_FIELD), "5");
        EXPECT_EQ(TextOf(box, TILT), "14.3239");
        Leave(box);
    });
}

TEST_F(EmitterDialogs, OutputsAreMadeAnewAtEachChangeOfTheModel)
{
    home.Put({.name = "Mehr", .power = 5000, .reduced = 9000});
    const struct {
        const char *model;
        TEXTS outputs;
        bool enabled;
        const char *range;
    } choices[] = {
        {"Lang", {"20000", "12000"}, true, "12000 bis 20000"},
        {"Kurz", {"8000"}, true, "8000 bis 8000"},
        {"(nichts)", {"0"}, false, ""},
        {"Mehr", {"5000"}, true, "5000 bis 5000"},
        {"Lang", {"20000", "12000"}, true, "12000 bis 20000"},
    };
    auto follow = [&](DialogBox &box) {
        for (const auto &c : choices) {
            ChooseModel(box, c.model);
            EXPECT_EQ(box.Entries(OUTPUT), c.outputs) << c.model;
            EXPECT_EQ(TextOf(box, OUTPUT), c.outputs[0]) << c.model;
            EXPECT_EQ(box.IsEnabled(OUTPUT), c.enabled) << c.model;
            EXPECT_EQ(box.Tip(OUTPUT), c.enabled ? std::string("Dezimalzahl: ") + c.range : "") << c.model;
        }
        Leave(box);
    };
    Create(follow);
    Hang(NULL, {1, 2, 5});
    Edit(follow);
}

TEST_F(EmitterDialogs, AnUnchangedModelKeepsItsOutputAndTheChoiceToLeaveIt)
{
    Hang("Lang", {1, 2, 5})->power = 15000;
    Edit([](DialogBox &box) {
        EXPECT_EQ(TextOf(box, OUTPUT), "15000");
        ChooseModel(box, "Kurz");
        EXPECT_EQ(box.Entries(OUTPUT), TEXTS{"8000"});
        ChooseModel(box, "(Auswahl)");
        EXPECT_EQ(ToUtf8(box.Entries(OUTPUT)[0].c_str()), "(Auswahl)");
        EXPECT_FALSE(box.IsEnabled(OUTPUT));
        EXPECT_FALSE(box.IsEnabled(INFO));
        ChooseModel(box, "Lang");
        EXPECT_EQ(box.Entries(OUTPUT), (TEXTS{"(Auswahl)", "20000", "12000"}));
        EXPECT_EQ(TextOf(box, OUTPUT), "15000");
        Ok(box);
    });
    EXPECT_EQ(set.First()->power, 15000);
    Edit([](DialogBox &box) {
        box.Choose(OUTPUT, 0); // to be left
        ChooseModel(box, "(Auswahl)");
        Ok(box);
    });
    EXPECT_EQ(::TextOf(set), "Lang 1 2 5 rot 0 tilt 0 15000 W\n");
    Edit([](DialogBox &box) {
        box.Choose(OUTPUT, 2);
        Ok(box);
    });
    EXPECT_EQ(set.First()->power, 12000);
}

TEST_F(EmitterDialogs, NumbersAreRefusedOutOfTheirRange)
{
    const struct {
        int field;
        const char *typed;
        bool taken;
    } cases[] = {
        {OUTPUT, "11999", false},  {OUTPUT, "12000", true},
        {OUTPUT, "16000.5", true}, {OUTPUT, "20000", true},
        {OUTPUT, "20001", false},  {OUTPUT, "viel", false},
        {OUTPUT, "-15000", false}, {HEIGHT_FIELD, "-0.1", false},
        {HEIGHT_FIELD, "0", true}, {HEIGHT_FIELD, "123.5", true},
        {TILT, "90", false},       {TILT, "-90", false},
        {TILT, "89.001", false},   {TILT, "89", true},
        {TILT, "-89", true},       {TILT, "steil", false},
    };
    for (bool editing : {false, true}) {
        for (const auto &c : cases) {
            Empty();
            Hang("Lang", {1, 2, 5});
            std::string before = ::TextOf(set);
            auto user = [&](DialogBox &box) {
                ChooseModel(box, "Lang");
                box.Type(HEIGHT_FIELD, "5");
                box.Type(c.field, c.typed);
                if (c.taken) {
                    Ok(box);
                    return;
                }
                EXPECT_NE(PressOk(box).find("Man erwartet eine Dezimalzahl"), std::string::npos) << c.typed;
                EXPECT_EQ(box.Focus(), c.field);
                Leave(box);
            };
            if (editing) {
                Edit(user);
                EXPECT_EQ(::TextOf(set) == before, !c.taken || std::string(c.typed) == "20000") << c.typed;
            } else {
                EXPECT_EQ(Create(user) != NULL, c.taken) << c.typed;
            }
        }
    }
}

TEST_F(EmitterDialogs, TheRefusalNamesTheRangeOfTheModel)
{
    Create([](DialogBox &box) {
        box.Type(HEIGHT_FIELD, "5");
        ChooseModel(box, "Lang");
        box.Type(OUTPUT, "1");
        EXPECT_EQ(PressOk(box), "Man erwartet eine Dezimalzahl von 12000 bis 20000.");
        ChooseModel(box, "Kurz");
        box.Type(TILT, "90");
        EXPECT_EQ(PressOk(box), "Man erwartet eine Dezimalzahl von -89 bis 89.");
        Leave(box);
    });
}

TEST_F(EmitterDialogs, EveryFieldIsRequiredForANewEmitterAndNoneForTheSelected)
{
    for (int field : {OUTPUT, HEIGHT_FIELD, TILT}) {
        EXPECT_NE(Create([&](DialogBox &box) {
                      ChooseModel(box, "Lang");
                      box.Type(HEIGHT_FIELD, "5");
                      box.Type(field, "");
                      EXPECT_EQ(PressOk(box), missing);
                      EXPECT_EQ(box.Focus(), field);
                      box.Type(field, field == OUTPUT ? "15000" : "4");
                      Ok(box);
                  }),
                  nullptr);
    }
    Hang("Lang", {1, 2, 5}, 0, 0.5);
    std::string before = ::TextOf(set);
    Edit([](DialogBox &box) {
        for (int field : {OUTPUT, HEIGHT_FIELD, TILT})
            box.Type(field, "");
        Ok(box);
    });
    EXPECT_EQ(::TextOf(set), before);
}

TEST_F(EmitterDialogs, AConfirmedDialogIsTheStockOfTheToolAndACancelledOneLeavesTheFormerStock)
{
    EXPECT_EQ(Create(Leave), nullptr); // nothing was confirmed so far
    auto *stock = static_cast<TZulEmitterData *>(Create([](DialogBox &box) {
        ChooseModel(box, "Lang");
        box.Choose(OUTPUT, 1);
        box.Type(HEIGHT_FIELD, "4.5");
        box.Type(TILT, "-30");
        Ok(box);
    }));
    ASSERT_NE(stock, nullptr);
    EXPECT_EQ(stock->target, &set);
    TEdcDrawCreation creation;
    creation.type = EDC_TlSTOCK;
    creation.stock = stock;
    layer.Add(layer.CreateSprite(creation));
    EXPECT_EQ(::TextOf(set), "Lang 0 0 4.5 rot 0 tilt -0.523598775598 12000 W\n");
    void *again = Create(
        [](DialogBox &box) { // shows what was confirmed
            EXPECT_EQ(TextOf(box, MODEL), "Lang");
            EXPECT_EQ(box.Entries(MODEL)[0], "(nichts)");
            EXPECT_EQ(TextOf(box, OUTPUT), "12000");
            EXPECT_EQ(box.Entries(OUTPUT), (TEXTS{"20000", "12000"}));
            EXPECT_EQ(TextOf(box, HEIGHT_FIELD), "4.5");
            EXPECT_EQ(TextOf(box, TILT), "-30");
            ChooseModel(box, "Kurz");
            box.Type(HEIGHT_FIELD, "9");
            Leave(box);
        },
        false);
    EXPECT_EQ(again, stock);
    creation.stock = again;
    layer.Add(layer.CreateSprite(creation));
    EXPECT_EQ(::TextOf(*static_cast<EmEMITTER *>(set.Last())),
              "Lang 0 0 4.5 rot 0 tilt -0.523598775598 12000 W");
    EXPECT_EQ(Create([](DialogBox &box) { // the tool is chosen afresh
                  EXPECT_EQ(TextOf(box, MODEL), "(nichts)");
                  EXPECT_EQ(TextOf(box, HEIGHT_FIELD), "");
                  Leave(box);
              }),
              nullptr);
}

TEST_F(EmitterDialogs, AnEmitterWithoutAModelCanBeMade)
{
    auto *stock = static_cast<TZulEmitterData *>(Create([](DialogBox &box) {
        box.Type(HEIGHT_FIELD, "4");
        Ok(box);
    }));
    ASSERT_NE(stock, nullptr);
    TEdcDrawCreation creation;
    creation.type = EDC_TlSTOCK;
    creation.stock = stock;
    layer.Add(layer.CreateSprite(creation));
    EXPECT_EQ(::TextOf(set), "- 0 0 4 rot 0 tilt 0 0 W\n");
}

TEST_F(EmitterDialogs, WithoutAStockTheCreatorSaysWhatIsMissing)
{
    TEdcDrawCreation creation;
    creation.type = EDC_TlSTOCK;
    EXPECT_NE(SaidWhile([&] { EXPECT_EQ(layer.CreateSprite(creation), nullptr); }).find("Objektparameter"),
              std::string::npos);
}

TEST_F(EmitterDialogs, EveryCombinationOfEqualAndDifferentValuesIsEditedFieldByField)
{
    enum { MODELS = 1, OUTPUTS = 2, HEIGHTS = 4, TILTS = 8 }; // which differ
    enum CHANGE { NOTHING, NEW_MODEL, NEW_OUTPUT, NEW_HEIGHT, NEW_TILT, NO_MODEL };
    for (int differ = 0; differ < 16; ++differ) {
        for (CHANGE change : {NOTHING, NEW_MODEL, NEW_OUTPUT, NEW_HEIGHT, NEW_TILT, NO_MODEL}) {
            if (change == NEW_OUTPUT && (differ & MODELS))
                continue; // there is no field for it
            VALUES all[3];
            Empty();
            for (int i = 0; i < 3; ++i) {
                bool odd = i == 1;
                all[i] = {odd && (differ & MODELS) ? "Anders" : "Lang",
                          odd && (differ & OUTPUTS) ? 13000.0 : 15000.0, odd && (differ & HEIGHTS) ? 4.0 : 5.0,
                          odd && (differ & TILTS) ? -20.0 : 10.0};
            }
            home.Put({.name = "Anders"});
            for (const VALUES &v : all)
                Hang(v.model.c_str(), {1, 2, v.height}, 0.5, v.tilt * AgPI / 180)->power = v.output;
            Edit([&](DialogBox &box) {
                EXPECT_EQ(TextOf(box, MODEL), differ & MODELS ? "(Auswahl)" : "Lang");
                EXPECT_EQ(TextOf(box, OUTPUT), differ & MODELS    ? "(Auswahl)"
                                               : differ & OUTPUTS ? "(Auswahl)"
                                                                  : "15000");
                EXPECT_EQ(box.IsEnabled(OUTPUT), !(differ & MODELS));
                EXPECT_EQ(TextOf(box, HEIGHT_FIELD), differ & HEIGHTS ? "" : "5");
                EXPECT_EQ(TextOf(box, TILT), differ & TILTS ? "" : "10");
                switch (change) {
                case NEW_MODEL:
                    ChooseModel(box, "Kurz");
                    break;
                case NEW_OUTPUT:
                    box.Type(OUTPUT, "12500");
                    break;
                case NEW_HEIGHT:
                    box.Type(HEIGHT_FIELD, "7.5");
                    break;
                case NEW_TILT:
                    box.Type(TILT, "-12");
                    break;
                case NO_MODEL:
                    ChooseModel(box, "(nichts)");
                    break;
                default:
                    break;
                }
                Ok(box);
            });
            EmEMITTER *e = set.First();
            for (const VALUES &v : all) {
                EmEMITTER wanted;
                std::string model = change == NEW_MODEL ? "Kurz" : change == NO_MODEL ? "" : v.model;
                wanted.SetModel(ModelAcquire(model.c_str()));
                wanted.pos = AgPOINT(1, 2, change == NEW_HEIGHT ? 7.5 : v.height);
                wanted.rotation = 0.5;
                wanted.tilt = (change == NEW_TILT ? -12 : v.tilt) * AgPI / 180;
                wanted.power = change == NEW_MODEL    ? 8000
                               : change == NEW_OUTPUT ? 12500
                               : change == NO_MODEL   ? 0
                                                      : v.output;
                EXPECT_EQ(::TextOf(*e), ::TextOf(wanted)) << differ << " " << change;
                e = EmEMITTERSET::Next(e);
            }
            EXPECT_GE(doc.obsolete, EDC_LAYOUT);
            EXPECT_EQ(doc.changes, 1);
            EXPECT_EQ(layer.CountSel(), 3); // the selection stays
        }
    }
}

TEST_F(EmitterDialogs, TwoHeightsShowAnEmptyFieldStayWhenConfirmedAndTakeWhatIsTyped)
{
    Hang("Lang", {1, 2, 4});
    Hang("Lang", {1, 2, 6});
    std::string before = ::TextOf(set);
    Edit([](DialogBox &box) {
        EXPECT_EQ(TextOf(box, HEIGHT_FIELD), "");
        Ok(box);
    });
    EXPECT_EQ(::TextOf(set), before);
    Edit([](DialogBox &box) {
        box.Type(HEIGHT_FIELD, "5.25");
        Ok(box);
    });
    EXPECT_EQ(::TextOf(set), "Lang 1 2 5.25 rot 0 tilt 0 20000 W\nLang 1 2 5.25 rot 0 tilt 0 20000 W\n");
}

TEST_F(EmitterDialogs, AnEmitterWithoutAModelAmongOthersStaysWithoutOne)
{
    Hang("Lang", {1, 2, 4});
    Hang(NULL, {1, 2, 4});
    Edit([](DialogBox &box) {
        EXPECT_EQ(TextOf(box, MODEL), "(Auswahl)");
        EXPECT_EQ(box.Entries(OUTPUT), TEXTS{"(Auswahl)"});
        box.Type(HEIGHT_FIELD, "6");
        Ok(box);
    });
    EXPECT_EQ(::TextOf(set), "Lang 1 2 6 rot 0 tilt 0 20000 W\n- 1 2 6 rot 0 tilt 0 0 W\n");
    Edit([](DialogBox &box) {
        ChooseModel(box, "Kurz");
        Ok(box);
    });
    EXPECT_EQ(::TextOf(set), "Kurz 1 2 6 rot 0 tilt 0 8000 W\nKurz 1 2 6 rot 0 tilt 0 8000 W\n");
}

TEST_F(EmitterDialogs, OnlyASelectionWithAFocusIsOpenedAndOnlyTheSelectedAreChanged)
{
    for (int i = 0; i < 3; ++i)
        Hang("Lang", AgPOINT(i, 0, 4));
    LayOut();
    layer.SetActive(true);
    layer.Open();
    layer.Select(Sprite(1), true, NULL);
    layer.Open(); // no box came: the fixture counts those that nobody expected
    layer.Select(Sprite(3), true, NULL);
    layer.SetFocus(Sprite(3), NULL);
    doc.obsolete = 0;
    InDialog(Leave);
    EXPECT_TRUE(layer.Command(EDC_CmOPEN));
    EXPECT_EQ(doc.obsolete, 0);
    EXPECT_EQ(doc.changes, 0);
    InDialog([](DialogBox &box) {
        box.Type(HEIGHT_FIELD, "6");
        Ok(box);
    });
    layer.OpenAt(0, {5, 5});
    EXPECT_EQ(::TextOf(set), "Lang 0 0 6 rot 0 tilt 0 20000 W\nLang 1 0 4 rot 0 tilt 0 20000 W\n"
                             "Lang 2 0 6 rot 0 tilt 0 20000 W\n");
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    EXPECT_EQ(doc.changes, 1);
}

TEST_F(EmitterDialogs, TheDataSheetOpensWhereThereIsOne)
{
    home.PutSheet("Lang");
    Door(true, true);
    Create([this](DialogBox &box) {
        ChooseModel(box, "Kurz");
        EXPECT_FALSE(box.IsEnabled(INFO));
        ChooseModel(box, "Lang");
        EXPECT_TRUE(box.IsEnabled(INFO));
        box.Click(INFO);
        EXPECT_EQ(opened, home.folder.Name("Modely/Lang.pdf"));
        ChooseModel(box, "(nichts)");
        EXPECT_FALSE(box.IsEnabled(INFO));
        Leave(box);
    });
    const struct {
        bool canOpen, opens;
    } desktops[] = {{false, true}, {true, false}};
    for (const auto &d : desktops) { // says so, and goes on
        Door(d.canOpen, d.opens);
        Hang("Lang", {1, 2, 5});
        Edit([](DialogBox &box) {
            EXPECT_TRUE(box.IsEnabled(INFO));
            EXPECT_NE(SaidWhile([&box] { box.Click(INFO); }), "");
            Leave(box);
        });
    }
}

TEST_F(EmitterDialogs, TheModelBoxTellsTheTechnicalDataOfItsModel)
{
    Create([](DialogBox &box) {
        ChooseModel(box, "Lang");
        EXPECT_EQ(
            ToUtf8(box.Tip(MODEL).c_str()),
            "ein Modell\n4 x 0.5 x 0.25 m, Nennleistung 20000 W, Strahlungsanteil 62.5 %, reduziert 12000 W");
        ChooseModel(box, "Kurz"); // one power alone
        EXPECT_EQ(ToUtf8(box.Tip(MODEL).c_str()),
                  "ein Modell\n0.5 x 0.25 x 0.25 m, Nennleistung 8000 W, Strahlungsanteil 62.5 %");
        ChooseModel(box, "(nichts)");
        EXPECT_EQ(box.Tip(MODEL), "");
        Leave(box);
    });
}

TEST_F(EmitterDialogs, WithoutModelsThereIsNoneToChooseAndNothingIsLost)
{
    Hang("Lang", {1, 2, 5});
    std::string before = ::TextOf(set);
    home.Remove("Lang");
    home.Remove("Kurz");
    for (bool folder : {true, false}) {
        if (!folder)
            std::filesystem::remove_all(home.folder.Path("Modely"));
        Create([](DialogBox &box) {
            EXPECT_EQ(box.Entries(MODEL), TEXTS{"(nichts)"});
            Leave(box);
        });
        Edit([](DialogBox &box) {
            EXPECT_EQ(box.Entries(MODEL), (TEXTS{"(Auswahl)", "(nichts)"}));
            EXPECT_EQ(TextOf(box, MODEL), "(Auswahl)");
            Ok(box);
        });
        EXPECT_EQ(::TextOf(set), before);
    }
}

TEST_F(EmitterDialogs, AModelThatIsDeletedWhileAnEmitterUsesItStaysWithTheEmitter)
{
    Hang("Lang", {1, 2, 5});
    home.Remove("Lang");
    Edit([](DialogBox &box) {
        EXPECT_EQ(TextOf(box, MODEL), "(Auswahl)");
        EXPECT_FALSE(box.IsEnabled(OUTPUT));
        box.Type(HEIGHT_FIELD, "6");
        Ok(box);
    });
    EXPECT_EQ(::TextOf(set), "Lang 1 2 6 rot 0 tilt 0 20000 W\n");
}

TEST_F(EmitterDialogs, ADamagedModelIsListedAndSaidToBeDamagedWhenItIsChosen)
{
    home.Put("Kaputt", "IE/GIM");
    Hang("Lang", {1, 2, 5});
    std::string before = ::TextOf(set);
    Edit([](DialogBox &box) {
        EXPECT_EQ(box.Entries(MODEL), (TEXTS{"(Auswahl)", "(nichts)", "Kaputt", "Kurz", "Lang"}));
        std::string said = SaidWhile([&box] { ChooseModel(box, "Kaputt"); });
        EXPECT_EQ(said, "Versuch um Übertragung von Fehldaten!");
        EXPECT_TRUE(box.Entries(OUTPUT).empty());
        EXPECT_EQ(TextOf(box, OUTPUT), "");
        EXPECT_EQ(box.Tip(MODEL), "");
        ChooseModel(box, "Kurz"); // the dialog goes on
        EXPECT_EQ(TextOf(box, OUTPUT), "8000");
        EXPECT_NE(SaidWhile([&box] { ChooseModel(box, "Kaputt"); }), "");
        Ok(box);
    });
    EXPECT_EQ(TakeFailure(), XCDE_INVOLVED); // what the document's handler shows
    EXPECT_EQ(::TextOf(set), before);
    EXPECT_EQ(Create([](DialogBox &box) {
                  SaidWhile([&box] { ChooseModel(box, "Kaputt"); });
                  box.Type(HEIGHT_FIELD, "5");
                  EXPECT_EQ(PressOk(box), missing); // there is no output to go by
                  Leave(box);
              }),
              nullptr);
}

TEST_F(EmitterDialogs, AModelWhoseTableIsDamagedIsNamedWhenAnEmitterIsToHaveIt)
{
    CdeITEMS headOnly = DecodeItems(FileOf({.name = "Kopf"}));
    headOnly.resize(10);
    home.Put("Kopf", EncodeItems(headOnly));
    void *stock = Create([](DialogBox &box) {
        ChooseModel(box, "Kopf");
        EXPECT_EQ(TextOf(box, OUTPUT), "20000");
        box.Type(HEIGHT_FIELD, "5");
        Ok(box);
    });
    ASSERT_NE(stock, nullptr);
    TEdcDrawCreation creation;
    creation.type = EDC_TlSTOCK;
    creation.stock = stock;
    EXPECT_EQ(layer.CreateSprite(creation), nullptr);
    EXPECT_EQ(TakeFailure(), XFREAD);
    EXPECT_TRUE(set.IsEmpty());
}

TEST_F(EmitterDialogs, ThousandsOfModelsAreListedWithoutALookIntoTheirFiles)
{
    enum { COUNT = 2000 };
    for (int i = 0; i < COUNT; ++i)
        home.Put(EdcFormat("Modell %04d", i), "no model at all");
    std::optional<FaultArm> noReading(std::in_place, FAULT::READ, 1, true);
    Create([&](DialogBox &box) {
        EXPECT_EQ(FaultsFired(), 0);
        noReading.reset();
        TEXTS entries = box.Entries(MODEL);
        ASSERT_EQ(entries.size(), 3U + COUNT);
        EXPECT_EQ(entries[0], "(nichts)");
        EXPECT_TRUE(std::is_sorted(entries.begin() + 1, entries.end()));
        EXPECT_EQ(entries.back(), "Modell 1999");
        home.Put({.name = "Modell 1999"});
        ChooseModel(box, "Modell 1999");
        EXPECT_EQ(TextOf(box, OUTPUT), "20000");
        EXPECT_NE(SaidWhile([&box] { ChooseModel(box, "Modell 1000"); }), "");
        box.Type(HEIGHT_FIELD, "4");
        Leave(box);
    });
}

TEST_F(EmitterDialogs, AnOutputThatIsOfferedIsTaken)
{
    home.Put({.name = "Krumm", .power = 12345.67, .reduced = 9876.543});
    for (int entry : {0, 1}) {
        auto *stock = static_cast<TZulEmitterData *>(Create([entry](DialogBox &box) {
            ChooseModel(box, "Krumm");
            EXPECT_EQ(box.Entries(OUTPUT), (TEXTS{"12345.7", "9876.54"}));
            box.Choose(OUTPUT, entry);
            box.Type(HEIGHT_FIELD, "5");
            Ok(box);
        }));
        ASSERT_NE(stock, nullptr);
        EXPECT_EQ(stock->output.value, entry == 0 ? 12345.7 : 9876.54);
    }
}

TEST_F(EmitterDialogs, NamesThatDifferInCaseAloneAreDifferentModels)
{
    home.Put({.name = "LANG", .power = 5000, .reduced = 5000});
    home.Put({.name = "S\xC3\xBC"
                      "d 3.5 kW"}); // u umlaut
    Hang("Lang", {1, 2, 5});
    Edit([](DialogBox &box) {
        EXPECT_EQ(TextOf(box, MODEL), "Lang");
        EXPECT_EQ(TextOf(box, OUTPUT), "20000");
        ChooseModel(box, "LANG");
        EXPECT_EQ(TextOf(box, OUTPUT), "5000");
        Ok(box);
    });
    EXPECT_EQ(::TextOf(set), "LANG 1 2 5 rot 0 tilt 0 5000 W\n");
    Edit([](DialogBox &box) {
        ChooseModel(box, "S\xFC"
                         "d 3.5 kW");
        Ok(box);
    });
    EXPECT_EQ(::TextOf(set), "S\xFC"
                             "d 3.5 kW 1 2 5 rot 0 tilt 0 20000 W\n");
}

TEST_F(EmitterDialogs, NothingOfItIsCutOff)
{
    Hang("Lang", {1, 2, 5});
    Edit([](DialogBox &box) {
        for (const testdoor::Placed &placed : box.Layout()) {
            if (placed.windowClass == "STATIC" || placed.windowClass == "BUTTON") {
                EXPECT_LE(placed.needed.cx, placed.rect.Width()) << placed.text;
                EXPECT_LE(placed.needed.cy, placed.rect.Height()) << placed.text;
            }
        }
        Leave(box);
    });
}
