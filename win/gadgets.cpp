#include "win/gadgets.h"

#include "lib/platform.h"
#include "lib/xfail.h"
#include "win/dc.h"
#include "win/frame.h"
#include "win/pictures.h"
#include "win/utf8.h"

#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPalette>
#include <QPointer>
#include <QToolButton>
#include <algorithm>

namespace
{
/// A command's string holds what the status line says, a line break, and the tooltip.
struct TCommandText {
    std::string status;
    std::string tip;

    explicit TCommandText(int command) : status(ResText(command))
    {
        size_t line = status.find('\n');
        if (line == std::string::npos)
            return;
        tip = status.substr(line + 1);
        status.resize(line);
    }
};

class TBarButton : public QToolButton
{
public:
    TBarButton(QWidget *parent, const TButtonGadget &gadget) : QToolButton(parent), command(gadget.command)
    {
        TCommandText text(command);
        status = text.status;
        QString tip = QString::fromStdString(ToUtf8(text.tip.c_str()));
        setAutoRaise(true);
        setFocusPolicy(Qt::NoFocus); // the client keeps the keys
        setToolTip(tip);
        setAccessibleName(tip);
        setProperty("command", command);
        setToolButtonStyle(Qt::ToolButtonIconOnly);
        if (!SetNativeIcon(reinterpret_cast<TNativeWidget *>(static_cast<QWidget *>(this)), gadget.picture))
            setText(tip.left(1));
    }

    const int command;

protected:
    void enterEvent(QEnterEvent *event) override
    {
        QToolButton::enterEvent(event);
        if (!status.empty())
            StatusMessage("%s", status.c_str());
    }

    void leaveEvent(QEvent *event) override
    {
        QToolButton::leaveEvent(event);
        if (!status.empty())
            StatusMessage(NULL);
    }

private:
    std::string status;
};

void LeaveFrame(TWindow &bar)
{
    if (auto *frame = dynamic_cast<TDecoratedFrame *>(bar.Parent()))
        frame->Remove(bar);
}

TColor PaletteColor(QPalette::ColorRole role)
{
    QColor color = QGuiApplication::palette().color(role);
    return {static_cast<uint8_t>(color.red()), static_cast<uint8_t>(color.green()),
            static_cast<uint8_t>(color.blue())};
}
} // namespace

struct TControlBar::BarImpl {
    TGadgetWindowFont font;
    std::vector<std::unique_ptr<TGadget>> gadgets;
    std::vector<QPointer<TBarButton>> buttons; // owned by the bar's widget, which the frame's takes along

    /// The first separator of a run is a line, each further one widens the gap.
    void AddSeparator(QWidget &widget, QHBoxLayout &row, bool first)
    {
        row.addSpacing(4);
        if (!first)
            return;
        auto *line = new QFrame(&widget);
        line->setFrameShape(QFrame::VLine);
        line->setFrameShadow(QFrame::Sunken);
        row.addWidget(line);
        row.addSpacing(4);
    }

    void AddGadgets(TControlBar &owner, QWidget &widget, QHBoxLayout &row)
    {
        bool separated = false;
        for (const auto &gadget : gadgets) {
            const auto *command = dynamic_cast<const TButtonGadget *>(gadget.get());
            if (command)
                AddButton(owner, widget, row, *command);
            else
                AddSeparator(widget, row, !separated);
            separated = !command;
        }
        row.addStretch(1);
    }

    void AddButton(TControlBar &owner, QWidget &widget, QHBoxLayout &row, const TButtonGadget &gadget)
    {
        auto *button = new TBarButton(&widget, gadget);
        button->setFont(widget.font());
        QObject::connect(button, &QToolButton::clicked, button,
                         [&owner, id = gadget.command] { owner.Press(id); });
        row.addWidget(button);
        buttons.push_back(button);
    }
};

TControlBar::TControlBar(const TGadgetWindowFont &font) : bar(std::make_unique<BarImpl>())
{
    bar->font = font;
}

TControlBar::~TControlBar()
{
    LeaveFrame(*this);
}

void TControlBar::Insert(std::unique_ptr<TGadget> gadget)
{
    bar->gadgets.push_back(std::move(gadget));
}

