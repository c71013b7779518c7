// Catalogues: small databases of named items that users keep in files of their own, apart from any document.
// This is the shell, file handling with backup and repair and the dialog for picking and for editing; what an
// item holds, and the dialog that edits one, belong to the application. A catalogue object lives for one use:
// it is made, Select() or Edit() and Save() are called, and it goes with all its items. A few hundred items at
// most, so every search walks the list.
#ifndef USR_EDCCTLG_H
#define USR_EDCCTLG_H

#include "lib/cde.h"
#include "lib/linkage.h"
#include "usr/edcdlg.h"
#include "win/boxes.h"

#include <cstdint>
#include <vector>

class TEdcCtlgItem : public LINK
{
public:
    char name[SHORTSTRMAX] = ""; // derived from the item's key, see RefreshName

    /// Writes the key, at most max - 1 characters of it. No key is blank but that of a fresh item.
    virtual void GetName(char *buf, int max) = 0;
    /// @param ver  what the file's header reported. XCDE_INVOLVED and the failures of reading
    virtual void Read(CdeFILE &file, int ver) = 0;
    virtual void Write(CdeFILE &file) = 0;
    virtual void *Record() = 0; // the transfer record of the item dialog, a view

    static TEdcCtlgItem *First(const LIST &items) { return static_cast<TEdcCtlgItem *>(items.First()); }
    TEdcCtlgItem *Next() const { return static_cast<TEdcCtlgItem *>(LINK::Next()); }
    /// Fills `name` anew, outer white space cut, inner runs made one blank. Asserts that it is not blank.
    void RefreshName();

protected:
    /// The file's next number where an item has one that is finite and not negative: XCDE_INVOLVED for others.
    static double GetAmount(CdeFILE &file);
    /// The file's next text as a key, cut to what a name holds, white space collapsed as in `name`.
    static void GetKey(CdeFILE &file, TEdcShortStr &key);
};

/// A named list of items in a divided catalogue.
class TEdcCtlgGroup : public LIST
{
public:
    char name[SHORTSTRMAX] = "";

    TEdcCtlgGroup *Next() const { return static_cast<TEdcCtlgGroup *>(LINK::Next()); }
    /// @param exact  false: whatever case and white space. @param skip  is left out, may be NULL
    /// @return the first one in the list's order, NULL where there is none
    TEdcCtlgItem *FindItem(const char *itemName, bool exact, const TEdcCtlgItem *skip = NULL);
};

/// What both forms of a catalogue share: the file, the life of the dialog, the editing of items.
class TEdcCtlgList : public LIST, public TEdcDialog
{
public:
    /// Where all catalogues lie and what their files end in. Once, at start.
    static void SetCatalogDirectory(const char *dir, const char *ext);

    /// A new item of the concrete kind, a copy where `copy` is given; the caller's.
    virtual TEdcCtlgItem *NewItem(TEdcCtlgItem *copy) = 0;
    /// The concrete dialog for one item; a view.
    virtual TEdcDialog *ItemDialog() = 0;

    /// The editing form of the dialog. Failures of reading, with the file moved aside to "err".
    void Edit();
    /// Stores what is loaded, the former file as "bak". The user is asked about a failure, and where the answer
    /// is not to try again, the former content is in the backup.
    void Save();
    /// Among items; see TEdcCtlgGroup::FindItem.
    static TEdcCtlgItem *FindIn(LIST &list, const char *itemName, bool exact, const TEdcCtlgItem *skip);
    /// Exactly, or but for case and white space.
    static bool SameName(const char *one, const char *other, bool exact);
    bool IsLoaded() const { return loaded; }
    const CdeFILENAME &Path() const { return path; } // "" where the name is too long for any file

    void Button(int id) override;
    void Changed(HWND control) override;
    void Double(HWND control) override;

protected:
    /// The numbers of the dialog and of those of its controls that have to do with items.
    struct NUMBERS {
        int dialog;
        int items;
        int frame;
        int add, adjust, remove, close;
        int picture;
    };
    TEdcCtlgList(const NUMBERS &numbers, const char *tag, const char *name, const char *aType, int aSaveVer,
                 int aLoadVer, int aTitleId, TWindow *aParent);

    /// Reads the file. Afterwards `loaded` tells whether there is one.
    void Load();
    /// The picking form. The record has a text for the list of items, then what further lists ask for.
    /// @return whether something may have been picked
    bool RunPicking(void *picked);
    /// What holds the items that the dialog shows, NULL where nothing does.
    virtual LIST *ShownItems() = 0;
    virtual void ReadContent(CdeFILE &file, int ver) = 0;
    virtual void WriteContent(CdeFILE &file) = 0;
    /// The dialog has just opened.
    virtual void FillLists() = 0;

