#include "Foundation/Coding/CodingError.h"

#include "Foundation/Text/String.h"

#include <utility>

namespace platform {
namespace {

std::string describe(const std::string& path, const std::string& description) {
  return path.empty() ? description : excerpt(path) + ": " + description;
}

}  // namespace

std::string CodingPath::text() const {
  if (parent_ == nullptr) return "";
  std::string text = parent_->text();
  if (key_ == nullptr) return text + "[" + std::to_string(sizeOrIndex_) + "]";
  if (!text.empty()) text += ".";
  return text.append(key_, sizeOrIndex_);
}

DecodingError::DecodingError(Kind kind, std::string codingPath, std::string debugDescription)
    : Error("DecodingError", static_cast<int>(kind), describe(codingPath, debugDescription)),
      kind_(kind),
      isOfOneValue_(kind == Kind::dataCorrupted || kind == Kind::valueNotFound),
      codingPath_(std::move(codingPath)),
      debugDescription_(std::move(debugDescription)) {}

DecodingError DecodingError::ofMoreThanOneValue() const {
  DecodingError failure = *this;
  failure.isOfOneValue_ = false;
  return failure;
}

EncodingError::EncodingError(std::string codingPath, std::string debugDescription)
    : Error("EncodingError", 1, describe(codingPath, debugDescription)),
      codingPath_(std::move(codingPath)),
      debugDescription_(std::move(debugDescription)) {}

}  // namespace platform
