// Message boxes and the question with a combo box. Their texts are literal, and the buttons speak German
// whatever translations the machine has.
#include "win/boxes.h"
#include "win/application.h"
#include "win/frame.h"
#include "win/modal.h"
#include "win/utf8.h"

#include "lib/charstr.h"

#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <QValidator>

#include <cstdio>

namespace
{
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

/// The buttons of a kind of box, the default first and the one that Esc gives last.
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

/// Takes what the system's character set can hold; other input is refused with a beep.
class SetValidator : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &text, int &) const override
    {
        for (QChar c : text) {
            char held;
            if (!ChrOfCode(&held, c.unicode())) {
                WinBeep();
                return Invalid;
            }
        }
        return Acceptable;
    }
};

/// The widgets of the question; they belong to the dialog.
struct ComboDialog {
    enum { LONGEST = 255 }; // characters that can be typed

    QDialog dialog;
    QComboBox *combo;
    QDialogButtonBox *buttons;

    ComboDialog(QWidget *parent, const QString &caption) : dialog(parent)
    {
        dialog.setWindowTitle(caption);
        combo = new QComboBox(&dialog);
        buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
        auto *layout = new QVBoxLayout(&dialog);
        layout->addWidget(combo);
        layout->addWidget(buttons);
        combo->setEditable(true);
        combo->setInsertPolicy(QComboBox::NoInsert);
        combo->setCompleter(NULL); // what is typed counts as it stands
        combo->setMinimumContentsLength(24);
        combo->lineEdit()->setMaxLength(LONGEST);
        combo->setValidator(new SetValidator(combo));
        buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("OK"));
        buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Abbrechen"));
        QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
        QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    }
};

class ComboFace : public TModalFace
{
public:
    explicit ComboFace(ComboDialog &aQuestion) : question(aQuestion) {}

    const char *Kind() const override { return "dialog"; }
    TNativeWidget *Widget() const override { return reinterpret_cast<TNativeWidget *>(&question.dialog); }
    bool IsUp() const override { return question.dialog.isVisible(); }
    std::string Caption() const override { return Held(question.dialog.windowTitle()); }
    std::string Text() const override
    {
        std::string text;
        for (int i = 0; i < question.combo->count(); ++i)
            text += (i > 0 ? "\n" : "") + Held(question.combo->itemText(i));
        return text;
    }
    std::string Typed() const override { return Held(question.combo->currentText()); }
    void Select(int entry) override { question.combo->setCurrentIndex(entry); }
    void Type(const std::string &text) override
    {
        question.combo->lineEdit()->selectAll();
        question.combo->lineEdit()->insert(Shown(text));
    }
    void Cancel() override { question.dialog.reject(); }
    void Answer(int id) override
    {
        bool ok = id == WIN_ID_OK;
        question.buttons->button(ok ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)->click();
    }

private:
    ComboDialog &question;
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

TBoxAnswer MessageBox(TWindow *owner, const char *text, const char *caption, TBoxButtons buttons, TBoxIcon icon)
{
    std::vector<int> ids = ButtonsOf(buttons);
    auto escape = static_cast<TBoxAnswer>(ids.back());
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
    box.setDefaultButton(ButtonOf(ids.front()).standard);
    box.setEscapeButton(ButtonOf(escape).standard);
    MessageFace face(box);
    TModalScope scope(face);
    int pressed = box.exec();
    for (int id : ids)
        if (ButtonOf(id).standard == pressed)
            return static_cast<TBoxAnswer>(id);
    return escape;
}

bool ComboQuestion(TWindow *owner, const char *caption, const std::vector<std::string> &entries, int &selected,
                   std::string &text)
{
    ComboDialog question(reinterpret_cast<QWidget *>(ModalParent(owner)), Shown(caption));
    QComboBox *combo = question.combo;
    for (const std::string &entry : entries)
        combo->addItem(Shown(entry));
    combo->setCurrentIndex(selected);
    if (selected < 0)
        combo->setEditText(Shown(text));
    combo->lineEdit()->selectAll();
    combo->setFocus();
    ComboFace face(question);
    TModalScope scope(face);
    if (question.dialog.exec() != QDialog::Accepted)
        return false;
    QString answer = combo->currentText();
    selected = combo->currentIndex(); // stays where it was while something else is typed
    if (combo->itemText(selected) != answer)
        selected = combo->findText(answer, Qt::MatchExactly | Qt::MatchCaseSensitive);
    text = selected < 0 ? Held(answer) : std::string();
    return true;
}
