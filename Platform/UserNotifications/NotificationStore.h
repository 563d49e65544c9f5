#pragma once

#include "Foundation/Files/SharedFile.h"
#include "UserNotifications/NotificationRows.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace platform {

/// The notifications in the file "notifications.sqlite" of a folder, which the processes of a
/// program share. For one thread at a time.
///
/// A request that can't be read is left out, and moved to the table "damaged" when it falls due. A
/// file that is no database is moved aside (".corrupt" behind its name) before the next write. An
/// older version's "notifications.json" is taken over when the database is made, and renamed. A
/// problem is reported by `Environment::report`, once.
class NotificationStore {
 public:
  explicit NotificationStore(std::filesystem::path folder);

  /// All that is kept now, whichever process wrote it; without what can't be read.
  [[nodiscard]] NotificationRecords records();
  /// Reads a part of it. Where the file can't be read, `look` is not called.
  void read(const std::function<Result<void>(NotificationRows&)>& look);
  /// Changes the rows in one transaction. When this returns they are on the disk; when it fails
  /// they are as they were, and `edit` may have run twice. Copies of attachments that no request
  /// has any more are removed.
  [[nodiscard]] Result<void> change(const std::function<Result<void>(NotificationRows&)>& edit);

 private:
  [[nodiscard]] Result<void> look(const std::function<Result<void>(NotificationRows&)>& look);
  [[nodiscard]] Result<void> edit(const std::function<Result<void>(NotificationRows&)>& edit);
  [[nodiscard]] Result<SqliteConnection*> connect();
  [[nodiscard]] Result<std::unique_ptr<SqliteConnection>> open();
  [[nodiscard]] Result<void> make(SqliteConnection& connection);
  void removeOrphans(SqliteConnection& connection);
  [[nodiscard]] bool isOfThisStore(const std::filesystem::path& attachment) const;
  [[nodiscard]] Result<void> moveAside();
  void tell(const Error& error);
  void report(const std::vector<std::string>& problems);

  const std::filesystem::path folder_;
  SharedFile file_;
  SharedFile olderFile_;
  std::unique_ptr<SqliteConnection> connection_;
  std::string identity_;            ///< Of the file that is open.
  std::set<std::string> reported_;  ///< What can't be read.
};

}  // namespace platform
