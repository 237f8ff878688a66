#pragma once

#include <QObject>
#include <QWidget>
#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "bar/access/access_store.h"
#include "bar/access/callers.h"
#include "common/identity/identity.h"

namespace tarnwick::bar {

class AccessDialog;

// Says which connection may do what, by the executable of its process, and asks the user. A "Don't
// Allow" counts for that executable as long as the bar runs or until forgetRefusals(), so that it
// cannot pester.
class AccessControl : public QObject {
  Q_OBJECT

 public:
  // `bringToUser` shows a window to the user, wherever it was.
  AccessControl(Callers& callers, AccessStore& store, desktop::IdentityResolver& identities,
                std::function<void(QWidget&)> bringToUser, QObject* parent = nullptr);
  ~AccessControl() override;

  bool allows(qint32 pid, Capability capability);

  // Calls `then` at once when the answer stands, else when the user has answered; never when the
  // asking connection `name` goes before. One dialog serves all who ask for the same thing, and
  // there is one at a time; too many askers are told no.
  void request(const QString& name, qint32 pid, Capability capability,
               std::function<void(bool)> then);

  // Whether the question that is shown is one of this connection's.
  bool asks(const QString& name) const;
  // Puts the question that is shown in front, with the keyboard.
  void presentQuestion();

  // Whoever has been told "Don't Allow" may ask again.
  void forgetRefusals() { refused_.clear(); }

 signals:
  // For this connection an answer has changed.
  void changed(const QString& name, tarnwick::bar::Capability capability, bool granted);

 private:
  using Question = std::pair<std::string, Capability>;  // executable, what for
  struct Asker {
    QString name;
    qint32 pid = 0;
    std::function<void(bool)> then;
  };
  struct Open {
    Question question;
    std::vector<Asker> askers;
    std::unique_ptr<AccessDialog> dialog;  // of the first question only
  };

  void showFirst();
  void answer(const Question& question, bool allow);
  void settle(Question question, bool granted);
  Open takeOpen(std::vector<Open>::iterator place);
  void forget(const QString& name);
  void storeChanged(const std::string& executable, Capability capability, bool granted);

  Callers& callers_;
  AccessStore& store_;
  desktop::IdentityResolver& identities_;
  const std::function<void(QWidget&)> bringToUser_;
  std::vector<Open> open_;  // in the order of asking
  std::set<Question> refused_;
};

}  // namespace tarnwick::bar
