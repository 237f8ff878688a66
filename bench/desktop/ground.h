#pragma once

#include <unistd.h>

#include <QString>
#include <chrono>
#include <stdexcept>
#include <string>

#include "bench/desktop/probe.h"
#include "harness/bar_proxy.h"
#include "harness/private_desktop.h"
#include "harness/wait.h"

namespace tarnwick::bench {

using namespace std::chrono_literals;
using test::BarProxy;
using test::letPass;
using test::PrivateDesktop;
using test::Program;
using test::waitFor;

inline constexpr auto fakeClient = "fake_sni_client";

// Ends the section that is measured.
[[noreturn]] inline void fail(const std::string& what) {
  throw std::runtime_error(what);
}

// A desktop with the bar on it.
struct Ground {
  Ground() {
    if (!desktop.failure().isEmpty()) fail(desktop.failure().toStdString());
    desktop.grant(PrivateDesktop::pathOf("tarnwick"), {"accessibility", "screen-capture"});
    desktop.grant("/proc/self/exe", {"accessibility", "screen-capture"});
  }

  Program& startBar() {
    Program& program = desktop.start("tarnwick-bar");
    if (!waitFor([&] { return bar.running(); })) fail("no bar");
    return program;
  }
  Program& startUtility() {
    Program& program = desktop.start("tarnwick");
    if (!waitFor([&] { return bar.find("tarnwick.boundary").has_value(); })) fail("no utility");
    return program;
  }
  void waitForItems(std::size_t count) {
    if (!waitFor([&] { return bar.items().size() == count; }, 60s)) fail("items are missing");
  }
  double boundaryLength() {
    const auto item = bar.find("tarnwick.boundary");
    return item ? item->frame.width() : 0;
  }

  PrivateDesktop desktop{QSize(1920, 1080)};
  BarProxy bar{desktop.bus()};
};

// Asks again and again, every millisecond, without the event loop.
template <typename Condition>
Clock::time_point momentOf(Condition condition, const char* what) {
  const auto end = Clock::now() + 30s;
  while (!condition()) {
    if (Clock::now() > end) fail(what);
    usleep(1000);
  }
  return Clock::now();
}

}  // namespace tarnwick::bench
