#include "HelperClasses/DictionaryCoder.h"

namespace velloro {

DictionaryEncoder::Error::Error(Reason reason)
    : platform::Error("velloro.DictionaryEncoder", static_cast<int>(reason),
                      "The value's JSON is no dictionary.") {}

}  // namespace velloro
