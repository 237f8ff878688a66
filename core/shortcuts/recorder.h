#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "common/base/geometry.h"
#include "core/ports/alert.h"
#include "core/shortcuts/conflicts.h"
#include "core/shortcuts/keyboard_shortcuts.h"

namespace tarnwick::KeyboardShortcuts {

// Posted with {"isActive": bool} when a recorder begins and when it ends.
inline constexpr const char* recorderActiveStatusDidChange =
    "KeyboardShortcuts_recorderActiveStatusDidChange";
// The flag of such a notification; false of any other.
bool recorderIsActive(const Notification& notification);

// What a recorder's field shows. While recording, every key press on its way to this process, and
// those that others have grabbed, are the recorder's.
struct RecorderAppearance {
  std::string text;         // empty for no shortcut
  std::string placeholder;  // in place of an empty text
  bool hasCancelButton = false;
  bool isRecording = false;
};

// The field on the screen.
class RecorderField {
 public:
  virtual ~RecorderField() = default;
  virtual void show(const RecorderAppearance& appearance) = 0;
  // Take the keyboard focus, or leave it to nobody; the field tells its recorder of either.
  virtual void makeFirstResponder() = 0;
  virtual void resignFirstResponder() = 0;
  virtual void beep() = 0;
  // Modal for the field's window. `answered` is called in a later turn; dropping the registration
  // takes the alert away without an answer.
  virtual Registration present(const Alert& alert, std::function<void(int)> answered) = 0;
  virtual KeyedMenu mainMenu() = 0;
};

// Where a shortcut is kept that no name has.
struct Binding {
  std::function<std::optional<Shortcut>()> get;
  std::function<void(const std::optional<Shortcut>&)> set;
};

// A control in which the user sets a shortcut: while it has the focus, the next combination typed
// is taken, if nothing speaks against it.
class RecorderCocoa {
 public:
  static constexpr double minimumWidth = 130;  // points
  // Told of what the user has stored or cleared.
  using OnChange = std::function<void(const std::optional<Shortcut>&)>;

  // The field outlives the recorder.
  RecorderCocoa(RecorderField& field, std::variant<Name, Binding> storage, OnChange onChange = {});
  ~RecorderCocoa();
  RecorderCocoa(const RecorderCocoa&) = delete;
  RecorderCocoa& operator=(const RecorderCocoa&) = delete;

  ConflictPolicy conflictPolicy;
  ValidateShortcut validateShortcut;                     // may be empty
  OperatingSystem operatingSystem{0, 0, isSandboxed()};  // none that needs care, unless told

  // Absent with a binding. Another name's shortcut is shown at once.
  std::optional<Name> shortcutName() const;
  void setShortcutName(const Name& name);

  std::optional<Shortcut> shortcut() const;
  void setShortcut(const std::optional<Shortcut>& shortcut);
  bool isRecording() const { return isRecording_; }
  // False right after the window came up or became active, so that it does not begin by itself.
  bool canBecomeKeyView() const { return canBecomeKey_; }

  // Shows the present value; to be called once the field is there.
  void updateStringValue();

  // What happens to the field.
  void becomeFirstResponder();
  // Also when the focus has gone elsewhere. False when who is told has taken the recorder away.
  bool endRecording();
  void preventBecomingKey();
  void windowDidResignKey();
  // True swallows the event. Absent for a press that no shortcut can have.
  bool keyDown(const std::optional<InputEvent>& event);
  // A release, in the field's coordinates.
  void mouseUp(Point position, Size fieldSize);
  void clear();

 private:
  void record(const Shortcut& shortcut, CheckStep from);
  void accept(const Shortcut& shortcut);
  void store(const std::optional<Shortcut>& shortcut);
  // The same on the user's behalf. False when what listens to it has taken the recorder away.
  bool change(const std::optional<Shortcut>& shortcut);
  void tellActive() const;

  RecorderField& field_;
  std::variant<Name, Binding> storage_;
  const OnChange onChange_;
  bool canBecomeKey_ = false;
  bool isRecording_ = false;
  std::optional<Shortcut> shortcutBeforeRecording_;
  Registration shortcutsNameChangeObserver_;
  Registration layoutObserver_;
  Registration alert_;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
};

}  // namespace tarnwick::KeyboardShortcuts
