#include "tests/core/fake_desktop.h"

#include <algorithm>

namespace tarnwick::test {

namespace {

constexpr double barWidth = 1000;
constexpr double barHeight = 24;

}  // namespace

class FakeDesktop::OwnItem : public StatusItem {
 public:
  OwnItem(FakeDesktop& desktop, std::string name) : desktop_(desktop), name_(std::move(name)) {}
  ~OwnItem() override {
    desktop_.row.remove(desktop_.ownItem(name_));
    desktop_.own_.erase(name_);
  }
  void setLength(double points) override {
    desktop_.row.setLength(desktop_.ownItem(name_), points);
  }
  void placeLeftOf(const StatusItem& sibling) override {
    desktop_.placeLeftOf(name_, static_cast<const OwnItem&>(sibling).name_);
  }
  void setImage(const Drawing& image) override { desktop_.images[name_] = image; }
  void setOnClick(std::function<void(const ClickEvent&)> callback) override {
    desktop_.own_[name_].onClick = std::move(callback);
  }
  std::optional<Rect> frame() const override {
    if (desktop_.picture_.expired()) ++desktop_.looseReads;
    if (desktop_.barAnswers && desktop_.ownFrame) return desktop_.ownFrame;
    return desktop_.barAnswers ? desktop_.row.frame(desktop_.ownItem(name_)) : std::nullopt;
  }

