#include "common/identity/application_search.h"

#include <algorithm>
#include <utility>

#include "common/identity/command.h"

namespace tarnwick::desktop {

namespace {

constexpr int kMaxParents = 8;
constexpr std::size_t kMaxId = 255;

// Sandbox ids come from files that the application may have a hand in.
bool isId(std::string_view id) {
  return !id.empty() && id.size() <= kMaxId && std::ranges::all_of(id, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
           c == '-' || c == '_';
  });
}

std::string_view folderOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == path.npos ? std::string_view() : path.substr(0, slash);
}

// Folders that hold programs of many applications.
bool isSharedFolder(std::string_view folder) {
  const std::string_view base = baseName(folder);
  return std::ranges::count(folder, '/') < 2 || folderOf(folder) == "/home" || base == "bin" ||
         base == "sbin" || base == "lib" || base == "lib64" || base == "libexec" ||
         base == "games" || base.ends_with("-linux-gnu");
}

bool isBelow(std::string_view path, std::string_view folder) {
  return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

// The snap whose files hold the executable.
std::string snapOfPath(std::string_view executable) {
  for (const std::string_view root : {"/snap/", "/var/lib/snapd/snap/"}) {
    if (!executable.starts_with(root)) continue;
    const std::string_view below = executable.substr(root.size());
    return std::string(below.substr(0, below.find('/')));
  }
  return {};
}

// "Foo" of "/home/u/Foo-1.2.3-x86_64.AppImage".
std::string appImageName(std::string_view path) {
  std::string_view name = baseName(path);
  for (std::size_t dash = name.find('-'); dash != name.npos; dash = name.find('-', dash + 1)) {
    if (dash > 0 && dash + 1 < name.size() && name[dash + 1] >= '0' && name[dash + 1] <= '9') {
      return std::string(name.substr(0, dash));
    }
  }
  if (name.ends_with(".AppImage")) name.remove_suffix(9);
  return std::string(name);
}

std::string firstWord(const std::string& title) {
  const bool path = title.starts_with('/') || title.find('\\') != title.npos;
  return path ? title : title.substr(0, title.find_first_of(" :"));
}

std::string runningProgram(const Process& process, const std::string& executable) {
  std::vector<std::string> arguments = process.arguments();
  std::string title = arguments.empty() ? std::string() : firstWord(arguments.front());
  if (title.starts_with('-')) title.erase(0, 1);  // a login shell
  if (executable.empty()) {
    if (!arguments.empty()) arguments.front() = title;
  } else if (arguments.empty()) {
    arguments.push_back(executable);
  } else {
    arguments.front() = executable;
  }
  std::string program = programOf(arguments);
  // An interpreter that renamed itself after what it runs; Wine puts the program's path there.
  if (program == executable && runsScripts(executable) && !title.empty() && !runsScripts(title)) {
    program = title;
  }
  if (!program.empty() && !program.starts_with('/') && hasCommonName(program)) {
    program = process.workingDirectory() + "/" + program;
  }
  return program;
}

// Variables of an AppImage are inherited by whatever it starts, so the executable must be in it.
std::string appImageOf(const Process& process, const std::string& executable) {
  const bool mounted = executable.starts_with("/tmp/.mount_");
  const std::string folder = mounted ? std::string() : process.variable("APPDIR");
  if (!mounted && (folder.size() < 2 || !isBelow(executable, folder))) return {};
  return process.variable("APPIMAGE");
}

}  // namespace

ApplicationSearch::Subject::Subject(const std::string& procRoot, std::int32_t pid,
                                    Process::Stat processStat)
    : process(procRoot, pid),
      stat(std::move(processStat)),
      executable(process.executable()),
      program(runningProgram(process, executable)),
      unitName(process.unit()),
      unit(parseLaunchUnit(unitName)),
      appImage(appImageOf(process, executable)) {
  if (program.empty()) program = stat.name;
}

ApplicationSearch::ApplicationSearch(DesktopEntries& entries, const WindowHintsOf& windowHints,
                                     const BusNamesOf& busNames, std::string procRoot)
    : entries_(entries),
      windowHints_(windowHints),
      busNames_(busNames),
      procRoot_(std::move(procRoot)) {}

ApplicationSearch::Answer ApplicationSearch::find(std::int32_t pid,
                                                  const Process::Stat& stat) const {
  const Subject subject(procRoot_, pid, stat);
  Answer answer = search(subject, 0);
  addIconNames(answer.identity, subject);
  return answer;
}

