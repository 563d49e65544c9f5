#pragma once

#include "Foundation/Coding/JSON.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

/// The text of Tests/Fixtures/<name>.json; empty, with a failure, when there is no such file.
inline std::string fixtureText(const std::string& name) {
  std::ifstream file(std::string(VELLORO_FIXTURES) + "/" + name + ".json", std::ios::binary);
  EXPECT_TRUE(file) << "There is no Tests/Fixtures/" << name << ".json.";
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Why a strict decoder can't read a text as a `T`: "path: reason", or "none" when it can.
template <typename T>
std::string decodingFailure(std::string_view json) {
  try {
    (void)platform::JSONDecoder{.isStrict = true}.decode<T>(json);
  } catch (const platform::DecodingError& error) {
    return error.localizedDescription();
  }
  return "none";
}

/// Whether a serialised form is still the released one: the fixture reads as `value`, and `value`
/// is written byte by byte as the fixture.
///
///     expectFixture("TaskFrequency", frequency);   // Tests/Fixtures/TaskFrequency.json
template <typename T>
void expectFixture(const std::string& name, const T& value,
                   platform::DateForm dateForm = platform::DateForm::secondsSinceReferenceDate) {
  const std::string stored = fixtureText(name);
  const platform::JSONEncoder encoder{.dateForm = dateForm,
                                      .layout = platform::JSONWriter::Layout::pretty};
  EXPECT_EQ(encoder.encode(value) + "\n", stored);
  try {
    EXPECT_TRUE(platform::JSONDecoder{dateForm}.decode<T>(stored) == value)
        << name << ".json reads as another value.";
  } catch (const platform::DecodingError& error) {
    ADD_FAILURE() << name << ".json: " << error.localizedDescription();
  }
}

/// Every case of an enumeration, to be compared with a fixture when they are many.
template <platform::RawRepresentable E>
std::vector<E> everyCase() {
  const auto cases = platform::allCases<E>();
  return {cases.begin(), cases.end()};
}

/// Whether an enumeration still has its released raw values, given in the order of its table, and
/// no others.
///
///     expectRawValues<Mood>({"g", "b"});
template <platform::RawRepresentable E>
void expectRawValues(const std::vector<platform::RawValueType<E>>& raws) {
  const auto cases = platform::allCases<E>();
  ASSERT_EQ(cases.size(), raws.size());
  for (std::size_t i = 0; i < raws.size(); ++i) {
    EXPECT_EQ(platform::rawValue(cases[i]), raws[i]);
    EXPECT_EQ(platform::fromRawValue<E>(raws[i]), cases[i]) << raws[i];
  }
  if constexpr (std::is_integral_v<platform::RawValueType<E>>) {
    EXPECT_FALSE(platform::fromRawValue<E>(std::ranges::min(raws) - 1));
    EXPECT_FALSE(platform::fromRawValue<E>(std::ranges::max(raws) + 1));
  } else {
    EXPECT_FALSE(platform::fromRawValue<E>("no case's raw value"));
  }
}
