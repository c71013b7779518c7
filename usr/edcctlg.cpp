// What both forms of a catalogue share: items and their names, the forms of the dialog, the editing of items.
// The dialog shows names and finds the items by them again; the list box sorts for itself, so positions mean
// nothing to the catalogue.
#include "usr/edcctlg.h"
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"
#include "win/application.h"

#include <algorithm>
#include <utility>

#include "lib/xon.h"

namespace
{
enum { TEXT_MAKE_NEW = 22103, TEXT_NOTHING_TO_PICK = 22104, TEXT_REMOVE = 22107, TEXT_NAME_CLASH = 22109 };
enum { PICTURE_CATALOG = 22200 };

/// No repainting of a list box while it lives, also where filling fails.
class RedrawOff
{
public:
    explicit RedrawOff(TListBox &aBox) : box(aBox) { box.SetRedraw(false); }
    ~RedrawOff() { box.SetRedraw(true); }
    RedrawOff(const RedrawOff &) = delete;
    RedrawOff &operator=(const RedrawOff &) = delete;

private:
    TListBox &box;
};
} // namespace

void TEdcCtlgItem::RefreshName()
{
    *name = EOS;
    GetName(name, SHORTSTRMAX);
    ASSERT(!StrIsBlank(name));
    StrCollapse(name, 0);
}

TEdcCtlgItem *TEdcCtlgGroup::FindItem(const char *itemName, bool exact, const TEdcCtlgItem *skip)
{
    return TEdcCtlgList::FindIn(*this, itemName, exact, skip);
}

CdeFILENAME TEdcCtlgList::ctlgDir;
char TEdcCtlgList::ctlgExt[SHORTSTRMAX];

void TEdcCtlgList::SetCatalogDirectory(const char *dir, const char *ext)
{
    ASSERT(dir != NULL && !StrIsBlank(dir));
    ASSERT(ext != NULL && !StrIsBlank(ext));
    ctlgDir = dir;
    StrCopy(ctlgExt, ext, SHORTSTRMAX);
}

TEdcCtlgList::TEdcCtlgList(const NUMBERS &aNumbers, const char *tag, const char *name, const char *aType,
                           int aSaveVer, int aLoadVer, int aTitleId, TWindow *aParent)
    : TEdcDialog(aNumbers.dialog), numbers(aNumbers), loadVer(aLoadVer), saveVer(aSaveVer), titleId(aTitleId)
{
    ASSERT(name != NULL);
    ASSERT(!ctlgDir.IsBlank());
    ASSERT_AS(aType != NULL && aSaveVer >= 0, "type != NULL && saveVer >= 0");
    if (aParent != NULL)
        SetParent(aParent);
    StrCopy(type, tag, SHORTSTRMAX);
    StrCat(type, aType, SHORTSTRMAX);
    CdeFILENAME file = name;
    file.AddExt(ctlgExt);
    path = ctlgDir;
    path.AddName(file);
    if (!StrMatch(path.GetName(), file, 0)) // cut off, it would be another file's
        path = "";
    items = new TEdcListBox(this, numbers.items, NULL, EDC_CfCASE);
    InEditing(numbers.frame);
    InEditing(numbers.add);
    adjust = InEditing(numbers.adjust);
    remove = InEditing(numbers.remove);
    InEditing(numbers.close);
    ok = new TControl(this, WIN_ID_OK);
    cancel = new TControl(this, WIN_ID_CANCEL);
    auto *picture = new TEdcStatic(this, numbers.picture);
    picture->SetRes(PICTURE_CATALOG);
}

TControl *TEdcCtlgList::InEditing(int number)
{
    auto *control = new TControl(this, number);
    editing.push_back(control);
    return control;
}

TBoxAnswer TEdcCtlgList::Ask(int textId, TBoxButtons buttons, TBoxIcon icon, int defaultButton)
{
    TBoxAnswer answer = WIN_ID_CANCEL;
    __enter
        TApplication *application = TApplication::Current();
        const char *heading = application != NULL ? application->Name().c_str() : "";
        answer = MessageBox(this, GetResString(textId), heading, buttons, icon, defaultButton); __test;
    __point
    __treat
    return answer;
}

