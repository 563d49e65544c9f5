#pragma once

#include "Foundation/Coding/Coding.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Values/UUID.h"
#include "OxHealthKit/OxHKSample.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Log/TaskLogEntryType.h"
#include "VelloroCore/Progress/TimedTaskManagerEntry.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace velloro {

/// Where on the watch it was done.
struct WatchTaskContext {
  struct FromShortcut {
    bool operator==(const FromShortcut&) const = default;
  };
  struct FromMainApp {
    bool operator==(const FromMainApp&) const = default;
  };
  std::variant<FromShortcut, FromMainApp> value;

  bool operator==(const WatchTaskContext&) const = default;
  static constexpr auto codingCases =
      cases(&WatchTaskContext::value, keyed("fromShortcut"), keyed("fromMainApp"));
  /// \throws DecodingError "Unable to decode enum" where there is not exactly one known key.
  static WatchTaskContext decode(const Decoder& from);
};

/// A completion, or another entry of the log.
struct WatchTaskCompletion {
  UniqueID taskID;
  UniqueID entryID;
  TaskLogEntryType entryType;
  DatedPeriod period;
  OxHKDevice healthKitDevice;
  WatchTaskContext context;
  std::optional<bool> didRecordToLocalStore = {};

  bool operator==(const WatchTaskCompletion&) const = default;
  static constexpr auto codingKeys = keys(
      key("taskID", &WatchTaskCompletion::taskID), key("entryID", &WatchTaskCompletion::entryID),
      key("entryType", &WatchTaskCompletion::entryType),
      key("period", &WatchTaskCompletion::period),
      key("healthKitDevice", &WatchTaskCompletion::healthKitDevice),
      key("context", &WatchTaskCompletion::context),
      key("didRecordToLocalStore", &WatchTaskCompletion::didRecordToLocalStore));
};

/// The run of a timer.
struct WatchTaskTiming {
  TimedTaskManagerEntry summary;
  bool timerDidExpire = false;
  std::optional<OxHKDevice> healthKitDevice = {};
  WatchTaskContext context;
  std::optional<bool> didRecordToLocalStore = {};

  bool operator==(const WatchTaskTiming&) const = default;
  static constexpr auto codingKeys =
      keys(key("summary", &WatchTaskTiming::summary),
           key("timerDidExpire", &WatchTaskTiming::timerDidExpire),
           key("healthKitDevice", &WatchTaskTiming::healthKitDevice),
           key("context", &WatchTaskTiming::context),
           key("didRecordToLocalStore", &WatchTaskTiming::didRecordToLocalStore));
};

/// A note, written or removed.
struct WatchTaskNote {
  /// The day that a note stands on: {"date": {"_0": 20240307}}, or none: {"pinned": {}}.
  struct DateType {
    struct Pinned {
      bool operator==(const Pinned&) const = default;
    };
    std::variant<YYYYMMDD, Pinned> value;

    bool operator==(const DateType&) const = default;
    static constexpr auto codingCases = cases(&DateType::value, keyed("date"), keyed("pinned"));
    /// \throws DecodingError as a context does.
    static DateType decode(const Decoder& from);
  };

  UniqueID taskID;
  DateType date;
  std::optional<std::string> content = {};  ///< Absent: the note is to be removed.
  bool didRecordToLocalStore = false;

  bool operator==(const WatchTaskNote&) const = default;
  static constexpr auto codingKeys =
      keys(key("taskID", &WatchTaskNote::taskID), key("date", &WatchTaskNote::date),
           key("content", &WatchTaskNote::content),
           key("didRecordToLocalStore", &WatchTaskNote::didRecordToLocalStore));
};

/// What the user did on the watch, on its way to the log. In JSON its variants are objects of one
/// key: {"completion": {…}}, {"fromShortcut": {}}.
struct WatchTaskAction {
  using Context = WatchTaskContext;
  using CompletionInfo = WatchTaskCompletion;
  using TimingInfo = WatchTaskTiming;
  using NoteInfo = WatchTaskNote;

  struct ActionType {
    std::variant<CompletionInfo, TimingInfo, NoteInfo> value;

    bool operator==(const ActionType&) const = default;
    static constexpr auto codingCases =
        cases(&ActionType::value, payload("completion"), payload("timer"), payload("note"));
    /// \throws DecodingError as a context does.
    static ActionType decode(const Decoder& from);
  };

  UUID actionID;  ///< A snapshot keeps the identities of those that it has applied.
  ActionType actionType;
  Date date;

  bool operator==(const WatchTaskAction&) const = default;
  static constexpr auto codingKeys =
      keys(key("actionID", &WatchTaskAction::actionID),
           key("actionType", &WatchTaskAction::actionType), key("date", &WatchTaskAction::date));

  [[nodiscard]] UniqueID taskID() const;
};

struct WatchTaskActions {
  std::vector<WatchTaskAction> actions;

  bool operator==(const WatchTaskActions&) const = default;
  static constexpr auto codingKeys = keys(key("actions", &WatchTaskActions::actions));
};

}  // namespace velloro
