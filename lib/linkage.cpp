#include "lib/linkage.h"

#include <utility>

REFOBJ::~REFOBJ()
{
    while (refs != NULL)
        refs->Set(NULL);
}

void LINK::Remove()
{
    if (list == NULL)
        return;
    if (this == list->first) {
        list->first = next;
        if (next != NULL)
            next->prev = NULL;
        else
            list->last = NULL;
    } else if (this == list->last) {
        list->last = prev;
        prev->next = NULL;
    } else {
        next->prev = prev;
        prev->next = next;
    }
    --list->count;
    prev = next = NULL;
    list = NULL;
}

void LINK::InsertAfter(LINK *lnk)
{
    ASSERT(lnk != NULL);
    ASSERT(lnk->list != this);
    if (lnk == this)
        return;
    Remove();
    prev = lnk;
    next = lnk->next;
    list = lnk->list;
    ASSERT(list != NULL);
    lnk->next = this;
    if (list->last == lnk)
        list->last = this;
    else
        next->prev = this;
    ++list->count;
}

void LINK::InsertBefore(LINK *lnk)
{
    ASSERT(lnk != NULL);
    ASSERT(lnk->list != this);
    if (lnk == this)
        return;
    Remove();
    next = lnk;
    prev = lnk->prev;
    list = lnk->list;
    ASSERT(list != NULL);
    lnk->prev = this;
    if (list->first == lnk)
        list->first = this;
    else
        prev->next = this;
    ++list->count;
}

void LINK::Insert(LIST *lst)
{
    ASSERT(lst != NULL);
    ASSERT(lst != this);
    Remove();
    if (LINK *before = lst->Position(this)) {
        InsertBefore(before);
        return;
    }
    prev = lst->last;
    if (prev != NULL)
        prev->next = this;
    else
        lst->first = this;
    lst->last = this;
    ++lst->count;
    list = lst;
}

LINK *LIST::Position(LINK *)
{
    return NULL;
}

void LIST::Clear()
{
    while (first != NULL)
        delete first; // NOLINT(clang-analyzer-cplusplus.NewDelete): its destructor moves `first` on
}

LINK *QUEUE::Position(LINK *)
{
    return mode == STACK ? First() : NULL;
}

int QUEUE::SetMode(int aMode)
{
    return std::exchange(mode, aMode);
}

void REF::Set(REFOBJ *obj)
{
    if (object != NULL) {
        if (object->refs == this)
            object->refs = refNext;
        else
            refPrev->refNext = refNext;
        if (refNext != NULL)
            refNext->refPrev = refPrev;
        object = NULL;
    }
    if (obj != NULL) {
        refPrev = NULL;
        refNext = obj->refs;
        if (refNext != NULL)
            refNext->refPrev = this;
        obj->refs = this;
        object = obj;
    }
}
