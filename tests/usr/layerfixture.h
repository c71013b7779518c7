// The fixture of a layer that is on no screen: what it draws is recorded, and what it leaves undone raises the
// document's level.
#ifndef TESTS_USR_LAYERFIXTURE_H
#define TESTS_USR_LAYERFIXTURE_H

#include "support/recorddc.h"
#include "support/testsprite.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

enum : uint16_t { ALL_OPTIONS = EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED };

class Layer : public testing::Test
{
protected:
    void Fill(const char *names = "abc")
    {
        for (const char *name = names; *name; ++name) {
            int x = 20 * static_cast<int>(name - names);
            spr[*name - 'a'] = ly.Put(std::string(1, *name).c_str(), {x, 0, x + 10, 10});
        }
        Forget();
    }
    TTestSprite *operator[](char name) { return spr[name - 'a']; }
    void Select(const char *names, char focus = 0)
    {
        for (; *names; ++names)
            ly.Select((*this)[*names], true, NULL);
        if (focus)
            ly.SetFocus((*this)[focus], NULL);
        Forget();
    }
    void Forget()
    {
        log.Take();
        dc.calls.clear();
        doc.obsolete = 0;
    }
    int Level() { return std::exchange(doc.obsolete, 0); }
    std::string Lists() { return ly.Lnk() + " " + ly.Pnt() + " " + ly.Sel() + " " + ly.FocusName(); }
    /// The pending failure, taken off.
    XCODE TakeFailure() { return std::exchange(xCode, XNULL); }

    SpriteLog log;
    TTestDoc doc;
    TRecordDC dc;
    TTestLayer ly{"ly", 7, ALL_OPTIONS, log};
    TTestSprite *spr[26] = {};
};

#endif
