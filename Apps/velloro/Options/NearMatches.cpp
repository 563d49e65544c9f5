#include "velloro/Options/NearMatches.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace velloro {
namespace {

constexpr std::size_t maximumMatches = 3;

/// How many letters must be added, taken away or changed.
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> distances(b.size() + 1);
  std::iota(distances.begin(), distances.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(distances[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = distances[j + 1];
      distances[j + 1] = std::min({changed, diagonal + 1, distances[j] + 1});
    }
  }
  return distances.back();
}

}  // namespace

std::vector<std::string_view> nearMatches(std::string_view name,
                                          std::span<const std::string_view> names) {
  const std::size_t tolerated = std::max<std::size_t>(1, name.size() / 4);
  std::vector<std::pair<std::size_t, std::string_view>> matches;
  for (const std::string_view candidate : names) {
    const std::size_t distance = editDistance(name, candidate);
    const bool contains = !name.empty() && candidate.contains(name);
    if (contains || distance <= tolerated) matches.emplace_back(distance, candidate);
  }
  std::ranges::sort(matches);
  std::vector<std::string_view> nearest;
  for (const auto& [distance, candidate] : matches) {
    if (nearest.size() < maximumMatches) nearest.push_back(candidate);
  }
  return nearest;
}

std::string suggestion(std::string_view name, std::span<const std::string_view> names) {
  std::string text;
  for (const std::string_view match : nearMatches(name, names)) {
    text += (text.empty() ? "did you mean \"" : ", \"") + std::string(match) + "\"";
  }
  return text.empty() ? text : text + "?";
}

}  // namespace velloro
