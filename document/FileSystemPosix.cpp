//
// FileSystemPosix.cpp
//
// The save on POSIX systems: a new file beside the target, renamed over it.
//

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>

#include "document/FileSystem.h"

namespace zunokeymapmanager {
namespace document {

namespace {

// A temporary file whose process is gone, or that has sat for this long, was
// left by a save that never finished.
constexpr std::time_t kStaleSeconds = std::time_t{60} * 60;

// Writes the whole text at the file's offset, retrying short writes and
// interruptions.
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

// "<prefix><pid>-<random>": the process id tells a later save whether the
// file's writer may still be at work.
int createBeside(const std::string& dir, const std::string& prefix, mode_t mode,
                 std::string& tempPath) {
    TempSuffixes suffixes(static_cast<unsigned>(::getpid()));
    for (int attempt = 0; attempt < 64; ++attempt) {
        tempPath = dir;
        tempPath.append("/").append(prefix).append(std::to_string(::getpid()));
        tempPath.append("-").append(suffixes.next());
        const int fd =
            ::open(tempPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode);
        if (fd >= 0) {
            return fd;
        }
        if (errno != EEXIST && errno != EINTR) {
            return -1;
        }
    }
    errno = EEXIST;
    return -1;
}

// Removes the temporary files of earlier saves of this target whose writer
// is gone (or that are too old to be anyone's work in progress).
void removeStaleTemps(const std::string& dir, const std::string& prefix) {
    DIR* listing = ::opendir(dir.c_str());
    if (listing == nullptr) {
        return;
    }
    const std::time_t now = std::time(nullptr);
    while (const dirent* entry = ::readdir(listing)) {
        const std::string name = entry->d_name;
        if (name.compare(0, prefix.size(), prefix) != 0) {
            continue;
        }
        std::string path = dir;
        path.append("/").append(name);
        struct stat info {};
        if (::lstat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
            continue;
        }
        const long pid = std::strtol(name.c_str() + prefix.size(), nullptr, 10);
        const bool writerGone =
            pid > 0 && ::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH;
        if (writerGone || now - info.st_mtime > kStaleSeconds) {
            ::unlink(path.c_str());
        }
    }
    ::closedir(listing);
}

void syncDirectory(const std::string& dir) {
    const int fd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

ReplaceResult fail(ReplaceResult result, std::string& error, const std::string& cause) {
    error = cause;
    return result;
}

}  // namespace

ReplaceResult ReplaceWhole(const std::string& path, const std::string& text, std::string& error) {
    // A symbolic link stays a link: the file it points to is replaced.
    std::string target = path;
    struct stat linkInfo {};
    if (::lstat(path.c_str(), &linkInfo) == 0 && S_ISLNK(linkInfo.st_mode)) {
        std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr),
                                                             &std::free);
        if (!resolved) {
            return fail(ReplaceResult::NotReplaceable, error, "a link to no file");
        }
        target = resolved.get();
    }

    struct stat info {};
    const bool exists = ::stat(target.c_str(), &info) == 0;
    if (exists && !S_ISREG(info.st_mode)) {
        return fail(ReplaceResult::NotReplaceable, error, "not a regular file");
    }
    if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) {
        return fail(ReplaceResult::NotReplaceable, error, std::strerror(errno));
    }

    const std::size_t slash = target.rfind('/');
    const std::string dir = slash == std::string::npos
                                ? std::string(".")
                                : (slash == 0 ? "/" : target.substr(0, slash));
    const std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    if (base.empty()) {
        return fail(ReplaceResult::NotReplaceable, error, "not a file name");
    }

    const std::string prefix = TempPrefix(base);
    removeStaleTemps(dir, prefix);
    std::string tempPath;
    const int fd = createBeside(dir, prefix, exists ? S_IRUSR | S_IWUSR : 0666, tempPath);
    if (fd < 0) {
        return fail(
            ReplaceResult::NotReplaceable, error,
            std::string("cannot create a temporary file beside it: ") + std::strerror(errno));
    }
    // The new file takes the old one's place, so it takes its mode and, where
    // the process may, its owner.
    if (exists) {
        bool kept = ::fchmod(fd, info.st_mode & 07777) == 0;
        if (kept && (info.st_uid != ::geteuid() || info.st_gid != ::getegid())) {
            kept = ::fchown(fd, info.st_uid, info.st_gid) == 0;
        }
        if (!kept) {
            // Replacing the file would change who may read it: keep it.
            const int cause = errno;
            ::close(fd);
            ::unlink(tempPath.c_str());
            return fail(ReplaceResult::NotReplaceable, error,
                        std::string("cannot keep its owner and mode: ") + std::strerror(cause));
        }
    }
    bool ok = writeAll(fd, text) && ::fsync(fd) == 0;
    int cause = ok ? 0 : errno;
    ok = ::close(fd) == 0 && ok;
    cause = cause != 0 ? cause : (ok ? 0 : errno);
    ok = ok && ::rename(tempPath.c_str(), target.c_str()) == 0;
    cause = cause != 0 ? cause : (ok ? 0 : errno);
    if (!ok) {
        ::unlink(tempPath.c_str());
        return fail(ReplaceResult::Failed, error, std::strerror(cause));
    }
    syncDirectory(dir);
    return ReplaceResult::Replaced;
}

bool CreateNewFile(const std::string& path, const std::string& text, const std::string& like,
                   std::string& error) {
    struct stat likeInfo {};
    const bool hasLike = !like.empty() && ::stat(like.c_str(), &likeInfo) == 0;
    // O_EXCL fails on any existing name, a dangling link included, so a
    // link planted in a shared folder cannot send the text elsewhere.
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                          hasLike ? likeInfo.st_mode & 0777 : 0666);
    if (fd < 0) {
        error = std::strerror(errno);
        return false;
    }
    // The copy of a file shared with a group stays shared with that group
    // where the user may give it to it; elsewhere it keeps the user's group.
    if (hasLike && likeInfo.st_gid != ::getegid() &&
        ::fchown(fd, static_cast<uid_t>(-1), likeInfo.st_gid) != 0) {
        errno = 0;
    }
    bool ok = (!hasLike || ::fchmod(fd, likeInfo.st_mode & 0777) == 0) && writeAll(fd, text) &&
              ::fsync(fd) == 0;
    const int cause = errno;
    ok = ::close(fd) == 0 && ok;
    if (!ok) {
        error = std::strerror(cause);
        ::unlink(path.c_str());
    }
    return ok;
}

bool WriteInPlace(const std::string& path, const std::string& text) {
    // Never blocks on a pipe that nobody reads: it fails at once instead.
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
    if (fd < 0) {
        return false;
    }
    struct stat info {};
    const bool regular = ::fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
    if (regular) {
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
        // Room for the whole text before the old bytes are touched. A file
        // system without the call (EOPNOTSUPP, EINVAL) is written as before.
        const int reserved =
            text.empty() ? 0 : ::posix_fallocate(fd, 0, static_cast<off_t>(text.size()));
        if (reserved != 0 && reserved != EOPNOTSUPP && reserved != EINVAL) {
            ::close(fd);
            return false;
        }
    }
    bool ok = writeAll(fd, text);
    if (ok && regular) {
        ok = ::ftruncate(fd, static_cast<off_t>(text.size())) == 0 && ::fsync(fd) == 0;
    }
    return ::close(fd) == 0 && ok;
}

}  // namespace document
}  // namespace zunokeymapmanager
