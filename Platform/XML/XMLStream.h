#pragma once

#include "Foundation/Values/Error.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace platform {

/// The attributes of an element, in the order in which they stand there.
class XMLAttributes {
 public:
  /// \param pairs Names and values in turn, with a null pointer behind the last.
  explicit XMLAttributes(const char* const* pairs) : pairs_(pairs) {}

  /// Absent where the element has none of that name. Valid until the handler returns.
  [[nodiscard]] std::optional<std::string_view> value(std::string_view name) const;

 private:
  const char* const* pairs_;
};

/// Is told of the elements of a document as they are read.
class XMLHandler {
 public:
  virtual ~XMLHandler() = default;
  virtual void start(std::string_view name, const XMLAttributes& attributes) = 0;
  virtual void end(std::string_view name) = 0;
};

/// Reads a document piece by piece, in a fixed amount of memory. Texts between the elements are
/// passed over. Nothing outside of the document is read, and entities of its own are not replaced
/// beyond what the parser's guard against their growth allows.
///
/// ```
/// XMLStream stream(handler);
/// stream.feed("<a b='1'>", false).has_value();     // true: the handler knows of the element
/// stream.feed("</b>", true).error()->localizedDescription();    // "line 1: mismatched tag"
/// ```
class XMLStream {
 public:
  explicit XMLStream(XMLHandler& handler);
  ~XMLStream();
  XMLStream(const XMLStream&) = delete;
  XMLStream& operator=(const XMLStream&) = delete;

  /// \param isLast Whether the document ends here.
  /// Fails where it is not well-formed, and where one tag is longer than 4 MiB.
  [[nodiscard]] Result<void> feed(std::string_view bytes, bool isLast);
  /// Of what is being read, from 1.
  [[nodiscard]] std::int64_t line() const;

 private:
  struct Parser;
  std::unique_ptr<Parser> parser_;
};

}  // namespace platform
