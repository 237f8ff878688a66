#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "bar/row/item_row.h"
#include "bar/row/row_pointer.h"
#include "common/base/callback_list.h"
#include "core/panel/panel_view.h"
#include "core/ports/desktop.h"
#include "tests/core/fake_capture.h"
#include "tests/core/fake_main_loop.h"
#include "tests/core/fake_settings.h"

namespace tarnwick::test {

// A desktop in memory: a bar 1,000 points wide and 24 high with the real row and drag rules,
// applications with status items in it and menus, windows, a store and a virtual clock.
class FakeDesktop : public Accessibility,
                    public PointerEvents,
                    public Workspace,
                    public StatusBar,
                    public Screens,
                    public DefaultsStore,
                    public Application,
                    public PanelWindows,
                    public EventMonitors,
                    public Menus {
 public:
  FakeDesktop();
  // An open menu's callback holds what uses the rest.
  ~FakeDesktop() override { shownMenu.reset(); }

  Desktop services() {
    return {loop,    *this, *this, *this, *this,    *this,    *this,    *this,   capture,
            capture, *this, *this, *this, settings, settings, settings, settings};
  }

  // An application that joins the running ones. Its items are added right of all others, so that
  // the first added is the leftmost.
  std::int32_t launch(std::optional<std::string> bundleId, std::vector<double> itemLengths = {},
                      std::optional<std::string> name = std::nullopt);
  void quit(std::int32_t pid);
  RunningApplication& running(std::size_t index) { return running_[index]; }
  // Tells the launch observers.
  void announceLaunch() { launched_.notify(); }

  std::vector<bar::ItemId> itemsOf(std::int32_t pid) const;
  Rect frameOf(bar::ItemId id) const { return *row.frame(id); }
  // Autosave name to id; 0 when there is none.
  bar::ItemId ownItem(const std::string& autosaveName) const;
  double ownLength(const std::string& autosaveName) const {
    return row.length(ownItem(autosaveName));
  }
  void placeLeftOf(const std::string& autosaveName, const std::string& sibling);
  void click(const std::string& autosaveName, const ClickEvent& event);

  struct PostedEvent {
    PointerEvent event;
    Duration at;
    bool operator==(const PostedEvent&) const = default;
  };

  bar::ItemRow row;
  bool trusted = true;
  int accessPrompts = 0;
  bool barAnswers = true;                          // whether frames of own items can be read
  std::optional<Rect> ownFrame;                    // told for own items in place of the real one
  std::set<bar::ItemId> stubborn;                  // items that cannot be dragged
  std::set<bar::ItemId> unreadable;                // items whose size cannot be read
  std::map<std::int32_t, AXValue> extrasMenuBars;  // answers in place of the real ones
  std::optional<Point> pointerLocation;
  std::vector<Point> warps;
  std::vector<PostedEvent> posted;
  int snapshots = 0;   // pictures taken while there was none
  int looseReads = 0;  // own frames read and items pressed without one
  std::vector<Screen> screens{{{0, 0, 1000, 800}, {0, 24, 1000, 776}}};
  std::size_t mainScreen = 0;  // among the screens; beyond them for none
  // What a test writes here by itself is announced by tellOfDefaults() only.
  std::map<std::string, DefaultsValue> defaults;
  bool defaultsAreReadOnly = false;  // writes fail
  bool tellsOfWrites = true;
  void tellOfDefaults();
  std::map<std::string, Drawing> images;  // autosave name to the last image set
  std::vector<ActivationPolicy> policies;
  std::map<std::string, std::string, std::less<>> bundle;
  std::vector<std::string> lifeEvents;  // "new instance" and "terminate", as asked for

  // Menu entries by id; the children of 0 are the item's own menu, and entries of one item only.
  struct MenuEntry {
    std::optional<AXValue> title;
    std::optional<AXValue> enabled;
    std::vector<std::int32_t> children;
  };
  std::map<bar::ItemId, std::map<std::int32_t, MenuEntry>> openMenus;  // what can be read now
  std::map<bar::ItemId, float> timeouts;
  std::map<bar::ItemId, Point> places;  // suggested ones
  std::vector<std::string> performed;   // "<item>[:<entry>] <action>"
  int menuReadings = 0;

  class PanelWindowState : public PanelWindow {
   public:
    void setRootView(const PanelView& view) override {
      root = view;
      ++renders;
    }
    Size fittingSize() const override { return fitting; }
    void setContentSize(Size size) override { content = size; }
    Size contentSize() const override { return content; }
    void setTopLeft(Point point) override { topLeft = point; }
    void orderFrontRegardless() override { visible = true; }
    void orderOut() override { visible = false; }
    bool isVisible() const override { return visible; }

    PanelView root;
    int renders = 0;
    Size fitting{200, 100};
    Size content;
    std::optional<Point> topLeft;
    bool visible = false;
  };
  PanelWindowState* panelWindow = nullptr;  // the last one made
  CallbackList outsidePresses;
  CallbackList barVanished;
  CallbackList itemsPlaced;
  int pressMonitors = 0;  // installed now

  struct ShownMenu {
    Menu menu;
    Point at;
    std::function<void(const MenuOutcome&)> callback;
  };
  std::optional<ShownMenu> shownMenu;  // the last one
  bool menuIsOpen = false;
  void closeMenu(const MenuOutcome& outcome);

  // Accessibility
  bool isProcessTrusted() override { return trusted; }
  bool isProcessTrusted(bool prompt) override {
    if (prompt) ++accessPrompts;
    return trusted;
  }
  std::unique_ptr<Snapshot> takeSnapshot() override;
  AXElement applicationElement(std::int32_t pid) override;
  std::optional<AXValue> attribute(const AXElement& element, std::string_view name) override;
  void perform(const AXElement& element, std::string_view action) override;
  void suggestPlace(const AXElement& element, Point place) override {
    places[element.item] = place;
  }
  void setMessagingTimeout(const AXElement& element, float seconds) override {
    timeouts[element.item] = seconds;
  }

  // PointerEvents
  std::optional<Point> location() override { return pointerLocation; }
  void post(const PointerEvent& event) override;
  void warp(Point to) override { warps.push_back(to); }

  // Workspace
  std::vector<RunningApplication> runningApplications() override { return running_; }
  Registration onApplicationLaunched(std::function<void()> callback) override {
    return launched_.add(std::move(callback));
  }

  // StatusBar
  std::unique_ptr<StatusItem> addItem(double length, const std::string& autosaveName) override;
  Registration onVanished(std::function<void()> callback) override {
    return barVanished.add(std::move(callback));
  }
  Registration onItemsPlaced(std::function<void()> callback) override {
    return itemsPlaced.add(std::move(callback));
  }

  // Screens
  std::vector<Screen> all() const override { return screens; }
  std::optional<Screen> main() const override {
    return mainScreen < screens.size() ? std::optional(screens[mainScreen]) : std::nullopt;
  }

  // DefaultsStore
  std::optional<DefaultsValue> value(const std::string& key) const override;
  bool set(const std::string& key, DefaultsValue value) override;
  bool remove(const std::string& key) override;
  std::vector<std::string> keys() const override;
  bool contains(const std::string& key) const override { return defaults.contains(key); }
  Registration onChanged(std::function<void()> callback) override {
    return defaultsChanged_.add(std::move(callback));
  }

  // PanelWindows, EventMonitors, Menus
  std::unique_ptr<PanelWindow> makePanelWindow() override;
  Registration addGlobalPressMonitor(std::function<void()> callback) override;
  Registration popUp(const Menu& menu, Point location,
                     std::function<void(const MenuOutcome&)> callback) override;

  // Application
  void setActivationPolicy(ActivationPolicy policy) override { policies.push_back(policy); }
  std::string bundleIdentifier() const override { return "org.tarnwick.Tarnwick"; }
  std::optional<std::string> bundleInfo(std::string_view key) const override {
    const auto found = bundle.find(key);
    return found == bundle.end() ? std::nullopt : std::optional(found->second);
  }
  void openNewInstance(std::function<void()> reported) override {
    lifeEvents.emplace_back("new instance");
    loop.post(std::move(reported));
  }
  void terminate() override { lifeEvents.emplace_back("terminate"); }

 private:
  class OwnItem;
  struct Owned {
    bar::ItemId id = 0;
    std::function<void(const ClickEvent&)> onClick;
  };

  std::optional<AXValue> menuAttribute(const AXElement& element, std::string_view name);

  struct HeldPicture : Snapshot {
    std::shared_ptr<int> picture;
  };

  bar::RowPointer pointer_{row};
  std::weak_ptr<int> picture_;
  std::vector<RunningApplication> running_;
  std::map<std::int32_t, std::vector<bar::ItemId>> items_;
  std::map<std::string, Owned> own_;
  CallbackList launched_;
  CallbackList defaultsChanged_;
  std::int32_t nextPid_ = 100;
  bar::ItemId nextId_ = 1;

 public:
  FakeMainLoop loop;  // goes before the rest: the work it holds uses it
  FakeCapture capture{loop};
  FakeSettings settings;
};

}  // namespace tarnwick::test
