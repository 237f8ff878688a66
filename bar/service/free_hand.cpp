#include "bar/service/free_hand.h"

#include <chrono>
#include <utility>

namespace tarnwick::bar {

using namespace std::chrono_literals;

namespace {

constexpr auto interval = 30ms;
constexpr int mostLooks = 1000;  // half a minute

}  // namespace

FreeHand::FreeHand(std::function<bool()> isButtonDown) : isButtonDown_(std::move(isButtonDown)) {
  timer_.setSingleShot(true);
  timer_.callOnTimeout([this] { look(); });
}

void FreeHand::whenFree(std::function<void()> free) {
  free_ = std::move(free);
  looks_ = 0;
  look();
}

void FreeHand::forget() {
  timer_.stop();
  free_ = nullptr;
}

void FreeHand::look() {
  if (isButtonDown_()) return ++looks_ < mostLooks ? timer_.start(interval) : forget();
  timer_.stop();
  if (const auto free = std::exchange(free_, nullptr)) free();
}

}  // namespace tarnwick::bar
