#include "common/identity/desktop_entries.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <utility>

#include "common/files/file.h"
#include "common/files/json_file.h"
#include "common/identity/command.h"
#include "common/identity/desktop_file.h"
#include "common/identity/own_program.h"
#include "common/identity/wrapper_script.h"

namespace tarnwick::desktop {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMaxFile = 1 << 20;
constexpr std::size_t kMaxEntries = 10'000;
constexpr std::size_t kMaxFolders = 500;
constexpr int kMaxDepth = 5;
// Clocks of file systems tick in steps of up to this; within one, a folder may change unseen.
constexpr std::int64_t kClockStep = 20'000'000;  // nanoseconds
constexpr std::string_view kSuffix = ".desktop";

std::int64_t nanoseconds(const timespec& time) {
  return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

// -1 for a folder that is not there.
std::int64_t changeTime(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 ? nanoseconds(info.st_mtim) : -1;
}

std::vector<std::string> applicationFolders() {
  std::vector<std::string> folders{dataHome() / "applications"};
  const char* value = std::getenv("XDG_DATA_DIRS");
  std::string_view rest = value && *value ? value : "/usr/local/share:/usr/share";
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    const fs::path folder = fs::path(rest.substr(0, end)) / "applications";
    if (folder.is_absolute() && std::ranges::find(folders, folder.string()) == folders.end()) {
      folders.push_back(folder);
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return folders;
}

std::optional<DesktopFile> readDesktopFile(const std::string& path) {
  const std::optional<std::string> text = readFile(path, kMaxFile);
  return text ? parseDesktopFile(*text, messagesLocale()) : std::nullopt;
}

void addOther(DesktopEntry& entry, std::string program) {
  if (program.empty() || program == entry.program || runsScripts(program) ||
      std::ranges::find(entry.others, program, &NamedProgram::program) != entry.others.end()) {
    return;
  }
  std::string name = canonicalName(programName(program));
  entry.others.push_back({std::move(program), std::move(name)});
}

DesktopEntry makeEntry(const std::string& id, DesktopFile file) {
  DesktopEntry entry;
  const std::vector<std::string> command = splitCommand(file.exec);
  entry.program = programOf(command);
  const auto program = std::ranges::find(command, entry.program);
  entry.hasArguments = program == command.end() ||
                       std::any_of(program + 1, command.end(),
                                   [](const std::string& word) { return !word.starts_with('%'); });
  // An interpreter given code instead of a script says nothing.
  if (entry.hasArguments && runsScripts(entry.program)) entry.program.clear();
  entry.programName = canonicalName(programName(entry.program));
  addOther(entry, file.tryExec);
  for (const std::string& exec : file.actionExecs) addOther(entry, programOf(splitCommand(exec)));
  entry.windowClass = std::move(file.windowClass);
  entry.shown = !file.noDisplay && suitsThisDesktop(file) &&
                (file.tryExec.empty() || !findProgram(file.tryExec).empty());
  entry.id = id;
  entry.program.shrink_to_fit();
  return entry;
}

// "Viewer" of "org.example.Viewer"; the whole of an id without dots.
std::string_view lastPart(std::string_view id) {
  const std::size_t dot = id.rfind('.');
  return dot == id.npos ? id : id.substr(dot + 1);
}

bool equalInAnyCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : int{c}; };
  return std::ranges::equal(a, b, {}, lower, lower);
}

// How alike a program that an entry names is to the one at `path`: 4 the path, 3 the base name
// where one of them is no more than that, 2 the base name of a file elsewhere, 1 a name that both
// go under, 0 not at all. `named` and `name` are their canonical names.
int likeness(std::string_view program, std::string_view named, std::string_view path,
             std::string_view name) {
  if (program == path) return 4;
  if (named != name) return 0;
  if (baseName(program) != baseName(path)) return 1;
  return program.starts_with('/') && path.starts_with('/') ? 2 : 3;
}

// A certainty from here on. An entry that may mean a file elsewhere never goes before one that
// names this, shown or not.
constexpr int namedElsewhere = 256;
constexpr int namedItself = 512;

// How surely an entry runs the program at `path`, whose canonical name is given; 0 is not at all.
int certainty(const DesktopEntry& entry, std::string_view path, std::string_view name) {
  if (name.empty()) return 0;
  const int exec = likeness(entry.program, entry.programName, path, name);
  int other = 0;
  for (const auto& [program, named] : entry.others) {
    other = std::max(other, likeness(program, named, path, name));
  }
  if (exec == 0 && other == 0) return 0;
  int sure = 16 * exec + other;
  const int likest = std::max(exec, other);
  if (likest >= 2) sure += likest == 2 ? namedElsewhere : namedItself;
  if (entry.shown) sure += 128;
  // Of several entries for one program, the plain one is the application itself.
  if (equalInAnyCase(lastPart(entry.id), name)) sure += 8;
  if (!entry.hasArguments) sure += 4;
  return sure;
}

}  // namespace

bool DesktopEntries::refresh() {
  const bool current = std::ranges::all_of(folders_, [](const Folder& folder) {
    return folder.changed && *folder.changed == changeTime(folder.path);
  });
  if (!folders_.empty() && current) return false;
  readAllFolders();
  return true;
}

void DesktopEntries::readAllFolders() {
  entries_.clear();
  folders_.clear();
  scriptsRead_ = false;
  std::unordered_set<std::string> seen;
  for (const std::string& folder : applicationFolders()) readFolder(folder, "", seen, 0);
  entries_.shrink_to_fit();
}

