// What drop-down lists and list boxes are made of: the store of their entries, and what the control objects ask
// of the widgets. Lists hold a few dozen short texts, those of catalogues a few thousand, so the entries stand
// in one vector, and a sorted list finds the place of a new one by halving. For the sources of this folder.
#ifndef WIN_LISTPARTS_H
#define WIN_LISTPARTS_H

#include "win/controlparts.h"
#include "win/native.h"
#include <memory>
#include <string>

/// The entries of one list, and the toolkit's model that shows them. An index beside the list reads as an empty
/// entry and changes nothing.
class TListStore
{
public:
    explicit TListStore(bool sorted);
    TListStore(const TListStore &) = delete;
    TListStore &operator=(const TListStore &) = delete;
    ~TListStore();

    TNativeModel *Model() const;
    bool Has(int index) const { return index >= 0 && index < Count(); }
    int Count() const;
    std::string Text(int index) const; // Windows-1252
    int Data(int index) const;
    void SetData(int index, int data);
    /// Where a new text belongs: behind all that do not follow it, at the end of a list that is not sorted.
    int Place(const char *text) const;
    void Insert(int index, const char *text); // index 0 to Count()
    void Delete(int index);
    void Clear();
    /// The widgets let go of an entry without being told, so that none of them brings its text up to date.
    void Release(int index);
    /// The next entry that begins with what was typed in a row, whatever its case; round the end of the list.
    /// One letter, or one typed again and again, goes on from the present entry. @return -1 for none
    int FindTyped(const std::string &typed, int present) const;

private:
    class TListModel;
    std::unique_ptr<TListModel> model; // with the entries
    bool sorted;
};

struct TNativeKey; // a key event of the toolkit

/// Where a key leads from the present entry (-1 for none) when a page has `page` entries; -1 for other keys,
/// keys with Ctrl or Alt, and an empty list.
int StepByKey(const TNativeKey *key, int present, int count, int page);
/// The character that a key types, EOS for a key that types none of the set.
char LetterOf(const TNativeKey *key);

/// Letters typed in a row look for an entry together; a pause, or anything else the user does, starts anew.
class TTypedText
{
public:
    const std::string &Add(char c);
    void Forget() { text.clear(); }

private:
    std::string text; // Windows-1252
    int last = 0;     // ms, of the last letter
};

/// Either kind of list. Nothing that is done here is reported.
class TListFace
{
public:
    virtual TListStore &Store() = 0;
    virtual int Selected() const = 0; // -1 for none
    virtual void Select(int index) = 0;
    virtual void Insert(int index, const char *text) = 0;
    virtual void Delete(int index) = 0; // of the selected entry: none is selected then
    virtual void Clear() = 0;

protected:
    ~TListFace() = default;
};

class TDropFace : public TListFace
{
public:
    virtual TNativeWidget *Field() const = 0; // the edit field, NULL without one
    virtual void SetFieldText(const char *text) = 0;
    virtual bool IsDropped() const = 0;
    virtual void Drop(bool down) = 0; // reported as if the user had

protected:
    ~TDropFace() = default;
};

class TBoxFace : public TListFace
{
public:
    virtual int TopIndex() = 0;
    virtual void SetTopIndex(int index) = 0;
    virtual void SetRedraw(bool on) = 0;

protected:
    ~TBoxFace() = default;
};

TListFace *ListFace(HWND control); // NULL for what is no list
TDropFace *DropFace(HWND control);
TBoxFace *BoxFace(HWND control);

/// Tells the site, as a root of the failure protocol, unless the widget is not shown: what goes on in a dialog
/// that is being taken down is no news. @return false where the hearer did away with the widget
bool TellSite(TControlSite &site, HWND control, int code);
HWND MakeDropDown(const ResCONTROL &line, TNativeWidget *dialog, TControlSite &site);
HWND MakeListBox(const ResCONTROL &line, TNativeWidget *dialog, TControlSite &site);

#endif
