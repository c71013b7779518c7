// Typed files on the disk. Items are a few bytes each, so what counts is that the common case, an item that
// lies whole in the buffer, costs one comparison and one copy. One buffer serves either reading or writing,
// over one descriptor; 64 KB keep system calls rare, and most files fit whole.
#include "lib/cde.h"
#include "lib/charstr.h"
#include "lib/xassert.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "lib/xon.h"

static const char closedName[] = "???"; // what CdeFILE::name shows while no file is open

/// Copies an item or a part of one. The sizes of tags and numbers are spared the call.
static inline void CopyFew(char *to, const char *from, int size)
{
    switch (size) {
    case 1:
        *to = *from;
        break;
    case 4:
        memcpy(to, from, 4);
        break;
    case 5:
        memcpy(to, from, 5);
        break;
    case 8:
        memcpy(to, from, 8);
        break;
    case 9:
        memcpy(to, from, 9);
        break;
    default:
        memcpy(to, from, static_cast<size_t>(size));
    }
}

/// A descriptor with a buffer. Knows nothing of the failure protocol: it reports, and CdeFILE raises.
class CdeSTREAM
{
public:
    std::string path;   // native; of the open file
    std::string target; // native; what the file is to replace when it is closed, "" for nothing

    enum RESULT {
        DONE,
        SHORT, // the bytes could not be read
        LOST,  // bytes handed over for writing did not get to the disk
    };

    CdeSTREAM() : cur(buf), filled(buf), room(buf) {}
    ~CdeSTREAM() { Close(); }
    CdeSTREAM(const CdeSTREAM &) = delete;
    CdeSTREAM &operator=(const CdeSTREAM &) = delete;

    /// False with errno. What has no positions, as a pipe, is no file for us.
    bool Open(int flags, int mode);
    /// Permissions and owner of another open file. False if that is no regular file.
    bool TakeLikeness(const CdeSTREAM &model) { return disk->likeness(fd, model.fd) == 0; }
    /// Hands over what is still in the buffer and closes. The descriptor is gone in any case.
    RESULT Close();
    RESULT Sync();

    RESULT Peek(signed char *next);
    RESULT Read(char *to, int size);
    RESULT Write(const char *from, int size);
    /// The common case: all of it lies in the buffer, or finds room there. False if it does not; then nothing
    /// has happened, for a negative size too.
    bool ReadBuffered(void *blk, int size)
    {
        if (size < 0 || size > filled - cur)
            return false;
        CopyFew(static_cast<char *>(blk), cur, size);
        cur += size;
        return true;
    }
    bool PeekBuffered(signed char *next)
    {
        if (cur >= filled)
            return false;
        *next = static_cast<signed char>(*cur);
        return true;
    }
    bool WriteBuffered(const void *blk, int size)
    {
        if (size < 0 || size > room - cur)
            return false;
        CopyFew(cur, static_cast<const char *>(blk), size);
        cur += size;
        return true;
    }
    RESULT Seek(off_t pos);
    /// Steps over bytes, which may lie behind the end of the file.
    RESULT Pass(off_t count)
    {
        if (count > Buffered())
            return Seek(Tell() + count);
        cur += count;
        return DONE;
    }
    off_t Tell() const { return base + (cur - buf); }
    RESULT Size(off_t *size);

    /// Brings at least `count` bytes into one piece, fewer only where the file ends; the count that is there.
    RESULT Ahead(int count, int *there);
    const unsigned char *Bytes() const { return reinterpret_cast<const unsigned char *>(cur); }
    /// Bytes that can be had without asking the disk.
    int Buffered() const { return filled > cur ? static_cast<int>(filled - cur) : 0; }

private:
    enum { SIZE = 65536 };

    int fd = -1;
    bool append = false; // each write goes to the end
    bool lost = false;   // bytes did not get to the disk; stays so until the end
    off_t base = 0;      // file position of buf[0]
    off_t at = 0;        // file position of the descriptor, -1: not known
    char *cur;           // the present position
    char *filled;        // end of the bytes read; buf while writing
    char *room;          // end of what may be written; buf while reading. Both buf: neither
    char buf[SIZE];

    bool IsWriting() const { return room > buf; }
    void Empty(off_t pos);
    bool Move(off_t pos);
    RESULT Fill();
    RESULT Flush();
    RESULT BeginWriting();
    RESULT Lose();
};

