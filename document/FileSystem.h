//
// FileSystem.h
//
// The library's file access: the one place that knows the platform.
//
// Paths are UTF-8 text on every platform, as in Poco and in the hosts built
// on it. Windows' narrow file functions would read them in the ANSI code
// page, so there they are turned into UTF-16 for the wide functions. Files
// are read and written as bytes: no platform changes line ends.
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_FILESYSTEM_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_FILESYSTEM_H

#include <filesystem>
#include <random>
#include <string>

namespace zunokeymapmanager {
namespace document {

/// What a path names, following symbolic links. A path that cannot be
/// looked at counts as missing.
enum class FileKind { Missing, Regular, Other };

FileKind KindOf(const std::string& path);

/// The whole content of the regular file at `path`. Raises
/// Poco::OpenFileException when `path` names no regular file or cannot be
/// opened, Poco::ReadFileException when reading fails.
std::string ReadBytes(const std::string& path);

/// Writes `text` to `path`; false when the file could not be written.
/// The text goes to a new file beside the target, which is flushed to disk
/// and then replaces the target in one step, so a crash or a full disk
/// midway leaves the old file whole. A symbolic link stays a link and its
/// target is replaced. Where no file can be made beside the target, or the
/// target is not a regular file, the target is truncated and written in
/// place; so is a target another program holds open and will not let go.
/// On POSIX systems the new file keeps the target's mode (and owner where
/// possible); a target the user may not write is left alone.
bool WriteFile(const std::string& path, const std::string& text);

/// Truncates the file at `path` and writes `text` into it: a failure midway
/// leaves a truncated file. For where nothing safer is possible.
bool WriteInPlace(const std::string& path, const std::string& text);

/// `path` in the form the platform's file functions take; false when it is
/// not valid UTF-8 on a platform that has to convert it.
bool NativePath(const std::string& path, std::filesystem::path& out);

/// Random suffixes for temporary names beside a target, different in every
/// process and thread (creating the file exclusively settles the rest).
class TempSuffixes {
public:
    explicit TempSuffixes(unsigned processId);

    /// Eight letters and digits.
    std::string next();

private:
    std::minstd_rand random_;
};

}  // namespace document
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_FILESYSTEM_H
