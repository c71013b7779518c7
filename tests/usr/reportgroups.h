// The groups of report texts of a small hall, with the document that texts ask for.
#ifndef TESTS_USR_REPORTGROUPS_H
#define TESTS_USR_REPORTGROUPS_H

#include "lib/charstr.h"
#include "lib/platform.h"
#include "usr/edcutils.h"
#include "usr/zuldoc.h"
#include "writtenlines.h"

#include <gtest/gtest.h>

inline constexpr double PAGE_WIDTH = 19 / 2.54; // inches, of the report

class ReportGroups : public testing::Test
{
protected:
    ReportGroups() : former(SetResTextSink(NULL)), model(Info(), NULL)
    {
        TestApplication();
        EdcUseResources();
        SetAppDocument(&doc);
    }
    ~ReportGroups() override
    {
        ZulDeleteGroup(group);
        for (EmEMITTER *e = room.Emitters()->First(); e != NULL; e = EmEMITTERSET::Next(e))
            e->model = NULL; // the model here is not counted
        SetResTextSink(former);
    }

    static EmMODELINFO Info()
    {
        EmMODELINFO info;
        StrCopy(info.name, "Platte 12", sizeof info.name);
        return info;
    }

    EmEMITTER *Hang(const char *name)
    {
        EmEMITTER *e = new EmEMITTER;
        e->Insert(room.Emitters());
        StrCopy(const_cast<EmMODELINFO *>(model.Info())->name, name, sizeof(EmMODELINFO::name));
        e->model = &model;
        return e;
    }
    EmAIRHEATER *Place(const char *type)
    {
        EmAIRHEATER *unit = new EmAIRHEATER;
        StrCopy(unit->type, type, sizeof unit->type);
        unit->Insert(room.AirHeaters());
        return unit;
    }
    EmHOLE *Open(const char *description)
    {
        EmHOLE *hole = new EmHOLE;
        StrCopy(hole->description, description, sizeof hole->description);
        hole->Insert(Holes());
        return hole;
    }
    EmHOLESET *Holes() { return room.Surfaces()->FirstWall()->Holes(); }

    /// The blocks of a fresh group, which takes the place of the former one.
    std::vector<TEdcBlock *> Blocks(TEdcBlock *fresh)
    {
        ZulDeleteGroup(group);
        group = fresh;
        std::vector<TEdcBlock *> blocks;
        for (TEdcBlock *blk = group; blk != NULL; blk = blk->next) {
            EXPECT_EQ(blk->group, group->next == NULL ? NULL : group);
            EXPECT_EQ(blk->state, 0u);
            blocks.push_back(blk);
        }
        return blocks;
    }

    ResTextSink former;
    TEdcDocument doc;
    TWriteDC dc{600};
    EmMODEL model;
    EmROOM room{20,
                12,
                6,
                "Entwurf",
                "Schlu\xDF"
                "folgerung",
                20260312};
    TZulFonts fonts;
    TEdcBlock *group = NULL; // owned
};

#endif
