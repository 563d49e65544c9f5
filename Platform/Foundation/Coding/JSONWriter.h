#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace platform {

/// Writes a JSON text value by value, and adds commas, quotes and line breaks. The text goes to a
/// sink in pieces of 256 KiB (the first one smaller), so a long one is never in memory as a whole.
class JSONWriter {
 public:
  using Sink = std::function<void(std::string_view)>;
  enum class Layout {
    compact,
    pretty,  ///< A line for each value, indented by two blanks.
  };

  /// The sink must outlive the writer.
  JSONWriter(const Sink& sink, Layout layout);
  ~JSONWriter();

  void null();
  void boolean(bool value);
  void integer(std::int64_t value);
  void unsignedInteger(std::uint64_t value);
  /// The shortest text that reads back as the same number, 5 for 5.0. The number must be finite.
  void real(double value);
  /// False, with nothing written, when the text is not UTF-8.
  [[nodiscard]] bool text(std::string_view value);
  /// The key of a field, before its value; as `text`.
  [[nodiscard]] bool key(std::string_view name);
  void startObject();
  void endObject();
  void startArray();
  void endArray();
  /// Hands the rest to the sink.
  void finish();

  /// The objects and arrays that are open.
  [[nodiscard]] std::size_t depth() const { return depth_; }

 private:
  class Buffer;

  void start(char bracket);
  void end(char bracket);
  void write(std::string_view ready);
  void startValue();
  void startLine();

  std::unique_ptr<Buffer> buffer_;
  Layout layout_;
  std::size_t depth_ = 0;
  bool isFirst_ = true;  // in the object or array, or in the whole text
  bool isBehindKey_ = false;
};

}  // namespace platform
