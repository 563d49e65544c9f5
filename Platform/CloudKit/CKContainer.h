#pragma once

#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/Error.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

/// Whether there is an account whose data the cloud keeps.
enum class CKAccountStatus {
  couldNotDetermine,
  available,
  restricted,
  noAccount,
  temporarilyUnavailable
};

constexpr auto rawValues(std::type_identity<CKAccountStatus>) {
  using enum CKAccountStatus;
  return rawIntegers<CKAccountStatus>({{couldNotDetermine, 0},
                                       {available, 1},
                                       {restricted, 2},
                                       {noAccount, 3},
                                       {temporarilyUnavailable, 4}});
}

/// Posted on the default centre, on any thread and without an object, when the status of the
/// account has changed.
inline constexpr const char* CKAccountChanged = "CKAccountChanged";

/// What an application keeps in the cloud, and whose account that is.
///
///     const auto container = CKContainer::initWithIdentifier("iCloud.velloro.app.coreData");
///     container->containerIdentifier();    // "iCloud.velloro.app.coreData"
///
/// There is no account until a service reports one by `setAccountStatus`. From any thread.
class CKContainer {
 public:
  /// Called once, on any thread, and perhaps before the asking returns.
  using AccountStatusHandler = std::function<void(CKAccountStatus, const ErrorPtr& error)>;

  [[nodiscard]] static std::shared_ptr<CKContainer> initWithIdentifier(std::string identifier);

  [[nodiscard]] const std::string& containerIdentifier() const { return identifier_; }
  void accountStatus(const AccountStatusHandler& handler) const;

  /// For the service. If the status changes, `CKAccountChanged` is posted.
  static void setAccountStatus(CKAccountStatus status);

 private:
  explicit CKContainer(std::string identifier) : identifier_(std::move(identifier)) {}

  std::string identifier_;
};

}  // namespace platform
