#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::desktop {

// The words of a command line, unquoted; both the quotes of desktop entries and a shell's are
// understood. For a shell, each unquoted separator (";", "&&", a line break ...) becomes the word
// ";".
std::vector<std::string> splitCommand(std::string_view line, bool shell = false);

// The program that a command runs in the end, as its words name it: launchers such as env, sh -c,
// "flatpak run" (the application's id) and nohup are seen through, and for an interpreter it is the
// script, module, jar, class or application folder it is given. The first word when there is
// nothing behind it; empty for an empty command.
std::string programOf(const std::vector<std::string>& command);

// Whether the executable is an interpreter, so that it names no application by itself.
bool runsScripts(std::string_view executable);

// Whether it is a shell, by its name.
bool isShell(std::string_view executable);

// NAME of a word "NAME=value", which sets a variable before a command; empty for other words.
std::string_view assignedName(std::string_view word);

// The last component, of a path of Windows too.
std::string_view baseName(std::string_view path);

// What to call the program at `path`: its base name, but the folder's for one that every
// application has ("main.py", "app.asar", "AppRun", a bundled "electron").
std::string programName(std::string_view path);

// Whether the path's base name is such a one.
bool hasCommonName(std::string_view path);

// One spelling for all the names that the same program goes under: "foo" for "Foo", "foo.py",
// "foo.bin" and ".foo-wrapped".
std::string canonicalName(std::string_view name);

std::string lowerCase(std::string_view text);  // of ASCII letters

}  // namespace tarnwick::desktop
