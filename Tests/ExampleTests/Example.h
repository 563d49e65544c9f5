#pragma once

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/Locale.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"

#include <cmath>
#include <string_view>
#include <type_traits>
#include <unordered_set>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// What every example of a header takes as given: one in the afternoon of 7 March 2024 in Berlin,
/// empty folders, and the project's texts in English. What the examples of a folder take as given
/// besides stands in a class derived from it, whose header lies beside this one.
class Example : public ::testing::Test {
 protected:
  Example() {
    environment_.setNow(now);
    environment_.setResources(VELLORO_RESOURCES);
  }

  const platform::Date now = platform::Date::fromISO8601("2024-03-07T12:00:00Z").value();
  platform::VirtualEnvironment environment_;
  const platform::TimeZone berlin = platform::TimeZone::current();
  const platform::Locale locale = platform::Locale::current();
};

/// How results are compared.
namespace example {

template <typename Value, typename Expected>
bool equals(const Value& value, const Expected& expected, double accuracy = 1e-9) {
  if constexpr (std::is_arithmetic_v<Value> && std::is_arithmetic_v<Expected>) {
    return std::abs(static_cast<double>(value) - static_cast<double>(expected)) < accuracy;
  } else if constexpr (std::is_convertible_v<Value, std::string_view>) {
    return std::string_view(value) == std::string_view(expected);
  } else if constexpr (requires { *value; } && !std::is_pointer_v<Expected>) {
    return value && equals(*value, expected, accuracy);
  } else if constexpr (requires { value.intValue() == expected; }) {
    return value.intValue() == expected;  // a day or a month by its number
  } else {
    return value == expected;
  }
}

/// Whether a call returned what stands behind it: of an optional or a pointer its value, of a
/// number as far as binary fractions allow.
template <typename Value, typename Expected>
testing::AssertionResult is(const Value& value, const Expected& expected, double accuracy = 1e-9) {
  if (equals(value, expected, accuracy)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "it is " << testing::PrintToString(value);
}

}  // namespace example
