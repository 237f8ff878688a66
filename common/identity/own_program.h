#pragma once

#include <string>
#include <string_view>

namespace tarnwick::desktop {

// Path of the executable file that a command of this name runs, found by $PATH unless the name has
// a slash. Empty when there is none.
std::string findProgram(std::string_view name);

// Absolute path that this process was started by, with its symbolic links: what lies there later is
// the program as it is installed then. To be asked before the working directory changes.
std::string startedFrom(const char* argument0);

// Goes on as that program, with the same process id, arguments and environment. When it is gone, as
// this program anew. Returns only when neither can be done.
void replaceProcess(const std::string& program, char** arguments);

}  // namespace tarnwick::desktop
