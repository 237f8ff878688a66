#pragma once

#include <QPointF>
#include <cstdint>
#include <functional>
#include <optional>

#include "common/base/registration.h"
#include "core/ports/accessibility.h"
#include "utility/bar_client/bar_connection.h"
#include "utility/bar_client/bar_snapshots.h"
#include "utility/bar_client/item_menus.h"

namespace tarnwick {

// Other applications' status items as the bar tells of them. The bar answers from memory, whatever
// state the items' owners are in, and of an open menu only what its owner has told is read, so that
// no read waits for an owner.
class BarAccessibility : public Accessibility {
 public:
  BarAccessibility(BarConnection& bar, BarSnapshots& snapshots);

  bool isProcessTrusted() override;
  bool isProcessTrusted(bool prompt) override;
  std::unique_ptr<Snapshot> takeSnapshot() override { return snapshots_.take(); }
  AXElement applicationElement(std::int32_t pid) override;
  std::optional<AXValue> attribute(const AXElement& element, std::string_view name) override;
  void suggestPlace(const AXElement& element, Point place) override;
  void perform(const AXElement& element, std::string_view action) override;
  void setMessagingTimeout(const AXElement& element, float seconds) override;

  // Calls `ended` once, as soon as the open menu that this entry belongs to is no longer there: it
  // was closed, another one has opened, or its owner has gone.
  Registration watchMenu(const AXElement& entry, std::function<void()> ended);

 private:
  struct Place {
    std::uint64_t item = 0;
    QPointF point;
  };

  std::optional<AXValue> menuAttribute(const AXElement& element, std::string_view name) const;

  BarConnection& bar_;
  BarSnapshots& snapshots_;
  ItemMenus menus_;
  std::optional<Place> place_;  // for the next press
};

}  // namespace tarnwick
