#pragma once

#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <string>

namespace velloro {

/// A failure that nobody tells apart from others: only a log reads its message.
class RuntimeError : public Error {
 public:
  explicit RuntimeError(std::string message);

  [[nodiscard]] const std::string& message() const { return localizedDescription(); }
};

}  // namespace velloro
