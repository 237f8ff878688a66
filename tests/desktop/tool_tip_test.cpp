#include <gtest/gtest.h>

#include "bar/window/tool_tip_text.h"
#include "harness/desktop_test.h"

namespace tarnwick::bar {
namespace {

TEST(ToolTipTest, ForeignMarkupIsReducedToWhatIsSafe) {
  const struct {
    QString given, shown;
  } cases[] = {
      {"", ""},
      {"  \n ", ""},
      {"a < b & c\nd", "a &lt; b &amp; c<br>d"},
      {"<b>Volume</b><br/>80 %", "<b>Volume</b><br>80 %"},
      {"<b class='x' onclick=y>V</b>", "<b>V</b>"},
      {"see <a href='file:///etc/passwd'>this</a><img src='http://host/x.png'>", "see this"},
      {"<p>one</p><p>two</p>", "one<br>two"},
      {"<style>p { color: red }</style>text<p>", "text"},
      {"<b>cut <img src='", "<b>cut "},
      {"<br></b></i>x<br>", "x"},
      {"&lt;img src=x&gt; <b>&</b>", "&lt;img src=x&gt; <b>&amp;</b>"},
  };
  for (const auto& [given, shown] : cases) {
    EXPECT_EQ(toolTipMarkup(given), shown.isEmpty() ? QString() : "<qt>" + shown + "</qt>")
        << given;
  }
  EXPECT_LE(toolTipMarkup("<b>" + QString(1 << 20, 'x')).size(), 1020);
  EXPECT_LE(toolTipMarkup(QString("<p>x").repeated(1000)).count("<br>"), 20);
}

}  // namespace
}  // namespace tarnwick::bar
