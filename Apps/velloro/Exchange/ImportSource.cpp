#include "velloro/Exchange/ImportSource.h"

#include "Foundation/Coding/CodingError.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "VelloroBackup/CSVError.h"
#include "VelloroBackup/VelloroCSVBackupRow.h"
#include "VelloroImport/HarshReader.h"
#include "VelloroImport/JSONReaders.h"
#include "VelloroImport/LoopReader.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Output/HelpfulError.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <utility>

namespace velloro {
namespace {

enum class Form : std::uint8_t { velloro, csv, loop, harsh, habitica, mhabit, taskwarrior };

struct FormRow {
  Form value;
  const char* name;
};
constexpr FormRow forms[] = {{Form::velloro, "velloro"},
                             {Form::csv, "csv"},
                             {Form::loop, "loop"},
                             {Form::harsh, "harsh"},
                             {Form::habitica, "habitica"},
                             {Form::mhabit, "mhabit"},
                             {Form::taskwarrior, "taskwarrior"}};

constexpr std::string_view databaseStart("SQLite format 3\0", 16);
constexpr std::string_view archiveStart = "PK\x03\x04";

std::optional<Form> formNamed(const std::string& from) {
  for (const auto& [form, name] : forms) {
    if (from == name) return form;
  }
  if (from != "auto") throw UsageError("--from", from, "write " + importFormats());
  return std::nullopt;
}

std::optional<Form> formOfName(const std::string& file) {
  if (std::filesystem::is_directory(file)) return Form::harsh;
  std::string extension = std::filesystem::path(file).extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  const auto format = backupFormat(lowercased(extension));
  if (!format) return std::nullopt;
  return *format == VelloroBackupFormat::csv ? Form::csv : Form::velloro;
}

/// The position behind a text that begins behind `at`.
std::size_t endOfText(std::string_view json, std::size_t at) {
  while (++at < json.size() && json[at] != '"') at += json[at] == '\\' ? 1 : 0;
  return at;
}

/// The keys of the outermost object, with the first character of each one's value. It is for a
/// guess: the text need not be JSON.
std::map<std::string, char, std::less<>> outerKeys(std::string_view json) {
  std::map<std::string, char, std::less<>> keys;
  int depth = 0;
  std::string last;
  for (std::size_t i = 0; i < json.size(); ++i) {
    const char c = json[i];
    if (c == '"') {
      const std::size_t end = endOfText(json, i);
      if (depth == 1) last = json.substr(i + 1, std::min(end, json.size()) - i - 1);
      i = end;
    } else if (c == '{' || c == '[') {
      ++depth;
    } else if (c == '}' || c == ']') {
      if (--depth == 0) break;
    } else if (c == ':' && depth == 1) {
      const auto value = json.find_first_not_of(" \t\r\n", i + 1);
      keys.emplace(last, value < json.size() ? json[value] : ' ');
    }
  }
  return keys;
}

Form formOfObject(std::string_view json) {
  const auto keys = outerKeys(json);
  const auto begins = [&](const char* key, char with) {
    const auto found = keys.find(key);
    return found != keys.end() && found->second == with;
  };
  if (begins("tasks", '{')) return Form::habitica;
  if (begins("habits", '[')) return Form::mhabit;
  const bool isTask = keys.contains("uuid") && keys.contains("description");
  return isTask ? Form::taskwarrior : Form::velloro;
}

Form formOfContent(std::string_view bytes) {
  if (bytes.starts_with(databaseStart) || bytes.starts_with(archiveStart)) return Form::loop;
  const auto first = bytes.find_first_not_of(" \t\r\n");
  const char begin = first == std::string_view::npos ? ' ' : bytes[first];
  return begin == '[' ? Form::taskwarrior : begin == '{' ? formOfObject(bytes) : Form::csv;
}

std::string standardInput() {
  std::string bytes;
  char buffer[65536];
  while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, stdin)) {
    bytes.append(buffer, count);
  }
  return bytes;
}

HelpfulError complaint(const std::string& file, const CSVError& error) {
  std::string text = file;
  if (const auto& place = error.place()) {
    text += ", line " + std::to_string(place->line) + ", column " + std::to_string(place->column);
  }
  return {text + ": " + error.localizedDescription(), std::string(error.help())};
}

