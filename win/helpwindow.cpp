#include "win/helpwindow.h"

#include "win/application.h"
#include "win/guard.h"
#include "win/resources.h"
#include "win/utf8.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSplitter>
#include <QStyle>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
constexpr double TEXT_POINTS = 11;                      // at 100 %
enum { ZOOM_MIN = 50, ZOOM_MAX = 300, ZOOM_STEP = 10 }; // percent
constexpr double NOTCH = 120;                           // the toolkit's units of one wheel notch
enum { ROW_GAP = 6 };                                   // px of the toolkit between two lines of the contents
enum { CONTEXT_ROLE = Qt::UserRole };

QString Shown(const std::string &utf8)
{
    return QString::fromStdString(utf8);
}

/// The text of a page. What its documents ask for comes from the program's pictures or not at all.
class TPageView : public QTextBrowser
{
public:
    explicit TPageView(QWidget *parent) : QTextBrowser(parent)
    {
        setOpenLinks(false);
        setFrameShape(QFrame::NoFrame);
        QPalette paper =
            palette(); // black on white whatever the desktop's colours: the pictures are made for it
        paper.setColor(QPalette::Base, Qt::white);
        paper.setColor(QPalette::Text, Qt::black);
        setPalette(paper);
        document()->setDocumentMargin(16);
        document()->setDefaultStyleSheet("h1, h2, h3 { color: #00007f; } a { color: #0a50c8; }"
                                         "th { background-color: #e4e8f2; } td, th { padding: 3px; }");
    }

    QVariant loadResource(int type, const QUrl &name) override
    {
        if (type != QTextDocument::ImageResource)
            return QString();
        double ratio = devicePixelRatioF();
        TDrawnPicture drawn = DrawPicture(name.toString().toInt(), ratio);
        if (drawn.pixels.empty()) { // without any image the toolkit looks for a file of that name
            QImage nothing(1, 1, QImage::Format_ARGB32_Premultiplied);
            nothing.fill(0);
            return nothing;
        }
        QImage image(reinterpret_cast<const uchar *>(drawn.pixels.data()), drawn.size.cx, drawn.size.cy,
                     QImage::Format_ARGB32_Premultiplied);
        QImage copy = image.copy();
        copy.setDevicePixelRatio(ratio);
        return copy;
    }

protected:
    void contextMenuEvent(QContextMenuEvent *event) override
    {
        QMenu menu(this);
        QAction *copying = menu.addAction(QString::fromUtf8("&Kopieren"), [this] { copy(); });
        copying->setEnabled(textCursor().hasSelection());
        menu.addAction(QString::fromUtf8("&Alles auswählen"), [this] { selectAll(); });
        menu.exec(event->globalPos());
    }
};
} // namespace

/// The widgets, all within one.
struct THelpWindow::View : public QObject {
    explicit View(THelpWindow &anOwner);
    ~View() override { qApp->removeEventFilter(this); }
    bool eventFilter(QObject *target, QEvent *event) override;

    void AddTools(QVBoxLayout &column);
    QToolButton *AddButton(QHBoxLayout &row, QStyle::StandardPixmap picture, const char *tip);
    void AddPages(QVBoxLayout &column);
    bool Key(const QKeyEvent &event);
    void Find(bool backwards);
    void SetTextSize();

    THelpWindow &owner;
    QWidget *widget; // owned by the window that adopted it; the others by it
    QToolButton *back = NULL, *forward = NULL;
    QLineEdit *search = NULL;
    QLabel *note = NULL;
    QTreeWidget *contents = NULL;
    TPageView *page = NULL;
    bool choosing = false; // the contents follow the page
    double wheelRest = 0;  // notches short of a step
};

THelpWindow::View::View(THelpWindow &anOwner)
    : owner(anOwner),
      widget(new QWidget(anOwner.Parent() ? reinterpret_cast<QWidget *>(anOwner.Parent()->Native()) : NULL))
{
    auto *column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    AddTools(*column);
    AddPages(*column);
    qApp->installEventFilter(this);
}

QToolButton *THelpWindow::View::AddButton(QHBoxLayout &row, QStyle::StandardPixmap picture, const char *tip)
{
    auto *button = new QToolButton(widget);
    button->setIcon(QApplication::style()->standardIcon(picture));
    button->setToolTip(QString::fromUtf8(tip));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    row.addWidget(button);
    return button;
}

