#pragma once

#include <filesystem>
#include <string>

#include "core/ports/login_item.h"

namespace tarnwick::desktop {

// A login item as an entry of the desktop's autostart folders (XDG autostart): the user's own
// "<config home>/autostart/<id>.desktop", which counts in place of one in the system's folders.
class AutostartEntry : public LoginItem {
 public:
  // `id` without ".desktop"; `program` is the absolute path of what is started.
  AutostartEntry(std::string id, std::string program);

  // An entry that the session would start on this desktop ($XDG_CURRENT_DESKTOP).
  bool isEnabled() const override;
  // Writes the user's entry whole, whatever there was.
  bool registerItem() override;
  // Removes the user's entry or, where the system has one that would come into force, hides that.
  bool unregisterItem() override;

 private:
  bool write(const std::string& text) const;

  const std::string fileName_;
  const std::string program_;
};

}  // namespace tarnwick::desktop
