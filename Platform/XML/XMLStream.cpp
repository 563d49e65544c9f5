#include "XML/XMLStream.h"

#include <string>

#include <expat.h>

namespace platform {

std::optional<std::string_view> XMLAttributes::value(std::string_view name) const {
  for (const char* const* pair = pairs_; *pair != nullptr; pair += 2) {
    if (pair[0] == name) return std::string_view(pair[1]);
  }
  return std::nullopt;
}

struct XMLStream::Parser {
  XML_Parser handle = XML_ParserCreate(nullptr);
  std::int64_t fed = 0;

  Parser() = default;
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;
  ~Parser() { XML_ParserFree(handle); }

  [[nodiscard]] auto failure(const std::string& reason) const {
    return platform::failure<Error>(
        "velloro.xml", 1,
        "line " + std::to_string(XML_GetCurrentLineNumber(handle)) + ": " + reason);
  }
};

XMLStream::XMLStream(XMLHandler& handler) : parser_(std::make_unique<Parser>()) {
  XML_SetUserData(parser_->handle, &handler);
  XML_SetElementHandler(
      parser_->handle,
      [](void* to, const XML_Char* name, const XML_Char** attributes) {
        static_cast<XMLHandler*>(to)->start(name, XMLAttributes(attributes));
      },
      [](void* to, const XML_Char* name) { static_cast<XMLHandler*>(to)->end(name); });
}

XMLStream::~XMLStream() = default;

Result<void> XMLStream::feed(std::string_view bytes, bool isLast) {
  constexpr std::int64_t longestTag = std::int64_t{4} << 20;
  parser_->fed += std::ssize(bytes);
  const auto status = XML_Parse(parser_->handle, bytes.data(), static_cast<int>(bytes.size()),
                                isLast ? XML_TRUE : XML_FALSE);
  if (status == XML_STATUS_ERROR) {
    return parser_->failure(XML_ErrorString(XML_GetErrorCode(parser_->handle)));
  }
  const std::int64_t done = XML_GetCurrentByteIndex(parser_->handle);
  if (!isLast && parser_->fed - done > longestTag) return parser_->failure("a tag is too long");
  return {};
}

std::int64_t XMLStream::line() const {
  return static_cast<std::int64_t>(XML_GetCurrentLineNumber(parser_->handle));
}

}  // namespace platform
