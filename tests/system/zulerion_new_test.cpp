// A hall from "Neu" to its file and back: sizes, the data dialogs and the dialogs of texts, filled in with the
// keyboard alone, and what the report shows of them at once and after an evaluation.
#include "zulerioncase.h"

#include "ker/emroom.h"
#include "usr/zulreport.h"

namespace
{
using testdoor::DialogBox;

const char missing[] = "Wert muss eingegeben, bzw. gewählt werden.";
const char tooSmall[] = "Man erwartet eine Dezimalzahl von 1 bis 1.79769e+308.";

enum KIND { NUMBER, ENTRY }; // typed, or chosen with the arrow keys

/// A field of a dialog: what a person puts in, and where the report's first page shows it.
struct FIELD {
    int id;
    KIND kind;
    std::string input; // of an entry: how it reads
    std::string shown; // words of the report; "": nowhere on the first page
};
struct DIALOG {
    int command;
    const char *caption;
    std::vector<FIELD> fields; // in the order of the Tab key
};

/// Every number of the hall's data is one that stands nowhere else in the report.
const DIALOG dialogs[] = {
    {1505,
     "Heizperiode",
     {{100, NUMBER, "211", "Heizperiode: 211 Tage"},
      {101, NUMBER, "3.25", "Außentemp.: 3.25"},
      {102, NUMBER, "-13.5", "Außentemp.: -13.5"},
      {103, NUMBER, "6", "Betriebstage/Woche: 6"},
      {104, NUMBER, "10.75", "Betriebsstunden/Tag: 10.75"},
      {105, NUMBER, "15.125", "Betriebslufttemp.: 15.125"},
      {106, NUMBER, "17.75", "Soll-Ergebnistemp.: 17.75"},
      {107, NUMBER, "7.875", "Lufttemp.: 7.875"}}},
    {1507,
     "Baukonstruktion",
     {{100, NUMBER, "0.61", "Durchgangsquotient: 0.61"},
      {102, NUMBER, "8.4", "Bodentemperatur: 8.4"},
      {103, NUMBER, "0.53", "Durchgangsquotient: 0.53"},
      {105, NUMBER, "-12.25", "Temp.: -12.25"},
      {107, NUMBER, "0.47", "Durchgangsquotient: 0.47"},
      {109, NUMBER, "-12.75", "Temp.: -12.75"},
      {111, NUMBER, "0.85", "Hallenvol.vielfaches: 0.85/h"},
      {112, NUMBER, "-11.5", "Lufttemperatur: -11.5"}}},
    {1509,
     "Wärmequellen",
     {{100, ENTRY, "Propan", "Brennstoff: Propan"},
      {101, NUMBER, "0.93", "Regul.: 0.93"},
      {103, NUMBER, "1.27", "Preis: 1.27 €/kg"},
      {104, NUMBER, "2.35", "Dauerwärmegewinn: 2.35 kW"}}},
    {1523, "Arbeitsbedingungen", {{100, ENTRY, "IIb", ""}, {101, ENTRY, "sitzend", ""}}},
};

/// With the arrow keys to the entry that reads like that.
void ChooseWithKeys(DialogBox &box, int id, const std::string &entry)
{
    for (int i = 0; i < 10 && box.Text(id) != entry; ++i)
        box.Press("Up");
    for (int i = 0; i < 10 && box.Text(id) != entry; ++i)
        box.Press("Down");
    EXPECT_EQ(box.Text(id), entry);
}

void Enter(DialogBox &box, const FIELD &field)
{
    EXPECT_EQ(box.Focus(), field.id);
    if (field.kind == ENTRY)
        ChooseWithKeys(box, field.id, field.input);
    else
        box.TypeKeys(field.input); // what was there is selected and goes
    EXPECT_EQ(box.Text(field.id), field.input);
}

/// With Tab from field to field, past the buttons that stand between them.
void TabTo(DialogBox &box, int id)
{
    for (int i = 0; i < 5 && box.Focus() != id; ++i)
        box.Press("Tab");
}

int EntryOf(const DialogBox &box, const FIELD &field)
{
    std::vector<std::string> entries = box.Entries(field.id);
    return static_cast<int>(std::ranges::find(entries, field.input) - entries.begin());
}

class NewHalls : public Zulerion
{
protected:
    void FillAll()
    {
        for (const DIALOG &dialog : dialogs) {
            InDialog(dialog.caption, [&dialog](DialogBox &box) {
                for (const FIELD &field : dialog.fields) {
                    TabTo(box, field.id);
                    Enter(box, field);
                }
                box.Press("Return");
            });
            Choose(dialog.command);
        }
    }
    void FillTexts()
    {
        InDialog("Einleitungstext", [](DialogBox &box) {
            EXPECT_EQ(ToUtf8(box.Text(100).c_str()), "Entwurf der Strahlungsheizung");
            box.TypeKeys("Halle für Prüfstände");
            box.Press("Tab");
            box.TypeKeys("Erste Zeile");
            box.Press("Return"); // a new line, for the text is in focus
            box.TypeKeys("zweite Zeile");
            box.Press("Tab");
            box.Press("Return");
        });
        Choose(ARTICLE);
        InDialog("Schlußtext", [](DialogBox &box) {
            EXPECT_EQ(ToUtf8(box.Text(100).c_str()), "Schlußfolgerung");
            box.TypeKeys("Ergebnis");
            box.Press("Tab");
            box.TypeKeys("Die Größe genügt: 5 € je m³.");
            box.Press("Tab");
            box.TypeKeys("J. Größer");
            box.Press("Return");
        });
        Choose(CONCLUSION);
    }
    /// Every dialog shows what was typed, and is left.
    void ExpectFilled()
    {
        for (const DIALOG &dialog : dialogs) {
            InDialog(dialog.caption, [&dialog](DialogBox &box) {
                for (const FIELD &field : dialog.fields)
                    EXPECT_EQ(box.Text(field.id), field.input) << dialog.caption << " " << field.id;
                box.Press("Esc");
            });
            Choose(dialog.command);
        }
        InDialog("Einleitungstext", [](DialogBox &box) {
            EXPECT_EQ(ToUtf8(box.Text(100).c_str()), "Halle für Prüfstände");
            EXPECT_EQ(ToUtf8(box.Text(101).c_str()), "Erste Zeile\r\nzweite Zeile");
            box.Press("Esc");
        });
        Choose(ARTICLE);
        InDialog("Schlußtext", [](DialogBox &box) {
            EXPECT_EQ(ToUtf8(box.Text(100).c_str()), "Ergebnis");
            EXPECT_EQ(ToUtf8(box.Text(101).c_str()), "Die Größe genügt: 5 € je m³.");
            EXPECT_EQ(ToUtf8(box.Text(102).c_str()), "J. Größer");
            box.Press("Esc");
        });
        Choose(CONCLUSION);
    }
};

std::string Today()
{
    return ToUtf8(ZulDateText(ZulToday()).c_str());
}
} // namespace

