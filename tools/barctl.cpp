// Lists the status items in the bar of this session, with the application identifiers by which
// Tarnwick knows their owners.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QTextStream>
#include <nlohmann/json.hpp>

#include "harness/bar_proxy.h"

using tarnwick::test::BarItem;
using tarnwick::test::BarItems;
using tarnwick::test::BarProxy;

namespace {

QString asJson(const BarItems& items) {
  nlohmann::json list = nlohmann::json::array();
  for (const BarItem& item : items) {
    list.push_back(
        {{"id", item.id},
         {"application", item.bundleId.toStdString()},
         {"pid", item.pid},
         {"kind", item.kind.toStdString()},
         {"hint", item.hint.toStdString()},
         {"title", item.title.toStdString()},
         {"frame", {item.frame.x(), item.frame.y(), item.frame.width(), item.frame.height()}}});
  }
  return QString::fromStdString(list.dump(2)) + '\n';
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  QTextStream out(stdout);
  QTextStream err(stderr);
  const QStringList arguments = QCoreApplication::arguments().mid(1);
  const bool json = arguments == QStringList{"--json"};
  if (!json && !arguments.isEmpty()) {
    err << "usage: barctl [--json]\n";
    return 2;
  }
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    err << "barctl: no session bus\n";
    return 1;
  }
  BarProxy bar(bus);
  BarItems items = bar.items();
  if (bar.error().endsWith(".AccessDenied")) {
    err << "barctl: the bar asks you whether barctl may see other applications' items.\n"
           "barctl: waiting for your answer in its dialog; Ctrl+C ends the waiting.\n"
        << Qt::flush;
    bar.requestAccess("accessibility");
    items = bar.items();
  }
  if (bar.error().endsWith(".AccessDenied")) {
    err << "barctl: you have not allowed it. The bar's privacy settings can change that.\n";
    return 1;
  }
  if (!bar.error().isEmpty()) {
    err << "barctl: " << bar.error() << "\n";
    return 1;
  }
  out << (json ? asJson(items) : describe(items));
  return 0;
}
