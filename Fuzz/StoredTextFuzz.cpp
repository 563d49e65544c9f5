#include "Foundation/TestEnvironment.h"
#include "Fuzz.h"
#include "OxCheckableTasks/IconDisplayRepresentation.h"
#include "VelloroCore/CompletionStatus.h"
#include "VelloroCore/Theme.h"

#include <array>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

namespace {

using namespace velloro;
using Status = CompletionStatus::Status;

/// What could be read is written as a text that reads as the same again.
template <typename Value, typename Read, typename Write>
void checkRoundTrip(const std::optional<Value>& value, Read read, Write write) {
  if (!value) return;
  const std::string written = write(*value);
  const auto again = read(written);
  if (again != value || write(*again) != written) std::abort();
}

void checkIcon(std::string_view text) {
  const auto read = [](std::string_view stored) {
    return IconVisualRepresentation::fromStorableValue(stored);
  };
  const auto icon = read(text);
  if (!icon) return;
  checkRoundTrip(icon, read, std::mem_fn(&IconVisualRepresentation::storableValue));
  const std::string automatic = icon->storableValueWithAutoMonogram();
  if (IconVisualRepresentation::fromStorableValue(automatic, icon->text()) != icon) std::abort();
  (void)icon->accessibilityLabel();
}

constexpr std::array<std::string_view, 12> seeds = {
    "ic_water_glass",
    "em_\U0001F6B2\U0001F3FD\u200D\u2640\uFE0F",
    "mg_ABCD",
    "sf_star.leadinghalf.filled",
    "char_10",
    R"({"vr":{"icon":"mug"},"dp":{"orientation":0}})",
    R"({"vr":{"sfSymbol":{"name":"star"}},"dp":{"orientation":7,"overlay":"slash"}})",
    R"({"vr":{"monogram":"\ud83c\udfc6"},"dp":{"overlay":null,"orientation":3.0}})",
    "i_mwoi",
    "nc_swi",
    "redBlue.white.grandSlam",
    "activityGreen.alternate",
};

}  // namespace

std::span<const std::string_view> fuzzSeeds() {
  return seeds;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const TestEnvironment environment;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  checkIcon(text);
  checkRoundTrip(IconDisplayRepresentation::fromCoreDataStringRepresentation(text),
                 IconDisplayRepresentation::fromCoreDataStringRepresentation,
                 std::mem_fn(&IconDisplayRepresentation::coreDataStringRepresentation));
  const auto status = Status::fromStringValue(text);
  if (status && status->stringValue() != text) std::abort();
  checkRoundTrip(Theme::fromStringValue(text), Theme::fromStringValue,
                 std::mem_fn(&Theme::stringValue));
  return 0;
}
