#pragma once

#include "Foundation/Values/Geometry.h"

#include <memory>
#include <string>

namespace platform {

class CGImage;

/// An image that stands in a line of text. What it shows is known by its name, so that texts can be
/// compared without drawing them.
class NSTextAttachment {
 public:
  NSTextAttachment(std::string name, CGSize size, double descent = 0)
      : name_(std::move(name)), size_(size), descent_(descent) {}
  virtual ~NSTextAttachment() = default;
  NSTextAttachment(const NSTextAttachment&) = delete;
  NSTextAttachment& operator=(const NSTextAttachment&) = delete;

  /// Says all that the image depends on but its size.
  [[nodiscard]] const std::string& name() const { return name_; }
  /// In points.
  [[nodiscard]] CGSize size() const { return size_; }
  /// How far the image reaches below the line on which it stands, in points.
  [[nodiscard]] double descent() const { return descent_; }
  /// The image at so many pixels per point; none where there is no artwork.
  [[nodiscard]] virtual std::shared_ptr<const CGImage> image(double scale) const = 0;

 private:
  std::string name_;
  CGSize size_;
  double descent_;
};

}  // namespace platform
