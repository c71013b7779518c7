// Logos: reading and making `.lgo` files, and the table by which blocks share their images. A logo has some
// kilobytes and a document a handful of names, so a file is read in one piece and the table is searched from
// its start.
#include "lib/charstr.h"
#include "lib/cde.h"
#include "lib/xassert.h"
#include "usr/edcitem.h"
#include "usr/edcutils.h"
#include "win/dc.h"
#include "win/metafile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>

#include "lib/xon.h"

namespace
{
enum { NAME_BYTES = 32 };               // of each text in the header
enum { HEADER_BYTES = 2 * NAME_BYTES }; // "LOGOFILE", the file's own name, masked
enum { FILE_MAX = 16 << 20 };           // bytes; far above any logo
const char fileTag[] = "LOGOFILE";

const uint32_t ENHANCED_MARK = 0x464D4520; // at this offset of the image
const size_t ENHANCED_MARK_AT = 40;
const uint32_t PLACEABLE_MARK = 0x9AC6CDD7; // at its start
const size_t PLACEABLE_BYTES = 22;

std::string logoDirectory; // with its '\'; empty: the program's

uint32_t Word32(const uint8_t *bytes)
{
    return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

int Word16(const uint8_t *bytes)
{
    return bytes[0] | bytes[1] << 8;
}

int Signed16(const uint8_t *bytes)
{
    return static_cast<int16_t>(Word16(bytes));
}

class DESCRIPTOR
{
public:
    explicit DESCRIPTOR(const char *path)
    {
        do
            fd = disk->open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY, 0);
        while (fd < 0 && errno == EINTR);
    }
    ~DESCRIPTOR()
    {
        if (fd >= 0)
            disk->close(fd);
    }
    DESCRIPTOR(const DESCRIPTOR &) = delete;
    DESCRIPTOR &operator=(const DESCRIPTOR &) = delete;

    int fd;
};

/// Appends all bytes of a file. False if they cannot be read or are too many. Throws std::bad_alloc.
bool MapFile(const char *fpath, std::vector<uint8_t> *pfm)
{
    ASSERT(fpath != NULL);
    ASSERT(pfm != NULL);
    enum { PIECE = 1 << 16 };
    char path[NATIVE_MAX];
    if (!NameToNative(path, fpath, sizeof path))
        return false;
    DESCRIPTOR file(path);
    while (file.fd >= 0 && pfm->size() <= FILE_MAX) {
        size_t there = pfm->size();
        pfm->resize(there + PIECE);
        ssize_t got;
        do
            got = disk->read(file.fd, pfm->data() + there, PIECE);
        while (got < 0 && errno == EINTR);
        pfm->resize(there + static_cast<size_t>(std::max<ssize_t>(got, 0)));
        if (got <= 0)
            return got == 0;
    }
    return false;
}

/// The second text of the header, as it stands in the file; the mask is its own inverse. `name` starts the
/// mask.
void MaskName(uint8_t *field, const char *name)
{
    uint8_t mask = static_cast<uint8_t>(ChrUpper(name[0]));
    for (int i = 0; i < NAME_BYTES; ++i)
        field[i] ^= mask;
}

/// Whether these 64 bytes are the header of a logo file of this name.
bool IsHeaderOf(const char *fname, const uint8_t *header)
{
    if (std::memcmp(header, fileTag, sizeof fileTag) != 0)
        return false;
    uint8_t field[NAME_BYTES];
    std::memcpy(field, header + NAME_BYTES, NAME_BYTES);
    MaskName(field, fname);
    const char *own = reinterpret_cast<const char *>(field);
    return std::memchr(own, EOS, NAME_BYTES) != NULL && StrMatch(own, fname, STR_NOCASE);
}

/// 0.01 mm of a length in the placeable header's own units, rounded.
int PlaceableExtent(int length, int unitsPerInch)
{
    return EdcNearest(length * 2540.0 / unitsPerInch);
}

bool ParsePlaceable(TMetafile &image, const uint8_t *bytes, size_t size)
{
    int unitsPerInch = size < PLACEABLE_BYTES ? 0 : Word16(bytes + 14);
    if (unitsPerInch == 0)
        return false;
    TSize extent = {PlaceableExtent(Signed16(bytes + 10) - Signed16(bytes + 6), unitsPerInch),
                    PlaceableExtent(Signed16(bytes + 12) - Signed16(bytes + 8), unitsPerInch)};
    return extent.cx > 0 && extent.cy > 0 &&
           image.ParsePlain(bytes + PLACEABLE_BYTES, size - PLACEABLE_BYTES, extent);
}

/// The kind of picture is told by its bytes.
bool ParseImage(TMetafile &image, const uint8_t *bytes, size_t size)
{
    if (size >= ENHANCED_MARK_AT + 4 && Word32(bytes + ENHANCED_MARK_AT) == ENHANCED_MARK)
        return image.ParseEnhanced(bytes, size);
    if (size >= 4 && Word32(bytes) == PLACEABLE_MARK)
        return ParsePlaceable(image, bytes, size);
    return image.ParsePlain(bytes, size, TSize());
}

/// Throws std::bad_alloc.
std::string LogoPath(const char *fname)
{
    return (logoDirectory.empty() ? std::string(ProgramFolder()) + '\\' : logoDirectory) + fname;
}

/// False if the file could not be written; then what `path` held is still there.
bool WriteReplacing(const char *path, const std::vector<uint8_t> &bytes)
{
    CdeFILE file;
    bool written = false;
    __enter
        file.OpenReplacing(path); __test;
        file.Write(bytes.data(), static_cast<int>(bytes.size())); __test;
        file.Close(); __test;
        written = true;
    __point
        __repair;
    __treat
    return written;
}

/// The header of the logo file at `path`. False if its name does not fit.
bool FillHeader(uint8_t *header, const char *path)
{
    CdeFILENAME name = CdeFILENAME(path).GetName();
    int length = StrLength(name);
    if (length == 0 || length >= NAME_BYTES)
        return false;
    std::fill(header, header + HEADER_BYTES, uint8_t{0});
    std::memcpy(header, fileTag, sizeof fileTag);
    std::memcpy(header + NAME_BYTES, static_cast<const char *>(name), static_cast<size_t>(length));
    MaskName(header + NAME_BYTES, name);
    return true;
}
} // namespace

