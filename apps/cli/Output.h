#pragma once

#include <string>
#include <string_view>

// Bytes on their way out of the program. Each function that writes gives why it failed, or an empty
// text.
namespace poweranalysis {

// Puts the bytes into a file as a whole: they go to a temporary file beside it that takes its place
// at the end, so that the old file stays as it was until then, whatever happens. Anything that is
// not a regular file (a pipe, a device) is written to directly.
std::string WriteFile(const std::string& path, std::string_view bytes);

// Whether two names lead to one regular file, or would once it is written: by another spelling of
// the path, through links, or as two names of one file.
bool LeadsToOneFile(const std::string& a, const std::string& b);

// Ends the program silently, as the system ends one that writes to a pipe which nobody reads.
[[noreturn]] void EndByClosedPipe();

std::string WriteStandardOutput(std::string_view bytes);

// To standard error; there is nowhere to report a failure.
void WriteError(std::string_view bytes);

// Opens the standard descriptors that the program was started without, so that no file takes their
// place: writing to them then fails.
void GuardStandardDescriptors();

}  // namespace poweranalysis
