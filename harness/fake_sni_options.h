#pragma once

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusArgument>
#include <QString>
#include <QVariantMap>

#include "harness/fake_sni_menu.h"

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
  int registerAgain = 0;
  QVariantMap properties;
  int iconSide = 22;
  bool wrongBytes = false;
  bool neverAnswer = false;
  bool noGetAll = false;
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
      "Standard input: icon-name TEXT, status TEXT, menu-renumber (gives its entries new ids), "
      "menu-label ID TEXT, menu-layout error|never (what it answers from now on), menu-storm (it "
      "announces a change every 20 ms).");
  parser.addHelpOption();
  const QList<QCommandLineOption> known = {
      {"register", "unique name or both, with the path", "form", "unique"},
      {"items", "items of one connection", "n", "1"},
      {"register-again", "times every item is registered once more", "n", "0"},
      {"no-id", "no such property"},
      {"title-bytes", "length of a long Title", "n", "0"},
      {"status", "Status", "text", "Active"},
      {"label-bytes", "length of a long XAyatanaLabel", "n", "0"},
      {"icon-name", "IconName", "text"},
      {"icon-size", "side of IconPixmap; 0 for none", "n", "22"},
      {"pixmap-bytes-wrong", "the pixmap's bytes do not fit its size"},
      {"tooltip", "title of the ToolTip", "text"},
      {"tooltip-as-string", "ToolTip is a mere string"},
      {"wrong-types", "Title, Status and icon properties are numbers"},
      {"never-answer", "no property is ever answered"},
      {"slow", "ms before properties are answered", "ms", "0"},
      {"no-get-all", "GetAll is unknown"},
      {"storm", "NewIcon signals per second", "hz", "0"},
      {"storm-changes", "the icon really changes with each"},
      {"menu", "full, none, silent", "kind", "full"},
      {"menu-entries", "entries of the menu", "n", "7"},
      {"menu-depth", "levels of submenus", "n", "1"},
      {"lazy-menu", "submenus are empty until they are about to be shown"},
      {"lazy-root", "the whole menu is"},
      {"about-to-show",
       "answer: false, true, error, empty, missing, never, late-error (filled then)", "kind",
       "false"},
      {"menu-slow", "ms before menu calls are answered", "ms", "0"},
      {"menu-fills-after", "ms from the first AboutToShow on; it is empty before", "ms", "0"},
      {"unexport-after", "takes the objects away", "ms", "0"},
      {"quit-after", "ends", "ms", "0"},
  };
  parser.addOptions(known);
  parser.process(application);

  const auto number = [&](const char* name) { return parser.value(name).toInt(); };
  Options options;
  options.registration = parser.value("register");
  options.items = number("items");
  options.registerAgain = number("register-again");
  options.iconSide = number("icon-size");
  options.wrongBytes = parser.isSet("pixmap-bytes-wrong");
  options.neverAnswer = parser.isSet("never-answer");
  options.noGetAll = parser.isSet("no-get-all");
  options.slowMs = number("slow");
  options.stormHz = number("storm");
  options.stormChanges = parser.isSet("storm-changes");
  options.unexportAfterMs = number("unexport-after");
  options.quitAfterMs = number("quit-after");
  options.menu = parser.value("menu");
  options.menuOptions = {number("menu-entries"),        number("menu-depth"),
                         parser.isSet("lazy-menu"),     parser.isSet("lazy-root"),
                         parser.value("about-to-show"), options.menu == "silent",
                         number("menu-slow"),           number("menu-fills-after")};
  if (options.menuOptions.fillsAfterMs > 0) options.menuOptions.lazyRoot = true;

  QVariantMap& p = options.properties;
  p["Category"] = "ApplicationStatus";
  if (!parser.isSet("no-id")) p["Id"] = "fake-sni";
  p["Title"] = "Fake item";
  if (number("title-bytes") > 0) p["Title"] = QString(number("title-bytes"), 'x');
  p["Status"] = parser.value("status");
  if (parser.isSet("icon-name")) p["IconName"] = parser.value("icon-name");
  if (number("label-bytes") > 0) p["XAyatanaLabel"] = QString(number("label-bytes"), 'x');
  if (parser.isSet("tooltip")) {
    const QString tip = parser.value("tooltip");
    p["ToolTip"] = parser.isSet("tooltip-as-string")
                       ? QVariant(tip)
                       : QVariant::fromValue(ToolTip{tip, "<b>more</b> of it"});
  }
  if (parser.isSet("wrong-types")) {
    for (const char* name : {"Title", "Status", "IconName", "ToolTip", "Menu"}) p[name] = 7;
    options.menu = "none";
  }
  return options;
}

}  // namespace fake

Q_DECLARE_METATYPE(fake::Pixmap)
Q_DECLARE_METATYPE(fake::ToolTip)
