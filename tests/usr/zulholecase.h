// A layer of openings on the floor of a hall, and what is known of an opening as plain texts.
#ifndef TESTS_USR_ZULHOLECASE_H
#define TESTS_USR_ZULHOLECASE_H

#include "lib/charstr.h"
#include "usr/zulhole.h"
#include "zullayercase.h"

/// What the dialog shows of an opening, in its order.
enum HoleField { DESCRIPTION, TRANSMISSION, WIDTH, HEIGHT, OWN_TEMP, EXTERNAL_TEMP, HOLE_FIELDS };
using HOLEVALUES = std::array<std::string, HOLE_FIELDS>;

/// Two values for each field, as its control shows them.
const HOLEVALUES holeOnes = {"Tor Nord", "1.5", "4", "2", "1", "-12.5"};
const HOLEVALUES holeOthers = {"Fenster S\xFC"
                               "d",
                               "2.75",
                               "3.25",
                               "1.5",
                               "0",
                               "6"};
const HOLEVALUES holeUndefined = {"?", "?", "?", "?", "?", "?"};

/// The ones, but for the fields of `others`.
inline HOLEVALUES MixedHole(unsigned others)
{
    HOLEVALUES values = holeOnes;
    for (size_t i = 0; i < values.size(); ++i)
        if (Has(others, i))
            values[i] = holeOthers[i];
    return values;
}

inline void SetHole(EmHOLE &hole, const HOLEVALUES &values)
{
    StrCopy(hole.description, values[DESCRIPTION].c_str(), sizeof hole.description);
    hole.constr.k = atof(values[TRANSMISSION].c_str());
    hole.size.x = atof(values[WIDTH].c_str());
    hole.size.y = atof(values[HEIGHT].c_str());
    hole.flags = values[OWN_TEMP] == "1" ? EmHOLE::OWN_TEMP : 0;
    hole.constr.tExt = atof(values[EXTERNAL_TEMP].c_str());
}
inline HOLEVALUES ValuesOf(const EmHOLE &hole)
{
    return {hole.description,   Shown(hole.constr.k),   Shown(hole.size.x),
            Shown(hole.size.y), hole.flags ? "1" : "0", Shown(hole.constr.tExt)};
}
inline HOLEVALUES ValuesOf(const TZulHoleData &data)
{
    std::string own = data.ownTemp.id == EDC_VVAL ? std::to_string(data.ownTemp.value) : "?";
    return {data.description.id == EDC_VVAL ? data.description.text : "?",
            Shown(data.transmission),
            Shown(data.width),
            Shown(data.height),
            own,
            Shown(data.externalTemp)};
}

/// Where an opening stands and how large it is.
inline plain::SHAPE ShapeOf(const EmHOLE &hole)
{
    return {false, {hole.pos.x, hole.pos.y}, hole.size.x, hole.size.y, hole.rotation, false};
}
inline std::string PlaceOf(const EmHOLE &hole)
{
    return plain::Text(ShapeOf(hole));
}

class SeenHoleLayer : public TZulHoleLayer
{
public:
    using TZulHoleLayer::stock;
    using TZulHoleLayer::TZulHoleLayer;
};

class HoleCase : public LayerCase
{
protected:
    HoleCase() { Ready(layer); }

    EmHOLE *Put(const AgPOINT &middle, double width, double height, double angle = 0)
    {
        auto *hole = new EmHOLE;
        hole->pos = middle;
        hole->size = AgPOINT(width, height);
        hole->rotation = angle;
        hole->Insert(set);
        return hole;
    }
    void Show()
    {
        layer.Reload(NULL);
        LayOut(layer);
    }
    /// The only opening and its sprite.
    TZulHoleSprite *Alone(const AgPOINT &middle, double width, double height, double angle = 0)
    {
        set->Clear();
        Put(middle, width, height, angle);
        Show();
        return First();
    }
    TZulHoleSprite *First() { return static_cast<TZulHoleSprite *>(layer.LnkFirst()); }
    TZulHoleSprite *Last() { return static_cast<TZulHoleSprite *>(layer.LnkLast()); }
    std::vector<TZulHoleSprite *> Sprites()
    {
        std::vector<TZulHoleSprite *> all;
        for (TEdcSprite *spr = layer.LnkFirst(); spr; spr = layer.LnkNext(spr))
            all.push_back(static_cast<TZulHoleSprite *>(spr));
        return all;
    }
    /// The set from its first opening on.
    std::vector<EmHOLE *> InSet()
    {
        std::vector<EmHOLE *> all;
        for (EmHOLE *hole = set->First(); hole; hole = EmHOLESET::Next(hole))
            all.push_back(hole);
        return all;
    }
    std::string Places()
    {
        std::string text;
        for (const EmHOLE *hole : InSet())
            text += (text.empty() ? "" : ";") + PlaceOf(*hole);
        return text;
    }
    /// What the tools hand over.
    TEdcDrawCreation Creation(int tool, const AgPOINT &from, const AgPOINT &to)
    {
        TEdcDrawCreation creation;
        creation.type = tool;
        creation.flags = TEdcDrawRect::SOLID;
        creation.stock = &layer.stock;
        creation.points.Insert(from);
        creation.points.Insert(to);
        return creation;
    }
    void FillStock()
    {
        EmHOLE hole;
        SetHole(hole, holeOnes);
        layer.stock.Exchange(EDC_XLOAD, hole);
        layer.stock.target = set;
    }

    EmHOLESET *set = room.Surfaces()->Floor()->Holes();
    SeenHoleLayer layer{set, &axes};
};

#endif
