#include "common/identity/command.h"

#include <algorithm>
#include <array>
#include <span>

namespace tarnwick::desktop {

namespace {

constexpr int kMaxNesting = 4;

using Words = std::span<const std::string>;

// Whether `list`, words with a space between, holds `word`.
bool lists(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(' '), list.size());
    if (list.substr(0, end) == word) return true;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return false;
}

// A program that runs the command behind its options and assignments.
struct Launcher {
  std::string_view name;
  std::string_view valueOptions;  // those followed by a value of their own
  std::string_view subcommand;    // after which an application's id stands instead of a command
};

constexpr Launcher kLaunchers[] = {
    {"env", "-u -C --unset --chdir", ""},
    {"flatpak", "", "run"},
    {"snap", "", "run"},
    {"gtk-launch", "", ""},
    {"prime-run", "", ""},
    {"optirun", "-b -c", ""},
    {"primusrun", "", ""},
    {"gamemoderun", "", ""},
    {"mangohud", "", ""},
    {"firejail", "", ""},
    {"nice", "-n", ""},
    {"ionice", "-c -n", ""},
    {"nohup", "", ""},
    {"setsid", "", ""},
    {"exec", "-a", ""},
    {"command", "", ""},
    {"dbus-launch", "", ""},
    {"dbus-run-session", "--config-file", ""},
    {"systemd-run", "-u -p -E -d --unit --property --setenv", ""},
    {"systemd-cat", "-t -p", ""},
    {"pkexec", "--user", ""},
    {"sudo", "-u -g", ""},
    {"stdbuf", "-i -o -e", ""},
    {"ld-linux-x86-64.so.2", "--library-path --preload --argv0", ""},
};

// Commands that prepare for the one that matters.
constexpr std::string_view kPreparations = "cd sleep export test [ true set ulimit umask . source";

struct Interpreter {
  std::string_view name;           // without version
  std::string_view valueOptions;   // those followed by a value of their own
  std::string_view scriptOptions;  // those followed by what it runs
  std::string_view codeOptions;    // those followed by the code itself
};

constexpr std::string_view kShells = "sh bash dash zsh ksh ash fish";
constexpr Interpreter kShell{"sh", "-o +o -O --rcfile --init-file", "", ""};
constexpr Interpreter kInterpreters[] = {
    {"python", "-W -X", "-m", "-c"},
    {"pypy", "-W -X", "-m", "-c"},
    {"node", "-r --require --import --loader", "", "-e -p --eval --print"},
    {"nodejs", "-r --require --import --loader", "", "-e -p --eval --print"},
    {"deno", "", "run", "eval"},
    {"bun", "", "run", "-e"},
    {"electron", "-r --require", "", "-e"},
    {"nw", "", "", ""},
    {"java",
     "-cp -classpath --class-path -p --module-path --add-modules --add-opens --add-exports "
     "--add-reads --patch-module --limit-modules",
     "-jar -m --module", ""},
    {"perl", "-I", "", "-e -E"},
    {"ruby", "-I -r -C", "", "-e"},
    {"php", "-d -c", "-f", "-r"},
    {"lua", "-l", "", "-e"},
    {"mono", "", "", ""},
    {"mono-sgen", "", "", ""},
    {"dotnet", "", "", ""},
    {"gjs", "-I --include-path", "-m", "-c"},
    {"gjs-console", "-I --include-path", "-m", "-c"},
    {"tclsh", "", "", ""},
    {"wish", "", "", ""},
    {"guile", "-L", "-s", "-c"},
};

const Interpreter* findInterpreter(std::string_view executable) {
  std::string_view name = baseName(executable);
  if (isShell(name)) return &kShell;
  // "python3.11", "electron22", "perl5.36-x86_64-linux-gnu"
  const std::size_t version = name.find_first_of("0123456789");
  name = name.substr(0, version);
  if (name.ends_with('-')) name.remove_suffix(1);
  const auto* found = std::ranges::find(kInterpreters, name, &Interpreter::name);
  return found == std::end(kInterpreters) ? nullptr : found;
}

bool isWine(std::string_view executable) {
  return lists("wine wine64 wine-preloader wine64-preloader wine-stable", baseName(executable));
}

bool isWindowsProgram(std::string_view path) {
  const std::string lower = lowerCase(path);
  return lower.ends_with(".exe") || lower.ends_with(".lnk") || lower.ends_with(".msi");
}

bool isAssignment(std::string_view word) {
  return !assignedName(word).empty();
}

bool isFieldCode(std::string_view word) {
  return word.size() == 2 && word[0] == '%';
}

std::string follow(Words command, int depth);

std::string behindShell(std::string_view code, int depth) {
  const std::vector<std::string> words = splitCommand(code, /*shell=*/true);
  for (auto start = words.begin(); start != words.end();) {
    auto end = std::find(start, words.end(), ";");
    auto first = start;
    while (first != end && isAssignment(*first)) ++first;
    if (first != end && !lists(kPreparations, *first)) return follow({first, end}, depth);
    start = end == words.end() ? end : end + 1;
  }
  return {};
}

// The words that env is to split from one, and those after it; empty where `arguments` begins with
// something else.
std::vector<std::string> splitByEnv(const Launcher& launcher, Words arguments) {
  constexpr std::string_view longOption = "--split-string=";
  if (launcher.name != "env") return {};
  std::string_view line = arguments.front();
  std::size_t used = 1;
  if (line.starts_with(longOption)) {
    line.remove_prefix(longOption.size());
  } else if (line == "-S" && arguments.size() > 1) {
    line = arguments[1];
    used = 2;
  } else {
    return {};
  }
  std::vector<std::string> words = splitCommand(line);
  words.insert(words.end(), arguments.begin() + static_cast<std::ptrdiff_t>(used), arguments.end());
  return words;
}

std::string behindLauncher(const Launcher& launcher, Words arguments, int depth) {
  if (depth > kMaxNesting) return {};
  bool named = launcher.subcommand.empty();
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& word = arguments[i];
    if (const auto split = splitByEnv(launcher, arguments.subspan(i)); !split.empty()) {
      return behindLauncher(launcher, split, depth + 1);
    }
    if (word.starts_with('-')) {
      if (lists(launcher.valueOptions, word)) ++i;
    } else if (!named) {
      if (word != launcher.subcommand) return {};
      named = true;
    } else if (!launcher.subcommand.empty()) {
      return word;
    } else if (!isAssignment(word)) {
      return follow(arguments.subspan(i), depth);
    }
  }
  return {};
}

