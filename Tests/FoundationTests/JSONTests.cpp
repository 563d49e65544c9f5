#include "Foundation/Coding/JSON.h"
#include "Foundation/Values/Hasher.h"
#include "Support/CodingRecords.h"

#include <cmath>
#include <functional>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Kind = DecodingError::Kind;
using Layout = JSONWriter::Layout;

TEST(JSON, DoesAsTheExampleSays) {
  const Note note{Day{20240307}, Place{Place::Pinned{}}, Mood::good, {"a"}};
  const std::string json = JSONEncoder{}.encode(note);
  EXPECT_EQ(json, R"({"day":20240307,"place":{"pinned":{}},"mood":"g","lines":["a"]})");
  EXPECT_EQ(JSONDecoder{}.decode<Note>(json), note);
  const std::unordered_set<Note> notes{note};
  EXPECT_TRUE(notes.contains(note));
}

Everything fullRecord() {
  Everything full;
  full.integer = std::numeric_limits<std::int64_t>::min();
  full.large = std::numeric_limits<std::int64_t>::max();
  full.small = -128;
  full.text = "\"quoted\" \\ \n \x7F \xC3\xA4 and more than one word of 8 bytes";
  full.origin = Origin::shortcut;
  full.date = Date::fromISO8601("2024-03-07T01:59:59Z").value();
  full.zone = TimeZone::fromIdentifier("Asia/Kathmandu").value();
  full.id = UUID::fromString("1B4E28BA-2FA1-11D2-883F-0016D3CCA427").value();
  full.data = Data(std::string("\0\xFF", 2));
  full.info = PropertyList::Dictionary{{"b", PropertyList::Array{1, nullptr}}, {"a", 2.5}};
  full.time = Time{86399};
  full.streak = Streak{3, 9};
  const Note note{Day{5}, Place{Day{20240307}}, Mood::bad, {"", "x"}};
  full.changes = {Change::of<0>(1.5),
                  Change::of<1>(60.0),
                  Change::of<2>(Change::Both{2, 3}),
                  Change::of<2>(Change::Both{2, std::nullopt}),
                  Change::of<3>(Day{7}, Mood::good),
                  Change::of<4>(note),
                  Change::of<5>()};
  full.flags = {true, false};
  full.tags = {Tag("a"), Tag("")};
  full.days = {Day{3}, Day{1}};
  full.moods = {Mood::bad, Mood::good};
  full.notes = {{"", note}, {"none", std::nullopt}};
  full.numbers = {{10, 1}, {-9, 0.1}, {9, 2}, {std::numeric_limits<std::int64_t>::max(), 0}};
  full.streaks = {{Day{20240307}, {1, 2}}, {Day{9}, {}}};
  full.names = {{Weekday::monday, "M"}, {Weekday::sunday, "S"}};
  full.tag = Tag("b");
  full.rows = {{}, {1, std::nullopt}};
  return full;
}

TEST(JSON, EveryMemberSurvives) {
  const Everything records[] = {fullRecord(), Everything{}};
  const JSONEncoder encoders[] = {
      {}, {.dateForm = DateForm::iso8601, .layout = Layout::pretty}, {.sortsKeys = true}};
  for (const Everything& record : records) {
    for (const JSONEncoder& encoder : encoders) {
      const JSONDecoder decoder{.dateForm = encoder.dateForm};
      const std::string json = encoder.encode(record);
      const auto back = decoder.decode<Everything>(json);
      EXPECT_EQ(back, record) << json;
      EXPECT_EQ(encoder.encode(back), json);
      EXPECT_EQ(hashValue(back), hashValue(record));
      EXPECT_EQ(fromPropertyList<Everything>(toPropertyList(record, encoder), decoder), record);
    }
  }
  EXPECT_NE(hashValue(records[0]), hashValue(records[1]));
}

/// What a strict decoder reads `json` as, written again; or the description of the error.
template <typename T>
std::string readAndWritten(std::string_view json) {
  try {
    return JSONEncoder{.dateForm = DateForm::iso8601}.encode(
        JSONDecoder{.dateForm = DateForm::iso8601, .isStrict = true}.decode<T>(json));
  } catch (const DecodingError& error) {
    return error.localizedDescription();
  }
}

using ReadCase = std::tuple<std::string (*)(std::string_view), const char*, const char*>;

void check(std::initializer_list<ReadCase> cases) {
  for (const auto& [read, json, result] : cases) EXPECT_EQ(read(json), result) << json;
}

