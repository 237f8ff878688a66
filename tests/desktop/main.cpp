#include <gtest/gtest.h>

#include <QApplication>

// The test process draws nothing on the desktops it starts: it is a program of its own on an
// invisible platform, so that parts of the programs that need a toolkit can be tried in it too.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
