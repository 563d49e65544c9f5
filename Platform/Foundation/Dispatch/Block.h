#pragma once

#include <functional>

namespace platform {

/// A piece of work, run at most once by whoever is given it.
using Block = std::move_only_function<void()>;

}  // namespace platform
