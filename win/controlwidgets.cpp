// The widgets of a dialog's labels, pictures, frames and buttons, and the making of all kinds by their lines.
// They report what the user does with them; what the program sets stays silent.
#include "win/controlparts.h"
#include "win/guard.h"
#include "win/pictures.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOption>
#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{
constexpr int TAB_WIDTH = 8;   // average characters, between the stops of a label
constexpr int ICON_GAP = 4;    // toolkit's units, as all below: between a picture and the text beside it
constexpr int PUSH_MARGIN = 3; // round the text of a push button, frame included
constexpr int TITLE_MARGIN = 8;
constexpr int EDIT_MARGINS = 6;  // round the text in a combo box's edit field, with the caret
constexpr int ENTRY_MARGINS = 2; // round the entry in one without
constexpr int FIELD_CHARS = 2;   // average characters that a field shows at least

QWidget *ToWidget(HWND control)
{
    return reinterpret_cast<QWidget *>(control);
}

HWND ToHandle(QWidget *widget)
{
    return reinterpret_cast<HWND>(widget);
}

/// A text as it is read: without the marks of mnemonics.
QString Bare(const QString &text)
{
    QString bare;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && ++i == text.size())
            break;
        bare += text[i];
    }
    return bare;
}

QSize TextSize(const QWidget *widget, const QString &text)
{
    return widget->fontMetrics().size(Qt::TextSingleLine, Bare(text));
}

/// Text with columns. Lines are broken where it stands higher than one.
class TLabel : public QLabel
{
public:
    TLabel(QWidget *parent, Qt::Alignment anAlignment) : QLabel(parent), side(anAlignment)
    {
        setTextFormat(Qt::PlainText);
    }

    QSize Needed() const
    {
        QStringList lines = Lines();
        std::vector<int> columns = Columns(lines);
        int widest = 0;
        for (const QString &line : lines)
            widest = std::max(widest, WidthOf(CellsOf(line), columns));
        return {widest, static_cast<int>(lines.size()) * fontMetrics().lineSpacing()};
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QStringList lines = Lines();
        std::vector<int> columns = Columns(lines);
        int y = 0;
        for (const QString &line : lines) {
            PaintLine(painter, y, CellsOf(line), columns);
            y += fontMetrics().lineSpacing();
        }
    }

private:
    /// What stands between the tabs of a line.
    struct TCell {
        int tabs; // in front of it
        QString text;
    };

    static std::vector<TCell> CellsOf(const QString &line)
    {
        std::vector<TCell> cells = {{0, QString()}};
        for (QChar c : line) {
            if (c != u'\t')
                cells.back().text += c;
            else if (cells.back().text.isEmpty() && cells.size() > 1)
                ++cells.back().tabs;
            else
                cells.push_back({1, QString()});
        }
        return cells;
    }

    int WidthOf(const TCell &cell) const { return fontMetrics().horizontalAdvance(Bare(cell.text)); }

    int WidthOf(const std::vector<TCell> &cells, const std::vector<int> &columns) const
    {
        return columns[cells.size() - 1] + WidthOf(cells.back());
    }

    /// Where the columns begin: a tab leads to the next stop, and a column stands for all lines where it stands
    /// farthest to the right, so that its entries stand below each other in any font.
    std::vector<int> Columns(const QStringList &lines) const
    {
        std::vector<std::vector<TCell>> rows;
        for (const QString &line : lines)
            rows.push_back(CellsOf(line));
        std::vector<int> columns;
        for (int start = 0; start >= 0; start = NextColumn(rows, columns))
            columns.push_back(start);
        return columns;
    }

    /// @return below 0 where no line has one
    int NextColumn(const std::vector<std::vector<TCell>> &rows, const std::vector<int> &columns) const
    {
        int stop = std::max(1, TAB_WIDTH * fontMetrics().averageCharWidth());
        size_t next = columns.size();
        int start = -1;
        for (const std::vector<TCell> &cells : rows) {
            if (next >= cells.size())
                continue;
            int end = columns.back() + WidthOf(cells[next - 1]);
            start = std::max(start, (end / stop + cells[next].tabs) * stop);
        }
        return start;
    }

