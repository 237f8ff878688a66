#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "common/base/registration.h"

namespace tarnwick {

// Observers of one event, called in order of registration. Registering and dropping inside a
// callback is allowed, and a registration may outlive the list.
class CallbackList {
 public:
  using Callback = std::function<void()>;

  Registration add(Callback callback) {
    const auto id = next_++;
    callbacks_->emplace(id, std::make_shared<Callback>(std::move(callback)));
    return Registration([weak = std::weak_ptr(callbacks_), id] {
      if (const auto callbacks = weak.lock()) callbacks->erase(id);
    });
  }

  bool empty() const { return callbacks_->empty(); }

  void notify() const {
    const auto present = *callbacks_;
    for (const auto& [id, callback] : present) {
      if (callbacks_->contains(id)) (*callback)();
    }
  }

 private:
  using Callbacks = std::map<std::uint64_t, std::shared_ptr<Callback>>;

  std::uint64_t next_ = 0;
  std::shared_ptr<Callbacks> callbacks_ = std::make_shared<Callbacks>();
};

}  // namespace tarnwick
