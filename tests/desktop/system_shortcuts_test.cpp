#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "harness/desktop_test.h"
#include "utility/desktop_shortcuts/combination.h"
#include "utility/desktop_shortcuts/running_desktop.h"

namespace tarnwick::shortcuts {

void PrintTo(const Combination& combination, std::ostream* out) {
  *out << combination.modifiers << ' ' << combination.key.toStdString() << combination.keyCode;
}

namespace {

using C = Combination;

TEST(SystemShortcuts, ReadWhatEachConfigurationBinds) {
  const auto openbox = [](const QByteArray& keyboard) {
    return openboxCombinations("<openbox_config xmlns='x'><keyboard>" + keyboard +
                               "</keyboard></openbox_config>");
  };
  const auto xfce = [](const QByteArray& custom, const QByteArray& standard) {
    const auto channel = [](const QByteArray& group, const QByteArray& bound) {
      return "<channel><property name='commands'><property name='" + group + "'>" + bound +
             "</property></property></channel>";
    };
    return xfceCombinations(channel("custom", custom), channel("default", standard));
  };
  const QByteArray f2 = "<property name='&lt;Alt&gt;F2' type='string' value='run'/>";
  const QByteArray f3 = "<property name='&lt;Super&gt;F3' type='string' value='find'/>";
  const QByteArray override = "<property name='override' type='bool' value='true'/>";
  const struct {
    const char* what;
    Combinations read;
    Combinations expected;
  } cases[] = {
      {"openbox, one of two keys a code",
       openbox("<keybind key='C-A-Left 0x26'><action/></keybind>"),
       {{C::control | C::alt, "Left", 0}, {0, "", 38}}},
      {"openbox, a chain",
       openbox("<keybind key='W-a'><keybind key='b'><action/></keybind>"
               "</keybind>"),
       {{C::super, "a", 0}}},
      {"openbox, without action", openbox("<keybind key='W-a'/>"), {}},
      {"openbox, no combination", openbox("<keybind key='Q-a'><action/></keybind>"), {}},
      {"openbox, cut off",
       openboxCombinations("<openbox_config><keyboard><keybind key='W-a'>"
                           "<action/></keybind>"),
       {}},
      {"openbox, deep", openboxCombinations(QByteArray("<a>").repeated(100000)), {}},
      {"xfce", xfce(f2, f3), {{C::alt, "F2", 0}, {C::super, "F3", 0}}},
      {"xfce, defaults not in force", xfce(f2 + override, f3), {{C::alt, "F2", 0}}},
      {"xfce, damaged", xfce("<oops", f3), {}},
      {"kde",
       kdeCombinations("[kwin]\n_k_friendly_name=KWin\nKill=Meta+Ctrl+Esc,none,Kill\n"
                       "Close=Alt+F4\\tMeta+\\,,Alt+F4,Close\nOff=none,Meta+K,Off\nNo=,,\n"
                       "Play=Media Play,,Play\n"),
       {{C::super | C::control, "Escape", 0},
        {C::alt, "F4", 0},
        {C::super, ",", 0},
        {0, "XF86AudioPlay", 0}}},
      {"kde, no configuration", kdeCombinations(QByteArray("\0\xff=\xff\\", 5)), {}},
      {"i3",
       i3Combinations("set $mod Mod4\nbindsym --release $mod+Shift+q kill\n"
                      "# bindsym $mod+a nop\nmode \"x\" {\n bindsym b nop\n}\n"
                      "bindcode Mod1+38 nop\nbindsym $mod+c"),
       {{64 | C::shift, "q", 0}, {8, "", 38}}},
      {"i3, damaged", i3Combinations("bindsym\nbindsym ++++ x\nbindcode x+y z\n}\n"), {}},
      {"lxqt",
       lxqtCombinations("[General]\nMultipleActionsBehaviour=first\n"
                        "[Control%2BAlt%2BI.48]\nComment=x\nEnabled=true\n"
                        "[Super%2BE.1]\r\nEnabled=false\r\n[XF86Calculator.9]\n[%.%2\n"),
       {{C::control | C::alt, "I", 0}, {0, "XF86Calculator", 0}}},
      {"gsettings",
       gsettingsCombinations("a.b close ['<Primary><alt>F4', '<Super>q']\n"
                             "a.b off @as []\na.b none 'disabled'\na.b empty ['']\n"
                             "a.b path ['/org/x/']\na.b hostile '<Alt'\n"),
       {{C::control | C::alt, "F4", 0}, {C::super, "q", 0}}},
      {"gsettings, endless", gsettingsCombinations("a b '" + QByteArray(1 << 20, 'x') + "'"), {}},
  };
  for (const auto& one : cases) EXPECT_EQ(one.read, one.expected) << one.what;
}

TEST(SystemShortcuts, OfI3HaveWhatItsConfigurationIncludes) {
  const QTemporaryDir home;
  const auto config = [&](const QString& name, const QByteArray& text) {
    const QFileInfo place(home.filePath("i3 x'y/" + name));
    QFile file(place.filePath());
    return QDir().mkpath(place.path()) && file.open(QIODevice::WriteOnly) && file.write(text) > 0;
  };
  ASSERT_TRUE(config("config",
                     "set $m Mod4\n include parts/*.conf\ninclude $(echo x)\n"
                     "bindsym $m+c nop\n"));
  ASSERT_TRUE(config("parts/1.conf", "bindsym $m+a nop\ninclude ../config\ninclude missing\n"));
  ASSERT_TRUE(config("parts/2.conf", "bindsym $m+b nop"));
  QStringList files;
  EXPECT_EQ(i3Combinations(i3Text(home.filePath("i3 x'y/config"), files)),
            (Combinations{{64, "a", 0}, {64, "b", 0}, {64, "c", 0}}));
  EXPECT_EQ(files.size(), 3);
}

}  // namespace
}  // namespace tarnwick::shortcuts
