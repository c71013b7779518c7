// The print dialog and the abort dialog.
#include "win/application.h"
#include "win/boxes.h"
#include "win/modal.h"
#include "win/printer_parts.h"
#include "win/utf8.h"

#include "lib/platform.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <map>

namespace
{
enum { TEXT_ON = 32590 };

QString Shown(const std::string &text)
{
    return QString::fromStdString(ToUtf8(text.c_str()));
}

std::string Held(const QString &text)
{
    return FromUtf8(text.toStdString().c_str());
}

class PrintFace : public TModalFace
{
public:
    explicit PrintFace(QPrintDialog &aDialog) : dialog(aDialog) {}

    const char *Kind() const override { return "print"; }
    TNativeWidget *Widget() const override { return reinterpret_cast<TNativeWidget *>(&dialog); }
    bool IsUp() const override { return dialog.isVisible(); }
    std::string Caption() const override { return Held(dialog.windowTitle()); }
    void SetFileName(const std::string &path) override
    {
        auto *printers = dialog.findChild<QComboBox *>(QStringLiteral("printers"));
        printers->setCurrentIndex(printers->count() - 1); // the PDF stands last
        Field()->setText(QString::fromStdString(path));
    }
    std::string FileName() const override { return Field()->text().toStdString(); }
    void SetPages(int from, int to) override
    {
        dialog.findChild<QRadioButton *>(QStringLiteral("printRange"))->setChecked(true);
        dialog.findChild<QSpinBox *>(QStringLiteral("from"))->setValue(from);
        dialog.findChild<QSpinBox *>(QStringLiteral("to"))->setValue(to);
    }
    void Cancel() override { dialog.reject(); }
    void Answer(int id) override
    {
        auto *buttons =
            dialog.findChild<QDialogButtonBox *>(); // the dialog checks its fields behind the button
        buttons->button(id == WIN_ID_OK ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)->click();
    }

private:
    QLineEdit *Field() const { return dialog.findChild<QLineEdit *>(QStringLiteral("filename")); }

    QPrintDialog &dialog;
};

/// The print dialog asks in boxes of its own, whether a file is to be replaced and so on. While this lives,
/// they show themselves to the test door too.
class InnerBoxes : public QObject
{
public:
    InnerBoxes() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *box = qobject_cast<QMessageBox *>(object);
        if (box && event->type() == QEvent::Show)
            shown[box] = std::make_unique<SHOWN>(box);
        if (box && event->type() == QEvent::Hide)
            shown.erase(box);
        return false;
    }

private:
    struct SHOWN {
        explicit SHOWN(QMessageBox *box)
            : face(MessageBoxFace(reinterpret_cast<TNativeWidget *>(box))), scope(*face)
        {
        }
        std::unique_ptr<TModalFace> face;
        TModalScope scope;
    };
    std::map<QMessageBox *, std::unique_ptr<SHOWN>> shown;
};

/// "<title>.pdf" where the user's documents are.
QString ProposedPdf(const std::string &title)
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty() || !QDir(folder).exists())
        folder = QDir::homePath();
    if (!QDir(folder).exists())
        folder = QDir::currentPath();
    QString name = Shown(title);
    name.replace(QLatin1Char('/'), QLatin1Char('-'));
    return QDir(folder).filePath(name + QLatin1String(".pdf"));
}

/// The file is proposed without turning a printer that there is into one for files.
void ProposeFile(QPrintDialog &dialog, const std::string &title)
{
    if (auto *field = dialog.findChild<QLineEdit *>(QStringLiteral("filename")))
        field->setText(ProposedPdf(title));
}
} // namespace

