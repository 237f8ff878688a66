#include "common/identity/wrapper_script.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <map>

#include "common/files/file.h"
#include "common/identity/command.h"
#include "common/identity/own_program.h"

namespace tarnwick::desktop {

namespace {

constexpr std::size_t largestScript = 64 << 10;
constexpr std::size_t mostPrograms = 8;
constexpr std::size_t mostValues = 8;  // of one variable
constexpr std::size_t longestWord = 1000;
constexpr std::size_t mostWords = 64;  // of a command

using Words = std::vector<std::string>;
// Every value that the script gives a variable on some way through it.
using Variables = std::map<std::string, Words, std::less<>>;

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::ranges::find(words, word) != words.end();
}

bool isShellScript(std::string_view text) {
  if (!text.starts_with("#!")) return false;
  Words words = splitCommand(text.substr(2, text.find('\n') - 2));
  if (!words.empty() && baseName(words.front()) == "env") words.erase(words.begin());
  return !words.empty() && isShell(words.front());
}

// The whole lines of the script, without comments, where a line break behind a backslash counts as
// none.
Words linesOf(std::string_view script) {
  Words lines;
  bool continues = false;
  while (!script.empty()) {
    const std::size_t end = script.find('\n');
    std::string_view line = script.substr(0, end);
    script.remove_prefix(end == script.npos ? script.size() : end + 1);
    const std::size_t start = line.find_first_not_of(" \t");
    const bool comment = start == line.npos || line[start] == '#';
    if (comment && !continues) continue;
    const bool more = line.ends_with('\\');
    if (more) line.remove_suffix(1);
    if (continues) {
      lines.back() += line;
    } else {
      lines.emplace_back(line);
    }
    continues = more;
  }
  return lines;
}

// "NAME" of a "$NAME" or "${NAME}" that `text` begins with, and how long that is.
std::pair<std::string_view, std::size_t> variableAt(std::string_view text) {
  const bool braced = text.size() > 1 && text[1] == '{';
  const std::size_t first = braced ? 2 : 1;
  const std::size_t end =
      std::min(text.find_first_not_of(
                   "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_0123456789", first),
               text.size());
  if (braced && (end == text.size() || text[end] != '}')) return {{}, 0};
  return {text.substr(first, end - first), braced ? end + 1 : end};
}

// What a word may stand for. Of a path below an unknown folder the base name; nothing when the name
// itself is unknown.
Words expand(std::string_view word, const Variables& variables) {
  const std::size_t dollar = word.find_first_of("$`");
  if (word.size() > longestWord) return {};
  if (dollar == word.npos) return {std::string(word)};
  const auto [name, length] =
      word[dollar] == '$' ? variableAt(word.substr(dollar)) : std::pair(std::string_view(), 0ul);
  const auto known = variables.find(name);
  Words found;
  if (length > 0 && known != variables.end()) {
    const Words rests = expand(word.substr(dollar + length), variables);
    for (const std::string& value : known->second) {
      for (const std::string& rest : rests) {
        std::string whole = std::string(word.substr(0, dollar)) + value + rest;
        if (found.size() < mostValues && whole.size() <= longestWord) {
          found.push_back(std::move(whole));
        }
      }
    }
  }
  const std::size_t slash = word.rfind('/');
  const std::string_view base = slash == word.npos ? std::string_view() : word.substr(slash + 1);
  if (found.empty() && !base.empty() && base.find_first_of("$`") == base.npos) {
    found.emplace_back(base);
  }
  return found;
}

// Takes the assignments off the front and remembers their values.
void assign(Words& words, Variables& variables) {
  auto word = words.begin();
  if (word != words.end() && isOneOf(*word, {"export", "local", "readonly", "declare"})) ++word;
  for (; word != words.end() && !assignedName(*word).empty(); ++word) {
    const std::string_view name = assignedName(*word);
    Words& values = variables[std::string(name)];
    for (std::string& value : expand(std::string_view(*word).substr(name.size() + 1), variables)) {
      if (values.size() < mostValues) values.push_back(std::move(value));
    }
  }
  words.erase(words.begin(), word);
}

// Whether the command takes the script's place or gets its arguments.
bool handsOver(const Words& command) {
  if (command.empty() ||
      isOneOf(command.front(), {"case", "for", "set", "echo", "printf", "shift"})) {
    return false;
  }
  return command.front() == "exec" || std::ranges::any_of(command, [](const std::string& word) {
           return word.find("$@") != word.npos || word.find("${@") != word.npos ||
                  word.find("$*") != word.npos;
         });
}

void addPrograms(const Words& command, const Variables& variables, Words& programs) {
  // Alternatives differ in one word: the others are taken at their last value.
  Words plain;
  for (std::size_t i = 0; i < std::min(command.size(), mostWords); ++i) {
    const Words values = expand(command[i], variables);
    plain.push_back(values.empty() ? std::string() : values.back());
  }
  for (std::size_t i = 0; i < plain.size(); ++i) {
    for (const std::string& value : expand(command[i], variables)) {
      Words words = plain;
      words[i] = value;
      std::string program = programOf(words);
      if (programs.size() < mostPrograms && !program.empty() && program != "exec" &&
          !program.starts_with('-') && program.find_first_of("<>") == program.npos &&
          !runsScripts(program) && std::ranges::find(programs, program) == programs.end()) {
        programs.push_back(std::move(program));
      }
    }
  }
}

}  // namespace

std::vector<std::string> wrappedPrograms(std::string_view script) {
  Words programs;
  if (!isShellScript(script)) return programs;
  Variables variables;
  for (const std::string& line : linesOf(script)) {
    const Words words = splitCommand(line, /*shell=*/true);
    for (auto start = words.begin(); start != words.end();) {
      const auto end = std::find(start, words.end(), ";");
      Words command(start, end);
      while (!command.empty() &&
             isOneOf(command.front(), {"if", "then", "else", "elif", "do", "while", "{", "!"})) {
        command.erase(command.begin());
      }
      assign(command, variables);
      if (handsOver(command)) addPrograms(command, variables, programs);
      start = end == words.end() ? end : end + 1;
    }
  }
  return programs;
}

std::vector<std::string> programsWrappedBy(std::string_view program) {
  const std::string path = findProgram(program);
  if (path.empty()) return {};
  const UniqueFd file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat info {};
  char mark[2] = {};
  // Most programs are no scripts and large; two bytes tell.
  if (!file || fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode) ||
      pread(file.get(), mark, 2, 0) != 2 || mark[0] != '#' || mark[1] != '!') {
    return {};
  }
  return wrappedPrograms(readAll(file.get(), largestScript).value_or(""));
}

}  // namespace tarnwick::desktop
