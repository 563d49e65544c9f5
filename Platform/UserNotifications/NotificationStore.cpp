#include "UserNotifications/NotificationStore.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Values/Try.h"

#include <set>

namespace platform {
namespace {

std::set<std::string> attachmentsOf(const NotificationRecords& records) {
  std::set<std::string> urls;
  const auto note = [&](const UNNotificationRequest& request) {
    for (const auto& attachment : request.content.attachments) urls.insert(attachment.url);
  };
  for (const auto& request : records.pending) note(request);
  for (const auto& notification : records.delivered) note(notification.request);
  return urls;
}

}  // namespace

NotificationStore::NotificationStore(std::filesystem::path folder)
    : folder_(std::move(folder)), file_(folder_ / "notifications.json") {}

const NotificationRecords& NotificationStore::records() {
  refresh();
  return records_;
}

void NotificationStore::refresh() {
  if (file_.isUpToDate()) return;
  records_ = {};
  isCorrupt_ = false;
  unreadable_ = nullptr;
  const auto text = file_.read();
  if (!text) {
    unreadable_ = text.error();
    return file_.reportOnce(unreadable_->localizedDescription() + "; there are no notifications");
  }
  if (!*text) return;
  std::vector<std::string> problems;
  records_ = NotificationRecords::fromText(**text, problems);
  isCorrupt_ = !problems.empty();
  if (!isCorrupt_) return file_.forgetReport();
  std::string told = "a part of \"" + file_.path().string() + "\" can't be read";
  for (const auto& problem : problems) told += "; " + problem;
  file_.reportOnce(told);
}

Result<void> NotificationStore::change(const std::function<void(NotificationRecords&)>& edit) {
  auto changed = this->edit(edit);
  if (!changed && changed.error() != unreadable_) {
    file_.reportOnce("notifications can't be stored: " + changed.error()->localizedDescription());
  }
  return changed;
}

Result<void> NotificationStore::edit(const std::function<void(NotificationRecords&)>& edit) {
  const auto lock = TRY(file_.lock());
  refresh();
  if (unreadable_) return std::unexpected(unreadable_);
  const NotificationRecords before = records_;
  NotificationRecords after = before;
  edit(after);
  if (after == before) return {};
  TRY(write(after));
  removeAttachments(before, after);
  refresh();
  return {};
}

Result<void> NotificationStore::write(const NotificationRecords& records) {
  std::string text;
  try {
    text = JSONEncoder{}.encode(records);
  } catch (const EncodingError& error) {
    return failure<EncodingError>(error);
  }
  if (isCorrupt_) {
    TRY(file_.moveAside());
  }
  return file_.write(text);
}

void NotificationStore::removeAttachments(const NotificationRecords& before,
                                          const NotificationRecords& after) const {
  const auto kept = attachmentsOf(after);
  for (const auto& url : attachmentsOf(before)) {
    // A file that someone has written into must not make us remove anything else.
    const std::filesystem::path copy(url);
    const bool isOurs = copy.parent_path() == attachmentFolder(folder_) &&
                        NSFileManager::isFileName(copy.filename().string());
    if (isOurs && !kept.contains(url)) (void)NSFileManager::removeItem(copy);
  }
}

}  // namespace platform
