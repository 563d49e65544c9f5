#include "UserNotifications/NotificationRows.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Time/Calendar.h"
#include "Foundation/Values/Try.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace platform {
namespace {

// The texts are apart, since a request that is added again as it was costs no more than its small
// row then. Therefore the pending ones that are removed all at once, as a new plan does, stay with
// 2 for `isDelivered` until the next time. An attachment whose notification has gone waits in
// "orphans" until its file is removed.
constexpr const char* tables[] = {
    "CREATE TABLE notifications (number INTEGER PRIMARY KEY, identifier TEXT NOT NULL, "
    " isDelivered INTEGER NOT NULL, position INTEGER NOT NULL, due INTEGER NOT NULL, "
    "date REAL NOT NULL, attachments INTEGER NOT NULL)",
    "CREATE UNIQUE INDEX notificationByIdentifier ON notifications (identifier, isDelivered)",
    "CREATE INDEX pendingByDue ON notifications (due) WHERE isDelivered = 0",
    "CREATE INDEX deliveredByPosition ON notifications (position) WHERE isDelivered = 1",
    "CREATE TABLE contents (number INTEGER PRIMARY KEY, request TEXT NOT NULL)",
    "CREATE TABLE attachments (number INTEGER NOT NULL, url TEXT NOT NULL, PRIMARY KEY (number, "
    "url)) WITHOUT ROWID",
    "CREATE INDEX attachmentByURL ON attachments (url)",
    "CREATE TABLE orphans (url TEXT PRIMARY KEY) WITHOUT ROWID",
    "CREATE TABLE damaged (identifier TEXT, text TEXT)",
    "CREATE TABLE records (number INTEGER PRIMARY KEY, position INTEGER NOT NULL, text TEXT NOT "
    "NULL)",
    "CREATE TRIGGER removeContent AFTER DELETE ON notifications BEGIN "
    "DELETE FROM contents WHERE number = old.number; END",
    "CREATE TRIGGER removeAttachments AFTER DELETE ON notifications WHEN old.attachments > 0 BEGIN "
    "INSERT OR IGNORE INTO orphans SELECT url FROM attachments WHERE number = old.number; "
    "DELETE FROM attachments WHERE number = old.number; END",
    "INSERT INTO records VALUES (1, 0, '{}')",
};

constexpr std::int64_t atOnce = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();

/// What the device's clock shows when the request falls due, in seconds since 1970 on that clock.
std::int64_t dueOnTheClock(const UNNotificationRequest& request) {
  if (!request.trigger) return atOnce;
  const auto date = Calendar(TimeZone::gmt()).date(request.trigger->dateComponents);
  return date ? date->secondsSince1970() : never;
}

Date dueDate(std::int64_t onTheClock, TimeZone zone) {
  if (onTheClock == atOnce) return Date::distantPast();
  if (onTheClock == never) return Date::distantFuture();
  return Date::since1970(static_cast<double>(zone.utcSecondsAt(onTheClock)));
}

template <typename T>
Result<std::string> textOf(const T& value, const std::string& name = "") {
  try {
    return JSONEncoder{}.encode(value);
  } catch (const EncodingError& error) {
    return failure<EncodingError>(name + error.codingPath(), error.debugDescription());
  }
}

}  // namespace

Result<void> NotificationRows::makeTables(SqliteConnection& connection) {
  for (const char* sql : tables) TRY(connection.run(sql));
  return {};
}

Result<NotificationRows> NotificationRows::open(SqliteConnection& connection,
                                                std::vector<std::string>& problems) {
  NotificationRows rows(connection, problems);
  auto query = TRY(connection.prepare("SELECT text, position FROM records WHERE number = 1"));
  if (TRY(query.step())) {
    rows.recordsText_ = query.text(0);
    rows.storedPosition_ = query.integer(1);
  } else {
    const auto last =
        TRY(connection.integer("SELECT max(max(number, position)) FROM notifications"));
    rows.storedPosition_ = last.value_or(0);
  }
  rows.position_ = rows.storedPosition_;
  const std::size_t known = problems.size();
  rows.records_ = NotificationRecords::fromText(rows.recordsText_, problems);
  rows.isDamaged_ = problems.size() > known;
  return rows;
}

Result<std::vector<UNNotificationRequest>> NotificationRows::pending() {
  std::vector<UNNotificationRequest> requests;
  for (const auto number :
       TRY(numbers("SELECT number FROM notifications WHERE isDelivered = 0 ORDER BY position"))) {
    if (auto found = TRY(request(number))) requests.push_back(std::move(*found));
  }
  return requests;
}

Result<std::vector<UNNotification>> NotificationRows::delivered() {
  std::vector<UNNotification> notifications;
  auto query = TRY(connection_->prepare(
      "SELECT number, date FROM notifications WHERE isDelivered = 1 ORDER BY position"));
  while (TRY(query.step())) {
    auto found = TRY(request(query.integer(0)));
    if (!found) continue;
    notifications.push_back(
        {.date = Date::sinceReferenceDate(query.real(1)), .request = std::move(*found)});
  }
  return notifications;
}

