#include "VelloroCore/Types/ValueRange.h"

#include "OxKit/Numbers.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace velloro {
namespace {

/// How near two amounts are that count as the same.
constexpr double closeness = 0.00001;

/// Steps are tenths and hundredths of a unit, or minutes of an hour.
constexpr double scales[] = {1, 10, 100, 1000, 60};
constexpr double largestExactInteger = 0x1p53;

bool isWholeAt(double scale, double value) {
  const double scaled = std::round(value * scale);
  return scaled / scale == value && std::abs(scaled) <= largestExactInteger;
}

/// The values that a range's items give, by their place. They are counted in whole numbers of the
/// smallest fraction that all of them share, and divided once, so that each is the double nearest
/// to its decimal.
class Steps {
 public:
  explicit Steps(const ValueRange& range) {
    if (!range.from) return;
    chooseScale(range);
    double position = scaled(*range.from);
    for (const auto& item : range.items) {
      const double end = scaled(item.to);
      if (end <= position || item.step <= 0) continue;
      const double steps = std::ceil(wholeUnlessFractional((end - position) / scaled(item.step)));
      add({position, scaled(item.step), static_cast<std::size_t>(steps)});
      position = end;
    }
    const bool hasOnlyFrom = runs_.empty() && range._specificValues.empty();
    if (!runs_.empty() || hasOnlyFrom) add({position, 0, 1});
  }

  [[nodiscard]] std::size_t count() const { return count_; }

  [[nodiscard]] double at(std::size_t index) const {
    auto run = runs_.begin();
    for (; index >= run->count; ++run) index -= run->count;
    return (run->start + static_cast<double>(index) * run->step) / scale_;
  }

  /// The place of the first value for which `isBehind` holds, and holds of all that follow.
  template <typename IsBehind>
  [[nodiscard]] std::size_t firstPlace(IsBehind isBehind) const {
    std::size_t low = 0;
    std::size_t high = count_;
    while (low < high) {
      const std::size_t middle = low + (high - low) / 2;
      if (isBehind(at(middle))) {
        high = middle;
      } else {
        low = middle + 1;
      }
    }
    return low;
  }

 private:
  struct Run {
    double start;
    double step;
    std::size_t count;
  };

  void chooseScale(const ValueRange& range) {
    const auto fits = [&](double scale) {
      return isWholeAt(scale, *range.from) &&
             std::ranges::all_of(range.items, [&](const auto& item) {
               return isWholeAt(scale, item.to) && isWholeAt(scale, item.step);
             });
    };
    const auto* const found = std::ranges::find_if(scales, fits);
    isExact_ = found != std::end(scales);
    if (isExact_) scale_ = *found;
  }

  [[nodiscard]] double scaled(double value) const {
    return isExact_ ? std::round(value * scale_) : value;
  }

  void add(Run run) {
    runs_.push_back(run);
    count_ += run.count;
  }

  double scale_ = 1;
  bool isExact_ = false;
  std::vector<Run> runs_;
  std::size_t count_ = 0;
};

std::optional<double> smallest(std::optional<double> a, std::optional<double> b) {
  return a && b ? std::min(*a, *b) : a ? a : b;
}

std::optional<double> largest(std::optional<double> a, std::optional<double> b) {
  return a && b ? std::max(*a, *b) : a ? a : b;
}

}  // namespace

std::optional<double> ValueRange::defaultValue() const {
  if (_defaultValue) return _defaultValue;
  return from ? from : first();
}

std::vector<double> ValueRange::sortedValues() const {
  const Steps steps(*this);
  std::vector<double> values(_specificValues.begin(), _specificValues.end());
  values.reserve(values.size() + steps.count());
  for (std::size_t i = 0; i < steps.count(); ++i) values.push_back(steps.at(i));
  std::ranges::sort(values);
  values.erase(std::ranges::unique(values).begin(), values.end());
  return values;
}

std::size_t ValueRange::count() const {
  const Steps steps(*this);
  const auto isNew = [&](double value) {
    const auto place = steps.firstPlace([&](double step) { return step >= value; });
    return place == steps.count() || steps.at(place) != value;
  };
  return steps.count() + static_cast<std::size_t>(std::ranges::count_if(_specificValues, isNew));
}

std::optional<double> ValueRange::first() const {
  return bigger(-std::numeric_limits<double>::infinity());
}

std::optional<double> ValueRange::last() const {
  return smaller(std::numeric_limits<double>::infinity());
}

std::optional<double> ValueRange::bigger(double value) const {
  const Steps steps(*this);
  const double above = value + closeness;
  const auto place = steps.firstPlace([&](double step) { return step > above; });
  const auto specific = _specificValues.upper_bound(above);
  return smallest(place < steps.count() ? std::optional(steps.at(place)) : std::nullopt,
                  specific != _specificValues.end() ? std::optional(*specific) : std::nullopt);
}

std::optional<double> ValueRange::smaller(double value) const {
  const Steps steps(*this);
  const double below = value - closeness;
  const auto place = steps.firstPlace([&](double step) { return !(step < below); });
  const auto specific = _specificValues.lower_bound(below);
  return largest(
      place > 0 ? std::optional(steps.at(place - 1)) : std::nullopt,
      specific != _specificValues.begin() ? std::optional(*std::prev(specific)) : std::nullopt);
}

}  // namespace velloro
