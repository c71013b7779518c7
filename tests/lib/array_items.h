// Items for the tests of the array: they count what lives and what travels, and fail on demand.
#ifndef TESTS_LIB_ARRAY_ITEMS_H
#define TESTS_LIB_ARRAY_ITEMS_H

#include "lib/xfail.h"

#include <new>
#include <stdexcept>
#include <vector>

#include "lib/xon.h"

inline int fuse = 0;                // the so many-th assignment of a failing item fails; 0: none does
inline int assignments = 0;         // of counting items
inline std::vector<void *> targets; // the targets of those

inline bool Blown()
{
    return fuse > 0 && --fuse == 0;
}

/// Counts what lives, so that a lost block shows without a leak checker too.
struct Counted {
    static inline int live = 0;
    Counted() { ++live; }
    Counted(const Counted &) { ++live; }
    Counted &operator=(const Counted &) = default;
    ~Counted() { --live; }
};

/// Its assignment leaves a failure pending.
struct RaisingItem : Counted {
    int value = 0;
    RaisingItem() = default;
    explicit RaisingItem(int v) : value(v) {}
    RaisingItem(const RaisingItem &) = default;
    RaisingItem &operator=(const RaisingItem &source)
    {
        __enter
            ++assignments;
            targets.push_back(this);
            if (Blown())
                __raise(XLIMIT);
            value = source.value;
        __point
        __treat
        return *this;
    }
};

/// Its assignment throws.
struct ThrowingItem : Counted {
    static inline int what = 0; // 0: out of memory, 1: another exception, 2: something that is none
    int value = 0;
    ThrowingItem() = default;
    explicit ThrowingItem(int v) : value(v) {}
    ThrowingItem(const ThrowingItem &) = default;
    ThrowingItem &operator=(const ThrowingItem &source)
    {
        if (Blown())
            Throw();
        value = source.value;
        return *this;
    }
    static void Throw()
    {
        if (what == 0)
            throw std::bad_alloc();
        if (what == 1)
            throw std::runtime_error("no room");
        throw 42;
    }
};

#include "lib/xoff.h"

#endif
