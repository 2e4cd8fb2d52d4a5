//
// FileSystem.cpp
//
// The parts of file access that read the same on every platform; the save
// itself is in FileSystemPosix.cpp and FileSystemWindows.cpp.
//

#include "document/FileSystem.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <functional>
#include <sstream>
#include <system_error>
#include <thread>

#include <Poco/Exception.h>

namespace zunokeymapmanager {
namespace document {

bool NativePath(const std::string& path, std::filesystem::path& out) {
    try {
        // Deprecated in C++20 for char8_t; in C++17 it is the one way to say
        // that narrow text is UTF-8 rather than the ANSI code page.
        out = std::filesystem::u8path(path);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

FileKind KindOf(const std::string& path) {
    std::filesystem::path native;
    if (!NativePath(path, native)) {
        return FileKind::Missing;
    }
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(native, error);
    if (error || !std::filesystem::exists(status)) {
        return FileKind::Missing;
    }
    return std::filesystem::is_regular_file(status) ? FileKind::Regular : FileKind::Other;
}

std::string ReadBytes(const std::string& path) {
    // Only regular files are read: a pipe or a device could block the host forever.
    std::filesystem::path native;
    if (KindOf(path) != FileKind::Regular || !NativePath(path, native)) {
        throw Poco::OpenFileException(path);
    }
    std::ifstream in(native, std::ios::in | std::ios::binary);
    if (!in) {
        throw Poco::OpenFileException(path);
    }
    std::ostringstream content;
    content << in.rdbuf();
    if (in.bad()) {
        throw Poco::ReadFileException(path);
    }
    return content.str();
}

bool WriteFile(const std::string& path, const std::string& text) {
    std::string error;
    switch (ReplaceWhole(path, text, error)) {
        case ReplaceResult::Replaced:
            return true;
        case ReplaceResult::NotReplaceable:
            return WriteInPlace(path, text);
        case ReplaceResult::Failed:
            break;
    }
    return false;
}

std::string TempPrefix(const std::string& base) {
    // FNV-1a: the same name gives the same prefix in every process, so a
    // later save finds what a killed one left.
    std::uint32_t hash = 2166136261U;
    for (const char c : base) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    }
    static const char kHex[] = "0123456789abcdef";
    std::string prefix = ".zkm-";
    for (int shift = 28; shift >= 0; shift -= 4) {
        prefix += kHex[(hash >> shift) & 0xFU];
    }
    return prefix + "-";
}

namespace {

unsigned nextCount() {
    static std::atomic<unsigned> counter{0};
    return counter.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

TempSuffixes::TempSuffixes(unsigned processId)
    : random_(processId ^
              static_cast<unsigned>(std::hash<std::thread::id>()(std::this_thread::get_id())) ^
              static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
              (nextCount() << 16)) {}

std::string TempSuffixes::next() {
    static const char kAlphabet[] =
        "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::string suffix(8, '0');
    for (char& c : suffix) {
        c = kAlphabet[random_() % (sizeof(kAlphabet) - 1)];
    }
    return suffix;
}

}  // namespace document
}  // namespace zunokeymapmanager
