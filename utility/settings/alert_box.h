#pragma once

#include <functional>

#include "common/base/registration.h"
#include "core/ports/alert.h"

class QWidget;

namespace tarnwick {

// Shows a warning above a window, which waits for it. Return, Escape and the close button are the
// first button. `answered` is called in a later turn; dropping the registration takes the alert
// away without an answer.
Registration presentAlert(QWidget& window, const Alert& alert, std::function<void(int)> answered);

}  // namespace tarnwick
