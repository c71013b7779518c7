// Lists in a dialog with a record under a user's hands, and a random program against plain vectors.
#include "edclistfixture.h"

#include "lib/charstr.h"
#include "support/chance.h"
#include "win/boxes.h"

#include <functional>

namespace
{
struct RECORD {
    TEdcShortStr choice;
    TEdcShortStr combo;
    TEdcShortStr box;
};

/// Fills its lists before the record is transferred.
class FilledDialog : public HookDialog
{
public:
    FilledDialog(int number, RECORD *fields, int flags = 0, TValidator *validator = NULL)
        : HookDialog(number, fields), choice(new TEdcComboBox(this, CHOICE, SHORTSTRMAX, NULL, flags)),
          combo(new TEdcComboBox(this, COMBO, SHORTSTRMAX, validator)), box(new TEdcListBox(this, BOX))
    {
    }
    void SetupWindow() override
    {
        // The lists have their windows already.
        Fill(*choice, items);
        Fill(*combo, items);
        Fill(*box, items);
        HookDialog::SetupWindow();
    }
    std::vector<ITEM> items = {{EDC_VUDF, ""}, {EDC_VVAL, "Alu"}, {EDC_VVAL, "Beton"}};
    TEdcComboBox *choice; // the dialog's, all three
    TEdcComboBox *combo;
    TEdcListBox *box;
};

class EdcListDialog : public EdcLists
{
protected:
    /// Runs the dialog; the user's part stands between its opening and the click on a button.
    int Run(FilledDialog &run, const std::function<void(testdoor::DialogBox &)> &user, int button = WIN_ID_OK)
    {
        testdoor::Script([&user, button](testdoor::ModalBox &face) {
            testdoor::DialogBox door(face);
            user(door);
            door.Click(button);
        });
        return run.Execute();
    }
    RECORD record;
};
} // namespace

TEST_F(EdcListDialog, AControlWithoutTransferGetsNoFieldAndTheNextGetsTheSame)
{
    FilledDialog run(DIALOG, &record, EDC_CfNOTRANSFER);
    record.choice = "Beton"; // goes to the second control
    record.combo = "Alu";    // to the third
    record.box = "unberührt";
    int result = Run(run, [](testdoor::DialogBox &door) {
        EXPECT_EQ(door.Selected(CHOICE), -1);
        EXPECT_EQ(door.Selected(COMBO), 2);
        EXPECT_EQ(door.Selected(BOX), 1);
        door.Choose(CHOICE, 1);
        door.Choose(COMBO, 1);
        door.ClickEntry(BOX, 2);
    });
    EXPECT_EQ(result, WIN_ID_OK);
    EXPECT_EQ(Shown(record.choice), "V:Alu");
    EXPECT_EQ(Shown(record.combo), "V:Beton");
    EXPECT_EQ(Shown(record.box), "V:unberührt");
}

TEST_F(EdcListDialog, AControlThatIsNotReadGivesBackWhatWasSet)
{
    FilledDialog run(DIALOG, &record, EDC_CfNOGET);
    record.choice = "Stein"; // not even in the list
    record.combo = "Alu";
    record.box = "Alu";
    Run(run, [](testdoor::DialogBox &door) {
        EXPECT_EQ(door.Selected(CHOICE), 0);
        door.Choose(CHOICE, 2);
        door.Choose(COMBO, 2);
    });
    EXPECT_EQ(Shown(record.choice), "V:Stein");
    EXPECT_EQ(Shown(record.combo), "V:Beton");
}

TEST_F(EdcListDialog, AnEditFieldKeepsATextThatIsNotInItsListAsFreeInput)
{
    FilledDialog run(DIALOG, &record);
    record.combo = "Stein";
    Run(run, [](testdoor::DialogBox &door) {
        EXPECT_EQ(door.Text(COMBO), "Stein");
        EXPECT_EQ(door.Selected(COMBO), -1);
    });
    EXPECT_EQ(Shown(record.combo), "V:Stein");
}

TEST_F(EdcListDialog, ADropListShowsATextThatIsNotInItAsUndefinedOrAsNothing)
{
    for (bool withUndefined : {true, false}) {
        FilledDialog run(DIALOG, &record);
        if (!withUndefined)
            run.items.erase(run.items.begin());
        record.choice = "Stein";
        record.box = "Stein";
        Run(run, [withUndefined](testdoor::DialogBox &door) {
            EXPECT_EQ(door.Selected(CHOICE), withUndefined ? 0 : -1);
            EXPECT_EQ(door.Selected(BOX), withUndefined ? 0 : -1);
        });
        EXPECT_EQ(Shown(record.choice), "U");
        EXPECT_EQ(Shown(record.box), "U");
    }
}

