#include "platform/linux/tray/StatusNotifierTypes.h"

#include <QDBusMetaType>
#include <QtEndian>

namespace sonvara {

NotifierImage NotifierImage::of(const QImage& image)
{
    const auto argb = image.convertToFormat(QImage::Format_ARGB32);
    NotifierImage result{argb.width(), argb.height(), QByteArray(argb.sizeInBytes(), Qt::Uninitialized)};
    // The lines have no padding: a pixel has the size of the alignment.
    qToBigEndian<quint32>(argb.constBits(), argb.sizeInBytes() / 4, result.pixels.data());
    return result;
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierImage& image)
{
    out.beginStructure();
    out << image.width << image.height << image.pixels;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, NotifierImage& image)
{
    in.beginStructure();
    in >> image.width >> image.height >> image.pixels;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierToolTip& tip)
{
    out.beginStructure();
    out << tip.iconName << tip.image << tip.title << tip.description;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, NotifierToolTip& tip)
{
    in.beginStructure();
    in >> tip.iconName >> tip.image >> tip.title >> tip.description;
    in.endStructure();
    return in;
}

void registerNotifierTypes()
{
    qDBusRegisterMetaType<NotifierImage>();
    qDBusRegisterMetaType<NotifierImageList>();
    qDBusRegisterMetaType<NotifierToolTip>();
}

}  // namespace sonvara
