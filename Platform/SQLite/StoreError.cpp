#include "SQLite/StoreError.h"

#include <utility>

namespace platform {

StoreError::StoreError(Kind kind, std::string description)
    : Error(errorDomain, static_cast<int>(rawValue(kind)), std::move(description)), kind_(kind) {}

bool StoreError::is(const Error& error, Kind kind) {
  return error.domain() == errorDomain && error.code() == static_cast<int>(rawValue(kind));
}

}  // namespace platform
