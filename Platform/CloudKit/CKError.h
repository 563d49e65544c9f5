#pragma once

#include <string_view>

namespace platform {

/// The domain of the errors that the cloud service gives.
inline constexpr std::string_view CKErrorDomain = "CKErrorDomain";

/// The codes of these errors that callers distinguish.
enum class CKErrorCode : int {
  requestRateLimited = 7,  ///< Asked too often: it will be tried again by itself.
};

}  // namespace platform
