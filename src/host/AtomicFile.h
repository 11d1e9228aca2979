#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Files that are read whole or not at all, and that others see whole or not at all.
namespace poweranalysis {

// Our own wording for the ordinary failures of the file system, in the language and tone of the
// other messages: "permission is denied".
std::string FileReason(int error);

struct FileBytes {
  std::string text;
  std::string problem;  // empty also for a missing file
  bool exists = false;
  bool tooLarge = false;  // then `text` is not all of it
};

// Reads a regular file of at most `limit` bytes. Folders, FIFOs and devices are a problem; none of
// them blocks. `folder` is an open folder or AT_FDCWD.
FileBytes ReadFile(int folder, const std::string& name, std::size_t limit);
FileBytes ReadFile(const std::string& path, std::size_t limit);

// Writes a temporary file in the same folder, with the permissions and where possible the owner of
// the old file, brings it to the disk and renames it over the old one. When anything fails the old
// file is whole and no temporary file remains; those that killed programs left in the folder a day
// ago or more are removed. A file that the user has write-protected is never
// replaced. Returns an error number, 0 when all is well.
int ReplaceFile(int folder, const std::string& name, std::string_view text);

// The same for a path, whose symbolic links are followed, and stay. Anything there that is not a
// regular file stays too, with NotRegular for an error.
inline constexpr int NotRegular = -1;
int ReplaceFile(const std::string& path, std::string_view text);

// The same with the reason of a failure, empty when all is well.
std::string SaveFile(const std::string& path, std::string_view text);

// --- Paths

// With the slash at its end.
std::string FolderOf(const std::string& path);
std::string NameOf(const std::string& path);

// Follows the symbolic links of the last part of a path, the last of which may lead nowhere yet.
// Returns an error number.
int FollowLinks(std::string& path);

}  // namespace poweranalysis
