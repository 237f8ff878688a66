#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "common/base/registration.h"

namespace tarnwick {

struct Notification {
  std::string name;
  std::map<std::string, std::any> userInfo;
};

// A menu of this process came up with nothing of the kind open before, and the last one closed.
inline constexpr const char* menuDidBeginTracking = "menuDidBeginTracking";
inline constexpr const char* menuDidEndTracking = "menuDidEndTracking";

// Tells parts of this process of each other's doings. Observers are called at once, in order of
// registration; registering and dropping inside one is allowed.
class NotificationCenter {
 public:
  using Observer = std::function<void(const Notification&)>;

  Registration observe(const std::string& name, Observer observer) {
    const auto id = next_++;
    observers_->emplace(id, Entry{name, std::make_shared<Observer>(std::move(observer))});
    return Registration([weak = std::weak_ptr(observers_), id] {
      if (const auto observers = weak.lock()) observers->erase(id);
    });
  }

  void post(const Notification& notification) const {
    const auto present = *observers_;
    for (const auto& [id, entry] : present) {
      if (entry.name == notification.name && observers_->contains(id)) {
        (*entry.observer)(notification);
      }
    }
  }

 private:
  struct Entry {
    std::string name;
    std::shared_ptr<Observer> observer;
  };
  using Observers = std::map<std::uint64_t, Entry>;

  std::uint64_t next_ = 0;
  std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
};

}  // namespace tarnwick
