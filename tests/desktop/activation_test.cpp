#include <QDir>
#include <QFile>
#include <algorithm>
#include <functional>
#include <memory>
#include <string>

#include "harness/accessible_tree.h"
#include "harness/status_desktop_test.h"
#include "harness/x_screen.h"
#include "utility/bar_client/bar_status_bar.h"
#include "utility/loop/qt_main_loop.h"

namespace tarnwick::test {
namespace {

using namespace std::chrono_literals;

constexpr Client fake{"fake_sni_client", "fake_sni_client"};
const QRect belowTheBar(0, 24, 1280, 776);

class ActivationTest : public StatusDesktopTest {
 protected:
  // Hides the clients beyond the boundary; the last one comes with these arguments.
  std::vector<Program*> begin(const std::vector<Client>& clients, const QStringList& last = {}) {
    grantUtility();
    startBar();
    std::vector<Program*> programs;
    for (const Client& client : clients) {
      const bool isLast = client.bundleId == clients.back().bundleId;
      programs.push_back(&desktop.start(client.program, isLast ? last : QStringList()));
    }
    hideInDefaults(clients);
    for (const Client& client : clients) {
      EXPECT_TRUE(waitFor([&] { return shown(client); })) << client.program << row();
    }
    utility = &startUtility();
    EXPECT_TRUE(waitFor([&] {
      return collapsed() && std::all_of(clients.begin(), clients.end(),
                                        [&](const Client& client) { return hidden(client); });
    })) << row();
    return programs;
  }

  void xdotool(const QString& commands) {
    desktop.start("xdotool", commands.split(' ')).waitForEnd();
  }
  void click(QPointF at) {
    xdotool(QString("mousemove %1 %2 click 1").arg(qRound(at.x())).arg(qRound(at.y())));
  }

  std::vector<PopupWindow> popupsOf(qint64 pid) {
    std::vector<PopupWindow> found = popups(desktop.display());
    std::erase_if(found, [pid](const PopupWindow& popup) { return popup.pid != pid; });
    return found;
  }
  QRect panelFrame() {
    for (const PopupWindow& popup : popupsOf(utility->pid())) {
      if (popup.name == "Hidden apps") return popup.frame;
    }
    return {};
  }
  // The proxy menu and its submenus, in the order of their opening.
  std::vector<QRect> menus() {
    std::vector<QRect> frames;
    for (const PopupWindow& popup : popupsOf(utility->pid())) {
      if (popup.name != "Hidden apps") frames.push_back(popup.frame);
    }
    return frames;
  }
  bool menuIsOpen() { return !menus().empty(); }

  // Opens the panel and tells where the `index`th of `count` entries is. Of them all no more than
  // one row.
  QPoint entryInPanel(int index = 0, int count = 1) {
    EXPECT_TRUE(desktop.activateAction("toggle-panel"));
    EXPECT_TRUE(waitFor([&] { return !panelFrame().isEmpty(); }));
    const QRect panel = panelFrame();
    const double cell = 42;  // from one entry to the next
    return {qRound(panel.center().x() + (index - (count - 1) / 2.0) * cell), panel.center().y()};
  }
  // Presses that entry, and tells where.
  QPoint pressEntry(int index = 0, int count = 1) {
    const QPoint entry = entryInPanel(index, count);
    click(entry);
    EXPECT_TRUE(waitFor([&] { return panelFrame().isEmpty(); }));
    return entry;
  }
  void openMenu(int index = 0, int count = 1) {
    const QPoint entry = pressEntry(index, count);
    ASSERT_TRUE(waitFor([&] { return menuIsOpen(); }));
    EXPECT_EQ(menus().size(), 1U);
    const QRect menu = menus().front();
    EXPECT_NEAR(menu.top(), 25, 1);  // the screen's edge, or two points below it
    EXPECT_NEAR(menu.left(), std::min(entry.x() - 8, 1280 - menu.width()), 3);
  }
  // Windows on the screen whose title or class has this in it.
  qsizetype windows(const QString& name) {
    Program& search =
        desktop.start("xdotool", {"search", "--onlyvisible", "--any", "--name", "--class", name});
    search.waitForEnd();
    return search.output().count('\n');
  }
  static bool said(const Program& client, const QByteArray& line) {
    return client.output().split('\n').contains(line);
  }
  static int times(const Program& client, const QByteArray& line) {
    return static_cast<int>(client.output().split('\n').count(line));
  }

