#include "VelloroBackup/VelloroCSVBackupRow.h"

#include "Foundation/Text/String.h"
#include "Foundation/Time/Calendar.h"
#include "VelloroBackup/CSVReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <unordered_map>

namespace velloro {
namespace {

using Row = VelloroCSVBackupRow;

template <typename T>
std::optional<T> numberIn(std::string_view text) {
  T number = {};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::string numberText(double number) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

/// "2024-03-07T02:59:59.250Z": to the millisecond, in GMT.
std::string timestampText(Date date) {
  const auto milliseconds =
      static_cast<std::int64_t>(std::llround(date.timeIntervalSince1970() * 1000));
  const std::int64_t part = ((milliseconds % 1000) + 1000) % 1000;
  const Date whole = Date::since1970(static_cast<double>((milliseconds - part) / 1000));
  std::string text = whole.iso8601();
  text.pop_back();
  return text + stringWithFormat(".%03dZ", static_cast<int>(part));
}

std::optional<Date> timestampIn(std::string_view text) {
  const bool hasFraction = text.find('.') != std::string_view::npos;
  return hasFraction ? Date::fromISO8601(text) : std::nullopt;
}

/// How one column is written, and read: false for a text that is no value.
struct Column {
  std::string_view header;
  std::string (*text)(const Row& row);
  bool (*read)(std::string_view text, Row& row);
};

template <typename T>
bool take(std::optional<T> value, std::optional<T>& into) {
  into = std::move(value);
  return into.has_value();
}

constexpr std::string_view timestampHeader = "entry_timestamp";

constexpr Column columns[] = {
    {"task_id", [](const Row& row) { return row.taskId.value_or(""); },
     [](std::string_view text, Row& row) {
       return take(std::optional(std::string(text)), row.taskId);
     }},
    {"title", [](const Row& row) { return row.title.value_or(""); },
     [](std::string_view text, Row& row) {
       return take(std::optional(std::string(text)), row.title);
     }},
    {"icon",
     [](const Row& row) {
       return row.visualRepresentation ? row.visualRepresentation->text() : std::string();
     },
     [](std::string_view text, Row& row) {
       return take(VelloroJSONBackupVisualRepresentation::fromText(text), row.visualRepresentation);
     }},
    {"entry_type",
     [](const Row& row) {
       return row.entryType ? std::string(rawValue(*row.entryType)) : std::string();
     },
     [](std::string_view text, Row& row) {
       return take(fromRawValue<VelloroCSVBackupEntryType>(text), row.entryType);
     }},
    {"entry_date",
     [](const Row& row) {
       return row.entryDate ? std::to_string(row.entryDate->intValue()) : std::string();
     },
     [](std::string_view text, Row& row) {
       const auto number = numberIn<std::int64_t>(text);
       return take(number ? YYYYMMDD::fromIntValue(*number) : std::nullopt, row.entryDate);
     }},
    {timestampHeader,
     [](const Row& row) {
       return row.entryTimestamp ? timestampText(*row.entryTimestamp) : std::string();
     },
     [](std::string_view text, Row& row) { return take(timestampIn(text), row.entryTimestamp); }},
    {"quantity",
     [](const Row& row) { return row.quantity ? numberText(*row.quantity) : std::string(); },
     [](std::string_view text, Row& row) {
       return take(numberIn<double>(text), row.quantity) && std::isfinite(*row.quantity);
     }},
    {"page",
     [](const Row& row) { return row.page ? std::to_string(row.page->value) : std::string(); },
     [](std::string_view text, Row& row) {
       const auto number = numberIn<std::int64_t>(text);
       return take(number ? std::optional(TaskPageNumber{*number}) : std::nullopt, row.page);
     }},
    {"notes", [](const Row& row) { return row.notes.value_or(""); },
     [](std::string_view text, Row& row) {
       return take(std::optional(std::string(text)), row.notes);
     }},
};

CSVError badValue(const CSVReader& reader, const CSVReader::Field& field, const Column& column) {
  const CSVPlace place = reader.place(field.at);
  if (column.header == timestampHeader) {
    return CSVError(CSVError::Kind::date, place,
                    "'" + std::string(field.text) +
                        "' couldn't be transformed into a Date using the '.iso8601' strategy.");
  }
  return CSVError(CSVError::Kind::value, place,
                  inQuotes(field.text) + " is no value of the column " + inQuotes(column.header));
}

void appendField(std::string& csv, std::string_view text) {
  // A carriage return before the end of a row would not be read back.
  if (text.find_first_of(",\n\r\"") == std::string_view::npos) {
    csv += text;
    return;
  }
  csv += '"';
  for (const char c : text) {
    if (c == '"') csv += '"';
    csv += c;
  }
  csv += '"';
}

Row rowOf(const VelloroJSONBackupTask& task) {
  return {.taskId = task.uniqueId ? std::optional(task.uniqueId->stringValue()) : std::nullopt,
          .title = task.title,
          .visualRepresentation = task.visualRepresentation,
          .page = task.pageNumber};
}

std::optional<std::string> notesOf(const VelloroJSONBackupTask& task, YYYYMMDD day) {
  std::optional<std::string> joined;
  if (!task.notes) return joined;
  for (const VelloroJSONBackupNote& note : *task.notes) {
    if (note.date != day) continue;
    joined = joined ? *joined + "\n" + note.content.body : note.content.body;
  }
  return joined;
}

VelloroJSONBackupTaskEntry entryOf(const Row& row) {
  return {.entryType = taskLogEntryType(*row.entryType),
          .entryDate = *row.entryDate,
          .progress = row.quantity,
          .createdTimestamp = row.entryTimestamp};
}

/// The tasks that rows are added to.
class VelloroCSVImport {
 public:
  void add(const Row& row) {
    if (!row.title) return;
    VelloroJSONBackupTask& task =
        row.taskId ? tasksById_.task(*row.taskId, row) : tasksByTitle_.task(*row.title, row);
    if (row.entryType && row.entryDate) task.log->push_back(entryOf(row));
  }

  std::vector<VelloroJSONBackupTask> tasks() && {
    std::vector<VelloroJSONBackupTask> all = std::move(tasksByTitle_.tasks);
    std::ranges::move(tasksById_.tasks, std::back_inserter(all));
    return all;
  }

 private:
  struct Tasks {
    std::vector<VelloroJSONBackupTask> tasks;
    std::unordered_map<std::string, std::size_t> places;

    VelloroJSONBackupTask& task(const std::string& key, const Row& row) {
      const auto [found, isNew] = places.emplace(key, tasks.size());
      if (isNew) {
        tasks.push_back({.uniqueId = row.taskId ? UniqueID::fromString(*row.taskId) : std::nullopt,
                         .title = row.title,
                         .visualRepresentation = row.visualRepresentation,
                         .status = TaskStatus::normal,
                         .pageNumber = row.page,
                         .log = std::vector<VelloroJSONBackupTaskEntry>()});
      }
      return tasks[found->second];
    }
  };

  Tasks tasksByTitle_, tasksById_;
};

}  // namespace

std::vector<Row> Row::fromCSV(std::string_view bytes) {
  CSVReader reader(bytes);
  struct Source {
    std::size_t field;
    const Column* column;
  };
  std::vector<Source> sources;  // in the order of the columns
  for (const Column& column : columns) {
    const auto found = std::ranges::find(reader.headers(), column.header);
    if (found == reader.headers().end()) continue;
    sources.push_back({static_cast<std::size_t>(found - reader.headers().begin()), &column});
  }
  std::vector<Row> rows;
  while (reader.next()) {
    Row& row = rows.emplace_back();
    for (const auto& [at, column] : sources) {
      const CSVReader::Field& field = reader.fields()[at];
      if (field.text.empty() || column->read(field.text, row)) continue;
      throw badValue(reader, field, *column);
    }
  }
  return rows;
}

std::vector<Row> Row::of(const VelloroJSONBackup& backup) {
  std::vector<Row> rows;
  for (const VelloroJSONBackupTask& task : backup.tasks) {
    const Row common = rowOf(task);
    if (!task.log || task.log->empty()) {
      rows.push_back(common);
      continue;
    }
    for (const VelloroJSONBackupTaskEntry& entry : *task.log) {
      Row& row = rows.emplace_back(common);
      row.entryType = csvEntryType(entry.entryType);
      row.entryDate = entry.entryDate;
      row.entryTimestamp = entry.createdTimestamp;
      row.quantity = entry.progress;
      row.notes = notesOf(task, entry.entryDate);
    }
  }
  return rows;
}

VelloroJSONBackup Row::backup(const std::vector<Row>& rows, Date now) {
  VelloroCSVImport import;
  for (const Row& row : rows) import.add(row);
  return {.version = 1,
          .timestamp = now,
          .tasks = std::move(import).tasks(),
          .backupType = VelloroJSONBackup::BackupType::automated,
          .backupDescription = "Converted from CSV"};
}

std::string csvString(const VelloroJSONBackup& backup) {
  std::string csv;
  for (const Column& column : columns) {
    if (!csv.empty()) csv += ',';
    csv += column.header;
  }
  csv += '\n';
  for (const Row& row : Row::of(backup)) {
    bool isFirst = true;
    for (const Column& column : columns) {
      if (!std::exchange(isFirst, false)) csv += ',';
      appendField(csv, column.text(row));
    }
    csv += '\n';
  }
  return csv;
}

VelloroJSONBackup loadCSV(std::string_view bytes, Date now) {
  return Row::backup(Row::fromCSV(bytes), now);
}

}  // namespace velloro
