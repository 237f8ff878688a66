#pragma once

#include <QWidget>

#include "bar/access/capability.h"

namespace tarnwick::bar {

// Asks the user whether a program may have a capability. Not modal; closing it means no.
class AccessDialog : public QWidget {
  Q_OBJECT

 public:
  struct Subject {
    QString name;         // of the application; empty when unknown
    QString icon;         // theme name or absolute path; empty when unknown
    QString executable;   // absolute path: what the answer is remembered for
    QString commandLine;  // tells programs apart that share an interpreter
  };

  AccessDialog(const Subject& subject, Capability capability);

 signals:
  void answered(bool allow);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
};

}  // namespace tarnwick::bar
