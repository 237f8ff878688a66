#include <benchmark/benchmark.h>

#include "core/capture/bitmap_analysis.h"

namespace tarnwick {
namespace {

// A picture whose pixels are all looked at: a grey disc with soft edges, which is monochrome.
Bitmap disc(int side) {
  Bitmap bitmap{side, side, {}};
  bitmap.rgba.resize(static_cast<std::size_t>(side) * static_cast<std::size_t>(side) * 4);
  for (int i = 0; i < side * side; ++i) {
    const int x = i % side - side / 2;
    const int y = i / side - side / 2;
    const bool inside = x * x + y * y < side * side / 4;
    for (int channel = 0; channel < 4; ++channel) {
      bitmap.rgba[static_cast<std::size_t>(i * 4 + channel)] = inside ? 200 : 0;
    }
  }
  return bitmap;
}

void monochromeTest(benchmark::State& state) {
  const Bitmap bitmap = disc(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(isMonochrome(bitmap));
}
BENCHMARK(monochromeTest)->Arg(64);

void trimming(benchmark::State& state) {
  const Bitmap bitmap = disc(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(trimmingTransparentBorder(bitmap));
}
BENCHMARK(trimming)->Arg(64);

}  // namespace
}  // namespace tarnwick