TEST_F(NewHalls, AreAskedForByTheMenuAndByTheKey)
{
    for (bool byKey : {false, true}) {
        InDialog("Neu", [](DialogBox &box) {
            for (int id : {100, 101, 102})
                EXPECT_EQ(box.Text(id), "");
            box.Press("Esc");
        });
        byKey ? Key("Ctrl+N") : Choose(NEW);
        EXPECT_TRUE(IsEmptyWindow());
        InDialog("Neu", [](DialogBox &box) {
            for (const char *size : {"31.5", "14", "7.25"}) {
                box.TypeKeys(size);
                box.Press("Tab");
            }
            box.Press("Return");
        });
        byKey ? Key("Ctrl+N") : Choose(NEW);
        EXPECT_EQ(Caption(), "Zulerion - neu");
        EXPECT_EQ(Status(), "");
        EXPECT_TRUE(LooksFresh(Doc()));
        Lines report = Report();
        EXPECT_TRUE(report.Has("Länge: 31.5 m")) << "on the first page";
        EXPECT_TRUE(report.Has("Breite: 14 m"));
        EXPECT_TRUE(report.Has("Höhe: 7.25 m"));
        EXPECT_TRUE(report.Has("Entwurf der Strahlungsheizung"));
        EXPECT_TRUE(report.Has("Den " + Today() + ", Ersteller:"));
        for (const char *none : {"Auswertung", "Hygienische", "Liste", "Anhang:"})
            EXPECT_EQ(report.PageOf(none), 0) << none;
        Choose(CLOSE);
        EXPECT_TRUE(IsEmptyWindow());
    }
}