TEST(JSON, ReadsNumbersOnlyWhereTheyFit) {
  const auto integer = readAndWritten<std::int64_t>;
  const auto byte = readAndWritten<std::uint8_t>;
  const auto large = readAndWritten<std::uint64_t>;
  const auto real = readAndWritten<double>;
  check({
      {integer, "-0.0", "0"},
      {integer, "9223372036854775807", "9223372036854775807"},
      {integer, "-9223372036854775808", "-9223372036854775808"},
      {integer, "-9.223372036854775808e18", "-9223372036854775808"},
      {integer, "3.5", "Expected an integer of 64 bits, found the number 3.5."},
      {integer, "1e300", "Expected an integer of 64 bits, found the number 1e+300."},
      {integer, "9223372036854775808",
       "Expected an integer of 64 bits, found the number 9223372036854775808."},
      {integer, R"("3")", "Expected an integer, found the text \"3\"."},
      {byte, "255", "255"},
      {byte, "256", "Expected an integer from 0 to 255, found the number 256."},
      {byte, "-1", "Expected an integer from 0 to 255, found the number -1."},
      {large, "18446744073709551615", "18446744073709551615"},
      {real, "5.0", "5"},
      {real, "0.1", "0.1"},
      {real, "-0.0", "-0.0"},
      {real, "1e20", "1e+20"},
      {real, "18446744073709551615", "1.8446744073709552e+19"},
      {integer, "-123456789012345678901",
       "Expected an integer of 64 bits, found the number -123456789012345683968."},
      {real, "123456789012345678901", "1.2345678901234568e+20"},
      {real, "-1.7976931348623157e308", "-1.7976931348623157e+308"},
      {real, "-1e999", "Expected a number, found a number beyond the range of a double."},
      {real, "1e-999", "0"},
      {real, "true", "Expected a number, found true."},
      {readAndWritten<bool>, "1", "Expected true or false, found the number 1."},
  });
}

TEST(JSON, WhatIsMissingReadsAsTheListSays) {
  const auto note = readAndWritten<Note>;
  const auto streak = readAndWritten<Streak>;
  check({
      {note, R"({"day":1,"place":{"pinned":{}}})", R"({"day":1,"place":{"pinned":{}},"lines":[]})"},
      {note, R"({"x":{"day":7},"lines":null,"mood":null,"place":{"pinned":{}},"day":1,"y":[]})",
       R"({"day":1,"place":{"pinned":{}},"lines":[]})"},
      {note, R"({"day":1,"place":{"pinned":{}},"mood":"g","lines":["a"],"day":2,"mood":null,
                 "lines":null})",
       R"({"day":2,"place":{"pinned":{}},"lines":[]})"},
      {streak, R"({"current":4})", R"({"current":4,"best":4})"},
      {streak, R"({"best":5,"current":4,"best":null})", R"({"current":4,"best":4})"},
      {readAndWritten<std::vector<Streak>>, R"([{"current":4,"best":5},{"current":1}])",
       R"([{"current":4,"best":5},{"current":1,"best":1}])"},
      {note, R"({"place":{"pinned":{}}})", "The key \"day\" is missing."},
      {note, R"({"day":-5,"place":{"pinned":{}}})", "day: Unable to create Day from -5"},
      {note, R"({"day":null,"place":{"pinned":{}}})", "day: Expected an integer, found null."},
      {note, "[]", "Expected an object, found an array."},
  });
}

TEST(JSON, VariantsHaveExactlyOneKey) {
  const auto change = readAndWritten<Change>;
  const auto origin = readAndWritten<Origin>;
  check({
      {change, R"({"quantity":{"_0":2}})", R"({"quantity":{"_0":2}})"},
      {change, R"({"duration":2})", R"({"duration":2})"},
      {change, R"({"both":{"_1":1,"_0":2}})", R"({"both":{"_0":2,"_1":1}})"},
      {change, R"({"both":{"_0":2,"_1":null}})", R"({"both":{"_0":2}})"},
      {change, R"({"moved":{"to":3,"mood":"b"}})", R"({"moved":{"to":3,"mood":"b"}})"},
      {change, R"({"none":{}})", R"({"none":{}})"},
      {change, "{}", "Invalid number of keys found, expected one."},
      {change, R"({"duration":2,"none":{}})", "Invalid number of keys found, expected one."},
      {change, R"({"nothing":{}})", "No case of Change is named \"nothing\"."},
      {change, R"({"both":{"_1":1}})", "both: The key \"_0\" is missing."},
      {change, R"({"moved":{"to":0,"mood":"b"}})", "moved.to: Unable to create Day from 0"},
      {change, R"("none")", "Expected an object, found the text \"none\"."},
      {origin, R"({"fromApp":{}})", R"({"fromApp":{}})"},
      {origin, R"({"app":{}})", "No case of Origin is named \"app\"."},
      {origin, R"({"fromApp":{},"fromShortcut":{}})",
       "Invalid number of keys found, expected one."},
      {readAndWritten<Mood>, R"("x")", "No case of Mood is the text \"x\"."},
      {readAndWritten<Weekday>, "3", "No case of Weekday is the number 3."},
  });
}

