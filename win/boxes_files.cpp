// The file dialogs: the toolkit's own, not the desktop's, so that they look and can be scripted alike
// everywhere. What is typed is looked at before the dialog lets go: a name that cannot be used is refused with
// its reason, and the user goes on in the dialog.
#include "lib/disk.h"
#include "win/boxes.h"
#include "win/modal.h"
#include "win/utf8.h"
#include "win/window.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>

#include <fcntl.h>
#include <unistd.h>

namespace
{
enum { NAME_MAX_CHARS = 255 };

QString folderInUse; // where the last dialog of this run ended; empty at first

QString Shown(const std::string &text)
{
    return QString::fromStdString(ToUtf8(text.c_str()));
}

/// By the rights that count when the file is opened.
bool IsWritable(const QString &path)
{
    return faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) == 0;
}

/// "_" stands for the name in the system's character set, with '?' for what the set lacks.
QString Sentence(const char *pattern, const QString &path)
{
    return QString::fromUtf8(pattern).replace(QLatin1Char('_'), path);
}

/// Why a name cannot be used at all; an empty text where it can. `name` gets its form in the system.
QString ReasonAgainstName(const QString &path, std::string &name)
{
    char held[NATIVE_MAX];
    if (!NameFromNative(held, path.toStdString().c_str(), sizeof held))
        return Sentence("Der Name \"_\" enthält Zeichen, mit denen das Programm nicht arbeiten kann.", path);
    name = held;
    if (name.size() > NAME_MAX_CHARS)
        return Sentence("Der Name \"_\" ist länger als 255 Zeichen.", path);
    return QString();
}

QString ReasonAgainstOpening(const QFileInfo &file)
{
    QString path = file.absoluteFilePath();
    if (!file.exists())
        return Sentence("Die Datei \"_\" ist nicht vorhanden.", path);
    if (!IsWritable(path))
        return Sentence("Die Datei \"_\" ist schreibgeschützt.", path);
    return QString();
}

QString ReasonAgainstSaving(const QFileInfo &file)
{
    if (!file.dir().exists())
        return Sentence("Der Ordner \"_\" ist nicht vorhanden.", file.absolutePath());
    if (file.exists() && !IsWritable(file.absoluteFilePath()))
        return Sentence("Die Datei \"_\" ist schreibgeschützt.", file.absoluteFilePath());
    return QString();
}

class FileDialog : public QFileDialog
{
public:
    FileDialog(QWidget *parent, TWindow *aOwner, bool aSaves)
        : QFileDialog(parent), owner(aOwner), saves(aSaves)
    {
        setOption(QFileDialog::DontUseNativeDialog);
        setOption(QFileDialog::DontConfirmOverwrite); // asked here
        setAcceptMode(saves ? AcceptSave : AcceptOpen);
        setFileMode(saves ? AnyFile : ExistingFile);
        setWindowTitle(saves ? QStringLiteral("Speichern unter") : QString::fromUtf8("Öffnen"));
        setLabelText(LookIn, QStringLiteral("Suchen in:"));
        setLabelText(FileName, QStringLiteral("Datei&name:"));
        setLabelText(FileType, QStringLiteral("Dateityp:"));
        setLabelText(Accept, saves ? QStringLiteral("&Speichern") : QString::fromUtf8("Ö&ffnen"));
        setLabelText(Reject, QStringLiteral("Abbrechen"));
        resize(760, 480); // the columns can be read
    }

    void accept() override
    {
        QStringList files = selectedFiles();
        if (!files.isEmpty() && !QFileInfo(files.first()).isDir() && !IsUsable(files.first()))
            return;
        QFileDialog::accept(); // goes into a folder
    }

    std::string name; // the chosen file's, in the system's form

private:
    bool IsUsable(const QString &path)
    {
        QFileInfo file(path);
        QString reason = ReasonAgainstName(file.absoluteFilePath(), name);
        if (reason.isEmpty())
            reason = saves ? ReasonAgainstSaving(file) : ReasonAgainstOpening(file);
        if (!reason.isEmpty()) {
            Ask(reason, WIN_BOX_OK);
            return false;
        }
        if (!saves || !file.exists())
            return true;
        return Ask(Sentence("Die Datei \"_\" ist bereits vorhanden.\nSoll sie ersetzt werden?", path),
                   WIN_BOX_YESNO) == WIN_ID_YES;
    }

    TBoxAnswer Ask(const QString &text, TBoxButtons buttons)
    {
        return MessageBox(owner, FromUtf8(text.toStdString().c_str()).c_str(),
                          FromUtf8(windowTitle().toStdString().c_str()).c_str(), buttons, WIN_ICON_EXCLAMATION);
    }

    TWindow *owner; // view
    bool saves;
};

class FileFace : public TModalFace
{
public:
    FileFace(FileDialog &aDialog, const char *aKind) : dialog(aDialog), kind(aKind) {}

    const char *Kind() const override { return kind; }
    TNativeWidget *Widget() const override { return reinterpret_cast<TNativeWidget *>(&dialog); }
    bool IsUp() const override { return dialog.isVisible(); }
    std::string Caption() const override { return FromUtf8(dialog.windowTitle().toStdString().c_str()); }
    std::string Text() const override
    {
        return FromUtf8(dialog.nameFilters().join('\n').toStdString().c_str());
    }
    /// As typing does it: what is marked in the list counts no longer.
    void SetFileName(const std::string &path) override
    {
        for (auto *list : dialog.findChildren<QAbstractItemView *>())
            list->clearSelection();
        Field()->setText(QString::fromStdString(path));
    }
    std::string FileName() const override { return Field()->text().toStdString(); }
    void Cancel() override { dialog.reject(); }
    void Answer(int id) override { id == WIN_ID_OK ? dialog.accept() : dialog.reject(); }

private:
    QLineEdit *Field() const { return dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit")); }

    FileDialog &dialog;
    const char *kind;
};

/// The folder that is shown and the name that is proposed. A folder that is gone gives way to the last one.
void Propose(FileDialog &dialog, const std::string &name)
{
    char native[NATIVE_MAX];
    dialog.setDirectory(folderInUse.isEmpty() ? QDir::currentPath() : folderInUse);
    if (name.empty() || !NameToNative(native, name.c_str(), sizeof native))
        return;
    QFileInfo file(QFile::decodeName(native));
    if (file.isAbsolute() && file.dir().exists())
        dialog.setDirectory(file.absolutePath());
    dialog.selectFile(file.fileName());
}

bool AskForFile(TWindow *owner, TFileDialogData &data, bool saves)
{
    FileDialog dialog(reinterpret_cast<QWidget *>(ModalParent(owner)), owner, saves);
    dialog.setNameFilters({Shown(data.filter + " (*." + data.extension + ")")});
    dialog.setDefaultSuffix(Shown(data.extension));
    Propose(dialog, data.name);
    FileFace face(dialog, saves ? "save" : "open");
    TModalScope scope(face);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    folderInUse = dialog.directory().absolutePath();
    data.name = dialog.name;
    return true;
}

/// What goes wrong in the dialog itself is not the user's cancel.
bool AskGuarded(TWindow *owner, TFileDialogData &data, bool saves)
{
    data.failed = false;
    try {
        return AskForFile(owner, data, saves);
    } catch (...) {
        data.failed = true;
        return false;
    }
}
} // namespace

bool FileOpenDialog(TWindow *owner, TFileDialogData &data)
{
    return AskGuarded(owner, data, false);
}

bool FileSaveDialog(TWindow *owner, TFileDialogData &data)
{
    return AskGuarded(owner, data, true);
}
