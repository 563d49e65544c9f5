#include "CairoDrawing/RowPacker.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>

#include <libdeflate.h>

namespace platform {
namespace {

// A "deflate" stream of one block in the format's fixed code: literal bytes, and matches, which
// repeat so many bytes from so far back. Symbols 0 to 255 are literals, 256 is the end, and higher
// ones tell lengths, with the low bits of the length behind them.

constexpr std::size_t longestMatch = 258;
constexpr std::size_t shortestMatch = 3;
constexpr std::size_t farthest = 32768;
constexpr std::uint32_t endOfBlock = 256;

/// Bits as they go into the stream, the lowest first.
struct Code {
  std::uint32_t bits = 0;
  unsigned count = 0;

  [[nodiscard]] constexpr Code followedBy(Code next) const {
    return {bits | next.bits << count, count + next.count};
  }
};

/// Codes, other than numbers, begin with their highest bit.
constexpr Code huffman(std::uint32_t value, unsigned count) {
  Code code{.count = count};
  for (unsigned i = 0; i < count; ++i) code.bits |= (value >> i & 1U) << (count - 1 - i);
  return code;
}

constexpr Code fixedCode(std::uint32_t symbol) {
  if (symbol < 144) return huffman(0x30 + symbol, 8);
  if (symbol < 256) return huffman(0x190 + symbol - 144, 9);
  if (symbol < 280) return huffman(symbol - 256, 7);
  return huffman(0xC0 + symbol - 280, 8);
}

constexpr auto literals = [] {
  std::array<Code, 256> codes;
  for (std::uint32_t byte = 0; byte < 256; ++byte) codes[byte] = fixedCode(byte);
  return codes;
}();

/// By length. From symbol 265 on, each four symbols take one bit more behind them.
constexpr auto lengths = [] {
  std::array<Code, longestMatch + 1> codes;
  std::size_t length = shortestMatch;
  for (std::uint32_t symbol = 257; symbol < 285; ++symbol) {
    const unsigned extra = symbol < 265 ? 0 : (symbol - 261) / 4;
    for (std::uint32_t rest = 0; rest < 1U << extra && length < longestMatch; ++rest) {
      codes[length++] = fixedCode(symbol).followedBy({rest, extra});
    }
  }
  codes[longestMatch] = fixedCode(285);
  return codes;
}();

/// Each power of two is two symbols wide, and the bits below these two follow.
constexpr Code distanceCode(std::size_t distance) {
  const auto value = static_cast<std::uint32_t>(distance - 1);
  if (value < 4) return huffman(value, 5);
  const auto extra = static_cast<unsigned>(std::bit_width(value)) - 2;
  const std::uint32_t symbol = 2 * extra + (value >> extra);
  return huffman(symbol, 5).followedBy({value & ((1U << extra) - 1), extra});
}

/// Writes into a buffer, eight bytes at a time: as many must be free behind `end`.
class BitWriter {
 public:
  BitWriter(char* begin, const char* end) : at_(begin), end_(end) {}

  [[nodiscard]] bool isFull() const { return at_ > end_; }

  /// At most 56 bits.
  void put(Code code) {
    held_ |= std::uint64_t{code.bits} << count_;
    count_ += code.count;
    static_assert(std::endian::native == std::endian::little);
    std::memcpy(at_, &held_, sizeof held_);
    const unsigned whole = count_ / 8;
    at_ += whole;
    held_ >>= whole * 8;
    count_ %= 8;
  }

  /// Behind the last, perhaps partly used byte.
  [[nodiscard]] char* finish() const { return at_ + (count_ > 0 ? 1 : 0); }

 private:
  char* at_;
  const char* end_;
  std::uint64_t held_ = 0;
  unsigned count_ = 0;
};

std::size_t commonLength(const char* left, const char* right, std::size_t most) {
  std::size_t length = 0;
  for (; length + 8 <= most; length += 8) {
    std::uint64_t a = 0;
    std::uint64_t b = 0;
    std::memcpy(&a, left + length, 8);
    std::memcpy(&b, right + length, 8);
    if (a != b) return length + static_cast<std::size_t>(std::countr_zero(a ^ b)) / 8;
  }
  while (length < most && left[length] == right[length]) ++length;
  return length;
}

struct Match {
  std::size_t length = 0;
  Code distance;
};

class RowPacker {
 public:
  RowPacker(std::string_view rows, std::size_t rowBytes) : rows_(rows) {
    constexpr std::size_t pixel = 4;
    const std::array distances = {pixel, rowBytes, rowBytes - pixel};
    for (std::size_t i = 0; i < distances.size(); ++i) {
      sources_[i] = {distances[i], distanceCode(std::min(distances[i], farthest))};
    }
  }

  /// The end of what was written; absent where the buffer was too small.
  [[nodiscard]] std::optional<char*> pack(char* begin, const char* end) const {
    constexpr Code onlyBlockInFixedCode{.bits = 3, .count = 3};
    BitWriter out(begin, end);
    out.put(onlyBlockInFixedCode);
    for (std::size_t at = 0; at < rows_.size();) {
      const Match match = longest(at);
      if (match.length < shortestMatch) {
        out.put(literals[static_cast<unsigned char>(rows_[at++])]);
      } else {
        put(match, out);
        at += match.length;
      }
      if (out.isFull()) return std::nullopt;
    }
    out.put(fixedCode(endOfBlock));
    return out.finish();
  }

 private:
  struct Source {
    std::size_t distance = 0;
    Code code;
  };

  [[nodiscard]] Match longest(std::size_t at) const {
    Match best;
    for (const auto& [distance, code] : sources_) {
      if (distance > at || distance > farthest) continue;
      const char* const here = rows_.data() + at;
      const std::size_t length = commonLength(here, here - distance, rows_.size() - at);
      if (length > best.length) best = {length, code};
      // The first source is the nearest and costs least.
      if (best.length >= longestMatch) break;
    }
    return best;
  }

  static void put(const Match& match, BitWriter& out) {
    for (std::size_t rest = match.length; rest > 0 && !out.isFull();) {
      std::size_t length = std::min(rest, longestMatch);
      // What is left must be long enough to be a match.
      if (rest > length && rest - length < shortestMatch) length -= shortestMatch;
      out.put(lengths[length].followedBy(match.distance));
      rest -= length;
    }
  }

  std::string_view rows_;
  std::array<Source, 3> sources_;
};

}  // namespace

bool appendPackedRows(std::string& file, std::string_view rows, std::size_t rowBytes) {
  constexpr std::string_view quicklyMade("\x78\x01", 2);
  constexpr std::size_t room = 64;  // for what the bit writer holds, and the sum
  const std::size_t before = file.size();
  const std::size_t most = rows.size() / 4;
  file.resize_and_overwrite(before + most + room, [&](char* bytes, std::size_t) {
    char* const begin = bytes + before;
    quicklyMade.copy(begin, quicklyMade.size());
    const auto packed = RowPacker(rows, rowBytes).pack(begin + quicklyMade.size(), begin + most);
    if (!packed) return before;
    std::uint32_t sum = libdeflate_adler32(1, rows.data(), rows.size());
    char* at = *packed;
    for (int i = 0; i < 4; ++i, sum <<= 8U) *at++ = static_cast<char>(sum >> 24U);
    return static_cast<std::size_t>(at - bytes);
  });
  return file.size() > before;
}

}  // namespace platform
