#include "CoreGraphics/DrawingBackend.h"

#include "CoreGraphics/ModuleLoader.h"
#include "Foundation/Process/Environment.h"

namespace platform {
namespace {

DrawingBackend* load() {
  std::string problem;
  void* const entry = loadModule("CairoDrawing.so", "velloroDrawingBackend", problem);
  if (entry == nullptr) {
    Environment::current().report("Nothing can be drawn: " + problem);
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
