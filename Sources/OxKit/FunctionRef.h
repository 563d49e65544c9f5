#pragma once

#include <concepts>
#include <memory>
#include <type_traits>
#include <utility>

namespace velloro {

template <typename Signature>
class FunctionRef;

/// A function for the length of one call: it refers to what it was made of, and allocates nothing.
/// To be used for parameters alone, since what it refers to is mostly gone after the statement.
///
///     int sum(FunctionRef<int(int)> f) { return f(1) + f(2); }
///     sum([](int n) { return n * 10; });    // 30
template <typename Result, typename... Arguments>
class FunctionRef<Result(Arguments...)> {
 public:
  template <typename F>
  requires(!std::same_as<std::remove_cvref_t<F>, FunctionRef> &&
           std::is_invocable_r_v<Result, F&, Arguments...>) FunctionRef(F&& function)
      : target_(const_cast<void*>(static_cast<const void*>(std::addressof(function)))),
        call_([](void* target, Arguments... arguments) -> Result {
          return (*static_cast<std::remove_reference_t<F>*>(target))(
              std::forward<Arguments>(arguments)...);
        }) {}

  Result operator()(Arguments... arguments) const {
    return call_(target_, std::forward<Arguments>(arguments)...);
  }

 private:
  void* target_;
  Result (*call_)(void*, Arguments...);
};

}  // namespace velloro
