// ARRAY: the checked growable array. One flat block, doubling while small and growing by 1000 items once it is
// large; a few dozen to a few thousand items in practice. Slots behind `count` stay constructed, so that taking
// one into use costs an assignment. Every operation that allocates or assigns is guarded.
#ifndef LIB_ARRAY_H
#define LIB_ARRAY_H

#include "lib/xassert.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <functional>
#include <new>

#include "lib/xon.h"

template <class T>
class ARRAY
{
public:
    ARRAY() = default;
    explicit ARRAY(int sz) { Resize(sz); }
    ARRAY(const ARRAY &a) { *this = a; }
    ~ARRAY() { delete[] data; }

    /// Takes over the whole block of `a`, unused slots too.
    ARRAY &operator=(const ARRAY &a);

    /// Bounded by the block, not by the items in use: unused slots may be addressed on purpose.
    T &operator[](int i)
    {
        ASSERT(data != NULL);
        ASSERT(i >= 0 && i < size);
        return data[i];
    }
    const T &operator[](int i) const { return const_cast<ARRAY &>(*this)[i]; }

    operator T *()
    {
        ASSERT(data != NULL);
        return data;
    }
    operator const T *() const { return const_cast<ARRAY &>(*this); }

    T *operator+(int i) { return static_cast<T *>(*this) + i; }
    const T *operator+(int i) const { return static_cast<const T *>(*this) + i; }
    T *operator-(int i) { return static_cast<T *>(*this) - i; }
    const T *operator-(int i) const { return static_cast<const T *>(*this) - i; }

    // Templates, so that a T * fits them better than the built-in operators on `operator T *`: P is T or const
    // T.

    /// Items from `p` to the block's start, signed: array minus pointer.
    template <class P>
    ptrdiff_t operator-(P *p) const
    {
        AssertBoth(p);
        return data - p;
    }
    template <class P>
    bool operator<=(P *p) const
    {
        return AssertBoth(p), std::less_equal<const T *>()(data, p);
    }
    template <class P>
    bool operator>=(P *p) const
    {
        return AssertBoth(p), std::greater_equal<const T *>()(data, p);
    }
    template <class P>
    bool operator<(P *p) const
    {
        return AssertBoth(p), std::less<const T *>()(data, p);
    }
    template <class P>
    bool operator>(P *p) const
    {
        return AssertBoth(p), std::greater<const T *>()(data, p);
    }
    template <class P>
    bool operator==(P *p) const
    {
        return data == p;
    }
    template <class P>
    bool operator!=(P *p) const
    {
        return data != p;
    }
    bool operator==(const T *p) const { return data == p; } // also NULL
    bool operator!=(const T *p) const { return data != p; }

    int Size() const { return size; }
    int Count() const { return count; }
    bool IsEmpty() const { return count == 0; }

    /// Makes the block `sz` items long and returns its former length; items that no longer fit are cut off.
    int Resize(int sz);
    /// Puts `item` before index i, -1 meaning at the end, and returns the index used.
    int Insert(const T &item, int i = -1);
    void Delete(int i);
    /// Takes `n` slots behind the last item into use and returns the first of them.
    T *Extend(int n);
    /// Drops the items from `p` on; the block stays.
    void Truncate(T *p);
    void Clear();

private:
    T *data = NULL; // owner; NULL exactly when size is 0
    int size = 0;   // items allocated
    int count = 0;  // items in use, 0 <= count <= size

    void AssertBoth(const T *p) const { ASSERT(data != NULL && p != NULL); }
    void Grow(int least);
    static void Move(T *dst, const T *src, int n);
};

template <class T>
ARRAY<T> &ARRAY<T>::operator=(const ARRAY &a)
{
    __enter
        ASSERT(a.size > 0 || a.data == NULL);
        ASSERT(a.size == 0 || a.data != NULL);
        ASSERT(a.count >= 0 && a.count <= a.size);
        if (&a != this) {
            Resize(0); __test;
            Resize(a.size); __test;
            Move(data, a.data, a.size); __test;
            count = a.count;
        }
    __point
    __treat
    return *this;
}

template <class T>
int ARRAY<T>::Resize(int sz)
{
    int former = size;
    T *fresh = NULL; // ours until it is the block
    __enter
        ASSERT(sz >= 0);
        if (sz != size) {
            if (sz > 0) {
                fresh = new (std::nothrow) T[sz]();
                if (fresh == NULL)
                    __raise(XALLOC);
                Move(fresh, data, sz < size ? sz : size); __test;
            }
            delete[] data;
            data = fresh;
            fresh = NULL;
            size = sz;
            if (count > size)
                count = size;
        }
    __point
        delete[] fresh;
    __treat
    return former;
}

template <class T>
int ARRAY<T>::Insert(const T &item, int i)
{
    if (i == -1)
        i = count;
    __enter
        ASSERT(count >= 0 && count <= size);
        T held(item); __test; // `item` may lie in the block that growth replaces
        if (count == size) {
            Grow(0); __test;
        }
        ASSERT(data != NULL);
        ASSERT(i >= 0 && i <= count);
        Move(data + i + 1, data + i, count - i); __test;
        data[i] = held; __test;
        ++count;
    __point
    __treat
    return i;
}

template <class T>
void ARRAY<T>::Delete(int i)
{
    __enter
        ASSERT(data != NULL);
        ASSERT(count > 0 && count <= size);
        ASSERT(i >= 0 && i < count);
        Move(data + i, data + i + 1, count - i - 1); __test;
        data[count - 1] = T(); __test;
        --count;
    __point
    __treat
}

template <class T>
T *ARRAY<T>::Extend(int n)
{
    T *first = NULL;
    __enter
        ASSERT(n >= 0);
        ASSERT(count >= 0 && count <= size);
        if (n > size - count) {
            Grow(n - (size - count)); __test;
        }
        ASSERT(data != NULL);
        first = data + count;
        count += n;
    __point
    __treat
    return first;
}

template <class T>
void ARRAY<T>::Truncate(T *p)
{
    __enter
        ASSERT(data != NULL);
        ASSERT(count >= 0 && count <= size);
        ASSERT_AS(p >= data && p <= data + count, "p >= data && p <= data+count");
        int end = count;
        count = static_cast<int>(p - data);
        for (int i = count; i < end; ++i) {
            data[i] = T(); __test;
        }
    __point
    __treat
}

template <class T>
void ARRAY<T>::Clear()
{
    __enter
        if (data != NULL) {
            Truncate(data); __test;
        }
    __point
    __treat
}

/// Makes room for `least` items or more: the block doubles while it is small, then grows by 1000.
template <class T>
void ARRAY<T>::Grow(int least)
{
    __enter
        int delta = std::max(least, std::clamp(size, 10, 1000));
        if (delta > INT_MAX - size)
            __raise(XALLOC); // no index reaches so far
        Resize(size + delta); __test;
    __point
    __treat
}

/// The only way items travel: by assignment, in the order that is safe for overlapping ranges.
template <class T>
void ARRAY<T>::Move(T *dst, const T *src, int n)
{
    __enter
        ASSERT(n <= 0 || dst != NULL);
        if (std::less<const T *>()(dst, src)) {
            for (int i = 0; i < n; ++i) {
                dst[i] = src[i]; __test;
            }
        } else if (dst != src) {
            for (int i = n - 1; i >= 0; --i) {
                dst[i] = src[i]; __test;
            }
        }
    __point
    __treat
}

#include "lib/xoff.h"

#endif
