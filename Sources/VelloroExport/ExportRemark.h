#pragma once

#include <string>

namespace velloro {

/// Something that another program's file can't hold, and what was done about it.
struct ExportRemark {
  std::string what, why;

  bool operator==(const ExportRemark&) const = default;
};

}  // namespace velloro