bool CdeSTREAM::Open(int flags, int mode)
{
    do
        fd = disk->open(path.c_str(), flags, mode);
    while (fd < 0 && errno == EINTR);
    if (fd < 0)
        return false;
    append = flags & O_APPEND;
    if (disk->seek(fd, 0, SEEK_SET) == 0)
        return true;
    disk->close(fd);
    fd = -1;
    if (flags & O_EXCL) // made just now
        disk->unlink(path.c_str());
    return false;
}

CdeSTREAM::RESULT CdeSTREAM::Close()
{
    if (fd < 0)
        return DONE;
    RESULT result = Flush();
    if (disk->close(fd) != 0)
        result = LOST;
    fd = -1;
    return result;
}

CdeSTREAM::RESULT CdeSTREAM::Sync()
{
    if (Flush() != DONE)
        return LOST;
    int result;
    do
        result = disk->sync(fd);
    while (result != 0 && errno == EINTR);
    return result == 0 ? DONE : Lose();
}

/// From now on nothing that this stream wrote can be trusted, and Close will say so too.
CdeSTREAM::RESULT CdeSTREAM::Lose()
{
    lost = true;
    Empty(Tell());
    return LOST;
}

void CdeSTREAM::Empty(off_t pos)
{
    base = pos;
    cur = filled = room = buf;
}

bool CdeSTREAM::Move(off_t pos)
{
    if (at != pos)
        at = disk->seek(fd, pos, SEEK_SET) == pos ? pos : -1;
    return at == pos;
}

/// Reads on behind the bytes that are still to be taken; none are added at the end of the file.
CdeSTREAM::RESULT CdeSTREAM::Fill()
{
    if (lost || Flush() != DONE)
        return LOST;
    int rest = Buffered();
    memmove(buf, cur, static_cast<size_t>(rest));
    Empty(Tell());
    filled = buf + rest;
    off_t end = base + rest;
    // One byte more than there may be, to see that there is more.
    off_t wanted = std::min<off_t>(SIZE - rest, INT_MAX + off_t{1} - end);
    if (!Move(end))
        return SHORT;
    ssize_t got;
    do
        got = disk->read(fd, filled, static_cast<size_t>(wanted));
    while (got < 0 && errno == EINTR);
    at = got < 0 ? -1 : end + got;
    if (got < 0 || at > INT_MAX)
        return SHORT;
    filled += got;
    return DONE;
}

/// Hands the written bytes to the disk; afterwards the stream is neither reading nor writing.
CdeSTREAM::RESULT CdeSTREAM::Flush()
{
    if (lost)
        return LOST;
    if (!IsWriting())
        return DONE;
    const char *from = buf;
    if (cur > buf && !append && !Move(base))
        return Lose();
    while (from < cur) {
        ssize_t put = disk->write(fd, from, static_cast<size_t>(cur - from));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return Lose();
        from += put;
    }
    Empty(Tell());
    at = append ? -1 : base;
    return DONE;
}

CdeSTREAM::RESULT CdeSTREAM::BeginWriting()
{
    off_t start = Tell();
    if (append && Size(&start) != DONE)
        return Lose();
    if (start >= INT_MAX) // positions are int
        return Lose();
    Empty(start);
    room = buf + std::min<off_t>(SIZE, INT_MAX - base);
    return DONE;
}

CdeSTREAM::RESULT CdeSTREAM::Write(const char *from, int size)
{
    while (size > 0) {
        if (!IsWriting() || cur == room)
            if (Flush() != DONE || BeginWriting() != DONE)
                return LOST;
        int piece = room - cur < size ? static_cast<int>(room - cur) : size;
        memcpy(cur, from, static_cast<size_t>(piece));
        cur += piece;
        from += piece;
        size -= piece;
    }
    return DONE;
}

CdeSTREAM::RESULT CdeSTREAM::Read(char *to, int size)
{
    for (;;) {
        int piece = Buffered() < size ? Buffered() : size;
        memcpy(to, cur, static_cast<size_t>(piece));
        cur += piece;
        to += piece;
        size -= piece;
        if (size == 0)
            return DONE;
        RESULT result = Fill();
        if (result != DONE)
            return result;
        if (Buffered() == 0)
            return SHORT;
    }
}

CdeSTREAM::RESULT CdeSTREAM::Peek(signed char *next)
{
    RESULT result = Buffered() > 0 ? DONE : Fill();
    PeekBuffered(next);
    return result;
}

