#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Values/Data.h"
#include "OxLog/Log.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

namespace velloro {

/// Writes the log lines of chosen categories, from a chosen level up, to the file "debug.log" in
/// the caches folder.
///
///     LogManager::shared().enableDiskLogging({Log::notifications}, LogLevel::info);
///     Log::notifications.info([] { return "Updating badges..."; });
///     LogManager::shared().flush();
///     // 🚨 [Notifications, INFO] 2024-03-07 9:05:01.123 [NotificationManager:42] update() Updating
///     // badges...                                                              (all on one line)
///
/// The choice is kept in the standard defaults. Nothing is chosen at first, so a new installation
/// writes nothing; other processes take a new choice over when they start.
///
/// The date is in local time, the file's name without folder and extension, the function without
/// types and arguments. A message stands as it is, with its own line breaks.
///
/// Lines are written one after the other on a queue of the manager's own, in the order of the
/// calls. Several processes may write the same file; their lines do not mix. Logging never fails
/// outward: a line that can't be written is lost, and so is one that is not UTF-8.
class LogManager {
 public:
  using LogLevel = velloro::LogLevel;

  /// A line from the watch, as it sends it: JSON under the names of the fields.
  struct WatchDebugPacket {
    Date date;
    Log category;
    LogLevel level = LogLevel::debug;
    std::string message;
    std::string filename;  ///< A path or a bare name.
    std::string function;
    std::int64_t line = 0;

    bool operator==(const WatchDebugPacket&) const = default;
    static constexpr auto codingKeys =
        keys(key("date", &WatchDebugPacket::date), key("category", &WatchDebugPacket::category),
             key("level", &WatchDebugPacket::level), key("message", &WatchDebugPacket::message),
             key("filename", &WatchDebugPacket::filename),
             key("function", &WatchDebugPacket::function), key("line", &WatchDebugPacket::line));
  };

  /// A file of this many bytes or more is cleared before a process's first line.
  static constexpr std::uint64_t logSizeLimit = 10'000'000;

  /// The manager that `Log` writes to. Its folder and defaults are those of the environment that is
  /// current at the first use; a process installs its environment before that.
  [[nodiscard]] static LogManager& shared();

  /// A manager over the current environment's caches folder and standard defaults.
  LogManager();
  /// Waits for the lines that are still to be written.
  ~LogManager();
  LogManager(const LogManager&) = delete;
  LogManager& operator=(const LogManager&) = delete;

  /// Chooses which lines are written from now on, in this process and in those that start later.
  void enableDiskLogging(const std::set<Log>& logs, LogLevel minimumLevel);
  /// Whether a line of that category and level is written. The first call reads the stored choice.
  [[nodiscard]] bool shouldLogToDisk(Log category, LogLevel level);

  [[nodiscard]] const std::filesystem::path& debugLogUrl() const { return debugLogUrl_; }
  /// Makes the file, and its folder, where they are missing.
  void initDebugLog() const;
  void clearDebugLog() const;

  /// Writes the line that came in a `WatchDebugPacket`, if its category and level are chosen, under
  /// its own date and marked "WATCH". Data that can't be read is logged as an error.
  void receiveFromWatch(const Data& data);

  /// Writes the line, whatever was chosen.
  void write(WatchDebugPacket line, std::string_view prefix = "");

  /// Returns when the lines handed in so far are in the file; to be called before the process ends.
  void flush() const;

 private:
  struct DiskLevels {
    std::uint32_t logToDiskLogs = 0;  ///< A bit for each category.
    LogLevel logToDiskMinLevel = LogLevel::error;
    bool hasInitializedLogToDiskLevels = false;
  };

  DiskLevels storedDiskLevels() const;
  void append(const std::string& line);
  void checkForLogDeletion();

  const std::filesystem::path debugLogUrl_;
  NSUserDefaults defaults_;
  std::mutex mutex_;  ///< Held while the choice is read or made.
  std::atomic<DiskLevels> diskLevels_ = DiskLevels{};
  bool hasCheckedForLogDeletion_ = false;  ///< Used on the queue alone.
  DispatchQueue queue_{"velloro.domain.logmanager", QualityOfService::utility};
};

}  // namespace velloro
