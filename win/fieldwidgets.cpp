// Fields of text, of one line and of many. Whatever comes from the user (keys, an input method, the clipboard,
// a drop) goes through one door: what the character set lacks is refused as a whole, what is too long is cut,
// both with a beep, and the toolkit's own steps of undo stay as they are. A text has up to 16 KB and comes from
// a clipboard of any size, so the door walks it once.
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "win/application.h"
#include "win/controlparts.h"
#include "win/guard.h"
#include "win/validator.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <algorithm>
#include <cstring>

namespace
{
constexpr int ROOM_MAX = 1 << 30; // characters of a field without a limit
constexpr int TAB_WIDTH = 8;      // average characters

QString Shown(const char *text)
{
    QString shown;
    shown.reserve(static_cast<qsizetype>(std::strlen(text)));
    for (const char *s = text; *s != EOS; ++s)
        shown += QChar(static_cast<char16_t>(ChrCode(*s)));
    return shown;
}

/// What an assistive program may have put there past the door shows as '?'.
void AppendHeld(std::string &to, const QString &text)
{
    for (QChar shown : text) {
        char held = '?';
        ChrOfCode(&held, shown.unicode());
        to += held;
    }
}

bool IsBreak(QChar c)
{
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

/// All kinds of line breaks as one, and letters in one piece with their accents.
QString Normalized(const QString &text, QChar lineBreak)
{
    QString composed = text.normalized(QString::NormalizationForm_C);
    QString clean;
    clean.reserve(composed.size());
    for (qsizetype i = 0; i < composed.size(); ++i) {
        if (composed[i] == u'\r' && i + 1 < composed.size() && composed[i + 1] == u'\n')
            continue;
        clean += IsBreak(composed[i]) ? lineBreak : composed[i];
    }
    return clean;
}

/// Whether the character set has it and a person would see it.
bool IsHeld(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        char held;
        bool control = c < u' ' && c != u'\t' && c != u'\n';
        return !control && c != u'\x7F' && ChrOfCode(&held, c.unicode());
    });
}

/// A key that types, as the toolkit sees it; with Ctrl it is a command, with Alt a mnemonic.
bool Types(const QKeyEvent *event)
{
    QString text = event->text();
    bool ctrl = event->modifiers().testFlag(Qt::ControlModifier);
    bool alt = event->modifiers().testFlag(Qt::AltModifier);
    if (text.isEmpty() || ctrl != alt) // both together are the right-hand Alt key
        return false;
    QChar::Category category = text[0].category();
    return text[0].isPrint() || category == QChar::Other_Format || category == QChar::Other_Surrogate ||
           category == QChar::Other_PrivateUse;
}

bool IsMnemonic(const QKeyEvent *event)
{
    return event->modifiers().testFlag(Qt::AltModifier) && !event->modifiers().testFlag(Qt::ControlModifier) &&
           !event->text().isEmpty() && event->text()[0].isPrint();
}

/// What the two kinds of fields share: the door.
class TField : public TFieldFace
{
public:
    virtual void SetRules(int textLimit, const TValidator *aRules)
    {
        room = textLimit > 0 ? textLimit - 1 : ROOM_MAX;
        rules = aRules;
    }

    void Insert(const char *text) override { Take(Shown(text), STEP); }

protected:
    enum KIND { TYPED, STEP }; // a step is undone by itself

    ~TField() = default;
    virtual QChar LineBreak() const = 0;
    virtual int LengthOf(QChar c) const = 0;                 // characters of ours, of a normalized text
    virtual void Put(const QString &text, KIND kind) = 0;    // in place of the selection
    virtual std::string With(const QString &text) const = 0; // the whole text, were it put there

    void Take(const QString &text, KIND kind)
    {
        QString clean = Normalized(text, LineBreak());
        if (!IsHeld(clean))
            return WinBeep();
        if (Cut(clean, RoomLeft()))
            WinBeep();
        if (rules && !rules->IsValidInput(With(clean).c_str(), false))
            return WinBeep();
        if (!clean.isEmpty() || text.isEmpty())
            Put(clean, kind);
    }

    void TakeGuarded(const QString &text, KIND kind)
    {
        if (!text.isEmpty())
            GuardedCall([&] { Take(text, kind); });
    }

    void TakeClipboard(QClipboard::Mode mode) { TakeGuarded(QGuiApplication::clipboard()->text(mode), STEP); }

    /// @return whether the key has done what it can do here
    bool TakeKey(const QKeyEvent *event)
    {
        bool second = event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
        if (event->matches(QKeySequence::Paste))
            TakeClipboard(second && event->key() == Qt::Key_Insert ? QClipboard::Selection
                                                                   : QClipboard::Clipboard);
        else if (Types(event))
            TakeGuarded(TypedText(event->text()), TYPED);
        else
            return false;
        return true;
    }

