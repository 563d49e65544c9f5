#pragma once

/// The house above Platform/ speaks of the platform's types by their bare names.
namespace platform {}
namespace velloro {
using namespace platform;
}
