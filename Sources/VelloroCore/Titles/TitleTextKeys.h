#pragma once

#include "OxKit/LocalizedKey.h"

namespace velloro {

/// The texts that titles and amounts are put together with.
namespace title_text {

/// {0} the title, {1} its amount: "Drink water 8 cups".
inline constexpr LocalizedKey withQuantity{"TaskTitle.WithQuantity", "tt"};
/// {0} to {1}, both dates.
inline constexpr LocalizedKey dateRange{"DateRange", "tt"};

// Amounts that are counted.
inline constexpr LocalizedKey steps{"distance.steps", "n"};
inline constexpr LocalizedKey pushes{"distance.pushes", "n"};
inline constexpr LocalizedKey flights{"distance.flights", "n"};
inline constexpr LocalizedKey drinks{"quantity.drinks", "n"};
inline constexpr LocalizedKey cups{"volume.cups", "n"};

// Signs of units around a written number.
inline constexpr LocalizedKey ounces{"quantityformatter.volume.ounces", "t"};
inline constexpr LocalizedKey litres{"quantityformatter.volume.litres", "t"};
inline constexpr LocalizedKey millilitres{"quantityformatter.volume.mls", "t"};
inline constexpr LocalizedKey micrograms{"quantityformatter.mass.mass_mcg", "t"};

inline constexpr LocalizedKey all[] = {withQuantity, dateRange,   steps,     pushes,
                                       flights,      drinks,      cups,      ounces,
                                       litres,       millilitres, micrograms};

}  // namespace title_text
}  // namespace velloro
