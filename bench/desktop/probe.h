#pragma once

#include <xcb/xcb.h>

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QString>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick::bench {

using Clock = std::chrono::steady_clock;

inline double milliseconds(Clock::duration length) {
  return std::chrono::duration<double, std::milli>(length).count();
}

// What the kernel has counted for a process so far.
struct Usage {
  long wakeUps = 0;         // voluntary context switches of all its threads
  double cpu = 0;           // milliseconds, of all its threads
  double anonymous = 0;     // KiB
  double proportional = 0;  // KiB: shared pages by the number of their sharers
};
Usage usageOf(qint64 pid);

// A connection to an X server of its own.
class Display {
 public:
  explicit Display(const QString& name);
  ~Display();
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  // From now on windows that get mapped on the screen are noticed.
  void watchMapping();
  // Waits for the mapping of a window as wide as the screen; false after 20 s.
  bool waitForWideWindow();

  // Whether a pixel of this colour (0xRRGGBB) is in a row of the screen.
  bool hasColour(std::uint32_t colour, int y);

 private:
  xcb_connection_t* connection_;
  const xcb_screen_t* screen_;
};

// Looks at a row of the screen every 0.3 ms, on a thread of its own, until a colour is in it.
class ColourWatch {
 public:
  ColourWatch(const QString& display, std::uint32_t colour, int y);
  ~ColourWatch();
  std::optional<Clock::time_point> seen() const;

 private:
  std::atomic<bool> stop_{false};
  std::atomic<Clock::rep> seen_{0};
  std::thread thread_;
};

// A well-behaved client with any number of items, each a square of one colour: as quick as a client
// can be, because it answers from memory and does nothing else.
class Items : public QDBusVirtualObject {
 public:
  Items(const QDBusConnection& bus, int count, std::uint32_t colour);
  ~Items() override;

  void registerAll();                    // does not wait
  void setColour(std::uint32_t colour);  // of all, and says so of the first
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
  QString introspect(const QString&) const override { return {}; }

 private:
  QDBusConnection bus_;
  const int count_;
  QVariantMap properties_;
};

// One line of the table: median, least and greatest of what was measured.
struct Row {
  std::string what;
  std::string unit;
  std::string budget;  // empty when there is none
  int decimals = 1;
};
void printHeader();
void print(const Row& row, const std::vector<double>& values);
double quantile(std::vector<double> values, double part);

}  // namespace tarnwick::bench
