// The steps that the records of halls and models share: a number that may be any but no NaN and no infinity,
// the coordinates of a point, a group of members. Private to the kernel. Files are untrusted: what is checked
// here reaches no computation and no assertion.
#ifndef KER_EMRECORD_H
#define KER_EMRECORD_H

#include "lib/ag.h"
#include "lib/cde.h"
#include "lib/linkage.h"

#include "lib/xon.h"

/// The next item as a number that can be computed with: XCDE_INVOLVED for a NaN or an infinity.
double GetFinite(CdeFILE &file);

AgPOINT GetPoint(CdeFILE &file);     // x, y, z
AgPOINT GetPlanPoint(CdeFILE &file); // x, y; z is 0
void PutPoint(CdeFILE &file, const AgPOINT &p);
void PutPlanPoint(CdeFILE &file, const AgPOINT &p);

/// Reads a group of records of T into an emptied set, until the group ends. A member that was read by half
/// never gets into the set.
template <class T>
void ReadMembers(CdeFILE &file, LIST *set)
{
    T *fresh = NULL; // ours until it is in the set
    __enter
        set->Clear();
        file.GetSection(); __test;
        for (;;) {
            bool over = file.GetOver(); __test;
            if (over)
                break;
            fresh = new T;
            fresh->Read(file); __test;
            fresh->Insert(set);
            fresh = NULL;
        }
        file.EndSection(1); __test;
    __point
        delete fresh;
    __treat
}

template <class T>
void WriteMembers(CdeFILE &file, const LIST *set)
{
    __enter
        file.PutSection(0); __test;
        for (LINK *member = set->First(); member != NULL; member = member->Next()) {
            static_cast<T *>(member)->Write(file); __test;
        }
        file.PutEnd(); __test;
    __point
    __treat
}

#include "lib/xoff.h"

#endif
