// Emitters on a plan for tests: a model folder beside a program of the test's own, a set, its layer on axes of
// 10 px a metre with (0, 0) at (200, 300) px, and a document that counts how often it was modified.
#ifndef TESTS_USR_ZULEMITTCASE_H
#define TESTS_USR_ZULEMITTCASE_H

#include "lib/disk.h"
#include "lib/xfail.h"
#include "support/fault.h"
#include "support/folder.h"
#include "support/modelfolder.h"
#include "support/recorddc.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/zulemitt.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

/// What a test's model is like; its table is 1 everywhere but at its rim, or a beam that fades to the side.
struct MODELKIND {
    const char *name;
    double length = 4; // m
    double width = 0.5;
    double power = 20000; // W
    double reduced = 12000;
    bool beam = false;
};

inline std::string FileOf(const MODELKIND &kind)
{
    enum { DEPTH = 8, EXTENT = 8 };
    EmMODELINFO info = SomeInfo(kind.name);
    info.size = AgPOINT(kind.length, kind.width, 0.25);
    info.power = kind.power;
    info.reducedPower = kind.reduced;
    EmGRID *grid;
    EmMODEL model(info, &grid);
    int depth = kind.beam ? DEPTH : 1;
    int extent = kind.beam ? EXTENT : 1;
    grid->Alloc(depth);
    for (int iz = 0; iz <= depth; ++iz) {
        grid->AllocLayer(iz, extent, extent);
        for (int ix = -extent; ix <= extent; ++ix)
            for (int iy = 0; iy <= extent; ++iy)
                grid->Set(ix, iy, iz, iz == depth || iy == extent ? 0 : 100.0 / (1 + ix * ix + 2 * iy * iy));
    }
    return ModelBytes(model);
}

/// A program folder with models.
class MODELHOME
{
public:
    MODELHOME()
    {
        std::filesystem::create_directory(folder.Path("Modely"));
        if (!SetProgramPath(folder.Path("Zulerion").c_str()))
            throw std::runtime_error("no program folder");
        SetModelFolder("");
    }
    void Put(const MODELKIND &kind) const { folder.Put(File(kind.name), FileOf(kind)); }
    void Put(const std::string &name, const std::string &bytes) const { folder.Put(File(name), bytes); }
    void PutSheet(const std::string &name) const { folder.Put("Modely/" + name + ".pdf", "%PDF-1.4"); }
    void Remove(const std::string &name) const { std::filesystem::remove(folder.Path(File(name))); }

    FOLDER folder;

private:
    static std::string File(const std::string &name) { return "Modely/" + name + ".gim"; }
};

class EmitterDoc : public TEdcDocument
{
public:
    void SetModified() override
    {
        ++changes;
        if (fails)
            XRaise(XALLOC, __FILE__, __LINE__);
        else
            TEdcDocument::SetModified();
    }
    int changes = 0;
    bool fails = false;
};

struct EmitterBench {
    MODELHOME home;
    EmitterDoc doc;
    EmEMITTERSET set;
    TEdcAxes axes;
    TZulEmitterLayer layer{&set, &axes};
    TRecordDC dc;

    EmitterBench()
    {
        TestApplication();
        SetAppDocument(&doc);
        Scale(10);
        layer.SetFont("Arial", 10);
        layer.SetMinSizes({1, 1}, {3, 3});
        home.Put({.name = "Lang"});
        home.Put({.name = "Kurz", .length = 0.5, .width = 0.25, .power = 8000, .reduced = 8000});
    }
    void Scale(double scale, TPoint origin = {200, 300})
    {
        axes.xScale = axes.yScale = scale;
        axes.originX = origin.x;
        axes.originY = origin.y;
    }
    /// A member of the set; its sprite comes with the next Reload.
    EmEMITTER *Hang(const char *model, const AgPOINT &pos, double rotation = 0, double tilt = 0)
    {
        auto *emitter = new EmEMITTER;
        if (model)
            emitter->SetModel(ModelAcquire(model));
        emitter->pos = pos;
        emitter->rotation = rotation;
        emitter->tilt = tilt;
        emitter->power = emitter->model ? emitter->model->Info()->power : 0;
        emitter->Insert(&set);
        return emitter;
    }
    /// Its sprite, laid out, the only one of the layer.
    TZulEmitterSprite *Show(const char *model, const AgPOINT &pos, double rotation = 0, double tilt = 0)
    {
        Empty();
        Hang(model, pos, rotation, tilt);
        LayOut();
        return First();
    }
    void Empty()
    {
        layer.DeleteAll(false);
        set.Clear();
    }
    void LayOut()
    {
        layer.Reload(NULL);
        layer.Layout(dc);
        dc.calls.clear();
        doc.obsolete = 0;
        doc.changes = 0;
    }
    TZulEmitterSprite *First() const { return Sprite(1); }
    TZulEmitterSprite *Sprite(int number) const // from 1, in the order of creation
    {
        TEdcSprite *spr = layer.LnkFirst();
        while (--number > 0)
            spr = spr->lnkNext;
        return static_cast<TZulEmitterSprite *>(spr);
    }
    /// The labels in the order of the set.
    std::string Labels()
    {
        std::string labels;
        for (EmEMITTER *emitter = set.First(); emitter; emitter = EmEMITTERSET::Next(emitter))
            for (TEdcSprite *spr = layer.LnkFirst(); spr; spr = spr->lnkNext)
                if (static_cast<TZulEmitterSprite *>(spr)->Object() == emitter)
                    labels += std::string(static_cast<TZulEmitterSprite *>(spr)->label.Text()) + " ";
        return labels;
    }
    std::string TakeCalls() { return std::exchange(dc.calls, std::string()); }
    static XCODE TakeFailure() { return std::exchange(xCode, XNULL); }
};

/// All that is stored of an emitter.
inline std::string TextOf(const EmEMITTER &e)
{
    char text[256];
    snprintf(text, sizeof text, "%s %.12g %.12g %.12g rot %.12g tilt %.12g %.12g W",
             e.model ? e.model->Info()->name : "-", e.pos.x, e.pos.y, e.pos.z, e.rotation, e.tilt, e.power);
    return text;
}

inline std::string TextOf(const EmEMITTERSET &set)
{
    std::string text;
    for (EmEMITTER *emitter = set.First(); emitter; emitter = EmEMITTERSET::Next(emitter))
        text += TextOf(*emitter) + "\n";
    return text;
}

inline std::vector<std::string> LinesOf(const std::string &calls)
{
    std::vector<std::string> lines;
    for (size_t from = 0, to; (to = calls.find('\n', from)) != std::string::npos; from = to + 1)
        lines.push_back(calls.substr(from, to - from));
    return lines;
}

#endif
