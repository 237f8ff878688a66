#pragma once

// What can be measured. Each starts a desktop of its own, prints its figures, and throws when what
// is measured does not happen.
namespace tarnwick::bench {

void pass();
void scan();
void pixels();
void startUp();
void storm();
void burst();
void idle();
void menus();
void panel();
void capture();
void shortcuts();
void settings();

}  // namespace tarnwick::bench
