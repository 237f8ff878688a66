#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariantMap>
#include <cstdint>
#include <optional>

namespace tarnwick::bar {

// One picture as an item sends it: (iiay), ARGB32 in network byte order, not premultiplied. Not
// checked yet.
struct WirePixmap {
  int width = 0;
  int height = 0;
  QByteArray bytes;
  bool operator==(const WirePixmap&) const = default;
};
using WirePixmaps = QList<WirePixmap>;

enum class SniStatus : std::uint8_t { passive, active, needsAttention };

// Where an icon comes from; the name is preferred.
struct SniIcon {
  QString name;  // theme name or absolute path
  WirePixmaps pixmaps;
  bool isEmpty() const { return name.isEmpty() && pixmaps.isEmpty(); }
};

// The properties of org.kde.StatusNotifierItem that the bar uses. What is missing or of another
// type keeps its default. Texts are cut to 1,000 characters.
struct SniProperties {
  QString id;
  QString title;
  SniStatus status = SniStatus::active;
  QString iconThemePath;
  SniIcon icon;
  SniIcon overlay;
  SniIcon attention;  // for status needsAttention; a movie's name counts as its name
  QString toolTipTitle;
  QString toolTipText;             // plain text
  std::optional<bool> itemIsMenu;  // absent: the item does not say
  QString menuPath;                // empty: no menu
  QString label;
  QString labelGuide;  // the widest text the label is expected to have
  bool ayatana = false;
};

// Decodes an answer of GetAll, each property by itself.
SniProperties decodeSniProperties(const QVariantMap& values);

// The names of the properties decoded above, for owners that only answer Get.
QStringList sniPropertyNames();

// Text with the simple markup that tooltips may hold as plain text.
QString plainTextOf(const QString& markup);

QDBusArgument& operator<<(QDBusArgument& argument, const WirePixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, WirePixmap& pixmap);

}  // namespace tarnwick::bar

Q_DECLARE_METATYPE(tarnwick::bar::WirePixmap)
