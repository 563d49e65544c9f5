#pragma once

#include "Foundation/Files/SharedFile.h"
#include "UserNotifications/NotificationRecords.h"

#include <filesystem>
#include <functional>

namespace platform {

/// The `NotificationRecords` in the file "notifications.json" of a folder, which the processes of a
/// program share. For one thread at a time.
///
/// What can't be read is left out; the file as it was is moved aside (".corrupt" behind its name)
/// before the next write. A problem is reported by `Environment::report`, once.
class NotificationStore {
 public:
  explicit NotificationStore(std::filesystem::path folder);

  /// As they are now, whichever process wrote them.
  [[nodiscard]] const NotificationRecords& records();
  /// Changes the records while no other process does. When this returns they are on the disk; when
  /// it fails they are as they were. Copies of attachments that no request has any more are
  /// removed.
  [[nodiscard]] Result<void> change(const std::function<void(NotificationRecords&)>& edit);

 private:
  void refresh();
  [[nodiscard]] Result<void> edit(const std::function<void(NotificationRecords&)>& edit);
  [[nodiscard]] Result<void> write(const NotificationRecords& records);
  void removeAttachments(const NotificationRecords& before, const NotificationRecords& after) const;

  const std::filesystem::path folder_;
  SharedFile file_;
  NotificationRecords records_;
  ErrorPtr unreadable_;  ///< Why the file could not be read.
  bool isCorrupt_ = false;
};

}  // namespace platform
