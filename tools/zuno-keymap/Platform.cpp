//
// Platform.cpp
//

#include "Platform.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <thread>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// shellapi.h needs what windows.h defines.
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#endif

namespace zunokeymap {

#ifdef _WIN32

namespace {

std::string toUtf8(const wchar_t* text) {
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1) {
        return std::string();
    }
    std::string out(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), size, nullptr, nullptr);
    out.pop_back();  // the terminating null
    return out;
}

std::vector<std::string> arguments(int argc, char** argv) {
    int count = 0;
    wchar_t** wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::string> out;
    if (wide != nullptr && count == argc) {
        for (int i = 0; i < count; ++i) {
            out.push_back(toUtf8(wide[i]));
        }
    } else {
        out.assign(argv, argv + argc);
    }
    ::LocalFree(wide);
    return out;
}

}  // namespace

void PrepareStandardStreams() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

#else

namespace {

std::vector<std::string> arguments(int argc, char** argv) {
    return std::vector<std::string>(argv, argv + argc);
}

}  // namespace

void PrepareStandardStreams() {
    // open() takes the lowest free descriptor, so each closed one is filled
    // in turn. Write-only: reading a closed standard input still fails, as it
    // did. A closed standard output becomes /dev/full, so that output meant
    // for it fails like any failed write (exit status 2) instead of being
    // lost in silence; a closed standard error drops what is written.
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (::fcntl(fd, F_GETFD) != -1) {
            continue;
        }
        const int opened = fd == STDOUT_FILENO ? ::open("/dev/full", O_WRONLY) : -1;
        if (opened == -1 && ::open("/dev/null", O_WRONLY) == -1) {
            return;
        }
    }
}

#endif

Utf8CommandLine::Utf8CommandLine(int argc, char** argv) : arguments_(arguments(argc, argv)) {
    for (std::string& argument : arguments_) {
        pointers_.push_back(argument.data());
    }
    pointers_.push_back(nullptr);
}

std::string LockFileName(const std::string& base) {
    std::string name = "." + base + ".zuno-keymap-lock";
    constexpr std::size_t kLongestName = 255;
    if (name.size() <= kLongestName) {
        return name;
    }
    // FNV-1a: every process finds the same name for the same file.
    std::uint32_t hash = 2166136261U;
    for (const char c : base) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    }
    static const char kHex[] = "0123456789abcdef";
    std::string hex;
    for (int shift = 28; shift >= 0; shift -= 4) {
        hex += kHex[(hash >> shift) & 0xFU];
    }
    return ".zuno-keymap-" + hex + ".lock";
}

namespace {

// How long a waiting writer sleeps between two tries.
constexpr std::chrono::milliseconds kLockRetry(20);

std::string waitedTooLong(int timeoutMs) {
    return "another program is writing it (waited " + std::to_string(timeoutMs / 1000) + " s)";
}

}  // namespace

FileLock::FileLock(const std::string& path) : path_(path) {}

FileLock::~FileLock() {
    release();
}

#ifdef _WIN32

namespace {

std::wstring wide(const std::string& path) {
    return std::filesystem::u8path(path).wstring();
}

}  // namespace

