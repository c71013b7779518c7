// Control objects over the widgets of a dialog, and the register of these widgets: a dialog has a few dozen, so
// a plain map from the widget's address does. A widget leaves it by itself when it goes, so a handle that was
// kept too long answers as none.
#include "win/control.h"
#include "lib/xassert.h"
#include "win/controlparts.h"
#include "win/dialog.h"
#include "win/utf8.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVariant>
#include <QWidget>
#include <map>

namespace
{
constexpr char OWN_TIP[] = "ownTip"; // the tooltip is the program's, not a hint

struct TMark {
    const char *windowClass; // a literal
    unsigned style;
    int id;
};

std::map<HWND, TMark> &Marks()
{
    static std::map<HWND, TMark> marks;
    return marks;
}

TMark *FindMarkOf(HWND control)
{
    auto found = Marks().find(control);
    return found != Marks().end() ? &found->second : NULL;
}

QWidget *ToWidget(HWND control)
{
    return reinterpret_cast<QWidget *>(control);
}

QString Shown(const char *text)
{
    return QString::fromStdString(ToUtf8(text));
}

std::string Held(const QString &text)
{
    return FromUtf8(text.toUtf8().constData());
}

/// What the toolkit would take for markup is shown as it is written.
QString TipText(const char *text)
{
    QString tip = Shown(text);
    return Qt::mightBeRichText(tip) ? "<qt>" + tip.toHtmlEscaped() + "</qt>" : tip;
}

/// Tab selects what can be typed over, but where it already was it does not come again.
void SelectText(QWidget *widget)
{
    auto *combo = qobject_cast<QComboBox *>(widget);
    if (TFieldFace *field = FieldFace(reinterpret_cast<HWND>(widget)))
        field->SetSelection(0, -1);
    else if (combo && combo->lineEdit())
        combo->lineEdit()->selectAll();
}
} // namespace

void MarkControl(HWND widget, const char *windowClass, unsigned style, int id)
{
    bool fresh = Marks().insert_or_assign(widget, TMark{windowClass, style, id}).second;
    if (fresh)
        QObject::connect(ToWidget(widget), &QObject::destroyed, [widget] { Marks().erase(widget); });
}

void SetWindowStyle(HWND widget, unsigned style)
{
    if (TMark *mark = FindMarkOf(widget))
        mark->style = style;
}

const char *WindowClass(HWND control)
{
    const TMark *mark = FindMarkOf(control);
    return mark ? mark->windowClass : NULL;
}

unsigned WindowStyle(HWND control)
{
    const TMark *mark = FindMarkOf(control);
    return mark ? mark->style : 0;
}

int WindowId(HWND control)
{
    const TMark *mark = FindMarkOf(control);
    return mark ? mark->id : 0;
}

std::string ControlText(HWND control)
{
    QWidget *widget = ToWidget(control);
    if (const TFieldFace *field = FieldFace(control))
        return field->Text();
    if (auto *combo = qobject_cast<QComboBox *>(widget))
        return Held(combo->currentText());
    if (auto *button = qobject_cast<QAbstractButton *>(widget))
        return Held(button->text());
    if (auto *label = qobject_cast<QLabel *>(widget))
        return Held(label->text());
    auto *frame = qobject_cast<QGroupBox *>(widget);
    return frame ? Held(frame->title()) : std::string();
}

void SetControlText(HWND control, const char *text)
{
    QWidget *widget = ToWidget(control);
    if (TFieldFace *field = FieldFace(control))
        field->SetText(text);
    else if (auto *button = qobject_cast<QAbstractButton *>(widget))
        button->setText(Shown(text));
    else if (auto *label = qobject_cast<QLabel *>(widget)) {
        label->setText(Shown(text));
        NameBuddy(control);
    } else if (auto *frame = qobject_cast<QGroupBox *>(widget))
        frame->setTitle(Shown(text));
}

TControl::TControl(TDialog *dialog, int resId) : TWindow(dialog), controlDialog(dialog), controlId(resId)
{
    ASSERT(dialog != NULL);
    dialog->controls.push_back(this);
}

TControl::~TControl()
{
    std::erase(controlDialog->controls, this);
}

void TControl::EnableWindow(bool on)
{
    if (QWidget *widget = ToWidget(GetHandle()))
        widget->setEnabled(on);
}

bool TControl::IsWindowEnabled() const
{
    const QWidget *widget = ToWidget(GetHandle());
    return widget && widget->isEnabledTo(widget->parentWidget());
}

void TControl::ShowWindow(bool on)
{
    if (QWidget *widget = ToWidget(GetHandle()))
        widget->setVisible(on);
}

bool TControl::IsWindowVisible() const
{
    const QWidget *widget = ToWidget(GetHandle());
    return widget && !widget->isHidden();
}

bool TControl::HasFocus() const
{
    const QWidget *widget = ToWidget(GetHandle());
    return widget && widget->window()->focusWidget() == widget;
}

void TControl::TakeFocus()
{
    QWidget *widget = ToWidget(GetHandle());
    if (!widget)
        return;
    widget->setFocus(Qt::TabFocusReason);
    SelectText(widget);
}

void TControl::SetTabStop(bool on)
{
    SetControlTabStop(GetHandle(), on);
}

void TControl::SetTip(const char *text)
{
    QWidget *widget = ToWidget(GetHandle());
    if (!widget)
        return;
    widget->setToolTip(TipText(text));
    widget->setProperty(OWN_TIP, true);
}

void TControl::SetHint(const char *text)
{
    QWidget *widget = ToWidget(GetHandle());
    if (widget && !widget->property(OWN_TIP).toBool())
        widget->setToolTip(TipText(text));
}

std::string TControl::Text() const
{
    return ControlText(GetHandle());
}

void TControl::SetText(const char *text)
{
    SetControlText(GetHandle(), text);
}

void TControl::SetupWindow() {}
void TControl::CleanupWindow() {}
void TControl::EvNotify(int) {}

int TControl::Transfer(void *, int)
{
    return 0;
}

void TStatic::SetPicture(int pictureId)
{
    SetControlPicture(GetHandle(), pictureId);
}

void TButton::SetPicture(int pictureId)
{
    SetControlPicture(GetHandle(), pictureId);
}

TCheckState TButton::GetCheck() const
{
    const TCheckFace *face = CheckFace(GetHandle());
    return face ? face->State() : WIN_UNCHECKED;
}

void TButton::SetCheck(TCheckState state)
{
    if (TCheckFace *face = CheckFace(GetHandle()))
        face->SetState(state);
}

void TButton::SetKind(unsigned kind)
{
    TCheckFace *face = CheckFace(GetHandle());
    if (!face)
        return;
    face->SetKind(kind);
    SetWindowStyle(GetHandle(), (Style() & ~WIN_STYLE_KIND) | kind);
}