std::string behindInterpreter(const Interpreter& interpreter, Words arguments, int depth) {
  const bool shell = &interpreter == &kShell;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& word = arguments[i];
    std::string next = i + 1 < arguments.size() ? arguments[i + 1] : std::string();
    if (isFieldCode(word)) continue;
    if (word == "--" || lists(interpreter.scriptOptions, word)) return next;
    if (lists(interpreter.codeOptions, word)) return {};
    if (shell && word.starts_with('-') && !word.starts_with("--") && word.ends_with('c')) {
      return behindShell(next, depth);
    }
    if (lists(interpreter.valueOptions, word)) {
      ++i;
    } else if (word.starts_with("/dev/") || word.starts_with("/proc/")) {
      return {};  // a script without a name
    } else if (!word.empty() && !word.starts_with('-')) {
      return word;
    }
  }
  return {};
}

std::string follow(Words command, int depth) {
  if (command.empty()) return {};
  const std::string& first = command.front();
  std::string behind;
  if (depth < kMaxNesting) {
    const Words arguments = command.subspan(1);
    const auto* launcher = std::ranges::find(kLaunchers, baseName(first), &Launcher::name);
    if (launcher != std::end(kLaunchers)) {
      behind = behindLauncher(*launcher, arguments, depth + 1);
    } else if (isWine(first)) {
      const auto program = std::ranges::find_if(arguments, isWindowsProgram);
      if (program != arguments.end()) behind = *program;
    } else if (const Interpreter* interpreter = findInterpreter(first)) {
      behind = behindInterpreter(*interpreter, arguments, depth + 1);
    }
  }
  return behind.empty() ? first : behind;
}

