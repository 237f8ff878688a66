#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>

#include "adapters/qt/form_controls.h"
#include "adapters/qt/settings_form.h"
#include "shortcuts/recorder.h"

namespace tarnwick {

// Takes the keyboard for a window until the registration is dropped. True swallows a press; absent
// is one of a key without a name.
using GrabKeyboard =
    std::function<Registration(WId, std::function<bool(const std::optional<InputEvent>&)>)>;

// A field in the shape of a search field in which a shortcut is recorded.
class RecorderWidget : public Field, private KeyboardShortcuts::RecorderField {
  Q_OBJECT

 public:
  using Recorder = KeyboardShortcuts::RecorderCocoa;

  RecorderWidget(std::variant<KeyboardShortcuts::Name, KeyboardShortcuts::Binding> storage,
                 const QString& title, GrabKeyboard grab, Recorder::OnChange onChange = {});
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
  void show(const KeyboardShortcuts::RecorderAppearance& appearance) override;
  void makeFirstResponder() override;
  void resignFirstResponder() override;
  void beep() override;
  Registration present(const Alert& alert, std::function<void(int)> answered) override;
  KeyedMenu mainMenu() override;
  bool comesByItself(Qt::FocusReason reason) const;
  QRectF cancelButton() const;

  const GrabKeyboard grab_;
  KeyboardShortcuts::RecorderAppearance appearance_;
  Registration keyboard_;
  QPointer<QWidget> window_;
  bool awaitsWindow_ = false;  // the focus is wanted as soon as the window is active
  Recorder recorder_;
};

// The rows of the settings' section "Hotkeys".
std::vector<HotkeyRow> makeHotkeyRows(const GrabKeyboard& grab);

}  // namespace tarnwick