TEST_F(NewHalls, RefuseSizesAndSayWhy)
{
    InDialog("Neu", [](DialogBox &box) {
        const struct {
            const char *length, *width, *height;
            int wrong;
            const char *message;
        } table[] = {
            {"", "", "", 100, missing},           {"20", "", "6", 101, missing},
            {"20", "12", "", 102, missing},       {"0.99", "12", "6", 100, tooSmall},
            {"20", "-12", "6", 101, tooSmall},    {"20", "12", "0", 102, tooSmall},
            {"zwanzig", "1", "6", 100, tooSmall}, {"20", "12", "1e999", 102, tooSmall},
        };
        for (const auto &row : table) {
            SCOPED_TRACE(testing::Message() << row.length << " x " << row.width << " x " << row.height);
            box.Type(100, row.length);
            box.Type(101, row.width);
            box.Type(102, row.height);
            EXPECT_EQ(SaidWhile([&box] { box.Press("Return"); }), row.message);
            EXPECT_EQ(box.Focus(), row.wrong);
        }
        box.Type(102, "1");
        box.Press("Return");
    });
    Choose(NEW);
    ASSERT_NE(Doc().Room(), nullptr);
    EXPECT_EQ(Doc().Room()->Box().max, AgPOINT(20, 12, 1));
    EXPECT_TRUE(LooksFresh(Doc()));
}

TEST_F(NewHalls, AreFilledWithTheKeyboardSavedClosedOpenedAndTheSame)
{
    NewHall("40", "20", "7");
    FillAll();
    FillTexts();
    EXPECT_TRUE(LooksFresh(Doc()));
    const std::string file = folder.Path("Prüfstände.sc1");
    ChooseFile("save", folder.Path("Prüfstände"));
    Key("Ctrl+Shift+S");
    EXPECT_EQ(Caption(), "Zulerion - Prüfstände");
    EXPECT_EQ(folder.List(), std::set<std::string>{"Prüfstände.sc1"});
    Key("Ctrl+F4"); // nothing is asked: it is saved
    EXPECT_TRUE(IsEmptyWindow());
    OpenHall(file);
    EXPECT_EQ(Caption(), "Zulerion - Prüfstände");
    ExpectFilled();
    EXPECT_FALSE(Doc().modified);
    Lines report = Report();
    for (const DIALOG &dialog : dialogs)
        for (const FIELD &field : dialog.fields)
            EXPECT_TRUE(field.shown.empty() || report.Has(field.shown)) << field.shown;
    for (const char *text :
         {"Halle für Prüfstände", "Erste Zeile", "zweite Zeile", "Die Größe genügt: 5 € je m³.",
          "Arbeitsklasse: IIb", "Personenlage: sitzend", "Länge: 40 m", "Breite: 20 m", "Höhe: 7 m"})
        EXPECT_TRUE(report.Has(text)) << text;
    EXPECT_TRUE(report.Has("Den " + Today() + ", Ersteller: J. Größer"));
    const std::string bytes = folder.Get("Prüfstände.sc1");
    ChooseFile("save", folder.Path("noch einmal.sc1"));
    Choose(SAVE_AS);
    EXPECT_EQ(folder.Get("noch einmal.sc1"), bytes);
}

TEST_F(NewHalls, ShowEachChangedFieldAtOnceAndEvaluateItWithTheNextUpdate)
{
    std::filesystem::copy(Sample("Produktionshalle"), folder.Path("halle.sc1"));
    OpenHall(folder.Path("halle.sc1"));
    Update();
    Lines before = Report();
    EXPECT_EQ(before.Behind("Den"), "16.01.2026,") << "an evaluation is no change";
    EXPECT_FALSE(Doc().modified);
    for (const DIALOG &dialog : dialogs)
        for (const FIELD &field : dialog.fields) {
            EXPECT_FALSE(!field.shown.empty() && before.Has(field.shown))
                << field.shown << " stands there already";
            Edit(dialog.command, dialog.caption, [&field](DialogBox &box) {
                if (field.kind == NUMBER)
                    box.Type(field.id, field.input);
                else
                    box.Choose(field.id, EntryOf(box, field));
            });
            EXPECT_TRUE(Doc().modified);
            EXPECT_TRUE(field.shown.empty() || Lines(Print(1, 1)).Has(field.shown)) << field.shown;
        }
    Lines stale = Report();
    const char *figures[] = {"Wärmeverlust:", "Maximal:",   "Jährlich:",   "Jahreskosten:",
                             "erreichbar:",   "Entworfen:", "Intensität:", "Mindestintensität:"};
    for (const char *label : figures)
        EXPECT_EQ(stale.Behind(label), before.Behind(label)) << "the evaluation is still the old one";
    EXPECT_TRUE(stale.Has("Personenlage: sitzend")) << "texts are the new ones";
    EXPECT_EQ(stale.Behind("Den"), Today() + ",");
    Key("Ctrl+S");
    EXPECT_FALSE(Doc().modified);
    Update();
    Lines fresh = Report();
    CompareAll(fresh, Figures({folder.Path("halle.sc1")}));
    for (const char *label : {"Wärmeverlust:", "Maximal:", "Jährlich:", "erreichbar:"})
        EXPECT_NE(fresh.Behind(label), before.Behind(label)) << label;
    EXPECT_FALSE(Doc().modified);
    EXPECT_TRUE(LooksFresh(Doc()));
}