TEST(JSON, ContainersAndSingleValues) {
  const auto numbers = readAndWritten<std::unordered_map<std::int16_t, int>>;
  const auto names = readAndWritten<std::unordered_map<Weekday, std::string>>;
  const auto time = readAndWritten<Time>;
  check({
      {readAndWritten<std::unordered_set<int>>, "[3,1,2,1,10]", "[1,2,3,10]"},
      {numbers, R"({"10":1,"-9":2,"9":3,"10":4})", R"({"-9":2,"9":3,"10":4})"},
      {numbers, R"({"x":1})", "x: Expected an integer for a key, found \"x\"."},
      {numbers, R"({"40000":1})", "40000: Expected an integer for a key, found \"40000\"."},
      {names, R"([2,"t",0,"s"])", R"([0,"s",2,"t"])"},
      {names, "[2]", "The last key has no value."},
      {names, R"([2,"t",7,"s"])", "[2]: No case of Weekday is the number 7."},
      {time, "86399", "86399"},
      {time, R"({"h":1,"m":2})", "3720"},
      {time, "86400", "Expected an integer from 0 to 86399, found the number 86400."},
      {time, R"({"m":2})", "Expected an integer, found an object."},
      {readAndWritten<Data>, R"("AAA")", "Expected a text in Base64, found the text \"AAA\"."},
      {readAndWritten<UUID>, R"("1B4E")", "Expected a UUID, found the text \"1B4E\"."},
      {readAndWritten<TimeZone>, R"({"identifier":"GMT+0530"})", R"({"identifier":"GMT+0530"})"},
      {readAndWritten<TimeZone>, R"({"identifier":"Mars"})", "No time zone is named \"Mars\"."},
      {readAndWritten<Date>, R"("2024-03-07T01:59:59.75Z")", R"("2024-03-07T01:59:59Z")"},
      {readAndWritten<Date>, R"("2024-13-07")",
       "Expected a date in ISO 8601, found the text \"2024-13-07\"."},
      {readAndWritten<Date>, "731462399", "Expected a text, found the number 731462399."},
  });
}

TEST(JSON, AnErrorShowsFourKilobytesOfAnInputAtMost) {
  const auto told = [](const std::string& name) {
    return readAndWritten<TimeZone>(R"({"identifier":")" + name + "\"}");
  };
  const std::string whole(4096, 'x');
  EXPECT_EQ(told(whole), "No time zone is named \"" + whole + "\".");
  const std::string cut = whole.substr(0, 4095) + "é" + whole;
  EXPECT_EQ(told(cut),
            "No time zone is named \"" + whole.substr(0, 4095) + "… (4095 of 8193 bytes)\".");
  EXPECT_LT(readAndWritten<Mood>('"' + cut + '"').size(), 4200U);
  const std::string underLongKey = R"({")" + cut + R"(":1})";
  EXPECT_LT((readAndWritten<std::unordered_map<std::string, std::string>>(underLongKey).size()),
            4200U);
  EXPECT_LT((readAndWritten<std::unordered_map<int, int>>(underLongKey).size()), 8400U);
}

TEST(JSON, ErrorsTellTheirKindAndPath) {
  const std::tuple<const char*, const char*, Kind, const char*> cases[] = {
      {"changes", R"([{"none":{}},{"note":{"day":1}}])", Kind::keyNotFound, "changes[1].note"},
      {"changes", R"([{"note":{"day":1,"place":{"date":{"_0":-5}}}}])", Kind::dataCorrupted,
       "changes[0].note.place.date._0"},
      {"notes", R"({"a b":{"day":1,"place":{"pinned":{}},"lines":["a",5]}})", Kind::typeMismatch,
       "notes.a b.lines[1]"},
      {"numbers", R"({"12":"x"})", Kind::typeMismatch, "numbers.12"},
      {"streaks", R"([20240307,{"current":null}])", Kind::valueNotFound, "streaks[1].current"},
      {"rows", "[[1],[2,[]]]", Kind::typeMismatch, "rows[1][1]"},
      {"tag", R"(["a"])", Kind::dataCorrupted, "tag"},
      {"zone", R"({"id":1})", Kind::keyNotFound, "zone"}};
  for (const auto& [key, value, kind, path] : cases) {
    PropertyList record = toPropertyList(fullRecord());
    (*record.dictionary())[key] = PropertyList::fromJSON(value);
    try {
      (void)fromPropertyList<Everything>(record, {.isStrict = true});
      ADD_FAILURE() << key << ": " << value;
    } catch (const DecodingError& error) {
      EXPECT_EQ(error.kind(), kind) << error.what();
      EXPECT_EQ(error.codingPath(), path) << error.what();
    }
  }
}

