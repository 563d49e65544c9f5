#include "CloudKit/CKContainer.h"

#include "Foundation/Dispatch/NSNotificationCenter.h"

#include <atomic>

namespace platform {
namespace {

std::atomic<CKAccountStatus> status = CKAccountStatus::noAccount;

}  // namespace

std::shared_ptr<CKContainer> CKContainer::initWithIdentifier(std::string identifier) {
  return std::shared_ptr<CKContainer>(new CKContainer(std::move(identifier)));
}

void CKContainer::accountStatus(const AccountStatusHandler& handler) const {
  handler(status, nullptr);
}

void CKContainer::setAccountStatus(CKAccountStatus newStatus) {
  if (status.exchange(newStatus) == newStatus) return;
  NSNotificationCenter::defaultCenter().post({.name = CKAccountChanged});
}

}  // namespace platform