void THelpWindow::View::AddTools(QVBoxLayout &column)
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(6, 4, 6, 4);
    back = AddButton(*row, QStyle::SP_ArrowBack, "Zurück (Alt+Links)");
    forward = AddButton(*row, QStyle::SP_ArrowForward, "Vor (Alt+Rechts)");
    row->addSpacing(12);
    search = new QLineEdit(widget);
    auto *label = new QLabel(QString::fromUtf8("&Suchen:"), widget);
    label->setBuddy(search);
    row->addWidget(label);
    row->addWidget(search, 2);
    search->setMaximumWidth(280);
    search->setClearButtonEnabled(true);
    QToolButton *up = AddButton(*row, QStyle::SP_ArrowUp, "Vorige Fundstelle (Umschalt+F3)");
    QToolButton *down = AddButton(*row, QStyle::SP_ArrowDown, "Nächste Fundstelle (F3)");
    note = new QLabel(widget);
    note->setTextFormat(Qt::PlainText);
    row->addWidget(note, 3);
    column.addLayout(row);
    connect(back, &QToolButton::clicked, this, [this] { GuardedCall([this] { owner.Back(); }); });
    connect(forward, &QToolButton::clicked, this, [this] { GuardedCall([this] { owner.Forward(); }); });
    connect(up, &QToolButton::clicked, this, [this] { Find(true); });
    connect(down, &QToolButton::clicked, this, [this] { Find(false); });
    connect(search, &QLineEdit::returnPressed, this, [this] { Find(false); });
}

void THelpWindow::View::AddPages(QVBoxLayout &column)
{
    auto *splitter = new QSplitter(widget);
    contents = new QTreeWidget(splitter);
    contents->setHeaderHidden(true);
    contents->setFrameShape(QFrame::NoFrame);
    page = new TPageView(splitter);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({260, 600});
    splitter->setChildrenCollapsible(false);
    column.addWidget(splitter, 1);
    SetTextSize();
    connect(contents, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *item) {
        if (item && !choosing)
            GuardedCall([this, item] { owner.ShowContext(item->data(0, CONTEXT_ROLE).toInt()); });
    });
    connect(page, &QTextBrowser::anchorClicked, this, [this](const QUrl &link) {
        GuardedCall([this, &link] { owner.FollowLink(link.toString().toUtf8().constData()); });
    });
}

/// Catches what the window does with keys and wheel before the widget below sees it.
bool THelpWindow::View::eventFilter(QObject *target, QEvent *event)
{
    bool isKey = event->type() == QEvent::KeyPress, isWheel = event->type() == QEvent::Wheel;
    if ((!isKey && !isWheel) || !target->isWidgetType() || QApplication::activePopupWidget() ||
        QApplication::activeModalWidget() || static_cast<QWidget *>(target)->window() != widget->window())
        return false;
    if (isKey)
        return Key(*static_cast<QKeyEvent *>(event));
    auto *wheel = static_cast<QWheelEvent *>(event);
    if (!(wheel->modifiers() & Qt::ControlModifier))
        return false;
    wheelRest += wheel->angleDelta().y() / NOTCH;
    double notches = std::trunc(wheelRest);
    wheelRest -= notches;
    owner.SetZoom(owner.Zoom() + ZOOM_STEP * static_cast<int>(notches));
    return true;
}

bool THelpWindow::View::Key(const QKeyEvent &event)
{
    Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    bool hasCtrl = modifiers.testFlag(Qt::ControlModifier), hasAlt = modifiers == Qt::AltModifier;
    int key = event.key();
    if (key == Qt::Key_Escape && modifiers == Qt::NoModifier)
        widget->window()->close();
    else if (hasAlt && key == Qt::Key_Left)
        GuardedCall([this] { owner.Back(); });
    else if (hasAlt && key == Qt::Key_Right)
        GuardedCall([this] { owner.Forward(); });
    else if (key == Qt::Key_F3)
        Find(modifiers == Qt::ShiftModifier);
    else if (hasCtrl && key == Qt::Key_F)
        search->setFocus(Qt::ShortcutFocusReason);
    else if (hasCtrl && (key == Qt::Key_Plus || key == Qt::Key_Minus))
        owner.SetZoom(owner.Zoom() + (key == Qt::Key_Plus ? ZOOM_STEP : -ZOOM_STEP));
    else if (hasCtrl && key == Qt::Key_0)
        owner.SetZoom(100);
    else
        return false;
    return true;
}

void THelpWindow::View::Find(bool backwards)
{
    GuardedCall([this, backwards] {
        owner.FindText(FromUtf8(search->text().toUtf8().constData()).c_str(), backwards);
    });
}

void THelpWindow::View::SetTextSize()
{
    QFont font("Arial");
    font.setPointSizeF(TEXT_POINTS * owner.zoom / 100);
    page->setFont(font);
}

THelpWindow::THelpWindow(TWindow *aParent) : TWindow(aParent) {}

THelpWindow::~THelpWindow() = default;

