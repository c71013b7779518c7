// Message boxes. Their texts are literal, and the buttons speak German whatever translations the machine has.
#include "win/boxes.h"
#include "win/application.h"
#include "win/frame.h"
#include "win/modal.h"
#include "win/utf8.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace
{
BoxSink boxSink = NULL;

QString Shown(const std::string &text)
{
    return QString::fromStdString(ToUtf8(text.c_str()));
}

std::string Held(const QString &text)
{
    return FromUtf8(text.toStdString().c_str());
}

struct BUTTON {
    int id; // TBoxAnswer
    QMessageBox::StandardButton standard;
    const char *text; // UTF-8
};

const BUTTON buttonTable[] = {
    {WIN_ID_OK, QMessageBox::Ok, "OK"},
    {WIN_ID_CANCEL, QMessageBox::Cancel, "Abbrechen"},
    {WIN_ID_RETRY, QMessageBox::Retry, "&Wiederholen"},
    {WIN_ID_YES, QMessageBox::Yes, "&Ja"},
    {WIN_ID_NO, QMessageBox::No, "&Nein"},
};

const BUTTON &ButtonOf(int id)
{
    for (const BUTTON &button : buttonTable)
        if (button.id == id)
            return button;
    return buttonTable[0];
}

/// The buttons of a kind of box, the usual default first and the one that Esc gives last.
std::vector<int> ButtonsOf(TBoxButtons kind)
{
    switch (kind) {
    case WIN_BOX_OKCANCEL:
        return {WIN_ID_OK, WIN_ID_CANCEL};
    case WIN_BOX_YESNO:
        return {WIN_ID_YES, WIN_ID_NO};
    case WIN_BOX_YESNOCANCEL:
        return {WIN_ID_YES, WIN_ID_NO, WIN_ID_CANCEL};
    case WIN_BOX_RETRYCANCEL:
        return {WIN_ID_RETRY, WIN_ID_CANCEL};
    default:
        return {WIN_ID_OK};
    }
}

QMessageBox::Icon IconOf(TBoxIcon icon)
{
    switch (icon) {
    case WIN_ICON_INFORMATION:
        return QMessageBox::Information;
    case WIN_ICON_QUESTION:
        return QMessageBox::Question;
    case WIN_ICON_EXCLAMATION:
        return QMessageBox::Warning;
    case WIN_ICON_STOP:
        return QMessageBox::Critical;
    default:
        return QMessageBox::NoIcon;
    }
}

class MessageFace : public TModalFace
{
public:
    explicit MessageFace(QMessageBox &aBox) : box(aBox) {}

    const char *Kind() const override { return "message"; }
    TNativeWidget *Widget() const override { return reinterpret_cast<TNativeWidget *>(&box); }
    bool IsUp() const override { return box.isVisible(); }
    std::string Caption() const override { return Held(box.windowTitle()); }
    std::string Text() const override { return Held(box.text()); }
    void Cancel() override { box.reject(); }
    void Answer(int id) override
    {
        QAbstractButton *button = box.button(ButtonOf(id).standard);
        if (button && button->isEnabled())
            button->click();
    }

private:
    QMessageBox &box;
};
} // namespace

std::unique_ptr<TModalFace> MessageBoxFace(TNativeWidget *box)
{
    return std::make_unique<MessageFace>(*reinterpret_cast<QMessageBox *>(box));
}

TNativeWidget *ModalParent(TWindow *owner)
{
    QWidget *modal = QApplication::activeModalWidget();
    TApplication *application = TApplication::Current();
    if (modal)
        return reinterpret_cast<TNativeWidget *>(modal);
    if ((!owner || !owner->Native()) && application)
        owner = application->MainWindow();
    if (!owner || !owner->Native())
        return NULL;
    return reinterpret_cast<TNativeWidget *>(reinterpret_cast<QWidget *>(owner->Native())->window());
}

BoxSink SetBoxSink(BoxSink sink)
{
    return std::exchange(boxSink, sink);
}

TBoxAnswer MessageBox(TWindow *owner, const char *text, const char *caption, TBoxButtons buttons, TBoxIcon icon,
                      int defaultButton)
{
    std::vector<int> ids = ButtonsOf(buttons);
    auto escape = static_cast<TBoxAnswer>(ids.back());
    if (boxSink) {
        boxSink(text, icon == WIN_ICON_STOP);
        return escape;
    }
    if (!qApp) { // before the windows are there, or behind their end
        std::fprintf(stderr, "%s: %s\n", ToUtf8(caption).c_str(), ToUtf8(text).c_str());
        return escape;
    }
    QMessageBox box(reinterpret_cast<QWidget *>(ModalParent(owner)));
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(Shown(caption));
    box.setText(Shown(text));
    box.setIcon(IconOf(icon));
    for (int id : ids)
        box.addButton(ButtonOf(id).standard)->setText(QString::fromUtf8(ButtonOf(id).text));
    bool named = std::find(ids.begin(), ids.end(), defaultButton) != ids.end();
    box.setDefaultButton(ButtonOf(named ? defaultButton : ids.front()).standard);
    box.setEscapeButton(ButtonOf(escape).standard);
    MessageFace face(box);
    TModalScope scope(face);
    int pressed = box.exec();
    for (int id : ids)
        if (ButtonOf(id).standard == pressed)
            return static_cast<TBoxAnswer>(id);
    return escape;
}
