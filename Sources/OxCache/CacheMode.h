#pragma once

namespace velloro {

/// Where a cache keeps what it is given.
enum class CacheMode { none, diskAndMemory, disk, memory };

/// Where one value is looked for or put: `automatic` is memory and disk, in this order.
enum class CacheStorageLocation { automatic, disk, memory };

constexpr bool usesMemory(CacheMode mode) {
  return mode == CacheMode::memory || mode == CacheMode::diskAndMemory;
}
constexpr bool usesDisk(CacheMode mode) {
  return mode == CacheMode::disk || mode == CacheMode::diskAndMemory;
}
constexpr bool usesMemory(CacheStorageLocation location) {
  return location != CacheStorageLocation::disk;
}
constexpr bool usesDisk(CacheStorageLocation location) {
  return location != CacheStorageLocation::memory;
}

}  // namespace velloro