void SetLogoDirectory(const char *directory)
{
    __enter
        logoDirectory = directory != NULL ? directory : "";
        if (!logoDirectory.empty() && logoDirectory.back() != '\\')
            logoDirectory += '\\';
    __point
    __treat
}

std::unique_ptr<TMetafile> LoadLogo(const char *fname)
{
    std::unique_ptr<TMetafile> image;
    __enter
        ASSERT(fname != NULL);
        std::string fpath = LogoPath(fname);
        std::vector<uint8_t> bytes;
        image = std::make_unique<TMetafile>();
        if (!MapFile(fpath.c_str(), &bytes) || bytes.size() < HEADER_BYTES ||
            !IsHeaderOf(fname, bytes.data()) ||
            !ParseImage(*image, bytes.data() + HEADER_BYTES, bytes.size() - HEADER_BYTES)) {
            StrCopy(xFOpenName, fpath.c_str(), X_NAME);
            __raise(XFOPEN);
        }
    __point
        image.reset();
    __treat
    return image;
}

std::unique_ptr<TMetafile> LoadLogoPicture(const char *mfpath)
{
    std::unique_ptr<TMetafile> image;
    __enter
        ASSERT(mfpath != NULL);
        std::vector<uint8_t> bytes;
        image = std::make_unique<TMetafile>();
        if (!MapFile(mfpath, &bytes) || !ParseImage(*image, bytes.data(), bytes.size())) {
            StrCopy(xFOpenName, mfpath, X_NAME);
            __raise(XFOPEN);
        }
    __point
        image.reset();
    __treat
    return image;
}

void MakeLogo(const char *lfpath, const char *mfpath)
{
    __enter
        ASSERT(lfpath != NULL);
        ASSERT(mfpath != NULL);
        std::vector<uint8_t> bytes(HEADER_BYTES);
        if (!FillHeader(bytes.data(), lfpath) || !MapFile(mfpath, &bytes) || !WriteReplacing(lfpath, bytes)) {
            StrCopy(xFCreateName, lfpath, X_NAME);
            __raise(XFCREATE);
        }
    __point
    __treat
}

