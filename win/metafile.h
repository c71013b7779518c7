// A vector picture of drawing records: the enhanced kind, and the older 16-bit kind with or without the
// placeable header. A logo has some hundred records; the bytes are untrusted. Parsing walks and checks all of
// them once and turns them into a short list of our own, so that playing meets no bad length, count or handle.
// The heads of metafile_enhanced.cpp and metafile_plain.cpp tell which records are understood, which are
// without effect and which make a file be refused.
#ifndef WIN_METAFILE_H
#define WIN_METAFILE_H

#include "win/geometry.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class TDC;

class TMetafile
{
public:
    TMetafile();
    ~TMetafile();
    TMetafile(const TMetafile &) = delete;
    TMetafile &operator=(const TMetafile &) = delete;

    /// Reads an enhanced metafile. False where anything in it is not sound; the object is empty then.
    /// Throws std::bad_alloc.
    bool ParseEnhanced(const uint8_t *bytes, size_t size);
    /// Reads a plain metafile, its extent in 0.01 mm given by whoever knows it; (0, 0) where nobody does: the
    /// extent then is that of its window at 96 units an inch.
    bool ParsePlain(const uint8_t *bytes, size_t size, TSize extent);

    bool IsEmpty() const;
    TSize Frame() const;     // 0.01 mm, never negative
    int RecordCount() const; // records that draw
    /// Plays into the rectangle, scaled to fill it; an empty rectangle shows nothing. The context's state is
    /// given back in any case. Throws std::bad_alloc.
    void Play(TDC &dc, const TRect &rect) const;

private:
    struct Body;
    std::unique_ptr<Body> body;
};

#endif
