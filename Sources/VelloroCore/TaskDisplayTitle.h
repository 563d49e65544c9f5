#pragma once

#include "Foundation/CodingKeys.h"
#include "VelloroCore/HealthType.h"
#include "VelloroCore/TaskTarget.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace velloro {

/// A task's name in parts: a text and an amount, each of which some surfaces leave out.
///
///     const TaskDisplayTitle title{
///         .localizedPrimary = "Drink water",
///         .quantity = TaskDisplayTitle::Quantity{.type = HealthType::dietaryDrinkWater,
///                                                .quantity = {8, TypeUnit::cupsUS}}};
///     title.withoutQuantity()->localizedPrimary;    // "Drink water"
struct TaskDisplayTitle {
  struct Quantity {
    std::optional<HealthType> type = {};
    TaskTarget quantity = {};

    bool operator==(const Quantity&) const = default;
    static constexpr auto codingKeys =
        keys(key("type", &Quantity::type), key("quantity", &Quantity::quantity));
  };

  std::optional<std::string> localizedPrimary = {};  ///< What stands before the quantity.
  std::optional<Quantity> quantity = {};
  std::optional<std::string> localizedSecondary = {};  ///< Stands in the place of the quantity.

  /// An empty text and nothing else.
  [[nodiscard]] static const TaskDisplayTitle& empty();

  /// Absent without a `localizedPrimary`.
  [[nodiscard]] std::optional<TaskDisplayTitle> withoutQuantity() const;

  bool operator==(const TaskDisplayTitle&) const = default;
  static constexpr auto codingKeys =
      keys(key("localizedPrimary", &TaskDisplayTitle::localizedPrimary),
           key("quantity", &TaskDisplayTitle::quantity),
           key("localizedSecondary", &TaskDisplayTitle::localizedSecondary));
};

/// How a health type's title comes out: as a text of the user's own, which the amount is not part
/// of, or as a word of the type's with the amount in it.
struct DisplayTitleType {
  std::variant<std::string, TaskDisplayTitle> value;

  [[nodiscard]] static DisplayTitleType separate(std::string text) { return {std::move(text)}; }
  [[nodiscard]] static DisplayTitleType integrated(TaskDisplayTitle title) {
    return {std::move(title)};
  }

  bool operator==(const DisplayTitleType&) const = default;
};

}  // namespace velloro
