#pragma once

#include <functional>

namespace platform {

/// A piece of work that its receiver runs at most once.
using Block = std::move_only_function<void()>;

}  // namespace platform
