#include "Foundation/Coding/JSON.h"
#include "Fuzz.h"

#include <array>
#include <cstdlib>

namespace {

using namespace platform;

constexpr std::array<std::string_view, 6> seeds = {
    "2024-03-07T01:59:59Z",     "2024-02-29T23:59:59.999999999+01:00", "0000-01-01T00:00:00,5-18",
    "9999-12-31T23:59:59-1800", "1969-12-31T23:59:59.0000Z",           "0001-01-01T00:00:00+18:00",
};

}  // namespace

std::span<const std::string_view> fuzzSeeds() {
  return seeds;
}

/// An instant that was read is written as one that reads as the same second, or not at all where an
/// offset carried it out of the years 0 to 9999.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const auto date = Date::fromISO8601({reinterpret_cast<const char*>(bytes), size});
  if (!date) return 0;
  const JSONDecoder decoder{.dateForm = DateForm::iso8601};
  try {
    const std::string json = JSONEncoder{.dateForm = DateForm::iso8601}.encode(*date);
    if (decoder.decode<Date>(json).secondsSince1970() != date->secondsSince1970()) std::abort();
  } catch (const EncodingError&) {
    const std::int64_t seconds = date->secondsSince1970();
    if (seconds >= -62167219200 && seconds < 253402300800) std::abort();
  }
  return 0;
}