CdeSTREAM::RESULT CdeSTREAM::Seek(off_t pos)
{
    if (lost || Flush() != DONE)
        return LOST;
    if (pos >= base && pos <= base + (filled - buf))
        cur = buf + (pos - base);
    else
        Empty(pos);
    return DONE;
}

CdeSTREAM::RESULT CdeSTREAM::Size(off_t *size)
{
    if (lost || Flush() != DONE)
        return LOST;
    at = disk->seek(fd, 0, SEEK_END);
    *size = at;
    return at < 0 ? SHORT : DONE;
}

CdeSTREAM::RESULT CdeSTREAM::Ahead(int count, int *there)
{
    int before = -1;
    while (Buffered() < count && Buffered() > before) {
        before = Buffered();
        RESULT result = Fill();
        if (result != DONE)
            return result;
    }
    *there = Buffered();
    return DONE;
}

namespace
{
enum { TRIES = 1000 }; // of names that may be taken already

/// Opens a new file, whose name is `stem` and a number. False with errno if there can be none.
bool CreateUnique(CdeSTREAM &stream, const std::string &stem, int mode)
{
    for (int i = 1; i <= TRIES; ++i) {
        stream.path = stem + std::to_string(i);
        if (stream.Open(O_RDWR | O_CREAT | O_EXCL, mode))
            return true;
        if (errno != EEXIST)
            break;
    }
    return false;
}

std::string TemporaryStem()
{
    const char *folder = getenv("TMPDIR");
    return std::string(folder && *folder ? folder : "/tmp") + "/zulerion-" + std::to_string(getpid()) + "-";
}

/// A name beside the target. File systems bound names at 255 bytes, so a long one gives way, between
/// characters.
std::string ReplacementStem(const std::string &target)
{
    const size_t longest = 240;
    size_t start = target.rfind('/') + 1;
    size_t end = target.size();
    if (end - start > longest) {
        end = start + longest;
        while ((target[end] & 0xC0) == 0x80)
            --end;
    }
    return target.substr(0, end) + ".~neu";
}

/// Replaces the path of a link by what it points to, link by link; there need be no file at the end. False for
/// a ring of links.
bool FollowLinks(std::string &path)
{
    char next[NATIVE_MAX];
    for (int links = 0; links < 40; ++links) {
        ssize_t length = disk->readlink(path.c_str(), next, sizeof next);
        if (length < 0)
            return errno == EINVAL || errno == ENOENT; // no link, or nothing at all
        if (length == static_cast<ssize_t>(sizeof next))
            return false;
        std::string to(next, static_cast<size_t>(length));
        if (to[0] != '/')
            to.insert(0, path, 0, path.rfind('/') + 1);
        path = to;
    }
    return false;
}

/// Opens the file that is to replace `stream.target`. What cannot be written, or is no regular file, cannot be
/// replaced either.
bool CreateReplacement(CdeSTREAM &stream)
{
    CdeSTREAM former;
    if (stream.target.empty())
        return false;
    former.path = stream.target;
    bool exists = former.Open(O_WRONLY | O_NONBLOCK | O_NOCTTY, 0);
    if (!exists && errno != ENOENT)
        return false;
    if (!CreateUnique(stream, ReplacementStem(stream.target), exists ? 0600 : 0666))
        return false;
    bool alike = !exists || stream.TakeLikeness(former);
    if (former.Close() == CdeSTREAM::DONE && alike)
        return true;
    stream.Close();
    disk->unlink(stream.path.c_str());
    return false;
}

/// Closes the stream and deletes its file, or puts it in the place of its target. False if anything fails; then
/// the target is as it was.
bool CloseAndSettle(CdeSTREAM &stream, bool temp)
{
    bool replaces = !stream.target.empty();
    bool sound = !replaces || stream.Sync() == CdeSTREAM::DONE;
    sound = stream.Close() == CdeSTREAM::DONE && sound;
    if (temp)
        return disk->unlink(stream.path.c_str()) == 0 && sound;
    if (replaces) {
        sound = sound && disk->rename(stream.path.c_str(), stream.target.c_str()) == 0;
        if (!sound)
            disk->unlink(stream.path.c_str());
    }
    return sound;
}

/// What a mode letter asks for, and how it fails.
struct OPENING {
    char letter;
    int flags;
    XCODE code;
    char *failedName;
};

const OPENING openings[] = {
    {'o', O_RDWR, XFOPEN, xFOpenName},
    {'a', O_RDWR | O_CREAT | O_APPEND, XFCREATE, xFCreateName},
    {'c', O_RDWR | O_CREAT | O_TRUNC, XFCREATE, xFCreateName},
};

const OPENING &OpeningOf(const char *mode)
{
    for (const OPENING &opening : openings)
        if (StrFindChar(mode, opening.letter, 0) != NULL)
            return opening;
    Message("CdeFILE: Should be specified open mode");
    Terminate();
}

/// Raises what a stream reports. Nothing for DONE.
void RaiseOn(CdeSTREAM::RESULT result, const char *name)
{
    __enter
        if (result == CdeSTREAM::SHORT) {
            StrCopy(xFReadName, name, X_NAME);
            __raise(XFREAD);
        }
        if (result == CdeSTREAM::LOST) {
            StrCopy(xFWriteName, name, X_NAME);
            __raise(XFWRITE);
        }
    __point
    __treat
}

/// Bytes of an item of which the first `there` can be seen, at least 1. 0: no item; -1: a negative length. The
/// processor guesses the branches, but would have to wait for a length looked up in a table.
inline off_t ItemLength(const unsigned char *item, off_t there)
{
    switch (item[0]) {
    case CDE_REAL:
        return 9;
    case CDE_SECTION:
    case CDE_INT:
        return 5;
    case CDE_END:
        return 1;
    case CDE_STR:
        return there < 2 ? 2 : 2 + item[1];
    case CDE_HEADER:
        return there < 2 ? 6 : 6 + item[1];
    case CDE_TEXT: {
        int32_t length = 0;
        if (there >= 5)
            memcpy(&length, item + 1, sizeof length);
        return length < 0 ? -1 : 5 + off_t{length};
    }
    }
    return 0;
}

/// What the walk has come to.
struct WALK {
    int depth = 0;     // open sections
    bool over = false; // nothing behind is looked at
    bool sound = true;
};

/// Walks over the items that begin within the `there` bytes and lie in them with their lengths, and tells how
/// far it got: at least one item, of which the last may reach beyond.
off_t WalkBytes(WALK &walk, const unsigned char *bytes, off_t there)
{
    off_t pos = 0;
    do {
        const unsigned char *item = bytes + pos;
        off_t length = ItemLength(item, there - pos);
        if (length <= 0) {
            walk.over = true;
            walk.sound = length == 0 && walk.depth == 0;
            return pos;
        }
        if (*item == CDE_SECTION)
            ++walk.depth;
        else if (*item == CDE_END && walk.depth > 0)
            --walk.depth;
        else if (*item == CDE_HEADER && walk.depth > 0)
            walk.over = true;
        pos += length;
    } while (there - pos >= 5 && !walk.over);
    return pos;
}

/// Goes from item to item up to `size`, the end of the file. A count of open sections is all that is kept, and
/// texts are stepped over by their length, so neither depth nor length costs anything.
CdeSTREAM::RESULT WalkItems(CdeSTREAM &stream, off_t size, WALK &walk)
{
    CdeSTREAM::RESULT result = CdeSTREAM::DONE;
    while (result == CdeSTREAM::DONE && !walk.over && stream.Tell() < size) {
        int there;
        result = stream.Ahead(5, &there);
        if (result != CdeSTREAM::DONE || there == 0)
            return result;
        result = stream.Pass(WalkBytes(walk, stream.Bytes(), there));
    }
    return result;
}
} // namespace

