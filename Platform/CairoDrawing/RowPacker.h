#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// Appends the rows of a picture, four bytes a pixel behind one byte for the filter, as a zlib
/// stream (RFC 1950 and 1951). Drawn pictures repeat themselves in a few places, and only these are
/// looked at: the pixel to the left, the one above, and the one to the right of that, which a
/// gradient down a slope repeats. That takes a sixth of the time of a general search.
///
/// False, with nothing appended, where less than three quarters is saved, as in a photograph.
bool appendPackedRows(std::string& file, std::string_view rows, std::size_t rowBytes);

}  // namespace platform
