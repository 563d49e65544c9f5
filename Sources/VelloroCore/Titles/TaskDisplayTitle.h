#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "VelloroCore/Types/HealthType.h"
#include "VelloroCore/Types/TaskTarget.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace platform {
class Locale;
class NSAttributedString;
}

namespace velloro {

struct IconVisualRepresentation;
struct TaskTitleSource;

/// A task's name in parts: a text and an amount, each of which some surfaces leave out.
///
///     const TaskDisplayTitle title{
///         .localizedPrimary = "Drink water",
///         .quantity = TaskDisplayTitle::Quantity{.type = HealthType::dietaryDrinkWater,
///                                                .quantity = {8, TypeUnit::cupsUS}}};
///     using enum TaskDisplayTitle::Context;
///     title.localizedTitle(iPhoneInlineTaskTitle, locale);            // "Drink water 8 cups"
///     title.localizedTitle(notificationWithoutQuantity, locale);      // "Drink water"
///     title.localizedTitle(iPhoneEditPicker, locale);                 // "8 cups"
///     title.quantity->localizedFormatted(notificationBracket, locale);    // "8"
struct TaskDisplayTitle {
  /// The surface for which a text is wanted.
  enum class Context : std::uint8_t {
    voiceOver,
    emailSubject,
    dataExport,
    spotlight,
    appleWatchTaskCaption,
    appleWatchNotificationUI,
    appleWatchComplication,
    appleWatchComplicationTimedTaskTitle,
    appleWatchComplicationWithoutQuantity,
    appleWatchComplicationNumerator,
    appleWatchComplicationDenominator,
    iPhoneInlineTaskTitle,
    iPhoneNotificationUI,
    iPhoneSiriUI,
    iPhoneSiriVocabulary,
    iPhoneSiriIntent,
    iPhoneCheckableTaskCaption,
    iPhoneChartTitle,
    iPhoneShareImage,
    iPhoneShortcutItem,
    iPhoneEditPicker,
    iPhoneEditPickerSubTitle,
    iPhoneNumPartialCompletionsStepper,
    iPhoneWidget,
    iPhoneChangeDifficulty,
    notificationWithQuantity,
    notificationWithoutQuantity,
    notificationBracket,
  };

  /// The small icon beside a title.
  enum class TitleIcon : std::uint8_t { health, timed, negative, paused, hourGlass };

  /// On which side of the text the amount stands.
  enum class QuantityPosition : std::uint8_t { leading, trailing };

  /// Whether an amount counts for the whole task or for the completion under way.
  enum class CountingMethod : std::uint8_t { useProgress, useSubProgress };

  struct AttributedStringConfig;  // TaskTitleAttributedString.h

  struct Quantity {
    std::optional<HealthType> type = {};
    TaskTarget quantity = {};

    /// "5.0 km", "8 cups", "9:30"; "5.0" where a surface shows the bare number. Amounts are shown
    /// as their unit is read: 0.04 km is "0.1 km", since only nothing is shown as 0. Absent for a
    /// time of day that there isn't and for what is no duration.
    [[nodiscard]] std::optional<std::string> localizedFormatted(Context context,
                                                                const Locale& locale) const;

    bool operator==(const Quantity&) const = default;
    static constexpr auto codingKeys =
        keys(key("type", &Quantity::type), key("quantity", &Quantity::quantity));
  };

  /// What a surface shows of a title: one part, both or none.
  struct Shown {
    std::optional<std::string> text = {};
    std::optional<std::string> quantity = {};

    bool operator==(const Shown&) const = default;
  };

  std::optional<std::string> localizedPrimary = {};  ///< What stands before the quantity.
  std::optional<Quantity> quantity = {};
  std::optional<std::string> localizedSecondary = {};  ///< Stands in the place of the quantity.

  /// An empty text and nothing else.
  [[nodiscard]] static const TaskDisplayTitle& empty();

  /// The title of a task with what is left of the completion under way: the amount that it still
  /// takes, not the target. See TaskTitleSource.h.
  [[nodiscard]] static TaskDisplayTitle build(const TaskTitleSource& task, const Locale& locale);

  /// Absent without a `localizedPrimary`.
  [[nodiscard]] std::optional<TaskDisplayTitle> withoutQuantity() const;

  [[nodiscard]] Shown shown(Context context, const Locale& locale) const;
  /// The shown parts in one text, in the order of the language. Absent where there is none.
  [[nodiscard]] std::optional<std::string> localizedTitle(Context context,
                                                          const Locale& locale) const;
  [[nodiscard]] std::optional<std::string> localizedAccessibilityLabel(const Locale& locale) const {
    return localizedTitle(Context::voiceOver, locale);
  }

  /// The shown parts in runs, each with its look, and the icon at the side that the request says.
  [[nodiscard]] NSAttributedString buildAttributedString(
      const std::optional<IconVisualRepresentation>& icon, const AttributedStringConfig& config,
      const Locale& locale) const;
  /// The same in the size that suits a task's ring of that diameter, in points.
  [[nodiscard]] NSAttributedString titleAttributedText(
      const std::optional<IconVisualRepresentation>& icon, double taskIconDiameter,
      const AttributedStringConfig& config, const Locale& locale) const;

  bool operator==(const TaskDisplayTitle&) const = default;
  static constexpr auto codingKeys =
      keys(key("localizedPrimary", &TaskDisplayTitle::localizedPrimary),
           key("quantity", &TaskDisplayTitle::quantity),
           key("localizedSecondary", &TaskDisplayTitle::localizedSecondary));
};

constexpr auto rawValues(std::type_identity<TaskDisplayTitle::Context>) {
  return caseNames<TaskDisplayTitle::Context::notificationBracket>();
}

constexpr auto rawValues(std::type_identity<TaskDisplayTitle::TitleIcon>) {
  return caseNames<TaskDisplayTitle::TitleIcon::hourGlass>();
}

/// How a health type's title comes out: as a text of the user's own, beside which the amount
/// stands, or as a word of the type's with the amount in it.
struct DisplayTitleType {
  std::variant<std::string, TaskDisplayTitle> value;

  [[nodiscard]] static DisplayTitleType separate(std::string text) { return {std::move(text)}; }
  [[nodiscard]] static DisplayTitleType integrated(TaskDisplayTitle title) {
    return {std::move(title)};
  }

  /// The title as a whole; a separate text takes the amount beside it.
  [[nodiscard]] TaskDisplayTitle title(const TaskDisplayTitle::Quantity& quantity) const;

  bool operator==(const DisplayTitleType&) const = default;
};

}  // namespace velloro
