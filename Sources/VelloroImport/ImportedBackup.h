#pragma once

#include "VelloroBackup/VelloroJSONBackup.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// Something that a reader of another program's files had to decide by itself, or left out.
struct ImportDecision {
  std::string what, why;

  bool operator==(const ImportDecision&) const = default;
  static constexpr auto codingKeys =
      keys(key("what", &ImportDecision::what), key("why", &ImportDecision::why));
};

/// What another program's files hold, as a backup, and what was decided on the way.
struct ImportedBackup {
  VelloroJSONBackup backup;
  std::vector<ImportDecision> decisions = {};
};

/// The same identifier for the same parts, so that a second import finds what the first one added.
/// It is a UUID of version 8 over two 64-bit FNV-1a sums (Fowler, Noll and Vo).
///
///     importedID({"harsh", "Read"}) == importedID({"harsh", "Read"});     // true
///     importedID({"harsh", "Read"}) == importedID({"harshRead", ""});     // false
[[nodiscard]] UniqueID importedID(std::initializer_list<std::string_view> parts);

/// Makes a task due `count` times in every stretch of `days` days, as many programs count. Where it
/// is not one that velloro has, the nearest is taken; what that changes is a decision.
///
/// \param count From 1.
/// \param days From 1.
void setRollingFrequency(std::int64_t count, std::int64_t days, VelloroJSONBackupTask& task,
                         std::vector<ImportDecision>& decisions);

}  // namespace velloro
