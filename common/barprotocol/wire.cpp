#include "common/barprotocol/wire.h"

#include <QDBusMetaType>

namespace tarnwick::bar {

QDBusArgument& operator<<(QDBusArgument& argument, const WireItem& item) {
  argument.beginStructure();
  argument << qulonglong{item.id} << item.pid << item.kind << item.hint << item.title << item.frame
           << item.busName << item.objectPath << item.menuPath;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, WireItem& item) {
  qulonglong id = 0;
  argument.beginStructure();
  argument >> id >> item.pid >> item.kind >> item.hint >> item.title >> item.frame >>
      item.busName >> item.objectPath >> item.menuPath;
  argument.endStructure();
  item.id = id;
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const WireImage& image) {
  argument.beginStructure();
  argument << image.width << image.height << image.rgba;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, WireImage& image) {
  argument.beginStructure();
  argument >> image.width >> image.height >> image.rgba;
  argument.endStructure();
  return argument;
}

void registerWireTypes() {
  qDBusRegisterMetaType<WireItem>();
  qDBusRegisterMetaType<QList<WireItem>>();
  qDBusRegisterMetaType<WireImage>();
}

}  // namespace tarnwick::bar
