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
#include <chrono>
#include <cwchar>
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

std::wstring wide(const std::string& ascii) {
    return std::wstring(ascii.begin(), ascii.end());
}

// Creates "<prefix><pid>-<random>" in `dir`, exclusively; an invalid handle
// when none can be made there. The process id tells a later save whether the
// file's writer may still be at work.
HANDLE createBeside(const fs::path& dir, const std::string& prefix, fs::path& tempPath) {
    const DWORD pid = ::GetCurrentProcessId();
    TempSuffixes suffixes(static_cast<unsigned>(pid));
    for (int attempt = 0; attempt < 64; ++attempt) {
        tempPath = dir / wide(prefix + std::to_string(pid) + "-" + suffixes.next());
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

bool processGone(unsigned long pid) {
    const HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(pid));
    if (process == nullptr) {
        return ::GetLastError() == ERROR_INVALID_PARAMETER;
    }
    const bool gone = ::WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
    ::CloseHandle(process);
    return gone;
}

// Removes the temporary files of earlier saves of this target whose writer
// is gone (or that are too old to be anyone's work in progress).
void removeStaleTemps(const fs::path& dir, const std::string& prefix) {
    std::error_code error;
    fs::directory_iterator entries(dir, error);
    const auto now = fs::file_time_type::clock::now();
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        const std::wstring name = entries->path().filename().wstring();
        if (name.compare(0, prefix.size(), wide(prefix)) != 0 || !entries->is_regular_file(error)) {
            continue;
        }
        const unsigned long pid = std::wcstoul(name.c_str() + prefix.size(), nullptr, 10);
        const auto written = entries->last_write_time(error);
        const bool old = !error && now - written > std::chrono::hours(1);
        if ((pid != 0 && processGone(pid)) || old) {
            std::error_code ignored;
            fs::remove(entries->path(), ignored);
        }
    }
}

std::string describe(DWORD code) {
    return std::system_category().message(static_cast<int>(code));
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

ReplaceResult ReplaceWhole(const std::string& path, const std::string& text, std::string& error) {
    fs::path target;
    if (!NativePath(path, target)) {
        error = "not a UTF-8 path";
        return ReplaceResult::Failed;
    }
    std::error_code code;
    // A symbolic link stays a link: the file it points to is replaced.
    if (fs::is_symlink(target, code)) {
        const fs::path resolved = fs::canonical(target, code);
        if (code) {
            error = "a link to no file";
            return ReplaceResult::NotReplaceable;
        }
        target = resolved;
    }

    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && KindOf(path) != FileKind::Regular) {
        error = "not a regular file";
        return ReplaceResult::NotReplaceable;
    }
    if (exists && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        error = "a read-only file";
        return ReplaceResult::Failed;  // it stays as it is
    }

    const fs::path dir = target.has_parent_path() ? target.parent_path() : fs::path(L".");
    const std::string base = target.filename().u8string();
    if (base.empty()) {
        error = "not a file name";
        return ReplaceResult::NotReplaceable;
    }
    const std::string prefix = TempPrefix(base);
    removeStaleTemps(dir, prefix);
    fs::path tempPath;
    const HANDLE file = createBeside(dir, prefix, tempPath);
    if (file == INVALID_HANDLE_VALUE) {
        error = "cannot create a temporary file beside it: " + describe(::GetLastError());
        return ReplaceResult::NotReplaceable;
    }
    bool ok = writeAll(file, text) && ::FlushFileBuffers(file);
    DWORD cause = ok ? 0 : ::GetLastError();
    ok = ::CloseHandle(file) && ok;
    bool held = false;
    ok = ok && moveOver(tempPath, target, held);
    if (!ok) {
        cause = cause != 0 ? cause : ::GetLastError();
        ::DeleteFileW(tempPath.c_str());
        error = held ? "held open by another program" : describe(cause);
        // The new text could not take the held file's place; it may still
        // be written into it, if the holder allows that.
        return held ? ReplaceResult::NotReplaceable : ReplaceResult::Failed;
    }
    return ReplaceResult::Replaced;
}

bool CreateNewFile(const std::string& path, const std::string& text, const std::string& /*like*/,
                   std::string& error) {
    fs::path native;
    if (!NativePath(path, native)) {
        error = "not a UTF-8 path";
        return false;
    }
    const HANDLE file =
        ::CreateFileW(native.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                      FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        error = describe(::GetLastError());
        return false;
    }
    bool ok = writeAll(file, text) && ::FlushFileBuffers(file);
    const DWORD cause = ok ? 0 : ::GetLastError();
    ok = ::CloseHandle(file) && ok;
    if (!ok) {
        error = describe(cause);
        ::DeleteFileW(native.c_str());
    }
    return ok;
}

bool WriteInPlace(const std::string& path, const std::string& text) {
    fs::path native;
    if (!NativePath(path, native)) {
        return false;
    }
    // Shared as a plain stream would share it: a holder that lets others
    // write lets this write too.
    const HANDLE file = ::CreateFileW(native.c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    // Room for the whole text before the old bytes are touched (an allocation
    // below the file's size would cut it, so only a growing file asks).
    const bool disk = ::GetFileType(file) == FILE_TYPE_DISK;
    LARGE_INTEGER size{};
    bool ok = !disk || ::GetFileSizeEx(file, &size);
    if (ok && disk && static_cast<LONGLONG>(text.size()) > size.QuadPart) {
        FILE_ALLOCATION_INFO allocation{};
        allocation.AllocationSize.QuadPart = static_cast<LONGLONG>(text.size());
        // Only a full disk stops the write; a file system (or an emulation)
        // that cannot reserve is written as before.
        if (!::SetFileInformationByHandle(file, FileAllocationInfo, &allocation,
                                          sizeof(allocation))) {
            const DWORD error = ::GetLastError();
            ok = error != ERROR_DISK_FULL && error != ERROR_HANDLE_DISK_FULL;
        }
    }
    ok = ok && writeAll(file, text);
    if (ok && disk) {
        ok = ::SetEndOfFile(file) && ::FlushFileBuffers(file);
    }
    return ::CloseHandle(file) && ok;
}

}  // namespace document
}  // namespace zunokeymapmanager