/// Each value in turn takes the place of what a whole record has under the key.
TEST(JSON, WhatCannotBeMadeOutSpoilsAsLittleAsItCan) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"tag", R"(["a"])", "null"},
      {"rows", "[[1,99999999999,null],[2]]", "[[1,null],[2]]"},
      {"moods", R"(["b","?",5,null,"g"])", R"(["g","b"])"},
      {"days", "[3,-5,1e999,1]", "[1,3]"},
      {"names", R"([7,"x",0,"S"])", R"([0,"S"])"},
      {"numbers", R"({"1":-1e999,"x":1,"2":12345678901234567890123})",
       R"({"2":1.2345678901234568e22})"},
      {"streaks", R"([9,{"current":null},0,{"current":1},5,{"current":1,"best":1e999}])",
       R"([5,{"current":1,"best":1}])"},
      {"notes", R"({"x":{"day":1,"place":{"date":{"_0":-5}}},
                    "y":{"day":1,"place":{"pinned":{}},"mood":"?","lines":["a"],"z":1e999}})",
       R"({"y":{"day":1,"place":{"pinned":{}},"lines":["a"]}})"},
      {"info", "[1e999,12345678901234567890123]", "[null,1.2345678901234568e22]"},
      // What nothing can stand in for, another type, a missing key and the tag of a variant.
      {"zone", R"({"identifier":"Mars"})", "zone"},
      {"integer", "1e999", "integer"},
      {"moods", "5", "moods"},
      {"flags", "[true,5]", "flags[1]"},
      {"notes", R"({"x":{"place":{"pinned":{}}}})", "notes.x"},
      {"changes", R"([{"?":{}}])", "changes[0]"},
      {"changes", R"([{"none":{},"quantity":1}])", "changes[0]"}};
  for (const auto& [key, value, result] : cases) {
    PropertyList record = toPropertyList(fullRecord());
    (*record.dictionary())[key] = "here";
    std::string json = record.json();
    json.replace(json.find(R"("here")"), 6, value);
    (*record.dictionary()).erase(key);
    try {
      PropertyList read = toPropertyList(JSONDecoder{}.decode<Everything>(json));
      EXPECT_EQ(read[key], PropertyList::fromJSON(result)) << key << ": " << read[key].json();
      read.dictionary()->erase(key);
      EXPECT_EQ(read, record) << key;
    } catch (const DecodingError& error) {
      EXPECT_EQ(error.codingPath(), result) << error.what();
    }
  }
}

TEST(JSON, RefusesWhatIsNoJSON) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "is empty"},
      {" \n", "is empty"},
      {"[1,", "at byte 3"},
      {"nul", "at byte 3"},
      {"01", "at byte 1, \"1\""},
      {"\"\xC3\"", "UTF-8"},
      {"\"a\nb\"", "at byte 2"},
      {R"(["a", "\ud800"])", R"(at byte 7, "\ud800"]")"},
      {R"(["\"1e999", 1e999, 1.e999])", "at byte 21"},
      {std::string(600, '[') + std::string(600, ']'), "512 levels"},
      {std::string(5000, '['), "at byte 5000"},
      {std::string("[\0]", 3), "at byte 1"},
      {"[" + std::string(100, 'x'), "at byte 1"}};
  for (const auto& [json, place] : cases) {
    try {
      (void)JSONDecoder{}.decode<PropertyList>(json);
      ADD_FAILURE() << json;
    } catch (const DecodingError& error) {
      EXPECT_EQ(error.kind(), Kind::dataCorrupted);
      EXPECT_TRUE(error.localizedDescription().contains(place)) << error.what();
      EXPECT_LT(error.localizedDescription().size(), 250U);
      // The description can itself be stored.
      EXPECT_NO_THROW((void)JSONEncoder{}.encode(error.localizedDescription()));
    }
  }
  EXPECT_EQ(JSONDecoder{}.decode<int>("\xEF\xBB\xBF 7"), 7);
}

