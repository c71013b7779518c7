#include "win/cursor.h"

#include "win/resources.h"

#include <QCursor>
#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace
{
QCursor PictureCursor(int id, double ratio)
{
    TDrawnPicture drawn = DrawPicture(id, ratio);
    if (drawn.pixels.empty())
        return {Qt::ArrowCursor};
    QImage image(reinterpret_cast<const uchar *>(drawn.pixels.data()), drawn.size.cx, drawn.size.cy,
                 QImage::Format_ARGB32_Premultiplied);
    QPixmap pixmap = QPixmap::fromImage(image.copy()); // some platforms keep the image, and read it much later
    pixmap.setDevicePixelRatio(ratio);
    return QCursor(pixmap, qRound(drawn.hot.x / ratio), qRound(drawn.hot.y / ratio));
}

QCursor NativeCursor(const TCursor &cursor, double ratio)
{
    switch (cursor.shape) {
    case TCursor::WAIT:
        return {Qt::WaitCursor};
    case TCursor::CROSS:
        return {Qt::CrossCursor};
    case TCursor::RESOURCE:
        return PictureCursor(cursor.resource, ratio);
    case TCursor::ARROW:
        break;
    }
    return {Qt::ArrowCursor};
}
} // namespace

void SetNativeCursor(TNativeWidget *native, const TCursor &cursor)
{
    auto *widget = reinterpret_cast<QWidget *>(native);
    widget->setCursor(NativeCursor(cursor, widget->devicePixelRatioF()));
}
