#pragma once

#include "OxKit/Platform.h"
#include "VelloroCore/Types/TypeUnit.h"

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

namespace velloro {

/// The amounts that one chooses a target from: finely stepped where they are small, coarsely where
/// they are large.
///
///     const ValueRange range{.unit = TypeUnit::distanceKm, .from = 1, .items = {{3, 1}, {9, 2}}};
///     range.sortedValues();      // {1, 2, 3, 5, 7, 9}
///     range.bigger(1.2);         // 2
///     range.smaller(7.2);        // 7
///     range.bigger(9);           // absent
///
/// Each item begins where the one before it ends. Values are decimals as a person would write them:
/// the thousandth step of 0.1 from 1 is 101, with no remainder of adding up.
struct ValueRange {
  struct RangeItem {
    double to = 0;  ///< The last value of the last item, even where no step leads to it.
    double step = 0;

    bool operator==(const RangeItem&) const = default;
  };

  TypeUnit unit = TypeUnit::steps;
  /// Absent for a range that has a default value, and no steps to choose from.
  std::optional<double> from = {};
  std::vector<RangeItem> items = {};
  std::optional<double> _defaultValue = {};
  /// Values beside those of the items.
  std::set<double> _specificValues = {};

  bool operator==(const ValueRange&) const = default;

  /// `_defaultValue`, else `from`, else the first value; absent when there is none of these.
  [[nodiscard]] std::optional<double> defaultValue() const;

  /// All values, without repetition; `from` alone when the items and `_specificValues` give none.
  /// What follows does not make this list, which can be thousands long.
  [[nodiscard]] std::vector<double> sortedValues() const;
  [[nodiscard]] std::size_t count() const;
  [[nodiscard]] std::optional<double> first() const;
  [[nodiscard]] std::optional<double> last() const;

  // The next value and the one before, absent at the ends. The value given need not be one of the
  // range; one that lies less than 0.00001 away from it counts as it.
  [[nodiscard]] std::optional<double> bigger(double value) const;
  [[nodiscard]] std::optional<double> smaller(double value) const;
};

}  // namespace velloro
