#pragma once

#include "OxDateTime/YYYYMMDD.h"

#include <cstddef>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace velloro {

/// Days of 2000 to 2049 in no order, so that no branch or memo learns them.
inline const std::vector<YYYYMMDD>& days() {
  static const auto values = [] {
    std::mt19937 generator(7);
    std::vector<YYYYMMDD> list(4096);
    for (YYYYMMDD& day : list) {
      day = YYYYMMDD{.y = 2000, .m = 1, .d = 1}.add(generator() % 18262, {});
    }
    return list;
  }();
  return values;
}

/// Runs `body` on each of `inputs` and the one behind it; the time told is that of one input.
template <typename Input, typename Body>
void overAll(benchmark::State& state, const std::vector<Input>& inputs, Body body) {
  const std::size_t pairs = inputs.size() - 1;
  while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(pairs))) {
    for (std::size_t i = 0; i < pairs; ++i) {
      benchmark::DoNotOptimize(body(inputs[i], inputs[i + 1]));
    }
  }
}

}  // namespace velloro
