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
#include <unistd.h>
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
    // did, while anything written to a closed output is dropped.
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (::fcntl(fd, F_GETFD) == -1 && ::open("/dev/null", O_WRONLY) == -1) {
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
