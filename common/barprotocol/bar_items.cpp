#include "common/barprotocol/bar_items.h"

#include <QDBusArgument>
#include <cmath>

namespace tarnwick {

namespace {

constexpr std::size_t mostItems = 5000;
constexpr qsizetype longestText = 1000;

void readText(const QDBusArgument& argument, QString& text) {
  argument >> text;
  text.truncate(longestText);
}

bool isFinite(const Rect& rect) {
  return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
         std::isfinite(rect.height);
}

void readItem(const QDBusArgument& argument, BarItem& item) {
  argument.beginStructure();
  qulonglong id = 0;
  argument >> id >> item.pid;
  item.id = id;
  readText(argument, item.kind);
  readText(argument, item.hint);
  readText(argument, item.title);
  argument.beginStructure();
  argument >> item.frame.x >> item.frame.y >> item.frame.width >> item.frame.height;
  argument.endStructure();
  readText(argument, item.busName);
  readText(argument, item.objectPath);
  readText(argument, item.menuPath);
  argument.endStructure();
}

}  // namespace

std::optional<std::vector<BarItem>> parseBarItems(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ReplyMessage ||
      reply.signature() != QLatin1String("a(tisss(dddd)sss)")) {
    return std::nullopt;
  }
  const auto argument = reply.arguments().constFirst().value<QDBusArgument>();
  std::vector<BarItem> items;
  argument.beginArray();
  while (!argument.atEnd() && items.size() < mostItems) {
    readItem(argument, items.emplace_back());
    if (!isFinite(items.back().frame)) items.pop_back();
  }
  argument.endArray();
  return items;
}

}  // namespace tarnwick
