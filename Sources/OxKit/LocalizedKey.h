#pragma once

#include <string_view>

namespace velloro {

/// A key of the string tables with what its text takes: a letter for each placeholder, in order.
/// "n" is a number, which the text may need for a plural; it writes it with grouping. "t" is a
/// text, or a number without a plural, shown as it stands.
///
///     inline constexpr LocalizedKey steps{"distance.steps", "n"};
///     localized(steps, {1200});    // "1,200 steps": see Localization.h
///
/// The keys of a family of texts stand in one header, with a list `all` of them. The texts of every
/// language are held against these lists by test, so a key that has no text, or takes other
/// arguments than its text, never ships.
struct LocalizedKey {
  std::string_view key;
  std::string_view arguments;
};

}  // namespace velloro
