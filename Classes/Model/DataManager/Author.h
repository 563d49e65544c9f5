#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"
#include "Settings/RunTarget.h"

#include <cstdint>
#include <type_traits>

namespace velloro {

/// Who writes to the store: a process, as its history names it. Logic knows it as
/// `DataManager::Author`.
enum class Author : std::uint8_t {
  app,
  today,
  notification,
  widget,
  siri,
  siriUI,
  deviceActivity,
};

/// The transaction author; bookmarks end in it.
constexpr auto rawValues(std::type_identity<Author>) {
  using enum Author;
  return rawTexts<Author>({{app, "app"},
                           {today, "ext_today"},
                           {notification, "ext_notification"},
                           {widget, "ext_widget"},
                           {siri, "ext_siri"},
                           {siriUI, "ext_siriui"},
                           {deviceActivity, "ext_deviceActivity"}});
}

/// The author of what a target writes.
[[nodiscard]] Author author(RunTarget target);

/// Whether a target may run the mirror: those that live too short for it leave all traffic with the
/// cloud to the others.
[[nodiscard]] bool mayMirror(RunTarget target);

}  // namespace velloro
