//
// FileTrust.cpp
//

#include "FileTrust.h"

#include <filesystem>
#include <system_error>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace zunokeymap {
namespace editor {

bool IsLink(const std::string& path) {
    std::error_code code;
    return std::filesystem::is_symlink(
        std::filesystem::symlink_status(std::filesystem::u8path(path), code));
}

#ifdef _WIN32

bool IsUntrustedLink(const std::string&) {
    return false;
}

bool OwnedByUser(const std::string&) {
    return true;
}

#else

bool IsUntrustedLink(const std::string& path) {
    struct stat link {};
    if (::lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode) || link.st_uid == 0 ||
        link.st_uid == ::geteuid()) {
        return false;
    }
    const std::string folder = std::filesystem::u8path(path).parent_path().u8string();
    struct stat parent {};
    if (::stat(folder.empty() ? "." : folder.c_str(), &parent) != 0) {
        return true;  // a folder that cannot be looked at is not known to be safe
    }
    return (parent.st_mode & (S_ISVTX | S_IWOTH)) != 0;
}

bool OwnedByUser(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0 && info.st_uid == ::geteuid();
}

#endif

}  // namespace editor
}  // namespace zunokeymap
