#pragma once

#include <QObject>

#include "common/files/json_file.h"

namespace tarnwick::bar {

enum class ClockHours : std::uint8_t { locale, twelve, twentyFour };

// What the user can set about the bar.
struct BarOptions {
  ClockHours clockHours = ClockHours::locale;
  bool showDate = false;
  bool showApplicationName = true;
  int iconSide = 18;  // points: 16, 18, 20 or 22
  bool operator==(const BarOptions&) const = default;
};

inline constexpr int iconSides[] = {16, 18, 20, 22};

// The options and their file, one JSON object: "clock" ("locale", "12", "24"), "date",
// "application-name" (booleans), "icon-size". What is missing or wrong there reads as its default.
class BarSettings : public QObject {
  Q_OBJECT

 public:
  explicit BarSettings(desktop::JsonFile file, QObject* parent = nullptr);

  const std::filesystem::path& path() const { return file_.path(); }

  const BarOptions& options() const { return options_; }
  // Takes effect at once and is stored.
  void set(const BarOptions& options);
  // Reads the file again.
  void refresh();

 signals:
  void changed();

 private:
  void take(const BarOptions& options);

  desktop::JsonFile file_;
  BarOptions options_;
};

}  // namespace tarnwick::bar