CdeFILE::CdeFILE() : temp(0), name(closedName), f(NULL) {}

CdeFILE::~CdeFILE()
{
    if (f == NULL)
        return;
    f->Close();
    if (temp || !f->target.empty())
        disk->unlink(f->path.c_str());
    delete f;
    f = NULL;
    name = closedName;
}

void CdeFILE::Open(const char *aName, const char *mode)
{
    CdeSTREAM *fresh = NULL; // ours until it is open
    __enter
        char given[X_NAME] = ""; // `aName` may be this object's own, which Close changes
        char path[NATIVE_MAX] = "";
        bool fits = aName == NULL || NameToNative(path, aName, sizeof path);
        if (aName != NULL)
            StrCopy(given, aName, sizeof given);
        Close(); __test;
        fresh = new CdeSTREAM;
        if (aName != NULL) {
            const OPENING &opening = OpeningOf(mode);
            fresh->path = path;
            if (!fits || !fresh->Open(opening.flags, 0666)) {
                StrCopy(opening.failedName, given, X_NAME);
                __raise(opening.code);
            }
        } else {
            bool created = CreateUnique(*fresh, TemporaryStem(), 0600);
            NameFromNative(given, fresh->path.c_str(), sizeof given);
            if (!created) {
                StrCopy(xFCreateName, given, X_NAME);
                __raise(XFCREATE);
            }
        }
        temp = aName == NULL;
        name = given;
        f = fresh;
    __point
        delete fresh;
    __treat
}

