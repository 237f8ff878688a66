#include "bar/sni/sni_properties.h"

#include <QDBusObjectPath>
#include <QStringList>
#include <functional>
#include <numeric>
#include <utility>

#include "bar/sni/item_address.h"

namespace tarnwick::bar {

namespace {

constexpr qsizetype maximumText = 1'000;  // characters
constexpr qsizetype maximumPixmaps = 32;  // of one list
constexpr qsizetype maximumMarkup = 4'000;
constexpr qsizetype maximumPixmapBytes = 16 * 1024 * 1024;  // of one item

using Handler = void (*)(SniProperties&, const QVariant&);

bool isText(const QVariant& value) {
  return value.metaType().id() == QMetaType::QString;
}

QString text(const QVariant& value) {
  return isText(value) ? value.toString().left(maximumText) : QString();
}

QDBusArgument argumentOf(const QVariant& value) {
  return value.metaType() == QMetaType::fromType<QDBusArgument>() ? value.value<QDBusArgument>()
                                                                  : QDBusArgument();
}

WirePixmaps readPixmaps(const QDBusArgument& argument) {
  WirePixmaps pixmaps;
  argument.beginArray();
  while (!argument.atEnd() && pixmaps.size() < maximumPixmaps) {
    WirePixmap pixmap;
    argument >> pixmap;
    pixmaps << std::move(pixmap);
  }
  argument.endArray();
  return pixmaps;
}

WirePixmaps pixmaps(const QVariant& value) {
  if (value.metaType() == QMetaType::fromType<WirePixmaps>()) return value.value<WirePixmaps>();
  const QDBusArgument argument = argumentOf(value);
  if (argument.currentSignature() != QLatin1String("a(iiay)")) return {};
  return readPixmaps(argument);
}

qsizetype bytesOf(const WirePixmaps& pixmaps) {
  return std::accumulate(
      pixmaps.begin(), pixmaps.end(), qsizetype{0},
      [](qsizetype sum, const WirePixmap& pixmap) { return sum + pixmap.bytes.size(); });
}

// Those for which the item's share still has room.
WirePixmaps pixmaps(const SniProperties& properties, const QVariant& value) {
  qsizetype total = bytesOf(properties.icon.pixmaps) + bytesOf(properties.overlay.pixmaps) +
                    bytesOf(properties.attention.pixmaps);
  WirePixmaps kept = pixmaps(value);
  kept.removeIf([&total](const WirePixmap& pixmap) {
    const bool tooMuch = total + pixmap.bytes.size() > maximumPixmapBytes;
    if (!tooMuch) total += pixmap.bytes.size();
    return tooMuch;
  });
  return kept;
}

SniStatus status(const QVariant& value) {
  const QString name = text(value);
  if (name == QLatin1String("Passive")) return SniStatus::passive;
  if (name == QLatin1String("NeedsAttention")) return SniStatus::needsAttention;
  return SniStatus::active;
}

// (sa(iiay)ss); some send a mere string.
void readToolTip(SniProperties& properties, const QVariant& value) {
  if (isText(value)) {
    properties.toolTipText = plainTextOf(value.toString());
    return;
  }
  const QDBusArgument argument = argumentOf(value);
  if (argument.currentSignature() != QLatin1String("(sa(iiay)ss)")) return;
  QString icon;
  QString title;
  QString body;
  argument.beginStructure();
  argument >> icon;
  argument.beginArray();
  while (!argument.atEnd()) {
    WirePixmap skipped;
    argument >> skipped;
  }
  argument.endArray();
  argument >> title >> body;
  argument.endStructure();
  properties.toolTipTitle = plainTextOf(title);
  properties.toolTipText = plainTextOf(body);
}

QString menuPath(const QVariant& value) {
  QString path = text(value);
  if (value.metaType() == QMetaType::fromType<QDBusObjectPath>()) {
    path = value.value<QDBusObjectPath>().path();
  }
  const bool none = path == QLatin1String("/") || path == QLatin1String("/NO_DBUSMENU");
  return none || !isObjectPath(path) ? QString() : path;
}

// One line: a label stands beside its icon.
QString label(const QVariant& value) {
  return text(value).simplified();
}

struct Property {
  const char* name;
  Handler apply;
};

const Property knownProperties[] = {
    {"Id", [](SniProperties& p, const QVariant& v) { p.id = text(v); }},
    {"Title", [](SniProperties& p, const QVariant& v) { p.title = text(v).simplified(); }},
    {"Status", [](SniProperties& p, const QVariant& v) { p.status = status(v); }},
    {"IconThemePath", [](SniProperties& p, const QVariant& v) { p.iconThemePath = text(v); }},
    {"IconName", [](SniProperties& p, const QVariant& v) { p.icon.name = text(v); }},
    {"IconPixmap", [](SniProperties& p, const QVariant& v) { p.icon.pixmaps = pixmaps(p, v); }},
    {"OverlayIconName", [](SniProperties& p, const QVariant& v) { p.overlay.name = text(v); }},
    {"OverlayIconPixmap",
     [](SniProperties& p, const QVariant& v) { p.overlay.pixmaps = pixmaps(p, v); }},
    {"AttentionMovieName",
     [](SniProperties& p, const QVariant& v) {
       if (p.attention.name.isEmpty()) p.attention.name = text(v);
     }},
    {"AttentionIconName",
     [](SniProperties& p, const QVariant& v) {
       if (const QString name = text(v); !name.isEmpty()) p.attention.name = name;
     }},
    {"AttentionIconPixmap",
     [](SniProperties& p, const QVariant& v) { p.attention.pixmaps = pixmaps(p, v); }},
    {"ToolTip", &readToolTip},
    {"ItemIsMenu",
     [](SniProperties& p, const QVariant& v) {
       if (v.metaType().id() == QMetaType::Bool) p.itemIsMenu = v.toBool();
     }},
    {"Menu", [](SniProperties& p, const QVariant& v) { p.menuPath = menuPath(v); }},
    {"XAyatanaLabel", [](SniProperties& p, const QVariant& v) { p.label = label(v); }},
    {"XAyatanaLabelGuide", [](SniProperties& p, const QVariant& v) { p.labelGuide = label(v); }},
};

QString entityText(QStringView name) {
  static constexpr std::pair<QLatin1StringView, char16_t> entities[] = {
      {QLatin1StringView("amp"), u'&'},   {QLatin1StringView("lt"), u'<'},
      {QLatin1StringView("gt"), u'>'},    {QLatin1StringView("quot"), u'"'},
      {QLatin1StringView("apos"), u'\''}, {QLatin1StringView("nbsp"), u' '}};
  for (const auto& [entity, character] : entities) {
    if (name == entity) return QChar(character);
  }
  if (!name.startsWith(u'#')) return {};
  bool ok = false;
  const bool hexadecimal = name.mid(1).startsWith(u'x');
  const uint code = hexadecimal ? name.mid(2).toUInt(&ok, 16) : name.mid(1).toUInt(&ok);
  const bool usable = ok && code >= 0x20 && code <= 0x10ffff && !QChar::isSurrogate(code);
  return usable ? QString::fromUcs4(reinterpret_cast<const char32_t*>(&code), 1) : QString();
}

}  // namespace

SniProperties decodeSniProperties(const QVariantMap& values) {
  SniProperties properties;
  for (const Property& property : knownProperties) {
    const auto found = values.constFind(QLatin1StringView(property.name));
    if (found != values.constEnd()) property.apply(properties, *found);
  }
  const auto atOrAfter = values.lowerBound(QStringLiteral("XAyatana"));
  properties.ayatana =
      atOrAfter != values.constEnd() && atOrAfter.key().startsWith(QLatin1StringView("XAyatana"));
  return properties;
}

QStringList sniPropertyNames() {
  QStringList names;
  for (const Property& property : knownProperties) names << QLatin1StringView(property.name);
  return names;
}

QString plainTextOf(const QString& markup) {
  QString plain;
  const QStringView source = QStringView(markup).left(maximumMarkup);
  for (qsizetype i = 0; i < source.size() && plain.size() < maximumText; ++i) {
    if (source[i] == u'<') {
      const qsizetype end = source.indexOf(u'>', i);
      const QStringView tag = end < 0 ? QStringView() : source.mid(i + 1, end - i - 1);
      const bool isTag = !tag.isEmpty() && (tag.front().isLetter() || tag.front() == u'/');
      if (isTag) {
        if (tag.startsWith(QLatin1StringView("br")) || tag == QLatin1StringView("/p")) {
          plain += u'\n';
        }
        i = end;
        continue;
      }
    } else if (source[i] == u'&') {
      const qsizetype end = source.indexOf(u';', i);
      const QString character =
          end < 0 || end - i > 10 ? QString() : entityText(source.mid(i + 1, end - i - 1));
      if (!character.isEmpty()) {
        plain += character;
        i = end;
        continue;
      }
    }
    plain += source[i];
  }
  return plain.trimmed();
}

QDBusArgument& operator<<(QDBusArgument& argument, const WirePixmap& pixmap) {
  argument.beginStructure();
  argument << pixmap.width << pixmap.height << pixmap.bytes;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, WirePixmap& pixmap) {
  argument.beginStructure();
  argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
  argument.endStructure();
  return argument;
}

}  // namespace tarnwick::bar
