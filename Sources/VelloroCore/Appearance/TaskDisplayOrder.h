#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Values/Hasher.h"
#include "OxKit/Platform.h"

#include <algorithm>
#include <compare>
#include <cstdint>

namespace velloro {

/// A page of tasks, counted from 0.
struct TaskPageNumber {
  std::int64_t value = 0;

  static const TaskPageNumber first;

  auto operator<=>(const TaskPageNumber&) const = default;
  static constexpr auto codingValue = &TaskPageNumber::value;
};
inline constexpr TaskPageNumber TaskPageNumber::first{};

/// A task's page and its place there, row by row from 0 to 98. It is stored as one number, in which
/// page p has the numbers from p × 100 to before (p + 1) × 100.
///
///     const TaskDisplayOrder third{TaskPageNumber{1}, 2};
///     third.displayOrderValue();                                  // 103
///     TaskDisplayOrder::fromDisplayOrderValue(103) == third;      // true
///     TaskDisplayOrder::valueRange(TaskPageNumber{1});            // 100 up to, not with, 200
struct TaskDisplayOrder {
  TaskPageNumber pageNumber;
  std::int64_t position = 0;

  /// The first task of the first page.
  static const TaskDisplayOrder first;

  auto operator<=>(const TaskDisplayOrder&) const = default;
  static constexpr auto codingKeys =
      keys(key("pageNumber", &TaskDisplayOrder::pageNumber, initialWhenUnknown),
           key("position", &TaskDisplayOrder::position, initialWhenUnknown));

  /// From `lower` to before `upper`.
  struct Values {
    std::int64_t lower = 0;
    std::int64_t upper = 0;

    bool operator==(const Values&) const = default;
  };
  [[nodiscard]] static constexpr Values valueRange(TaskPageNumber page) {
    return {page.value * 100, (page.value + 1) * 100};
  }

  /// The number that is stored; a position below 0 counts as 0.
  [[nodiscard]] constexpr std::int64_t displayOrderValue() const {
    return valueRange(pageNumber).lower + 1 + std::max<std::int64_t>(position, 0);
  }
  /// Takes any number: the first one of a page, which none has, is the page's first place.
  [[nodiscard]] static constexpr TaskDisplayOrder fromDisplayOrderValue(std::int64_t value) {
    const TaskPageNumber page{value / 100};
    return {page, std::max<std::int64_t>(value - page.value * 100, 1) - 1};
  }
};
inline constexpr TaskDisplayOrder TaskDisplayOrder::first{};

}  // namespace velloro
