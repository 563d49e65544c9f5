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
/// The keys of a family of texts are declared in one header, with a list `all` of them. A test
/// compares these lists with the texts of every language, so a key without a text, or with other
/// arguments than its text, is never released.
struct LocalizedKey {
  std::string_view key;
  std::string_view arguments;
};

}  // namespace velloro
