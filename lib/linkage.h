// Intrusive lists and weak references. The pointers live in the member, so that membership costs no allocation
// and unlinking needs no search; lists hold from none to some thousand members. A LIST owns its members.
// Nothing here can fail, so nothing is guarded. Linkage never travels by copy: a copied LINK or LIST starts
// unlinked and empty, and assignment leaves both sides as they are.
#ifndef LIB_LINKAGE_H
#define LIB_LINKAGE_H

#include "lib/xassert.h"

#include <cstddef>

class LIST;
class REF;

/// Something that a REF can refer to; its destructor empties every REF to it.
class REFOBJ
{
public:
    REFOBJ() = default;
    REFOBJ(const REFOBJ &) {}
    REFOBJ &operator=(const REFOBJ &) { return *this; }
    virtual ~REFOBJ();

    bool HasRefs() const { return refs != NULL; }

private:
    friend class REF;
    REF *refs = NULL; // view; head of the chain of references to this object
};

/// One member of at most one list.
class LINK : public REFOBJ
{
public:
    LINK() = default;
    LINK(const LINK &source) : REFOBJ(source) {}
    LINK &operator=(const LINK &) { return *this; }
    ~LINK() override { Remove(); }

    LINK *Next() const { return next; }
    LINK *Prev() const { return prev; }
    LIST *List() const { return list; }

    /// Unlinks; the caller owns the link then. Nothing happens to an unlinked one.
    void Remove();
    // Each insertion unlinks first, so that moving a member is one call.
    void InsertAfter(LINK *lnk);
    void InsertBefore(LINK *lnk);
    void Insert(LIST *lst); // where lst->Position says

private:
    LINK *prev = NULL; // view; NULL for the first
    LINK *next = NULL; // view; NULL for the last
    LIST *list = NULL; // view; NULL while unlinked
};

/// A list that owns its members; itself a LINK, so that lists can be members of lists.
class LIST : public LINK
{
public:
    LIST() = default;
    LIST(const LIST &source) : LINK(source) {}
    LIST &operator=(const LIST &) { return *this; }
    ~LIST() override { Clear(); }

    /// The member before which `lnk` is to be put, NULL for the end.
    virtual LINK *Position(LINK *lnk);

    LINK *First() const { return first; }
    LINK *Last() const { return last; }
    int Count() const { return count; }
    bool IsEmpty() const { return first == NULL; }
    /// Deletes every member. It is the member's destructor that unlinks it.
    void Clear();

private:
    friend class LINK;
    LINK *first = NULL; // owner of the chain
    LINK *last = NULL;  // view
    int count = 0;      // members, kept by the operations of LINK
};

/// A list that works first in, first out, or as a stack.
class QUEUE : public LIST
{
public:
    enum { STACK = 2 }; // any other mode appends

    explicit QUEUE(int aMode) : mode(aMode) {}
    QUEUE(const QUEUE &source) = default;
    QUEUE &operator=(const QUEUE &source) = default; // takes the mode alone

    LINK *Position(LINK *lnk) override;
    int SetMode(int aMode); // returns the former mode
    int GetMode() const { return mode; }

private:
    int mode;
};

/// A weak reference: becomes empty when its target dies.
class REF : public LINK
{
public:
    REF() = default;
    explicit REF(REFOBJ *obj) { Set(obj); }
    REF(const REF &source) : LINK(source) { Set(source.object); }
    ~REF() override { Set(NULL); }
    REF &operator=(REFOBJ *obj) { return Set(obj), *this; }
    REF &operator=(const REF &source) { return Set(source.object), *this; }

    REFOBJ *Get() const { return object; }
    void Set(REFOBJ *obj);

    bool operator==(const REF &other) const { return object == other.object; }
    bool operator!=(const REF &other) const { return object != other.object; }
    bool operator==(const REFOBJ *obj) const { return object == obj; }
    bool operator!=(const REFOBJ *obj) const { return object != obj; }

private:
    REF *refPrev = NULL;   // view; the chain of references to one object
    REF *refNext = NULL;   // view
    REFOBJ *object = NULL; // weak
};

/// A typed cursor over a LIST whose members are T. It outlives the removal of its member only by Detach.
template <class T>
class LISTITER
{
public:
    LISTITER(T *lnk = NULL) { *this = lnk; }
    LISTITER &operator=(T *lnk)
    {
        link = lnk;
        ForgetGap();
        list = lnk ? lnk->List() : NULL;
        ASSERT(list != NULL || lnk == NULL);
        return *this;
    }

    LIST *SetList(LIST *l) // returns the former list
    {
        LIST *former = list;
        list = l;
        link = NULL;
        ForgetGap();
        return former;
    }
    LIST *GetList() const { return list; }

    bool First() { return MoveTo(list ? list->First() : NULL); }
    bool Last() { return MoveTo(list ? list->Last() : NULL); }
    bool operator++() { return list ? MoveTo(link ? link->Next() : nextSaved) : link != NULL; }
    bool operator--() { return list ? MoveTo(link ? link->Prev() : prevSaved) : link != NULL; }

    operator T *() const { return link; }
    T &operator*() const
    {
        ASSERT(link != NULL);
        return *link;
    }
    T *operator->() const { return &**this; }

    /// Takes the member out for the caller to own; the cursor steps on from the gap.
    T *Detach()
    {
        ASSERT(link != NULL);
        T *taken = link;
        prevSaved = taken->Prev();
        nextSaved = taken->Next();
        link = NULL;
        taken->Remove();
        return taken;
    }

    bool operator==(const LISTITER &other) const
    {
        return link == other.link && prevSaved == other.prevSaved && nextSaved == other.nextSaved;
    }
    bool operator!=(const LISTITER &other) const { return !(*this == other); }
    bool operator==(const T *lnk) const { return link == lnk; }
    bool operator!=(const T *lnk) const { return link != lnk; }
    // Templates, so that a T * fits them better than the built-in operators on `operator T *`.
    template <class P>
    bool operator==(P *lnk) const
    {
        return link == lnk;
    }
    template <class P>
    bool operator!=(P *lnk) const
    {
        return link != lnk;
    }

private:
    T *link = NULL;         // weak; the current member
    LINK *prevSaved = NULL; // weak; neighbours of a member that was detached
    LINK *nextSaved = NULL; // weak
    LIST *list = NULL;      // weak

    void ForgetGap() { prevSaved = nextSaved = NULL; }
    bool MoveTo(LINK *lnk)
    {
        link = static_cast<T *>(lnk);
        ForgetGap();
        return link != NULL;
    }
};

#endif
