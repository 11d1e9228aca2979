#pragma once

#include <string>
#include <string_view>

// Bytes on their way out of the program. Each gives why it failed, or an empty text.
namespace poweranalysis {

// Puts the bytes into a file as a whole: they go to a temporary file beside it that takes its place
// at the end, so that the old file stays as it was until then, whatever happens. What is no regular
// file (a pipe, a device) is written to.
std::string WriteFile(const std::string& path, std::string_view bytes);

std::string WriteStandardOutput(std::string_view bytes);

// To standard error; there is nowhere to tell of a failure.
void WriteError(std::string_view bytes);

// Opens the standard descriptors that the program was started without, so that no file takes their
// place: writing to them then fails.
void GuardStandardDescriptors();

}  // namespace poweranalysis
