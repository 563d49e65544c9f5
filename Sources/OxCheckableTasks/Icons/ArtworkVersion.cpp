#include "OxCheckableTasks/Icons/ArtworkVersion.h"

#include "CoreGraphics/FontGlyph.h"
#include "Foundation/Values/Hasher.h"
#include "OxCheckableTasks/Icons/IconTable.h"

#include <cstdint>
#include <limits>

namespace velloro {

/// Of the source code; the build writes its definition.
extern const std::uint64_t sourceFingerprint;

int artworkVersion() {
  static const std::uint64_t machine = drawingFingerprint();
  Hasher hasher;
  hasher.combine(sourceFingerprint, machine, IconTable::shared().fingerprint());
  constexpr auto mask = static_cast<std::uint64_t>(std::numeric_limits<int>::max());
  return static_cast<int>(hasher.finalize() & mask);
}

}  // namespace velloro
