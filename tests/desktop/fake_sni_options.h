#pragma once

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusArgument>
#include <QString>
#include <QVariantMap>
#include <utility>

#include "tests/desktop/fake_sni_menu.h"

namespace fake {

struct Pixmap {
  int width = 0;
  int height = 0;
  QByteArray bytes;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const Pixmap& pixmap) {
  argument.beginStructure();
  argument << pixmap.width << pixmap.height << pixmap.bytes;
  argument.endStructure();
  return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, Pixmap&) {
  return argument;
}

struct ToolTip {
  QString title;
  QString text;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const ToolTip& tip) {
  argument.beginStructure();
  argument << QString() << QList<Pixmap>() << tip.title << tip.text;
  argument.endStructure();
  return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, ToolTip&) {
  return argument;
}

struct Options {
  QString registration = "unique";
  int items = 1;
  int connections = 1;
  int registerAgain = 0;
  bool reregister = true;
  QVariantMap properties;
  int iconSide = 22;
  int iconWidth = 0;
  uint colour = 0xffcc2222;
  bool wrongBytes = false;
  bool neverAnswer = false;
  bool noGetAll = false;
  bool noActivate = false;
  bool verbose = false;
  int slowMs = 0;
  int stormHz = 0;
  bool stormChanges = false;
  int unexportAfterMs = 0;
  int quitAfterMs = 0;
  QString menu = "full";
  MenuOptions menuOptions;
};

inline Options parse(const QCoreApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "Standard input: title|status|label|icon-name TEXT, colour AARRGGBB, register, export, "
      "unexport, menu-grow N, menu-relabel TEXT, menu-renumber, quit.");
  parser.addHelpOption();
  const QList<QCommandLineOption> known = {
      {"register", "unique, name, path, both, or any other argument as it is", "form", "unique"},
      {"items", "items of one connection", "n", "1"},
      {"connections", "connections, each with its items", "n", "1"},
      {"count", "the same as --connections", "n"},
      {"register-again", "times every item is registered once more", "n", "0"},
      {"no-reregister", "does not care about a new watcher"},
      {"id", "Id", "text", "fake-sni"},
      {"no-id", "no such property"},
      {"title", "Title", "text", "Fake item"},
      {"title-bytes", "length of a long Title", "n", "0"},
      {"status", "Status", "text", "Active"},
      {"passive", "Status Passive"},
      {"label", "XAyatanaLabel", "text"},
      {"label-guide", "XAyatanaLabelGuide", "text"},
      {"label-bytes", "length of a long XAyatanaLabel", "n", "0"},
      {"icon-name", "IconName", "text"},
      {"icon-theme-path", "IconThemePath", "path"},
      {"attention-icon-name", "AttentionIconName", "text"},
      {"overlay-icon-name", "OverlayIconName", "text"},
      {"icon-size", "side of IconPixmap; 0 for none", "n", "22"},
      {"icon-width", "its width where not square", "n", "0"},
      {"colour", "AARRGGBB of the pixmap", "hex", "ffcc2222"},
      {"pixmap-bytes-wrong", "the pixmap's bytes do not fit its size"},
      {"tooltip", "title of the ToolTip", "text"},
      {"tooltip-as-string", "ToolTip is a mere string"},
      {"wrong-types", "Title, Status and icon properties are numbers"},
      {"never-answer", "no property is ever answered"},
      {"slow", "ms before properties are answered", "ms", "0"},
      {"no-get-all", "GetAll is unknown"},
      {"no-activate", "Activate is unknown"},
      {"item-is-menu", "ItemIsMenu", "true|false"},
      {"storm", "NewIcon signals per second", "hz", "0"},
      {"storm-changes", "the icon really changes with each"},
      {"menu", "full, none, silent", "kind", "full"},
      {"menu-entries", "entries of the menu", "n", "7"},
      {"menu-depth", "levels of submenus", "n", "1"},
      {"lazy-menu", "submenus are empty until they are about to be shown"},
      {"lazy-root", "the whole menu is"},
      {"about-to-show", "answer: false, true, error, empty, missing", "kind", "false"},
      {"menu-slow", "ms before menu calls are answered", "ms", "0"},
      {"unexport-after", "takes the objects away", "ms", "0"},
      {"quit-after", "ends", "ms", "0"},
      {"verbose", "prints readings of properties too"},
  };
  parser.addOptions(known);
  parser.process(application);

  const auto number = [&](const char* name) { return parser.value(name).toInt(); };
  Options options;
  options.registration = parser.value("register");
  options.items = number("items");
  options.connections = number(parser.isSet("count") ? "count" : "connections");
  options.registerAgain = number("register-again");
  options.reregister = !parser.isSet("no-reregister");
  options.iconSide = number("icon-size");
  options.iconWidth = number("icon-width");
  options.colour = parser.value("colour").toUInt(nullptr, 16);
  options.wrongBytes = parser.isSet("pixmap-bytes-wrong");
  options.neverAnswer = parser.isSet("never-answer");
  options.noGetAll = parser.isSet("no-get-all");
  options.noActivate = parser.isSet("no-activate");
  options.verbose = parser.isSet("verbose");
  options.slowMs = number("slow");
  options.stormHz = number("storm");
  options.stormChanges = parser.isSet("storm-changes");
  options.unexportAfterMs = number("unexport-after");
  options.quitAfterMs = number("quit-after");
  options.menu = parser.value("menu");
  options.menuOptions = {
      number("menu-entries"),    number("menu-depth"),          parser.isSet("lazy-menu"),
      parser.isSet("lazy-root"), parser.value("about-to-show"), options.menu == "silent",
      number("menu-slow")};

  QVariantMap& p = options.properties;
  p["Category"] = "ApplicationStatus";
  if (!parser.isSet("no-id")) p["Id"] = parser.value("id");
  p["Title"] =
      number("title-bytes") > 0 ? QString(number("title-bytes"), 'x') : parser.value("title");
  p["Status"] = parser.isSet("passive") ? "Passive" : parser.value("status");
  const std::pair<const char*, const char*> texts[] = {
      {"label", "XAyatanaLabel"},
      {"label-guide", "XAyatanaLabelGuide"},
      {"icon-name", "IconName"},
      {"icon-theme-path", "IconThemePath"},
      {"overlay-icon-name", "OverlayIconName"},
      {"attention-icon-name", "AttentionIconName"}};
  for (const auto& [option, property] : texts) {
    if (parser.isSet(option)) p[property] = parser.value(option);
  }
  if (number("label-bytes") > 0) p["XAyatanaLabel"] = QString(number("label-bytes"), 'x');
  if (parser.isSet("tooltip")) {
    const QString tip = parser.value("tooltip");
    p["ToolTip"] = parser.isSet("tooltip-as-string")
                       ? QVariant(tip)
                       : QVariant::fromValue(ToolTip{tip, "<b>more</b> of it"});
  }
  if (parser.isSet("item-is-menu")) p["ItemIsMenu"] = parser.value("item-is-menu") == "true";
  if (parser.isSet("wrong-types")) {
    for (const char* name : {"Title", "Status", "IconName", "ToolTip", "Menu"}) p[name] = 7;
    options.menu = "none";
  }
  return options;
}

}  // namespace fake

Q_DECLARE_METATYPE(fake::Pixmap)
Q_DECLARE_METATYPE(fake::ToolTip)
