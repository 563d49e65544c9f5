#pragma once

#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <string>
#include <utility>

namespace velloro {

/// A failure with a second line that says what to do about it, which may be empty.
class HelpfulError : public Error {
 public:
  HelpfulError(std::string text, std::string help)
      : Error("velloro.help", 1, std::move(text)), help_(std::move(help)) {}

  [[nodiscard]] const std::string& help() const { return help_; }

 private:
  std::string help_;
};

}  // namespace velloro
