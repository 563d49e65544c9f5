#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Date.h"
#include "Host/HostStore.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/FunctionRef.h"
#include "OxKit/Platform.h"
#include "velloro/Notifications/NotificationLine.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

class TaskEntity;

/// What a rebuild of all notifications would plan at an instant, without doing it.
struct PlanReport {
  struct Time {
    std::string time;    ///< "07:20:00".
    std::string source;  ///< "history".
    std::optional<std::string> median = {};
    std::optional<std::int64_t> samples = {};
    std::optional<bool> muted = {};  ///< Only where it is kept and never sent.

    static constexpr auto codingKeys =
        keys(key("time", &Time::time), key("source", &Time::source), key("median", &Time::median),
             key("samples", &Time::samples), key("muted", &Time::muted));
  };
  struct Day {
    YYYYMMDD day;
    bool taken = false;
    std::string why;

    static constexpr auto codingKeys =
        keys(key("day", &Day::day), key("taken", &Day::taken), key("why", &Day::why));
  };

  std::vector<NotificationLine> requests = {};  ///< In the order of adding.
  std::vector<std::string> cancelPending = {}, cancelDelivered = {};
  // By the identifiers of the tasks; absent if nobody asked why.
  std::optional<std::map<std::string, std::vector<Time>>> automaticTimes = {};
  std::optional<std::map<std::string, std::vector<Day>>> days = {};
  std::map<std::string, std::string> titles = {};  ///< Of the tasks, for the text alone.

  static constexpr auto codingKeys =
      keys(key("requests", &PlanReport::requests), key("cancelPending", &PlanReport::cancelPending),
           key("cancelDelivered", &PlanReport::cancelDelivered),
           key("automaticTimes", &PlanReport::automaticTimes), key("days", &PlanReport::days));

  struct Wanted {
    /// Whose notifications; empty for those of all tasks, and the badge.
    std::vector<std::shared_ptr<TaskEntity>> tasks = {};
    bool explains = false;
  };
  /// \param random 64 random bits, by which words are chosen.
  [[nodiscard]] static PlanReport of(const HostStore& store, const Wanted& wanted, Date now,
                                     const std::function<std::uint64_t()>& random);

  /// The next three days as an agenda, with the reasons if they were asked for.
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
