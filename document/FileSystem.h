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

/// How ReplaceWhole ended.
enum class ReplaceResult {
    Replaced,  ///< the target now holds the whole text
    /// Nothing was written and no new file could take the target's place
    /// (none can be made beside it, the target is no regular file, or it
    /// cannot be replaced without changing who may read it).
    NotReplaceable,
    Failed,  ///< writing the new file or moving it failed; the target is untouched
};

/// Writes `text` to a new file beside `path`, flushes it to disk and moves
/// it over the target in one step, so the target holds either its old bytes
/// or the whole new text, whatever happens midway. Never writes into the
/// target itself. A symbolic link stays a link and its target is replaced.
/// On POSIX systems the new file keeps the target's mode (and owner where
/// possible). Temporary files left by an earlier save of the same target
/// that was killed midway are removed first. `error` names the cause of a
/// result other than Replaced.
ReplaceResult ReplaceWhole(const std::string& path, const std::string& text, std::string& error);

/// The library's save of `text` to `path`: ReplaceWhole, and where that is
/// not possible, WriteInPlace; false when the file could not be written.
/// A target the user may not write (on Windows, a read-only file) is left
/// alone.
bool WriteFile(const std::string& path, const std::string& text);

/// Writes `text` into the file at `path` itself: the space it needs is
/// reserved first, so a full disk fails before the old bytes are touched,
/// and a pipe or device that nobody reads fails at once instead of
/// blocking. A failure midway still leaves a mix of old and new bytes: for
/// where nothing safer is possible.
bool WriteInPlace(const std::string& path, const std::string& text);

/// Creates the file `path`, which must not exist yet (not even as a link),
/// and writes `text` into it, with the permission bits of the file `like`
/// where that exists, and its group where the process may set it (POSIX). False, with the cause in
/// `error`, when the name is taken or the file cannot be made or written; a file it made but could
/// not fill is removed.
bool CreateNewFile(const std::string& path, const std::string& text, const std::string& like,
                   std::string& error);

/// The name a temporary file beside `base` starts with: short and of a fixed
/// length, so that a target with a name of the longest allowed length still
/// gets a temporary file beside it.
std::string TempPrefix(const std::string& base);

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
