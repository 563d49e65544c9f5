#include "VelloroImport/LoopReader.h"

#include "Archive/ZipReader.h"
#include "Foundation/Text/String.h"
#include "Foundation/Values/Try.h"
#include "SQLite/Sqlite.h"
#include "VelloroBackup/CSVError.h"
#include "VelloroBackup/CSVReader.h"
#include "VelloroImport/LoopHabit.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <set>
#include <utility>

namespace velloro {
namespace {

constexpr std::string_view program = "loop";
constexpr std::int64_t mostDays = 3660;

auto refused(const std::string& why) {
  return failure<Error>("velloro.import", 1, why);
}

/// The cells of a row by the headers of their columns.
class Row {
 public:
  Row(const CSVReader& reader) : reader_(reader) {}

  /// Empty where none of the columns is there.
  [[nodiscard]] std::string text(std::initializer_list<std::string_view> columns) const {
    for (const std::string_view column : columns) {
      const auto at = std::ranges::find(reader_.headers(), column) - reader_.headers().begin();
      const auto place = static_cast<std::size_t>(at);
      if (place < reader_.fields().size()) return std::string(reader_.fields()[place].text);
    }
    return "";
  }
  [[nodiscard]] std::optional<std::int64_t> number(std::initializer_list<std::string_view> columns,
                                                   std::int64_t most) const {
    return numberIn<std::int64_t>(text(columns), most);
  }

 private:
  const CSVReader& reader_;
};

std::optional<OxCodableColor> colorIn(std::string_view text) {
  std::uint32_t rgb = 0;
  if (text.size() != 7 || text.front() != '#') return std::nullopt;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + 7, rgb, 16);
  if (error != std::errc() || end != text.data() + 7) return std::nullopt;
  const auto part = [&](int shift) { return static_cast<double>(rgb >> shift & 0xFF) / 255; };
  return OxCodableColor{.r = part(16), .g = part(8), .b = part(0), .a = 1};
}

/// A word, or a number that may be below zero.
std::optional<std::int64_t> valueIn(std::string_view text) {
  constexpr std::pair<std::string_view, std::int64_t> words[] = {
      {"UNKNOWN", LoopHabit::unknown},
      {"NO", LoopHabit::no},
      {"YES_AUTO", LoopHabit::yesByItself},
      {"YES_MANUAL", LoopHabit::yes},
      {"SKIP", LoopHabit::skip}};
  for (const auto& [word, value] : words) {
    if (text == word) return value;
  }
  if (text == "-1") return LoopHabit::unknown;
  return numberIn(text, std::numeric_limits<std::int64_t>::max());
}

/// Tables of this program end their lines as any program does.
std::string withBareLineFeeds(std::string text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') plain += text[i];
  }
  return plain;
}

class TableReader {
 public:
  TableReader(const LoopFiles& files, const TimeZone& zone, Date now)
      : files_(files), builder_(program, zone, now) {}

  Result<ImportedBackup> read() && {
    const auto habits = files_.find("Habits.csv");
    if (habits == files_.end()) return refused("The archive has no Habits.csv.");
    try {
      readHabits(withBareLineFeeds(habits->second));
    } catch (const CSVError& error) {
      return refused("Habits.csv: " + std::string(error.localizedDescription()));
    }
    return std::move(builder_).finish();
  }

 private:
  void readHabits(const std::string& table) {
    CSVReader reader(table);
    std::int64_t position = 0;
    std::set<std::string> names;
    while (reader.next()) {
      const Row row(reader);
      auto habit = habitOf(row);
      const std::int64_t place = row.number({"Position"}, 1'000'000).value_or(++position);
      position = place;
      if (!habit) continue;
      habit->key = habit->name;
      for (int n = 2; !names.insert(habit->key).second; ++n) {
        habit->key = habit->name + " " + std::to_string(n);
      }
      readMarks(place, *habit);
      addLoopHabit(*habit, builder_);
    }
  }

  std::optional<LoopHabit> habitOf(const Row& row) {
    LoopHabit habit{.key = "", .name = row.text({"Name"})};
    if (habit.name.empty()) {
      builder_.decide("Habits.csv", "a habit without a name is left out");
      return std::nullopt;
    }
    habit.question = row.text({"Question"});
    habit.description = row.text({"Description"});
    habit.unit = row.text({"Unit"});
    habit.isArchived = row.text({"Archived?"}) == "true";
    habit.isNumerical = row.text({"Type"}) == "NUMERICAL";
    habit.isAtMost = row.text({"Target Type"}) == "AT_MOST";
    habit.color = colorIn(row.text({"Color"}));
    const auto count = row.number({"FrequencyNumerator", "NumRepetitions"}, mostDays);
    const auto days = row.number({"FrequencyDenominator", "Interval"}, mostDays);
    if (count && days && *count > 0 && *days > 0) {
      habit.count = *count;
      habit.days = *days;
    } else {
      builder_.decide(inQuotes(habit.name), "its frequency can't be read; it is due every day");
    }
    habit.target = numberIn(row.text({"Target Value"}), 1e12).value_or(0);
    return habit;
  }

