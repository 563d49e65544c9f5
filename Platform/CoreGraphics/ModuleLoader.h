#pragma once

#include <string>

namespace platform {

/// Loads a module of this program, which stays loaded, and returns its entry; null with the reason
/// where that fails. Modules lie in "velloro" in the library folder beside the one of the program.
[[nodiscard]] void* loadModule(const char* file, const char* entry, std::string& problem);

}  // namespace platform
