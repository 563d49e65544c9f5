#include "Foundation/Values/Hasher.h"

#include "Foundation/Time/TimeZone.h"

#include <algorithm>
#include <cstring>

namespace platform {

void Hasher::add(std::string_view text) {
  addBits(text.size());
  for (std::size_t at = 0; at < text.size(); at += sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, std::min(sizeof word, text.size() - at));
    addBits(word);
  }
}

// A zone's own hash is the address of its rules.
void Hasher::add(const TimeZone& zone) {
  add(zone.identifier());
}

}  // namespace platform
