#include "win/listparts.h"

#include "lib/charstr.h"
#include "win/guard.h"

#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>

namespace
{
QAbstractItemModel *ToQt(TNativeModel *model)
{
    return reinterpret_cast<QAbstractItemModel *>(model);
}

/// Does by itself what a user does to a list box, so that every change of the selection is told once.
class TBoxWidget : public QListView, public TBoxFace
{
public:
    TBoxWidget(QWidget *parent, bool sorted, TControlSite &aSite)
        : QListView(parent), store(sorted), site(aSite)
    {
        setModel(ToQt(store.Model()));
        setSelectionMode(SingleSelection);
        setEditTriggers(NoEditTriggers);
        setTabKeyNavigation(false);
    }

    HWND Handle() { return reinterpret_cast<HWND>(static_cast<QWidget *>(this)); }

    TListStore &Store() override { return store; }
    int Selected() const override { return currentIndex().row(); }
    void Select(int index) override;
    void Insert(int index, const char *text) override { store.Insert(index, text); }
    void Delete(int index) override;
    void Clear() override { store.Clear(); }
    int TopIndex() override;
    void SetTopIndex(int index) override;
    void SetRedraw(bool on) override { setUpdatesEnabled(on); }

protected:
    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override { event->accept(); }
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    bool Pick(int index);
    int Page() const;

    TListStore store;
    TControlSite &site;
    TTypedText typed;
};

void TBoxWidget::Select(int index)
{
    if (index < 0)
        selectionModel()->clear();
    else
        selectionModel()->setCurrentIndex(model()->index(index, 0), QItemSelectionModel::ClearAndSelect);
}

/// The view would select a neighbour in place of an entry that goes.
void TBoxWidget::Delete(int index)
{
    if (index == Selected())
        Select(-1);
    store.Delete(index);
}

int TBoxWidget::TopIndex()
{
    executeDelayedItemsLayout();
    return verticalScrollBar()->value(); // a step is an entry
}

void TBoxWidget::SetTopIndex(int index)
{
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(index);
}

/// @return false where the widget is no more
bool TBoxWidget::Pick(int index)
{
    if (index < 0 || index == Selected())
        return true;
    Select(index);
    return TellSite(site, Handle(), WIN_LBN_SELCHANGE);
}

/// Entries that a page key passes: one of those that show stays in view.
int TBoxWidget::Page() const
{
    int height = visualRect(model()->index(0, 0)).height();
    return height > 0 ? qMax(1, viewport()->height() / height - 1) : 1;
}

bool TBoxWidget::event(QEvent *event)
{
    bool handled = false;
    GuardedCall([&] { handled = QListView::event(event); });
    return handled;
}

bool TBoxWidget::viewportEvent(QEvent *event)
{
    bool handled = false;
    GuardedCall([&] { handled = QListView::viewportEvent(event); });
    return handled;
}

void TBoxWidget::mousePressEvent(QMouseEvent *event)
{
    typed.Forget();
    if (event->button() == Qt::LeftButton)
        Pick(indexAt(event->pos()).row());
}

/// With the button held the selection follows the pointer, and beyond the edge goes on by an entry a move.
void TBoxWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (!event->buttons().testFlag(Qt::LeftButton))
        return;
    int y = event->pos().y();
    if (y < 0)
        Pick(Selected() - 1);
    else if (y < viewport()->height())
        Pick(indexAt({0, y}).row());
    else if (store.Has(Selected() + 1))
        Pick(Selected() + 1);
}

void TBoxWidget::mouseDoubleClickEvent(QMouseEvent *event)
{
    int index = indexAt(event->pos()).row();
    if (event->button() == Qt::LeftButton && index >= 0 && Pick(index))
        TellSite(site, Handle(), WIN_LBN_DBLCLK);
}

void TBoxWidget::keyPressEvent(QKeyEvent *event)
{
    auto *key = reinterpret_cast<const TNativeKey *>(event);
    int to = StepByKey(key, Selected(), store.Count(), Page());
    char letter = LetterOf(key);
    if (to >= 0)
        typed.Forget();
    else if (letter != EOS)
        to = store.FindTyped(typed.Add(letter), Selected());
    else
        return event->ignore();
    Pick(to);
}

/// Without the view's own handling, which would make the first entry the present one.
void TBoxWidget::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call)
    viewport()->update();
}

void TBoxWidget::focusOutEvent(QFocusEvent *event)
{
    typed.Forget();
    QListView::focusOutEvent(event);
}

template <class FACE>
FACE *FaceOf(HWND control)
{
    return dynamic_cast<FACE *>(reinterpret_cast<QWidget *>(control));
}
} // namespace

TListFace *ListFace(HWND control)
{
    return FaceOf<TListFace>(control);
}

TDropFace *DropFace(HWND control)
{
    return FaceOf<TDropFace>(control);
}

TBoxFace *BoxFace(HWND control)
{
    return FaceOf<TBoxFace>(control);
}

bool TellSite(TControlSite &site, HWND control, int code)
{
    QPointer<QWidget> widget(reinterpret_cast<QWidget *>(control));
    if (widget->isVisible())
        GuardedCall([&site, control, code] { site.Report(control, code); });
    return !widget.isNull();
}

HWND MakeListBox(const ResCONTROL &line, TNativeWidget *dialog, TControlSite &site)
{
    auto *box = new TBoxWidget(reinterpret_cast<QWidget *>(dialog), (line.style & RES_SORT) != 0, site);
    return box->Handle(); // the dialog's
}

HWND MakeListControl(const ResCONTROL &line, TNativeWidget *dialog, TControlSite &site)
{
    return line.kind == RES_LIST ? MakeListBox(line, dialog, site) : MakeDropDown(line, dialog, site);
}
