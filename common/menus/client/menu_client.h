#pragma once

#include <QDBusMessage>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "common/menus/client/menu_types.h"

namespace tarnwick {

class LayoutParser;

// One menu of another application (com.canonical.dbusmenu), read and operated over the session bus.
// Nothing here waits for the owner: answers come as callbacks in a later turn of the loop, and a
// callback is dropped with its context object or with the client. Shows nothing itself.
class MenuClient : public QObject {
  Q_OBJECT

 public:
  enum class Failure : std::uint8_t {
    none,
    absent,    // the owner or its menu object is not there
    noAnswer,  // time-out, or an answer that is no layout
  };
  using Done = std::function<void(Failure)>;

  static constexpr std::chrono::milliseconds defaultPatience{300};

  // `busName` is best the owner's unique name: answers then surely come from that process.
  MenuClient(QString busName, QString path, QObject* parent = nullptr);
  ~MenuClient() override;

  // The menu as last read; nullptr before the first layout came. Replaced whenever layoutChanged is
  // emitted.
  const MenuEntry* root() const { return root_ ? &*root_ : nullptr; }
  const MenuEntry* entry(int id) const;

  // Tells the owner that the menu below `id` (0 for the whole) is about to be shown and has opened,
  // then reads its layout, whatever the owner answered and after `patience` at the latest; when the
  // owner is later still, the layout is read once more. layoutChanged comes before `done`.
  void open(int id, QObject* context, Done done,
            std::chrono::milliseconds patience = defaultPatience);

  // Only reads the layout below `id` again. At most one such reading is under way at a time, with
  // one more after it for all that was asked for meanwhile.
  void refresh(int id);
  // Whether the owner has announced changes that are not read yet, or could not be read.
  bool isOutdated() const { return reading_ || wanted_ || missed_; }
  // Reads the whole menu, beginning now: layoutChanged comes before `done`, which comes after
  // `patience` at the latest with noAnswer.
  void read(Done done, std::chrono::milliseconds patience);

  // Performs an entry and tells the owner that the submenus of `opened` (from the menu's root to
  // the innermost) have closed, after it has answered or 1 s. `time` is the X server's time of the
  // user's event in ms, 0 for none.
  void click(int id, std::vector<int> opened, quint32 time);

  // Tells the owner that the submenu `id` has closed. With 0, the whole, the owner's updates are no
  // longer followed until the next open().
  void close(int id, quint32 time = 0);

  // Whether calls are under way that a deletion would cut short: those of click().
  bool isFinishing() const { return finishing_ > 0; }

 signals:
  // The part of the menu below `parent` was read again, or an entry's properties changed.
  void layoutChanged(int parent);
  // isFinishing() became false.
  void finished();

 private slots:
  void onLayoutUpdated(const QDBusMessage& message);
  void onPropertiesUpdated(const QDBusMessage& message);

 private:
  struct Opening;

  QDBusMessage call(const QString& method, const QVariantList& arguments) const;
  QDBusMessage eventCall(int id, const QString& event, quint32 time) const;
  void fetch(int id, Done done, std::chrono::milliseconds patience);
  void parse(int id, std::shared_ptr<LayoutParser> parser, Done done);
  bool merge(int id, MenuEntry layout);
  void setSubscribed(bool on);
  void runRefresh();

  const QString busName_;
  const QString path_;
  std::optional<MenuEntry> root_;
  mutable QHash<int, const MenuEntry*> index_;  // of root_; empty until it is asked for
  std::optional<int> wanted_;                   // to be read again
  bool reading_ = false;                        // a refresh is under way
  bool missed_ = false;                         // the last refresh failed
  bool subscribed_ = false;
  int finishing_ = 0;
  QElapsedTimer signalsSince_;
  int signals_ = 0;  // of properties since then
  QTimer refreshTimer_;
};

}  // namespace tarnwick
