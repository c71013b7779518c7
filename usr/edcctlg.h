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

class TEdcCtlgItem : public LINK
{
public:
    char name[SHORTSTRMAX] = ""; // derived from the item's key, see RefreshName

    virtual void GetName(char *buf, int max) = 0;
    /// @param ver  what the file's header reported. XCDE_INVOLVED and the failures of reading
    virtual void Read(CdeFILE &file, int ver) = 0;
    virtual void Write(CdeFILE &file) = 0;
    virtual void *Record() = 0; // the transfer record of the item dialog, a view

    /// Fills `name` anew, outer white space cut, inner runs made one blank. Asserts that it is not blank.
    void RefreshName();
};

/// A named list of items in a divided catalogue.
class TEdcCtlgGroup : public LIST
{
public:
    char name[SHORTSTRMAX] = "";

    /// @param exact  false: whatever case and white space. @param skip  is left out, may be NULL
    /// @return NULL where there is none
    TEdcCtlgItem *FindItem(const char *itemName, bool exact, const TEdcCtlgItem *skip);
};

/// What both forms of a catalogue share: the file, the life of the dialog, the editing of one item.
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
    /// Stores what is loaded, the former file as "bak". A failure is asked about and, at last, reported here.
    void Save();
    bool IsLoaded() const { return loaded; }
    const CdeFILENAME &Path() const { return path; }

    void Cancel() override;

protected:
    TEdcCtlgList(int dialogId, const char *tag, const char *name, const char *aType, int aSaveVer, int aLoadVer,
                 int aTitleId, TWindow *aParent);

    void Load();
    bool LoadForPicking();         // with the message where there is no catalogue
    bool RunPicking(void *picked); // the dialog over that record. @return whether it ended with OK
    /// Edits a copy of the item and puts it in the item's place; `item` is the copy then. `holder` holds the
    /// items among which its name must be the only one.
    bool EditItem(TEdcCtlgItem *&item, TEdcCtlgGroup *group);
    static void LoadItems(TEdcCtlgList &catalog, LIST &list, CdeFILE &file, int ver);
    static void SaveItems(LIST &list, CdeFILE &file);

    virtual void ReadContent(CdeFILE &file, int ver) = 0;
    virtual void WriteContent(CdeFILE &file) = 0;
    virtual TEdcCtlgItem *FindOther(TEdcCtlgGroup *group, const char *itemName, const TEdcCtlgItem *skip) = 0;

    static CdeFILENAME ctlgDir;
    static char ctlgExt[SHORTSTRMAX];

    CdeFILENAME path;
    char type[SHORTSTRMAX];
    int32_t loadVer;
    int32_t saveVer;
    bool editMode = false; // the dialog runs in its editing form
    bool loaded = false;   // the list holds the file's content
    int32_t titleId;       // of the caption; 0: the resource's

private:
    void Repair();
    void ReadFile();
    void WriteFile();
    bool MakeDirectory();
};

/// One flat list of items; the list owns them.
class TEdcCtlgSimpleList : public TEdcCtlgList
{
public:
    /// @param name  of the file, in the catalogue folder. @param aType  tag of the file's header behind "SCAT/"
    TEdcCtlgSimpleList(const char *name, const char *aType, int aSaveVer, int aLoadVer, int aTitleId,
                       TWindow *aParent);

    TEdcCtlgItem *Select(); // the one chosen, this list's; NULL for none
    TEdcCtlgItem *FindItem(const char *itemName, bool exact, const TEdcCtlgItem *skip);

    void Button(int id) override;
    void Changed(HWND control) override;
    void Double(HWND control) override;

protected:
    void ReadContent(CdeFILE &file, int ver) override;
    void WriteContent(CdeFILE &file) override;
    TEdcCtlgItem *FindOther(TEdcCtlgGroup *group, const char *itemName, const TEdcCtlgItem *skip) override;
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
    TEdcCtlgGroup *FindGroup(const char *groupName, bool exact, const TEdcCtlgGroup *skip);

    void Button(int id) override;
    void Changed(HWND control) override;
    void Double(HWND control) override;

protected:
    void ReadContent(CdeFILE &file, int ver) override;
    void WriteContent(CdeFILE &file) override;
    TEdcCtlgItem *FindOther(TEdcCtlgGroup *group, const char *itemName, const TEdcCtlgItem *skip) override;
};

#endif