constexpr std::string_view kSuffixes[] = {
    ".py",   ".pyw", ".pyc", ".pyz",  ".js",     ".mjs",     ".cjs",     ".ts",  ".jar",
    ".sh",   ".pl",  ".rb",  ".php",  ".lua",    ".tcl",     ".dll",     ".exe", ".lnk",
    ".asar", ".bin", "-bin", ".real", ".x86_64", "-wrapped", ".AppImage"};

std::string_view withoutSuffix(std::string_view name) {
  for (const std::string_view suffix : kSuffixes) {
    if (name.size() > suffix.size() && name.ends_with(suffix)) {
      return name.substr(0, name.size() - suffix.size());
    }
  }
  return name;
}

bool isCommonName(std::string_view name) {
  return lists("main __main__ index app run start init cli AppRun electron nw",
               withoutSuffix(name));
}

bool isCommonFolder(std::string_view name) {
  return lists(
             "bin sbin lib lib64 libexec usr local opt share src dist build out resources app "
             "app.asar release debug scripts current tmp games . ..",
             name) ||
         name.starts_with(".mount_") || name.starts_with("appimage_extracted_") ||
         name.find_first_not_of("0123456789.") == name.npos;
}

}  // namespace

std::vector<std::string> splitCommand(std::string_view line, bool shell) {
  std::vector<std::string> words;
  std::string word;
  bool inWord = false;
  char quote = 0;
  const auto finish = [&] {
    if (inWord) words.push_back(std::move(word));
    word.clear();
    inWord = false;
  };
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    const char next = i + 1 < line.size() ? line[i + 1] : '\0';
    if (quote == 0 && (c == ' ' || c == '\t' || (!shell && c == '\n'))) {
      finish();
      continue;
    }
    if (shell && quote == 0 && std::string_view(";&|\n()").find(c) != std::string_view::npos) {
      finish();
      words.emplace_back(";");
      continue;
    }
    inWord = true;
    if (c == '\\' && next != '\0' &&
        (quote == 0 ||
         (quote == '"' && std::string_view("\"\\`$").find(next) != std::string_view::npos))) {
      word += next;
      ++i;
    } else if (quote != 0 ? c == quote : (c == '"' || c == '\'')) {
      quote = quote != 0 ? '\0' : c;
    } else {
      word += c;
    }
  }
  finish();
  return words;
}

std::string programOf(const std::vector<std::string>& command) {
  return follow(command, 0);
}

bool runsScripts(std::string_view executable) {
  return findInterpreter(executable) != nullptr || isWine(executable);
}

bool isShell(std::string_view executable) {
  return lists(kShells, baseName(executable));
}

std::string_view assignedName(std::string_view word) {
  const std::size_t equals = word.find('=');
  const bool assigns = equals != word.npos && word.find('/') > equals;
  return assigns ? word.substr(0, equals) : std::string_view();
}

std::string_view baseName(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  std::size_t separator = path.rfind('/');
  if (separator == path.npos && isWindowsProgram(path)) separator = path.rfind('\\');
  return separator == path.npos || path.size() == 1 ? path : path.substr(separator + 1);
}

std::string programName(std::string_view path) {
  const std::string_view base = baseName(path);
  if (!hasCommonName(path)) return std::string(base);
  for (std::string_view rest = path; rest.rfind('/') != rest.npos;) {
    rest = rest.substr(0, rest.rfind('/'));
    const std::string_view folder = baseName(rest);
    // Somebody's home says nothing of the application.
    if (rest.empty() || baseName(rest.substr(0, rest.rfind('/'))) == "home") break;
    if (!isCommonFolder(folder)) return std::string(folder);
  }
  return std::string(base);
}

bool hasCommonName(std::string_view path) {
  const std::string_view base = baseName(path);
  return base == "." || base == ".." || isCommonName(base);
}

std::string canonicalName(std::string_view name) {
  std::string_view plain = withoutSuffix(name);
  if (plain.size() > 1 && plain.starts_with('.')) plain.remove_prefix(1);
  return lowerCase(plain);
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace tarnwick::desktop
