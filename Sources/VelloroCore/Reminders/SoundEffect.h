#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <type_traits>

namespace velloro {

/// The name of a notification's sound; the player chooses the file. `system` is the platform's own
/// sound, and `nilSound`, stored as "nil", plays nothing. Where a setting holds no effect at all,
/// there is no sound either.
enum class SoundEffect : std::int8_t {
  system,
  chillbell,
  chora,
  console,
  esta,
  flore,
  glow,
  hexiled,
  islands,
  marem,
  panel,
  ping,
  silica,
  unity,
  beeply,
  nilSound,
  query,
  runner,
  meditate,
  levitate,
};

constexpr auto rawValues(std::type_identity<SoundEffect>) {
  using enum SoundEffect;
  return rawTexts<SoundEffect>(
      {{system, "system"},     {chillbell, "chillbell"}, {chora, "chora"},
       {console, "console"},   {esta, "esta"},           {flore, "flore"},
       {glow, "glow"},         {hexiled, "hexiled"},     {islands, "islands"},
       {marem, "marem"},       {panel, "panel"},         {ping, "ping"},
       {silica, "silica"},     {unity, "unity"},         {beeply, "beeply"},
       {nilSound, "nil"},      {query, "query"},         {runner, "runner"},
       {meditate, "meditate"}, {levitate, "levitate"}});
}

/// The effects in the order in which a user chooses among them.
inline constexpr auto sortedEffects = [] {
  using enum SoundEffect;
  return std::array{system, beeply,  chillbell, chora,    console, esta,     flore,
                    glow,   hexiled, islands,   levitate, marem,   meditate, nilSound,
                    panel,  ping,    query,     runner,   silica,  unity};
}();

/// The effect that new settings start with. Read it and set it from any thread.
inline std::atomic<SoundEffect> defaultEffect{SoundEffect::islands};

/// How good the news is that the effect accompanies.
enum class SoundEffectDirection : std::int8_t { negative, neutral, positive, superPositive };

/// An effect as it is played.
struct ConcreteSoundEffect {
  SoundEffect effect = SoundEffect::system;
  SoundEffectDirection direction = SoundEffectDirection::neutral;

  bool operator==(const ConcreteSoundEffect&) const = default;
};

/// Whether the effect sounds differently by direction. The platform's own sound does not.
[[nodiscard]] constexpr bool hasDirections(SoundEffect effect) {
  return effect != SoundEffect::system;
}

[[nodiscard]] constexpr ConcreteSoundEffect concrete(SoundEffect effect,
                                                     SoundEffectDirection direction) {
  return {effect, direction};
}

/// The occasions that a sound is chosen for.
enum class SoundType : std::int8_t {
  taskComplete,
  taskPartiallyComplete,
  taskMissed,
  taskPartiallyMissed,
  reminder,
  timerNotification,
};

}  // namespace velloro
