// The painting contexts by what they stand on.
#include "win/dc.h"
#include "win/surface.h"
#include "win/window.h"
#include <map>
#include <utility>

TMeasureDC::TMeasureDC(int dpi) : TMeasureDC(TSurface::Measuring(dpi)) {}

TMeasureDC::TMeasureDC(std::unique_ptr<TSurface> aSurface) : TSurfaceDC(*aSurface), own(std::move(aSurface)) {}

TMeasureDC::~TMeasureDC() = default;

TMemoryDC::TMemoryDC(TSize size, int dpi) : TMemoryDC(TSurface::Image(size, dpi)) {}

TMemoryDC::TMemoryDC(std::unique_ptr<TSurface> aSurface) : TSurfaceDC(*aSurface), own(std::move(aSurface)) {}

TMemoryDC::~TMemoryDC() = default;

TColor TMemoryDC::Pixel(TPoint at) const
{
    return own->Pixel(at);
}

bool TMemoryDC::SavePng(const char *path)
{
    return own->SavePng(path);
}

namespace
{

/// A surface for windows that are not on screen, one a resolution; a few at most.
TSurface &Nowhere(int dpi)
{
    static std::map<int, std::unique_ptr<TSurface>> surfaces;
    std::unique_ptr<TSurface> &found = surfaces[dpi];
    if (!found)
        found = TSurface::Measuring(dpi);
    return *found;
}

TSurface &SurfaceOf(TWindow &window)
{
    TSurface *backing = window.BackingSurface();
    return backing != NULL ? *backing : Nowhere(window.Dpi());
}

} // namespace

TClientDC::TClientDC(TWindow &window) : TSurfaceDC(SurfaceOf(window)) {}
