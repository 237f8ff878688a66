#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include "harness/bar_proxy.h"
#include "harness/private_desktop.h"
#include "harness/wait.h"

namespace tarnwick::test {

// A test with a desktop of its own. Shows what the desktop's programs printed when it fails.
class DesktopTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(desktop.failure(), QString()); }
  void TearDown() override {
    if (HasFailure()) {
      std::cerr << qPrintable(desktop.logs());
    }
  }

  PrivateDesktop desktop;
};

}  // namespace tarnwick::test

inline std::ostream& operator<<(std::ostream& out, const QString& text) {
  return out << '"' << qPrintable(text) << '"';
}
