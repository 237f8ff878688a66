#include "bar/sni/item_address.h"

#include <QList>
#include <QStringView>
#include <algorithm>

namespace tarnwick::bar {

namespace {

constexpr qsizetype maximumName = 255;
constexpr qsizetype maximumPath = 1'000;

bool isWordCharacter(QChar character) {
  const char16_t c = character.unicode();
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
         c == u'_';
}

std::optional<ItemAddress> address(const QString& service, const QString& path) {
  if (!isBusName(service) || !isObjectPath(path)) return std::nullopt;
  return ItemAddress{service, path};
}

std::optional<ItemAddress> splitAtPath(const QString& text) {
  const qsizetype slash = text.indexOf(u'/');
  if (slash < 0) return address(text, QStringLiteral("/StatusNotifierItem"));
  return address(text.left(slash), text.mid(slash));
}

}  // namespace

bool isUniqueBusName(const QString& name) {
  return name.startsWith(u':') && isBusName(name);
}

bool isBusName(const QString& name) {
  if (name.size() > maximumName) return false;
  const bool unique = name.startsWith(u':');
  const QList<QStringView> elements = QStringView(name).mid(unique ? 1 : 0).split(u'.');
  if (elements.size() < 2) return false;
  return std::all_of(elements.begin(), elements.end(), [unique](QStringView element) {
    return !element.isEmpty() && (unique || !element.front().isDigit()) &&
           std::all_of(element.begin(), element.end(),
                       [](QChar c) { return isWordCharacter(c) || c == u'-'; });
  });
}

bool isObjectPath(const QString& path) {
  if (path == QLatin1String("/")) return true;
  if (!path.startsWith(u'/') || path.size() > maximumPath) return false;
  const QList<QStringView> elements = QStringView(path).mid(1).split(u'/');
  return std::all_of(elements.begin(), elements.end(), [](QStringView element) {
    return !element.isEmpty() && std::all_of(element.begin(), element.end(), isWordCharacter);
  });
}

std::optional<ItemAddress> parseRegistration(const QString& argument, const QString& sender) {
  return argument.startsWith(u'/') ? address(sender, argument) : splitAtPath(argument);
}

std::optional<ItemAddress> parsePublished(const QString& published) {
  const qsizetype at = published.indexOf(u'@');
  if (at >= 0) return address(published.left(at), published.mid(at + 1));
  return splitAtPath(published);
}

}  // namespace tarnwick::bar