 private:
  FakeDesktop& desktop_;
  std::string name_;
};

FakeDesktop::FakeDesktop() {
  row.setBounds(barWidth, barHeight);
  capture.listNow = [this] {
    std::vector<CapturableWindow> windows;
    for (const auto id : row.order()) windows.push_back({id, *row.frame(id)});
    return windows;
  };
}

std::int32_t FakeDesktop::launch(std::optional<std::string> bundleId,
                                 std::vector<double> itemLengths, std::optional<std::string> name) {
  const std::int32_t pid = nextPid_++;
  for (const double length : itemLengths) {
    const auto id = nextId_++;
    row.insert(id, "item-" + std::to_string(id), bar::Placement::rightmost, length);
    items_[pid].push_back(id);
  }
  running_.push_back({std::move(bundleId), std::move(name), pid, std::nullopt});
  return pid;
}

void FakeDesktop::quit(std::int32_t pid) {
  for (const auto id : items_[pid]) {
    pointer_.forget(id);
    row.remove(id);
  }
  items_.erase(pid);
  std::erase_if(running_, [pid](const auto& app) { return app.processIdentifier == pid; });
}

std::vector<bar::ItemId> FakeDesktop::itemsOf(std::int32_t pid) const {
  const auto found = items_.find(pid);
  return found == items_.end() ? std::vector<bar::ItemId>{} : found->second;
}

bar::ItemId FakeDesktop::ownItem(const std::string& autosaveName) const {
  const auto found = own_.find(autosaveName);
  return found == own_.end() ? 0 : found->second.id;
}

void FakeDesktop::placeLeftOf(const std::string& autosaveName, const std::string& sibling) {
  const auto order = row.order();
  const auto place = [&](const std::string& name) {
    return static_cast<std::size_t>(std::ranges::find(order, ownItem(name)) - order.begin());
  };
  const bool isLeft = place(autosaveName) < place(sibling);
  row.moveTo(ownItem(autosaveName), place(sibling) - (isLeft ? 1 : 0));
}

void FakeDesktop::click(const std::string& autosaveName, const ClickEvent& event) {
  own_.at(autosaveName).onClick(event);
}

std::unique_ptr<Accessibility::Snapshot> FakeDesktop::takeSnapshot() {
  auto held = std::make_unique<HeldPicture>();
  held->picture = picture_.lock();
  if (!held->picture) {
    ++snapshots;
    picture_ = held->picture = std::make_shared<int>();
  }
  return held;
}

AXElement FakeDesktop::applicationElement(std::int32_t pid) {
  return {AXElement::Kind::application, pid, 0, 0};
}

std::optional<AXValue> FakeDesktop::attribute(const AXElement& element, std::string_view name) {
  if (!trusted) return std::nullopt;
  if (element.kind == AXElement::Kind::application && name == ax::extrasMenuBar) {
    const auto override = extrasMenuBars.find(element.pid);
    if (override != extrasMenuBars.end()) return override->second;
    if (!items_.contains(element.pid)) return std::nullopt;
    return AXElement{AXElement::Kind::extrasMenuBar, element.pid, 0, 0};
  }
  if (element.kind == AXElement::Kind::extrasMenuBar && name == ax::children) {
    std::vector<AXElement> children;
    for (const auto id : itemsOf(element.pid)) {
      children.push_back({AXElement::Kind::statusItem, element.pid, id, 0});
    }
    return children;
  }
  if (name == ax::children || element.kind == AXElement::Kind::menuEntry) {
    return menuAttribute(element, name);
  }
  if (element.kind == AXElement::Kind::statusItem) {
    const auto frame = row.frame(element.item);
    if (!frame) return std::nullopt;
    if (name == ax::position) return Point{frame->x, frame->y};
    if (name == ax::size && !unreadable.contains(element.item)) {
      return Size{frame->width, frame->height};
    }
  }
  return std::nullopt;
}

// An item or entry has its open menu as its first child, and that menu its entries.
std::optional<AXValue> FakeDesktop::menuAttribute(const AXElement& element, std::string_view name) {
  using Kind = AXElement::Kind;
  if (element.kind == Kind::statusItem) ++menuReadings;
  const auto open = openMenus.find(element.item);
  if (open == openMenus.end()) return std::nullopt;
  const auto entry = open->second.find(element.kind == Kind::statusItem ? 0 : element.entry);
  if (entry == open->second.end()) return std::nullopt;
  if (name == ax::title) return entry->second.title;
  if (name == ax::enabled) return entry->second.enabled;
  std::vector<AXElement> found;
  if (element.kind == Kind::menu) {
    for (const auto id : entry->second.children) {
      found.push_back({Kind::menuEntry, element.pid, element.item, id});
    }
  } else if (!entry->second.children.empty()) {
    found.push_back({Kind::menu, element.pid, element.item, entry->first});
  }
  return found;
}

void FakeDesktop::perform(const AXElement& element, std::string_view action) {
  std::string line = std::to_string(element.item);
  if (element.kind == AXElement::Kind::statusItem && picture_.expired()) ++looseReads;
  if (element.kind == AXElement::Kind::menuEntry) {
    line.append(":").append(std::to_string(element.entry));
  }
  performed.push_back(line.append(" ").append(action));
}

std::unique_ptr<PanelWindow> FakeDesktop::makePanelWindow() {
  auto window = std::make_unique<PanelWindowState>();
  panelWindow = window.get();
  return window;
}

Registration FakeDesktop::addGlobalPressMonitor(std::function<void()> callback) {
  ++pressMonitors;
  auto observer = std::make_shared<Registration>(outsidePresses.add(std::move(callback)));
  return Registration([this, observer] {
    observer->reset();
    --pressMonitors;
  });
}

Registration FakeDesktop::popUp(const Menu& menu, Point location,
                                std::function<void(const MenuOutcome&)> callback) {
  shownMenu = ShownMenu{menu, location, std::move(callback)};
  menuIsOpen = true;
  return Registration([this] { menuIsOpen = false; });
}

void FakeDesktop::closeMenu(const MenuOutcome& outcome) {
  const auto callback = std::exchange(shownMenu->callback, nullptr);
  callback(outcome);
  loop.runPosted();
}

void FakeDesktop::post(const PointerEvent& event) {
  posted.push_back({event, loop.now()});
  if (!trusted) return;
  switch (event.type) {
    case PointerEventType::leftDown: {
      const auto item = row.itemAt(event.location);
      if (item && !stubborn.contains(*item))
        pointer_.press(event.location, event.flags, bar::RowPointer::Hand::posted);
      break;
    }
    case PointerEventType::leftDragged:
      pointer_.drag(event.location);
      break;
    case PointerEventType::leftUp:
      pointer_.release(event.location);
      break;
  }
}

std::unique_ptr<StatusItem> FakeDesktop::addItem(double length, const std::string& autosaveName) {
  const auto id = nextId_++;
  row.insert(id, autosaveName, bar::Placement::leftmost, length);
  own_[autosaveName].id = id;
  return std::make_unique<OwnItem>(*this, autosaveName);
}

std::optional<DefaultsValue> FakeDesktop::value(const std::string& key) const {
  const auto found = defaults.find(key);
  return found == defaults.end() ? std::nullopt : std::optional(found->second);
}

bool FakeDesktop::set(const std::string& key, DefaultsValue value) {
  if (this->value(key) == value) return true;
  if (defaultsAreReadOnly) return false;
  defaults[key] = std::move(value);
  if (tellsOfWrites) tellOfDefaults();
  return true;
}

bool FakeDesktop::remove(const std::string& key) {
  if (defaultsAreReadOnly) return false;
  defaults.erase(key);
  if (tellsOfWrites) tellOfDefaults();
  return true;
}

void FakeDesktop::tellOfDefaults() {
  loop.post([this] { defaultsChanged_.notify(); });
}

std::vector<std::string> FakeDesktop::keys() const {
  std::vector<std::string> names;
  for (const auto& [key, value] : defaults) names.push_back(key);
  return names;
}

}  // namespace tarnwick::test
