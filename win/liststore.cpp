#include "win/listparts.h"

#include "lib/charstr.h"
#include "lib/platform.h"
#include "win/application.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <algorithm>
#include <utility>
#include <vector>

namespace
{
constexpr int TYPING_PAUSE = 1000; // ms, behind which a letter begins a new search
constexpr size_t ROOM_MIN = 16;    // entries

struct TEntry {
    std::string text; // Windows-1252
    int data = 0;
};

QString ToQt(const std::string &text)
{
    QString converted;
    converted.reserve(static_cast<qsizetype>(text.size()));
    for (char c : text)
        converted += QChar(static_cast<char16_t>(ChrCode(c)));
    return converted;
}

bool BeginsWith(const std::string &text, const std::string &start)
{
    auto same = [](char a, char b) { return ChrUpper(a) == ChrUpper(b); };
    return text.size() >= start.size() && std::equal(start.begin(), start.end(), text.begin(), same);
}

bool IsOneLetter(const std::string &typed)
{
    return std::all_of(typed.begin(), typed.end(),
                       [&typed](char c) { return ChrUpper(c) == ChrUpper(typed[0]); });
}
} // namespace

class TListStore::TListModel : public QAbstractListModel
{
public:
    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(entries.size());
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        return ToQt(At(index.row()).text);
    }

    TEntry &At(int index) { return entries[static_cast<size_t>(index)]; }
    const TEntry &At(int index) const { return entries[static_cast<size_t>(index)]; }

    void Insert(int index, const char *text)
    {
        TEntry entry{text};
        if (entries.size() == entries.capacity())
            entries.reserve(std::max(ROOM_MIN, 2 * entries.size()));
        beginInsertRows({}, index, index);
        entries.insert(entries.begin() + index, std::move(entry));
        endInsertRows();
    }

    void Delete(int index)
    {
        beginRemoveRows({}, index, index);
        entries.erase(entries.begin() + index);
        endRemoveRows();
    }

    void Clear()
    {
        beginResetModel();
        entries.clear();
        endResetModel();
    }

    void Release(int row) { changePersistentIndex(index(row), {}); }

    std::vector<TEntry> entries;
};

TListStore::TListStore(bool aSorted) : model(std::make_unique<TListModel>()), sorted(aSorted) {}

TListStore::~TListStore() = default;

TNativeModel *TListStore::Model() const
{
    return reinterpret_cast<TNativeModel *>(static_cast<QAbstractItemModel *>(model.get()));
}

int TListStore::Count() const
{
    return model->rowCount();
}

std::string TListStore::Text(int index) const
{
    return Has(index) ? model->At(index).text : std::string();
}

int TListStore::Data(int index) const
{
    return Has(index) ? model->At(index).data : 0;
}

void TListStore::SetData(int index, int data)
{
    if (Has(index))
        model->At(index).data = data;
}

int TListStore::Place(const char *text) const
{
    if (!sorted)
        return Count();
    auto precedes = [](const char *s, const TEntry &entry) {
        return Collate(s, entry.text.c_str(), false) < 0;
    };
    auto place = std::upper_bound(model->entries.begin(), model->entries.end(), text, precedes);
    return static_cast<int>(place - model->entries.begin());
}

void TListStore::Insert(int index, const char *text)
{
    model->Insert(std::clamp(index, 0, Count()), text);
}

void TListStore::Delete(int index)
{
    if (Has(index))
        model->Delete(index);
}

void TListStore::Clear()
{
    model->Clear();
}

void TListStore::Release(int index)
{
    if (Has(index))
        model->Release(index);
}

int TListStore::FindTyped(const std::string &typed, int present) const
{
    auto search = [this, count = Count()](const std::string &start, int from) {
        for (int i = 0; i < count; ++i) {
            int index = (from + i) % count;
            if (BeginsWith(model->At(index).text, start))
                return index;
        }
        return -1;
    };
    if (typed.empty())
        return -1;
    bool one = IsOneLetter(typed);
    int found = one && typed.size() == 1 ? -1 : search(typed, std::max(present, 0));
    return found < 0 && one ? search(typed.substr(0, 1), present + 1) : found;
}

namespace
{
const QKeyEvent &Event(const TNativeKey *key)
{
    return *reinterpret_cast<const QKeyEvent *>(key);
}

/// Keys of commands lead nowhere and type nothing.
bool IsPlain(const QKeyEvent &event)
{
    return (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
}
} // namespace

int StepByKey(const TNativeKey *key, int present, int count, int page)
{
    if (!IsPlain(Event(key)) || count < 1)
        return -1;
    int to = 0;
    switch (Event(key).key()) {
    case Qt::Key_Up:
    case Qt::Key_Left:
        to = present - 1;
        break;
    case Qt::Key_Down:
    case Qt::Key_Right:
        to = present + 1;
        break;
    case Qt::Key_PageUp:
        to = present - page;
        break;
    case Qt::Key_PageDown:
        to = present + page;
        break;
    case Qt::Key_Home:
        break;
    case Qt::Key_End:
        to = count - 1;
        break;
    default:
        return -1;
    }
    return std::clamp(to, 0, count - 1);
}

char LetterOf(const TNativeKey *key)
{
    QString text = Event(key).text();
    char letter = EOS;
    bool typed = IsPlain(Event(key)) && text.size() == 1 && text[0].isPrint();
    return typed && ChrOfCode(&letter, text[0].unicode()) ? letter : EOS;
}

const std::string &TTypedText::Add(char c)
{
    int now = WinTickCount();
    if (now < last || now - last > TYPING_PAUSE)
        text.clear();
    last = now;
    text += c;
    return text;
}
