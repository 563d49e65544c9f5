#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "OxLog/LeftOut.h"

namespace velloro {

std::optional<IconDisplayRepresentation>
IconDisplayRepresentation::fromCoreDataStringRepresentation(std::string_view text) {
  if (const auto plain = IconVisualRepresentation::fromStorableValue(text)) {
    return IconDisplayRepresentation{.visualRepresentation = *plain, .displayProperties = {}};
  }
  try {
    const auto leftOut = logLeftOut(Log::database, "IconDisplayRepresentation");
    auto stored = JSONDecoder{.didLeaveOut = &leftOut}.decode<CoreDataRepresentation>(text);
    return IconDisplayRepresentation{.visualRepresentation = std::move(stored.visualRepresentation),
                                     .displayProperties = stored.displayProperties};
  } catch (const DecodingError& error) {
    Log::database.error([&] {
      return "Unable to read the icon " + inQuotes(text) + ": " + error.localizedDescription();
    });
    return std::nullopt;
  }
}

std::string IconDisplayRepresentation::coreDataStringRepresentation() const {
  return JSONEncoder{}.encode(CoreDataRepresentation{.visualRepresentation = visualRepresentation,
                                                     .displayProperties = displayProperties});
}

}  // namespace velloro