    void PaintLine(QPainter &painter, int y, const std::vector<TCell> &cells, const std::vector<int> &columns)
    {
        int rest = width() - WidthOf(cells, columns);
        int left = side == Qt::AlignRight ? rest : side == Qt::AlignHCenter ? rest / 2 : 0;
        for (size_t i = 0; i < cells.size(); ++i) {
            int x = left + columns[i];
            QRect place(x, y, std::max(0, width() - x), fontMetrics().height());
            int flags = static_cast<int>(Qt::AlignLeft | Qt::AlignTop) | Qt::TextSingleLine |
                        Qt::TextShowMnemonic | Qt::TextDontClip;
            style()->drawItemText(&painter, place, flags, palette(), isEnabled(), cells[i].text,
                                  foregroundRole());
        }
    }

    QStringList Lines() const
    {
        QStringList lines;
        bool broken = height() >= 2 * fontMetrics().lineSpacing();
        const QStringList paragraphs = text().remove(u'\r').split(u'\n');
        for (const QString &paragraph : paragraphs)
            lines += broken ? Broken(paragraph) : QStringList(paragraph);
        return lines;
    }

    /// Lines of whole words; one that is too long for the label stands alone.
    QStringList Broken(const QString &paragraph) const
    {
        QStringList lines;
        QString line;
        qsizetype from = 0;
        while (from < paragraph.size()) {
            qsizetype blank = paragraph.indexOf(u' ', from);
            qsizetype end = blank < 0 ? paragraph.size() : blank + 1;
            QString word = paragraph.mid(from, end - from);
            from = end;
            QString whole = line + (blank < 0 ? word : word.chopped(1));
            if (WidthOf(CellsOf(whole), Columns({whole})) > width() && !line.isEmpty())
                lines += std::exchange(line, QString());
            line += word;
        }
        return lines += line;
    }

    Qt::Alignment side;
};

/// A picture of the resources, as large as its place lets it be.
class TPicture : public QWidget
{
public:
    using QWidget::QWidget;

    void SetPicture(int id)
    {
        picture = id;
        update();
    }

protected:
    /// An ornament: without memory for it the dialog goes on.
    void paintEvent(QPaintEvent *) override
    {
        GuardedFailure([this] {
            QPainter painter(this);
            PaintPicture(reinterpret_cast<TNativePainter *>(&painter), picture, {0, 0, width(), height()},
                         !isEnabled());
        });
    }

private:
    int picture = 0;
};

/// Stands round other controls and lets the mouse through to them. It may have a tab stop, and the focus then.
class TFrame : public QGroupBox
{
public:
    TFrame(QWidget *parent, TControlSite &aSite) : QGroupBox(parent), site(aSite)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        lower();
    }

protected:
    bool event(QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Shortcut:
            FocusWithin();
            return true;
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            // The toolkit's frame keeps the blank for a mark of its own.
            return QWidget::event(event); // NOLINT(bugprone-parent-virtual-call)
        default:
            return QGroupBox::event(event);
        }
    }

    void focusInEvent(QFocusEvent *event) override
    {
        QWidget::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call)
        site.Report(ToHandle(this), WIN_BN_SETFOCUS);
    }

    void focusOutEvent(QFocusEvent *event) override
    {
        QWidget::focusOutEvent(event);
        site.Report(ToHandle(this), WIN_BN_KILLFOCUS);
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Up:
            return site.Report(ToHandle(this), WIN_BN_PRIOR);
        case Qt::Key_Right:
        case Qt::Key_Down:
        case Qt::Key_Space:
            return site.Report(ToHandle(this), WIN_BN_NEXT);
        default:
            QGroupBox::keyPressEvent(event);
        }
    }

private:
    /// The mnemonic of the title leads to the frame, or to what Tab would reach first behind it.
    void FocusWithin()
    {
        QWidget *to = this;
        while (!(to->focusPolicy() & Qt::TabFocus) || !to->isVisible() || !to->isEnabled()) {
            to = to->nextInFocusChain();
            if (to == this)
                return;
        }
        to->setFocus(Qt::ShortcutFocusReason);
    }

    TControlSite &site;
};