TEST_F(NewHalls, AreLeftAloneByADialogThatIsLeft)
{
    OpenSample("Werkstatt");
    Lines before = Report();
    for (const DIALOG &dialog : dialogs) {
        InDialog(dialog.caption, [&dialog](DialogBox &box) {
            for (const FIELD &field : dialog.fields)
                if (field.kind == NUMBER)
                    box.Type(field.id, field.input);
            box.Press("Esc");
        });
        Choose(dialog.command);
    }
    EXPECT_FALSE(Doc().modified);
    Lines after = Report();
    ASSERT_EQ(after.Words().size(), before.Words().size());
    for (size_t i = 0; i < after.Words().size(); ++i)
        EXPECT_EQ(after.Words()[i].text, before.Words()[i].text);
}

TEST_F(NewHalls, TakeTheOutdoorTemperatureAndAnElementsValueWithTheButtons)
{
    NewHall();
    Edit(PERIOD, "Heizperiode", [](DialogBox &box) {
        for (const FIELD &field : dialogs[0].fields)
            box.Type(field.id, field.input);
    });
    std::string found;
    Edit(INSULATION, "Baukonstruktion", [&found](DialogBox &box) {
        for (const FIELD &field : dialogs[1].fields)
            box.Type(field.id, field.input);
        for (int outside : {106, 110, 113})
            box.Click(outside);
        testdoor::Script([](testdoor::ModalBox &face) { // the catalogue: its first element
            DialogBox catalog(face);
            catalog.ClickEntry(100, 0);
            catalog.ClickEntry(101, 0, true);
        });
        box.Click(104);
        found = box.Text(103);
        testdoor::Script([](testdoor::ModalBox &face) { DialogBox(face).Press("Esc"); });
        box.Click(108);
        EXPECT_EQ(box.Text(107), "0.47") << "nothing was chosen";
    });
    EXPECT_NE(found, "0.53");
    const EmROOMDATA &data = *Doc().Room()->Data();
    EXPECT_EQ(data.constr[2].k, std::stod(found));
    EXPECT_EQ(data.constr[1].k, 0.47);
    EXPECT_EQ(data.constr[1].tExt, -13.5);
    EXPECT_EQ(data.constr[2].tExt, -13.5);
    EXPECT_EQ(data.airTemp, -13.5);
    EXPECT_TRUE(Report().Has("Durchgangsquotient: " + found));
}

TEST_F(NewHalls, AskBeforeAChangedHallGoes)
{
    std::filesystem::copy(Sample("Werkstatt"), folder.Path("halle.sc1"));
    const std::string old = folder.Get("halle.sc1");
    OpenHall(folder.Path("halle.sc1"));
    Edit(HYGIENE, "Arbeitsbedingungen", [](DialogBox &box) { box.Choose(100, 1); });
    InDialog("Neu", [](DialogBox &box) { // left: nothing is asked
        box.Type(100, "50");
        box.Press("Esc");
    });
    Choose(NEW);
    EXPECT_EQ(Caption(), "Zulerion - halle");
    auto sizes = [](DialogBox &box) {
        for (int id : {100, 101, 102}) {
            EXPECT_EQ(box.Text(id), "") << "the sizes of before are dropped";
            box.Type(id, "9");
        }
        box.Click(WIN_ID_OK);
    };
    InDialog("Neu", sizes);
    Expect(WIN_ID_CANCEL);
    Choose(NEW);
    EXPECT_EQ(said, "Dokument wurde verändert.\nWollen Sie es speichern?");
    EXPECT_EQ(Caption(), "Zulerion - halle");
    EXPECT_TRUE(Doc().modified);
    EXPECT_TRUE(Report().Has("Arbeitsklasse: I"));
    Expect(WIN_ID_CANCEL);
    EXPECT_FALSE(Frame().CanClose());
    Expect(WIN_ID_CANCEL);
    Choose(CLOSE);
    EXPECT_EQ(folder.Get("halle.sc1"), old);
    InDialog("Neu", sizes);
    Expect(WIN_ID_YES);
    Choose(NEW);
    EXPECT_EQ(Caption(), "Zulerion - neu");
    EXPECT_NE(folder.Get("halle.sc1"), old);
    OpenHall(folder.Path("halle.sc1"));
    EXPECT_TRUE(Report().Has("Arbeitsklasse: I"));
}
