#pragma once

#include "core/ports/wording.h"

namespace tarnwick {

// What the fixed texts say that are not true beside the bar.
Wording platformTexts();

}  // namespace tarnwick