    /// What an input method gives, less what the field cannot take.
    void Check(const QInputMethodEvent &event, QInputMethodEvent &checked)
    {
        QString text = Normalized(TypedText(event.commitString()), LineBreak());
        if (!IsHeld(text)) {
            WinBeep();
            text.clear();
        }
        if (Cut(text, RoomLeft()))
            WinBeep();
        checked.setCommitString(text, event.replacementStart(), event.replacementLength());
    }

    /// Cuts a normalized text to so many characters of ours. @return whether something is lost
    bool Cut(QString &text, int left) const
    {
        qsizetype fits = 0;
        for (int used = 0; fits < text.size(); ++fits) {
            used += LengthOf(text[fits]);
            if (used > left)
                break;
        }
        bool lost = fits < text.size();
        text.truncate(fits);
        return lost;
    }

    int room = ROOM_MAX;

private:
    int RoomLeft() const
    {
        int start = 0;
        int end = 0;
        GetSelection(start, end);
        return std::max(0, room - Length() + end - start);
    }

    /// The comma key types a point where numbers have one.
    QString TypedText(const QString &text) const
    {
        return text == u"," && rules && rules->HasOption(WIN_VALIDATOR_POINT) ? QStringLiteral(".") : text;
    }

    const TValidator *rules = NULL; // view
};

class TLineField : public QLineEdit, public TField
{
public:
    explicit TLineField(QWidget *parent) : QLineEdit(parent) { setMaxLength(ROOM_MAX); }

    void SetRules(int textLimit, const TValidator *aRules) override
    {
        TField::SetRules(textLimit, aRules);
        if (maxLength() != room) // which forgets what could be undone
            setMaxLength(room);
    }

    std::string Text() const override
    {
        std::string held;
        AppendHeld(held, text());
        return held;
    }

    void SetText(const char *aText) override
    {
        setText(Normalized(Shown(aText), LineBreak()).left(room));
        home(false);
    }

    int Length() const override { return static_cast<int>(text().size()); }

    void GetSelection(int &start, int &end) const override
    {
        start = hasSelectedText() ? selectionStart() : cursorPosition();
        end = hasSelectedText() ? selectionEnd() : start;
    }

    void SetSelection(int start, int end) override
    {
        int length = Length();
        if (end < 0)
            end = length;
        start = std::clamp(start, 0, length);
        end = std::clamp(end, 0, length);
        setSelection(std::min(start, end), std::abs(end - start));
    }

protected:
    QChar LineBreak() const override { return u' '; }
    int LengthOf(QChar) const override { return 1; }

    void Put(const QString &aText, KIND kind) override
    {
        if (kind == STEP && !hasSelectedText()) // with one the toolkit begins a step of its own
            EndStep();
        insert(aText);
        if (kind == STEP)
            EndStep();
    }

    std::string With(const QString &aText) const override
    {
        int start;
        int end;
        GetSelection(start, end);
        std::string whole;
        AppendHeld(whole, text().replace(start, end - start, aText));
        return whole;
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        if (IsMnemonic(event))
            event->ignore();
        else if (!TakeKey(event))
            QLineEdit::keyPressEvent(event);
    }

    void inputMethodEvent(QInputMethodEvent *event) override
    {
        QInputMethodEvent checked(event->preeditString(), event->attributes());
        Check(*event, checked);
        QLineEdit::inputMethodEvent(&checked);
        event->setAccepted(checked.isAccepted());
    }

    /// The toolkit's menu, with its paste going through our door.
    void contextMenuEvent(QContextMenuEvent *event) override
    {
        QMenu *menu = createStandardContextMenu();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        const QList<QAction *> actions = menu->actions();
        for (QAction *action : actions) {
            if (action->text().section(u'\t', 0, 0) != QLineEdit::tr("&Paste"))
                continue;
            disconnect(action, &QAction::triggered, NULL, NULL);
            connect(action, &QAction::triggered, this, [this] { TakeClipboard(QClipboard::Clipboard); });
        }
        menu->popup(event->globalPos());
        event->accept();
    }

    void mouseReleaseEvent(QMouseEvent *event) override
    {
        if (event->button() != Qt::MiddleButton)
            return QLineEdit::mouseReleaseEvent(event);
        if (!QGuiApplication::clipboard()->supportsSelection())
            return;
        setCursorPosition(cursorPositionAt(event->position().toPoint()));
        TakeClipboard(QClipboard::Selection);
    }

    /// A piece of the field's own text is there already: the toolkit moves it.
    void dropEvent(QDropEvent *event) override
    {
        QString dropped = event->mimeData()->text();
        if (event->source() == this && event->dropAction() == Qt::MoveAction)
            return QLineEdit::dropEvent(event);
        setCursorPosition(cursorPositionAt(event->position().toPoint()));
        event->acceptProposedAction();
        TakeGuarded(dropped, STEP);
    }

private:
    /// What comes next is undone by itself: the toolkit parts its steps where the cursor moves.
    void EndStep()
    {
        int at = cursorPosition();
        setCursorPosition(at > 0 ? at - 1 : at + 1);
        setCursorPosition(at);
    }
};