  /// The folder begins with the habit's place in three digits; its name may be cut.
  void readMarks(std::int64_t place, LoopHabit& habit) {
    const std::string number = stringWithFormat("%03lld", static_cast<long long>(place));
    const auto isOfHabit = [&](const auto& file) {
      const std::string_view name = file.first;
      const bool isFolder = name.starts_with(number + " ") || name.starts_with(number + "/");
      return isFolder && name.ends_with("/Checkmarks.csv");
    };
    const auto file = std::ranges::find_if(files_, isOfHabit);
    if (file == files_.end()) return;
    const std::string table = withBareLineFeeds(file->second);
    if (table.empty()) return;
    try {
      CSVReader reader(table);
      const auto& headers = reader.headers();
      const auto cell = [&](std::size_t i) { return i < headers.size() ? headers[i] : ""; };
      if (cell(0) != "Date") addMark(file->first, cell(0), cell(1), "", habit);
      while (reader.next()) {
        const auto text = [&](std::size_t i) {
          return i < reader.fields().size() ? std::string(reader.fields()[i].text) : "";
        };
        addMark(file->first, text(0), text(1), text(2), habit);
      }
    } catch (const CSVError& error) {
      builder_.decide(file->first, std::string(error.localizedDescription()) +
                                       " What stands behind it is left out.");
    }
  }

  void addMark(const std::string& file, const std::string& date, const std::string& value,
               const std::string& note, LoopHabit& habit) {
    const auto day = isoDay(date);
    const auto number = valueIn(value);
    if (!day || !number) {
      builder_.decide(file, inQuotes(date + "," + value) + " can't be read; it is left out");
    } else {
      habit.marks.emplace(*day, LoopHabit::Mark{*number, note});
    }
  }

  const LoopFiles& files_;
  ImportBuilder builder_;
};

/// Reads a table whose columns depend on the version.
class DatabaseReader {
 public:
  DatabaseReader(SqliteConnection& database, const TimeZone& zone, Date now)
      : database_(database), builder_(program, zone, now) {}

  Result<ImportedBackup> read() && {
    constexpr std::int64_t newest = 25;
    version_ = TRY(database_.integer("PRAGMA user_version")).value_or(0);
    habitColumns_ = TRY(columns("Habits"));
    markColumns_ = TRY(columns("Repetitions"));
    if (habitColumns_.empty() || markColumns_.empty()) {
      return refused("The file is no database of Loop Habit Tracker.");
    }
    if (version_ > newest) {
      return refused("The database has version " + std::to_string(version_) +
                     "; up to 25 can be read.");
    }
    TRY(readHabits());
    TRY(readMarks());
    for (const std::int64_t id : order_) addLoopHabit(habits_.at(id), builder_);
    return std::move(builder_).finish();
  }

 private:
  Result<std::set<std::string>> columns(std::string_view table) {
    std::set<std::string> names;
    auto rows = TRY(database_.prepare("SELECT name FROM pragma_table_info(?)"));
    rows.bind(1, table);
    while (TRY(rows.step())) names.emplace(rows.text(0));
    return names;
  }

  static std::string column(const std::set<std::string>& known, const std::string& name,
                            const char* otherwise) {
    return known.contains(name) ? name : otherwise;
  }

  Result<void> readHabits() {
    const auto in = [&](const char* name, const char* otherwise) {
      return column(habitColumns_, name, otherwise) + ", ";
    };
    const std::string sql =
        "SELECT id, " + in("name", "''") + in("question", "''") + in("description", "''") +
        in("unit", "''") + in("freq_num", "1") + in("freq_den", "1") + in("archived", "0") +
        in("type", "0") + in("target_type", "0") + in("target_value", "0") +
        in("reminder_hour", "NULL") + in("reminder_min", "NULL") + in("reminder_days", "127") +
        in("color", "NULL") + column(habitColumns_, "uuid", "''") + " FROM Habits ORDER BY " +
        column(habitColumns_, "position", "id") + ", id";
    auto rows = TRY(database_.prepare(sql));
    while (TRY(rows.step())) addHabit(rows);
    return {};
  }

