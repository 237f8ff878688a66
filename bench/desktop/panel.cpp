#include <QDir>
#include <QImage>
#include <nlohmann/json.hpp>

#include "bench/desktop/ground.h"
#include "bench/desktop/sections.h"

namespace tarnwick::bench {

namespace {

constexpr std::uint32_t panelGround = 0xefefef;

// Hidden applications in as many groups, each with a captured picture.
void hideMany(PrivateDesktop& desktop, int applications, int groups) {
  QImage picture(44, 44, QImage::Format_ARGB32_Premultiplied);
  const QString folder = desktop.folder("data") + "/Tarnwick/iconcache-2x/";
  QDir().mkpath(folder);
  auto hidden = nlohmann::json::array();
  std::vector<nlohmann::json> members(static_cast<std::size_t>(groups), nlohmann::json::array());
  for (int i = 0; i < applications; ++i) {
    const std::string id = "application" + std::to_string(i);
    picture.fill(QColor::fromHsv(i * 7 % 360, 200, 200));
    picture.save(folder + QString::fromStdString(id) + ".png");
    hidden.push_back(id);
    members[static_cast<std::size_t>(i % groups)].push_back(id);
  }
  auto stored = nlohmann::json::array();
  for (std::size_t i = 0; i < members.size(); ++i) {
    stored.push_back({{"name", "Group " + std::to_string(i)}, {"bundleIds", members[i]}});
  }
  const auto bytes = QByteArray::fromStdString(stored.dump()).toBase64().toStdString();
  desktop.writeDefaults({{"hiddenBundleIds", hidden},
                         {"appGroups", {{"$data", bytes}}},
                         {"panelIconStyle", "statusIcon"}});
}

}  // namespace

// From a click on the handle, put into the bar's own event handling, to the panel's first pixels.
void panel() {
  for (const auto& [applications, groups, budget] :
       {std::tuple(20, 1, "16"), std::tuple(200, 20, "50")}) {
    std::vector<double> first;
    std::vector<double> later;
    std::vector<double> work;
    for (int run = 0; run < 3; ++run) {
      Ground ground;
      hideMany(ground.desktop, applications, groups);
      ground.startBar();
      const qint64 utility = ground.startUtility().pid();
      letPass(2s);
      const auto handle = ground.bar.find("tarnwick.handle");
      if (!handle) fail("no handle");
      const auto click = [&] {
        const QPointF at = handle->frame.center();
        ground.bar.postPointer(BarProxy::Pointer::press, at, 0);
        ground.bar.postPointer(BarProxy::Pointer::release, at, 0);
      };
      const int y = static_cast<int>(handle->frame.bottom()) + 14;
      for (int opening = 0; opening < 10; ++opening) {
        const double before = usageOf(utility).cpu;
        const ColourWatch watch(ground.desktop.display(), panelGround, y);
        const auto start = Clock::now();
        click();
        if (!waitFor([&] { return watch.seen().has_value(); })) fail("no panel");
        (opening == 0 ? first : later).push_back(milliseconds(*watch.seen() - start));
        letPass(300ms);
        if (opening > 0) work.push_back(usageOf(utility).cpu - before);
        click();
        Display display(ground.desktop.display());
        if (!waitFor([&] { return !display.hasColour(panelGround, y); })) fail("it stays open");
        letPass(100ms);
      }
    }
    const std::string what = "click to panel, " + std::to_string(applications) + " entries";
    print({what + ", for the first time", "ms", "", 1}, first);
    print({what + ", later", "ms", budget, 1}, later);
    print({what + ", later, CPU time", "ms", "", 1}, work);
  }
}

}  // namespace tarnwick::bench
