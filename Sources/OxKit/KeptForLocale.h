#pragma once

#include "Foundation/Text/Locale.h"
#include "OxKit/Platform.h"

#include <mutex>
#include <type_traits>
#include <unordered_map>

namespace velloro {

/// What `make` gives for a locale: made at the first call for each locale, once, and kept for the
/// life of the process. Safe from any thread.
///
///     std::string language(const Locale& locale) { return locale.identifier(); }
///     keptForLocale<language>(Locale::fromIdentifier("de_DE"));    // "de_DE"
template <auto make>
const auto& keptForLocale(const Locale& locale) {
  using Value = std::invoke_result_t<decltype(make), Locale>;
  static std::mutex mutex;
  static auto& byLocale = *new std::unordered_map<Locale, Value>;
  const std::scoped_lock lock(mutex);
  if (const auto found = byLocale.find(locale); found != byLocale.end()) return found->second;
  return byLocale.emplace(locale, make(locale)).first->second;
}

}  // namespace velloro