ApplicationSearch::Answer ApplicationSearch::search(const Subject& subject, int depth) const {
  for (const auto step :
       {&ApplicationSearch::byFlatpak, &ApplicationSearch::byUnit, &ApplicationSearch::bySnap,
        &ApplicationSearch::byEnvironment, &ApplicationSearch::byProgram}) {
    if (Found found = (this->*step)(subject)) return std::move(*found);
  }
  std::optional<Answer> answer = byParent(subject, depth);
  if (!answer) answer = Answer{{baseNameOf(subject), {}, {}, {}}};
  if (!answer->certain && answer->identity.name.empty()) describe(answer->identity, subject);
  return std::move(*answer);
}

std::string ApplicationSearch::baseNameOf(const Subject& subject) {
  std::string name = programName(subject.program);
  if (!subject.appImage.empty() && hasCommonName(name)) name = appImageName(subject.appImage);
  if (name.empty()) name = subject.stat.name;
  return name.empty() ? "unknown" : name;
}

ApplicationSearch::Found ApplicationSearch::byFlatpak(const Subject& subject) const {
  const std::string id = subject.process.flatpakId();
  if (isId(id)) return withId(id);
  return std::nullopt;
}

ApplicationSearch::Found ApplicationSearch::byUnit(const Subject& subject) const {
  switch (subject.unit.kind) {
    case LaunchUnit::Kind::flatpak:
      // The sandbox's own helpers on the outside.
      if (isId(subject.unit.ids.front())) return withId(subject.unit.ids.front());
      break;
    case LaunchUnit::Kind::application:
      for (const std::string& id : subject.unit.ids) {
        const DesktopEntry* entry = entries_.byName(id);
        if (!entry) continue;
        // Whatever a terminal runs is in the terminal's scope.
        const bool own = DesktopEntries::names(*entry, subject.program) ||
                         (startsUnit(subject) && plausible(entry, subject));
        return own ? Found(launched(*entry, subject)) : std::nullopt;
      }
      break;
    case LaunchUnit::Kind::snap:
    case LaunchUnit::Kind::other:
      break;
  }
  return std::nullopt;
}

ApplicationSearch::Found ApplicationSearch::bySnap(const Subject& subject) const {
  std::string id;
  const LaunchUnit labelled = parseLaunchUnit(subject.process.securityLabel() + ".scope");
  const std::string inside = snapOfPath(subject.executable);
  if (labelled.kind == LaunchUnit::Kind::snap) {
    id = labelled.ids.front();
  } else if (subject.unit.kind == LaunchUnit::Kind::snap) {
    id = subject.unit.ids.front();
  } else if (!inside.empty()) {
    std::string snap = subject.process.variable("SNAP_INSTANCE_NAME");
    if (snap.empty()) snap = subject.process.variable("SNAP_NAME");
    if (snap.empty()) snap = inside;
    id = snap + "_" + programName(subject.program);
    if (!entries_.byId(id)) id = snap + "_" + snap;
    if (!entries_.byId(id)) id = snap;
  }
  if (!isId(id)) return std::nullopt;
  // A snap's label and scope pass on to the programs it starts outside itself.
  if (inside.empty() && !plausible(entries_.byId(id), subject)) return std::nullopt;
  return withId(id);
}

ApplicationSearch::Found ApplicationSearch::byEnvironment(const Subject& subject) const {
  const Process& process = subject.process;
  // Children inherit the variables, but not the process id in them.
  if (process.variable("GIO_LAUNCHED_DESKTOP_FILE_PID") == std::to_string(process.pid())) {
    const std::string file = process.variable("GIO_LAUNCHED_DESKTOP_FILE");
    if (const DesktopEntry* entry = entries_.byName(file)) return launched(*entry, subject);
  }
  const DesktopEntry* hinted = entries_.byName(process.variable("BAMF_DESKTOP_FILE_HINT"));
  if (hinted && plausible(hinted, subject)) return launched(*hinted, subject);
  return std::nullopt;
}

ApplicationSearch::Found ApplicationSearch::byProgram(const Subject& subject) const {
  ProgramMatch match;
  if (!subject.appImage.empty()) match = entries_.byProgram(subject.appImage);
  if (!match.entry) match = entries_.byProgram(subject.program);
  if (match.sure && match.entry->shown) return known(*match.entry, false);
  if (const DesktopEntry* owned = byBusName(subject); owned && (owned->shown || !match.sure)) {
    return known(*owned, !owned->shown);
  }
  return match.entry ? Found(known(*match.entry, true)) : std::nullopt;
}

