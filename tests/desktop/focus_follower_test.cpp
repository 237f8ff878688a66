#include "utility/settings/focus_follower.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>

#include "harness/wait.h"

namespace tarnwick::test {
namespace {

// The toolkit itself is content with a field whose caret can be seen.
TEST(FocusFollower, BringsTheWholeControlIntoSight) {
  constexpr int height = 200, place = 300;
  QScrollArea area;
  auto* const form = new QWidget;
  form->setFixedSize(100, 1000);
  auto* const field = new QLineEdit(form);
  field->setGeometry(10, place, 80, 40);
  area.setWidget(form);
  area.resize(120, height);
  const FocusFollower follower(area);
  area.show();
  area.activateWindow();
  ASSERT_TRUE(waitFor([&] { return area.isActiveWindow(); }));
  for (const int scrolled : {0, place - height + 35, place + 5, 600}) {
    field->clearFocus();
    area.verticalScrollBar()->setValue(scrolled);
    field->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(area.viewport()->rect().contains(
        QRect(field->mapTo(area.viewport(), QPoint()), field->size())))
        << scrolled;
  }
}

}  // namespace
}  // namespace tarnwick::test