TEST_F(EdcListDialog, AnUndefinedFieldShowsEmptyAndABlankOneReadsBackAsUndefined)
{
    FilledDialog run(DIALOG, &record, 0, new TEdcIntValidator(0, 9, true));
    run.items.erase(run.items.begin());
    struct {
        TEdcShortStr choice;
        TEdcInt combo;
        TEdcShortStr box;
    } numbers;
    run.SetTransferRecord(&numbers);
    Run(run, [](testdoor::DialogBox &door) {
        EXPECT_EQ(door.Text(COMBO), "");
        door.Type(COMBO, "  ");
    });
    EXPECT_EQ(numbers.combo.id, EDC_VUDF);
    TEdcInt object(5);
    numbers.combo.Exchange(EDC_XSTORE, object);
    EXPECT_EQ(object.value, 5) << "and leaves the object alone";
}

TEST_F(EdcListDialog, ADisabledListIsNeverValidated)
{
    CountingValidator::LOG log;
    FilledDialog run(DIALOG, &record, 0, new CountingValidator(log));
    record.combo = "Beton";
    int result = Run(run, [&run](testdoor::DialogBox &) { run.combo->EnableWindow(false); });
    EXPECT_EQ(result, WIN_ID_OK);
    EXPECT_EQ(log.asked, 0);
    EXPECT_EQ(log.errors, 0);
    EXPECT_EQ(Shown(record.combo), "V:Beton");
}

TEST_F(EdcListDialog, CancelRunsNoValidatorAndNoTransfer)
{
    CountingValidator::LOG log;
    FilledDialog run(DIALOG, &record, 0, new CountingValidator(log));
    record.choice = "Alu";
    record.combo = "Beton";
    record.box = "Alu";
    int result = Run(
        run,
        [](testdoor::DialogBox &door) {
            door.Choose(CHOICE, 2);
            door.Type(COMBO, "Stein");
            door.ClickEntry(BOX, 2);
        },
        WIN_ID_CANCEL);
    EXPECT_EQ(result, WIN_ID_CANCEL);
    EXPECT_EQ(log.asked, 0);
    EXPECT_EQ(Shown(record.choice), "V:Alu");
    EXPECT_EQ(Shown(record.combo), "V:Beton");
    EXPECT_EQ(Shown(record.box), "V:Alu");
}

TEST_F(EdcListDialog, AWrongFieldSaysWhyAndStandsSelectedBehindTheMessage)
{
    FilledDialog run(DIALOG, NULL, 0, new TEdcIntValidator(0, 9, false));
    int result = Run(run, [](testdoor::DialogBox &door) {
        const char *const number = "Ganze Zahl von 0 bis 9 erwartet.";
        const struct {
            const char *typed;
            const char *said;
        } rows[] = {{"zehn", number}, {"10", number}, {"", "Wert muss eingegeben, bzw. gew\xE4hlt werden."}};
        for (const auto &row : rows) {
            door.Type(COMBO, row.typed);
            std::string said;
            testdoor::Script([&said](testdoor::ModalBox &face) {
                said = face.Text();
                face.Answer(WIN_ID_OK);
            });
            door.Click(OTHER);
            door.Click(WIN_ID_OK);
            EXPECT_EQ(said, row.said);
            EXPECT_EQ(door.Focus(), COMBO);
            EXPECT_EQ(door.SelectedText(COMBO), row.typed);
        }
        door.Type(COMBO, "9");
    });
    EXPECT_EQ(result, WIN_ID_OK);
}

TEST_F(EdcListDialog, HooksHearOfWhatTheUserChoseAndOfNothingElse)
{
    FilledDialog run(DIALOG, &record);
    record.choice = "Alu";
    Run(run, [&run](testdoor::DialogBox &door) {
        EXPECT_EQ(run.Take(), "opened");
        door.Choose(CHOICE, 2);
        EXPECT_EQ(run.Take(), "changed 100");
        door.Choose(COMBO, 2);
        door.Type(COMBO, "frei");
        EXPECT_EQ(run.Take(), "");
        door.ClickEntry(BOX, 2);
        EXPECT_EQ(run.Take(), "changed 102");
        door.ClickEntry(BOX, 1, true);
        EXPECT_EQ(run.Take(), "changed 102, double 102");
    });
}

namespace
{
/// A list as it should be: texts and what they stand for in one vector, walked plainly.
struct MODEL {
    struct ENTRY {
        std::string text;
        int data;
    };
    bool hasEdit;
    std::vector<ENTRY> entries;
    int selected = -1;
    std::string field; // of one with an edit field
    int flags = 0;