bool FileLock::acquire(int timeoutMs, std::string& error) {
    std::filesystem::path native;
    try {
        native = std::filesystem::u8path(path_);
    } catch (const std::exception&) {
        error = "not a file name";
        return false;
    }
    const std::filesystem::path folder = native.parent_path();
    lockPath_ =
        (folder / std::filesystem::u8path(LockFileName(native.filename().u8string()))).u8string();
    const std::wstring lockName = wide(lockPath_);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;) {
        // Shared for deletion: the holder removes the file while others wait on it.
        HANDLE handle = ::CreateFileW(lockName.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_HIDDEN, nullptr);
        const DWORD opened = handle == INVALID_HANDLE_VALUE ? ::GetLastError() : ERROR_SUCCESS;
        bool held = false;
        if (handle != INVALID_HANDLE_VALUE) {
            OVERLAPPED whole{};
            if (::LockFileEx(handle, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                             &whole)) {
                // A file its last holder removed is no lock any more.
                FILE_STANDARD_INFO standard{};
                held = ::GetFileInformationByHandleEx(handle, FileStandardInfo, &standard,
                                                      sizeof standard) &&
                       !standard.DeletePending;
            } else if (::GetLastError() != ERROR_LOCK_VIOLATION) {
                ::CloseHandle(handle);
                error = "cannot lock '" + lockPath_ + "'";
                return false;
            }
            if (held) {
                handle_ = handle;
                return true;
            }
            ::CloseHandle(handle);
        } else if (opened != ERROR_ACCESS_DENIED && opened != ERROR_SHARING_VIOLATION) {
            // ERROR_ACCESS_DENIED is also what a file being removed answers.
            error = "cannot make the lock file '" + lockPath_ + "'";
            return false;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            error = opened == ERROR_SUCCESS
                        ? waitedTooLong(timeoutMs)
                        : "cannot open the lock file '" + lockPath_ + "' (access denied)";
            return false;
        }
        std::this_thread::sleep_for(kLockRetry);
    }
}

void FileLock::release() {
    if (handle_ == nullptr) {
        return;
    }
    FILE_DISPOSITION_INFO remove{};
    remove.DeleteFile = TRUE;
    ::SetFileInformationByHandle(handle_, FileDispositionInfo, &remove, sizeof remove);
    ::CloseHandle(handle_);  // releases the lock
    handle_ = nullptr;
}

int DescriptorNamed(const std::string& /*path*/) {
    return -1;
}

#else

namespace {

bool sameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace

bool FileLock::acquire(int timeoutMs, std::string& error) {
    // Beside the file a link points to, as the save replaces that one.
    std::string target = path_;
    std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path_.c_str(), nullptr),
                                                         &std::free);
    if (resolved) {
        target = resolved.get();
    }
    const std::size_t slash = target.rfind('/');
    const std::string folder =
        slash == std::string::npos ? "." : (slash == 0 ? "/" : target.substr(0, slash));
    const std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    lockPath_ = folder + "/" + LockFileName(base);
    struct stat file {};
    const bool exists = ::stat(target.c_str(), &file) == 0;

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;) {
        int fd = ::open(lockPath_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                        exists ? file.st_mode & 0666 : 0666);
        if (fd >= 0 && exists) {
            // Who may write the file may take its lock, and nobody else.
            if (::fchmod(fd, file.st_mode & 0666) != 0 ||
                ((file.st_uid != ::geteuid() || file.st_gid != ::getegid()) &&
                 ::fchown(fd, file.st_uid, file.st_gid) != 0 && ::geteuid() == 0)) {
                error = std::string("cannot give the lock file '") + lockPath_ +
                        "' the file's owner and mode: " + std::strerror(errno);
                ::unlink(lockPath_.c_str());
                ::close(fd);
                return false;
            }
        } else if (fd < 0 && errno == EEXIST) {
            fd = ::open(lockPath_.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
            if (fd < 0 && errno == ENOENT && std::chrono::steady_clock::now() < deadline) {
                continue;  // its holder just removed it
            }
        }
        if (fd < 0) {
            error = std::string("cannot open the lock file '") + lockPath_ +
                    "' for writing: " + std::strerror(errno);
            return false;
        }
        struct stat held {};
        if (::fstat(fd, &held) != 0 || !S_ISREG(held.st_mode)) {
            ::close(fd);
            error = "the lock file '" + lockPath_ + "' is not a regular file";
            return false;
        }
        // A write lock, which only a descriptor open for writing may take.
        struct flock whole {};
        whole.l_type = F_WRLCK;
        whole.l_whence = SEEK_SET;
        if (::fcntl(fd, F_SETLK, &whole) == 0) {
            // Its last holder may have removed it before this process got
            // the lock: only the file under the name counts.
            struct stat named {};
            if (::stat(lockPath_.c_str(), &named) == 0 && sameFile(named, held)) {
                fd_ = fd;
                return true;
            }
            errno = EAGAIN;  // as if still held: try again
        }
        const int cause = errno;
        ::close(fd);
        if (cause != EAGAIN && cause != EACCES && cause != EINTR) {
            error = std::string("cannot lock '") + lockPath_ + "': " + std::strerror(cause);
            return false;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            error = waitedTooLong(timeoutMs);
            return false;
        }
        std::this_thread::sleep_for(kLockRetry);
    }
}

