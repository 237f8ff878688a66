#include "harness/program.h"

#include <signal.h>
#include <sys/prctl.h>

#include <QFile>
#include <QFileInfo>

#include "harness/wait.h"

namespace tarnwick::test {
namespace {

QByteArray contents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

Program::Program(const QString& file, const QStringList& arguments,
                 const QProcessEnvironment& environment, const QString& log, Input input)
    : name_(QFileInfo(file).fileName()), log_(log) {
  process_.setProcessEnvironment(environment);
  if (input == Input::none) {
    process_.setStandardInputFile(QProcess::nullDevice());
  }
  process_.setStandardOutputFile(log + ".out");
  process_.setStandardErrorFile(log + ".err");
  process_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
  process_.start(file, arguments);
  process_.waitForStarted();
}

Program::~Program() {
  kill();
}

int Program::exitCode() const {
  return running() || process_.exitStatus() != QProcess::NormalExit ? -1 : process_.exitCode();
}

QByteArray Program::output() const {
  return contents(log_ + ".out");
}
QByteArray Program::errors() const {
  return contents(log_ + ".err");
}

void Program::write(const QByteArray& line) {
  process_.write(line + '\n');
}

void Program::signal(int number) const {
  if (running()) {
    ::kill(static_cast<pid_t>(pid()), number);
  }
}

void Program::kill() {
  process_.kill();
  process_.waitForFinished();
}

bool Program::terminate() {
  process_.terminate();
  return waitForEnd();
}

bool Program::waitForEnd(std::chrono::milliseconds deadline) {
  return waitFor([this] { return !running(); }, deadline);
}

void Program::freeze() const {
  signal(SIGSTOP);
  const QString stat = QStringLiteral("/proc/%1/stat").arg(pid());
  (void)waitFor([&] {
    const QByteArray line = contents(stat);
    return line.isEmpty() || line.mid(line.lastIndexOf(')') + 2).startsWith('T');
  });
}

void Program::thaw() const {
  signal(SIGCONT);
}

}  // namespace tarnwick::test