void CdeFILE::OpenReplacing(const char *aName)
{
    CdeSTREAM *fresh = NULL; // ours until it is open
    __enter
        char given[X_NAME];
        char path[NATIVE_MAX];
        ASSERT_AS(aName != NULL, "name != NULL");
        bool fits = NameToNative(path, aName, sizeof path);
        StrCopy(given, aName, sizeof given);
        Close(); __test;
        fresh = new CdeSTREAM;
        fresh->target = path;
        if (!fits || !FollowLinks(fresh->target) || !CreateReplacement(*fresh)) {
            StrCopy(xFCreateName, given, X_NAME);
            __raise(XFCREATE);
        }
        temp = 0;
        name = given;
        f = fresh;
    __point
        delete fresh;
    __treat
}

// After a failure the file is closed too: a second Close of a descriptor might hit another file.
void CdeFILE::Close()
{
    __enter
        if (f != NULL) {
            bool sound = CloseAndSettle(*f, temp);
            if (!sound)
                StrCopy(xFWriteName, name, X_NAME);
            delete f;
            f = NULL;
            temp = 0;
            name = closedName;
            if (!sound)
                __raise(XFWRITE);
        }
    __point
    __treat
}

signed char CdeFILE::Peek()
{
    signed char next = static_cast<signed char>(CDE_EOF);
    if (!XPending() && f != NULL && f->PeekBuffered(&next))
        return next;
    __enter
        ASSERT(f != NULL);
        RaiseOn(f->Peek(&next), name); __test;
    __point
    __treat
    return next;
}

void CdeFILE::Write(const void *blk, int size)
{
    if (!XPending() && f != NULL && blk != NULL && f->WriteBuffered(blk, size))
        return; // nothing can have failed, so no frame is needed
    __enter
        ASSERT(f != NULL);
        ASSERT(blk != NULL);
        ASSERT(size >= 0);
        RaiseOn(f->Write(static_cast<const char *>(blk), size), name); __test;
    __point
    __treat
}

void CdeFILE::Read(void *blk, int size)
{
    if (!XPending() && f != NULL && blk != NULL && f->ReadBuffered(blk, size))
        return; // as above
    __enter
        ASSERT(f != NULL);
        ASSERT(blk != NULL);
        ASSERT(size >= 0);
        RaiseOn(f->Read(static_cast<char *>(blk), size), name); __test;
    __point
    __treat
}

int CdeFILE::Tell()
{
    int pos = 0;
    __enter
        ASSERT(f != NULL);
        pos = static_cast<int>(f->Tell());
    __point
    __treat
    return pos;
}

void CdeFILE::Seek(int pos)
{
    __enter
        ASSERT(f != NULL);
        ASSERT(pos >= 0);
        RaiseOn(f->Seek(pos), name); __test;
    __point
    __treat
}

void CdeFILE::Walk()
{
    __enter
        ASSERT(f != NULL);
        WALK walk;
        off_t start = f->Tell();
        off_t size = 0;
        CdeSTREAM::RESULT result = f->Size(&size);
        if (result == CdeSTREAM::DONE && size > INT_MAX) // positions are int
            result = CdeSTREAM::SHORT;
        if (result == CdeSTREAM::DONE)
            result = WalkItems(*f, size, walk);
        RaiseOn(result, name); __test;
        RaiseOn(f->Seek(start), name); __test;
        if (!walk.sound)
            __raise(XCDE_INVOLVED);
    __point
    __treat
}

void CdeFILE::Require(long long bytes)
{
    __enter
        ASSERT(f != NULL);
        if (bytes > f->Buffered()) {
            off_t size = 0;
            RaiseOn(f->Size(&size), name); __test;
            if (size - f->Tell() < bytes) {
                RaiseOn(CdeSTREAM::SHORT, name); __test;
            }
        }
    __point
    __treat
}