bool TEdcCtlgList::RunPicking(void *picked)
{
    bool ended = false;
    __enter
        editMode = false;
        if (!loaded) {
            Load(); __test;
        }
        if (!loaded) {
            Ask(TEXT_NOTHING_TO_PICK, WIN_BOX_OK, WIN_ICON_EXCLAMATION); __test;
        } else {
            SetTransferRecord(picked);
            ended = Execute() == WIN_ID_OK; __test;
        }
        SetTransferRecord(NULL);
    __point
        SetTransferRecord(NULL);
        ended = false;
    __treat
    return ended;
}

void TEdcCtlgList::Edit()
{
    __enter
        editMode = true;
        if (!loaded) {
            Load(); __test;
        }
        if (!loaded) {
            TBoxAnswer answer = Ask(TEXT_MAKE_NEW, WIN_BOX_YESNO, WIN_ICON_QUESTION); __test;
            loaded = answer == WIN_ID_YES;
        }
        if (loaded) {
            Execute(); __test;
        }
        editMode = false;
    __point
        editMode = false;
    __treat
}

void TEdcCtlgList::OpenForm()
{
    __enter
        if (titleId != 0) {
            SetCaption(GetResString(titleId)); __test;
        }
        for (TControl *control : editing) {
            control->ShowWindow(editMode);
            control->EnableWindow(editMode);
        }
        for (TControl *control : {ok, cancel}) {
            control->ShowWindow(!editMode);
            control->EnableWindow(!editMode);
        }
        FillLists(); __test;
    __point
    __treat
}

bool TEdcCtlgList::FillBox(TEdcListBox &box, const std::vector<const char *> &names, const char *text)
{
    int selected = -1;
    __enter
        RedrawOff off(box);
        int formerly = box.GetSelIndex();
        int top = box.GetTopIndex();
        int count = static_cast<int>(names.size());
        box.ClearList();
        for (const char *name : names) {
            TEdcShortStr entry;
            entry.Set(EDC_VVAL, name);
            box.Add(entry); __test;
        }
        if (text == NULL)
            selected = count > 0 ? 0 : -1;
        else if (*text == EOS)
            selected = std::min(formerly, count - 1);
        else
            selected = box.Find(text, 0, EDC_VVAL);
        box.SetSelIndex(selected);
        if (text != NULL && *text == EOS)
            box.SetTopIndex(std::max(std::min(top, selected - 1), 0));
    __point
    __treat
    return selected >= 0;
}

void TEdcCtlgList::FillItems(const char *text)
{
    __enter
        std::vector<const char *> names;
        LIST *shown = ShownItems();
        TEdcCtlgItem *item = shown != NULL ? TEdcCtlgItem::First(*shown) : NULL;
        for (; item != NULL; item = item->Next()) {
            item->RefreshName();
            names.push_back(item->name);
        }
        bool selected = FillBox(*items, names, text); __test;
        EnableForSelection(selected);
    __point
        EnableForSelection(items->GetSelIndex() >= 0);
    __treat
}

void TEdcCtlgList::EnableForSelection(bool selected)
{
    if (editMode) {
        adjust->EnableWindow(selected);
        remove->EnableWindow(selected);
    } else {
        ok->EnableWindow(selected);
    }
}

void TEdcCtlgList::Changed(HWND control)
{
    __enter
        if (control == NULL) {
            OpenForm(); __test;
        } else if (control == items->GetHandle()) {
            EnableForSelection(items->GetSelIndex() >= 0);
        }
    __point
    __treat
}

void TEdcCtlgList::Double(HWND control)
{
    __enter
        bool hit = control == items->GetHandle() && items->GetSelIndex() >= 0;
        if (hit && editMode) {
            AdjustItem(); __test;
        } else if (hit) {
            Close(WIN_ID_OK, false); __test;
        }
    __point
    __treat
}

