#include <gtest/gtest.h>

#include <chrono>

#include "core/settings/hiding_choice.h"
#include "tests/core/story_test.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using test::boundary;
using test::handle;
using Names = std::vector<std::string>;

// Three applications, the first two hidden and stowed; the time is 2 s.
struct OwedStory : test::Story {
  OwedStory() {
    for (const char* name : {"a", "b", "c"}) pids[name] = desktop.launch(name, {30});
    hide({"a", "b"});
    start();
    desktop.loop.advance(2s);
    EXPECT_TRUE(isHidden(pids["a"]) && isHidden(pids["b"]));
    EXPECT_EQ(stowed(), (Names{"a", "b"}));
  }

  Names stowed() { return Preferences(desktop).stowedBundleIds(); }
  void choose(const std::string& name, bool hidden) {
    EXPECT_TRUE(chooseHidden(Preferences(desktop), controller(), name, hidden));
  }
  void editHidden(const Names& names) {
    hide(names);
    desktop.tellOfDefaults();
  }
  // Released before the drags of a pass that began with it.
  void releaseInAPass() {
    desktop.capture.allowed = true;
    desktop.capture.delay = 500ms;
    choose("c", true);
    choose("a", false);
    desktop.loop.advance(300ms);
  }
  // Where it stood when it was last there.
  void comeBack(const std::string& name) {
    pids[name] = desktop.launch(name, {30});
    desktop.row.moveTo(desktop.itemsOf(pids[name])[0], 0);
    desktop.announceLaunch();
  }

  std::map<std::string, std::int32_t> pids;
};