Result<std::vector<std::int64_t>> NotificationRows::numbers(std::string_view sql) {
  std::vector<std::int64_t> numbers;
  auto query = TRY(connection_->prepare(sql));
  while (TRY(query.step())) numbers.push_back(query.integer(0));
  return numbers;
}

/// Absent where its text can't be read.
Result<std::optional<UNNotificationRequest>> NotificationRows::request(std::int64_t number) {
  auto query = TRY(connection_->prepare("SELECT request FROM contents WHERE number = ?"));
  query.bind(1, number);
  const bool isThere = TRY(query.step());
  const std::string_view text = isThere ? query.text(0) : "";
  const auto note = [&](const DecodingError& error) {
    problems_->push_back("notification " + std::to_string(number) + ": " + error.what());
  };
  const std::function<void(const DecodingError&)> didLeaveOut = note;
  try {
    return JSONDecoder{.didLeaveOut = &didLeaveOut}.decode<UNNotificationRequest>(text);
  } catch (const DecodingError& error) {
    note(error);
    return std::nullopt;
  }
}

/// The clock's readings are in the order of the instants, except for those that a clock change
/// skips: these move forward. None that is later than the reading at the earliest instant so far
/// can be earlier than it.
Result<Date> NotificationRows::nextDue() {
  const TimeZone zone = TimeZone::current();
  Date next = Date::distantFuture();
  auto query =
      TRY(connection_->prepare("SELECT due FROM notifications WHERE isDelivered = 0 ORDER BY due"));
  while (TRY(query.step())) {
    const std::int64_t onTheClock = query.integer(0);
    if (onTheClock > zone.localSecondsAt(next)) break;
    next = std::min(next, dueDate(onTheClock, zone));
    if (next == Date::distantPast()) break;
  }
  return next;
}

/// The earliest first. In an hour that is repeated the clock may already have shown more than it
/// shows now; no clock is put back by more than a day.
Result<std::vector<NotificationRows::Row>> NotificationRows::dueRows(Date now) {
  constexpr std::int64_t farthestBack = 86400;
  const TimeZone zone = TimeZone::current();
  std::vector<Row> rows;
  auto query = TRY(connection_->prepare(
      "SELECT number, position, due, date FROM notifications WHERE isDelivered = 0 AND due <= ?"));
  query.bind(1, zone.localSecondsAt(now) + farthestBack);
  while (TRY(query.step())) {
    const std::int64_t onTheClock = query.integer(2);
    const Date due = dueDate(onTheClock, zone);
    if (due > now) continue;
    const bool isAtOnce = onTheClock == atOnce;
    rows.push_back({.number = query.integer(0),
                    .position = query.integer(1),
                    .due = isAtOnce ? Date::sinceReferenceDate(query.real(3)) : due});
  }
  std::ranges::sort(rows, {}, [](const Row& row) { return std::pair(row.due, row.position); });
  return rows;
}

Result<void> NotificationRows::setCategories(std::vector<UNNotificationCategory> replacements) {
  TRY(textOf(NotificationRecords{.categories = replacements}));
  records_.categories = std::move(replacements);
  return {};
}

Result<void> NotificationRows::add(const UNNotificationRequest& request, Date now) {
  if (settings().authorizationStatus != UNAuthorizationStatus::authorized) {
    return failure<Error>("UNErrorDomain", 1, "The user does not allow notifications.");
  }
  const std::string text = TRY(textOf(request, "request."));
  if (TRY(isSpared(request.identifier))) return {};
  const auto number = TRY(connection_->integer(
      "SELECT number FROM notifications WHERE identifier = ? AND isDelivered != 1",
      request.identifier));
  if (number && TRY(isUnchanged(*number, text))) {
    return connection_->run(
        "UPDATE notifications SET isDelivered = 0, position = ?, date = ? WHERE number = ?",
        ++position_, now.timeIntervalSinceReferenceDate(), *number);
  }
  if (number) TRY(remove(*number));
  TRY(insert(request, text, now));
  return {};
}

/// What these changes have added themselves is behind the stored position.
Result<bool> NotificationRows::isSpared(const std::string& identifier) {
  if (spared_ >= storedPosition_) return false;
  const auto number = TRY(connection_->integer(
      "SELECT number FROM notifications WHERE identifier = ? AND isDelivered = 0 AND position > ? "
      "AND position <= ?",
      identifier, spared_, storedPosition_));
  return number.has_value();
}

Result<bool> NotificationRows::isUnchanged(std::int64_t number, std::string_view text) {
  auto query = TRY(connection_->prepare("SELECT request FROM contents WHERE number = ?"));
  query.bind(1, number);
  return TRY(query.step()) && query.text(0) == text;
}

Result<std::int64_t> NotificationRows::insert(const UNNotificationRequest& request,
                                              std::string_view text, Date now) {
  const auto& attachments = request.content.attachments;
  const std::int64_t number = ++position_;
  TRY(connection_->run("INSERT INTO notifications VALUES (?, ?, 0, ?, ?, ?, ?)", number,
                       request.identifier, number, dueOnTheClock(request),
                       now.timeIntervalSinceReferenceDate(),
                       static_cast<std::int64_t>(attachments.size())));
  TRY(connection_->run("INSERT INTO contents VALUES (?, ?)", number, text));
  for (const auto& attachment : attachments) {
    TRY(connection_->run("INSERT OR IGNORE INTO attachments VALUES (?, ?)", number,
                         attachment.url));
  }
  return number;
}