bool AskForPrint(TWindow *owner, TNativeDevice *device, const std::string &title, TPrintPages &pages)
{
    QPrinter &printer = *reinterpret_cast<QPrinter *>(device);
    QPrintDialog dialog(&printer, reinterpret_cast<QWidget *>(ModalParent(owner)));
    dialog.setWindowTitle(QStringLiteral("Drucken"));
    dialog.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, true);
    dialog.setMinMax(pages.min, pages.max);
    dialog.setFromTo(pages.from > 0 ? pages.from : pages.min, pages.to > 0 ? pages.to : pages.max);
    dialog.setPrintRange(pages.from > 0 ? QAbstractPrintDialog::PageRange : QAbstractPrintDialog::AllPages);
    ProposeFile(dialog, title);
    InnerBoxes inner;
    PrintFace face(dialog);
    TModalScope scope(face);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    bool some = dialog.printRange() == QAbstractPrintDialog::PageRange;
    pages.from = some ? dialog.fromPage() : 0;
    pages.to = some ? dialog.toPage() : 0;
    pages.lastFirst = printer.pageOrder() == QPrinter::LastPageFirst;
    return true;
}

struct TAbortDialog::Impl {
    QDialog dialog;
    QLabel *page;
    QLabel *last;
    bool ended = false;

    explicit Impl(QWidget *parent) : dialog(parent) {}
};

namespace
{
/// The abort dialog needs no script, so it is in no scope; it shows itself to those that there are.
class AbortFace : public TModalFace
{
public:
    explicit AbortFace(QDialog &aDialog) : dialog(aDialog) {}

    const char *Kind() const override { return "abort"; }
    TNativeWidget *Widget() const override { return reinterpret_cast<TNativeWidget *>(&dialog); }
    bool IsUp() const override { return dialog.isVisible(); }
    std::string Caption() const override { return Held(dialog.windowTitle()); }
    std::string Text() const override
    {
        std::string text;
        for (const QLabel *label : dialog.findChildren<QLabel *>())
            text += (text.empty() ? "" : "\n") + Held(label->text());
        return text;
    }
    void Cancel() override { dialog.reject(); }
    void Answer(int id) override
    {
        if (id == WIN_ID_CANCEL)
            dialog.reject();
    }

private:
    QDialog &dialog;
};

QLabel *AddLine(QVBoxLayout *layout, const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    layout->addWidget(label);
    return label;
}

/// As the application does it, which keeps its main window open meanwhile.
void Pump()
{
    if (TApplication *application = TApplication::Current())
        application->PumpWaitingMessages();
}

void ShowNow(QLabel *label, const QString &text)
{
    label->setText(text);
    label->repaint();
}
} // namespace

TAbortDialog::TAbortDialog(TWindow *owner, const std::string &title, const std::string &device,
                           const std::string &port)
    : impl(std::make_unique<Impl>(reinterpret_cast<QWidget *>(ModalParent(owner))))
{
    QDialog &dialog = impl->dialog;
    dialog.setWindowTitle(QStringLiteral("Druck"));
    dialog.setWindowModality(Qt::ApplicationModal);
    auto *layout = new QVBoxLayout(&dialog);
    impl->page = AddLine(layout, QString::fromUtf8("Druck verläuft"));
    impl->last = AddLine(layout, QString());
    AddLine(layout, QStringLiteral("'%1' auf").arg(Shown(title)));
    AddLine(layout, QString::fromStdString(device + ToUtf8(ResText(TEXT_ON)) + port));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, &dialog);
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Abbrechen"));
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    QObject::connect(&dialog, &QDialog::rejected, &dialog, [this] { impl->ended = true; });
    dialog.show();
    AbortFace face(dialog);
    RunAbortScripts(face, 0);
    Pump();
}

TAbortDialog::~TAbortDialog() = default;

bool TAbortDialog::ShowPage(int page, int last)
{
    ShowNow(impl->page, QString::fromUtf8("Jetzt drucke ich Seite %1").arg(page));
    ShowNow(impl->last, QStringLiteral("bis %1").arg(last));
    AbortFace face(impl->dialog);
    RunAbortScripts(face, page);
    Pump();
    return !impl->ended;
}
