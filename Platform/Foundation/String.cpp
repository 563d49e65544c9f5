#include "Foundation/String.h"

#include <cstdarg>
#include <cstdio>

#include <simdjson.h>

namespace platform {

std::string stringWithFormat(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

bool isUTF8(std::string_view bytes) {
  return simdjson::validate_utf8(bytes);
}

}  // namespace platform
