#include "common/x11/window_hints.h"

#include <QList>
#include <QSysInfo>
#include <algorithm>

namespace tarnwick::bar::x11 {

namespace {

constexpr std::size_t maxWindows = 1000;
constexpr std::size_t maxWindowsOfOne = 16;

}  // namespace

std::pair<QString, QString> windowClassOf(PropertyRead& property) {
  const auto parts = property.bytes().first.split('\0');
  const auto part = [&](qsizetype i) {
    return i < parts.size() ? QString::fromUtf8(parts[i].left(256)) : QString();
  };
  return {part(0), part(1)};
}

WindowHintsRead::WindowHintsRead(xcb_window_t window)
    : gtkApplicationId_(window, atoms().gtkApplicationId),
      kdeDesktopFile_(window, atoms().kdeDesktopFile),
      bamfDesktopFile_(window, atoms().bamfDesktopFile),
      windowClass_(window, XCB_ATOM_WM_CLASS) {}

desktop::WindowHints WindowHintsRead::take() {
  desktop::WindowHints hints;
  for (auto* id : {&gtkApplicationId_, &kdeDesktopFile_, &bamfDesktopFile_}) {
    if (hints.applicationId.empty()) hints.applicationId = id->text().toStdString();
  }
  const auto [instance, windowClass] = windowClassOf(windowClass_);
  hints.windowClass = windowClass.toStdString();
  hints.windowInstance = instance.toStdString();
  return hints;
}

std::vector<desktop::WindowHints> windowHints(std::int32_t pid) {
  if (!connection() || pid <= 0) return {};
  auto windows = PropertyRead(rootWindow(), atoms().netClientList, maxWindows * 4).numbers();

  std::vector<std::pair<PropertyRead, PropertyRead>> owners;  // process and machine
  owners.reserve(windows.size());
  for (const auto window : windows) {
    owners.emplace_back(PropertyRead(window, atoms().netWmPid, 4),
                        PropertyRead(window, XCB_ATOM_WM_CLIENT_MACHINE));
  }
  const QString here = QSysInfo::machineHostName();
  std::vector<WindowHintsRead> reads;
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const auto told = owners[i].first.numbers();
    const QString machine = owners[i].second.text();
    const bool ofProcess = told == std::vector{static_cast<std::uint32_t>(pid)};
    const bool local = machine.isEmpty() || machine == here;
    if (ofProcess && local && reads.size() < maxWindowsOfOne) reads.emplace_back(windows[i]);
  }
  std::vector<desktop::WindowHints> hints;
  hints.reserve(reads.size());
  for (auto& read : reads) hints.push_back(read.take());
  return hints;
}

}  // namespace tarnwick::bar::x11
