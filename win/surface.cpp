#include "win/surface.h"
#include <QFile>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstring>
#include <new>

namespace
{

constexpr double INCHES_PER_METRE = 1 / 0.0254;
constexpr int EXTENT_MAX = 32767;       // px; the painter reaches no farther
constexpr int64_t PIXELS_MAX = 1 << 29; // 2 GB
constexpr int PAPER_REACH = 1 << 15;    // px; more than any sheet, and far from where a PDF's numbers end

QRect ToQt(const TRect &r)
{
    return {QPoint(r.left, r.top), QPoint(r.right - 1, r.bottom - 1)};
}

TNativePainter *Wrap(QPainter *painter)
{
    return reinterpret_cast<TNativePainter *>(painter);
}

/// Remembers the clip that a painter has, so that it is set only where it changes.
class ClipKeeper
{
public:
    void Forget() { clipped = false; }

    void Apply(QPainter &painter, const TRect *wanted)
    {
        if (wanted == NULL && clipped)
            painter.setClipping(false);
        else if (wanted != NULL && !(clipped && *wanted == clip))
            painter.setClipRect(ToQt(*wanted));
        clipped = wanted != NULL;
        if (clipped)
            clip = *wanted;
    }

private:
    bool clipped = false;
    TRect clip;
};

class ImageSurface : public TSurface
{
public:
    ImageSurface(TSize size, int aDpi) : image(Made(size, aDpi)), dpi(aDpi) {}

    int DpiX() const override { return dpi; }
    int DpiY() const override { return dpi; }
    bool HasMixes() const override { return true; }
    TPoint PhysicalOffset() const override { return {}; }
    TSize Size() const override { return {image.width(), image.height()}; }
    void Resize(TSize size, int aDpi) override;
    TColor Pixel(TPoint at) override;
    bool SavePng(const char *path) override;
    void Shift(int dx, int dy) override;
    void BlitTo(TNativePainter *painter, const TRect &part, double ratio) override;
    void EndPainting() override;
    TRect Reach() const override { return {0, 0, image.width(), image.height()}; }
    TNativePainter *Painter(const TRect *clip) override;
    void AddDamage(const TRect &rect) override;
    TRect TakeDamage() override;

private:
    static QImage Made(TSize size, int dpi);

    QImage image;
    QPainter painter; // on the image, while it is active
    ClipKeeper clipKeeper;
    TRect damage;
    int dpi;
};

QImage ImageSurface::Made(TSize size, int dpi)
{
    const int width = std::max(1, size.cx);
    const int height = std::max(1, size.cy);
    if (width > EXTENT_MAX || height > EXTENT_MAX || int64_t(width) * height > PIXELS_MAX)
        throw std::bad_alloc();
    QImage made(width, height, QImage::Format_RGB32);
    if (made.isNull())
        throw std::bad_alloc();
    made.setDotsPerMeterX(qRound(dpi * INCHES_PER_METRE));
    made.setDotsPerMeterY(qRound(dpi * INCHES_PER_METRE));
    made.fill(Qt::white);
    return made;
}

void ImageSurface::Resize(TSize size, int aDpi)
{
    QImage resized = Made(size, aDpi);
    EndPainting();
    const size_t bytes = sizeof(QRgb) * static_cast<size_t>(std::min(image.width(), resized.width()));
    for (int y = 0; y < std::min(image.height(), resized.height()); ++y)
        memcpy(resized.scanLine(y), image.constScanLine(y), bytes);
    image = std::move(resized);
    dpi = aDpi;
    damage = damage & Reach();
}

TColor ImageSurface::Pixel(TPoint at)
{
    if (!Reach().Contains(at))
        return WIN_BLACK;
    EndPainting();
    const QRgb rgb = image.pixel(at.x, at.y);
    return {static_cast<uint8_t>(qRed(rgb)), static_cast<uint8_t>(qGreen(rgb)),
            static_cast<uint8_t>(qBlue(rgb))};
}

bool ImageSurface::SavePng(const char *path)
{
    EndPainting();
    return image.save(QFile::decodeName(path), "PNG");
}

void ImageSurface::Shift(int dx, int dy)
{
    const auto moved = [](int edge, int by, int extent) {
        return static_cast<int>(std::clamp<int64_t>(int64_t(edge) + by, 0, extent));
    };
    const TSize size = Size();
    const TRect target = {moved(0, dx, size.cx), moved(0, dy, size.cy), moved(size.cx, dx, size.cx),
                          moved(size.cy, dy, size.cy)};
    if (target.IsEmpty())
        return;
    EndPainting();
    const size_t bytes = static_cast<size_t>(target.Width()) * sizeof(QRgb);
    const int fromX = target.left - dx;
    for (int i = 0; i < target.Height(); ++i) {
        const int y = dy > 0 ? target.bottom - 1 - i : target.top + i; // reads each row before writing it
        const QRgb *source = reinterpret_cast<const QRgb *>(image.constScanLine(y - dy)) + fromX;
        memmove(reinterpret_cast<QRgb *>(image.scanLine(y)) + target.left, source, bytes);
    }
}

void ImageSurface::BlitTo(TNativePainter *target, const TRect &part, double ratio)
{
    const TRect seen = part & Reach();
    if (seen.IsEmpty())
        return;
    EndPainting();
    QPainter &widget = *reinterpret_cast<QPainter *>(target);
    image.setDevicePixelRatio(ratio);
    widget.drawImage(QPointF(seen.left / ratio, seen.top / ratio), image, ToQt(seen));
    image.setDevicePixelRatio(1);
}

void ImageSurface::EndPainting()
{
    if (painter.isActive())
        painter.end();
    clipKeeper.Forget();
}

TNativePainter *ImageSurface::Painter(const TRect *clip)
{
    if (!painter.isActive())
        painter.begin(&image);
    clipKeeper.Apply(painter, clip);
    return Wrap(&painter);
}

void ImageSurface::AddDamage(const TRect &rect)
{
    const bool first = damage.IsEmpty();
    damage = damage | (rect & Reach());
    if (first && !damage.IsEmpty() && onDamage)
        onDamage();
}

TRect ImageSurface::TakeDamage()
{
    const TRect taken = damage;
    damage = TRect();
    return taken;
}

/// What surfaces without an image have in common.
class PlainSurface : public TSurface
{
public:
    PlainSurface(int aDpiX, int aDpiY) : dpiX(aDpiX), dpiY(aDpiY) {}

