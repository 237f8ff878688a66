#pragma once

#include <QObject>
#include <memory>

class QSocketNotifier;

namespace tarnwick {

// While it lives, SIGTERM, SIGINT and SIGHUP make the application leave its event loop with exit
// code 0. One per process.
class QuitSignals : public QObject {
  Q_OBJECT

 public:
  QuitSignals();
  ~QuitSignals() override;

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tarnwick
