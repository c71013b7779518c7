// The divided form: a list of groups, and the items of the selected one. In the file each group is a section.
#include "lib/charstr.h"
#include "usr/edcctlg.h"

#include "lib/xon.h"

namespace
{
enum { TEXT_REMOVE_GROUP = 22105, TEXT_REMOVE_FULL_GROUP = 22106, TEXT_GROUP_CLASH = 22108 };
enum : int {
    DIALOG_DIVIDED = 22020,
    ID_GROUPS = 100,
    ID_ITEMS = 101,
    ID_FRAME = 102,
    ID_ADD = 103,
    ID_ADJUST = 104,
    ID_REMOVE = 105,
    ID_GROUP_FRAME = 106,
    ID_GROUP_ADD = 107,
    ID_GROUP_RENAME = 108,
    ID_GROUP_REMOVE = 109,
    ID_CLOSE = 110,
    ID_PICTURE = 111
};

/// What was picked, in the order of the list boxes' construction.
struct PICKED {
    TEdcShortStr item;
    TEdcShortStr group;
};

class GroupDialog : public TEdcDialog
{
public:
    enum { DIALOG = 22000, ID_NAME = 100 };

    GroupDialog(TWindow *aParent, TEdcShortStr *name) : TEdcDialog(DIALOG, name)
    {
        SetParent(aParent);
        auto *edit = new TEdcEdit(this, ID_NAME, SHORTSTRMAX);
        edit->SetValidator(new TEdcValueValidator(false));
    }
};
} // namespace

TEdcCtlgDividedList::TEdcCtlgDividedList(const char *name, const char *aType, int aSaveVer, int aLoadVer,
                                         int aTitleId, TWindow *aParent)
    : TEdcCtlgList({DIALOG_DIVIDED, ID_ITEMS, ID_FRAME, ID_ADD, ID_ADJUST, ID_REMOVE, ID_CLOSE, ID_PICTURE},
                   "DCAT/", name, aType, aSaveVer, aLoadVer, aTitleId, aParent)
{
    groups = new TEdcListBox(this, ID_GROUPS, NULL, EDC_CfCASE);
    InEditing(ID_GROUP_FRAME);
    InEditing(ID_GROUP_ADD);
    rename = InEditing(ID_GROUP_RENAME);
    removeGroup = InEditing(ID_GROUP_REMOVE);
}

const TEdcCtlgChoice *TEdcCtlgDividedList::Select()
{
    static TEdcCtlgChoice choice;
    bool chosen = false;
    choice = {NULL, NULL};
    __enter
        PICKED picked;
        bool ended = RunPicking(&picked); __test;
        if (ended && picked.group.id != EDC_VUDF && picked.item.id != EDC_VUDF)
            choice.group = FindGroup(picked.group.text, true);
        if (choice.group != NULL)
            choice.item = choice.group->FindItem(picked.item.text, true);
        chosen = choice.item != NULL;
    __point
    __treat
    return chosen ? &choice : NULL;
}

TEdcCtlgGroup *TEdcCtlgDividedList::FindGroup(const char *groupName, bool exact, const TEdcCtlgGroup *skip)
{
    ASSERT_AS(groupName != NULL, "name != NULL");
    if (!loaded)
        return NULL;
    for (TEdcCtlgGroup *group = FirstGroup(); group != NULL; group = group->Next())
        if (group != skip && SameName(group->name, groupName, exact))
            return group;
    return NULL;
}

TEdcCtlgGroup *TEdcCtlgDividedList::SelectedGroup()
{
    return FindGroup(SelectedText(*groups).c_str(), true);
}

void TEdcCtlgDividedList::ReadContent(CdeFILE &file, int version)
{
    TEdcCtlgGroup *group = NULL; // ours until it is linked
    __enter
        while (!file.GetOver()) {
            group = new TEdcCtlgGroup;
            file.GetSection(); __test;
            file.GetStr(group->name, SHORTSTRMAX); __test;
            if (!IsName(group->name))
                __raise(XCDE_INVOLVED);
            StrCollapse(group->name, 0);
            ReadItems(*group, file, version); __test;
            file.EndSection(1); __test;
            group->Insert(this);
            group = NULL;
        }
        __test;
    __point
        delete group;
    __treat
}