void DesktopEntries::readFolder(const std::string& path, const std::string& idPrefix,
                                std::unordered_set<std::string>& seen, int depth) {
  const std::int64_t changed = changeTime(path);
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  // A time in the future, of a clock put back or of an archive, is as good: a change will set
  // another.
  const bool settled = changed < 0 || std::abs(nanoseconds(now) - changed) >= kClockStep;
  const auto folder = static_cast<std::uint32_t>(folders_.size());
  folders_.push_back({path, idPrefix, settled ? std::optional(changed) : std::nullopt});

  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator it(path, error), end; !error && it != end; it.increment(error)) {
    names.push_back(it->path().filename());
  }
  // The same answer whatever order the file system has.
  std::ranges::sort(names);
  for (const std::string& name : names) {
    const std::string file = path + "/" + name;
    if (!name.ends_with(kSuffix)) {
      if (depth < kMaxDepth && folders_.size() < kMaxFolders && fs::is_directory(file, error)) {
        readFolder(file, idPrefix + name + "-", seen, depth + 1);
      }
      continue;
    }
    std::string id = idPrefix + name.substr(0, name.size() - kSuffix.size());
    if (entries_.size() >= kMaxEntries || seen.contains(id)) continue;
    std::optional<DesktopFile> parsed = readDesktopFile(file);
    if (!parsed) continue;
    seen.insert(id);
    if (!parsed->application || parsed->hidden) continue;
    entries_.push_back(makeEntry(id, std::move(*parsed)));
    entries_.back().folder = folder;
  }
}

ApplicationIdentity DesktopEntries::identity(const DesktopEntry& entry) const {
  const Folder& folder = folders_[entry.folder];
  const std::string name = entry.id.substr(folder.idPrefix.size());
  std::optional<DesktopFile> file = readDesktopFile(folder.path + "/" + name + ".desktop");
  if (!file) return {entry.id, {}, {}, {}};
  ApplicationIdentity identity{entry.id, std::move(file->name), std::move(file->icon), {}};
  if (!entry.windowClass.empty()) identity.otherIcons.push_back(entry.windowClass);
  return identity;
}

const DesktopEntry* DesktopEntries::byId(std::string_view id) const {
  const auto found = std::ranges::find(entries_, id, &DesktopEntry::id);
  return found == entries_.end() ? nullptr : &*found;
}

const DesktopEntry* DesktopEntries::byName(std::string_view name) const {
  std::string_view id = name;
  if (id.ends_with(kSuffix)) id.remove_suffix(kSuffix.size());
  // Of a path, what stands below "applications/"; folders there count as parts of the id.
  constexpr std::string_view kFolder = "/applications/";
  std::string flat;
  if (const std::size_t folder = id.rfind(kFolder); folder != id.npos) {
    flat = id.substr(folder + kFolder.size());
    std::ranges::replace(flat, '/', '-');
    id = flat;
  } else if (id.starts_with('/')) {
    id = baseName(id);
  }
  if (id.empty()) return nullptr;
  if (const DesktopEntry* exact = byId(id)) return exact;
  const auto found = std::ranges::find_if(
      entries_, [&](const DesktopEntry& entry) { return equalInAnyCase(entry.id, id); });
  return found == entries_.end() ? nullptr : &*found;
}

ProgramMatch DesktopEntries::byProgram(std::string_view path) {
  if (path.empty()) return {};
  const std::string own = programName(path);
  const std::string name = canonicalName(own);
  ProgramMatch match = bestMatch(path, name);
  const bool done = match.sure && match.entry->shown;
  if (!done && !std::exchange(scriptsRead_, true)) {
    for (DesktopEntry& entry : entries_) {
      for (std::string& program : programsWrappedBy(entry.program)) {
        addOther(entry, std::move(program));
      }
    }
    match = bestMatch(path, name);
  }
  if (!match.entry) match.entry = byName(own);
  if (!match.entry) match.entry = byName(name);
  return match;
}

ProgramMatch DesktopEntries::bestMatch(std::string_view path, std::string_view name) const {
  ProgramMatch best;
  int surest = 0;
  for (const DesktopEntry& entry : entries_) {
    const int sure = certainty(entry, path, name);
    if (sure <= surest) continue;
    surest = sure;
    best = {&entry, sure >= namedElsewhere};
  }
  return best;
}

const DesktopEntry* DesktopEntries::byWindowClass(std::string_view windowClass) const {
  if (windowClass.empty()) return nullptr;
  const auto find = [this](auto matches) -> const DesktopEntry* {
    const auto found = std::ranges::find_if(entries_, matches);
    return found == entries_.end() ? nullptr : &*found;
  };
  if (const auto* exact = find([&](const auto& e) { return e.windowClass == windowClass; })) {
    return exact;
  }
  if (const auto* alike =
          find([&](const auto& e) { return equalInAnyCase(e.windowClass, windowClass); })) {
    return alike;
  }
  if (const DesktopEntry* named = byName(windowClass)) return named;
  return find([&](const auto& e) { return equalInAnyCase(lastPart(e.id), windowClass); });
}

bool DesktopEntries::names(const DesktopEntry& entry, std::string_view path) {
  const std::string own = programName(path);
  const std::string name = canonicalName(own);
  return certainty(entry, path, name) > 0 || equalInAnyCase(lastPart(entry.id), name) ||
         equalInAnyCase(entry.id, own) || equalInAnyCase(entry.id, name);
}

}  // namespace tarnwick::desktop