TEST(OwedTest, WhatIsNoLongerHiddenComesBackAsSoonAsItCan) {
  struct Case {
    const char* name;
    std::function<void(OwedStory&)> change;
    Duration within;
    Names hidden;
  };
  const Case cases[] = {
      {"released, after the usual pause",
       [](OwedStory& t) {
         t.choose("a", false);
         t.desktop.loop.advance(249ms);
         EXPECT_EQ(t.drags(), 2);
       },
       1s,
       {"b"}},
      {"edited by hand", [](OwedStory& t) { t.editHidden({"b"}); }, 1s, {"b"}},
      {"edited with the record lost",
       [](OwedStory& t) {
         t.desktop.defaults.erase("stowedBundleIds");
         t.editHidden({"b"});
       },
       1s,
       {"b"}},
      {"nothing hidden any more and the record lost, which outlives the utility all the same",
       [](OwedStory& t) {
         for (const char* name : {"a", "b"}) t.desktop.quit(t.pids[name]);
         t.desktop.defaults.erase("stowedBundleIds");
         t.editHidden({});
         t.desktop.loop.advance(2s);
         EXPECT_EQ(t.stowed(), (Names{"a", "b"}));
         for (const char* name : {"a", "b"}) t.comeBack(name);
       },
       4s,
       {}},
      {"one of its two items comes later",
       [](OwedStory& t) {
         t.desktop.quit(t.pids["a"]);
         t.pids["a"] = t.desktop.launch("a", {30, 30});
         t.desktop.announceLaunch();
         t.desktop.loop.advance(5s);
         const auto late = t.desktop.itemsOf(t.pids["a"])[1];
         t.desktop.row.remove(late);
         t.choose("a", false);
         t.desktop.loop.advance(2s);
         t.desktop.row.insert(late, "late", bar::Placement::leftmost, 30);
         t.desktop.announceLaunch();
       },
       4s,
       {"b"}},
      {"several at once", [](OwedStory& t) { t.editHidden({}); }, 1200ms, {}},
      {"one for another",
       [](OwedStory& t) {
         t.editHidden({"b", "c"});
       },
       2s,
       {"b", "c"}},
      {"edited during a reveal",
       [](OwedStory& t) { t.controller().revealTemporarily(15s), t.editHidden({"b"}); },
       1s,
       {"b"}},
      {"released while it does not run",
       [](OwedStory& t) {
         t.desktop.quit(t.pids["a"]);
         t.choose("a", false);
         t.desktop.loop.advance(40s);
         EXPECT_EQ(t.stowed(), (Names{"a", "b"}));
         t.comeBack("a");
       },
       4s,
       {"b"}},
      {"its item comes without a launch",
       [](OwedStory& t) {
         t.desktop.quit(t.pids["a"]);
         t.choose("a", false);
         t.desktop.loop.advance(5s);
         t.comeBack("a");
       },
       31s,
       {"b"}},
      {"released while a pass runs that began with it",
       [](OwedStory& t) { t.releaseInAPass(); },
       8s,
       {"b", "c"}},
      {"and a reveal waits when the pass ends",
       [](OwedStory& t) {
         t.releaseInAPass();
         t.controller().revealTemporarily(5s);
       },
       8s,
       {"b", "c"}},
      {"and a menu is waited for when the pass ends",
       [](OwedStory& t) {
         t.releaseInAPass();
         t.desktop.loop.advance(1600ms);
         t.controller().activate("b", false, std::nullopt);
       },
       8s,
       {"b", "c"}},
      {"released just before a pass for what is not there",
       [](OwedStory& t) {
         t.editHidden({});
         t.desktop.loop.advance(1500ms);
         t.editHidden({"a"});
         t.desktop.loop.advance(1s);
         t.choose("a", false);
         t.choose("absent", true);
       },
       1s,
       {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OwedStory story;
    c.change(story);
    story.desktop.loop.advance(c.within);
    for (const auto& [name, pid] : story.pids) {
      EXPECT_EQ(story.isHidden(pid), std::ranges::count(c.hidden, name) == 1) << name;
      const auto edge = story.desktop.frameOf(story.desktop.ownItem(boundary));
      for (const auto item : story.desktop.itemsOf(pid)) {
        EXPECT_EQ(story.desktop.frameOf(item).midX() < edge.midX(),
                  std::ranges::count(c.hidden, name) == 1)
            << name;
      }
    }
    EXPECT_FALSE(story.controller().isEnforcing());
    for (const auto& event : story.desktop.posted) {
      EXPECT_GT(event.event.location.x, 0) << "nothing is dragged out of sight";
    }
  }
}

TEST(OwedTest, TheRecordOutlivesTheUtilityAndNamesNobodyElse) {
  struct Case {
    const char* name;
    Names stowed, hidden;  // as the last run left them; both applications stand on the left
    Names left, owed;      // later
  };
  const Case cases[] = {
      {"killed in a release", {"a"}, {}, {"b"}, {}},
      {"killed in one of two releases", {"a", "b"}, {"b"}, {"b"}, {"b"}},
      {"dragged there by hand", {"c"}, {"c"}, {"a", "b"}, {"c"}},
      {"not there", {"a", "c"}, {}, {"b"}, {"c"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    test::Story story;
    const std::map<std::string, std::int32_t> pids{{"a", story.desktop.launch("a", {30})},
                                                   {"b", story.desktop.launch("b", {30})}};
    story.desktop.defaults["stowedBundleIds"] = c.stowed;
    story.hide(c.hidden);
    story.start();
    for (const auto& [name, pid] : pids) {
      story.desktop.row.moveTo(story.desktop.itemsOf(pid)[0], 0);
    }
    story.desktop.loop.advance(3s);
    const auto edge = story.desktop.frameOf(story.desktop.ownItem(boundary));
    for (const auto& [name, pid] : pids) {
      const auto item = story.desktop.frameOf(story.desktop.itemsOf(pid)[0]);
      EXPECT_EQ(item.maxX() <= edge.minX(), std::ranges::count(c.left, name) == 1) << name;
    }
    EXPECT_EQ(Preferences(story.desktop).stowedBundleIds(), c.owed);
  }
}

TEST(OwedTest, NothingFlickersForWhatIsNotThere) {
  OwedStory story;
  story.desktop.quit(story.pids["a"]);
  story.choose("a", false);
  story.desktop.loop.advance(1s);
  for (int i = 0; i < 70; ++i) {
    if (i % 10 == 0) story.desktop.announceLaunch();
    story.desktop.loop.advance(500ms);
    EXPECT_EQ(story.boundaryLength(), 16000) << i;
  }
  // Nor for what cannot be moved, until the user asks for it.
  OwedStory stuck;
  stuck.desktop.stubborn.insert(stuck.desktop.itemsOf(stuck.pids["a"])[0]);
  stuck.editHidden({"b"});
  stuck.desktop.loop.advance(70s);
  for (int i = 0; i < 70; ++i) {
    stuck.desktop.loop.advance(500ms);
    EXPECT_EQ(stuck.boundaryLength(), 16000) << i;
  }
  stuck.desktop.stubborn.clear();
  stuck.choose("a", false);
  stuck.desktop.loop.advance(1s);
  EXPECT_FALSE(stuck.isHidden(stuck.pids["a"]));
  EXPECT_EQ(stuck.stowed(), Names{"b"});
  // Of what never comes back a bounded number is remembered, the youngest.
  for (int i = 0; i < 600; ++i) {
    story.editHidden({"b", "x" + std::to_string(i)});
    story.desktop.loop.advance(1ms);
  }
  EXPECT_EQ(story.stowed().size(), 502U);
  EXPECT_EQ(story.stowed().front(), "b");
  EXPECT_EQ(story.stowed().back(), "x599");
}

TEST(OwedTest, ASecondApplicationHiddenDuringAPassFollowsItAtOnce) {
  OwedStory story;
  story.desktop.tellsOfWrites = false;  // so that nobody but the asker knows
  story.pids["d"] = story.desktop.launch("d", {30});
  story.choose("c", true);
  story.desktop.loop.advance(200ms);
  story.choose("d", true);
  story.desktop.loop.advance(1s);
  EXPECT_TRUE(story.isHidden(story.pids["c"]) && story.isHidden(story.pids["d"]));
}

TEST(OwedTest, AMenuThatIsAboutToOpenIsNotEndedForAnOldRelease) {
  OwedStory story;
  story.desktop.quit(story.pids["a"]);
  story.choose("a", false);
  story.desktop.loop.advance(5s);
  story.comeBack("a");
  story.desktop.loop.advance(2900ms);
  story.controller().activate("b", false, std::nullopt);
  story.desktop.loop.advance(300ms);  // with the launch's pass
  story.desktop.openMenus[story.desktop.itemsOf(story.pids["b"])[0]] = {{0, {{}, {}, {1}}},
                                                                        {1, {"Open", true, {}}}};
  story.desktop.loop.advance(100ms);
  EXPECT_TRUE(story.desktop.shownMenu);
}

// The handle, dragged by the user to the boundary's left while nothing hides anything.
TEST(OwedTest, TheHandleIsNeverStranded) {
  struct Case {
    const char* name;
    std::function<void(OwedStory&)> then;
  };
  const Case cases[] = {
      {"then something is hidden", [](OwedStory& t) { t.choose("c", true); }},
      {"in a bar that has come back", [](OwedStory& t) { t.desktop.itemsPlaced.notify(); }},
      {"during a pass", [](OwedStory& t) {
         t.desktop.placeLeftOf(boundary, handle);
         t.choose("c", true);
         t.desktop.loop.advance(100ms);
         t.desktop.row.moveTo(t.desktop.ownItem(handle), 0);
       }}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OwedStory story;
    story.desktop.tellsOfWrites = false;  // nor does a second pass follow
    story.controller().revealTemporarily(15s);
    story.desktop.row.moveTo(story.desktop.ownItem(handle), 0);
    c.then(story);
    story.desktop.loop.advance(3s);
    const auto stands = [&](const char* name) {
      return story.desktop.frameOf(story.desktop.ownItem(name));
    };
    EXPECT_GT(stands(handle).minX(), 0);
    EXPECT_EQ(stands(boundary).maxX(), stands(handle).minX());
    EXPECT_TRUE(story.isHidden(story.pids["a"]) && story.isHidden(story.pids["b"]));
  }
  // On the boundary's right it stands where the user likes.
  OwedStory story;
  story.desktop.row.moveTo(story.desktop.ownItem(handle), 4);
  const auto order = story.desktop.row.order();
  story.desktop.loop.advance(40s);
  EXPECT_EQ(story.desktop.row.order(), order);
}

}  // namespace
}  // namespace tarnwick
