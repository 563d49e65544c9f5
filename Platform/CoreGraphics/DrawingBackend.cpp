#include "CoreGraphics/DrawingBackend.h"

#include "Foundation/Process/Environment.h"

#include <filesystem>

#include <dlfcn.h>

namespace platform {
namespace {

/// Programs lie in a folder beside the library folder, in the build tree as after installation.
std::filesystem::path modulePath() {
  std::error_code ignored;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", ignored);
  return program.parent_path().parent_path() / VELLORO_LIBDIR / "velloro" / "CairoDrawing.so";
}

DrawingBackend* load() {
  // Never closed: its objects live as long as the process.
  void* const module = dlopen(modulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const entry = module != nullptr ? dlsym(module, "velloroDrawingBackend") : nullptr;
  if (entry == nullptr) {
    Environment::current().report(std::string("Nothing can be drawn: ") + dlerror());
    return nullptr;
  }
  return reinterpret_cast<decltype(&velloroDrawingBackend)>(entry)();
}

}  // namespace

DrawingBackend* DrawingBackend::shared() {
  static DrawingBackend* const backend = load();
  return backend;
}

}  // namespace platform
