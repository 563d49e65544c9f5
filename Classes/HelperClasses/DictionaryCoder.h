#pragma once

#include "Foundation/Coding/JSON.h"
#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <utility>

namespace velloro {

/// Values (Foundation/Coding/Coding.h) as dictionaries keyed by texts, the way their JSON says it.
///
///     DictionaryEncoder{}.encode(DateInterval{.duration = 90}).at("duration").integer();    // 90
///     DictionaryEncoder{}.encode(5);    // throws DictionaryEncoder::Error
///
/// Dates come out in the coder's form, bytes in Base64, keys as they are; a number that is not
/// finite is an error.
struct DictionaryEncoder {
  using Dictionary = PropertyList::Dictionary;

  class Error : public platform::Error {
   public:
    enum class Reason {
      castError,  ///< The value's JSON is no dictionary.
    };
    explicit Error(Reason reason);
  };

  DateForm dateForm = DateForm::secondsSinceReferenceDate;

  /// \throws Error, EncodingError
  template <typename T>
  [[nodiscard]] Dictionary encode(const T& value) const {
    PropertyList list = toPropertyList(value, {.dateForm = dateForm});
    if (auto* dictionary = list.dictionary()) return std::move(*dictionary);
    throw Error(Error::Reason::castError);
  }
};

/// The reverse, where the date form is the encoder's.
///
///     DictionaryDecoder{}.decode<DateInterval>({{"start", 0}, {"duration", 90}}).duration;  // 90
struct DictionaryDecoder {
  using Dictionary = PropertyList::Dictionary;

  DateForm dateForm = DateForm::secondsSinceReferenceDate;
  /// See `JSONDecoder`.
  const std::function<void(const DecodingError&)>* didLeaveOut = nullptr;

  /// \throws DecodingError
  template <typename T>
  [[nodiscard]] T decode(const Dictionary& dictionary) const {
    return fromPropertyList<T>(dictionary, {.dateForm = dateForm, .didLeaveOut = didLeaveOut});
  }
};

}  // namespace velloro
