// The table that tools/rescompile makes of strings.txt, sorted by number, in the system's character set.
#ifndef RES_STRINGS_H
#define RES_STRINGS_H

struct ResSTRING {
    int id;
    const char *text; // view, never NULL
};

extern const ResSTRING resStrings[];
extern const int resStringCount;

#endif
