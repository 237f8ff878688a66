#include <xcb/xtest.h>

#include <QDir>
#include <QFile>

#include "bench/desktop/ground.h"
#include "bench/desktop/sections.h"

namespace tarnwick::bench {

namespace {

// Key codes of the X server.
constexpr std::uint8_t control = 37;
constexpr std::uint8_t super = 133;
constexpr std::uint8_t k = 45;

class Keyboard {
 public:
  explicit Keyboard(const QString& display)
      : connection_(xcb_connect(display.toLatin1().constData(), nullptr)) {}
  ~Keyboard() { xcb_disconnect(connection_); }
  Keyboard(const Keyboard&) = delete;
  Keyboard& operator=(const Keyboard&) = delete;

  void key(std::uint8_t code, bool down) {
    xcb_test_fake_input(connection_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, 0,
                        XCB_WINDOW_NONE, 0, 0, 0);
    xcb_flush(connection_);
  }

 private:
  xcb_connection_t* connection_;
};

// Looks without a pause: what is waited for comes within a millisecond.
void await(const Program& program, const QByteArray& line, int times) {
  const auto end = Clock::now() + 10s;
  while (program.output().count(line) < times) {
    if (Clock::now() > end) fail("no \"" + line.toStdString() + "\"");
  }
}

// 4,096 bindings in 1 MiB, half of them of keys that the keyboard does not have.
bool writeLargeConfiguration(const PrivateDesktop& desktop) {
  QByteArray keyboard;
  for (int i = 0; i < 4096; ++i) {
    const QByteArray key =
        i % 2 ? "F" + QByteArray::number(i / 2 % 12 + 1) : "nokey" + QByteArray::number(i);
    const QByteArray binding = "<keybind key='W-A-" + key + "'><action name='Execute'><command>";
    keyboard += binding + QByteArray(200 - binding.size(), 'x') + "</command></action></keybind>\n";
  }
  QDir(desktop.folder("config")).mkpath("openbox");
  QFile file(desktop.folder("config") + "/openbox/rc.xml");
  return file.open(QIODevice::WriteOnly) &&
         file.write("<openbox_config><keyboard>" + keyboard + "</keyboard></openbox_config>") > 0;
}

}  // namespace

// A program with shortcuts of its own on the same module and adapters as the utility.
void shortcuts() {
  Ground ground;
  Program& probe = ground.desktop.start("shortcut_probe");
  await(probe, "ready", 1);

  std::vector<double> registrations;
  for (int run = 1; run <= 20; ++run) {
    probe.write("many 100");
    if (!waitFor([&] { return probe.output().count("many ") == run; })) fail("no registrations");
    const auto words = probe.output().trimmed().split('\n').back().split(' ');
    if (words.value(2) != "100") fail("only " + words.value(2).toStdString() + " registered");
    registrations.push_back(words.value(1).toDouble() / 1000);
  }
  print({"registration of 100 shortcuts", "ms", "", 1}, registrations);

  if (!writeLargeConfiguration(ground.desktop)) fail("no configuration");
  std::vector<double> stays;
  int asked = 0;
  for (bool read = false; stays.size() < 100;) {
    probe.write("stay");
    if (!waitFor([&] { return probe.output().count("stay ") > asked; })) fail("no answer");
    const auto words = probe.output().trimmed().split('\n').back().split(' ');
    read = read || words.value(2).toInt() > 2000;
    if (read) stays.push_back(words.value(1).toDouble() / 1000);
    if (++asked > 1000) fail("the configuration is not read");
  }
  print({"question whether a shortcut is taken", "ms", "50", 2}, stays);

  probe.write("set a 40 4352");
  if (!waitFor([&] { return probe.output().contains("a taken"); })) fail("no shortcut");
  Keyboard keyboard(ground.desktop.display());
  keyboard.key(control, true);
  keyboard.key(super, true);
  std::vector<double> releases;
  constexpr int strikes = 500;
  const double before = usageOf(probe.pid()).cpu;
  for (int strike = 1; strike <= strikes; ++strike) {
    keyboard.key(k, true);
    await(probe, "down a\n", strike);
    const auto start = Clock::now();
    keyboard.key(k, false);
    await(probe, "up a\n", strike);
    releases.push_back(milliseconds(Clock::now() - start));
  }
  const double spent = usageOf(probe.pid()).cpu - before;
  keyboard.key(super, false);
  keyboard.key(control, false);
  print({"key release to action", "ms", "", 2}, releases);
  print({"CPU time of a key event", "ms", "", 3}, {spent / (2 * strikes)});
}

}  // namespace tarnwick::bench
