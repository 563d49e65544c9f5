#pragma once

#include "SQLite/Sqlite.h"
#include "UserNotifications/NotificationRecords.h"

#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The notifications in the tables of a file, and their rules. Made for one transaction, or for one
/// look. A request has a row in "notifications" from its adding to its removal, with the second at
/// which it falls due on the device's clock, whatever the zone; its text lies in "contents".
///
/// A failure is a `StoreError` where it is the file's, and then the transaction must be undone;
/// anything else refuses one change and has changed nothing.
class NotificationRows {
 public:
  /// Older delivered notifications give way to newer ones.
  static constexpr std::size_t maximumDelivered = 100;

  /// Makes the tables in an empty file. Within a transaction.
  [[nodiscard]] static Result<void> makeTables(SqliteConnection& connection);
  /// Reads what is not a request. What can't be read is left out, and the reasons go to `problems`.
  [[nodiscard]] static Result<NotificationRows> open(SqliteConnection& connection,
                                                     std::vector<std::string>& problems);

  [[nodiscard]] const UNNotificationSettings& settings() const { return records_.settings; }
  [[nodiscard]] const std::vector<UNNotificationCategory>& categories() const {
    return records_.categories;
  }
  [[nodiscard]] std::int64_t badge() const { return records_.badge; }
  /// In the order in which they were added: all that is not delivered.
  [[nodiscard]] Result<std::vector<UNNotificationRequest>> pending();
  /// In the order in which they were delivered.
  [[nodiscard]] Result<std::vector<UNNotification>> delivered();
  /// When the next pending request falls due: the distant past for one without a trigger, the
  /// distant future when there is none.
  [[nodiscard]] Result<Date> nextDue();

  /// The position of what was added or delivered last.
  [[nodiscard]] std::int64_t lastPosition() const { return position_; }
  /// From now on what others have added behind that position is newer than these changes: it is
  /// neither replaced nor removed.
  void spareBehind(std::int64_t position) { spared_ = position; }

  /// \name Changes
  /// @{
  void authorize(UNAuthorizationOptions options) { records_.authorize(options); }
  void setSettings(const UNNotificationSettings& settings) { records_.settings = settings; }
  /// Replaces all earlier ones. Refused for what can't be stored.
  [[nodiscard]] Result<void> setCategories(std::vector<UNNotificationCategory> replacements);
  /// Puts the request in the place of a pending one with its identifier. Refused where nothing is
  /// allowed, and for what can't be stored: a text that is not UTF-8, too deep a `userInfo`.
  [[nodiscard]] Result<void> add(const UNNotificationRequest& request, Date now);
  [[nodiscard]] Result<void> removePending(const std::set<std::string>& identifiers);
  /// What is due counts as delivered, even if no process has shown it yet.
  [[nodiscard]] Result<void> removeDelivered(const std::set<std::string>& identifiers, Date now);
  [[nodiscard]] Result<void> removeAllPending(Date now);
  [[nodiscard]] Result<void> removeAllDelivered(Date now);
  /// Moves what is due to the delivered ones and applies its badges, the earliest first; what fell
  /// due while the user denied it is dropped. Returns what is to be shown.
  [[nodiscard]] Result<std::vector<UNNotification>> deliverDue(Date now);
  /// Adds what an older version kept.
  [[nodiscard]] Result<void> takeOver(const NotificationRecords& older, Date now);
  /// To be called last, before the commit.
  [[nodiscard]] Result<void> finish();
  /// @}

 private:
  struct Row {
    std::int64_t number = 0;
    std::int64_t position = 0;
    Date due;
  };

  NotificationRows(SqliteConnection& connection, std::vector<std::string>& problems)
      : connection_(&connection), problems_(&problems) {}
  [[nodiscard]] Result<std::vector<std::int64_t>> numbers(std::string_view sql);
  [[nodiscard]] Result<std::optional<UNNotificationRequest>> request(std::int64_t number);
  [[nodiscard]] Result<std::vector<Row>> dueRows(Date now);
  [[nodiscard]] Result<bool> isSpared(const std::string& identifier);
  [[nodiscard]] Result<bool> isUnchanged(std::int64_t number, std::string_view text);
  [[nodiscard]] Result<std::int64_t> insert(const UNNotificationRequest& request,
                                            std::string_view text, Date now);
  [[nodiscard]] Result<void> remove(std::int64_t number);
  [[nodiscard]] Result<void> setDelivered(std::int64_t number, Date date);

  SqliteConnection* connection_;
  std::vector<std::string>* problems_;
  NotificationRecords records_;  ///< Without requests.
  std::string recordsText_;      ///< As it is stored.
  bool isDamaged_ = false;
  std::int64_t position_ = 0;  ///< Of what is added or delivered last.
  std::int64_t storedPosition_ = 0;
  std::int64_t spared_ = std::numeric_limits<std::int64_t>::max();
};

}  // namespace platform
