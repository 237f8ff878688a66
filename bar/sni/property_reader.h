#pragma once

#include <QBasicTimer>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QObject>
#include <QVariantMap>
#include <chrono>
#include <memory>

#include "bar/sni/item_address.h"

namespace tarnwick::bar {

// Keeps reading the properties of one StatusNotifierItem when its owner signals a change: at once
// after a quiet time, but one request under way at a time, at most 30 a second, fewer when signals
// come in floods or their contents take long. Waits for nothing; an owner that does not answer is
// asked four times (the fourth, while nothing was ever read, without a time-out), then again at its
// next signal.
class PropertyReader : public QObject {
  Q_OBJECT

 public:
  // `address.service` is the owner's unique name.
  explicit PropertyReader(ItemAddress address, QObject* parent = nullptr);
  ~PropertyReader() override;

  void start();
  // Reads again, now or as soon as that may be.
  void refresh();
  // Reads again once in ten seconds: some owners take their object away without a word.
  void checkLater();

 signals:
  void propertiesRead(const QVariantMap& values);
  // The object is not there (any more).
  void vanished();

 protected:
  void timerEvent(QTimerEvent* event) override;

 private slots:
  void onSignal(const QDBusMessage& signal);

 private:
  struct Collection;

  void subscribe(bool on);
  void read();
  std::chrono::milliseconds patience() const;
  void readOneByOne();
  void onAnswer(const QDBusMessage& reply);
  void succeed(const QVariantMap& values);
  void retry(bool absent);
  QDBusMessage propertiesCall(const QString& method, const QVariantList& arguments) const;

  const ItemAddress address_;
  QBasicTimer timer_;      // to the next reading
  QBasicTimer muteTimer_;  // signals are not listened to while it runs
  QBasicTimer checkTimer_;
  QElapsedTimer sinceRead_;
  int signals_ = 0;   // since the last reading began
  int attempts_ = 0;  // that failed, in a row
  int crowded_ = 0;   // refused by the bus, in a row
  qint64 spacing_;    // ms between the beginnings of readings
  bool subscribed_ = false;
  bool reading_ = false;
  bool dirty_ = false;
  bool everRead_ = false;
};

}  // namespace tarnwick::bar
