#include "common/identity/command.h"

#include <gtest/gtest.h>

#include "common/identity/wrapper_script.h"

namespace tarnwick::desktop {
namespace {

using Words = std::vector<std::string>;

TEST(CommandTest, SplitsQuotesAndSeesThroughLaunchers) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"\"/opt/a b/\\$x\" '%f'", "/opt/a b/$x"},
      {"env -u A B=c nohup nice -n 5 firejail --private prog --x", "prog"},
      {"sh -c 'cd /opt/x && ./x.sh --go'", "./x.sh"},
      {"sh -c \"sh -c \\\"sh -c 'sh -c \\\\\\\"sh -c x\\\\\\\"'\\\"\"", "sh"},
      {"snap run --x thunder", "thunder"},
      {"flatpak update", "flatpak"},
      {"gtk-launch org.x.App", "org.x.App"},
      {"bash -o pipefail", "bash"},
      {"bash /dev/fd/3", "bash"},
      {"env", "env"},
      {"env -i -S 'A=b nice prog --x' y", "prog"},
      {"env --split-string='-u A prog'", "prog"},
      {"'unfinished", "unfinished"},
  };
  for (const auto& [line, expected] : cases)
    EXPECT_EQ(programOf(splitCommand(line)), expected) << line;
}

TEST(CommandTest, FindsWhatStartScriptsHandOverTo) {
  const std::pair<const char*, Words> cases[] = {
      {"exec /opt/a/a \"$@\"\n", {}},  // no script
      {"#!/usr/bin/python3\nexec /opt/a \"$@\"\n", {}},
      {"#!/bin/sh\n# don't\ncd /opt/a && exec ./a --x\n", {"./a"}},
      {"#! /usr/bin/env bash\nR=\"/usr/bin/r\"\nif [[ ! -f \"$R\" ]] ; then\n  "
       "R=\"${HERE}/r2\"\nfi\n"
       "case \"$@\" in\n  *x:*)\n    \"$R\" \"${@#x:}\"\n    ;;\nesac\n",
       {"/usr/bin/r", "r2"}},
      {"#!/bin/bash\nHERE=\"$(dirname \"$(readlink -f \"$0\")\")\"\nexport A=1\n"
       "exec -a \"$0\" \"$HERE/chrome\" \\\n  \"$@\"\n",
       {"chrome"}},
      {"#!/bin/sh\nexec env A=b python3 -m gajim \"$@\"\n", {"gajim"}},
      {"#!/bin/sh\nexec >/dev/null\nexec \"$UNKNOWN\" \"$@\"\nexec python3 \"$@\"\nls\n", {}},
  };
  for (const auto& [script, programs] : cases)
    EXPECT_EQ(wrappedPrograms(script), programs) << script;
  std::string endless = "#!/bin/sh\nA=aaaaaaaaaa\n";
  for (int i = 0; i < 60; ++i) endless += "A=$A$A\n";
  endless += "exec $A" + std::string(60'000, '$') + "\n";
  EXPECT_EQ(wrappedPrograms(endless), Words{});
}

}  // namespace
}  // namespace tarnwick::desktop