    int DpiX() const override { return dpiX; }
    int DpiY() const override { return dpiY; }
    TSize Size() const override { return {}; }
    void Resize(TSize, int) override {}
    TColor Pixel(TPoint) override { return WIN_BLACK; }
    bool SavePng(const char *) override { return false; }
    void Shift(int, int) override {}
    void BlitTo(TNativePainter *, const TRect &, double) override {}
    void EndPainting() override {}
    void AddDamage(const TRect &) override {}
    TRect TakeDamage() override { return {}; }

private:
    int dpiX;
    int dpiY;
};

class MeasuringSurface : public PlainSurface
{
public:
    explicit MeasuringSurface(int dpi) : PlainSurface(dpi, dpi) {}

    bool HasMixes() const override { return true; }
    TPoint PhysicalOffset() const override { return {}; }
    TRect Reach() const override { return {}; }
    TNativePainter *Painter(const TRect *) override { return NULL; }
};

class PaperSurface : public PlainSurface
{
public:
    PaperSurface(QPainter &aPainter, int aDpiX, int aDpiY, TPoint anOffset)
        : PlainSurface(aDpiX, aDpiY), painter(aPainter), offset(anOffset)
    {
        painter.setRenderHint(QPainter::LosslessImageRendering);
    }

    bool HasMixes() const override { return false; }
    TPoint PhysicalOffset() const override { return offset; }
    TRect Reach() const override { return {-PAPER_REACH, -PAPER_REACH, PAPER_REACH, PAPER_REACH}; }

    TNativePainter *Painter(const TRect *clip) override
    {
        clipKeeper.Apply(painter, clip);
        return Wrap(&painter);
    }

private:
    QPainter &painter; // view
    ClipKeeper clipKeeper;
    TPoint offset;
};

} // namespace

std::unique_ptr<TSurface> TSurface::Image(TSize size, int dpi)
{
    return std::make_unique<ImageSurface>(size, dpi);
}

std::unique_ptr<TSurface> TSurface::Measuring(int dpi)
{
    return std::make_unique<MeasuringSurface>(dpi);
}

std::unique_ptr<TSurface> TSurface::Paper(TNativePainter *painter, int dpiX, int dpiY, TPoint physicalOffset)
{
    return std::make_unique<PaperSurface>(*reinterpret_cast<QPainter *>(painter), dpiX, dpiY, physicalOffset);
}
