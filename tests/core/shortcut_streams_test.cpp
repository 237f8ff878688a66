#include <chrono>

#include "tests/core/shortcuts_test.h"

namespace tarnwick::test {
namespace {

using namespace KeyboardShortcuts;
using namespace std::chrono_literals;
using Log = std::vector<std::string>;

Task listen(MainLoop& /*loop*/, EventStream<EventType> stream,
            std::function<void(const char*)> say) {
  for (;;) {
    const std::optional<EventType> event = co_await stream.next();
    say(!event ? "end" : *event == EventType::keyDown ? "down" : "up");
    if (!event) co_return;
  }
}

Task count(MainLoop& /*loop*/, EventStream<std::monostate> stream, int* values) {
  for (;;) {
    const std::optional<std::monostate> value = co_await stream.next();
    if (!value) co_return;
    ++*values;
  }
}

class ShortcutStreamsTest : public ShortcutsTest {
 protected:
  Task listenTo(EventStream<EventType> stream) {
    return listen(desktop.loop, std::move(stream),
                  [this](const char* text) { log.push_back(text); });
  }
  Log after(const std::function<void()>& act) {
    act();
    desktop.loop.runPosted();
    return noted();
  }
  bool registered() const { return keyboard.registered.contains(commandK); }

  const Name name{"name"};
};

TEST_F(ShortcutStreamsTest, DeliverWhatHappenedInOrderAlsoBeforeAnybodyAwaitsIt) {
  setShortcut(k, name);
  auto early = events(name);
  EXPECT_TRUE(registered());
  strike(commandK);
  strike(commandK);
  listenTo(std::move(early));
  EXPECT_EQ(after([&] {}), (Log{"down", "up", "down", "up"}));
  const Task ups = listenTo(events(EventType::keyUp, name));
  EXPECT_EQ(after([&] { strike(commandK); }), (Log{"down", "up", "up"}));
  EXPECT_EQ(after([&] {
              disable({name});
              strike(commandK);
            }),
            Log());
}

TEST_F(ShortcutStreamsTest, EveryListenerOfAShortcutHearsItAfterTheHandlers) {
  const Name twin("twin"), foreign("foreign");
  for (const Name& each : {name, twin}) setShortcut(k, each);
  setShortcut(j, foreign);
  onKeyDown(twin, note("handler"));
  const auto hear = [&](const std::string& who, EventStream<EventType> stream) {
    listen(desktop.loop, std::move(stream), [this, who](const char* what) {
      if (std::string_view(what) != "end") log.push_back(who + ' ' + what);
    });
  };
  hear("name", events(name));
  hear("twin", events(EventType::keyUp, twin));
  hear("foreign", events(foreign));
  hear("shortcut", events(k));
  const struct {
    const char* label;
    std::function<void()> before;
    Log heard;
  } cases[] = {
      {"all",
       [] {},
       {"handler", "name down", "shortcut down", "name up", "twin up", "shortcut up"}},
      {"one disabled",
       [&] { disable({name}); },
       {"handler", "shortcut down", "twin up", "shortcut up"}},
      {"moved", [&] { setShortcut(j, twin); }, {"shortcut down", "shortcut up"}},
      {"paused", [] { setPaused(true); }, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(after([&] {
                c.before();
                keyboard.press(commandK);
                desktop.loop.runPosted();
                keyboard.release(commandK);
              }),
              c.heard);
  }
}

TEST_F(ShortcutStreamsTest, EndWithTheirTaskAndGiveTheKeyBack) {
  const struct {
    const char* label;
    std::function<EventStream<EventType>()> open;
  } cases[] = {
      {"of a name", [this] { return events(name); }},
      {"of a shortcut", [this] { return events(k); }},
      {"one type of a shortcut", [this] { return events(EventType::keyDown, k); }},
  };
  setShortcut(k, name);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    const Task task = listenTo(c.open());
    const Task second = listenTo(c.open());
    EXPECT_EQ(after([&] { keyboard.press(commandK); }), (Log{"down", "down"}));
    EXPECT_EQ(after([&] { task.cancel(); }), Log{"end"});
    EXPECT_TRUE(task.isDone());
    EXPECT_EQ(after([&] { keyboard.press(commandK); }), Log{"down"});
    EXPECT_TRUE(registered());
    after([&] { second.cancel(); });
    EXPECT_FALSE(registered());
    { const auto unused = c.open(); }
    EXPECT_TRUE(registered()) << "streams end in a later turn";
    desktop.loop.runPosted();
    EXPECT_FALSE(registered());
  }
}

TEST_F(ShortcutStreamsTest, KeepTheKeyBesideHandlers) {
  setShortcut(k, name);
  onKeyDown(name, note("handler"));
  const Task task = listenTo(events(k));
  EXPECT_EQ(after([&] { keyboard.press(commandK); }), (Log{"handler", "down"}));
  removeAllHandlers();
  EXPECT_TRUE(registered());
  setShortcut(std::nullopt, name);
  EXPECT_TRUE(registered());
  after([&] { task.cancel(); });
  EXPECT_FALSE(registered());
}

// A task that waits for ever is freed with the module.
TEST_F(ShortcutStreamsTest, TasksAreFreedWithTheModule) {
  setShortcut(k, name);
  const Task named = listenTo(events(name));
  int values = 0;
  const Task repeated = count(desktop.loop, repeatingKeyDownEvents(k), &values);
  after([&] { keyboard.press(commandK); });
  module.reset();
  EXPECT_TRUE(named.isDone() && repeated.isDone());
  EXPECT_TRUE(keyboard.registered.empty());
  desktop.loop.advance(1s);
  EXPECT_EQ(values, 1);
}

TEST_F(ShortcutStreamsTest, RepeatWhileTheKeyIsHeld) {
  struct Case {
    const char* label;
    std::function<void()> interruption;  // 600 ms after the press
    int expected;                        // values by 1 s: at 0, 500, 540, 580, and so on
  };
  const Case cases[] = {
      {"nothing", [] {}, 14},
      {"release", [this] { keyboard.release(commandK); }, 4},
      {"pause", [] { setPaused(true); }, 4},
      {"switched off", [] { setEnabled(false); }, 4},
      {"another press", [this] { keyboard.press(commandK); }, 5},
      {"another shortcut", [this] { setShortcut(j, name); }, 4},
      {"name disabled", [this] { disable({name}); }, 4},
  };
  for (const bool named : {true, false}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.label);
      if (!named && std::string_view(c.label) != "release") continue;
      module.reset();
      module = use({desktop.loop, desktop, keyboard, keyboard, notifications});
      setShortcut(k, name);
      int values = 0;
      const Task task = count(
          desktop.loop, named ? repeatingKeyDownEvents(name) : repeatingKeyDownEvents(k), &values);
      desktop.loop.advance(100ms);
      keyboard.press(commandK);
      desktop.loop.advance(0ms);
      EXPECT_EQ(values, 1);
      desktop.loop.advance(499ms);
      EXPECT_EQ(values, 1);
      desktop.loop.advance(101ms);
      EXPECT_EQ(values, 4);
      c.interruption();
      desktop.loop.advance(400ms);
      EXPECT_EQ(values, c.expected);
      task.cancel();
      desktop.loop.advance(1s);
      EXPECT_EQ(values, c.expected);
      EXPECT_TRUE(keyboard.registered.empty());
      EXPECT_EQ(desktop.loop.timerCount(), 0u);
    }
  }
}

// A slow reader finds the newest value only.
TEST_F(ShortcutStreamsTest, RepetitionsDoNotPileUp) {
  auto stream = repeatingKeyDownEvents(k);
  desktop.loop.advance(0ms);
  keyboard.press(commandK);
  desktop.loop.advance(2s);
  keyboard.release(commandK);
  desktop.loop.advance(0ms);
  int values = 0;
  const Task task = count(desktop.loop, std::move(stream), &values);
  desktop.loop.advance(1s);
  EXPECT_EQ(values, 1);
}

}  // namespace
}  // namespace tarnwick::test
