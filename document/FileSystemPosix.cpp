//
// FileSystemPosix.cpp
//
// The save on POSIX systems: a new file beside the target, renamed over it.
//

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>

#include "document/FileSystem.h"

namespace zunokeymapmanager {
namespace document {

namespace {

// Writes the whole text, retrying short writes and interruptions.
bool writeAll(int fd, const std::string& text) {
    const char* data = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        const ssize_t written = ::write(fd, data, left);
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        data += written;
        left -= static_cast<std::size_t>(written);
    }
    return true;
}

// Opens a new, exclusive file in `dir` named after `base`; -1 when none can
// be made there. `mode` goes through the umask like any new file's.
int createBeside(const std::string& dir, const std::string& base, mode_t mode,
                 std::string& tempPath) {
    TempSuffixes suffixes(static_cast<unsigned>(::getpid()));
    for (int attempt = 0; attempt < 64; ++attempt) {
        tempPath = dir;
        tempPath.append("/.").append(base).append(".save-").append(suffixes.next());
        const int fd = ::open(tempPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (fd >= 0) {
            return fd;
        }
        if (errno != EEXIST && errno != EINTR) {
            return -1;
        }
    }
    return -1;
}

void syncDirectory(const std::string& dir) {
    const int fd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

}  // namespace

bool WriteFile(const std::string& path, const std::string& text) {
    // A symbolic link stays a link: the file it points to is replaced.
    std::string target = path;
    struct stat linkInfo {};
    if (::lstat(path.c_str(), &linkInfo) == 0 && S_ISLNK(linkInfo.st_mode)) {
        std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr),
                                                             &std::free);
        if (!resolved) {
            return WriteInPlace(path, text);  // dangling or looping link
        }
        target = resolved.get();
    }

    struct stat info {};
    const bool exists = ::stat(target.c_str(), &info) == 0;
    if (exists && !S_ISREG(info.st_mode)) {
        return WriteInPlace(path, text);  // a device or a pipe is written, never replaced
    }
    if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) {
        return WriteInPlace(path, text);  // a file the user may not write stays as it is
    }

    const std::size_t slash = target.rfind('/');
    const std::string dir = slash == std::string::npos
                                ? std::string(".")
                                : (slash == 0 ? "/" : target.substr(0, slash));
    const std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    if (base.empty()) {
        return WriteInPlace(path, text);
    }

    std::string tempPath;
    const int fd = createBeside(dir, base, exists ? S_IRUSR | S_IWUSR : 0666, tempPath);
    if (fd < 0) {
        return WriteInPlace(path, text);
    }
    // The new file takes the old one's place, so it takes its mode and, where
    // the process may, its owner.
    bool ok = true;
    if (exists) {
        ok = ::fchmod(fd, info.st_mode & 07777) == 0;
        if (ok && (info.st_uid != ::geteuid() || info.st_gid != ::getegid())) {
            ok = ::fchown(fd, info.st_uid, info.st_gid) == 0;
        }
        if (!ok) {
            // Replacing the file would change who may read it: keep it.
            ::close(fd);
            ::unlink(tempPath.c_str());
            return WriteInPlace(path, text);
        }
    }
    ok = writeAll(fd, text) && ::fsync(fd) == 0;
    ok = ::close(fd) == 0 && ok;
    ok = ok && ::rename(tempPath.c_str(), target.c_str()) == 0;
    if (!ok) {
        ::unlink(tempPath.c_str());
        return false;
    }
    syncDirectory(dir);
    return true;
}

}  // namespace document
}  // namespace zunokeymapmanager