void TEdcCtlgDividedList::WriteContent(CdeFILE &file)
{
    __enter
        for (TEdcCtlgGroup *group = FirstGroup(); group != NULL; group = group->Next()) {
            file.PutSection(0); __test;
            file.PutStr(group->name); __test;
            WriteItems(*group, file); __test;
            file.PutEnd(); __test;
        }
    __point
    __treat
}

void TEdcCtlgDividedList::FillLists()
{
    __enter
        FillGroups(NULL); __test;
        FillItems(NULL); __test;
    __point
    __treat
}

void TEdcCtlgDividedList::FillGroups(const char *text)
{
    __enter
        std::vector<const char *> names;
        for (TEdcCtlgGroup *group = FirstGroup(); group != NULL; group = group->Next())
            names.push_back(group->name);
        bool selected = FillBox(*groups, names, text); __test;
        EnableForGroup(selected);
    __point
    __treat
}

void TEdcCtlgDividedList::EnableForGroup(bool selected)
{
    if (editMode) {
        rename->EnableWindow(selected);
        removeGroup->EnableWindow(selected);
    }
}

void TEdcCtlgDividedList::Changed(HWND control)
{
    __enter
        if (control != NULL && control == groups->GetHandle()) {
            EnableForGroup(groups->GetSelIndex() >= 0);
            FillItems(NULL); __test;
        } else {
            TEdcCtlgList::Changed(control); __test;
        }
    __point
    __treat
}

void TEdcCtlgDividedList::Button(int id)
{
    __enter
        if (editMode && id == ID_GROUP_ADD) {
            AddGroup(); __test;
        } else if (editMode && id == ID_GROUP_RENAME) {
            RenameGroup(); __test;
        } else if (editMode && id == ID_GROUP_REMOVE) {
            RemoveGroup(); __test;
        } else {
            TEdcCtlgList::Button(id); __test;
        }
    __point
    __treat
}

void TEdcCtlgDividedList::AddGroup()
{
    TEdcCtlgGroup *group = NULL; // ours until it is linked
    __enter
        groups->TakeFocus();
        group = new TEdcCtlgGroup;
        bool confirmed = EditGroup(group); __test;
        if (confirmed) {
            TEdcCtlgGroup *added = group;
            added->Insert(this);
            group = NULL;
            FillGroups(added->name); __test;
            FillItems(NULL); __test;
        }
        delete group;
        group = NULL;
    __point
        delete group;
    __treat
}

void TEdcCtlgDividedList::RenameGroup()
{
    __enter
        groups->TakeFocus();
        TEdcCtlgGroup *group = SelectedGroup();
        if (group != NULL) {
            bool confirmed = EditGroup(group); __test;
            if (confirmed) {
                FillGroups(group->name); __test;
                FillItems(NULL); __test;
            }
        }
    __point
    __treat
}

void TEdcCtlgDividedList::RemoveGroup()
{
    __enter
        groups->TakeFocus();
        TEdcCtlgGroup *group = SelectedGroup();
        bool wanted = group != NULL;
        if (wanted) {
            wanted = Ask(TEXT_REMOVE_GROUP, WIN_BOX_YESNO, WIN_ICON_QUESTION) == WIN_ID_YES; __test;
        }
        if (wanted && !group->IsEmpty()) {
            wanted = Ask(TEXT_REMOVE_FULL_GROUP, WIN_BOX_YESNO, WIN_ICON_QUESTION, WIN_ID_NO) == WIN_ID_YES;
            __test;
        }
        if (wanted) {
            delete group;
            FillGroups(""); __test;
            FillItems(NULL); __test;
        }
    __point
    __treat
}

bool TEdcCtlgDividedList::EditGroup(TEdcCtlgGroup *group)
{
    bool confirmed = false;
    __enter
        ASSERT(group != NULL);
        TEdcShortStr str;
        if (*group->name != EOS)
            str = group->name;
        GroupDialog editor(this, &str);
        for (bool again = true; again;) {
            bool ended = editor.Execute() == WIN_ID_OK; __test;
            again = false;
            if (ended) {
                ASSERT(str.id != EDC_VUDF);
                StrCollapse(str.text, 0);
                confirmed = FindGroup(str.text, false, group) == NULL;
                if (!confirmed) {
                    Ask(TEXT_GROUP_CLASH, WIN_BOX_OK, WIN_ICON_EXCLAMATION); __test;
                    again = true;
                }
            }
        }
        if (confirmed)
            StrCopy(group->name, str.text, SHORTSTRMAX);
    __point
        confirmed = false;
    __treat
    return confirmed;
}
