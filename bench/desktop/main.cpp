// Measures both programs on a desktop of its own and prints a table. The names of sections as
// arguments run only those; without any all are run.
#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "bench/desktop/probe.h"
#include "bench/desktop/sections.h"

namespace tarnwick::bench {
namespace {

const std::vector<std::pair<std::string, std::function<void()>>> sections{
    {"pass", pass},       {"scan", scan},           {"pixels", pixels},     {"startup", startUp},
    {"storm", storm},     {"burst", burst},         {"idle", idle},         {"panel", panel},
    {"capture", capture}, {"shortcuts", shortcuts}, {"settings", settings}, {"menus", menus}};

}  // namespace
}  // namespace tarnwick::bench

int main(int argc, char** argv) {
  using namespace tarnwick::bench;
  // This process draws nothing on the desktop it measures.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const std::vector<std::string> wanted(argv + 1, argv + argc);
  for (const std::string& name : wanted) {
    if (std::none_of(sections.begin(), sections.end(),
                     [&](const auto& section) { return section.first == name; })) {
      std::fprintf(stderr, "There is no section %s; there are:", name.c_str());
      for (const auto& section : sections) std::fprintf(stderr, " %s", section.first.c_str());
      std::fputc('\n', stderr);
      return 2;
    }
  }
  int failed = 0;
  printHeader();
  for (const auto& [name, measure] : sections) {
    if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), name) == wanted.end()) continue;
    try {
      measure();
    } catch (const std::exception& problem) {
      std::fprintf(stderr, "%s: %s\n", name.c_str(), problem.what());
      ++failed;
    }
  }
  return failed == 0 ? 0 : 1;
}