class TMemo : public QPlainTextEdit, public TField
{
public:
    explicit TMemo(QWidget *parent) : QPlainTextEdit(parent)
    {
        setTabChangesFocus(true);
        setTabStopDistance(TAB_WIDTH * QFontMetrics(font()).averageCharWidth());
    }

    std::string Text() const override
    {
        std::string held;
        held.reserve(static_cast<size_t>(Length()));
        for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
            if (block.blockNumber() > 0)
                held += "\r\n";
            AppendHeld(held, block.text());
        }
        return held;
    }

    void SetText(const char *aText) override
    {
        QString text = Normalized(Shown(aText), LineBreak());
        Cut(text, room);
        setPlainText(text);
    }

    int Length() const override { return ToText(document()->characterCount() - 1); }

    void GetSelection(int &start, int &end) const override
    {
        start = ToText(textCursor().selectionStart());
        end = ToText(textCursor().selectionEnd());
    }

    void SetSelection(int start, int end) override
    {
        int length = Length();
        if (end < 0)
            end = length;
        start = std::clamp(start, 0, length);
        end = std::clamp(end, 0, length);
        QTextCursor cursor(document());
        cursor.setPosition(ToDocument(std::min(start, end)));
        cursor.setPosition(ToDocument(std::max(start, end)), QTextCursor::KeepAnchor);
        setTextCursor(cursor);
        ensureCursorVisible();
    }

protected:
    QChar LineBreak() const override { return u'\n'; }

    int LengthOf(QChar c) const override { return c == u'\n' ? 2 : 1; } // CR LF

    void Put(const QString &text, KIND kind) override
    {
        QTextCursor cursor = textCursor();
        if (kind == STEP)
            cursor.beginEditBlock();
        cursor.insertText(text);
        if (kind == STEP)
            cursor.endEditBlock();
        setTextCursor(cursor);
        ensureCursorVisible();
    }

    std::string With(const QString &text) const override
    {
        int start;
        int end;
        GetSelection(start, end);
        std::string lines;
        AppendHeld(lines, QString(text).replace(u'\n', QStringLiteral("\r\n")));
        std::string whole = Text();
        return whole.replace(static_cast<size_t>(start), static_cast<size_t>(end - start), lines);
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        if (IsMnemonic(event))
            event->ignore();
        else if (event->matches(QKeySequence::InsertParagraphSeparator) ||
                 event->matches(QKeySequence::InsertLineSeparator))
            TakeGuarded(QStringLiteral("\n"), TYPED);
        else if (!TakeKey(event))
            QPlainTextEdit::keyPressEvent(event);
    }

    void inputMethodEvent(QInputMethodEvent *event) override
    {
        QInputMethodEvent checked(event->preeditString(), event->attributes());
        Check(*event, checked);
        QPlainTextEdit::inputMethodEvent(&checked);
        event->setAccepted(checked.isAccepted());
    }

    void insertFromMimeData(const QMimeData *source) override { TakeGuarded(source->text(), STEP); }

    /// The toolkit would make plain blanks of those that do not break.
    QMimeData *createMimeDataFromSelection() const override
    {
        auto *copy = new QMimeData;
        copy->setText(textCursor().selectedText().replace(QChar::ParagraphSeparator, u'\n'));
        return copy;
    }

private:
    /// From a position of the toolkit's text, where a line break is one character, to one of ours.
    int ToText(int position) const { return position + document()->findBlock(position).blockNumber(); }

    /// The way back; between CR and LF stands for the end of the line.
    int ToDocument(int position) const
    {
        int low = 0;
        int high = document()->blockCount();
        while (high - low > 1) { // the last line that begins at the position or before it
            int middle = (low + high) / 2;
            bool before = document()->findBlockByNumber(middle).position() + middle <= position;
            (before ? low : high) = middle;
        }
        QTextBlock line = document()->findBlockByNumber(low);
        return std::min(position - low, line.position() + line.length() - 1);
    }
};

TNativeWidget *AsNative(QWidget *widget)
{
    return reinterpret_cast<TNativeWidget *>(widget);
}
} // namespace

TNativeWidget *MakeLineField(TNativeWidget *parent)
{
    return AsNative(new TLineField(reinterpret_cast<QWidget *>(parent)));
}

TNativeWidget *MakeMemo(TNativeWidget *parent)
{
    return AsNative(new TMemo(reinterpret_cast<QWidget *>(parent)));
}

void SetFieldRules(TNativeWidget *field, int textLimit, const TValidator *rules)
{
    auto *widget = dynamic_cast<TField *>(reinterpret_cast<QWidget *>(field));
    ASSERT(widget != NULL);
    widget->SetRules(textLimit, rules);
}

TFieldFace *FieldFace(HWND control)
{
    return dynamic_cast<TFieldFace *>(reinterpret_cast<QWidget *>(control));
}
