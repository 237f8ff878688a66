#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <chrono>
#include <cstdint>

namespace tarnwick::test {

// One running program of a test's desktop. Ends with the object, and with this process.
class Program {
 public:
  enum class Input : std::uint8_t { none, pipe };

  // What it prints goes to <log>.out and <log>.err.
  Program(const QString& file, const QStringList& arguments, const QProcessEnvironment& environment,
          const QString& log, Input input);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  const QString& name() const { return name_; }
  qint64 pid() const { return process_.processId(); }
  bool running() const { return process_.state() == QProcess::Running; }
  // -1 when a signal ended it or it has not ended.
  int exitCode() const;
  QByteArray output() const;
  QByteArray errors() const;
  void write(const QByteArray& line);  // to its standard input, with a line end

  void signal(int number) const;
  void kill();  // SIGKILL, and waits
  // Asks it to end (SIGTERM) and waits; false when it did not within the deadline.
  bool terminate();
  bool waitForEnd(std::chrono::milliseconds deadline = std::chrono::seconds(20));
  // Stops it (SIGSTOP), and waits until it stands still; and lets it go on.
  void freeze() const;
  void thaw() const;

 private:
  QString name_;
  QString log_;
  QProcess process_;
};

}  // namespace tarnwick::test
