#include "VelloroBackup/VelloroJSONBackupValues.h"

#include "Foundation/Coding/Coding.h"

namespace velloro {
namespace {

using Speeds = VelloroJSONBackupTaskSpeedContainer;
using TypeName = VelloroJSONBackupTaskTypeNameContainer;
using Visual = VelloroJSONBackupVisualRepresentation;

constexpr std::string_view iconPrefix = "ic_";
constexpr std::string_view symbolPrefix = "sf_";
constexpr std::string_view screenTime = "screentime";

DecodingError unknownEnum(const Decoder& from) {
  return from.dataCorrupted("Unable to decode enum");
}

std::optional<std::string_view> textOf(const Decoder& from) {
  return from.kind() == Decoder::Kind::text ? std::optional(from.text()) : std::nullopt;
}

/// Whether the list is of speeds alone; an empty one is.
std::optional<TypeSpeeds> speedsIn(const Decoder& list) {
  bool areSpeeds = true;
  TypeSpeeds speeds;
  list.forEachElement([&](const Decoder& each) {
    const auto text = textOf(each);
    const auto speed = text ? fromRawValue<TypeSpeed>(*text) : std::nullopt;
    if (speed) speeds.insert(*speed);
    areSpeeds = areSpeeds && speed;
  });
  return areSpeeds ? std::optional(speeds) : std::nullopt;
}

/// "run,walk" or "yoga,fishing"; speeds come before workouts.
std::optional<Speeds> listIn(std::string_view text) {
  TypeSpeeds speeds;
  Speeds::WorkoutTypes workouts;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(',', start), text.size());
    const std::string_view piece = text.substr(start, end - start);
    if (const auto speed = fromRawValue<TypeSpeed>(piece)) speeds.insert(*speed);
    if (const auto activity = fromRawValue<OxHKWorkoutActivityType>(piece)) {
      workouts.insert(WorkoutType::healthKit(*activity));
    }
    start = end + 1;
  }
  if (!speeds.isEmpty()) return Speeds{speeds};
  return workouts.empty() ? std::nullopt : std::optional(Speeds{std::move(workouts)});
}

}  // namespace

void CodableTimeZone::encode(Encoder& to) const {
  to.text(timeZone.identifier());
}

CodableTimeZone CodableTimeZone::decode(const Decoder& from) {
  const std::string identifier(from.text());
  const auto zone = TimeZone::fromIdentifier(identifier);
  if (!zone) throw from.dataCorrupted("Unable to decode timeZone with value " + identifier);
  return {*zone};
}

std::optional<Visual> Visual::of(const IconVisualRepresentation& representation) {
  using enum IconVisualRepresentation::EncodingPrefix;
  const auto kind = representation.kind();
  return kind == icon || kind == sfSymbol ? std::optional(Visual{representation}) : std::nullopt;
}

std::optional<Visual> Visual::fromText(std::string_view text) {
  if (text.starts_with(symbolPrefix)) {
    const auto name = text.substr(symbolPrefix.size());
    return Visual{IconVisualRepresentation::sfSymbol(std::string(name))};
  }
  const auto iconNamed = [](std::string_view name) -> std::optional<Visual> {
    const auto icon = fromRawValue<IconManagerIcon>(name);
    return icon ? std::optional(Visual{IconVisualRepresentation::icon(*icon)}) : std::nullopt;
  };
  return iconNamed(text.starts_with(iconPrefix) ? text.substr(iconPrefix.size()) : text);
}

std::string Visual::text() const {
  const bool isSymbol = value.kind() == IconVisualRepresentation::EncodingPrefix::sfSymbol;
  return std::string(isSymbol ? symbolPrefix : iconPrefix) + value.text();
}

void Visual::encode(Encoder& to) const {
  to.text(text());
}

Visual Visual::decode(const Decoder& from) {
  const auto visual = fromText(from.text());
  if (!visual) throw unknownEnum(from);
  return *visual;
}

void TypeName::encode(Encoder& to) const {
  const auto* type = std::get_if<HealthType>(&value);
  to.text(type != nullptr ? rawValue(*type) : screenTime);
}

TypeName TypeName::decode(const Decoder& from) {
  if (from.text() == screenTime) return {ScreenTime{}};
  const auto type = fromRawValue<HealthType>(from.text());
  if (!type) throw unknownEnum(from);
  return {*type};
}

void Speeds::encode(Encoder& to) const {
  std::visit([&](const auto& held) { to.encode(held); }, value);
}

Speeds Speeds::decode(const Decoder& from) {
  using enum Decoder::Kind;
  if (const auto text = textOf(from)) {
    if (const auto list = listIn(*text)) return *list;
  } else if (from.kind() == array) {
    if (const auto speeds = speedsIn(from)) return {*speeds};
    try {
      return {from.decode<WorkoutTypes>()};
    } catch (const DecodingError&) {
      throw unknownEnum(from);
    }
  } else if (from.kind() == object) {
    return {from.decode<ScreenTimeSettings>()};
  }
  throw unknownEnum(from);
}

}  // namespace velloro
