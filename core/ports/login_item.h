#pragma once

namespace tarnwick {

// Whether the desktop starts this application when the user logs in.
class LoginItem {
 public:
  virtual ~LoginItem() = default;

  // As the desktop would act now, whoever changed it last.
  virtual bool isEnabled() const = 0;
  // False when the desktop refuses; the state is then as it was.
  virtual bool registerItem() = 0;
  virtual bool unregisterItem() = 0;
};

}  // namespace tarnwick
