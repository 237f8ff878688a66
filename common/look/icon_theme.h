#pragma once

namespace tarnwick {

// Where the toolkit knows of no icon theme: the one other toolkits are set to, else one that is
// installed.
void chooseIconTheme();

}  // namespace tarnwick
