// The catalogue of warm-air units, and the record that it shares with whatever shows a unit.
#include "lib/charstr.h"
#include "usr/zulairht.h"

#include <limits>

#include "lib/xon.h"

namespace
{
enum { TEXT_TITLE = 2520 };
enum : int {
    DIALOG_UNIT = 2511,
    ID_TYPE = 100,
    ID_OUTPUT = 101,
    ID_TEMPRISE = 102,
    ID_AIRFLOW = 103,
    ID_LENGTH = 104,
    ID_HEIGHT = 105,
    ID_WIDTH = 106
};
const double MOST = std::numeric_limits<double>::max(); // as good as no bound

/// The numbers of a unit, in the order in which files and dialogs have them.
TEdcFloat TZulAirHeaterData::*const numbers[] = {&TZulAirHeaterData::output,  &TZulAirHeaterData::tempRise,
                                                 &TZulAirHeaterData::airFlow, &TZulAirHeaterData::length,
                                                 &TZulAirHeaterData::width,   &TZulAirHeaterData::height};
} // namespace

void TZulAirHeaterData::Reset()
{
    typeName.Set(EDC_VNUL, "");
    for (auto number : numbers)
        this->*number = TEdcFloat();
}

TZulAirHeaterTypeItem::TZulAirHeaterTypeItem(const TZulAirHeaterTypeItem &source) = default;

void TZulAirHeaterTypeItem::GetName(char *buf, int max)
{
    StrCopy(buf, data.typeName.id == EDC_VVAL ? data.typeName.text : "", max);
}

void TZulAirHeaterTypeItem::Read(CdeFILE &file, int)
{
    __enter
        GetKey(file, data.typeName); __test;
        for (auto number : numbers) {
            double amount = GetAmount(file); __test;
            (data.*number).Set(amount);
        }
    __point
    __treat
}

void TZulAirHeaterTypeItem::Write(CdeFILE &file)
{
    __enter
        file.PutStr(data.typeName.text); __test;
        for (auto number : numbers) {
            file.PutReal((data.*number).value); __test;
        }
    __point
    __treat
}

TZulAirHeaterTypeDialog::TZulAirHeaterTypeDialog() : TEdcDialog(DIALOG_UNIT)
{
    auto *type = new TEdcEdit(this, ID_TYPE);
    type->SetValidator(new TEdcValueValidator(false));
    for (int id : {ID_OUTPUT, ID_TEMPRISE, ID_AIRFLOW, ID_LENGTH, ID_WIDTH, ID_HEIGHT}) {
        auto *number = new TEdcEdit(this, id);
        number->SetValidator(new TEdcFloatValidator(0, MOST, false, NULL));
    }
}

TZulAirHeaterTypeCatalog::TZulAirHeaterTypeCatalog(TWindow *aParent)
    : TEdcCtlgSimpleList(".TvAgreg", "AIRHEATER/ZEC", 1, 1, TEXT_TITLE, aParent)
{
}

TEdcCtlgItem *TZulAirHeaterTypeCatalog::NewItem(TEdcCtlgItem *copy)
{
    TEdcCtlgItem *item = NULL;
    __enter
        item = copy != NULL ? new TZulAirHeaterTypeItem(*static_cast<TZulAirHeaterTypeItem *>(copy))
                            : new TZulAirHeaterTypeItem;
    __point
    __treat
    return item;
}
