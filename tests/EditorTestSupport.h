// What the editor's tests share: a directory of their own with a keymap file
// in it, and requests as the page sends them.

#ifndef ZUNO_KM_TESTS_EDITORTESTSUPPORT_H
#define ZUNO_KM_TESTS_EDITORTESTSUPPORT_H

#include <Poco/File.h>
#include <Poco/TemporaryFile.h>

#include "EditorApi.h"
#include "tests/TestSupport.h"

namespace editortest {

using namespace zunokeymap::editor;

/// A directory removed again with the object, holding `name`.
class TempDir {
public:
    TempDir() : dir_(Poco::TemporaryFile::tempName()) { Poco::File(dir_).createDirectories(); }
    ~TempDir() { Poco::File(dir_).remove(true); }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::string path(const std::string& name) const { return dir_ + "/" + name; }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary | std::ios::trunc) << text;
    }
    std::string read(const std::string& name) const {
        std::string bytes;
        ReadWholeFile(path(name), bytes);
        return bytes;
    }

private:
    std::string dir_;
};

/// A document with two items: a Click on Q and a Swipehold on its defaults.
inline std::string twoItems() {
    const std::string click = testsupport::freshItemText("Click");
    Poco::JSON::Object::Ptr object = testsupport::parseObject(click);
    object->set("key", testsupport::parseObject(
                           R"({"device":"keyboard","text":"Q","scan_code":16,"virtual_key":81})"));
    return testsupport::documentWith(testsupport::stringify(*object) + "," +
                                     testsupport::freshItemText("Swipehold"));
}

inline HttpRequest request(const std::string& method, const std::string& target,
                           const std::string& token, int port, const std::string& body = "") {
    HttpRequest r;
    r.method = method;
    r.target = target;
    r.headers = {{"Host", "127.0.0.1:" + std::to_string(port)},
                 {"Authorization", "Bearer " + token}};
    if (method == "PUT" || method == "POST") {
        r.headers.emplace_back("Content-Type", "application/json");
    }
    r.body = body;
    return r;
}

}  // namespace editortest

#endif  // ZUNO_KM_TESTS_EDITORTESTSUPPORT_H
