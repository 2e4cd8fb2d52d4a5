//
// DocumentIO.cpp
//

#include "document/DocumentIO.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include <Poco/Exception.h>
#include <Poco/JSON/ParseHandler.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/ConfigFactory.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {
namespace document {

namespace {

// Stringifier options: strings quoted and escaped, no Unicode escaping.
constexpr int kWriteOptions = Poco::JSON_WRAP_STRINGS;
constexpr unsigned kIndent = 4;

Poco::Dynamic::Var parse(const std::string& text, const std::string& path) {
    Poco::JSON::Parser parser(new Poco::JSON::ParseHandler(false));
    if (!text.empty()) {
        return parser.parse(text);
    }
    // Only regular files are read: a pipe or a device could block the host forever.
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
        throw Poco::OpenFileException(path);
    }
    std::ifstream in(path, std::ios::in);
    if (!in) {
        throw Poco::OpenFileException(path);
    }
    return parser.parse(in);
}

}  // namespace

void Read(const std::string& text, const std::string& path, KeymapConfig& doc) {
    const json::ObjectPtr root = parse(text, path).extract<Poco::JSON::Object::Ptr>();
    if (root.isNull()) {
        throw Poco::NullPointerException();
    }

    if (root->has(kFieldKeymaps)) {
        const json::ArrayPtr elements = json::array(root, kFieldKeymaps);
        for (std::size_t i = 0; i < elements->size(); ++i) {
            std::unique_ptr<ConfigItem> item(
                ConfigFactory::ProduceConfigItem(elements->getObject(i)));
            if (item) {
                // Make room first, so the document owns the item the moment it is released.
                doc.items.push_back(nullptr);
                doc.items.back() = item.release();
            }
        }
    }

    doc.info->FillFromJsonObject(json::object(root, kFieldInfo));

    if (root->has(kFieldParam)) {
        doc.param->FillFromJsonObject(json::object(root, kFieldParam));
    }
}

std::string Write(const KeymapConfig& doc) {
    json::ArrayPtr elements = new Poco::JSON::Array();
    for (const ConfigItem* item : doc.items) {
        if (item != nullptr) {
            elements->add(json::ObjectPtr(new Poco::JSON::Object(item->ConvertToJsonObject())));
        }
    }
    const bool isJoystick = doc.info != nullptr && doc.info->is_joystick;

    json::ObjectPtr root = json::newObject();
    root->set(kFieldKeymaps, elements);
    root->set(kFieldInfo, json::ObjectPtr(new Poco::JSON::Object(
                              doc.info != nullptr ? doc.info->ConvertToJsonObject()
                                                  : ConfigInfo().ConvertToJsonObject())));
    root->set(kFieldParam,
              json::ObjectPtr(new Poco::JSON::Object(
                  doc.param != nullptr ? doc.param->ConvertToJsonObject(isJoystick)
                                       : ConfigParam().ConvertToJsonObject(isJoystick))));

    std::ostringstream out;
    Poco::JSON::Stringifier::stringify(root, out, kIndent, -1, kWriteOptions);
    return out.str();
}

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

// Truncates the file and writes it in place: a failure midway leaves a
// truncated file. Used only where no file can be made beside the target.
bool writeInPlace(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::out | std::ios::trunc | std::ios::binary);
    if (!out) {
        return false;
    }
    out << text;
    out.close();
    return static_cast<bool>(out);
}

// Opens a new, exclusive file in `dir` named after `base`; -1 when none can
// be made there. `mode` goes through the umask like any new file's.
int createBeside(const std::string& dir, const std::string& base, mode_t mode,
                 std::string& tempPath) {
    static std::atomic<unsigned> counter{0};
    std::minstd_rand random(
        static_cast<unsigned>(::getpid()) ^
        static_cast<unsigned>(std::hash<std::thread::id>()(std::this_thread::get_id())) ^
        static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
        (counter.fetch_add(1, std::memory_order_relaxed) << 16));
    static const char kAlphabet[] =
        "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    for (int attempt = 0; attempt < 64; ++attempt) {
        std::string suffix(8, '0');
        for (char& c : suffix) {
            c = kAlphabet[random() % (sizeof(kAlphabet) - 1)];
        }
        tempPath = dir + "/." + base + ".save-" + suffix;
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
            return writeInPlace(path, text);  // dangling or looping link
        }
        target = resolved.get();
    }

    struct stat info {};
    const bool exists = ::stat(target.c_str(), &info) == 0;
    if (exists && !S_ISREG(info.st_mode)) {
        return writeInPlace(path, text);  // a device or a pipe is written, never replaced
    }
    if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) {
        return writeInPlace(path, text);  // a file the user may not write stays as it is
    }

    const std::size_t slash = target.rfind('/');
    const std::string dir = slash == std::string::npos
                                ? std::string(".")
                                : (slash == 0 ? "/" : target.substr(0, slash));
    const std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    if (base.empty()) {
        return writeInPlace(path, text);
    }

    std::string tempPath;
    const int fd = createBeside(dir, base, exists ? S_IRUSR | S_IWUSR : 0666, tempPath);
    if (fd < 0) {
        return writeInPlace(path, text);
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
            return writeInPlace(path, text);
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