/// A button whose mnemonic acts at once, as a click does.
template <class BASE>
class TPressable : public BASE
{
public:
    TPressable(QWidget *parent, TControlSite &aSite) : BASE(parent), site(aSite)
    {
        QObject::connect(this, &QAbstractButton::clicked, this, [this] { Report(WIN_BN_CLICKED); });
    }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::Shortcut || static_cast<QShortcutEvent *>(event)->isAmbiguous())
            return BASE::event(event);
        this->setFocus(Qt::ShortcutFocusReason);
        this->click();
        return true;
    }

    void Report(int code) { site.Report(ToHandle(this), code); }

private:
    TControlSite &site;
};

/// A check box or radio button, or one that looks like a push button. It holds its state itself, for there are
/// three of them and not all kinds switch by themselves.
template <class BASE>
class TSwitch : public TPressable<BASE>, public TCheckFace
{
public:
    TSwitch(QWidget *parent, TControlSite &aSite, unsigned aKind) : TPressable<BASE>(parent, aSite), kind(aKind)
    {
        this->setCheckable(true);
        this->setAutoExclusive(false);
    }

    TCheckState State() const override { return state; }

    void SetState(TCheckState aState) override
    {
        state = aState;
        if constexpr (std::is_same_v<BASE, QCheckBox>)
            this->setCheckState(state == WIN_INDETERMINATE ? Qt::PartiallyChecked
                                : state == WIN_CHECKED     ? Qt::Checked
                                                           : Qt::Unchecked);
        else
            this->setChecked(state == WIN_CHECKED);
        this->update();
    }

    void SetKind(unsigned aKind) override { kind = aKind; }

protected:
    void nextCheckState() override
    {
        if (kind == WIN_BS_AUTO3STATE)
            SetState(state == WIN_UNCHECKED ? WIN_CHECKED
                     : state == WIN_CHECKED ? WIN_INDETERMINATE
                                            : WIN_UNCHECKED);
        else if (kind == WIN_BS_AUTOCHECK)
            SetState(state == WIN_UNCHECKED ? WIN_CHECKED : WIN_UNCHECKED);
    }

    void initStyleOption(QStyleOptionButton *option) const override
    {
        BASE::initStyleOption(option);
        option->state.setFlag(QStyle::State_On, state == WIN_CHECKED);
        option->state.setFlag(QStyle::State_Off, state == WIN_UNCHECKED);
        option->state.setFlag(QStyle::State_NoChange, state == WIN_INDETERMINATE);
    }

    /// A push button knows no third state: it is pressed by half.
    void paintEvent(QPaintEvent *event) override
    {
        BASE::paintEvent(event);
        if (!std::is_same_v<BASE, QPushButton> || state != WIN_INDETERMINATE)
            return;
        QPainter painter(this);
        painter.fillRect(this->rect().adjusted(PUSH_MARGIN, PUSH_MARGIN, -PUSH_MARGIN, -PUSH_MARGIN),
                         QBrush(this->palette().color(QPalette::Mid), Qt::Dense5Pattern));
    }

    /// All of the control, not only the mark and the letters beside it.
    bool hitButton(const QPoint &at) const override { return this->rect().contains(at); }

    void mouseDoubleClickEvent(QMouseEvent *event) override
    {
        if (event->button() == Qt::LeftButton && this->hitButton(event->position().toPoint()))
            this->Report(WIN_BN_DBLCLK);
        else
            BASE::mouseDoubleClickEvent(event);
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        int key = event->key();
        bool prior = key == Qt::Key_Up || key == Qt::Key_Left;
        bool next = key == Qt::Key_Down || key == Qt::Key_Right;
        if (kind == WIN_BS_RADIO && (prior || next))
            this->Report(next ? WIN_BN_NEXT : WIN_BN_PRIOR);
        else
            BASE::keyPressEvent(event);
    }

private:
    unsigned kind; // WIN_BS_...
    TCheckState state = WIN_UNCHECKED;
};

