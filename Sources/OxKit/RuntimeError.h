#pragma once

#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <string>

namespace velloro {

/// A failure that callers do not distinguish from others; its message goes to the log only.
class RuntimeError : public Error {
 public:
  explicit RuntimeError(std::string message);

  [[nodiscard]] const std::string& message() const { return localizedDescription(); }
};

}  // namespace velloro