const DesktopEntry* ApplicationSearch::byBusName(const Subject& subject) const {
  const DesktopEntry* found = nullptr;
  if (!busNames_) return found;
  for (const std::string& name : busNames_(subject.process.pid())) {
    const DesktopEntry* entry = entries_.byId(name);
    if (entry && (!found || (entry->shown && !found->shown))) found = entry;
  }
  return found;
}

void ApplicationSearch::describe(ApplicationIdentity& identity, const Subject& subject) const {
  if (!windowHints_) return;
  const std::vector<WindowHints> windows = windowHints_(subject.process.pid());
  for (const WindowHints& hints : windows) {
    for (const std::string& name : {hints.windowClass, hints.windowInstance}) {
      if (!name.empty()) identity.otherIcons.push_back(name);
    }
  }
  for (const WindowHints& hints : windows) {
    const DesktopEntry* entry = entries_.byName(hints.applicationId);
    if (!entry) entry = entries_.byWindowClass(hints.windowClass);
    if (!entry) entry = entries_.byWindowClass(hints.windowInstance);
    if (!entry) continue;
    ApplicationIdentity found = entries_.identity(*entry);
    identity.name = std::move(found.name);
    identity.icon = std::move(found.icon);
    return;
  }
}

// Many applications call their picture like themselves, also those without a desktop file.
void ApplicationSearch::addIconNames(ApplicationIdentity& identity, const Subject& subject) {
  const std::string program = programName(subject.program);
  for (const std::string& name : {identity.bundleId, program, canonicalName(program)}) {
    if (!name.empty() && name != identity.icon &&
        std::ranges::find(identity.otherIcons, name) == identity.otherIcons.end()) {
      identity.otherIcons.push_back(name);
    }
  }
}

std::optional<ApplicationSearch::Answer> ApplicationSearch::byParent(const Subject& subject,
                                                                     int depth) const {
  const std::int32_t pid = subject.stat.parent;
  if (pid <= 1 || depth >= kMaxParents) return std::nullopt;
  std::optional<Process::Stat> stat = Process(procRoot_, pid).stat();
  if (!stat) return std::nullopt;
  const Subject parent(procRoot_, pid, std::move(*stat));

  // A fork, a zygote's child or a helper from the application's own folder.
  const bool runsItself = subject.program == subject.executable;
  const std::string_view folder = folderOf(parent.executable);
  if (!subject.executable.empty() &&
      ((subject.executable == parent.executable &&
        (runsItself || subject.program == parent.program)) ||
       (runsItself && !isSharedFolder(folder) && isBelow(subject.executable, folder)))) {
    return search(parent, depth + 1);
  }
  // A start script that waits for the real program, or a helper in the application's own scope.
  const bool script = parent.program != parent.executable && runsScripts(parent.executable) &&
                      entries_.byProgram(parent.program).entry;
  const bool sameScope = subject.unit.kind == LaunchUnit::Kind::application &&
                         subject.unitName == parent.unitName &&
                         subject.stat.session == parent.stat.session;
  if (!script && !sameScope) return std::nullopt;
  Answer answer = search(parent, depth + 1);
  return answer.certain ? std::optional(std::move(answer)) : std::nullopt;
}

bool ApplicationSearch::plausible(const DesktopEntry* entry, const Subject& subject) const {
  if (entry && DesktopEntries::names(*entry, subject.program)) return true;
  return subject.stat.terminal == 0 && !entries_.byProgram(subject.program).entry;
}

bool ApplicationSearch::startsUnit(const Subject& subject) const {
  return Process(procRoot_, subject.stat.parent).unit() != subject.unitName;
}

ApplicationSearch::Answer ApplicationSearch::withId(const std::string& id) const {
  const DesktopEntry* entry = entries_.byId(id);
  return entry ? known(*entry, false) : Answer{{id, {}, {}, {}}, true, false};
}

ApplicationSearch::Answer ApplicationSearch::launched(const DesktopEntry& entry,
                                                      const Subject& subject) const {
  if (!entry.shown) {
    const ProgramMatch match = entries_.byProgram(subject.program);
    if (match.sure && match.entry->shown) return known(*match.entry, false);
  }
  return known(entry, false);
}

ApplicationSearch::Answer ApplicationSearch::known(const DesktopEntry& entry, bool guessed) const {
  return {entries_.identity(entry), true, guessed};
}

}  // namespace tarnwick::desktop
