#include "OxCheckableTasks/Ring/CheckableTaskConstants.h"

namespace velloro::CheckableTaskConstants {
namespace {

std::vector<double> evenLocations(std::size_t count) {
  std::vector<double> locations(count, 0);
  for (std::size_t i = 1; i < count; ++i) {
    locations[i] = static_cast<double>(i) / static_cast<double>(count - 1);
  }
  return locations;
}

}  // namespace

std::vector<double> gradientLocations(std::size_t numColors) {
  if (numColors == 2) return {0.0, 0.7};
  return evenLocations(numColors);
}

std::vector<double> gradientOutlineLocations(std::size_t numColors) {
  if (numColors == 2) return {0.3, 0.8};
  return evenLocations(numColors);
}

}  // namespace velloro::CheckableTaskConstants
