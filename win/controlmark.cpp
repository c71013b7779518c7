// The mark round a control that has the focus but shows no caret, button or entry of its own.
#include "win/control.h"

#include <QEvent>
#include <QPainter>
#include <QWidget>

namespace
{
constexpr int DISTANCE = 2; // the toolkit's units, from the control's edge to the outer edge of the mark
constexpr char NAME[] = "mark";

/// Lies over the dialog round one control, lets the mouse through, and goes with the control.
class TMarkWidget : public QWidget
{
public:
    explicit TMarkWidget(QWidget &aControl) : QWidget(aControl.parentWidget()), control(aControl)
    {
        setObjectName(NAME);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
        control.installEventFilter(this);
        QObject::connect(&control, &QObject::destroyed, this, &QObject::deleteLater);
        Follow();
    }

    const QWidget &Control() const { return control; }

    bool eventFilter(QObject *, QEvent *event) override
    {
        QEvent::Type type = event->type();
        if (type == QEvent::Move || type == QEvent::Resize || type == QEvent::ShowToParent ||
            type == QEvent::HideToParent)
            Follow();
        return false;
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QTransform device = painter.deviceTransform();
        QPointF origin = device.map(QPointF(0, 0));
        QPointF end = device.map(QPointF(width(), height()));
        QPoint left(qRound(origin.x()), qRound(origin.y()));
        QSize extent(qRound(end.x()) - left.x(), qRound(end.y()) - left.y());
        double ratio = devicePixelRatioF();
        painter.scale(1 / ratio, 1 / ratio);
        painter.translate(left - origin);
        Dither(painter, extent, qMax(1, qRound(ratio)));
    }

private:
    void Follow()
    {
        setGeometry(control.geometry().adjusted(-DISTANCE, -DISTANCE, DISTANCE, DISTANCE));
        setVisible(control.isVisibleTo(parentWidget()));
        raise();
    }

    /// The edge in dots of two colours by turns; `extent` and `dot` in device pixels.
    void Dither(QPainter &painter, QSize extent, int dot) const
    {
        auto side = [&](QPoint from, QPoint step, int length) {
            for (int i = 0; i * dot < length; i++)
                painter.fillRect(QRect(from + step * (i * dot), QSize(dot, dot)),
                                 i % 2 ? palette().window() : palette().windowText());
        };
        side({0, 0}, {1, 0}, extent.width());
        side({0, extent.height() - dot}, {1, 0}, extent.width());
        side({0, 0}, {0, 1}, extent.height());
        side({extent.width() - dot, 0}, {0, 1}, extent.height());
    }

    QWidget &control;
};

TMarkWidget *FindMark(HWND control)
{
    auto *widget = reinterpret_cast<QWidget *>(control);
    if (!widget || !widget->parentWidget())
        return NULL;
    for (QObject *child : widget->parentWidget()->children())
        if (auto *mark = dynamic_cast<TMarkWidget *>(child); mark && &mark->Control() == widget)
            return mark;
    return NULL;
}
} // namespace

bool TControl::IsMarked() const
{
    return FindMark(GetHandle()) != NULL;
}

void TControl::ShowMark(bool on)
{
    auto *widget = reinterpret_cast<QWidget *>(GetHandle());
    if (!widget || !widget->parentWidget() || on == IsMarked())
        return;
    if (on)
        new TMarkWidget(*widget); // the dialog's
    else
        delete FindMark(GetHandle());
}
