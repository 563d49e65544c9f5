#include "VelloroBackup/CSVError.h"

namespace velloro {
namespace {

using Kind = CSVError::Kind;

constexpr const char* errorDomain = "velloro.csv";

struct Row {
  Kind kind;
  const char* message;
  const char* help;
};

constexpr Row rows[] = {
    {Kind::unreadableFile, "The file under the given URL couldn't be read.",
     "Make sure the URL is valid and you are allowed to access the file."},
    {Kind::emptyHeader, "A header line was expected, but an empty line was found instead.",
     "Make sure there is a header line at the very beginning of the file or mark the configuration "
     "as 'no header'."},
    {Kind::equalHeaders, "The header row contain two fields with the same value.",
     "Request a row instead of a record."},
    {Kind::differentLength, "The number of fields is not constant between rows.",
     "Make sure the CSV file has always the same amount of fields per row (including the header "
     "row)."},
    {Kind::endInQuotes,
     "The last field is escaped (with double quotes if you haven't changed the defaults) and an "
     "EOF (End of File) was encountered before the field matched at the end with the closing "
     "escaping scalar.",
     "End the targeted field with the scaping scalar (double quotes by default)."},
    {Kind::quoteInField,
     "The escaping scalar (double quotes by default) is not allowed within fields which aren't "
     "already escaped.",
     "Add the escaping scalar at the very beginning and the very end of the field and escape the "
     "escaping scalar found within the field."},
    {Kind::textBehindQuote,
     "The targeted field parsed successfully. However, the character right after it was not a "
     "field nor row delimiter.",
     "If your CSV is CRLF, change the row delimiter to \"\\r\\n\" or add a trim strategy for "
     "\"\\r\"."},
    {Kind::notUTF8, "Some input bytes couldn't be decoded as UTF8 characters",
     "Make sure the CSV only contains UTF8 characters or select a different encoding."},
    {Kind::date, "", ""},
    {Kind::value, "", ""},
};

constexpr const Row& rowOf(Kind kind) {
  return rows[static_cast<std::size_t>(kind)];
}

}  // namespace

CSVError::CSVError(Kind kind, std::optional<CSVPlace> place)
    : Error(errorDomain, static_cast<int>(kind), rowOf(kind).message), kind_(kind), place_(place) {}

CSVError::CSVError(Kind kind, CSVPlace place, const std::string& message)
    : Error(errorDomain, static_cast<int>(kind), message), kind_(kind), place_(place) {}

std::string_view CSVError::help() const {
  return rowOf(kind_).help;
}

}  // namespace velloro
