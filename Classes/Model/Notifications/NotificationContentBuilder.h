#pragma once

#include "Notifications/NotificationContent.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace velloro {

/// Makes the notifications that the program sends. What can't be made of one, such as its image, is
/// left out; none fails.
///
///     const NotificationContentBuilder builder{.now = now};
///     builder.badge({.date = now + 60, .badge = 3}, 1).notificationId.str;    // "b.1"
struct NotificationContentBuilder {
  Date now;
  double screenScale = 2;  ///< Pixels per point, of the image.
  /// Titles then do without the sign of their icon, which would be read out.
  bool isVoiceOverRunning = false;
  /// Without, a content names the file that its image would have, and nothing is drawn or written.
  bool makesImages = true;

  /// The title of a task as it is shown, and whose task it is.
  struct Reminder {
    NotificationID id;
    TaskDisplayTitle displayTitle;
    std::string body;
    NotificationData data;
    std::optional<SoundEffect> sound = {};
    std::optional<NotificationTrigger> trigger = {};
    bool timeSensitive = false;
  };
  /// In the category of the task; of a shared task with its owner's name above the title. It has an
  /// image when it is due at once or within a day.
  [[nodiscard]] NotificationContent reminder(Reminder reminder) const;

  struct Completion {
    TaskDisplayTitle displayTitle;
    NotificationData data;  ///< Its status is that after the entry. The succinct body is set here.
    bool isPartial = false;
    bool isTimer = false;  ///< Whether the end of a timer made the entry.
    bool isNegative = false;
    std::optional<SoundEffect> sound = {};
    bool timeSensitive = false;
  };
  /// Tells that a task was completed, or missed, in the period of its progress.
  [[nodiscard]] NotificationContent completion(const Completion& completion) const;

  struct TimedProgress {
    NotificationID id;
    TimeInterval duration = 0;  ///< Seconds that have run, or remain.
    TaskDisplayTitle displayTitle;
    NotificationData data;
    std::optional<SoundEffect> sound = {};
    std::optional<NotificationTrigger> trigger = {};
    bool timeSensitive = false;
  };
  [[nodiscard]] NotificationContent timedProgressCompleted(const TimedProgress& progress) const;
  [[nodiscard]] NotificationContent timedProgressRemaining(const TimedProgress& progress) const;

  struct BadgeUpdate {
    std::optional<Date> date = {};  ///< Absent: at once.
    std::int64_t badge = 0;

    bool operator==(const BadgeUpdate&) const = default;
  };
  /// Sets the number on the program's icon, and removes it where it is 0.
  /// \param index The place among the updates.
  [[nodiscard]] NotificationContent badge(const BadgeUpdate& update, std::size_t index) const;

 private:
  [[nodiscard]] NotificationContent timedProgress(const TimedProgress& progress,
                                                  NotificationCategory category,
                                                  const LocalizedKey& title) const;
  [[nodiscard]] std::string title(const TaskDisplayTitle& displayTitle,
                                  const NotificationData& data) const;
  [[nodiscard]] std::optional<std::filesystem::path> image(const NotificationData& data) const;
};

}  // namespace velloro