void FileLock::release() {
    if (fd_ < 0) {
        return;
    }
    // Removed while held, so that a writer that opens it next sees a
    // removed file and makes a new one.
    ::unlink(lockPath_.c_str());
    ::close(fd_);  // releases the lock
    fd_ = -1;
}

int DescriptorNamed(const std::string& path) {
    namespace fs = std::filesystem;
    fs::path at;
    try {
        at = fs::u8path(path);
    } catch (const std::exception&) {
        return -1;
    }
    const std::string self = "/proc/" + std::to_string(::getpid()) + "/fd";
    // Each link of the chain is looked at: the last one names the file the
    // descriptor has open, which says nothing about the descriptor.
    for (int hop = 0; hop < 40; ++hop) {
        std::error_code code;
        const fs::path folder = fs::canonical(at.has_parent_path() ? at.parent_path() : ".", code);
        const std::string name = at.filename().string();
        if (!code && (folder == self || folder == "/dev/fd") && !name.empty() && name.size() < 10 &&
            name.find_first_not_of("0123456789") == std::string::npos) {
            return std::stoi(name);
        }
        if (!fs::is_symlink(at, code)) {
            return -1;
        }
        const fs::path target = fs::read_symlink(at, code);
        if (code) {
            return -1;
        }
        at = target.is_absolute() ? target : at.parent_path() / target;
    }
    return -1;
}

#endif

namespace {

// Writes all of `text` to the open descriptor `fd` at its own place.
bool writeDescriptor(int fd, const std::string& text, std::string& error) {
    // The tool's own output to the same descriptor comes first.
    std::cout.flush();
    std::cerr.flush();
#ifdef _WIN32
    (void)fd;
    (void)text;
    error = "no such descriptor";
    return false;
#else
    if (::fcntl(fd, F_GETFD) == -1) {
        error = "descriptor " + std::to_string(fd) + " is not open";
        return false;
    }
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t written = ::write(fd, text.data() + done, text.size() - done);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            error = std::string("the write failed: ") + std::strerror(errno);
            return false;
        }
        done += static_cast<std::size_t>(written);
    }
    return true;
#endif
}

}  // namespace

bool WriteToStream(const std::string& path, const std::string& text, std::string& error) {
    const int descriptor = DescriptorNamed(path);
    if (descriptor >= 0) {
        return writeDescriptor(descriptor, text, error);
    }
    std::filesystem::path native;
    try {
        native = std::filesystem::u8path(path);
    } catch (const std::exception&) {
        return false;
    }
    std::error_code code;
    const std::filesystem::file_status status = std::filesystem::status(native, code);
    if (code || !std::filesystem::exists(status) || std::filesystem::is_regular_file(status) ||
        std::filesystem::is_directory(status)) {
        return false;
    }
    std::ofstream out(native, std::ios::out | std::ios::binary);
    out << text;
    out.close();
    if (!out) {
        error = "the write failed";
        return false;
    }
    return true;
}

bool OpenRegularFile(const std::string& path, std::ifstream& in) {
    std::filesystem::path native;
    try {
        native = std::filesystem::u8path(path);
    } catch (const std::exception&) {
        return false;  // not UTF-8, so no file's name
    }
    std::error_code error;
    if (!std::filesystem::is_regular_file(native, error)) {
        return false;
    }
    in.open(native, std::ios::in | std::ios::binary);
    return static_cast<bool>(in);
}

}  // namespace zunokeymap
