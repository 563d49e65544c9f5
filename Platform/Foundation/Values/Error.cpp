#include "Foundation/Values/Error.h"

#include <system_error>
#include <utility>

namespace platform {

Error::Error(std::string domain, int code, std::string localizedDescription)
    : domain_(std::move(domain)), code_(code), description_(std::move(localizedDescription)) {}

PosixError::PosixError(const std::string& attempt, int errorNumber)
    : Error("POSIX", errorNumber, attempt + ": " + std::generic_category().message(errorNumber)) {}

}  // namespace platform