void TControlBar::Create()
{
    if (IsCreated())
        return;
    auto *widget = new QWidget(Parent() ? reinterpret_cast<QWidget *>(Parent()->Native()) : NULL);
    AdoptWidget(reinterpret_cast<TNativeWidget *>(widget));
    QFont face("Arial", bar->font.points, bar->font.bold ? QFont::Bold : QFont::Normal, bar->font.italic);
    widget->setFont(face);
    auto *row = new QHBoxLayout(widget);
    row->setContentsMargins(4, 2, 4, 2);
    row->setSpacing(1);
    bar->buttons.clear();
    bar->AddGadgets(*this, *widget, *row);
    widget->show();
}

void TControlBar::IdleEnable(TDecoratedFrame &frame)
{
    for (TBarButton *button : bar->buttons) {
        if (!button)
            continue;
        TCommandEnabler enabler(button->command);
        frame.EvCommandEnable(enabler);
        button->setEnabled(enabler.IsAnswered() && enabler.IsEnabled());
        if (!enabler.IsChecked())
            button->setChecked(false); // a button that is no longer checkable would not paint itself anew
        button->setCheckable(enabler.IsChecked());
        button->setChecked(enabler.IsChecked());
    }
}

bool TControlBar::Press(int command)
{
    auto *frame = dynamic_cast<TDecoratedFrame *>(Parent());
    auto known = [command](const TBarButton *button) { return button && button->command == command; };
    return frame && std::any_of(bar->buttons.begin(), bar->buttons.end(), known) && frame->TryCommand(command);
}

namespace
{
/// Paints a bar anew when the desktop changes its colours.
class TPaletteWatch : public QObject
{
public:
    TPaletteWatch(QWidget &widget, TWindow &aWindow) : QObject(&widget), window(aWindow)
    {
        widget.installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange)
            window.Invalidate();
        return false;
    }

private:
    TWindow &window;
};

constexpr int STATUS_HEIGHT = 22; // all at 96 pixels an inch
constexpr int STATUS_MARGIN = 6;
constexpr int STATUS_POINTS = 10;
} // namespace

TStatusBar::~TStatusBar()
{
    LeaveFrame(*this);
}

void TStatusBar::Create()
{
    if (IsCreated())
        return;
    TWindow::Create();
    auto *widget = reinterpret_cast<QWidget *>(Native());
    widget->setFixedHeight(STATUS_HEIGHT);
    widget->setFocusPolicy(Qt::NoFocus);
    new TPaletteWatch(*widget, *this); // the widget's
}

void TStatusBar::Paint(TDC &dc, bool, const TRect &)
{
    TRect all = GetClientRect();
    int margin = STATUS_MARGIN * dc.DpiX() / 96;
    dc.FillRect(all, SolidBrush(PaletteColor(QPalette::Window)));
    dc.SetPen({.color = PaletteColor(QPalette::Mid)});
    dc.Line(all.TopLeft(), {all.right - 1, all.top});
    dc.SetFont({.face = "Arial", .height = -(STATUS_POINTS * dc.DpiY() + 36) / 72});
    dc.SetTextColor(PaletteColor(QPalette::WindowText));
    dc.SetOpaque(false);
    int y = all.top + (all.Height() - dc.FontMetrics().height + 1) / 2;
    if (!rightText.empty()) {
        int length = static_cast<int>(rightText.size());
        int x = all.right - margin - dc.TextWidth(rightText.c_str(), length);
        dc.TextOut(x, y, rightText.c_str(), length);
        all.right = x - margin;
        dc.Line({all.right, all.top + margin / 2}, {all.right, all.bottom - 1 - margin / 2});
    }
    dc.SetClip({all.left, all.top, all.right, all.bottom});
    dc.TextOut(all.left + margin, y, text.c_str(), static_cast<int>(text.size()));
    dc.ClearClip();
}

void TStatusBar::SetText(const char *aText)
{
    text = aText;
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, ' ');
    Show();
}

void TStatusBar::SetRightText(const char *aText)
{
    rightText = aText;
    Show();
}

void TStatusBar::Show()
{
    if (!IsCreated())
        return;
    Invalidate();
    UpdateWindow();
}
