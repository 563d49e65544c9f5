#include "OxKit/AppVersion.h"

#include "Foundation/Coding/Coding.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Text/String.h"
#include "Foundation/Values/Hasher.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <vector>

namespace velloro {
namespace {

std::optional<int> naturalNumber(std::string_view text) {
  int value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end || value < 0) return std::nullopt;
  return value;
}

/// The numbers between the dots; absent when one can't be read or there are more than `most`.
std::optional<std::vector<int>> numbersOf(std::string_view text, std::size_t most) {
  std::vector<int> numbers;
  while (true) {
    const std::size_t dot = std::min(text.find('.'), text.size());
    const auto number = naturalNumber(text.substr(0, dot));
    if (!number || numbers.size() == most) return std::nullopt;
    numbers.push_back(*number);
    if (dot == text.size()) return numbers;
    text.remove_prefix(dot + 1);
  }
}

/// The largest number stays: a version read from outside may hold it.
int following(int number) {
  return number == std::numeric_limits<int>::max() ? number : number + 1;
}

AppVersion versionOf(std::vector<int> numbers, std::optional<int> build) {
  numbers.resize(3);
  return {.major = numbers[0], .minor = numbers[1], .patch = numbers[2], .build = build};
}

}  // namespace

std::optional<AppVersion> AppVersion::current() {
  const BundleInfo& bundle = Environment::current().bundle();
  return fromTextWithoutBuild(bundle.shortVersion, naturalNumber(bundle.version));
}

std::optional<AppVersion> AppVersion::fromTextWithoutBuild(std::string_view text,
                                                           std::optional<int> build) {
  const auto numbers = numbersOf(text, 3);
  if (!numbers) return std::nullopt;
  return versionOf(*numbers, build);
}

std::optional<AppVersion> AppVersion::fromTextWithBuild(std::string_view text) {
  const auto numbers = numbersOf(text, 4);
  if (!numbers) return std::nullopt;
  return versionOf(*numbers, numbers->size() == 4 ? std::optional(numbers->back()) : std::nullopt);
}

AppVersion AppVersion::withoutBuild() const {
  return {.major = major, .minor = minor, .patch = patch};
}

AppVersion AppVersion::nextMajor() const {
  return {.major = following(major)};
}

AppVersion AppVersion::nextMinor() const {
  return {.major = major, .minor = following(minor)};
}

AppVersion AppVersion::nextPatch() const {
  return {.major = major, .minor = minor, .patch = following(patch)};
}

std::string AppVersion::formatted() const {
  std::string text = stringWithFormat("%d.%d.%d", major, minor, patch);
  if (build) text += stringWithFormat(".%d", *build);
  return text;
}

void AppVersion::encode(Encoder& to) const {
  to.text(formatted());
}

AppVersion AppVersion::decode(const Decoder& from) {
  const std::string_view text = from.text();
  if (const auto version = fromTextWithBuild(text)) return *version;
  throw from.dataCorrupted(inQuotes(text) + " is no version such as 1.2.3 or 1.2.3.4.");
}

void AppVersion::hash(Hasher& hasher) const {
  hasher.combine(major, minor, patch, build);
}

}  // namespace velloro
