#pragma once

#include "Foundation/Values/Geometry.h"
#include "OxKit/Platform.h"

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velloro {

/// Names what is cached by all that it depends on. Two keys are the same when their texts are: the
/// order of the parts counts.
///
///     DataCacheKey key("chart");
///     key.add(7, "days");
///     key.text();          // "chart,days=7"
///     key.nsCacheKey();    // the number under which it is kept, in memory and on the disk
class DataCacheKey {
 public:
  using Part = std::pair<std::string, std::string>;  ///< A key and its value.

  explicit DataCacheKey(std::string_view identifier) : identifier_(identifier) {}
  virtual ~DataCacheKey() = default;
  DataCacheKey(const DataCacheKey&) = default;
  DataCacheKey& operator=(const DataCacheKey&) = default;

  /// A text, or a URL's.
  void add(std::string_view value, std::string_view key);
  void add(std::integral auto value, std::string_view key) { add(std::to_string(value), key); }
  /// As whole points: "100x50". A size that this rounds takes a further part, "exact".
  void add(CGSize value, std::string_view key);
  /// As the other key's text.
  void add(const DataCacheKey& value, std::string_view key);

  [[nodiscard]] const std::string& identifier() const { return identifier_; }
  [[nodiscard]] const std::vector<Part>& parts() const { return parts_; }

  /// All of it in one line.
  [[nodiscard]] virtual std::string text() const;
  [[nodiscard]] std::uint64_t nsCacheKey() const;
  [[nodiscard]] virtual std::string debugDescription() const;

 private:
  std::string identifier_;
  std::vector<Part> parts_;
};

/// The key of an image: at another size or scale it is another image.
///
///     ImageCacheKey("ring", {100, 50}, 2).text();    // "100x50@2x,ring"
///     ImageCacheKey("ring", {40.5, 50}, 2).text();   // "40x50@2x,ring,exact=40.5x50@2"
class ImageCacheKey : public DataCacheKey {
 public:
  ImageCacheKey(std::string_view identifier, CGSize size, double scale)
      : DataCacheKey(identifier), size_(size), scale_(scale) {}
  ImageCacheKey(std::string_view identifier, double scale)
      : DataCacheKey(identifier), scale_(scale) {}

  [[nodiscard]] const std::optional<CGSize>& size() const { return size_; }  ///< In points.
  [[nodiscard]] double scale() const { return scale_; }                      ///< Pixels per point.

  [[nodiscard]] std::string text() const override;
  [[nodiscard]] std::string debugDescription() const override;

 private:
  std::optional<CGSize> size_;
  double scale_;
};

}  // namespace velloro