void THelpWindow::OpenFile(const char *name)
{
    __enter
        file.Read(name); __test;
        history.assign(1, file.Pages().front().context);
        place = 0;
        note.clear();
        ShowContents();
        ShowPage();
    __point
    __treat
}

void THelpWindow::Create()
{
    if (IsCreated())
        return;
    view = std::make_unique<View>(*this);
    AdoptWidget(reinterpret_cast<TNativeWidget *>(view->widget));
    ShowContents();
    ShowPage();
    SetNote(note.c_str());
    view->widget->setFocusProxy(view->page);
}

/// Pages of the second level stand below the page of the first level before them.
void THelpWindow::ShowContents()
{
    if (!view)
        return;
    view->choosing = true;
    view->contents->clear();
    QTreeWidgetItem *chapter = NULL;
    for (const THelpPage &page : file.Pages()) {
        bool isBelow = page.level > 1 && chapter;
        auto *item = isBelow ? new QTreeWidgetItem(chapter) : new QTreeWidgetItem(view->contents);
        item->setText(0, Shown(page.title));
        item->setData(0, CONTEXT_ROLE, page.context);
        item->setSizeHint(0, QSize(0, view->contents->fontMetrics().height() + ROW_GAP));
        if (!isBelow)
            chapter = item;
    }
    view->contents->expandAll();
    view->choosing = false;
}

void THelpWindow::ShowPage()
{
    int index = file.IndexOf(Context());
    if (!view || index < 0)
        return;
    const THelpPage &page = file.Pages()[static_cast<size_t>(index)];
    view->page->setHtml("<h2>" + Shown(page.title).toHtmlEscaped() + "</h2>" + Shown(page.body));
    view->back->setEnabled(place > 0);
    view->forward->setEnabled(place + 1 < history.size());
    view->choosing = true;
    for (QTreeWidgetItemIterator item(view->contents); *item; ++item)
        if ((*item)->data(0, CONTEXT_ROLE).toInt() == page.context)
            view->contents->setCurrentItem(*item);
    view->choosing = false;
}

bool THelpWindow::ShowContext(int context)
{
    if (file.Pages().empty())
        return false;
    if (context == 0)
        context = file.Pages().front().context;
    if (file.IndexOf(context) < 0) {
        SetNote(("Die Hilfe hat keine Seite " + std::to_string(context) + ".").c_str());
        return false;
    }
    SetNote("");
    if (context == Context())
        return true;
    history.resize(place + 1);
    history.push_back(context);
    ++place;
    ShowPage();
    return true;
}

int THelpWindow::Context() const
{
    return history.empty() ? 0 : history[place];
}

void THelpWindow::Go(size_t newPlace)
{
    place = newPlace;
    SetNote("");
    ShowPage();
}

bool THelpWindow::Back()
{
    bool may = place > 0;
    if (may)
        Go(place - 1);
    return may;
}

bool THelpWindow::Forward()
{
    bool may = place + 1 < history.size();
    if (may)
        Go(place + 1);
    return may;
}

void THelpWindow::FollowLink(const char *href)
{
    bool isNumber = false;
    int context = QString::fromUtf8(href).mid(1).toInt(&isNumber);
    if (href[0] == '#' && isNumber && context > 0)
        ShowContext(context);
}

bool THelpWindow::FindText(const char *text, bool backwards)
{
    SetNote("");
    if (!view || text[0] == '\0')
        return false;
    QString wanted = Shown(ToUtf8(text));
    QTextDocument::FindFlags flags;
    flags.setFlag(QTextDocument::FindBackward, backwards);
    bool isFound = view->page->find(wanted, flags);
    if (!isFound) {
        QTextCursor start = view->page->textCursor();
        QTextCursor edge = start;
        edge.movePosition(backwards ? QTextCursor::End : QTextCursor::Start);
        view->page->setTextCursor(edge);
        isFound = view->page->find(wanted, flags);
        if (!isFound)
            view->page->setTextCursor(start);
    }
    if (!isFound)
        SetNote("Auf dieser Seite nicht gefunden.");
    return isFound;
}

void THelpWindow::SetZoom(int percent)
{
    zoom = std::clamp<int>(percent, ZOOM_MIN, ZOOM_MAX);
    if (view)
        view->SetTextSize();
}

void THelpWindow::SetNote(const char *utf8)
{
    note = utf8;
    if (view)
        view->note->setText(Shown(note));
}

std::string THelpWindow::PageText() const
{
    return view ? FromUtf8(view->page->toPlainText().toUtf8().constData()) : "";
}

std::string THelpWindow::SelectedText() const
{
    return view ? FromUtf8(view->page->textCursor().selectedText().toUtf8().constData()) : "";
}

std::string THelpWindow::Note() const
{
    return FromUtf8(note.c_str());
}
