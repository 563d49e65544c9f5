#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Values/Error.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Appearance/PositionedTheme.h"
#include "VelloroSnapshots/NotificationTask.h"

#include <optional>
#include <string>

namespace velloro {

/// What travels with a notification: its task as it was, so that who reads it needs no store.
///
///     const auto userInfo = NotificationData{.task = snapshot}.userInfo();    // {"velloro": {…}}
///     NotificationData::fromUserInfo(userInfo).task == snapshot;              // true
struct NotificationData {
  class Error : public platform::Error {
   public:
    enum class Reason { invalidUserInfoData };

    explicit Error(Reason reason);

    [[nodiscard]] Reason reason() const { return static_cast<Reason>(code()); }
  };

  std::optional<UniqueID> reminderId = {};  ///< Absent for what no reminder of the task raised.
  NotificationTask task;
  PositionedTheme theme;
  std::optional<std::string> succinctBody = {};  ///< For narrow places.

  bool operator==(const NotificationData&) const = default;
  static constexpr auto codingKeys =
      keys(key("reminderId", &NotificationData::reminderId), key("task", &NotificationData::task),
           key("theme", &NotificationData::theme), key("sb", &NotificationData::succinctBody));

  /// \throws Error, with a line in the log, where there is no such record; DecodingError for one
  /// that can't be read.
  [[nodiscard]] static NotificationData fromUserInfo(const PropertyList& userInfo);
  /// A dictionary of one key. Empty, with a line in the log, where the record can't be written:
  /// the notification then goes out with its text alone.
  [[nodiscard]] PropertyList userInfo() const;
};

}  // namespace velloro
