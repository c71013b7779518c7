#include "win/pictures.h"

#include "win/resources.h"

#include <QAbstractButton>
#include <QIcon>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <algorithm>

namespace
{
/// What cannot be chosen is shown without colour and mostly transparent.
uint32_t GreyPixel(uint32_t pixel)
{
    QColor color = QColor::fromRgba(qUnpremultiply(pixel));
    int grey = 80 + qGray(color.rgb()) / 2;
    return qPremultiply(qRgba(grey, grey, grey, color.alpha() / 2));
}

QImage ImageOf(const TDrawnPicture &drawn, bool grey)
{
    QImage image(drawn.size.cx, drawn.size.cy, QImage::Format_ARGB32_Premultiplied);
    const uint32_t *from = drawn.pixels.data();
    for (int y = 0; y < drawn.size.cy && !image.isNull(); ++y, from += drawn.size.cx) {
        auto *row = reinterpret_cast<uint32_t *>(image.scanLine(y));
        for (int x = 0; x < drawn.size.cx; ++x)
            row[x] = grey ? GreyPixel(from[x]) : from[x];
    }
    return image;
}

/// Draws the picture at the size it is asked for, so that it is sharp at every display scale.
class TPictureEngine : public QIconEngine
{
public:
    explicit TPictureEngine(const ResPICTURE &aPicture) : picture(aPicture) {}

    QIconEngine *clone() const override { return new TPictureEngine(picture); }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        double wide = static_cast<double>(size.width()) / picture.width;
        double high = static_cast<double>(size.height()) / picture.height;
        TDrawnPicture drawn = DrawPicture(picture.id, std::min(wide, high));
        return QPixmap::fromImage(ImageOf(drawn, mode == QIcon::Disabled));
    }

    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal scale) override
    {
        QPixmap drawn = pixmap(size, mode, state);
        drawn.setDevicePixelRatio(scale);
        return drawn;
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        double scale = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, scaledPixmap(rect.size() * scale, mode, state, scale));
    }

private:
    const ResPICTURE picture; // its bytes stay the table's
};
} // namespace

bool SetNativeIcon(TNativeWidget *native, int pictureId)
{
    const ResPICTURE *picture = FindPicture(pictureId);
    if (!picture || picture->width < 1 || picture->height < 1 || DrawPicture(pictureId, 1).pixels.empty())
        return false;
    QWidget *widget = reinterpret_cast<QWidget *>(native);
    QIcon icon(new TPictureEngine(*picture));
    if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
        button->setIconSize(QSize(picture->width, picture->height));
        button->setIcon(icon);
    } else {
        widget->setWindowIcon(icon);
    }
    return true;
}

void PaintPicture(TNativePainter *native, int pictureId, const TRect &area, bool grey)
{
    const ResPICTURE *picture = FindPicture(pictureId);
    if (!picture || picture->width < 1 || picture->height < 1 || area.IsEmpty())
        return;
    auto *painter = reinterpret_cast<QPainter *>(native);
    double ratio = painter->device()->devicePixelRatioF();
    double wide = area.Width() * ratio / picture->width;
    double high = area.Height() * ratio / picture->height;
    QImage image = ImageOf(DrawPicture(pictureId, std::min(wide, high)), grey);
    image.setDevicePixelRatio(ratio);
    QSizeF size = image.deviceIndependentSize();
    painter->drawImage(
        QPointF(area.left + (area.Width() - size.width()) / 2, area.top + (area.Height() - size.height()) / 2),
        image);
}