Result<void> NotificationRows::remove(std::int64_t number) {
  return connection_->run("DELETE FROM notifications WHERE number = ?", number);
}

Result<void> NotificationRows::removePending(const std::set<std::string>& identifiers) {
  for (const auto& identifier : identifiers) {
    if (TRY(isSpared(identifier))) continue;
    TRY(connection_->run("DELETE FROM notifications WHERE identifier = ? AND isDelivered = 0",
                         identifier));
  }
  return {};
}

Result<void> NotificationRows::removeDelivered(const std::set<std::string>& identifiers, Date now) {
  const TimeZone zone = TimeZone::current();
  for (const auto& identifier : identifiers) {
    TRY(connection_->run("DELETE FROM notifications WHERE identifier = ? AND isDelivered = 1",
                         identifier));
    const auto onTheClock = TRY(connection_->integer(
        "SELECT due FROM notifications WHERE identifier = ? AND isDelivered = 0", identifier));
    if (onTheClock && dueDate(*onTheClock, zone) <= now) TRY(removePending({identifier}));
  }
  return {};
}

Result<void> NotificationRows::removeAllPending(Date now) {
  const auto due = TRY(dueRows(now));
  TRY(connection_->run("DELETE FROM notifications WHERE isDelivered = 2"));
  TRY(
      connection_->run("UPDATE notifications SET isDelivered = 2 WHERE isDelivered = 0 AND "
                       "(position <= ? OR position > ?)",
                       spared_, std::max(spared_, storedPosition_)));
  for (const Row& row : due) {
    TRY(connection_->run("UPDATE notifications SET isDelivered = 0 WHERE number = ?", row.number));
  }
  return {};
}

Result<void> NotificationRows::removeAllDelivered(Date now) {
  TRY(connection_->run("DELETE FROM notifications WHERE isDelivered = 1"));
  for (const Row& row : TRY(dueRows(now))) TRY(remove(row.number));
  return {};
}

Result<std::vector<UNNotification>> NotificationRows::deliverDue(Date now) {
  const bool isAllowed = settings().authorizationStatus == UNAuthorizationStatus::authorized;
  std::vector<UNNotification> shown;
  for (const Row& row : TRY(dueRows(now))) {
    auto due = TRY(request(row.number));
    if (!due) {
      TRY(
          connection_->run("INSERT INTO damaged SELECT identifier, request FROM notifications "
                           "LEFT JOIN contents USING (number) WHERE number = ?",
                           row.number));
    }
    const bool counts = due && isAllowed;
    if (counts && due->content.badge && settings().badgeSetting == UNNotificationSetting::enabled) {
      records_.badge = std::max<std::int64_t>(0, *due->content.badge);
    }
    if (!counts || !due->content.hasText()) {
      TRY(remove(row.number));
      continue;
    }
    TRY(setDelivered(row.number, now));
    shown.push_back({.date = now, .request = std::move(*due)});
  }
  if (!shown.empty()) {
    TRY(
        connection_->run("DELETE FROM notifications WHERE isDelivered = 1 AND position <= (SELECT "
                         "position FROM notifications WHERE isDelivered = 1 "
                         "ORDER BY position DESC LIMIT 1 OFFSET ?)",
                         static_cast<std::int64_t>(maximumDelivered)));
  }
  return shown;
}

/// By the row's identifier: one that was changed in its text alone could be that of another.
Result<void> NotificationRows::setDelivered(std::int64_t number, Date date) {
  TRY(
      connection_->run("DELETE FROM notifications WHERE isDelivered = 1 AND identifier = (SELECT "
                       "identifier FROM notifications WHERE number = ?)",
                       number));
  return connection_->run(
      "UPDATE notifications SET isDelivered = 1, position = ?, date = ? WHERE number = ?",
      ++position_, date.timeIntervalSinceReferenceDate(), number);
}

Result<void> NotificationRows::takeOver(const NotificationRecords& older, Date now) {
  records_ = older;
  records_.pending.clear();
  records_.delivered.clear();
  for (const auto& [date, request] : older.delivered) {
    const std::string text = TRY(textOf(request));
    const std::int64_t number = TRY(insert(request, text, now));
    TRY(setDelivered(number, date));
  }
  for (const auto& request : older.pending) {
    TRY(removePending({request.identifier}));
    const std::string text = TRY(textOf(request));
    TRY(insert(request, text, now));
  }
  return {};
}

Result<void> NotificationRows::finish() {
  const std::string text = TRY(textOf(records_));
  if (isDamaged_) {
    TRY(connection_->run("INSERT INTO damaged VALUES (NULL, ?)", recordsText_));
  }
  if (text == recordsText_ && position_ == storedPosition_) return {};
  return connection_->run("INSERT OR REPLACE INTO records VALUES (1, ?, ?)", position_, text);
}

}  // namespace platform
