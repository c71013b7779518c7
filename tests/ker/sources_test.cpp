// What hangs and stands in the hall: the arithmetic of emitters and of the sets.
#include "support/sampleroom.h"

#include "lib/charstr.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace
{
// A model of the samples: bell-shaped, with more on the side of positive x.
enum { SKEWED = 1 };

EmEMITTER *AddTo(EmEMITTERSET &set, EmMODEL *model, const AgPOINT &pos)
{
    EmEMITTER *emitter = new EmEMITTER;
    emitter->SetModel(ModelAddRef(model));
    emitter->pos = pos;
    emitter->power = model != NULL ? model->Info()->power : 0;
    emitter->Insert(&set);
    return emitter;
}

EmEMITTER LevelEmitter(EmMODEL *model)
{
    EmEMITTER emitter;
    emitter.SetModel(ModelAddRef(model));
    emitter.pos = {10, 5, 6};
    emitter.power = model->Info()->power;
    return emitter;
}

TEST(Emitter, StartsEmptyAndWithoutModel)
{
    EmEMITTER emitter;
    EXPECT_EQ(emitter.model, static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(emitter.pos, AgE0);
    EXPECT_EQ(emitter.rotation, 0.0);
    EXPECT_EQ(emitter.tilt, 0.0);
    EXPECT_EQ(emitter.power, 0.0);
    EXPECT_EQ(emitter.scale, 0.0);
}

TEST(Emitter, WithoutModelIrradiatesNothingAndHasNoScale)
{
    EmEMITTER emitter;
    emitter.power = 5000;
    emitter.Prepare();
    EXPECT_EQ(emitter.scale, 0.0);
    EXPECT_EQ(emitter.Irradiation(AgPOINT(0, 0, -2)), 0.0);
}

TEST(Emitter, AtNominalPowerGivesItsTable)
{
    SAMPLEMODELS models;
    EmEMITTER emitter = LevelEmitter(models.Model(SKEWED));
    emitter.Prepare();
    EXPECT_EQ(emitter.scale, 1.0);
    EXPECT_EQ(emitter.Irradiation(AgPOINT(10, 5, 4)), models.Model(SKEWED)->Value(AgPOINT(0, 0, 2)));
    EXPECT_GT(emitter.Irradiation(AgPOINT(10, 5, 4)), 10.0);
    EXPECT_EQ(emitter.Irradiation(AgPOINT(11.5, 5.25, 3)), models.Model(SKEWED)->Value(AgPOINT(1.5, 0.25, 3)));
}

TEST(Emitter, AtTwiceItsNominalPowerGivesTwiceItsTable)
{
    SAMPLEMODELS models;
    EmEMITTER emitter = LevelEmitter(models.Model(SKEWED));
    emitter.power *= 2;
    emitter.Prepare();
    EXPECT_EQ(emitter.scale, 2.0);
    EXPECT_EQ(emitter.Irradiation(AgPOINT(11, 5.5, 3)), 2 * models.Model(SKEWED)->Value(AgPOINT(1, 0.5, 3)));
}

TEST(Emitter, GivesNothingOutsideItsTableAndNothingUpwards)
{
    SAMPLEMODELS models;
    EmEMITTER emitter = LevelEmitter(models.Model(SKEWED));
    emitter.Prepare();
    const AgPOINT outside[] = {{10, 5, 6.5}, {10, 5, 7}, {10, 5, -40}, {60, 5, 3}, {-40, 5, 3}, {10, 45, 3}};
    for (const AgPOINT &p : outside)
        EXPECT_EQ(emitter.Irradiation(p), 0.0) << p.x << " " << p.y << " " << p.z;
}

// Rotation and tilt turn the body, so a hall point turns the other way in the model's coordinates.
TEST(Emitter, TurnsItsTableWithItsBody)
{
    SAMPLEMODELS models;
    const EmMODEL *model = models.Model(SKEWED);
    const double c = std::cos(0.3), s = std::sin(0.3);
    const struct {
        double rotation, tilt;
        AgPOINT hall;  // from the emitter
        AgPOINT local; // what the table is asked for
    } cases[] = {
        {0, 0, {1.5, 0.5, -2}, {1.5, 0.5, 2}},
        {AgPI / 2, 0, {-0.5, 1.5, -2}, {1.5, 0.5, 2}},
        {AgPI, 0, {-1.5, -0.5, -2}, {1.5, 0.5, 2}},
        {-AgPI / 2, 0, {0.5, -1.5, -2}, {1.5, 0.5, 2}},
        {0.3, 0, {1.5 * c - 0.5 * s, 1.5 * s + 0.5 * c, -2}, {1.5, 0.5, 2}},
        // Tilted by 0.3 about its long axis, the beam leaves along (0, sin 0.3, -cos 0.3).
        {0, 0.3, {0, 2.5 * s, -2.5 * c}, {0, 0, 2.5}},
        {AgPI / 2, 0.3, {-2.5 * s, 0, -2.5 * c}, {0, 0, 2.5}},
    };
    for (const auto &row : cases) {
        EmEMITTER emitter = LevelEmitter(models.Model(SKEWED));
        emitter.rotation = row.rotation;
        emitter.tilt = row.tilt;
        emitter.Prepare();
        AgPOINT local = emitter.transform * (emitter.pos + row.hall);
        EXPECT_NEAR((local - row.local).Length(), 0, 1e-12) << row.rotation << " " << row.tilt;
        EXPECT_NEAR(emitter.Irradiation(emitter.pos + row.hall), model->Value(row.local), 1e-9);
    }
}

TEST(Emitter, OutsideTheHallStillIrradiatesPointsInside)
{
    SAMPLEMODELS models;
    EmROOM room(10, 10, 5, "", "", 20260115);
    AddTo(*room.Emitters(), models.Model(SKEWED), AgPOINT(-1, 5, 4));
    room.Emitters()->Prepare();
    EXPECT_GT(room.Irradiation(AgPOINT(0.5, 5, 2)), 1.0);
}

TEST(Emitter, CopyAndAssignmentTakeAllStoredFieldsAndAReference)
{
    SAMPLEMODELS models;
    EmEMITTERSET set;
    EmEMITTER *source = AddTo(set, models.Model(0), AgPOINT(1, 2, 3));
    source->rotation = 0.4;
    source->tilt = 0.5;
    source->power = 600;
    EmEMITTER copy(*source);
    EmEMITTER assigned;
    assigned.SetModel(ModelAddRef(models.Model(1)));
    assigned = *source;
    EmEMITTER &itself = assigned;
    assigned = itself;
    set.Clear();
    for (const EmEMITTER *emitter : {&copy, &assigned}) {
        EXPECT_EQ(emitter->model, models.Model(0));
        EXPECT_EQ(emitter->pos, AgPOINT(1, 2, 3));
        EXPECT_EQ(emitter->rotation, 0.4);
        EXPECT_EQ(emitter->tilt, 0.5);
        EXPECT_EQ(emitter->power, 600.0);
        EXPECT_EQ(emitter->List(), static_cast<LIST *>(NULL));
    }
}

TEST(Emitter, ResetGivesUpModelAndFields)
{
    SAMPLEMODELS models;
    EmEMITTER emitter = LevelEmitter(models.Model(0));
    emitter.rotation = emitter.tilt = 1;
    emitter.Reset();
    EXPECT_EQ(emitter.model, static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(emitter.pos, AgE0);
    EXPECT_EQ(emitter.rotation + emitter.tilt + emitter.power, 0.0);
}

// A folder with one model file, gone with the object.
struct MODELFOLDER {
    char native[32] = "/tmp/zulsourcesXXXXXX";
    MODELFOLDER()
    {
        EXPECT_NE(mkdtemp(native), static_cast<char *>(NULL));
        char folder[64];
        EXPECT_TRUE(NameFromNative(folder, native, sizeof(folder)));
        SetModelFolder(folder);
    }
    ~MODELFOLDER()
    {
        std::filesystem::remove_all(native);
        SetModelFolder("");
    }
};

TEST(Emitter, TheLastOfItsModelTakesTheModelOutOfTheCache)
{
    MODELFOLDER folder;
    std::unique_ptr<EmMODEL> fresh(SAMPLEMODELS::Make(0));
    ModelSave(fresh.get());
    char name[32];
    StrCopy(name, fresh->Info()->name, sizeof(name));
    EmEMITTERSET set;
    EmEMITTER *first = new EmEMITTER;
    first->SetModel(ModelAcquire(name));
    first->Insert(&set);
    (new EmEMITTER(*first))->Insert(&set);
    std::filesystem::remove(std::string(folder.native) + "/" + name + ".gim");

    delete first;
    EmMODEL *cached = ModelAcquire(name);
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_EQ(cached, set.First()->model);
    ModelRelease(cached);

    set.Clear();
    EXPECT_EQ(ModelAcquire(name), static_cast<EmMODEL *>(NULL));
    EXPECT_STREQ(TakeFailure(), XFOPEN);
}

TEST(EmitterSet, AddsTheNominalPowerOfMembersWithAModel)
{
    SAMPLEMODELS models;
    EmEMITTERSET set;
    EXPECT_EQ(set.NominalPower(), 0.0);
    AddTo(set, models.Model(0), AgPOINT(1, 1, 5))->power = 1;
    AddTo(set, NULL, AgPOINT(1, 1, 5))->power = 7000;
    AddTo(set, models.Model(1), AgPOINT(1, 1, 5))->power = 2;
    EXPECT_EQ(set.NominalPower(), models.Model(0)->Info()->power + models.Model(1)->Info()->power);
}

TEST(EmitterSet, BoundsItsPositions)
{
    EmEMITTERSET set;
    EXPECT_EQ(set.Bounds().min, AgE0);
    EXPECT_EQ(set.Bounds().max, AgE0);
    AddTo(set, NULL, AgPOINT(4, -3, 6));
    EXPECT_EQ(set.Bounds().min, AgPOINT(4, -3, 6));
    EXPECT_EQ(set.Bounds().max, AgPOINT(4, -3, 6));
    AddTo(set, NULL, AgPOINT(2, 8, 7));
    AddTo(set, NULL, AgPOINT(3, 0, 5));
    EXPECT_EQ(set.Bounds().min, AgPOINT(2, -3, 5));
    EXPECT_EQ(set.Bounds().max, AgPOINT(4, 8, 7));
}

TEST(AirHeaterSet, TotalsNothingWhateverItHolds)
{
    EmAIRHEATERSET set;
    for (int i = 0; i < 10; ++i) {
        EmAIRHEATER *unit = new EmAIRHEATER;
        unit->power = 20000;
        unit->Insert(&set);
    }
    EXPECT_EQ(set.TotalPower(), 0.0);
}

TEST(AirHeaterSet, BoundsItsPositions)
{
    EmAIRHEATERSET set;
    EXPECT_EQ(set.Bounds().max, AgE0);
    for (const AgPOINT &pos : {AgPOINT(1, 9, 3), AgPOINT(-2, 5, 4)}) {
        EmAIRHEATER *unit = new EmAIRHEATER;
        unit->pos = pos;
        unit->Insert(&set);
    }
    EXPECT_EQ(set.Bounds().min, AgPOINT(-2, 5, 3));
    EXPECT_EQ(set.Bounds().max, AgPOINT(1, 9, 4));
}

TEST(AirHeater, CopyTakesAllFieldsAndNoPlaceInAList)
{
    EmAIRHEATERSET set;
    EmAIRHEATER *source = new EmAIRHEATER;
    StrCopy(source->type, "Umluft", sizeof(source->type));
    source->power = 1;
    source->tempRise = 2;
    source->airFlow = 3;
    source->size = {4, 5, 6};
    source->pos = {7, 8, 9};
    source->Insert(&set);
    EmAIRHEATER copy(*source);
    EXPECT_STREQ(copy.type, "Umluft");
    EXPECT_EQ(copy.power, 1.0);
    EXPECT_EQ(copy.tempRise, 2.0);
    EXPECT_EQ(copy.airFlow, 3.0);
    EXPECT_EQ(copy.size, AgPOINT(4, 5, 6));
    EXPECT_EQ(copy.pos, AgPOINT(7, 8, 9));
    EXPECT_EQ(copy.List(), static_cast<LIST *>(NULL));
    EXPECT_EQ(set.Count(), 1);
}

TEST(ZoneSet, BoundsItsPositionsOnThePlan)
{
    EmZONESET set;
    EXPECT_EQ(set.Bounds().max, AgE0);
    for (const AgPOINT &pos : {AgPOINT(3, 9, 5), AgPOINT(2, 10, 6)}) {
        EmZONE *zone = new EmZONE;
        zone->pos = pos;
        zone->Insert(&set);
    }
    EXPECT_EQ(set.Bounds().min, AgPOINT(2, 9, 0));
    EXPECT_EQ(set.Bounds().max, AgPOINT(3, 10, 0));
}

TEST(Zone, CopyTakesAllFieldsAndNoPlaceInAList)
{
    EmZONESET set;
    EmZONE *source = new EmZONE;
    source->size = {1, 2};
    source->pos = {3, 4};
    source->rotation = 0.5;
    source->Insert(&set);
    EmZONE copy(*source);
    EXPECT_EQ(copy.size, AgPOINT(1, 2));
    EXPECT_EQ(copy.pos, AgPOINT(3, 4));
    EXPECT_EQ(copy.rotation, 0.5);
    EXPECT_EQ(copy.List(), static_cast<LIST *>(NULL));
}
} // namespace
