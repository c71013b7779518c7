// Popup menus put together from those of the resources. They have some ten items.
#include "lib/xassert.h"
#include "usr/edcdlg.h"
#include "win/application.h"
#include "win/frame.h"

#include <algorithm>
#include <iterator>

#include "lib/xon.h"

namespace
{
using Items = std::vector<TMenu::ITEM>;

Items CopiedItems(const TMenu &source)
{
    Items copies;
    copies.reserve(source.items.size());
    for (const TMenu::ITEM &item : source.items) {
        copies.push_back({item.id, item.text, item.enabled, item.checked, NULL});
        if (item.popup) {
            copies.back().popup = std::make_unique<TMenu>();
            copies.back().popup->items = CopiedItems(*item.popup);
        }
    }
    return copies;
}
} // namespace

TEdcPopupMenu::TEdcPopupMenu(int resId)
{
    Load(resId);
}

void TEdcPopupMenu::Load(int resId)
{
    __enter
        TMenu fresh;
        TMenu source = LoadMenu(resId);
        Copy(&fresh, &source, 0); __test;
        handle = std::move(fresh);
    __point
    __treat
}

void TEdcPopupMenu::Append(int resId)
{
    __enter
        TMenu source = LoadMenu(resId);
        Copy(&handle, &source, static_cast<int>(handle.items.size())); __test;
    __point
    __treat
}

void TEdcPopupMenu::Copy(TMenu *hDest, const TMenu *hSrc, int offset)
{
    __enter
        ASSERT(hDest != NULL && hSrc != NULL && offset >= 0);
        Items &items = hDest->items;
        Items copies = CopiedItems(*hSrc);
        items.reserve(items.size() + copies.size());
        auto place = items.begin() + std::min(static_cast<ptrdiff_t>(offset), std::ssize(items));
        items.insert(place, std::move_iterator(copies.begin()), std::move_iterator(copies.end()));
    __point
    __treat
}

void TEdcPopupMenu::Track(const TPoint &pos, int defaultItem)
{
    __enter
        TApplication *application = TApplication::Current();
        TDecoratedFrame *frm = application != NULL ? application->MainWindow() : NULL;
        ASSERT(frm != NULL);
        TWindow *win = frm->Client().IsCreated() ? &frm->Client() : NULL;
        ASSERT(win != NULL);
        TrackMenu(*win, handle, pos, defaultItem);
    __point
    __treat
}
