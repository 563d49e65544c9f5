#pragma once

namespace platform {

/// Frees what a library has made: `std::unique_ptr<cairo_t, Free<cairo_destroy>>`.
template <auto function>
struct Free {
  template <typename T>
  void operator()(T* object) const {
    function(object);
  }
};

}  // namespace platform
