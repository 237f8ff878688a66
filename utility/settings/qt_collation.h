#pragma once

#include <QCollator>

#include "core/ports/collation.h"

namespace tarnwick {

// By the rules of the user's locale; a locale without any has those of English.
class QtCollation : public Collation {
 public:
  QtCollation();
  int compareIgnoringCase(const std::string& first, const std::string& second) const override;

 private:
  QCollator collator_;
};

}  // namespace tarnwick
