#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

/// A string of bytes. Copies are values of their own.
///
///     const Data data("hi!");
///     data.base64EncodedString();          // "aGkh"
///     Data::fromBase64("aGkh") == data;    // true
class Data {
 public:
  Data() = default;
  /// Takes the text's bytes over, without a copy where it is moved in.
  explicit Data(std::string bytes) : bytes_(std::move(bytes)) {}
  explicit Data(std::span<const std::byte> bytes)
      : bytes_(reinterpret_cast<const char*>(bytes.data()), bytes.size()) {}

  /// Reads Base64 with the alphabet that ends in "+/", padded with "=". Absent for any other
  /// character, line breaks included, and for a length that is no multiple of 4.
  [[nodiscard]] static std::optional<Data> fromBase64(std::string_view text);
  [[nodiscard]] std::string base64EncodedString() const;

  [[nodiscard]] std::size_t size() const { return bytes_.size(); }
  [[nodiscard]] bool empty() const { return bytes_.empty(); }
  [[nodiscard]] std::span<const std::byte> bytes() const {
    return {reinterpret_cast<const std::byte*>(bytes_.data()), bytes_.size()};
  }
  /// The bytes as characters, whether or not they are UTF-8.
  [[nodiscard]] const std::string& text() const& { return bytes_; }
  [[nodiscard]] std::string text() && { return std::move(bytes_); }
  void append(std::string_view bytes) { bytes_ += bytes; }

  bool operator==(const Data&) const = default;
  auto operator<=>(const Data&) const = default;

 private:
  std::string bytes_;
};

}  // namespace platform

template <>
struct std::hash<platform::Data> {
  std::size_t operator()(const platform::Data& data) const noexcept {
    return std::hash<std::string>{}(data.text());
  }
};