TEST(JSON, RefusesToWriteWhatCannotBeRead) {
  const std::pair<void (*)(Everything&), const char*> cases[] = {
      {[](Everything& record) { record.numbers[12] = std::nan(""); }, "numbers.12"},
      {[](Everything& record) { record.changes[1] = Change::of<0>(-INFINITY); },
       "changes[1].quantity._0"},
      {[](Everything& record) { record.text = "\xFF"; }, "text"},
      {[](Everything& record) { record.notes["\xC3"]; }, "notes"},
      {[](Everything& record) { record.date = Date::since1970(253402300800); }, "date"},
      {[](Everything& record) { record.date = Date::since1970(-62167219201); }, "date"}};
  for (const auto& [spoil, path] : cases) {
    Everything record = fullRecord();
    spoil(record);
    try {
      (void)JSONEncoder{.dateForm = DateForm::iso8601}.encode(record);
      ADD_FAILURE() << path;
    } catch (const EncodingError& error) {
      EXPECT_EQ(error.codingPath(), path) << error.what();
    }
  }
}

TEST(JSON, SortsTheKeysOfEveryObject) {
  const PropertyList list = PropertyList::fromJSON(R"({"b":[{"z":1,"a":-0.0}],"B":null})");
  const JSONEncoder encoder{.layout = Layout::pretty, .sortsKeys = true};
  EXPECT_EQ(encoder.encode(Streak{1, 2}), "{\n  \"best\": 2,\n  \"current\": 1\n}");
  EXPECT_EQ(JSONEncoder{.sortsKeys = true}.encode(list), list.json());
  EXPECT_EQ(JSONEncoder{}.encode(std::string_view()), "\"\"");
}

TEST(JSON, HandsLongTextsOnInPieces) {
  std::vector<std::string> lines{std::string(700000, 'a'), std::string(300000, '"'), "\xC3\xA4"};
  for (int i = 0; i < 50000; ++i) lines.push_back(std::to_string(i));
  std::string json;
  JSONEncoder{}.encode(lines, [&](std::string_view piece) {
    EXPECT_LE(piece.size(), 256U * 1024);
    json += piece;
  });
  EXPECT_EQ(JSONDecoder{}.decode<std::vector<std::string>>(json), lines);
  json.reserve(json.size() + JSONDocument::readAhead);
  EXPECT_EQ(JSONDecoder{}.decode<std::vector<std::string>>(json), lines);
}

/// Holds JSON in a text, so that reading one document needs another.
struct Envelope {
  std::vector<Envelope> inside;
  bool operator==(const Envelope&) const = default;
  void encode(Encoder& to) const { to.text(JSONEncoder{}.encode(inside)); }
  static Envelope decode(const Decoder& from) {
    return {JSONDecoder{}.decode<std::vector<Envelope>>(from.text())};
  }
};

TEST(JSON, DocumentsCanBeReadWhileOthersAre) {
  const Envelope envelope{{{{{}, {{{}}}}}, {}, {{{}}}}};
  EXPECT_EQ(JSONDecoder{}.decode<Envelope>(JSONEncoder{}.encode(envelope)), envelope);
}

TEST(Hasher, TellsValuesApart) {
  const std::string one = "a", two = "bc", joined = "ab", rest = "c";
  EXPECT_NE(hashValue(std::pair(one, two)), hashValue(std::pair(joined, rest)));
  EXPECT_NE(hashValue(std::optional<int>()), hashValue(std::optional<int>(0)));
  EXPECT_NE(hashValue(std::vector<int>{0}), hashValue(std::vector<int>{0, 0}));
  EXPECT_NE(hashValue(Change::of<0>(1.0)), hashValue(Change::of<1>(1.0)));
  EXPECT_NE(hashValue(std::unordered_set<int>{1, 2}), hashValue(std::unordered_set<int>{0, 3}));
  EXPECT_EQ(hashValue(0.0), hashValue(-0.0));
  EXPECT_EQ(hashValue(std::string("zone")), hashValue("zone"));
  // Stored and sent to other machines: never to change.
  const Note note{Day{20240307}, Place{Place::Pinned{}}, Mood::good, {"a longer line"}};
  EXPECT_EQ(hashValue(note), 16329863284706351574U);
}

}  // namespace
}  // namespace platform
