// What a user does to fields of text besides typing, and what their pixels show.
#include "win/controlparts.h"
#include "win/testdialog.h"
#include "win/utf8.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QImage>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QPixmap>
#include <QPlainTextEdit>
#include <cstdio>
#include <cstdlib>

namespace
{
QWidget *FindWidget(TNativeWidget *dialog, int id)
{
    for (QObject *child : reinterpret_cast<QWidget *>(dialog)->children()) {
        auto *widget = qobject_cast<QWidget *>(child);
        auto handle = reinterpret_cast<HWND>(widget);
        if (widget && WindowClass(handle) && WindowId(handle) == id)
            return widget;
    }
    std::fprintf(stderr, "there is no control %d\n", id);
    std::abort();
}

/// The part of a field that gets what is dropped.
QWidget *DropTarget(QWidget *field)
{
    auto *memo = qobject_cast<QPlainTextEdit *>(field);
    return memo ? memo->viewport() : field;
}

/// Without its key.
std::string Label(const QAction &action)
{
    return FromUtf8(action.text().section(u'\t', 0, 0).toUtf8().constData());
}

/// Opens the field's menu, as the key for it does, hands it over and closes it.
template <class USER>
void WithMenu(QWidget *field, USER use)
{
    field->setFocus();
    QPoint at(2, 2);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, field->mapToGlobal(at));
    QApplication::sendEvent(DropTarget(field), &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    if (!menu) {
        std::fprintf(stderr, "a field has no menu\n");
        std::abort();
    }
    use(*menu);
    menu->close();
    QApplication::sendPostedEvents(NULL, QEvent::DeferredDelete);
}
} // namespace

namespace testdoor
{

void DialogBox::PasteKeys(const std::string &utf8)
{
    QApplication::clipboard()->setText(QString::fromStdString(utf8));
    Press("Ctrl+V");
}

void DialogBox::PasteByMenu(int id, const std::string &utf8)
{
    QApplication::clipboard()->setText(QString::fromStdString(utf8));
    WithMenu(FindWidget(dialog, id), [](QMenu &menu) {
        const QList<QAction *> actions = menu.actions();
        for (QAction *action : actions)
            if (Label(*action) == "&Einf\374gen" && action->isEnabled())
                action->trigger();
    });
}

std::vector<std::string> DialogBox::FieldMenu(int id)
{
    std::vector<std::string> texts;
    WithMenu(FindWidget(dialog, id), [&texts](QMenu &menu) {
        const QList<QAction *> actions = menu.actions();
        for (const QAction *action : actions)
            if (!action->isSeparator())
                texts.push_back(Label(*action));
    });
    return texts;
}

void DialogBox::DropText(int id, const std::string &utf8)
{
    QWidget *target = DropTarget(FindWidget(dialog, id));
    QMimeData data;
    data.setText(QString::fromStdString(utf8));
    QPoint end(target->width() - 2, target->height() - 2);
    QDragEnterEvent enter(end, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return;
    QDropEvent drop(end, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
}

void DialogBox::Commit(const std::string &utf8)
{
    QInputMethodEvent event;
    event.setCommitString(QString::fromStdString(utf8));
    QApplication::sendEvent(reinterpret_cast<QWidget *>(dialog)->focusWidget(), &event);
}

std::vector<TColor> DialogBox::Pixels(int id, TSize &extent) const
{
    QImage image = FindWidget(dialog, id)->grab().toImage();
    extent = {image.width(), image.height()};
    std::vector<TColor> pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            QRgb rgb = image.pixel(x, y);
            pixels.push_back({static_cast<uint8_t>(qRed(rgb)), static_cast<uint8_t>(qGreen(rgb)),
                              static_cast<uint8_t>(qBlue(rgb))});
        }
    }
    return pixels;
}

} // namespace testdoor
