#pragma once

#include <QObject>

#include "common/base/callback_list.h"
#include "core/ports/window_capture.h"
#include "utility/bar_client/bar_connection.h"

namespace tarnwick {

// Pictures of the bar's items, which the bar draws alone at the asked size. An item's window is the
// item itself, its window's id the item's.
class BarWindowCapture : public QObject, public WindowCapture {
  Q_OBJECT

 public:
  BarWindowCapture(MainLoop& loop, BarConnection& bar) : loop_(loop), bar_(bar) {
    connect(&bar, &BarConnection::accessChanged, this, [this] { accessChanged_.notify(); });
  }

  bool preflight() override;
  void request() override;
  Registration onAccessChanged(std::function<void()> callback) override {
    return accessChanged_.add(std::move(callback));
  }
  void windows(std::function<void(std::optional<std::vector<CapturableWindow>>)> callback) override;
  void capture(std::uint64_t window, int pixelWidth, int pixelHeight,
               std::function<void(std::optional<Bitmap>)> callback) override;

 private:
  template <class T>
  void ask(const QString& method, const QVariantList& arguments,
           std::function<std::optional<T>(const QDBusMessage&)> parse,
           std::function<void(std::optional<T>)> callback);

  MainLoop& loop_;
  BarConnection& bar_;
  Duration blockedUntil_{};  // nothing is asked before: the bar has let a deadline pass
  CallbackList accessChanged_;
};

}  // namespace tarnwick
