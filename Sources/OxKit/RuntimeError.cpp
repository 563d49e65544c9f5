#include "OxKit/RuntimeError.h"

#include <utility>

namespace velloro {

RuntimeError::RuntimeError(std::string message)
    : Error("OxKit.RuntimeError", 1, std::move(message)) {}

}  // namespace velloro
