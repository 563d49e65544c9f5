#include "Foundation/Files/NSUserDefaults.h"

#include "Foundation/Files/DefaultsSuite.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace platform {
namespace {

/// Reads the number that a text begins with, and leaves `number` alone where it begins with none.
template <typename Number>
std::errc readStart(std::string_view text, Number& number) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  return std::from_chars(text.data(), text.data() + text.size(), number).ec;
}

std::int64_t integerFrom(const std::string& text) {
  std::int64_t integer = 0;
  if (readStart(text, integer) != std::errc::result_out_of_range) return integer;
  using Limits = std::numeric_limits<std::int64_t>;
  return text.contains('-') ? Limits::min() : Limits::max();
}

std::int64_t integerFrom(double real) {
  using Limits = std::numeric_limits<std::int64_t>;
  if (!(real > -0x1p63)) return Limits::min();
  return real < 0x1p63 ? static_cast<std::int64_t>(real) : Limits::max();
}

double doubleFrom(const PropertyList& value) {
  if (const auto flag = value.boolean()) return *flag ? 1 : 0;
  if (const auto number = value.real()) return *number;
  double real = 0;
  if (const auto* text = value.text()) readStart(*text, real);
  return std::isfinite(real) ? real : 0;
}

std::string textFrom(double real) {
  char digits[32];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), real).ptr;
  return {digits, end};
}

template <typename T>
std::optional<std::remove_const_t<T>> copyOf(T* value) {
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

}  // namespace

NSUserDefaults NSUserDefaults::standardUserDefaults() {
  const std::string& identifier = Environment::current().bundle().identifier;
  const auto named = initWithSuiteName(identifier);
  return named ? *named : NSUserDefaults(DefaultsSuite::named("standard"));
}

std::optional<NSUserDefaults> NSUserDefaults::initWithSuiteName(std::string_view name) {
  if (!NSFileManager::isFileName(name) || name.contains("..")) return std::nullopt;
  return NSUserDefaults(DefaultsSuite::named(name));
}

std::int64_t NSUserDefaults::integerForKey(std::string_view key) const {
  const PropertyList value = suite_->value(key);
  if (const auto flag = value.boolean()) return *flag ? 1 : 0;
  if (const auto integer = value.integer()) return *integer;
  if (const auto real = value.real()) return integerFrom(*real);
  const std::string* text = value.text();
  return text != nullptr ? integerFrom(*text) : 0;
}

bool NSUserDefaults::boolForKey(std::string_view key) const {
  const PropertyList value = suite_->value(key);
  const std::string* text = value.text();
  if (text != nullptr && text->find_first_of("YyTt") == 0) return true;
  return doubleFrom(value) != 0;
}

double NSUserDefaults::doubleForKey(std::string_view key) const {
  return doubleFrom(suite_->value(key));
}

std::optional<std::string> NSUserDefaults::stringForKey(std::string_view key) const {
  const PropertyList value = suite_->value(key);
  if (const auto* text = value.text()) return *text;
  if (const auto flag = value.boolean()) return *flag ? "1" : "0";
  if (const auto integer = value.integer()) return std::to_string(*integer);
  if (const auto real = value.real()) return textFrom(*real);
  return std::nullopt;
}

std::optional<Data> NSUserDefaults::dataForKey(std::string_view key) const {
  return copyOf(suite_->value(key).data());
}

std::optional<std::vector<std::string>> NSUserDefaults::stringArrayForKey(
    std::string_view key) const {
  const PropertyList value = suite_->value(key);
  if (value.array() == nullptr) return std::nullopt;
  std::vector<std::string> texts;
  for (const PropertyList& element : *value.array()) {
    if (element.text() == nullptr) return std::nullopt;
    texts.push_back(*element.text());
  }
  return texts;
}

std::optional<PropertyList> NSUserDefaults::objectForKey(std::string_view key) const {
  PropertyList value = suite_->value(key);
  return value.isNull() ? std::nullopt : std::optional(std::move(value));
}

NSUserDefaults::Dictionary NSUserDefaults::dictionaryRepresentation() const {
  return suite_->values();
}

void NSUserDefaults::setObject(PropertyList value, std::string_view key) {
  suite_->apply({{std::string(key), std::move(value)}});
}

void NSUserDefaults::removeObjectForKey(std::string_view key) {
  setObject(nullptr, key);
}

void NSUserDefaults::setObjects(const Changes& changes) {
  suite_->apply(changes);
}

ErrorPtr NSUserDefaults::saveError() const {
  return suite_->saveError();
}

void NSUserDefaults::registerDefaults(const Dictionary& values) {
  suite_->addRegistered(values);
}

}  // namespace platform