    /// Replaces what the list box shows. `text` is what is selected then: NULL the first, "" what stands at the
    /// place of the former selection. @return whether anything is selected
    static bool FillBox(TEdcListBox &box, const std::vector<const char *> &names, const char *text);
    void FillItems(const char *text);
    /// A control of the editing form: shown there alone, and enabled. @return a view
    TControl *InEditing(int number);
    /// Edits a copy of the item and puts it in the item's place; `item` is the copy then. @return false where
    /// the user cancels. @param group  holds the items among which its name must be the only one
    bool EditItem(TEdcCtlgItem *&item, LIST *group);
    TBoxAnswer Ask(int textId, TBoxButtons buttons, TBoxIcon icon, int defaultButton = 0);

    void ReadItems(LIST &group, CdeFILE &file, int ver);
    static void WriteItems(LIST &group, CdeFILE &file);
    static bool IsName(const char *text);                 // not blank, no control characters
    static std::string SelectedText(const TListBox &box); // "" where nothing is

    bool loaded = false;   // the list holds the file's content
    bool editMode = false; // the dialog runs in its editing form

private:
    void OpenForm();
    void AddItem();
    void AdjustItem();
    void RemoveItem();
    TEdcCtlgItem *SelectedItem();
    void EnableForSelection(bool selected);

    bool TakeBackup();
    void ReadFile();
    bool MakeFolder();
    void MoveToBackup();
    void WriteFile(bool &moved);

    static CdeFILENAME ctlgDir;
    static char ctlgExt[SHORTSTRMAX];

    const NUMBERS numbers;
    CdeFILENAME path;
    char type[SHORTSTRMAX];
    int32_t loadVer;
    int32_t saveVer;
    int32_t titleId; // of the caption; 0: the resource's
    TEdcListBox *items;
    TControl *adjust, *remove, *ok, *cancel;
    std::vector<TControl *> editing;
};

/// One flat list of items; the list owns them.
class TEdcCtlgSimpleList : public TEdcCtlgList
{
public:
    /// @param name  of the file, in the catalogue folder. @param aType  tag of the file's header behind "SCAT/"
    TEdcCtlgSimpleList(const char *name, const char *aType, int aSaveVer, int aLoadVer, int aTitleId,
                       TWindow *aParent);

    TEdcCtlgItem *Select(); // the one chosen, this list's; NULL for none
    /// As a group's, and NULL while nothing is loaded.
    TEdcCtlgItem *FindItem(const char *itemName, bool exact, const TEdcCtlgItem *skip = NULL);

protected:
    LIST *ShownItems() override { return this; }
    void ReadContent(CdeFILE &file, int ver) override;
    void WriteContent(CdeFILE &file) override;
    void FillLists() override;
};

struct TEdcCtlgChoice {
    TEdcCtlgGroup *group;
    TEdcCtlgItem *item;
};

/// Named groups of items; the list owns the groups, each group its items.
class TEdcCtlgDividedList : public TEdcCtlgList
{
public:
    TEdcCtlgDividedList(const char *name, const char *aType, int aSaveVer, int aLoadVer, int aTitleId,
                        TWindow *aParent); // tag behind "DCAT/"

    const TEdcCtlgChoice *Select(); // static storage, until the next call; NULL for none
    TEdcCtlgGroup *FindGroup(const char *groupName, bool exact, const TEdcCtlgGroup *skip = NULL);

    void Button(int id) override;
    void Changed(HWND control) override;

protected:
    LIST *ShownItems() override { return SelectedGroup(); }
    void ReadContent(CdeFILE &file, int ver) override;
    void WriteContent(CdeFILE &file) override;
    void FillLists() override;
    /// Asks for the name of a group, which must be the only one of that name. @return false where the user
    /// cancels
    bool EditGroup(TEdcCtlgGroup *group);

private:
    TEdcCtlgGroup *FirstGroup() const { return static_cast<TEdcCtlgGroup *>(First()); }
    TEdcCtlgGroup *SelectedGroup();
    void FillGroups(const char *text);
    void EnableForGroup(bool selected);
    void AddGroup();
    void RenameGroup();
    void RemoveGroup();

    TEdcListBox *groups;
    TControl *rename, *removeGroup;
};

#endif