struct TKindInfo {
    const char *windowClass;
    unsigned style; // the low four bits
};

/// In the order of ResCONTROLKIND.
constexpr TKindInfo kindTable[] = {
    {"STATIC", WIN_SS_TEXT},
    {"STATIC", WIN_SS_BITMAP},
    {"BUTTON", WIN_BS_GROUP},
    {"EDIT", 0},
    {"EDIT", 0},
    {"COMBOBOX", WIN_CBS_DROPDOWN},
    {"COMBOBOX", WIN_CBS_DROPDOWNLIST},
    {"LISTBOX", WIN_LBS_NOTIFY},
    {"BUTTON", WIN_BS_PUSH},
    {"BUTTON", WIN_BS_DEFPUSH},
    {"BUTTON", WIN_BS_AUTOCHECK},
    {"BUTTON", WIN_BS_AUTO3STATE},
    {"BUTTON", WIN_BS_RADIO},
};
static_assert(std::size(kindTable) == RES_RADIO + 1);

bool TakesFocus(ResCONTROLKIND kind)
{
    return kind != RES_LABEL && kind != RES_PICTURE && kind != RES_FRAME;
}

Qt::Alignment SideOf(unsigned style)
{
    return style & RES_RIGHT ? Qt::AlignRight : style & RES_CENTER ? Qt::AlignHCenter : Qt::AlignLeft;
}

template <class PLAIN>
QWidget *MakeSwitch(const ResCONTROL &line, QWidget *parent, TControlSite &site)
{
    unsigned kind = kindTable[line.kind].style;
    if (line.style & RES_PUSH)
        return new TSwitch<QPushButton>(parent, site, kind);
    return new TSwitch<PLAIN>(parent, site, kind);
}

QWidget *MakeWidget(const ResCONTROL &line, QWidget *parent, TControlSite &site)
{
    TNativeWidget *dialog = ToHandle(parent);
    switch (line.kind) {
    case RES_LABEL:
        return new TLabel(parent, SideOf(line.style));
    case RES_PICTURE:
        return new TPicture(parent);
    case RES_FRAME:
        return new TFrame(parent, site);
    case RES_EDIT:
        return ToWidget(MakeLineField(dialog));
    case RES_MEMO:
        return ToWidget(MakeMemo(dialog));
    case RES_BUTTON:
    case RES_DEFAULT:
        return new TPressable<QPushButton>(parent, site);
    case RES_CHECK:
    case RES_CHECK3:
        return MakeSwitch<QCheckBox>(line, parent, site);
    case RES_RADIO:
        return MakeSwitch<QRadioButton>(line, parent, site);
    default:
        return ToWidget(MakeListControl(line, dialog, site));
    }
}

QSize ButtonExtent(const QAbstractButton *button, QStyle::SubElement contents)
{
    QSize text = button->fontMetrics().size(0, Bare(button->text())); // broken where it has a line break
    if (!button->icon().isNull()) {
        int gap = text.width() > 0 ? ICON_GAP : 0;
        text = QSize(text.width() + gap + button->iconSize().width(),
                     std::max(text.height(), button->iconSize().height()));
    }
    if (qobject_cast<const QPushButton *>(button))
        return text + 2 * QSize(PUSH_MARGIN, PUSH_MARGIN);
    QStyleOptionButton option;
    option.initFrom(button);
    QRect room = button->style()->subElementRect(contents, &option, button);
    int indicator = button->style()->pixelMetric(contents == QStyle::SE_CheckBoxContents
                                                     ? QStyle::PM_IndicatorHeight
                                                     : QStyle::PM_ExclusiveIndicatorHeight);
    return {button->width() - room.width() + text.width(), std::max(text.height(), indicator)};
}

