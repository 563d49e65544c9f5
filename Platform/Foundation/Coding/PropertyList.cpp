#include "Foundation/Coding/PropertyList.h"

#include "Foundation/Coding/ExactInteger.h"
#include "Foundation/Coding/JSON.h"
#include "Foundation/Values/Hasher.h"

#include <cmath>

namespace platform {
namespace {

enum class Form { plain, file };

constexpr std::string_view dataTag = "$data";
constexpr std::string_view dateTag = "$date";

/// A property list to be written in one of the two forms.
struct Formed {
  const PropertyList& list;
  Form form;

  void encode(Encoder& to) const;

 private:
  void encode(const PropertyList::Dictionary& dictionary, Encoder& to) const;
  void encode(const Data& data, Encoder& to) const;
  void encode(Date date, Encoder& to) const;
};

void Formed::encode(Encoder& to) const {
  if (const auto boolean = list.boolean()) return to.boolean(*boolean);
  if (const auto integer = list.integer()) return to.integer(*integer);
  if (const auto real = list.real()) return to.real(*real);
  if (const auto* text = list.text()) return to.text(*text);
  if (const auto* data = list.data()) return encode(*data, to);
  if (const auto date = list.date()) return encode(*date, to);
  if (const auto* dictionary = list.dictionary()) return encode(*dictionary, to);
  if (const auto* array = list.array()) {
    return to.array([&](ArrayEncoder& elements) {
      for (const PropertyList& element : *array) elements.encode(Formed{element, form});
    });
  }
  to.null();
}

void Formed::encode(const PropertyList::Dictionary& dictionary, Encoder& to) const {
  to.object([&](ObjectEncoder& object) {
    for (const auto& [key, value] : dictionary) {
      if (form == Form::file && key.starts_with('$')) {
        object.encode("$" + key, Formed{value, form});
      } else {
        object.encode(key, Formed{value, form});
      }
    }
  });
}

void Formed::encode(const Data& data, Encoder& to) const {
  if (form == Form::plain) return to.encode(data);
  to.object([&](ObjectEncoder& object) { object.encode(dataTag, data); });
}

void Formed::encode(Date date, Encoder& to) const {
  if (form == Form::plain) return to.date(date);
  to.object([&](ObjectEncoder& object) { object.encode(dateTag, date); });
}

/// \param levels How many arrays and dictionaries may still lie in each other.
PropertyList decodeForm(const Decoder& from, Form form, std::size_t levels = maximumJSONDepth);

/// What {"$data": …} or {"$date": …} stands for; absent for any other object.
std::optional<PropertyList> taggedValue(const Decoder& from) {
  if (from.count() != 1) return std::nullopt;
  const auto [key, value] = from.onlyField();
  try {
    if (key == dataTag) return value.decode<Data>();
    if (key == dateTag) return value.decode<Date>();
  } catch (const DecodingError&) {
    // One slip of a person's hand must not make the whole file unreadable.
  }
  return std::nullopt;
}

PropertyList objectFrom(const Decoder& from, Form form, std::size_t levels) {
  if (form == Form::file) {
    if (auto tagged = taggedValue(from)) return std::move(*tagged);
  }
  PropertyList::Dictionary dictionary;
  from.forEachField([&](std::string_view key, const Decoder& value) {
    if (form == Form::file && key.starts_with("$$")) key.remove_prefix(1);
    dictionary.insert_or_assign(dictionary.end(), std::string(key),
                                decodeForm(value, form, levels));
  });
  return dictionary;
}

PropertyList arrayFrom(const Decoder& from, Form form, std::size_t levels) {
  PropertyList::Array array;
  array.reserve(from.count());
  from.forEachElement(
      [&](const Decoder& element) { array.push_back(decodeForm(element, form, levels)); });
  return array;
}

PropertyList decodeForm(const Decoder& from, Form form, std::size_t levels) {
  switch (from.kind()) {
    case Decoder::Kind::null:
      return {};
    case Decoder::Kind::boolean:
      return from.boolean();
    case Decoder::Kind::integer:
      return from.integer();
    case Decoder::Kind::unsignedInteger:
    case Decoder::Kind::real: {
      PropertyList number;
      (void)from.succeeds([&] { number = from.real(); });
      return number;
    }
    case Decoder::Kind::text:
      return from.text();
    case Decoder::Kind::object:
    case Decoder::Kind::array:
      break;
  }
  // What is read must be writable again.
  if (levels == 0) {
    throw from.dataCorrupted("The value nests deeper than " + std::to_string(maximumJSONDepth) +
                             " levels.");
  }
  const bool isObject = from.kind() == Decoder::Kind::object;
  return isObject ? objectFrom(from, form, levels - 1) : arrayFrom(from, form, levels - 1);
}

}  // namespace

PropertyList::PropertyList(double value) : value_(value) {
  const bool isNegativeZero = value == 0 && std::signbit(value);
  const auto integer = exactInteger(value);
  if (integer && !isNegativeZero) value_ = *integer;
}

std::optional<double> PropertyList::real() const {
  if (const auto whole = integer()) return static_cast<double>(*whole);
  return copy<double>();
}

const PropertyList& PropertyList::operator[](std::string_view key) const {
  static const PropertyList null;
  const Dictionary* entries = dictionary();
  if (entries == nullptr) return null;
  const auto found = entries->find(key);
  return found != entries->end() ? found->second : null;
}

std::string PropertyList::json() const {
  return JSONEncoder{}.encode(*this);
}

PropertyList PropertyList::fromJSON(std::string_view json) {
  return JSONDecoder{}.decode<PropertyList>(json);
}

std::string PropertyList::fileText() const {
  return JSONEncoder{.layout = JSONWriter::Layout::pretty}.encode(Formed{*this, Form::file});
}

PropertyList PropertyList::fromFileText(std::string_view text) {
  const JSONDocument document(text);
  return decodeForm(Decoder(document.root(), plainDecodingRules), Form::file);
}

void PropertyList::hash(Hasher& hasher) const {
  hasher.combine(value_);
}

void PropertyList::encode(Encoder& to) const {
  Formed{*this, Form::plain}.encode(to);
}

PropertyList PropertyList::decode(const Decoder& from) {
  return decodeForm(from, Form::plain);
}

}  // namespace platform
