#include "CoreGraphics/ModuleLoader.h"

#include <filesystem>

#include <dlfcn.h>

namespace platform {
namespace {

/// Programs lie in a folder beside the library folder, in the build tree as after installation.
std::filesystem::path modulePath(const char* file) {
  std::error_code ignored;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", ignored);
  return program.parent_path().parent_path() / VELLORO_LIBDIR / "velloro" / file;
}

}  // namespace

void* loadModule(const char* file, const char* entry, std::string& problem) {
  // Never closed: its objects live as long as the process.
  void* const module = dlopen(modulePath(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const found = module != nullptr ? dlsym(module, entry) : nullptr;
  if (found == nullptr) problem = dlerror();
  return found;
}

}  // namespace platform
