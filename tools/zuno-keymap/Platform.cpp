//
// Platform.cpp
//

#include "Platform.h"

#include <filesystem>
#include <system_error>

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
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>
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

#ifdef _WIN32

// Replacing a file that another process holds open fails on Windows, so the
// save itself keeps two writers apart there.
FileLock::FileLock(const std::string& /*path*/) {}
FileLock::~FileLock() = default;
bool FileLock::acquire(int /*timeoutMs*/, std::string& /*error*/) {
    return true;
}

#else

FileLock::FileLock(const std::string& path) : path_(path) {}

FileLock::~FileLock() {
    if (fd_ >= 0) {
        ::close(fd_);  // releases the lock
    }
}

bool FileLock::acquire(int timeoutMs, std::string& error) {
    // The folder, not the file: a writer replaces the file by a new one (the
    // lock would stay with the old), and a file that does not exist yet has
    // no lock of its own to take.
    const std::size_t slash = path_.rfind('/');
    const std::string folder =
        slash == std::string::npos ? "." : (slash == 0 ? "/" : path_.substr(0, slash));
    fd_ = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd_ < 0) {
        return true;  // a folder that cannot be opened cannot be locked either
    }
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (::flock(fd_, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return true;  // a file system without locks: nothing to wait for
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            error =
                "another program is writing it (waited " + std::to_string(timeoutMs / 1000) + " s)";
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

#endif

bool WriteToStream(const std::string& path, const std::string& text, std::string& error) {
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
