#include "velloro/Output/GrowingFile.h"

#include "velloro/Options/Arguments.h"
#include "velloro/Output/Output.h"

#include <utility>

namespace velloro {

GrowingFile::GrowingFile(std::string file, std::string option)
    : file_(std::move(file)), option_(std::move(option)) {
  if (file_ != "-") output_.emplace(checked(OutputFile::open(file_)));
}

void GrowingFile::add(std::string_view piece) {
  if (output_) return checked(output_->write(piece));
  printBytes(piece);
}

void GrowingFile::finish() {
  if (output_) checked(output_->finish());
}

template <typename T>
T GrowingFile::checked(Result<T> result) const {
  if (result) return *std::move(result);
  const Error& reason = *result.error();
  throw Error(reason.domain(), reason.code(),
              option_ + " " + cited(file_) + ": " + reason.localizedDescription());
}

void writeFile(std::string_view bytes, const std::string& file, const std::string& option) {
  GrowingFile written(file, option);
  written.add(bytes);
  written.finish();
}

}  // namespace velloro
