#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QRectF>
#include <QString>

namespace tarnwick::bar {

// One entry of Items(): (tisss(dddd)sss).
struct WireItem {
  quint64 id = 0;
  qint32 pid = 0;
  QString kind;
  QString hint;
  QString title;
  QRectF frame;
  QString busName;
  QString objectPath;
  QString menuPath;
};

// What Render() answers: (uuay).
struct WireImage {
  quint32 width = 0;
  quint32 height = 0;
  QByteArray rgba;
};

QDBusArgument& operator<<(QDBusArgument& argument, const WireItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, WireItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const WireImage& image);
const QDBusArgument& operator>>(const QDBusArgument& argument, WireImage& image);

// Makes the types above known to the bus library; once is enough, more do no harm.
void registerWireTypes();

}  // namespace tarnwick::bar

Q_DECLARE_METATYPE(tarnwick::bar::WireItem)
Q_DECLARE_METATYPE(tarnwick::bar::WireImage)
