#pragma once

#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/Error.h"

namespace platform {

/// Why an operation of the object store failed. The store is then unchanged: nothing is half done,
/// a context keeps its unsaved changes, and the process can continue.
///
///     const auto found = context->fetch(NSFetchRequest("Shelf"));
///     found.error()->localizedDescription();
///         // "the model has no entity \"Shelf\""
class StoreError : public Error {
 public:
  enum class Kind {
    notADatabase,  ///< The file is something else, or damaged.
    readOnly,      ///< The file or its folder can't be written.
    diskFull,
    conflict,        ///< Another has saved the same object, and the merge policy is `error`.
    invalidRequest,  ///< An unknown entity or key, or a form that can't be read.
    notOpen,         ///< The container has no store.
    cannotOpen,
    busy,          ///< Another writer went on for longer than the timeout.
    incompatible,  ///< A newer layout, or a schema that wants completing where that is not allowed.
    failed,        ///< Anything else; the text has SQLite's own words.
  };
  static constexpr const char* errorDomain = "NSCocoaErrorDomain";

  StoreError(Kind kind, std::string description);

  [[nodiscard]] Kind kind() const { return kind_; }
  /// Whether an error is one of the store, of that kind.
  [[nodiscard]] static bool is(const Error& error, Kind kind);

 private:
  Kind kind_;
};

/// The raw values are the error codes.
constexpr auto rawValues(std::type_identity<StoreError::Kind>) {
  using enum StoreError::Kind;
  return rawIntegers<StoreError::Kind>({{notADatabase, 259},
                                        {readOnly, 513},
                                        {diskFull, 640},
                                        {conflict, 133020},
                                        {invalidRequest, 134060},
                                        {notOpen, 134070},
                                        {cannotOpen, 134080},
                                        {busy, 134090},
                                        {incompatible, 134100},
                                        {failed, 134180}});
}

}  // namespace platform
