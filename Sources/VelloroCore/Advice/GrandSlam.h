#pragma once

#include "Foundation/Coding/Coding.h"
#include "VelloroCore/Status/CompletionStatus.h"

#include <cstdint>
#include <optional>
#include <span>

namespace velloro {

/// A day that went well across all of a user's tasks.
struct GrandSlam {
  /// The limits of such a day; one that is absent is not tested. Skips, allowed misses and open
  /// periods that may be skipped count for `minTasks` alone.
  ///
  ///     const std::vector statuses(6, CompletionStatus::Status::positiveComplete);
  ///     GrandSlam::QualifySettings::defaultSettings.qualifies(statuses);    // true
  ///     GrandSlam::QualifySettings{.minTasks = 7}.qualifies(statuses);      // false
  struct QualifySettings {
    std::optional<std::int64_t> minTasks = {}, minComplete = {}, maxMissed = {};
    std::optional<std::int64_t> maxWillMiss = {};  ///< Open, and missed unless it is done.

    static const QualifySettings defaultSettings;

    bool operator==(const QualifySettings&) const = default;
    static constexpr auto codingKeys = keys(key("minTasks", &QualifySettings::minTasks),
                                            key("minComplete", &QualifySettings::minComplete),
                                            key("maxMissed", &QualifySettings::maxMissed),
                                            key("maxWillMiss", &QualifySettings::maxWillMiss));

    [[nodiscard]] bool qualifies(std::span<const CompletionStatus::Status> statuses) const;
  };
};

inline constexpr GrandSlam::QualifySettings GrandSlam::QualifySettings::defaultSettings{
    .minTasks = 6, .minComplete = 3, .maxMissed = 0, .maxWillMiss = 0};

}  // namespace velloro
