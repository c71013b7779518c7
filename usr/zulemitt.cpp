// The layer of the emitters, and the exchange of their data with a dialog.
#include "usr/zulemitt.h"
#include "lib/xassert.h"
#include "usr/zulvalue.h"
#include "win/boxes.h"

#include <cstring>

#include "lib/xon.h"

namespace
{
constexpr double degree = AgPI / 180;

void NameOf(const EmEMITTER &emitter, TEdcShortStr &name)
{
    if (emitter.model)
        name = emitter.model->Info()->name;
    else
        name.Set(EDC_VNUL, "");
}

/// A name that the emitter's model has already loads nothing.
void TakeModel(EmEMITTER &emitter, const TEdcShortStr &modelName)
{
    __enter
        TEdcShortStr present;
        NameOf(emitter, present);
        if (modelName.id != EDC_VVAL) {
            ASSERT(modelName.id == EDC_VNUL);
            emitter.SetModel(NULL);
        } else if (present.id != EDC_VVAL || strcmp(present.text, modelName.text) != 0) {
            EmMODEL *model = ModelAcquire(modelName.text); __test;
            emitter.SetModel(model);
        }
    __point
    __treat
}
} // namespace

void TZulEmitterData::Reset()
{
    modelName.Set(EDC_VNUL, "");
    output.id = EDC_VUDF;
    height.id = EDC_VUDF;
    tilt.Set(0);
    target = NULL;
}

/// The model first: where its file is gone nothing of the emitter changes.
void TZulEmitterData::Exchange(int mode, EmEMITTER &emitter)
{
    __enter
        if (mode != EDC_XSTORE) {
            TEdcShortStr name;
            NameOf(emitter, name);
            modelName.Exchange(mode, name, true);
        } else if (modelName.id != EDC_VUDF) {
            TakeModel(emitter, modelName); __test;
        }
        ZulExchange(mode, output, emitter.power);
        ZulExchange(mode, height, emitter.pos.z);
        ZulExchange(mode, tilt, emitter.tilt, degree);
    __point
    __treat
}

TZulEmitterLayer::TZulEmitterLayer(EmEMITTERSET *aEmittSet, TEdcAxes *anAxes)
    : TZulObjectLayer(ZUL_EMITTERS, aEmittSet, anAxes)
{
    ASSERT(aEmittSet != NULL);
}

void TZulEmitterLayer::Layout(TDC &dc)
{
    NumberSprites();
    MakeRoundMarker(dc, set->Count());
    TZulMarkedLayer::Layout(dc);
}

bool TZulEmitterLayer::Ask(TZulEmitterData &data, int tool)
{
    bool confirmed = false;
    __enter
        TZulEmitterDialog dialog(data, tool == 0);
        confirmed = dialog.Execute() == WIN_ID_OK; __test;
    __point
        confirmed = false;
    __treat
    return confirmed;
}