void TEdcCtlgList::Button(int id)
{
    __enter
        if (!editMode) {
            TEdcDialog::Button(id); __test;
        } else if (id == numbers.add) {
            AddItem(); __test;
        } else if (id == numbers.adjust) {
            AdjustItem(); __test;
        } else if (id == numbers.remove) {
            RemoveItem(); __test;
        } else if (id == numbers.close || id == WIN_ID_CANCEL) {
            Close(WIN_ID_CANCEL, true); __test;
        }
    __point
    __treat
}

void TEdcCtlgList::AddItem()
{
    TEdcCtlgItem *item = NULL; // ours until it is linked
    __enter
        items->TakeFocus();
        LIST *group = ShownItems();
        if (group != NULL) {
            item = NewItem(NULL); __test;
            bool confirmed = EditItem(item, group); __test;
            if (confirmed) {
                TEdcCtlgItem *added = item;
                added->Insert(group);
                item = NULL;
                FillItems(added->name); __test;
            }
            delete item;
            item = NULL;
        }
    __point
        delete item;
    __treat
}

void TEdcCtlgList::AdjustItem()
{
    __enter
        items->TakeFocus();
        TEdcCtlgItem *item = SelectedItem();
        if (item != NULL) {
            bool confirmed = EditItem(item, ShownItems()); __test;
            if (confirmed) {
                FillItems(item->name); __test;
            }
        }
    __point
    __treat
}

void TEdcCtlgList::RemoveItem()
{
    __enter
        items->TakeFocus();
        TEdcCtlgItem *item = SelectedItem();
        if (item != NULL) {
            TBoxAnswer answer = Ask(TEXT_REMOVE, WIN_BOX_YESNO, WIN_ICON_QUESTION); __test;
            if (answer == WIN_ID_YES) {
                delete item;
                FillItems(""); __test;
            }
        }
    __point
    __treat
}

bool TEdcCtlgList::EditItem(TEdcCtlgItem *&item, LIST *group)
{
    TEdcCtlgItem *copy = NULL; // ours until it takes the item's place
    TEdcDialog *editor = NULL;
    bool confirmed = false;
    __enter
        ASSERT(item != NULL);
        ASSERT(group != NULL);
        copy = NewItem(item); __test;
        editor = ItemDialog(); __test;
        editor->SetTransferRecord(copy->Record());
        editor->SetParent(this);
        for (bool again = true; again;) {
            bool ended = editor->Execute() == WIN_ID_OK; __test;
            again = false;
            if (ended) {
                copy->RefreshName();
                ASSERT(!StrIsBlank(copy->name));
                confirmed = FindIn(*group, copy->name, false, item) == NULL;
                if (!confirmed) {
                    Ask(TEXT_NAME_CLASH, WIN_BOX_OK, WIN_ICON_EXCLAMATION); __test;
                    again = true;
                }
            }
        }
        editor->SetTransferRecord(NULL);
        if (confirmed) {
            if (item->List() != NULL)
                copy->InsertAfter(item);
            std::swap(item, copy);
        }
        delete copy;
        copy = NULL;
    __point
        if (editor != NULL)
            editor->SetTransferRecord(NULL);
        delete copy;
        confirmed = false;
    __treat
    return confirmed;
}

bool TEdcCtlgList::SameName(const char *one, const char *other, bool exact)
{
    return StrMatch(one, other, exact ? 0 : STR_NOCASE | STR_NOSPACE);
}

TEdcCtlgItem *TEdcCtlgList::FindIn(LIST &list, const char *itemName, bool exact, const TEdcCtlgItem *skip)
{
    ASSERT_AS(itemName != NULL, "name != NULL");
    for (TEdcCtlgItem *item = TEdcCtlgItem::First(list); item != NULL; item = item->Next())
        if (item != skip && SameName(item->name, itemName, exact))
            return item;
    return NULL;
}

std::string TEdcCtlgList::SelectedText(const TListBox &box)
{
    return box.GetString(box.GetSelIndex());
}

TEdcCtlgItem *TEdcCtlgList::SelectedItem()
{
    LIST *group = ShownItems();
    return group != NULL ? FindIn(*group, SelectedText(*items).c_str(), true, NULL) : NULL;
}
