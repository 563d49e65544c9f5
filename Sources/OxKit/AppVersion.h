#pragma once

#include "OxKit/Platform.h"

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace platform {
class Decoder;
class Encoder;
class Hasher;
}  // namespace platform

namespace velloro {

/// A version number of the application. Versions are ordered by their numbers in turn; one without
/// a build stands before all builds of the same version.
///
///     const AppVersion version = AppVersion::fromTextWithBuild("1.2.3.45").value();
///     version.nextMinor().formatted();                       // "1.3.0"
///     AppVersion::fromTextWithoutBuild("1.2", 45)->formatted();  // "1.2.0.45"
///     version.withoutBuild() < version;                      // true
///
/// In JSON it is its `formatted` text.
struct AppVersion {
  int major = 0;
  int minor = 0;
  int patch = 0;
  std::optional<int> build = {};

  /// The version of the running program, from its bundle's version text and build number. Absent
  /// when the version text is malformed; without build when only that is.
  [[nodiscard]] static std::optional<AppVersion> current();
  /// Reads "1.2.3", with the build from elsewhere. Parts missing at the end are 0. Absent when a
  /// part is no number, is negative or beyond `int`, or when there are more than three or none.
  [[nodiscard]] static std::optional<AppVersion> fromTextWithoutBuild(
      std::string_view text, std::optional<int> build = {});
  /// Reads "1.2.3.45", where the fourth part is the build, and is absent where it is missing.
  [[nodiscard]] static std::optional<AppVersion> fromTextWithBuild(std::string_view text);

  auto operator<=>(const AppVersion&) const = default;

  [[nodiscard]] AppVersion withoutBuild() const;
  /// The versions that come next; none has a build.
  [[nodiscard]] AppVersion nextMajor() const;
  [[nodiscard]] AppVersion nextMinor() const;
  [[nodiscard]] AppVersion nextPatch() const;

  /// "1.2.3", or "1.2.3.45" with a build: the stored form, which `fromTextWithBuild` reads back.
  [[nodiscard]] std::string formatted() const;

  void encode(Encoder& to) const;
  /// \throws DecodingError for a text that `fromTextWithBuild` can't read.
  [[nodiscard]] static AppVersion decode(const Decoder& from);
  void hash(Hasher& hasher) const;
};

}  // namespace velloro
