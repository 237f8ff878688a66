#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::desktop {

// Programs that a start script hands over to: those it executes in its own place or gives its own
// arguments, as programOf names them, with the variables that the script itself sets put in. A
// folder that only the running script knows is left out ("chrome" of "$HERE/chrome"). At most 8;
// empty for what is no shell script.
std::vector<std::string> wrappedPrograms(std::string_view script);

// The same for the program that a command of this name runs, found by $PATH.
std::vector<std::string> programsWrappedBy(std::string_view program);

}  // namespace tarnwick::desktop
