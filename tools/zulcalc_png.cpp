#include "tools/zulcalc_png.h"
#include "lib/cde.h"
#include "lib/charstr.h"

#include <climits>
#include <csetjmp>
#include <png.h>

#include "lib/xon.h"

namespace
{
void WriteBytes(png_structp png, png_bytep bytes, size_t size)
{
    static_cast<CdeFILE *>(png_get_io_ptr(png))->Write(bytes, static_cast<int>(size)); // pieces of some KB
    if (XPending())
        png_error(png, "");
}

void FlushNothing(png_structp) {}

/// The library leaves by a jump: to the caller, which tells a failed write from exhausted memory.
[[noreturn]] void LeaveByJump(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void SayNothing(png_structp, png_const_charp) {}

/// Between the library's jump and its place no object with a destructor may live: pointers and numbers only.
bool EncodePicture(png_structp png, png_infop info, CdeFILE *file, const ZulPixels *pixels,
                   const ZulCOLORS *colors)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_write_fn(png, file, WriteBytes, FlushNothing);
    png_set_IHDR(png, info, static_cast<png_uint_32>(pixels->Width()),
                 static_cast<png_uint_32>(pixels->Height()), 8, PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_color palette[PNG_MAX_PALETTE_LENGTH];
    for (int i = 0; i < colors->count; ++i)
        palette[i] = {colors->colors[i].red, colors->colors[i].green, colors->colors[i].blue};
    png_set_PLTE(png, info, palette, colors->count);
    png_write_info(png, info);
    for (int j = 0; j < pixels->Height(); ++j)
        png_write_row(png, pixels->Row(j));
    png_write_end(png, info);
    return true;
}
} // namespace

void WritePng(const CdeFILENAME &name, const ZulPixels &pixels, const ZulCOLORS &colors)
{
    CdeFILE file;
    png_structp png = NULL; // owner
    png_infop info = NULL;  // owner
    __enter
        file.OpenReplacing(name); __test;
        png = png_create_write_struct(PNG_LIBPNG_VER_STRING, NULL, LeaveByJump, SayNothing);
        if (png == NULL)
            __raise(XALLOC);
        info = png_create_info_struct(png);
        if (info == NULL)
            __raise(XALLOC);
        bool isComplete = EncodePicture(png, info, &file, &pixels, &colors); __test;
        if (!isComplete)
            __raise(XALLOC); // the only other reason to jump with a picture of sound sides
        file.Close(); __test;
    __point
    __treat
    png_destroy_write_struct(&png, &info);
}
