# cmake -DOUTPUT=<file.cpp> -DFILES=<a|b|…> -P SourceFingerprint.cmake: writes a C++ source with one
# number that stands for the content of all the files.
string(REPLACE "|" ";" files "${FILES}")
set(content "")
foreach(file IN LISTS files)
  file(SHA256 "${file}" hash)
  string(APPEND content "${hash}")
endforeach()
string(SHA256 hash "${content}")
string(SUBSTRING "${hash}" 0 16 number)
file(WRITE "${OUTPUT}" "#include <cstdint>

namespace velloro {
extern const std::uint64_t sourceFingerprint;
const std::uint64_t sourceFingerprint = 0x${number}U;
}  // namespace velloro
")
