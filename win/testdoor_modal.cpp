// The modal half of the test door: the queue of scripts and who gets the next one. A script runs from a timer
// of no delay inside the box's own loop. It may open further boxes, which take the scripts behind it.
#include "win/modal.h"
#include "win/testdoor.h"

#include "win/utf8.h"

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <deque>
#include <map>
#include <utility>

using SCRIPT = std::function<void(testdoor::ModalBox &)>;

/// A box that is up. The timers hold it weakly: one that comes too late finds nothing.
struct TModalScope::Watch {
    TModalFace &face;
};

namespace
{
bool asked = false; // some test has used the door
std::deque<SCRIPT> scripts;
std::map<int, std::deque<SCRIPT>> abortScripts; // by page
int unexpected = 0;

/// On the screen-less platform nobody could ever answer.
bool IsDoorOpen()
{
    return asked || (qGuiApp && QGuiApplication::platformName() == QLatin1String("offscreen"));
}

SCRIPT TakeFirst(std::deque<SCRIPT> &queue)
{
    SCRIPT script = std::move(queue.front());
    queue.pop_front();
    return script;
}

void RunScript(const SCRIPT &script, TModalFace &face)
{
    testdoor::ModalBox box(face);
    script(box);
}

/// The next script runs in the box's loop, if the box is still up by then.
template <class WATCH>
void PostStep(const std::weak_ptr<WATCH> &watch)
{
    QTimer::singleShot(0, qGuiApp, [watch] {
        std::shared_ptr<WATCH> there = watch.lock();
        if (!there || !there->face.IsUp())
            return;
        if (scripts.empty()) {
            ++unexpected;
            there->face.Cancel();
            return;
        }
        RunScript(TakeFirst(scripts), there->face);
        PostStep(watch);
    });
}

QWidget *WidgetOf(const TModalFace &face)
{
    return reinterpret_cast<QWidget *>(face.Widget());
}

/// To whatever in the box has the focus.
void PressKey(const TModalFace &face, Qt::Key key, const QString &text)
{
    QWidget *widget = WidgetOf(face);
    if (!widget)
        return;
    if (QWidget *focus = widget->focusWidget())
        widget = focus;
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QPointer<QWidget> there(widget); // it may go with the box
    QApplication::sendEvent(widget, &press);
    if (there)
        QApplication::sendEvent(there, &release);
}
} // namespace

TModalScope::TModalScope(TModalFace &face)
{
    if (!IsDoorOpen())
        return;
    watch = std::make_shared<Watch>(Watch{face});
    PostStep(std::weak_ptr<Watch>(watch));
}

TModalScope::~TModalScope() = default;

void RunAbortScripts(TModalFace &face, int page)
{
    auto found = abortScripts.find(page);
    if (found == abortScripts.end())
        return;
    std::deque<SCRIPT> due = std::move(found->second);
    abortScripts.erase(found);
    for (const SCRIPT &script : due)
        RunScript(script, face);
}

namespace testdoor
{

void Enable()
{
    asked = true;
}

void Script(SCRIPT script)
{
    Enable();
    scripts.push_back(std::move(script));
}

void ScriptAbort(int page, SCRIPT script)
{
    Enable();
    abortScripts[page].push_back(std::move(script));
}

int UnexpectedBoxes()
{
    Enable();
    return std::exchange(unexpected, 0);
}

int PendingScripts()
{
    Enable();
    size_t pending = scripts.size();
    for (const auto &[page, queue] : abortScripts)
        pending += queue.size();
    scripts.clear();
    abortScripts.clear();
    return static_cast<int>(pending);
}

std::string ModalBox::Kind() const
{
    return face.Kind();
}

std::string ModalBox::Caption() const
{
    return face.Caption();
}

std::string ModalBox::Text() const
{
    return face.Text();
}

void ModalBox::Answer(int id)
{
    face.Answer(id);
}

void ModalBox::FileName(const std::string &nativePath)
{
    face.SetFileName(nativePath);
}

void ModalBox::Pages(int from, int to)
{
    face.SetPages(from, to);
}

std::string ModalBox::FileName() const
{
    return face.FileName();
}

int ModalBox::Default() const
{
    return face.Default();
}

std::string ModalBox::Buttons() const
{
    QStringList texts;
    QWidget *widget = WidgetOf(face);
    for (const QPushButton *button : widget ? widget->findChildren<QPushButton *>() : QList<QPushButton *>())
        if (button->isVisible())
            texts += button->text().remove(QLatin1Char('&'));
    texts.sort();
    return FromUtf8(texts.join(QLatin1Char(' ')).toStdString().c_str());
}

void ModalBox::Press(const char *key)
{
    PressKey(face, QKeySequence(QString::fromUtf8(key))[0].key(), QString());
}

void ModalBox::TypeKeys(const std::string &utf8)
{
    for (QChar c : QString::fromStdString(utf8))
        PressKey(face, Qt::Key_unknown, c);
}

} // namespace testdoor
