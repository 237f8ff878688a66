#pragma once

namespace tarnwick::bar::x11 {

// Whether the user holds a pointer button; the wheel's are never held. Asks the X server and waits
// for its answer; false without one.
bool isButtonDown();

}  // namespace tarnwick::bar::x11
