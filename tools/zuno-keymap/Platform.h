//
// Platform.h
//
// What the tool does differently on Windows, so that it behaves the same
// everywhere: its arguments and file names are UTF-8, and its standard
// streams carry bytes, never translated line ends.
//

#ifndef ZUNO_KEYMAP_TOOL_PLATFORM_H
#define ZUNO_KEYMAP_TOOL_PLATFORM_H

#include <fstream>
#include <string>
#include <vector>

namespace zunokeymap {

/// The command line as UTF-8 text. Windows hands `main` its arguments in
/// the ANSI code page, which cannot hold every file name; there they are
/// read again as UTF-16 and converted. Elsewhere they are taken as given.
class Utf8CommandLine {
public:
    Utf8CommandLine(int argc, char** argv);
    Utf8CommandLine(const Utf8CommandLine&) = delete;
    Utf8CommandLine& operator=(const Utf8CommandLine&) = delete;

    int argc() const { return static_cast<int>(pointers_.size()) - 1; }
    char** argv() { return pointers_.data(); }

private:
    std::vector<std::string> arguments_;
    std::vector<char*> pointers_;  ///< into arguments_, ending in a null pointer
};

/// Makes standard input, output and error safe to use. On Windows they are
/// put into binary mode, so that the tool writes the same bytes there as
/// elsewhere ("\n", not "\r\n"). Elsewhere a descriptor the tool was started
/// without is opened write-only on /dev/null, so that no file the tool opens
/// later takes its number: nothing meant for the terminal lands in a file, and
/// a closed standard input still cannot be read.
void PrepareStandardStreams();

/// Opens the regular file at the UTF-8 `path` for reading bytes. False for
/// anything else: a pipe or a device could block forever.
bool OpenRegularFile(const std::string& path, std::ifstream& in);

/// The descriptor already open in this process that `path` names, directly
/// or through symbolic links: /dev/stdout, /dev/stderr, /dev/fd/N,
/// /proc/self/fd/N. -1 for any other path, and on Windows, which has no
/// such names.
int DescriptorNamed(const std::string& path);

/// Writes `text` to `path` when it names an open descriptor (DescriptorNamed)
/// or an existing pipe, terminal or other device: written as a stream, at the
/// descriptor's own place (a shell's `>>` appends), rather than replaced.
/// False when `path` is no such thing (`error` empty: write it as a file) or
/// the write failed (`error` says why).
bool WriteToStream(const std::string& path, const std::string& text, std::string& error);

/// An advisory lock for a read-modify-write of a file, so that two tools
/// editing one file at once do not lose each other's change. The write
/// replaces the file itself, so the lock is taken on a file of its own
/// beside it (LockFileName), made with the file's owner and mode and removed
/// again when the lock is released: whoever may not write the file may not
/// hold its lock either. A link is followed: the lock is beside its target.
/// Held until destroyed.
class FileLock {
public:
    explicit FileLock(const std::string& path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Waits up to `timeoutMs` for the lock. False, with `error` set, when
    /// another writer still holds it then, or when no lock can be taken
    /// here (the lock file cannot be made or opened for writing).
    bool acquire(int timeoutMs, std::string& error);

    /// The lock file's path, once acquire has run.
    const std::string& lockPath() const { return lockPath_; }

private:
    void release();

    std::string path_;
    std::string lockPath_;
#ifdef _WIN32
    void* handle_ = nullptr;
#else
    int fd_ = -1;
#endif
};

/// The name of the lock file of the file named `base`: ".BASE.zuno-keymap-lock",
/// or, where that would be too long a name, one made from a hash of `base`.
std::string LockFileName(const std::string& base);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_PLATFORM_H
