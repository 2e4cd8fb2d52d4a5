//
// FileSystemWindows.cpp
//
// The save on Windows: a new file beside the target, moved over it.
//

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <algorithm>
#include <string>
#include <system_error>

#include "document/FileSystem.h"

namespace zunokeymapmanager {
namespace document {

namespace {

namespace fs = std::filesystem;

// Another program (a virus scanner, an indexer, a text editor) may hold the
// target open without letting it be replaced; the first two let go soon.
constexpr int kMoveAttempts = 5;
constexpr DWORD kMoveRetryMs = 20;

// Writes the whole text, in pieces a DWORD can count.
bool writeAll(HANDLE file, const std::string& text) {
    const char* data = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(left, 1U << 30));
        DWORD written = 0;
        if (!::WriteFile(file, data, chunk, &written, nullptr) || written == 0) {
            return false;
        }
        data += written;
        left -= written;
    }
    return true;
}

// Creates a new, exclusive file in `dir` named after `base`; an invalid
// handle when none can be made there.
HANDLE createBeside(const fs::path& dir, const std::wstring& base, fs::path& tempPath) {
    TempSuffixes suffixes(static_cast<unsigned>(::GetCurrentProcessId()));
    for (int attempt = 0; attempt < 64; ++attempt) {
        const std::string suffix = suffixes.next();
        tempPath = dir / (L"." + base + L".save-" + std::wstring(suffix.begin(), suffix.end()));
        const HANDLE file = ::CreateFileW(tempPath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            return file;
        }
        const DWORD error = ::GetLastError();
        if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS) {
            break;
        }
    }
    return INVALID_HANDLE_VALUE;
}

bool heldByAnother(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
           error == ERROR_LOCK_VIOLATION;
}

// Moves the new file over the target in one step, waiting a little for a
// program that holds the target open.
bool moveOver(const fs::path& tempPath, const fs::path& target, bool& held) {
    for (int attempt = 0; attempt < kMoveAttempts; ++attempt) {
        if (::MoveFileExW(tempPath.c_str(), target.c_str(),
                          MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
            return true;
        }
        held = heldByAnother(::GetLastError());
        if (!held) {
            return false;
        }
        ::Sleep(kMoveRetryMs);
    }
    return false;
}

}  // namespace

bool WriteFile(const std::string& path, const std::string& text) {
    fs::path target;
    if (!NativePath(path, target)) {
        return false;
    }
    std::error_code error;
    // A symbolic link stays a link: the file it points to is replaced.
    if (fs::is_symlink(target, error)) {
        const fs::path resolved = fs::canonical(target, error);
        if (error) {
            return WriteInPlace(path, text);  // dangling or looping link
        }
        target = resolved;
    }

    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && KindOf(path) != FileKind::Regular) {
        return WriteInPlace(path, text);  // a device is written, never replaced
    }
    if (exists && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return WriteInPlace(path, text);  // a read-only file stays as it is
    }

    const fs::path dir = target.has_parent_path() ? target.parent_path() : fs::path(L".");
    const std::wstring base = target.filename().wstring();
    if (base.empty()) {
        return WriteInPlace(path, text);
    }
    fs::path tempPath;
    const HANDLE file = createBeside(dir, base, tempPath);
    if (file == INVALID_HANDLE_VALUE) {
        return WriteInPlace(path, text);
    }
    bool ok = writeAll(file, text) && ::FlushFileBuffers(file);
    ok = ::CloseHandle(file) && ok;
    bool held = false;
    ok = ok && moveOver(tempPath, target, held);
    if (!ok) {
        ::DeleteFileW(tempPath.c_str());
        // The new text could not take the held file's place; it may still
        // be written into it, if the holder allows that.
        return held && WriteInPlace(path, text);
    }
    return true;
}

}  // namespace document
}  // namespace zunokeymapmanager
