#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>

#include "core/shortcuts/recorder.h"
#include "utility/settings/form_controls.h"
#include "utility/settings/settings_form.h"

namespace tarnwick {

// What a recorder needs while it records.
struct Recording {
  // Takes the keyboard for a window until the registration is dropped. `press` swallows a press by
  // true; absent is one of a key without a name. `idle` is told when no key came for so long that
  // the keyboard has been given back.
  std::function<Registration(WId, std::function<bool(const std::optional<InputEvent>&)> press,
                             std::function<void()> idle)>
      grabKeyboard;
  // Each calls when something happened that ends the recording.
  std::vector<std::function<Registration(std::function<void()>)>> ends;
};

// A field in the shape of a search field in which a shortcut is recorded.
class RecorderWidget : public Field, private KeyboardShortcuts::RecorderField {
  Q_OBJECT

 public:
  using Recorder = KeyboardShortcuts::RecorderCocoa;

  RecorderWidget(std::variant<KeyboardShortcuts::Name, KeyboardShortcuts::Binding> storage,
                 const QString& title, Recording recording, Recorder::OnChange onChange = {});
  ~RecorderWidget() override;

  Recorder& recorder() { return recorder_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent*) override {}
  void mouseReleaseEvent(QMouseEvent*) override {}
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  void keyPressEvent(QKeyEvent* event) override { event->ignore(); }

 private:
  void beginWatching();
  void show(const KeyboardShortcuts::RecorderAppearance& appearance) override;
  void makeFirstResponder() override;
  void resignFirstResponder() override;
  void beep() override;
  Registration present(const Alert& alert, std::function<void(int)> answered) override;
  KeyedMenu mainMenu() override;
  bool comesByItself(Qt::FocusReason reason) const;
  QRectF cancelButton() const;

  const Recording recording_;
  KeyboardShortcuts::RecorderAppearance appearance_;
  std::vector<Registration> watches_;  // while recording
  QPointer<QWidget> window_;
  bool awaitsWindow_ = false;  // the focus is wanted as soon as the window is active
  Recorder recorder_;
};

// The rows of the settings' section "Hotkeys".
std::vector<HotkeyRow> makeHotkeyRows(const Recording& recording);

}  // namespace tarnwick
