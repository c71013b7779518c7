#include "ker/emrecord.h"

#include <cmath>

#include "lib/xon.h"

double GetFinite(CdeFILE &file)
{
    double value = 0;
    __enter
        value = file.GetReal(); __test;
        if (!std::isfinite(value))
            __raise(XCDE_INVOLVED);
    __point
        value = 0;
    __treat
    return value;
}

AgPOINT GetPoint(CdeFILE &file)
{
    AgPOINT p;
    __enter
        p.x = GetFinite(file); __test;
        p.y = GetFinite(file); __test;
        p.z = GetFinite(file); __test;
    __point
    __treat
    return p;
}

AgPOINT GetPlanPoint(CdeFILE &file)
{
    AgPOINT p;
    __enter
        p.x = GetFinite(file); __test;
        p.y = GetFinite(file); __test;
    __point
    __treat
    return p;
}

void PutPoint(CdeFILE &file, const AgPOINT &p)
{
    __enter
        file.PutReal(p.x); __test;
        file.PutReal(p.y); __test;
        file.PutReal(p.z); __test;
    __point
    __treat
}

void PutPlanPoint(CdeFILE &file, const AgPOINT &p)
{
    __enter
        file.PutReal(p.x); __test;
        file.PutReal(p.y); __test;
    __point
    __treat
}
