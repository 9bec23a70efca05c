// The values that org.kde.StatusNotifierItem sends.
#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QString>

namespace sonvara {

/// A picture: (iiay), 32 bits a pixel, alpha first, not premultiplied, most significant byte first.
struct NotifierImage {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    [[nodiscard]] static NotifierImage of(const QImage& image);
};
using NotifierImageList = QList<NotifierImage>;

/// (sa(iiay)ss)
struct NotifierToolTip {
    QString iconName;
    NotifierImageList image;
    QString title;
    QString description;
};

QDBusArgument& operator<<(QDBusArgument& out, const NotifierImage& image);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierImage& image);
QDBusArgument& operator<<(QDBusArgument& out, const NotifierToolTip& tip);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierToolTip& tip);

/// To be called before these types travel; may be called again.
void registerNotifierTypes();

}  // namespace sonvara

Q_DECLARE_METATYPE(sonvara::NotifierImage)
Q_DECLARE_METATYPE(sonvara::NotifierToolTip)
