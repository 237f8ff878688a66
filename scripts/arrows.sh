#!/bin/sh
# Holds the includes against the table of rooms in docs/architecture.md: a file may include its own
# room, the rooms its line names and what lies below them; the rooms of a display (x11) only where
# they are named themselves. Prints every line that goes elsewhere.
set -eu
cd "$(dirname "$0")/.."

find common core utility bar harness tests bench tools -name '*.h' -o -name '*.cpp' | sort | xargs awk '
  function folder(path) { return match(path, /\/[^\/]*$/) ? substr(path, 1, RSTART - 1) : "" }
  function isBelow(path, room) {
    return path == room || (index(path, room "/") == 1 && path !~ /\/x11$/)
  }
  # The line of the table that a folder goes by: its own or that of the nearest folder above.
  function roomOf(path) {
    while (path != "" && !(path in allowed)) path = folder(path)
    return path
  }
  function complain() { print FILENAME ":" FNR ": " $0; failed = 1 }

  BEGIN {
    while ((getline line < "docs/architecture.md") > 0) {
      if (line ~ /^```/) { inTable = line == "```arrows"; continue }
      if (!inTable || split(line, parts, ":") != 2) continue
      allowed[parts[1]] = parts[2]
      rooms++
    }
    if (rooms == 0) { print "docs/architecture.md has no table of rooms"; exit failed = 1 }
  }
  /^#include <(xcb|X11)\/|^#include <xkbcommon\/xkbcommon-x11/ && FILENAME !~ /\/x11\/|^(harness|tests|bench)\// { complain() }
  /^#include "/ {
    target = $0
    gsub(/^#include "|".*$/, "", target)
    if (target ~ /\.moc$/) next
    here = roomOf(folder(FILENAME))
    there = folder(target)
    if (here == "") { complain(); next }
    if (roomOf(there) == here) next
    count = split(allowed[here], names, " ")
    found = 0
    for (i = 1; i <= count; i++) if (isBelow(there, names[i])) found = 1
    if (!found) complain()
  }
  END { exit failed }
'
