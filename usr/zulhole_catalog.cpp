// The catalogue of building elements. An item is a name and a transmittance; nothing else of an element is
// looked up from a hall.
#include "lib/charstr.h"
#include "usr/zulhole.h"

#include <limits>

#include "lib/xon.h"

namespace
{
enum { TEXT_TITLE = 3100 };
enum { DIALOG_ELEMENT = 3011, ID_NAME = 100, ID_TRANSMISSION = 101 };
const double MOST = std::numeric_limits<double>::max(); // as good as no bound
} // namespace

TZulHoleTypeItem::TZulHoleTypeItem(const TZulHoleTypeItem &source) = default;

void TZulHoleTypeItem::GetName(char *buf, int max)
{
    StrCopy(buf, record.name.id == EDC_VVAL ? record.name.text : "", max);
}

void TZulHoleTypeItem::Read(CdeFILE &file, int)
{
    __enter
        GetKey(file, record.name); __test;
        double transmission = GetAmount(file); __test;
        record.transmission.Set(transmission);
    __point
    __treat
}

void TZulHoleTypeItem::Write(CdeFILE &file)
{
    __enter
        file.PutStr(record.name.text); __test;
        file.PutReal(record.transmission.value); __test;
    __point
    __treat
}

TZulHoleTypeDialog::TZulHoleTypeDialog() : TEdcDialog(DIALOG_ELEMENT)
{
    auto *name = new TEdcEdit(this, ID_NAME);
    name->SetValidator(new TEdcValueValidator(false));
    auto *transmission = new TEdcEdit(this, ID_TRANSMISSION);
    transmission->SetValidator(new TEdcFloatValidator(0, MOST, false, NULL));
}

TZulHoleTypeCatalog::TZulHoleTypeCatalog(TWindow *aParent)
    : TEdcCtlgDividedList(".StavPrv", "TEMPHOLE/ZEC", 1, 1, TEXT_TITLE, aParent)
{
}

TEdcCtlgItem *TZulHoleTypeCatalog::NewItem(TEdcCtlgItem *copy)
{
    TEdcCtlgItem *item = NULL;
    __enter
        item =
            copy != NULL ? new TZulHoleTypeItem(*static_cast<TZulHoleTypeItem *>(copy)) : new TZulHoleTypeItem;
    __point
    __treat
    return item;
}
