#include "bar/x11/icon_facts.h"

#include <QList>
#include <tuple>

#include "common/x11/window_hints.h"

namespace tarnwick::bar::x11 {

xcb_window_t IconProbe::selectEvents(xcb_window_t window) {
  quiet(xcb_change_window_attributes_checked(connection(), window, XCB_CW_EVENT_MASK, &iconEvents));
  return window;
}

IconProbe::IconProbe(xcb_window_t window)
    : window_(selectEvents(window)),
      attributes_(xcb_get_window_attributes(connection(), window)),
      geometry_(xcb_get_geometry(connection(), window)),
      process_(window),
      windowClass_(window, XCB_ATOM_WM_CLASS),
      utf8Title_(window, atoms().netWmName),
      title_(window, XCB_ATOM_WM_NAME),
      xembedInfo_(window, atoms().xembedInfo, 8) {}

std::optional<IconFacts> IconProbe::take() {
  const auto attributes = attributes_.take();
  const auto geometry = geometry_.take();
  if (!attributes || !geometry || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) return {};
  IconFacts facts;
  facts.window = window_;
  facts.visual = attributes->visual;
  facts.depth = geometry->depth;
  facts.mapped = attributes->map_state != XCB_MAP_STATE_UNMAPPED;
  facts.pid = process_.pid();
  std::tie(facts.instance, facts.windowClass) = windowClassOf(windowClass_);
  facts.title = titleOf(utf8Title_, title_);
  facts.wantsMapped = wantsMapped(xembedInfo_);
  return facts;
}

QString titleOf(PropertyRead& utf8Title, PropertyRead& title) {
  const QString modern = utf8Title.text();
  return modern.isEmpty() ? title.text() : modern;
}

std::optional<bool> wantsMapped(PropertyRead& xembedInfo) {
  const auto info = xembedInfo.numbers();
  if (info.size() < 2) return {};
  return (info[1] & 1U) != 0;
}

}  // namespace tarnwick::bar::x11