std::string bytesOf(const std::string& file, std::optional<Form> form) {
  if (file == "-") return standardInput();
  auto bytes = NSFileManager::contents(file);
  if (bytes) return *std::move(bytes);
  if (form == Form::csv) throw complaint(file, CSVError(CSVError::Kind::unreadableFile));
  throw HostError(bytes.error()->localizedDescription());
}

/// Empty for a file that can't be read; what reads it says why.
std::string beginningOf(const std::string& file) {
  std::string bytes(databaseStart.size(), '\0');
  std::ifstream stream(file, std::ios::binary);
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return bytes;
}

/// The folder is named, or one of the two files in it.
ImportedBackup readHarshFolder(const std::filesystem::path& named, Date now) {
  const auto folder = std::filesystem::is_directory(named) ? named : named.parent_path();
  const auto contentOf = [&](const char* name) {
    auto bytes = NSFileManager::contents(folder / name);
    if (!bytes) throw HostError(bytes.error()->localizedDescription());
    return *std::move(bytes);
  };
  return readHarsh(contentOf("habits"), contentOf("log"), TimeZone::current(), now);
}

ImportedBackup taken(Result<ImportedBackup> read, const std::string& file) {
  if (read) return *std::move(read);
  throw HostError(file + ": " + std::string(read.error()->localizedDescription()));
}

ImportedBackup readLoop(const std::string& file, Date now) {
  if (file == "-") throw UsageError("FILE", file, "an archive or database is given by its name");
  const bool isDatabase = beginningOf(file).starts_with(databaseStart);
  const auto read = isDatabase ? readLoopDatabase : readLoopArchive;
  return taken(read(file, TimeZone::current(), now), file);
}

const char* nameOf(Form form) {
  return forms[static_cast<std::size_t>(form)].name;
}

ImportSource sourceOf(Form form, ImportedBackup imported) {
  return {nameOf(form), std::move(imported.backup), std::move(imported.decisions)};
}

ImportSource parsed(std::string bytes, Form form, const std::string& file, Date now) {
  const TimeZone zone = TimeZone::current();
  switch (form) {
    case Form::habitica:
      return sourceOf(form, taken(readHabitica(bytes, zone, now), file));
    case Form::mhabit:
      return sourceOf(form, taken(readMhabit(bytes, zone, now), file));
    case Form::taskwarrior:
      return sourceOf(form, taken(readTaskwarrior(bytes, zone, now), file));
    case Form::csv:
      return sourceOf(form, {.backup = loadCSV(bytes, now)});
    case Form::velloro:
    case Form::loop:
    case Form::harsh:
      break;
  }
  return {nameOf(form), BackupDocument(std::move(bytes))};
}

ImportSource readForm(Form form, std::string bytes, const std::string& file, Date now) {
  try {
    return parsed(std::move(bytes), form, file, now);
  } catch (const CSVError& error) {
    throw complaint(file, error);
  } catch (const DecodingError& error) {
    throw HostError(file + ": " + error.localizedDescription());
  }
}

}  // namespace

std::string importFormats() {
  std::string names = "auto";
  for (const auto& [form, name] : forms) {
    names += (form == Form::taskwarrior ? " or " : ", ") + std::string(name);
  }
  return names;
}

ImportSource readImportSource(const std::string& file, const std::optional<std::string>& from,
                              Date now) {
  auto given = formNamed(from.value_or("auto"));
  if (!given) given = formOfName(file);
  if (!given && file != "-" && formOfContent(beginningOf(file)) == Form::loop) given = Form::loop;
  if (given == Form::loop) return sourceOf(Form::loop, readLoop(file, now));
  if (given == Form::harsh) return sourceOf(Form::harsh, readHarshFolder(file, now));
  std::string bytes = bytesOf(file, given);
  const Form form = given ? *given : formOfContent(bytes);
  if (form == Form::loop) return sourceOf(form, readLoop(file, now));
  return readForm(form, std::move(bytes), file, now);
}

}  // namespace velloro
