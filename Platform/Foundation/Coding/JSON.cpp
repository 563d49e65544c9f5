#include "Foundation/Coding/JSON.h"

#include <map>

namespace platform {
namespace {

/// A value of a document to be written again, with each object's keys in order.
struct Sorted {
  const Decoder& place;

  void encode(Encoder& to) const {
    switch (place.kind()) {
      case Decoder::Kind::null:
        return to.null();
      case Decoder::Kind::boolean:
        return to.boolean(place.boolean());
      case Decoder::Kind::integer:
        return to.integer(place.integer());
      case Decoder::Kind::unsignedInteger:
        return to.unsignedInteger(place.unsignedInteger());
      case Decoder::Kind::real:
        return to.real(place.real());
      case Decoder::Kind::text:
        return to.text(place.text());
      case Decoder::Kind::array:
        return encodeArray(to);
      case Decoder::Kind::object:
        return encodeObject(to);
    }
  }

 private:
  void encodeArray(Encoder& to) const {
    to.array([&](ArrayEncoder& array) {
      place.forEachElement([&](const Decoder& element) { array.encode(Sorted{element}); });
    });
  }

  void encodeObject(Encoder& to) const {
    std::map<std::string_view, Decoder> fields;
    place.forEachField(
        [&](std::string_view key, const Decoder& value) { fields.insert_or_assign(key, value); });
    to.object([&](ObjectEncoder& object) {
      for (const auto& [key, value] : fields) object.encode(key, Sorted{value});
    });
  }
};

}  // namespace

void JSONEncoder::run(const Write& write, const JSONWriter::Sink& sink) const {
  if (sortsKeys) return runSorted(write, sink);
  JSONWriter writer(sink, layout);
  Encoder encoder(writer, dateForm);
  write(encoder);
  writer.finish();
}

void JSONEncoder::runSorted(const Write& write, const JSONWriter::Sink& sink) const {
  std::string unsorted;
  JSONEncoder{.dateForm = dateForm}.run(write, [&](std::string_view piece) { unsorted += piece; });
  const JSONDocument document(unsorted);
  const DecodingRules rules{.dateForm = dateForm};
  const Decoder root(document.root(), rules);
  JSONEncoder{.layout = layout}.encode(Sorted{root}, sink);
}

}  // namespace platform
