#include "VelloroCore/Titles/TaskDisplayTitle.h"

#include "OxKit/Localization.h"
#include "VelloroCore/Titles/TitleTextKeys.h"

namespace velloro {
namespace {

using Context = TaskDisplayTitle::Context;

bool leavesQuantityOut(Context context) {
  switch (context) {
    case Context::appleWatchComplicationTimedTaskTitle:
    case Context::appleWatchComplicationWithoutQuantity:
    case Context::iPhoneSiriVocabulary:
    case Context::notificationWithoutQuantity:
      return true;
    default:
      return false;
  }
}

}  // namespace

const TaskDisplayTitle& TaskDisplayTitle::empty() {
  static const TaskDisplayTitle title{.localizedPrimary = ""};
  return title;
}

std::optional<TaskDisplayTitle> TaskDisplayTitle::withoutQuantity() const {
  if (!localizedPrimary) return std::nullopt;
  return TaskDisplayTitle{.localizedPrimary = localizedPrimary,
                          .localizedSecondary = localizedSecondary};
}

TaskDisplayTitle::Shown TaskDisplayTitle::shown(Context context, const Locale& locale) const {
  if (leavesQuantityOut(context)) return {.text = localizedPrimary};
  auto amount = quantity ? quantity->localizedFormatted(context, locale) : std::nullopt;
  const bool isAmountAlone = context == Context::iPhoneEditPicker && amount;
  if (isAmountAlone || !localizedPrimary) return {.quantity = std::move(amount)};
  return {.text = localizedPrimary, .quantity = localizedSecondary ? localizedSecondary : amount};
}

std::optional<std::string> TaskDisplayTitle::localizedTitle(Context context,
                                                            const Locale& locale) const {
  const Shown parts = shown(context, locale);
  if (!parts.text) return parts.quantity;
  if (!parts.quantity) return parts.text;
  return localized(title_text::withQuantity, {*parts.text, *parts.quantity});
}

TaskDisplayTitle DisplayTitleType::title(const TaskDisplayTitle::Quantity& quantity) const {
  if (const auto* title = std::get_if<TaskDisplayTitle>(&value)) return *title;
  return {.localizedPrimary = std::get<std::string>(value), .quantity = quantity};
}

}  // namespace velloro
