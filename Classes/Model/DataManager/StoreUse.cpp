#include "DataManager/StoreUse.h"

#include "DataManager/DataManager.h"
#include "Foundation/Values/Try.h"

#include <cassert>
#include <filesystem>

namespace velloro {
namespace {

/// Of this thread.
thread_local int held = 0;
thread_local bool isMaintaining = false;

std::filesystem::path folder() {
  return DataManager::StoreUrls::make().sharedGroupUrlModernLocal.parent_path();
}

// Writers hold the second lock together, so that there is always one of them under load. The first
// makes new ones wait as soon as somebody wants to maintain, who would otherwise wait for ever.
std::filesystem::path gate() {
  return folder() / ".Velloro.maintenance.lock";
}
std::filesystem::path writers() {
  return folder() / ".Velloro.writing.lock";
}

}  // namespace

StoreUse::StoreUse(std::vector<FileLock> locks) : locks_(std::move(locks)) {
  ++held;
}

StoreUse::~StoreUse() {
  if (isHeld_ && --held == 0) isMaintaining = false;
}

Result<StoreUse> StoreUse::toWrite() {
  std::vector<FileLock> locks;
  if (held > 0) return StoreUse(std::move(locks));
  const auto passed = TRY(FileLock::shared(gate()));
  auto writing = TRY(FileLock::shared(writers()));
  locks.push_back(std::move(writing));
  return StoreUse(std::move(locks));
}

Result<StoreUse> StoreUse::toMaintain() {
  assert((held == 0 || isMaintaining) && "who writes can't wait for the end of all writing");
  std::vector<FileLock> locks;
  if (held > 0) return StoreUse(std::move(locks));
  for (const auto& file : {gate(), writers()}) {
    auto lock = TRY(FileLock::exclusive(file));
    locks.push_back(std::move(lock));
  }
  isMaintaining = true;
  return StoreUse(std::move(locks));
}

bool StoreUse::isHeldHere() {
  return held > 0;
}

bool StoreUse::isMaintained() {
  return FileLock::isHeldExclusively(gate());
}

}  // namespace velloro