QSize ComboExtent(const QComboBox *combo)
{
    QStyleOptionComboBox option;
    option.initFrom(combo);
    option.editable = combo->isEditable();
    QRect room =
        combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
    int widest = 0;
    for (int i = 0; i < combo->count(); ++i)
        widest = std::max(widest, combo->fontMetrics().horizontalAdvance(combo->itemText(i)));
    int margins = combo->isEditable() ? EDIT_MARGINS : ENTRY_MARGINS;
    return {combo->width() - room.width() + widest + margins,
            combo->height() - room.height() + combo->fontMetrics().height()};
}

/// What a field shows scrolls, so a line of it and a few characters must do.
QSize FieldExtent(const QWidget *field)
{
    int frame = field->style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
    QFontMetrics font = field->fontMetrics();
    return QSize(FIELD_CHARS * font.averageCharWidth(), font.height()) + 2 * QSize(frame, frame);
}

QSize ExtentOf(const QWidget *widget)
{
    if (auto *label = dynamic_cast<const TLabel *>(widget))
        return label->Needed();
    if (auto *frame = qobject_cast<const QGroupBox *>(widget))
        return frame->title().isEmpty() ? QSize(0, 0)
                                        : TextSize(frame, frame->title()) + QSize(2 * TITLE_MARGIN, 0);
    if (auto *radio = qobject_cast<const QRadioButton *>(widget))
        return ButtonExtent(radio, QStyle::SE_RadioButtonContents);
    if (auto *button = qobject_cast<const QAbstractButton *>(widget))
        return ButtonExtent(button, QStyle::SE_CheckBoxContents);
    if (auto *combo = qobject_cast<const QComboBox *>(widget))
        return ComboExtent(combo);
    return dynamic_cast<const TPicture *>(widget) ? QSize(0, 0) : FieldExtent(widget);
}
} // namespace

HWND MakeControl(const ResCONTROL &line, TNativeWidget *dialog, TControlSite &site)
{
    QWidget *parent = ToWidget(dialog);
    QWidget *widget = MakeWidget(line, parent, site);
    HWND handle = ToHandle(widget);
    const TKindInfo &info = kindTable[line.kind];
    bool picture = (line.style & RES_BITMAP) != 0 && line.kind >= RES_BUTTON;
    unsigned bits = (picture ? unsigned{WIN_STYLE_BITMAP} : 0U) | WIN_STYLE_CHILD;
    MarkControl(handle, info.windowClass, info.style | bits, line.id);
    widget->setFont(parent->font()); // whatever the desktop says about this kind of widget
    if (line.picture != 0)
        SetControlPicture(handle, line.picture);
    else
        SetControlText(handle, line.text);
    SetControlTabStop(handle, TakesFocus(line.kind) && !(line.style & RES_NOTAB));
    if (line.style & RES_GREY)
        widget->setEnabled(false);
    if (line.style & RES_HIDDEN)
        widget->hide();
    return handle;
}

TCheckFace *CheckFace(HWND control)
{
    return dynamic_cast<TCheckFace *>(ToWidget(control));
}

void SetControlPicture(HWND control, int pictureId)
{
    QWidget *widget = ToWidget(control);
    if (auto *picture = dynamic_cast<TPicture *>(widget))
        return picture->SetPicture(pictureId);
    auto *button = qobject_cast<QAbstractButton *>(widget);
    if (button && !SetNativeIcon(control, pictureId))
        button->setIcon(QIcon());
}

void SetControlTabStop(HWND control, bool on)
{
    QWidget *widget = ToWidget(control);
    if (!widget || qobject_cast<QLabel *>(widget) || dynamic_cast<TPicture *>(widget))
        return;
    if (qobject_cast<QGroupBox *>(widget))
        widget->setFocusPolicy(on ? Qt::TabFocus : Qt::NoFocus);
    else
        widget->setFocusPolicy(on ? Qt::StrongFocus : Qt::ClickFocus);
    unsigned style = WindowStyle(control) & ~WIN_STYLE_TABSTOP;
    SetWindowStyle(control, style | (on ? unsigned{WIN_STYLE_TABSTOP} : 0U));
}

TSize NeededExtent(HWND control)
{
    QWidget *widget = ToWidget(control);
    if (!widget)
        return {};
    QSize needed = ExtentOf(widget);
    return {needed.width(), needed.height()};
}
