// Helpers shared by the test suites: loading text, saving to text, and
// watching the failure callback.

#ifndef ZUNO_KEYMAPMANAGER_TESTS_TESTSUPPORT_H
#define ZUNO_KEYMAPMANAGER_TESTS_TESTSUPPORT_H

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <Poco/JSON/Object.h>
#include <Poco/JSON/ParseHandler.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>
#include <Poco/TemporaryFile.h>

#include <zuno-keymapmanager/keymapmanager.h>

namespace testsupport {

namespace km = zunokeymapmanager;
using DocPtr = std::unique_ptr<km::KeymapConfig>;

/// Records every failure callback: how often, with which path, on which thread.
/// Registers itself on construction and unregisters on destruction.
class CallbackRecorder {
public:
    struct Call {
        std::string path;
        std::thread::id thread;
    };
    CallbackRecorder() {
        take();
        callbacks_.loadConfigAndInfoFailed = [](const std::string& path) {
            std::lock_guard<std::mutex> lock(mutex_);
            calls_.push_back({path, std::this_thread::get_id()});
        };
        km::SetCallbacks(&callbacks_);
    }
    ~CallbackRecorder() { km::SetCallbacks(nullptr); }
    CallbackRecorder(const CallbackRecorder&) = delete;
    CallbackRecorder& operator=(const CallbackRecorder&) = delete;

    std::vector<Call> take() {
        std::lock_guard<std::mutex> lock(mutex_);
        return std::exchange(calls_, {});
    }

private:
    static inline std::mutex mutex_;
    static inline std::vector<Call> calls_;
    KeymapManagerCallbacks callbacks_{};
};

/// A keymap loaded from host text (the path is a name no built-in has).
inline DocPtr loadText(const std::string& text, const std::string& path = "host-text") {
    return DocPtr(km::LoadKeymapConfigAndInfo(path, text));
}

/// A gamepad keymap loaded from host text.
inline DocPtr loadJoystickText(const std::string& text, const std::string& path = "host-text") {
    return DocPtr(km::LoadJoystickConfigAndInfo(path, text));
}

/// The file at the UTF-8 `path` as bytes; empty when it cannot be read.
inline std::string readBytes(const std::string& path) {
    std::ifstream in(std::filesystem::u8path(path), std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

/// Replaces the file at the UTF-8 `path` with `text`, byte for byte.
inline void writeBytes(const std::string& path, const std::string& text) {
    std::ofstream(std::filesystem::u8path(path), std::ios::binary | std::ios::trunc) << text;
}

/// A temporary file path that is removed again with the object.
class TempFile {
public:
    TempFile() : path_(Poco::TemporaryFile::tempName()) { writeBytes(path_, ""); }
    ~TempFile() {
        std::error_code error;
        std::filesystem::remove(std::filesystem::u8path(path_), error);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    const std::string& path() const { return path_; }
    std::string read() const { return readBytes(path_); }
    void write(const std::string& text) const { writeBytes(path_, text); }

private:
    std::string path_;
};

/// A fresh directory, removed with everything in it. Names in it are UTF-8.
class TempDir {
public:
    TempDir() : path_(Poco::TemporaryFile::tempName()) {
        std::filesystem::create_directory(std::filesystem::u8path(path_));
    }
    ~TempDir() {
        std::error_code error;
        std::filesystem::remove_all(std::filesystem::u8path(path_), error);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::string file(const std::string& name) const { return path_ + "/" + name; }
    /// The names in the directory, sorted.
    std::vector<std::string> entries() const {
        std::vector<std::string> names;
        for (const auto& entry :
             std::filesystem::directory_iterator(std::filesystem::u8path(path_))) {
            names.push_back(entry.path().filename().u8string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::string path_;
};

/// The text the library saves for `doc`.
inline std::string saveText(km::KeymapConfig* doc) {
    TempFile file;
    km::SaveKeymapConfigAndInfo(file.path(), doc);
    return file.read();
}

/// Parses a JSON object (throws on malformed text: tests feed it good text).
inline Poco::JSON::Object::Ptr parseObject(const std::string& text) {
    Poco::JSON::Parser parser(new Poco::JSON::ParseHandler(false));
    return parser.parse(text).extract<Poco::JSON::Object::Ptr>();
}

/// Writes a JSON object the way the library saves documents.
inline std::string stringify(const Poco::JSON::Object& object) {
    std::ostringstream out;
    Poco::JSON::Stringifier::stringify(object, out, 4, -1, Poco::JSON_WRAP_STRINGS);
    return out.str();
}

/// An item's JSON object, written and parsed again (so nested values are plain JSON).
inline Poco::JSON::Object::Ptr itemJson(const km::ConfigItem& item) {
    return parseObject(stringify(item.ConvertToJsonObject()));
}

/// A document text holding `items` (comma-separated item objects) and a minimal info.
inline std::string documentWith(const std::string& items) {
    return R"({"info":{"background_color":"000000FF","visibility":true},"keymaps":[)" + items +
           "]}";
}

/// The JSON text of a fresh item of `type`, as the library writes it.
inline std::string freshItemText(const std::string& type) {
    std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
    return item ? stringify(item->ConvertToJsonObject()) : std::string();
}

}  // namespace testsupport

#endif  // ZUNO_KEYMAPMANAGER_TESTS_TESTSUPPORT_H
