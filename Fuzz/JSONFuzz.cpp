#include "Fuzz.h"
#include "Support/CodingRecords.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

using namespace platform;

/// Whatever could be read is written, and reads as the same again.
template <typename Read, typename Write>
void checkRoundTrip(std::string_view json, Read read, Write write) {
  try {
    const auto value = read(json);
    const std::string written = write(value);
    const auto again = read(written);
    if (again != value || write(again) != written) std::abort();
  } catch (const DecodingError& error) {
    if (error.localizedDescription().empty()) std::abort();
  }
}

template <typename T>
void checkCoding(std::string_view json) {
  checkRoundTrip(
      json, [](std::string_view text) { return JSONDecoder{}.decode<T>(text); },
      [](const T& value) { return JSONEncoder{}.encode(value); });
}

constexpr std::string_view record =
    R"({"integer":-9223372036854775808,"large":9,"small":-128,"text":"\n",)"
    R"("origin":{"fromShortcut":{}},"date":731462399,"zone":{"identifier":"GMT+01"},)"
    R"("id":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","data":"AP8=","info":{"a":2.5,"b":[1,null]},)"
    R"("time":86399,"streak":{"current":3,"best":9},"changes":[{"quantity":{"_0":1.5}},)"
    R"({"both":{"_0":2,"_1":3}},{"moved":{"to":7,"mood":"g"}},{"none":{}}],"flags":[true],)"
    R"("tags":[["tag","a"]],"days":[1],"moods":["b","g"],"notes":{"x":null},)"
    R"("numbers":{"-9":0.5},"streaks":[9,{"current":0,"best":0}],"names":[0,"S"],"rows":[[null]]})";

constexpr std::array<std::string_view, 6> seeds = {
    record,
    R"({"day":1,"place":{"date":{"_0":5}},"lines":["a","\u00e4\ud83c\udfc6"]})",
    R"([{"$data":"AAAA"},{"$date":5.5},{"$$date":1,"$":2},-0.0,1e300,true,false])",
    R"([[[[[{"a":{"b":{"c":[[]]}}}]]]]])",
    "\xEF\xBB\xBF \t\r\n\"\\u0000\\\\\\\"\\/\\b\\f\"",
    "[9223372036854775807,-9223372036854775808,18446744073709551615,0.1,1e-320]",
};

}  // namespace

std::span<const std::string_view> fuzzSeeds() {
  return seeds;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view json(reinterpret_cast<const char*>(bytes), size);
  // An empty innermost array may be read one level deeper than anything is written.
  const auto opens = std::ranges::count_if(json, [](char c) { return c == '[' || c == '{'; });
  if (opens > static_cast<std::ptrdiff_t>(maximumJSONDepth)) return 0;
  checkCoding<PropertyList>(json);
  checkCoding<Everything>(json);
  checkCoding<Note>(json);
  checkRoundTrip(json, PropertyList::fromFileText, std::mem_fn(&PropertyList::fileText));
  return 0;
}
