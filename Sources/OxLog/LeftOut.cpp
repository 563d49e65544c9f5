#include "OxLog/LeftOut.h"

#include <string>

namespace velloro {

std::function<void(const DecodingError&)> logLeftOut(Log log, std::string_view record,
                                                     const std::source_location& caller) {
  return [=](const DecodingError& error) {
    log.error([&] { return std::string(record) + ": " + error.localizedDescription(); }, caller);
  };
}

}  // namespace velloro
