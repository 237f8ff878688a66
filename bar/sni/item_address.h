#pragma once

#include <QString>
#include <optional>

namespace tarnwick::bar {

// Where the object of a StatusNotifierItem is.
struct ItemAddress {
  QString service;  // bus name, unique or well-known
  QString path;
  bool operator==(const ItemAddress&) const = default;

  // The form a watcher publishes: name and path in one string.
  QString toString() const { return service + path; }
};

bool isBusName(const QString& name);
bool isUniqueBusName(const QString& name);
bool isObjectPath(const QString& path);

// The item meant by the argument of RegisterStatusNotifierItem: a bus name (its item is at the
// usual path), an object path (of the sender's), or both in one string. Absent for anything else.
std::optional<ItemAddress> parseRegistration(const QString& argument, const QString& sender);

// The item meant by a string that another watcher publishes: "name/path", "name@/path" or a bare
// name. Absent for anything else, a mere path among it.
std::optional<ItemAddress> parsePublished(const QString& published);

}  // namespace tarnwick::bar
