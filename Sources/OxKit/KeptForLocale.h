#pragma once

#include "Foundation/Text/Locale.h"
#include "OxKit/Platform.h"

#include <mutex>
#include <type_traits>
#include <unordered_map>

namespace velloro {

/// What `make` gives for the device's locale: made at the first call in each locale, once, and kept
/// for the life of the process. Safe from any thread.
///
///     Formatters made(const Locale& locale);
///     const Formatters& formatters = keptForLocale<made>();
template <auto make>
const auto& keptForLocale() {
  using Value = std::invoke_result_t<decltype(make), Locale>;
  static std::mutex mutex;
  static auto& byLocale = *new std::unordered_map<Locale, Value>;
  const Locale locale = Locale::current();
  const std::scoped_lock lock(mutex);
  if (const auto found = byLocale.find(locale); found != byLocale.end()) return found->second;
  return byLocale.emplace(locale, make(locale)).first->second;
}

}  // namespace velloro
