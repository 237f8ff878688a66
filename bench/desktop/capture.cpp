#include <QDir>
#include <QFileInfo>

#include "bench/desktop/ground.h"
#include "bench/desktop/sections.h"
#include "common/identity/identity.h"
#include "core/capture/status_icon_capturer.h"
#include "core/menubar/menu_bar_scanner.h"
#include "utility/bar_client/bar_accessibility.h"
#include "utility/bar_client/bar_connection.h"
#include "utility/bar_client/bar_snapshots.h"
#include "utility/bar_client/bar_window_capture.h"
#include "utility/bar_client/bar_workspace.h"
#include "utility/loop/qt_application.h"
#include "utility/loop/qt_main_loop.h"
#include "utility/pictures/png_files.h"

namespace tarnwick::bench {

// The utility's own capturer, in this process: windows listed, 20 items pictured, files written.
void capture() {
  constexpr int count = 20;
  Ground ground;
  ground.startBar();
  ground.desktop.start(fakeClient, {"--items", QString::number(count)});
  ground.waitForItems(count);
  letPass(1s);
  QtMainLoop loop;
  QtApplication application;
  desktop::IdentityResolver identities;
  const auto bus = ground.desktop.connect();
  BarConnection connection(loop, *bus);
  BarSnapshots snapshots(connection);
  BarAccessibility accessibility(connection, snapshots);
  BarWorkspace workspace(connection, snapshots, identities, "bench");
  BarWindowCapture windows(loop, connection);
  const QString folder = ground.desktop.folder("data") + "/pictures";
  PngFiles files(folder.toStdString());
  const MenuBarScanner scanner(accessibility, workspace, application);
  if (!waitFor([&] { return accessibility.isProcessTrusted() && windows.preflight(); })) {
    fail("not trusted");
  }
  auto items = scanner.scan();
  for (std::size_t i = 0; i < items.size(); ++i) items[i].bundleId += std::to_string(i);
  std::vector<double> runs;
  std::vector<double> captures;
  for (int run = 0; run < 20; ++run) {
    const auto capturer = std::make_shared<StatusIconCapturer>(loop, windows, files);
    const auto start = Clock::now();
    const Task task = capturer->captureAll(items);
    if (!waitFor([&] { return task.isDone(); })) fail("no pictures");
    runs.push_back(milliseconds(Clock::now() - start));
    captures.push_back(runs.back() / count);
  }
  qint64 bytes = 0;
  const auto written = QDir(folder).entryInfoList(QDir::Files);
  if (written.size() != count) fail("pictures are missing");
  for (const QFileInfo& file : written) bytes += file.size();
  print({"capture run over 20 items, files written", "ms", "", 1}, runs);
  print({"one of them", "ms", "", 2}, captures);
  print({"cache of 20 pictures", "KiB", "", 1}, {static_cast<double>(bytes) / 1024});
}

}  // namespace tarnwick::bench
