#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QVariantList>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "common/barprotocol/bar_items.h"
#include "core/ports/main_loop.h"
#include "utility/bar_client/bar_launcher.h"

namespace tarnwick {

// The one client of org.tarnwick.MenuBar1. Follows the bar as it comes and goes, has one started
// when none is there, and remembers what the bar allows this process. Every message goes to the one
// bar whose coming was announced last, so that an item's id never reaches another bar.
class BarConnection : public QObject {
  Q_OBJECT

 public:
  BarConnection(MainLoop& loop, const QDBusConnection& bus);

  // A bar of the version we speak is there.
  bool isPresent() const { return present_; }

  // Whether the bar allows a capability ("accessibility", ...). Known without asking; false until
  // a bar has told, and while none is there what the last one said.
  bool hasAccess(const QString& capability) const;
  // Has the bar ask the user, who may take as long as they like.
  void requestAccess(const QString& capability);

  // Every item of the bar, in one round trip. Waits for at most half a second; when the bar did not
  // answer in time the next second's calls fail at once. Absent without a bar, without the
  // capability "accessibility" and without an answer.
  std::optional<std::vector<BarItem>> items();
  // The frame of an item of this process, for which no capability is needed. Waits as items() does.
  std::optional<Rect> ownFrame(std::uint64_t id);

  // Sends a message that wants no answer; dropped when there is no bar.
  void send(const QString& method, const QVariantList& arguments);

  // Calls a method. While `context` lives `answered` is called once, in a later turn: with the
  // reply or the error, or with an invalid message when there is no bar or it has gone.
  void call(const QString& method, const QVariantList& arguments, QObject* context,
            std::function<void(const QDBusMessage&)> answered);

 signals:
  void appeared();
  void vanished();
  // Of one of our own items. `button` counts as X does: 1 left, 2 middle, 3 right.
  void itemClicked(quint64 id, uint button, uint modifiers, QPointF at);
  void applicationAppeared(int pid);
  void accessChanged();  // hasAccess() may answer differently

 private slots:
  void onBarSignal(const QDBusMessage& message);

 private:
  void setOwner(const QString& owner);
  void greet();
  std::optional<QDBusMessage> waitFor(const QString& method, const QVariantList& arguments);
  void askAccess(const QString& capability);
  void ask(QDBusMessage message, QObject* context,
           std::function<void(const QDBusMessage&)> answered);
  QDBusMessage message(const QString& method, const QVariantList& arguments) const;

  MainLoop& loop_;
  QDBusConnection bus_;
  BarLauncher launcher_;
  QString owner_;  // unique name of the bar; empty when there is none
  bool ownerKnown_ = false;
  bool present_ = false;
  std::map<QString, bool> access_;
  Duration blockedUntil_{};  // no items() before
};

}  // namespace tarnwick
