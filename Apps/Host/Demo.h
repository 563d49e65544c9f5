#pragma once

#include "Host/HostStore.h"

namespace velloro {

/// Fills a store with eight tasks of all kinds and what a diligent, human user may have logged in
/// the 120 days up to now: the same every time. Saved. \throws HostError where there are tasks.
void fillDemoStore(const HostStore& store);

}  // namespace velloro