  Program* utility = nullptr;
};

TEST_F(ActivationTest, ProxyMenusOfRealClientsDoWhatTheirMenusDo) {
  struct Case {
    Client client;
    const char* keys;    // that choose an entry
    const char* window;  // that its command opens
  };
  const std::vector<Case> cases{{copyq, "s h o Return", "copyq"},
                                {diodon, "Up Up Return", "diodon"},
                                {gxkb, "a Return", "About"}};
  std::vector<Client> clients;
  for (const Case& each : cases) clients.push_back(each.client);
  const std::vector<Program*> programs = begin(clients);
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(cases[i].client.program);
    const int index = static_cast<int>(i);
    openMenu(index, 3);
    xdotool("key Escape");
    ASSERT_TRUE(waitFor([&] { return !menuIsOpen(); }));
    EXPECT_EQ(windows(cases[i].window), 0);

    openMenu(index, 3);
    xdotool(QString("key ") + cases[i].keys);
    EXPECT_TRUE(waitFor([&] { return windows(cases[i].window) > 0; }));
    EXPECT_FALSE(menuIsOpen());
    EXPECT_TRUE(hidden(cases[i].client)) << row();
  }
  openMenu(1, 3);
  xdotool("key q Return");
  EXPECT_TRUE(programs[1]->waitForEnd()) << "its last entry is Quit";
}

TEST_F(ActivationTest, IconsWithoutAReadableMenuOpenTheirOwnBelowTheEntry) {
  const QString folder = desktop.folder("config") + "/volumeicon";
  QDir().mkpath(folder);
  QFile settings(folder + "/volumeicon");
  ASSERT_TRUE(settings.open(QFile::WriteOnly));
  settings.write("[StatusIcon]\nlmb_slider=true\n");
  settings.close();
  const auto programs = begin({parcellite, volumeicon});
  const QPoint handle = native("tarnwick.handle")->frame.center().toPoint();
  for (int i = 0; i < 2; ++i) {
    SCOPED_TRACE(programs[i]->name().toStdString());
    const auto before = windows(programs[i]->name());
    programs[i]->freeze();
    const QPoint entry = pressEntry(i, 2);
    letPass(500ms);  // a client that is late
    programs[i]->thaw();
    ASSERT_TRUE(waitFor([&] { return !popupsOf(programs[i]->pid()).empty(); }));
    const QRect opened = popupsOf(programs[i]->pid()).front().frame;
    EXPECT_TRUE(belowTheBar.contains(opened));
    EXPECT_TRUE(opened.adjusted(-30, -80, 30, 0).contains(entry)) << opened.x() << entry.x();
    EXPECT_FALSE(menuIsOpen());
    if (i == 1) continue;
    xdotool("key Down Return");  // its first command opens a dialog
    EXPECT_TRUE(waitFor([&] {
      return popupsOf(programs[i]->pid()).empty() && windows(programs[i]->name()) == before + 1;
    }));
  }
  EXPECT_EQ(native("tarnwick.handle")->frame.center().toPoint(), handle);
}

TEST_F(ActivationTest, KeysAndPointerWorkInAMenuFourLevelsDeep) {
  Program& client = *begin({fake}, {"--menu-depth", "3", "--lazy-menu"})[0];
  struct Case {
    const char* commands;
    const char* event;  // of the client afterwards
  };
  const std::vector<Case> cases{
      {"key Escape", "Event 0 closed"},
      {"key Down Return", "Event 1 clicked"},
      // A disabled entry and a separator are passed over.
      {"key Down Down Down Down Return", "Event 6 clicked"},
      {"key q Return", "Event 7 clicked"},
      // Entries of the third level are leaves, even one that has a submenu.
      {"key s Right Right Return", "Event 2000000 clicked"},
      {"key s Right i Return", "Event 1000001 clicked"},
      {"key s Right Escape Escape", "Event 0 closed"},
      {"mousemove 200 600 click 1", "Event 0 closed"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.commands);
    const int before = times(client, each.event);
    openMenu();
    xdotool(each.commands);
    EXPECT_TRUE(waitFor([&] { return times(client, each.event) == before + 1; }))
        << client.output().toStdString();
    EXPECT_TRUE(waitFor([&] { return !menuIsOpen(); }));
  }
  // By the pointer, through the submenu; the disabled entry does nothing.
  openMenu();
  const QRect menu = menus().front();
  click({menu.center().x() * 1.0, menu.top() + menu.height() * 0.65});
  EXPECT_TRUE(waitFor([&] { return menuIsOpen(); }));
  xdotool(QString("mousemove %1 %2").arg(menu.center().x()).arg(menu.top() + menu.height() / 2));
  ASSERT_TRUE(waitFor([&] { return menus().size() == 2; }));
  const QRect submenu = menus()[1];
  click({submenu.center().x() * 1.0, submenu.bottom() - 8.0});
  EXPECT_TRUE(waitFor([&] { return said(client, "Event 1000003 clicked"); }))
      << client.output().toStdString();
}

TEST_F(ActivationTest, ReleaseOfThePressOnAnEntryChoosesNothing) {
  Program& client = *begin({fake})[0];
  QStringList shaky;
  for (int i = 0; i < 10; ++i) {
    shaky << (i % 2 ? "mousemove_relative -- -1 1" : "mousemove_relative 1 0") << "sleep 0.02";
  }
  for (const QString& moves : {QString(), shaky.join(' '), QString("mousemove_relative 30 0")}) {
    for (const QString button : {"1", "3"}) {
      SCOPED_TRACE((button + ' ' + moves).toStdString());
      const auto before = client.output().count("clicked");
      const QPoint entry = entryInPanel();
      xdotool(QString("mousemove %1 %2 mousedown ").arg(entry.x()).arg(entry.y()) + button);
      ASSERT_TRUE(waitFor([&] { return menuIsOpen(); }));
      xdotool((moves + " mouseup " + button).trimmed());
      xdotool("key q Return");
      ASSERT_TRUE(
          waitFor([&] { return client.output().count("clicked") > before && !menuIsOpen(); }));
      EXPECT_EQ(client.output().count("clicked"), client.output().count("Event 7 clicked"));
    }
  }
}

TEST_F(ActivationTest, MenusThatClientsShowThemselvesWaitForTheRelease) {
  Program& client = *begin({parcellite})[0];
  const auto before = windows("parcellite");
  const QPoint entry = entryInPanel();
  xdotool(QString("mousemove %1 %2 mousedown 1").arg(entry.x()).arg(entry.y()));
  letPass(1s);  // after which its toolkit takes a release for a choice
  xdotool("mousemove_relative 5 3 sleep 0.05 mousemove_relative 5 3 sleep 0.05 mouseup 1");
  ASSERT_TRUE(waitFor([&] { return !popupsOf(client.pid()).empty(); }));
  letPass(500ms);
  EXPECT_FALSE(popupsOf(client.pid()).empty());
  xdotool("key Escape");
  EXPECT_TRUE(waitFor([&] { return popupsOf(client.pid()).empty(); }));
  EXPECT_EQ(windows("parcellite"), before) << "no command has opened a dialog";
}

TEST_F(ActivationTest, MenuOfTheBarIsNotChosenInByAPressFromBefore) {
  Program& barProgram = startBar();
  Program& client = desktop.start("fake_sni_client", {"--menu-slow", "500"});
  ASSERT_TRUE(waitFor([&] { return shown(fake); }));
  const QPoint item = bar.itemsOf(fake.bundleId).front().frame.center().toPoint();
  desktop.click(item, 3);
  xdotool("mousedown 1");
  ASSERT_TRUE(waitFor([&] { return popupsOf(barProgram.pid()).size() == 1; }));
  const QRect menu = popupsOf(barProgram.pid()).front().frame;
  xdotool(QString("mousemove %1 %2 sleep 0.05 mousemove_relative 5 5 sleep 0.05 mouseup 1")
              .arg(menu.center().x())
              .arg(menu.top() + 10));
  xdotool("key q");
  ASSERT_TRUE(waitFor([&] { return client.output().contains("clicked"); }));
  EXPECT_TRUE(said(client, "Event 7 clicked")) << client.output().toStdString();
}

TEST_F(ActivationTest, EntryIsPressedThoughItsLabelChanges) {
  Program& client = *begin({fake})[0];
  openMenu();
  client.write("menu-label 7 Leave");
  client.write("menu-label 6 Quit it");  // begins as the old one did
  const auto readings = client.output().count("GetLayout");
  client.write("menu-storm");
  ASSERT_TRUE(waitFor([&] { return client.output().count("GetLayout") > readings; }));
  xdotool("key q Return");
  EXPECT_TRUE(waitFor([&] { return said(client, "Event 7 clicked"); }))
      << client.output().toStdString();
}

TEST_F(ActivationTest, NothingIsPressedInAMenuThatCannotBeReadAgain) {
  Program& client = *begin({fake})[0];
  for (const QByteArray answer : {"error", "never"}) {
    SCOPED_TRACE(answer.toStdString());
    client.write("menu-layout true");
    openMenu();
    const auto readings = client.output().count("GetLayout");
    client.write("menu-layout " + answer);
    client.write("menu-renumber");
    ASSERT_TRUE(waitFor([&] { return client.output().count("GetLayout") > readings; }));
    const int closed = times(client, "Event 0 closed");
    xdotool("key q Return");
    EXPECT_TRUE(waitFor([&] { return times(client, "Event 0 closed") > closed; }));
    EXPECT_FALSE(client.output().contains("clicked")) << client.output().toStdString();
  }
}

// What an owner does when its menu is about to be shown.
class MenuOpeningTest : public ActivationTest, public testing::WithParamInterface<const char*> {};

TEST_P(MenuOpeningTest, MenuComesWhateverIsAnsweredAndIsPressedAfterItWasRenumbered) {
  Program& client = *begin({fake}, QString(GetParam()).split(' '))[0];
  openMenu();
  const auto readings = client.output().count("GetLayout");
  client.write("menu-renumber");
  ASSERT_TRUE(waitFor([&] { return client.output().count("GetLayout") > readings; }));
  xdotool("key q Return");
  EXPECT_TRUE(waitFor([&] { return said(client, "Event 100007 clicked"); }))
      << client.output().toStdString();
  EXPECT_TRUE(waitFor([&] { return client.output().contains("Event 0 closed"); }));
  EXPECT_LT(client.output().indexOf("clicked"), client.output().indexOf("Event 0 closed"));
  EXPECT_FALSE(client.output().contains("Activate"));
}

INSTANTIATE_TEST_SUITE_P(Answers, MenuOpeningTest,
                         testing::Values("--about-to-show error --lazy-root",
                                         "--about-to-show missing",
                                         "--about-to-show late-error --lazy-root",
                                         "--about-to-show empty --lazy-root",
                                         "--about-to-show true --lazy-root",
                                         "--about-to-show never --lazy-root --lazy-menu",
                                         "--menu-slow 180 --lazy-menu", "--menu-fills-after 300"));

// Without a menu, or with one that stays empty until it is too late.
class NoMenuTest : public ActivationTest, public testing::WithParamInterface<const char*> {};

TEST_P(NoMenuTest, ItemIsActivatedBelowItsEntryOnceTheButtonIsUp) {
  Program& client = *begin({fake}, QString(GetParam()).split(' '))[0];
  const QPoint entry = entryInPanel();
  xdotool(QString("mousemove %1 %2 mousedown 1").arg(entry.x()).arg(entry.y()));
  letPass(1s);  // longer than a menu is looked for
  EXPECT_FALSE(client.output().contains("Activate"));
  xdotool("mouseup 1");
  ASSERT_TRUE(waitFor([&] { return client.output().contains("Activate"); }));
  const QByteArray call = client.output().mid(client.output().indexOf("Activate"));
  EXPECT_NEAR(call.split(' ').value(1).toInt(), entry.x() - 8, 3) << call.toStdString();
  EXPECT_EQ(times(client, "Event 0 closed"), times(client, "Event 0 opened"));
  letPass(1500ms);  // a menu that is filled now stays unseen
  EXPECT_FALSE(menuIsOpen());
  EXPECT_EQ(client.output().count("Activate"), 1);
}

INSTANTIATE_TEST_SUITE_P(Items, NoMenuTest,
                         testing::Values("--menu none", "--menu-fills-after 2000"));

TEST_F(ActivationTest, PressOfAnEntryAsksTheBarOnce) {
  begin({fake});
  Program& monitor = desktop.start(
      "dbus-monitor", {"--profile", "type='method_call',interface='org.tarnwick.MenuBar1'"});
  ASSERT_TRUE(waitFor([&] { return monitor.output().contains("NameLost"); }));
  // Calls of the bar while `work` is done, between two that it does not know.
  const auto calls = [&](const QByteArray& name, const std::function<void()>& work) {
    const auto mark = [&](const QByteArray& method) {
      desktop.bus().send(QDBusMessage::createMethodCall(
          "org.tarnwick.MenuBar1", "/org/tarnwick/MenuBar1", "org.tarnwick.MenuBar1", method));
    };
    mark("Before" + name);
    work();
    mark("After" + name);
    EXPECT_TRUE(waitFor([&] { return monitor.output().contains("After" + name); }));
    const QByteArray all = monitor.output();
    const auto begin = all.indexOf("Before" + name);
    return all.mid(begin, all.indexOf("After" + name) - begin).count("\nmc") - 1;
  };
  const QPoint entry = entryInPanel();
  EXPECT_EQ(calls("Press",
                  [&] {
                    click(entry);
                    EXPECT_TRUE(waitFor([&] { return menuIsOpen(); }));
                  }),
            1)
      << monitor.output().toStdString();

  // And where our own item is, below which a menu comes that belongs to no entry.
  QtMainLoop loop;
  const auto bus = desktop.connect();
  BarConnection connection(loop, *bus);
  BarSnapshots snapshots(connection);
  BarStatusBar statusBar(connection, snapshots);
  const auto own = statusBar.addItem(10, "own");
  ASSERT_TRUE(waitFor([&] { return own->frame() && connection.hasAccess("accessibility"); }));
  const auto frame = own->frame();
  EXPECT_EQ(calls("Snapshot",
                  [&] {
                    const auto outer = snapshots.take();
                    const auto inner = snapshots.take();
                    EXPECT_EQ(own->frame(), frame);
                  }),
            1)
      << monitor.output().toStdString();
}

TEST_F(ActivationTest, StoppedOrDyingClientsLeaveNothingBehind) {
  Program& client = *begin({fake})[0];
  client.freeze();
  pressEntry();
  letPass(1s);  // the watch has ended by now
  EXPECT_FALSE(menuIsOpen());
  client.thaw();
  EXPECT_TRUE(waitFor([&] { return said(client, "Event 0 closed"); })) << "nobody looks at it";
  EXPECT_FALSE(menuIsOpen()) << "an answer after the watch shows nothing";

  openMenu();
  client.freeze();
  xdotool("key Escape");
  EXPECT_TRUE(waitFor([&] { return !menuIsOpen(); })) << "without its owner's help";
  client.thaw();

  openMenu();
  const int closed = times(client, "Event 0 closed");
  client.write("status Passive");
  EXPECT_TRUE(waitFor([&] { return !menuIsOpen(); })) << "it goes with its item";
  EXPECT_TRUE(waitFor([&] { return times(client, "Event 0 closed") > closed; }));
  client.write("status Active");
  ASSERT_TRUE(waitFor([&] { return hidden(fake); })) << row();

  openMenu();
  client.kill();
  EXPECT_TRUE(waitFor([&] { return !menuIsOpen(); })) << "it goes with its owner";
  EXPECT_TRUE(utility->running());
  EXPECT_TRUE(InputGrab(desktop.display()).held()) << "nothing is held any more";
}

TEST_F(ActivationTest, LongMenuScrollsAndStaysOnTheScreen) {
  Program& client = *begin({fake}, {"--menu-entries", "2000"})[0];
  openMenu();
  EXPECT_TRUE(belowTheBar.contains(menus().front()));
  EXPECT_LT(menus().front().width(), 400) << "one column";
  xdotool("key Up Up Return");
  EXPECT_TRUE(waitFor([&] { return said(client, "Event 1999 clicked"); }));
  openMenu();
  desktop.start("xdotool", {"type", "--delay", "1", "entry 1234"}).waitForEnd();
  xdotool("key Return");
  EXPECT_TRUE(waitFor([&] { return said(client, "Event 1234 clicked"); }));
}

TEST_F(ActivationTest, MenuWaitsAMomentForItsTurnAndGivesUp) {
  AccessibleTree tree(desktop);
  Program& client = *begin({fake})[0];
  // Without the pointer, which another program holds.
  const auto press = [&] {
    ASSERT_TRUE(desktop.activateAction("toggle-panel"));
    std::optional<Accessible> entry;
    ASSERT_TRUE(waitFor([&] {
      for (const Accessible& object : tree.objectsOf("tarnwick")) {
        if (object.role == "push button" && !panelFrame().isEmpty()) entry = object;
      }
      return entry.has_value();
    }));
    ASSERT_TRUE(tree.doAction(*entry, tree.actions(*entry).indexOf("Press")));
    ASSERT_TRUE(waitFor([&] { return menuIsOpen(); }));
  };
  auto other = std::make_unique<InputGrab>(desktop.display());
  ASSERT_TRUE(other->held());
  press();
  EXPECT_TRUE(waitFor([&] { return said(client, "Event 0 closed") && !menuIsOpen(); }));

  press();
  other.reset();
  EXPECT_TRUE(waitFor([&] {
    xdotool("key q Return");
    return said(client, "Event 7 clicked");
  }));
}

}  // namespace
}  // namespace tarnwick::test