struct TEdcLogo::Node {
    std::unique_ptr<TMetafile> hemf; // empty until it is wanted
    char fname[NAME_BYTES] = "";     // empty: the node is free
    int used = 0;                    // holders
};

static TEdcLogo::Node logotab[EDC_LOGO_TABMAX];

int EdcLogoNodesInUse()
{
    return static_cast<int>(std::count_if(std::begin(logotab), std::end(logotab),
                                          [](const TEdcLogo::Node &node) { return node.used > 0; }));
}

TEdcLogo::~TEdcLogo()
{
    Close();
}

void TEdcLogo::Open(const char *fname)
{
    ASSERT(fname != NULL && *fname != EOS);
    ASSERT_AS(StrLength(fname) < NAME_BYTES, "strlen(fname) < 32"); // a cut name might be another's
    Node *found = std::find_if(std::begin(logotab), std::end(logotab), [fname](const Node &other) {
        return other.used > 0 && StrMatch(other.fname, fname, STR_NOCASE);
    });
    if (found == std::end(logotab)) {
        found = std::find_if(std::begin(logotab), std::end(logotab),
                             [](const Node &other) { return other.used == 0; });
        ASSERT_AS(found - logotab < EDC_LOGO_TABMAX, "node-logotab < EDC_LOGO_TABMAX");
        StrCopy(found->fname, fname, NAME_BYTES);
    }
    ++found->used; // first, so that an image shown already is not let go
    Close();
    node = found;
}

void TEdcLogo::Close()
{
    if (node == NULL)
        return;
    --node->used;
    ASSERT_AS(node->used >= 0, "node->used >= 0");
    if (node->used == 0) {
        node->fname[0] = EOS;
        node->hemf.reset();
    }
    node = NULL;
    size = TSize();
}

void TEdcLogo::Load() const
{
    __enter
        ASSERT_AS(node - logotab >= 0, "node-logotab >= 0");
        ASSERT_AS(node - logotab < EDC_LOGO_TABMAX, "node-logotab < EDC_LOGO_TABMAX");
        ASSERT_AS(*node->fname != EOS, "*(node->fname) != EOS");
        if (node->hemf == NULL) {
            node->hemf = LoadLogo(node->fname); __test;
        }
    __point
    __treat
}

void TEdcLogo::Size(TDC &dc, TSize aBox, double scale)
{
    __enter
        boxSize = aBox;
        size = TSize();
        if (node != NULL) {
            Load(); __test;
            ASSERT(node->hemf != NULL && scale >= 0);
            TSize frame = node->hemf->Frame();
            size = {EdcNearest(frame.cx / 2540.0 * scale * dc.DpiX()),
                    EdcNearest(frame.cy / 2540.0 * scale * dc.DpiY())};
            if (size.cx > aBox.cx || size.cy > aBox.cy)
                Fit(dc, aBox, true);
        }
    __point
    __treat
}

void TEdcLogo::Fit(TDC &, TSize aBox, bool keepRatio)
{
    boxSize = aBox;
    size = TSize();
    if (node == NULL)
        return;
    ASSERT_AS(node->hemf != NULL, "node->hemf != NULL");
    size = aBox;
    TSize frame = node->hemf->Frame();
    if (!keepRatio || frame.cx <= 0 || frame.cy <= 0 || aBox.cx <= 0 || aBox.cy <= 0)
        return;
    double ratio = static_cast<double>(frame.cy) / frame.cx;
    if (ratio <= static_cast<double>(aBox.cy) / aBox.cx)
        size.cy = EdcNearest(aBox.cx * ratio);
    else
        size.cx = EdcNearest(aBox.cy / ratio);
}

void TEdcLogo::Place(int hPos, int vPos)
{
    auto offset = [](int pos, int room) { return pos == 9 ? room : pos == 5 ? room / 2 : 0; };
    position = {box.x + offset(hPos, boxSize.cx - size.cx), box.y + offset(vPos, boxSize.cy - size.cy)};
}

void TEdcLogo::Paint(TDC &dc) const
{
    __enter
        if (node != NULL) {
            Load(); __test;
            node->hemf->Play(dc, {position.x, position.y, position.x + size.cx, position.y + size.cy}); __test;
        }
    __point
    __treat
}
