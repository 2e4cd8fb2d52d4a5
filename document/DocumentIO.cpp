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

#include <algorithm>
#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>

#include <Poco/Exception.h>
#include <Poco/JSON/ParseHandler.h>
#include <Poco/JSON/Parser.h>

#include "model/JsonIO.h"
#include "model/LoadTrail.h"
#include "zuno-keymapmanager/model/ConfigFactory.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {
namespace document {

namespace {

constexpr unsigned kIndent = 4;
// Items are elements of the top-level "keymaps" array: two levels deep.
constexpr unsigned kItemIndent = 2 * kIndent;

// Room for one item as saved; a fair guess spares most regrowth of the output.
constexpr std::size_t kTypicalItemBytes = 2048;
// The guess is only a start: beyond this the buffer grows as it fills, so a
// host's item list full of empty slots cannot ask for memory up front.
constexpr std::size_t kMaxInitialBytes = std::size_t{16} << 20;

// An output buffer over a string that grows by doubling and is handed over
// at the end, without the copy a string stream makes.
class StringSink : public std::streambuf {
public:
    explicit StringSink(std::size_t capacity) {
        text_.resize(capacity > 0 ? capacity : 1);
        setp(text_.data(), text_.data() + text_.size());
    }

    std::string take() {
        text_.resize(written());
        setp(nullptr, nullptr);
        return std::move(text_);
    }

protected:
    int_type overflow(int_type c) override {
        if (traits_type::eq_int_type(c, traits_type::eof())) {
            return traits_type::not_eof(c);
        }
        const std::size_t used = written();
        text_.resize(text_.size() * 2);
        setp(text_.data() + used, text_.data() + text_.size());
        sputc(traits_type::to_char_type(c));
        return c;
    }

private:
    std::size_t written() const { return static_cast<std::size_t>(pptr() - text_.data()); }

    std::string text_;
};

Poco::Dynamic::Var parse(const std::string& text, const std::string& path, ReadProgress& progress) {
    Poco::JSON::Parser parser(new Poco::JSON::ParseHandler(false));
    if (!text.empty()) {
        progress.stage = ReadProgress::Stage::Parsing;
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
    // Kept as text, so that a syntax error can be located afterwards.
    std::ostringstream content;
    content << in.rdbuf();
    if (in.bad()) {
        throw Poco::ReadFileException(path);
    }
    progress.fileText = content.str();
    progress.stage = ReadProgress::Stage::Parsing;
    return parser.parse(progress.fileText);
}

}  // namespace

void Read(const std::string& text, const std::string& path, KeymapConfig& doc) {
    ReadProgress progress;
    Read(text, path, doc, progress);
}

void Read(const std::string& text, const std::string& path, KeymapConfig& doc,
          ReadProgress& progress) {
    json::trail().reset();
    progress.parsed = parse(text, path, progress);
    progress.stage = ReadProgress::Stage::Root;
    progress.root = progress.parsed.extract<Poco::JSON::Object::Ptr>();
    if (progress.root.isNull()) {
        throw Poco::NullPointerException();
    }
    const json::ObjectPtr& root = progress.root;

    progress.stage = ReadProgress::Stage::Keymaps;
    if (root->has(kFieldKeymaps)) {
        progress.elements = json::array(root, kFieldKeymaps);
        const std::size_t count = progress.elements->size();
        for (std::size_t i = 0; i < count; ++i) {
            json::trail().reset();
            progress.itemIndex = static_cast<int>(i);
            progress.item = progress.elements->getObject(i);
            if (!progress.item.isNull() && !progress.keepElements) {
                // The array lets go of the element, which the progress holds
                // until the next one: each element is freed right after its
                // item has read it, while it is still in the cache, and its
                // memory serves the items that follow. An element that is not
                // an object stays, for the diagnostic to describe.
                progress.elements->set(static_cast<unsigned int>(i), Poco::Dynamic::Var());
            }
            std::unique_ptr<ConfigItem> item(ConfigFactory::ProduceConfigItem(progress.item));
            if (item) {
                // Make room first, so the document owns the item the moment it is released.
                doc.items.push_back(nullptr);
                doc.items.back() = item.release();
            }
        }
        progress.itemIndex = -1;
        progress.item = nullptr;
    }

    json::trail().reset();
    progress.stage = ReadProgress::Stage::Info;
    doc.info->FillFromJsonObject(json::object(root, kFieldInfo));

    if (root->has(kFieldParam)) {
        json::trail().reset();
        progress.stage = ReadProgress::Stage::Param;
        doc.param->FillFromJsonObject(json::object(root, kFieldParam));
    }
    progress.stage = ReadProgress::Stage::Done;
}

std::string Write(const KeymapConfig& doc) {
    // The output is what the stringifier makes of the whole document object
    // (sorted top-level keys, indentation 4), but the items are written one
    // at a time: each item's object is freed before the next one is built.
    // Holding the objects of a large document at once costs more than
    // stringifying them, because of the memory they spread over. Converting
    // is free of side effects, so info and param can be converted first and
    // the whole text written front to back into one buffer.
    const bool isJoystick = doc.info != nullptr && doc.info->is_joystick;
    const Poco::JSON::Object info =
        doc.info != nullptr ? doc.info->ConvertToJsonObject() : ConfigInfo().ConvertToJsonObject();
    const Poco::JSON::Object param = doc.param != nullptr
                                         ? doc.param->ConvertToJsonObject(isJoystick)
                                         : ConfigParam().ConvertToJsonObject(isJoystick);

    // {"info": ..., "keymaps": [...], "param": ...}, laid out as the
    // stringifier lays out an object at the top level and an array inside it.
    StringSink sink(std::min(kTypicalItemBytes * (doc.items.size() + 1), kMaxInitialBytes));
    std::ostream out(&sink);
    const std::string member = "\n" + std::string(kIndent, ' ') + '"';
    out << '{' << member << kFieldInfo << "\": ";
    info.stringify(out, 2 * kIndent, kIndent);
    out << ',' << member << kFieldKeymaps << "\": [\n";
    bool first = true;
    for (const ConfigItem* item : doc.items) {
        if (item == nullptr) {
            continue;
        }
        out << (first ? "" : ",\n") << std::string(kItemIndent, ' ');
        first = false;
        item->ConvertToJsonObject().stringify(out, kItemIndent + kIndent, kIndent);
    }
    out << '\n' << std::string(kIndent, ' ') << "]," << member << kFieldParam << "\": ";
    param.stringify(out, 2 * kIndent, kIndent);
    out << "\n}";
    return sink.take();
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
        tempPath = dir;
        tempPath.append("/.").append(base).append(".save-").append(suffix);
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