    int Count() const { return static_cast<int>(entries.size()); }
    const ENTRY &At(int i) const { return entries[static_cast<size_t>(i)]; }
    bool Same(const std::string &a, const std::string &b) const
    {
        return StrMatch(a.c_str(), b.c_str(), (flags & EDC_CfCASE) != 0 ? 0 : static_cast<int>(STR_NOCASE));
    }
    int Find(const std::string &text, int start, int id) const
    {
        for (int i = start; i < Count(); ++i)
            if ((id == -1 || At(i).data == id) && Same(At(i).text, text))
                return i;
        return -1;
    }
    int Add(const TEdcAStr &v)
    {
        std::string text = v.id == EDC_VUDF ? "" : v.text;
        int there = (flags & EDC_CfUNIQUE) != 0 ? Find(text, 0, v.id) : -1;
        if (there >= 0)
            return there;
        Insert(Count(), text, v.id);
        return Count() - 1;
    }
    void Insert(int index, const std::string &text, int data)
    {
        entries.insert(entries.begin() + index, {text, data});
        if (selected >= index)
            ++selected;
    }
    void Delete(int index)
    {
        entries.erase(entries.begin() + index);
        if (selected == index)
            selected = -1;
        else if (selected > index)
            --selected;
    }
    void Select(int index)
    {
        selected = index;
        field = index < 0 ? "" : At(index).text;
    }
    int SelectById(int id, bool forward)
    {
        int undefined = -1, found = -1;
        std::vector<int> order;
        for (int i = 0; i < Count(); ++i)
            order.push_back(forward ? i : Count() - 1 - i);
        for (int i : order) {
            if (At(i).data == id) {
                found = i;
                break;
            }
            if (At(i).data == EDC_VUDF && undefined < i)
                undefined = i;
        }
        Select(found >= 0 ? found : undefined);
        return selected;
    }
    void SetText(const std::string &text)
    {
        if (!hasEdit)
            return;
        selected = -1;
        field = text;
    }
    void SetValue(const TEdcAStr &v)
    {
        int there = v.id == EDC_VVAL ? Find(v.text, 0, EDC_VVAL) : -1;
        if (there >= 0)
            Select(there);
        else if (v.id == EDC_VVAL && hasEdit)
            SetText(v.text);
        else
            SelectById(v.id == EDC_VVAL ? static_cast<int>(EDC_VUDF) : v.id, true);
    }
    std::string Read() const
    {
        TEdcLongStr v;
        if (selected >= 0)
            v.Set(At(selected).data, At(selected).text.c_str());
        else if (hasEdit && !StrIsBlank(field.c_str()))
            v = field.c_str();
        return Shown(v);
    }
};

const char *const words[] = {"", " ", "a", "A", "ab", "AB", "b", "\xE4", "\xC4", "lang und breit", "0"};
const int ids[] = {EDC_VVAL, EDC_VVAL, EDC_VVAL, EDC_VUDF, EDC_VNUL, 0, 3, 7};

void SetText(TEdcComboBox &list, const char *text)
{
    list.SetText(text);
}

void SetText(TEdcListBox &, const char *) {}

/// One random step on both. @return whether their answers were the same
template <class LIST>
bool Step(CHANCE &chance, LIST &list, MODEL &model)
{
    const char *word = chance.Of(words);
    int id = chance.Of(ids);
    int index = chance.Int(0, model.Count());
    bool inside = index < model.Count();
    TEdcLongStr value = Value(id, word);
    switch (chance.Int(0, 12)) {
    case 0:
    case 1:
    case 2:
        return model.Count() > 30 || list.Add(value) == model.Add(value);
    case 3:
        list.SetItemData(list.InsertString(index, word), id);
        model.Insert(index, word, id);
        return true;
    case 4:
    case 5:
        list.DeleteString(index);
        if (inside)
            model.Delete(index);
        return true;
    case 6:
        list.SetSelIndex(inside ? index : -1);
        model.Select(inside ? index : -1);
        return true;
    case 7: {
        int any = chance.One(3) ? -1 : id;
        return list.Find(word, index, any) == model.Find(word, index, any);
    }
    case 8: {
        bool forward = chance.One(2);
        return list.SelectById(id, forward) == model.SelectById(id, forward);
    }
    case 9:
        list.SetValue(value);
        model.SetValue(value);
        return true;
    case 10:
        SetText(list, word);
        model.SetText(word);
        return true;
    case 11:
        model.flags = chance.Int(0, 3) * EDC_CfCASE;
        list.SetFlags(model.flags);
        return true;
    default:
        if (chance.One(20)) {
            list.ClearList();
            model.entries.clear();
            model.Select(-1);
        }
        return true;
    }
}

template <class LIST>
void RunProgram(unsigned start, LIST &list, bool hasEdit)
{
    CHANCE chance(start);
    MODEL model{hasEdit, {}, -1, "", 0};
    for (int step = 0; step < 20000; ++step) {
        ASSERT_TRUE(Step(chance, list, model)) << step;
        ASSERT_EQ(list.GetCount(), model.Count()) << step;
        ASSERT_EQ(list.GetSelIndex(), model.selected) << step;
        ASSERT_EQ(Read(list), model.Read()) << step;
        if (hasEdit) {
            ASSERT_EQ(list.Text(), model.field) << step;
        }
        for (int i = 0; step % 16 == 0 && i < model.Count(); ++i) {
            ASSERT_EQ(list.GetString(i), model.At(i).text) << step;
            ASSERT_EQ(list.GetItemData(i), model.At(i).data) << step;
        }
    }
}
} // namespace

TEST_F(EdcLists, ARandomProgramOnADropListAnswersAsPlainVectors)
{
    Open();
    RunProgram(1, *choice, false);
}

TEST_F(EdcLists, ARandomProgramOnAListWithAnEditFieldAnswersAsPlainVectors)
{
    Open();
    RunProgram(2, *combo, true);
}

TEST_F(EdcLists, ARandomProgramOnAListBoxAnswersAsPlainVectors)
{
    Open();
    RunProgram(3, *box, false);
}