  void addHabit(const SqliteStatement& row) {
    constexpr std::int64_t questionIsOwn = 23;
    enum {
      id,
      name,
      question,
      description,
      unit,
      count,
      days,
      isArchived,
      type,
      targetType,
      target,
      hour,
      minute,
      reminderDays,
      color,
      uuid
    };
    const auto text = [&](int at) { return repairedUTF8(row.text(at)); };
    LoopHabit habit{.key = text(uuid), .name = text(name), .question = text(question)};
    if (habit.key.empty()) habit.key = habit.name + " " + std::to_string(row.integer(id));
    habit.description = text(description);
    if (version_ < questionIsOwn && habit.question.empty())
      std::swap(habit.question, habit.description);
    habit.unit = text(unit);
    habit.isArchived = row.integer(isArchived) != 0;
    habit.isNumerical = row.integer(type) == 1;
    habit.isAtMost = row.integer(targetType) == 1;
    habit.target = std::clamp(row.real(target), 0.0, 1e12);
    habit.count = std::clamp<std::int64_t>(row.integer(count), 1, mostDays);
    habit.days = std::clamp<std::int64_t>(row.integer(days), 1, mostDays);
    const bool hasReminder = !row.isNull(hour) && !row.isNull(minute);
    const std::int64_t h = row.integer(hour), m = row.integer(minute);
    if (hasReminder && h >= 0 && h < 24 && m >= 0 && m < 60) {
      habit.reminder = HHMMSS{.h = h, .m = m, .s = 0};
      habit.reminderDays = row.integer(reminderDays);
    }
    setColor(habit, row.integer(color));
    order_.push_back(row.integer(id));
    habits_.emplace(row.integer(id), std::move(habit));
  }

  /// Later versions name a place in a palette of the program.
  void setColor(LoopHabit& habit, std::int64_t color) {
    constexpr std::int64_t firstWithPalette = 14;
    if (version_ >= firstWithPalette) {
      return builder_.decide(inQuotes(habit.name), "its colour of a palette is left out");
    }
    habit.color =
        colorIn(stringWithFormat("#%06llX", static_cast<unsigned long long>(color) & 0xFFFFFF));
  }

  /// Early versions may have a day twice; the first row counts.
  Result<void> readMarks() {
    constexpr std::int64_t millisecondsPerDay = 86'400'000;
    auto rows = TRY(database_.prepare(
        "SELECT habit, timestamp, " + column(markColumns_, "value", "2") + ", " +
        column(markColumns_, "notes", "''") +
        " FROM Repetitions WHERE habit IS NOT NULL AND timestamp IS NOT NULL ORDER BY rowid"));
    std::int64_t leftOut = 0;
    while (TRY(rows.step())) {
      const auto habit = habits_.find(rows.integer(0));
      const auto day = dayOfNumber(rows.integer(1) / millisecondsPerDay);
      if (habit == habits_.end() || !day) {
        ++leftOut;
        continue;
      }
      const std::int64_t value = rows.isNull(2) ? LoopHabit::yes : rows.integer(2);
      habit->second.marks.emplace(*day, LoopHabit::Mark{value, repairedUTF8(rows.text(3))});
    }
    if (leftOut > 0) {
      builder_.decide("Repetitions",
                      std::to_string(leftOut) + " rows of no habit or day are left out");
    }
    return {};
  }

  SqliteConnection& database_;
  ImportBuilder builder_;
  std::int64_t version_ = 0;
  std::set<std::string> habitColumns_, markColumns_;
  std::vector<std::int64_t> order_;
  std::map<std::int64_t, LoopHabit> habits_;
};

/// Tables are small; what claims to be larger is none.
Result<std::string> contentOf(const ZipReader& archive, const ZipReader::Entry& entry) {
  constexpr std::size_t most = 64U << 20U;
  auto stream = TRY(archive.read(entry));
  std::string content;
  std::vector<char> piece(65536);
  for (;;) {
    const std::size_t count = TRY(stream->read(piece));
    if (count == 0) return content;
    content.append(piece.data(), count);
    if (content.size() > most) return refused(entry.name + " is larger than 64 MiB.");
  }
}

}  // namespace

Result<ImportedBackup> readLoopFiles(const LoopFiles& files, const TimeZone& zone, Date now) {
  return TableReader(files, zone, now).read();
}

Result<ImportedBackup> readLoopArchive(const std::filesystem::path& file, const TimeZone& zone,
                                       Date now) {
  const auto archive = TRY(ZipReader::open(file));
  LoopFiles files;
  for (const ZipReader::Entry& entry : archive.entries()) {
    const bool isTable = entry.name == "Habits.csv" || entry.name.ends_with("/Checkmarks.csv");
    if (isTable) files[entry.name] = TRY(contentOf(archive, entry));
  }
  return readLoopFiles(files, zone, now);
}

Result<ImportedBackup> readLoopDatabase(const std::filesystem::path& file, const TimeZone& zone,
                                        Date now) {
  const auto database = TRY(SqliteConnection::open({.path = file, .access = SqliteAccess::atRest}));
  return DatabaseReader(*database, zone, now).read();
}

}  // namespace velloro
