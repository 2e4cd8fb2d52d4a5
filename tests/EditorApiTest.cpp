// The editor's HTTP contract, called as a function: the door first, then what
// each route answers and what it does to the document and the file.

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "Captions.h"
#include "CheckReport.h"
#include "tests/EditorTestSupport.h"

namespace {

using namespace editortest;
using testsupport::parseObject;

const std::string kToken = "0123456789abcdef0123456789abcdef";
const int kPort = 43117;

struct Fixture {
    TempDir dir;
    std::unique_ptr<EditorSession> session;
    std::unique_ptr<EditorApi> api;

    explicit Fixture(const std::string& text = twoItems()) {
        if (!text.empty()) {
            dir.write("doc.json", text);
        }
        session.reset(new EditorSession(dir.path("doc.json"), false, {}));
        api.reset(new EditorApi(*session, kToken, kPort));
    }
    HttpResponse call(const std::string& method, const std::string& target,
                      const std::string& body = "") {
        return api->handle(request(method, target, kToken, kPort, body));
    }
};

struct DoorCase {
    const char* name;
    const char* method;
    const char* target;
    HeaderList headers;  // replace the page's own headers when not empty
    std::string body;
    int status;
};

std::string manyUndos(std::size_t count) {
    std::string ops;
    for (std::size_t i = 0; i < count; ++i) {
        ops += i == 0 ? "" : ",";
        ops += R"({"op":"undo"})";
    }
    return R"({"client":"c","seq":1,"ops":[)" + ops + "]}";
}

std::vector<DoorCase> doorCases() {
    const std::string host = "127.0.0.1:" + std::to_string(kPort);
    const std::string bearer = "Bearer " + kToken;
    const HeaderList json = {{"Host", host},
                             {"Authorization", bearer},
                             {"Content-Type", "application/json; charset=utf-8"}};
    return {
        {"no_token", "GET", "/api/document", {{"Host", host}}, "", 401},
        {"wrong_token",
         "GET",
         "/api/document",
         {{"Host", host}, {"Authorization", "Bearer x"}},
         "",
         401},
        {"token_prefix", "GET", "/api/check?token=0123", {{"Host", host}}, "", 401},
        {"token_in_query",
         "GET",
         "/api/check?x=1&token=0123456789abcdef0123456789abcdef",
         {{"Host", host}},
         "",
         200},
        {"bearer_lower_case",
         "GET",
         "/api/check",
         {{"Host", host}, {"authorization", bearer}},
         "",
         200},
        {"localhost_host",
         "GET",
         "/api/check",
         {{"Host", "LocalHost:" + std::to_string(kPort)}, {"Authorization", bearer}},
         "",
         200},
        {"wrong_host_with_token",
         "GET",
         "/api/check",
         {{"Host", "evil.example:" + std::to_string(kPort)}, {"Authorization", bearer}},
         "",
         403},
        {"wrong_port",
         "GET",
         "/api/check",
         {{"Host", "127.0.0.1:1"}, {"Authorization", bearer}},
         "",
         403},
        {"no_host", "GET", "/api/check", {{"Authorization", bearer}}, "", 403},
        {"page_needs_host_too", "GET", "/", {{"Host", "evil.example"}}, "", 403},
        {"page_without_token", "GET", "/", {{"Host", host}}, "", 200},
        {"page_unknown", "GET", "/nothing.js", {{"Host", host}}, "", 404},
        {"page_no_traversal", "GET", "/../CMakeLists.txt", {{"Host", host}}, "", 404},
        {"page_post", "POST", "/", {{"Host", host}}, "", 405},
        {"unknown_endpoint", "GET", "/api/nothing", {}, "", 404},
        {"empty_target", "GET", "", {}, "", 400},
        {"absolute_target", "GET", "http://127.0.0.1/api/check", {}, "", 400},
        {"delete_document", "DELETE", "/api/document", {}, "", 405},
        {"get_save", "GET", "/api/save", {}, "", 405},
        {"put_without_json_type",
         "PUT",
         "/api/document",
         {{"Host", host}, {"Authorization", bearer}, {"Content-Type", "text/plain"}},
         "{}",
         415},
        {"save_form_post",
         "POST",
         "/api/save",
         {{"Host", host},
          {"Authorization", bearer},
          {"Content-Type", "application/x-www-form-urlencoded"}},
         "",
         415},
        {"huge_length",
         "PUT",
         "/api/document",
         {{"Host", host},
          {"Authorization", bearer},
          {"Content-Type", "application/json"},
          {"Content-Length", "16777217"}},
         "",
         413},
        {"huge_body", "PUT", "/api/document", json, std::string(EditorApi::kMaxBody + 1, ' '), 413},
        {"bad_length",
         "PUT",
         "/api/document",
         {{"Host", host}, {"Authorization", bearer}, {"Content-Length", "-1"}},
         "",
         400},
        {"malformed_document", "PUT", "/api/document", json, "{\"info\": [1,,]}", 400},
        {"document_fails_to_load", "PUT", "/api/document", json, "{\"keymaps\": 3}", 422},
        {"malformed_macro", "POST", "/api/macro/check", json, "{\"lines\": [", 400},
        {"macro_wrong_shape", "POST", "/api/macro/check", json, "{\"lines\": [1]}", 422},
        {"macro_lines", "POST", "/api/macro/check", json, "{\"lines\": [\"x\"]}", 200},
        {"item_of_type", "GET", "/api/item?type=Swipehold", {}, "", 200},
        {"item_unknown_type", "GET", "/api/item?type=Unknown", {}, "", 404},
        {"key_keyboard", "GET", "/api/key?device=keyboard&scan_code=30", {}, "", 200},
        {"key_unset", "GET", "/api/key", {}, "", 200},
        {"key_unknown_device", "GET", "/api/key?device=pen&scan_code=1", {}, "", 422},
        {"key_no_codes", "GET", "/api/key?device=keyboard", {}, "", 422},
        {"key_gamepad_needs_name", "GET", "/api/key?device=joystick", {}, "", 422},
        {"schema", "GET", "/api/schema", {}, "", 200},
        {"render", "GET", "/api/render.svg", {}, "", 200},
        {"snapshot", "GET", "/api/snapshot", {}, "", 200},
        {"shapes", "GET", "/api/shapes", {}, "", 200},
        {"no_background", "GET", "/api/background", {}, "", 404},
        {"edit_is_posted", "GET", "/api/edit", {}, "", 405},
        {"edit_malformed", "POST", "/api/edit", json, "{\"ops\": [", 400},
        {"edit_without_ops", "POST", "/api/edit", json, "{\"op\": \"move\"}", 422},
        {"edit_ops_not_objects", "POST", "/api/edit", json, "{\"ops\": [1]}", 422},
        {"edit_nothing", "POST", "/api/edit", json, R"({"seq": 1, "ops": []})", 200},
        {"edit_refused_op", "POST", "/api/edit", json, R"({"seq": 1, "ops": [{"op": "fly"}]})",
         200},
        {"edit_seq_missing", "POST", "/api/edit", json, R"({"ops": []})", 422},
        {"edit_seq_string", "POST", "/api/edit", json, R"({"seq": "1", "ops": []})", 422},
        {"edit_seq_fraction", "POST", "/api/edit", json, R"({"seq": 1.5, "ops": []})", 422},
        {"edit_seq_zero", "POST", "/api/edit", json, R"({"seq": 0, "ops": []})", 422},
        {"edit_seq_negative", "POST", "/api/edit", json, R"({"seq": -2, "ops": []})", 422},
        {"edit_seq_true", "POST", "/api/edit", json, R"({"seq": true, "ops": []})", 422},
        {"edit_seq_2_53", "POST", "/api/edit", json, R"({"seq": 9007199254740992, "ops": []})",
         422},
        {"edit_seq_below_2_53", "POST", "/api/edit", json,
         R"({"seq": 9007199254740991, "ops": []})", 200},
        {"edit_client_not_string", "POST", "/api/edit", json,
         R"({"client": 7, "seq": 1, "ops": []})", 422},
        {"edit_too_many_ops", "POST", "/api/edit", json, manyUndos(EditorApi::kMaxEdits + 1), 413},
        {"edit_most_ops", "POST", "/api/edit", json, manyUndos(EditorApi::kMaxEdits), 200},
        {"version", "GET", "/api/version", {}, "", 200},
        {"save_version_not_number", "POST", "/api/save", json, R"({"version": "x"})", 422},
        {"edit_form_post",
         "POST",
         "/api/edit",
         {{"Host", host}, {"Authorization", bearer}, {"Content-Type", "text/plain"}},
         "{\"ops\": []}",
         415},
        {"trigger_wrong_shape", "POST", "/api/trigger", json, "{\"keys\": []}", 422},
        {"trigger_bad_key", "POST", "/api/trigger", json, "{\"keys\": [{\"device\": \"pen\"}]}",
         422},
        {"reload_unchanged", "POST", "/api/reload", json, "{}", 200},
    };
}

TEST(EditorApi, DoorAndRoutes) {
    for (const DoorCase& c : doorCases()) {
        SCOPED_TRACE(c.name);
        Fixture f;
        HttpRequest r = request(c.method, c.target, kToken, kPort, c.body);
        if (!c.headers.empty()) {
            r.headers = c.headers;
        }
        const HttpResponse response = f.api->handle(r);
        EXPECT_EQ(response.status, c.status) << response.body;
        EXPECT_EQ(response.header("Access-Control-Allow-Origin"), "");
        EXPECT_EQ(response.header("Cache-Control"), "no-store");
        EXPECT_EQ(f.dir.read("doc.json"), twoItems()) << "the file is never written but by a save";
        if (c.status == 405) {
            EXPECT_NE(response.header("Allow"), "");
        }
        if (c.status >= 400) {
            EXPECT_FALSE(parseObject(response.body)->getValue<std::string>("error").empty());
        }
    }
}

// In the page's own process there is no socket: no Host and no token to
// show, but the methods, body types and sizes are held to the same contract.
TEST(EditorApi, InProcessHasNoDoorButTheSameRoutes) {
    for (const DoorCase& c : doorCases()) {
        SCOPED_TRACE(c.name);
        Fixture f;
        EditorApi inProcess(*f.session);
        HttpRequest r = request(c.method, c.target, kToken, kPort, c.body);
        if (!c.headers.empty()) {
            r.headers = c.headers;
        }
        r.headers.erase(std::remove_if(r.headers.begin(), r.headers.end(),
                                       [](const auto& h) {
                                           return h.first == "Host" || h.first == "Authorization";
                                       }),
                        r.headers.end());
        const HttpResponse response = inProcess.handle(r);
        if (c.status == 401 || c.status == 403) {
            EXPECT_LT(response.status, 400) << response.body;
        } else {
            EXPECT_EQ(response.status, c.status) << response.body;
        }
    }
}

TEST(EditorApi, AnswersCarryWhatThePageNeeds) {
    Fixture f;
    // The load diagnostic of a refused document, and its position when malformed.
    Poco::JSON::Object::Ptr refused =
        parseObject(f.call("PUT", "/api/document", "{\"keymaps\": 3}").body);
    EXPECT_EQ(refused->getObject("diagnostic")->getValue<std::string>("path"), "keymaps");
    Poco::JSON::Object::Ptr malformed = parseObject(f.call("PUT", "/api/document", "{\n  [").body);
    EXPECT_EQ(malformed->getValue<int>("line"), 2);
    EXPECT_GT(malformed->getValue<int>("column"), 0);
    Poco::JSON::Object::Ptr badMacro =
        parseObject(f.call("POST", "/api/macro/check", "{\"lines\":\n 7").body);
    EXPECT_EQ(badMacro->getValue<int>("line"), 2);

    EXPECT_EQ(parseObject(f.call("GET", "/api/types").body)->getArray("types")->size(),
              km::kDocumentItemTypeNames.size());
    // Keys as the tool builds them: the virtual key from the library's table.
    Poco::JSON::Object::Ptr key =
        parseObject(f.call("GET", "/api/key?device=keyboard&scan_code=285").body);
    EXPECT_EQ(key->getValue<std::string>("text"), km::CreateConfigKey("keyboard", 17, 285).text);
    EXPECT_EQ(key->getValue<int>("virtual_key"), 17);
    Poco::JSON::Object::Ptr wheel =
        parseObject(f.call("GET", "/api/key?device=mouse&scan_code=548").body);
    EXPECT_EQ(wheel->getValue<int>("virtual_key"), -1);
    EXPECT_EQ(wheel->getValue<std::string>("caption"),
              zunokeymap::render::KeyCaption(km::KeyOfCode("mouse", 548)))
        << "the caption the picture writes";
    Poco::JSON::Object::Ptr unset = parseObject(f.call("GET", "/api/key").body);
    EXPECT_EQ(unset->getValue<int>("virtual_key"), km::kUnsetKeyCode);
    Poco::JSON::Object::Ptr pad =
        parseObject(f.call("GET", "/api/key?device=joystick&text=LB").body);
    EXPECT_EQ(pad->getValue<std::string>("text"), "LB");
    // The screen turns portrait and back: the state, the version other pages
    // poll and the picture follow, the document stays.
    const auto size = [&f]() {
        const Poco::JSON::Object::Ptr state = parseObject(f.call("GET", "/api/state").body);
        const Poco::JSON::Object::Ptr polled = parseObject(f.call("GET", "/api/version").body);
        EXPECT_EQ(polled->getValue<int>("width"), state->getValue<int>("width"));
        EXPECT_EQ(polled->getValue<int>("height"), state->getValue<int>("height"));
        return std::make_pair(state->getValue<int>("width"), state->getValue<int>("height"));
    };
    const std::pair<int, int> landscape = size();
    const long version = parseObject(f.call("GET", "/api/version").body)->getValue<long>("version");
    const Poco::JSON::Object::Ptr turned =
        parseObject(f.call("POST", "/api/screen/turn", "{}").body);
    EXPECT_EQ(size(), std::make_pair(landscape.second, landscape.first));
    EXPECT_NE(turned->getValue<std::string>("svg").find("width=\"" +
                                                        std::to_string(landscape.second) + "\""),
              std::string::npos);
    EXPECT_EQ(turned->getValue<long>("version"), version);
    f.call("POST", "/api/screen/turn", "{}");
    EXPECT_EQ(size(), landscape);
    const HttpResponse page = f.call("GET", "/");
    EXPECT_NE(page.header("Content-Security-Policy").find("script-src 'self'"), std::string::npos);
    EXPECT_NE(page.header("Content-Type").find("text/html"), std::string::npos);
}

TEST(EditorApi, EditsAreLoadedCheckedAndKeptOnlyWhenTheyLoad) {
    Fixture f;
    const std::string before = f.call("GET", "/api/document").body;
    EXPECT_EQ(f.call("GET", "/api/document").header("X-Keymap-Unsaved"), "false");

    // A second Click on Q: the answer is the check, with the collision in it.
    Poco::JSON::Object::Ptr doc = parseObject(before);
    Poco::JSON::Array::Ptr items = doc->getArray("keymaps");
    items->add(items->getObject(0));
    const HttpResponse put = f.call("PUT", "/api/document", testsupport::stringify(*doc));
    ASSERT_EQ(put.status, 200) << put.body;
    EXPECT_EQ(put.header("X-Keymap-Unsaved"), "true");
    EXPECT_EQ(put.body, f.call("GET", "/api/check").body);
    EXPECT_EQ(parseObject(put.body)->getValue<int>("items"), 3);
    EXPECT_EQ(parseObject(put.body)->getArray("collisions")->size(), 1U) << put.body;
    const std::string changed = f.call("GET", "/api/document").body;
    EXPECT_NE(changed, before);

    // A refused document leaves the held one as it was.
    EXPECT_EQ(f.call("PUT", "/api/document", "{\"keymaps\": [{\"type\": 5}]}").status, 422);
    EXPECT_EQ(f.call("GET", "/api/document").body, changed);
    EXPECT_EQ(f.dir.read("doc.json"), twoItems());
}

TEST(EditorApi, SavesThroughTheLibraryAndRefusesToOverwriteChangesOnDisk) {
    Fixture f;
    Poco::JSON::Object::Ptr doc = parseObject(f.call("GET", "/api/document").body);
    doc->getArray("keymaps")->remove(1);
    ASSERT_EQ(f.call("PUT", "/api/document", testsupport::stringify(*doc)).status, 200);
    const std::string held = f.call("GET", "/api/document").body;

    ASSERT_EQ(f.call("POST", "/api/save").status, 200);
    EXPECT_EQ(f.dir.read("doc.json"), held);
    EXPECT_EQ(f.call("GET", "/api/document").header("X-Keymap-Unsaved"), "false");
    EXPECT_EQ(f.call("POST", "/api/save", "{}").status, 200) << "a save of its own is no conflict";

    f.dir.write("doc.json", "changed by someone else");
    const HttpResponse conflict = f.call("POST", "/api/save");
    EXPECT_EQ(conflict.status, 409) << conflict.body;
    EXPECT_EQ(f.dir.read("doc.json"), "changed by someone else");
    EXPECT_EQ(f.call("POST", "/api/save?force=1").status, 200);
    EXPECT_EQ(f.dir.read("doc.json"), held);

    Poco::File(f.dir.path("doc.json")).remove();
    EXPECT_EQ(f.call("POST", "/api/save").status, 409) << "a removed file is a change too";
}

// Two pages on one session: each learns of the other's changes from the
// version, and a page that has not seen them cannot save over them.
TEST(EditorApi, ASaveFromAPageThatMissedAChangeIsStale) {
    Fixture f;
    const auto version = [&f] {
        return parseObject(f.call("GET", "/api/version").body)->getValue<long>("version");
    };
    const long seen = version();
    const std::string move =
        R"({"client":"b","seq":1,"ops":[{"op":"move","item":1,"dx":0.1,"dy":0}]})";
    const HttpResponse edited = f.call("POST", "/api/edit", move);
    ASSERT_EQ(edited.status, 200) << edited.body;
    const long now = version();
    EXPECT_GT(now, seen);
    EXPECT_EQ(parseObject(edited.body)->getValue<long>("version"), now);

    const HttpResponse stale =
        f.call("POST", "/api/save", "{\"version\": " + std::to_string(seen) + "}");
    EXPECT_EQ(stale.status, 409) << stale.body;
    EXPECT_TRUE(parseObject(stale.body)->getValue<bool>("stale"));
    EXPECT_EQ(parseObject(stale.body)->getValue<long>("version"), now);
    EXPECT_EQ(f.dir.read("doc.json"), twoItems()) << "nothing written";

    const HttpResponse saved =
        f.call("POST", "/api/save", "{\"version\": " + std::to_string(now) + "}");
    ASSERT_EQ(saved.status, 200) << saved.body;
    EXPECT_EQ(f.dir.read("doc.json"), f.call("GET", "/api/document").body);
    EXPECT_GT(version(), now) << "a save moves the version: the other page learns it is saved";
}

TEST(EditorApi, NewFileStartsBlankAndIsCreatedOnSave) {
    Fixture f("");
    EXPECT_EQ(f.session->opened(), EditorSession::Opened::Missing);
    EXPECT_EQ(parseObject(f.call("GET", "/api/document").body)->getArray("keymaps")->size(), 0U);
    EXPECT_FALSE(PathExists(f.dir.path("doc.json")));
    ASSERT_EQ(f.call("POST", "/api/save").status, 200);
    EXPECT_EQ(f.dir.read("doc.json"), f.call("GET", "/api/document").body);
}

TEST(EditorApi, RecoveryFileHoldsUnsavedChangesOnly) {
    Fixture f;
    EXPECT_EQ(f.session->writeRecovery(), "") << "nothing unsaved, nothing written";
    ASSERT_EQ(f.call("PUT", "/api/document", testsupport::documentWith("")).status, 200);
    f.dir.write("doc.recovery.json", "an older recovery stays");
    const std::string recovery = f.session->writeRecovery();
    // The same file, whichever separator the platform writes.
    EXPECT_EQ(std::filesystem::u8path(recovery).lexically_normal(),
              std::filesystem::u8path(f.dir.path("doc.recovery-2.json")).lexically_normal());
    EXPECT_EQ(f.dir.read("doc.recovery-2.json"), f.call("GET", "/api/document").body);
    EXPECT_EQ(f.dir.read("doc.recovery.json"), "an older recovery stays");
    EXPECT_EQ(f.dir.read("doc.json"), twoItems());
}

// A file with what the library does not keep: the save names it and asks.
TEST(EditorApi, ASaveThatWouldDropElementsAsksFirst) {
    const std::string withUnknown =
        testsupport::documentWith(testsupport::freshItemText("Click") + R"(,{"type":"Clik"})");
    Fixture f(withUnknown);
    const Poco::JSON::Object::Ptr state = parseObject(f.call("GET", "/api/state").body);
    ASSERT_EQ(state->getArray("lost")->size(), 1U);
    const HttpResponse refused = f.call("POST", "/api/save");
    EXPECT_EQ(refused.status, 409);
    EXPECT_EQ(parseObject(refused.body)->getArray("lost")->getElement<std::string>(0),
              "keymaps[1] (type \"Clik\")");
    EXPECT_EQ(f.dir.read("doc.json"), withUnknown);
    EXPECT_EQ(f.call("POST", "/api/save?drop=1").status, 200);
    EXPECT_EQ(f.dir.read("doc.json"), f.call("GET", "/api/document").body);
    EXPECT_EQ(f.call("POST", "/api/save").status, 200) << "asked once";
}

#ifndef _WIN32
// Recovery files are made, never found: a link planted under the name is
// passed over, and the copy is as private as the file.
TEST(EditorApi, RecoveryFilesAreNewPrivateAndOfferedNextTime) {
    Fixture f;
    chmod(f.dir.path("doc.json").c_str(), 0600);
    ASSERT_EQ(f.call("PUT", "/api/document", testsupport::documentWith("")).status, 200);
    const std::string elsewhere = f.dir.path("elsewhere.json");
    ASSERT_EQ(symlink(elsewhere.c_str(), f.dir.path("doc.recovery.json").c_str()), 0);
    const std::string recovery = f.session->writeRecovery();
    EXPECT_EQ(std::filesystem::u8path(recovery).filename().u8string(), "doc.recovery-2.json");
    EXPECT_FALSE(PathExists(elsewhere)) << "the link was not followed";
    struct stat info {};
    ASSERT_EQ(stat(recovery.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600U);
    if (geteuid() == 0) {
        // Root may give it the file's group; the copy keeps who may read it.
        ASSERT_EQ(chown(f.dir.path("doc.json").c_str(), 0, 65534), 0);
        const std::string grouped = f.session->writeRecovery();
        ASSERT_EQ(stat(grouped.c_str(), &info), 0);
        EXPECT_EQ(info.st_gid, 65534U);
        std::remove(grouped.c_str());
    }

    EditorSession next(f.dir.path("doc.json"), false, {});
    EditorApi api(next, kToken, kPort);
    ASSERT_EQ(next.recoveryFiles().size(), 1U) << "the dangling link is no recovery file";
    const HttpResponse offered = api.handle(request("GET", "/api/recovery?n=0", kToken, kPort, ""));
    EXPECT_EQ(offered.body, f.call("GET", "/api/document").body);
    EXPECT_EQ(api.handle(request("GET", "/api/recovery?n=1", kToken, kPort, "")).status, 404);
}
#endif

#ifndef _WIN32
// Sets an environment variable for one test.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const std::string& value) : name_(name) {
        const char* old = std::getenv(name);
        had_ = old != nullptr;
        old_ = had_ ? old : "";
        setenv(name, value.c_str(), 1);
    }
    ~ScopedEnv() { had_ ? setenv(name_, old_.c_str(), 1) : unsetenv(name_); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    const char* name_;
    bool had_ = false;
    std::string old_;
};

// A session on `file` with unsaved changes, ended: the recovery file it left.
std::string leaveRecovery(const std::string& file, const std::string& items = "") {
    EditorSession session(file, false, {});
    km::LoadDiagnostic ignored;
    EXPECT_TRUE(session.replace(testsupport::documentWith(items), ignored));
    return session.writeRecovery();
}

std::string canonical(const std::string& path) {
    return std::filesystem::weakly_canonical(std::filesystem::u8path(path)).u8string();
}

// However FILE is named, its recovery file is beside it when its folder can
// be written, and the next session finds it under any other name for it.
TEST(EditorApi, RecoveryIsBesideTheFileWhateverItsPathLooksLike) {
    TempDir dir;
    Poco::File(dir.path("real/sub")).createDirectories();
    ASSERT_EQ(symlink(dir.path("real").c_str(), dir.path("linked").c_str()), 0);
    const std::string cwd = std::filesystem::current_path().u8string();
    ASSERT_EQ(chdir(dir.path("real").c_str()), 0);
    struct Case {
        const char* name;
        std::string written;  // the name the session that leaves it is given
        std::string found;    // and the next one
    } const cases[] = {
        {"bare name", "t.json", dir.path("real/t.json")},
        {"dot-dot", dir.path("real/sub/../t.json"), "t.json"},
        {"linked folder", dir.path("linked/t.json"), dir.path("real/./t.json")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string recovery = leaveRecovery(c.written);
        EXPECT_EQ(canonical(recovery), canonical(dir.path("real/t.recovery.json")));
        EditorSession next(c.found, false, {});
        EXPECT_EQ(next.recoveries().size(), 1U);
        std::filesystem::remove(std::filesystem::u8path(dir.path("real/t.recovery.json")));
    }
    ASSERT_EQ(chdir(cwd.c_str()), 0);
}

// Where the file's folder cannot take it, the recovery file goes to the data
// folder, named and marked for the file's full path: the same base name in
// another folder is not offered it.
TEST(EditorApi, RecoveryInTheDataFolderBelongsToOneFullPath) {
    TempDir dir;
    const ScopedEnv home("HOME", dir.path("home"));
    // Folders that do not exist cannot be written, even by root.
    const std::string a = dir.path("a/t.json");
    const std::string b = dir.path("b/t.json");
    const std::string fromA = leaveRecovery(a, testsupport::freshItemText("Click"));
    ASSERT_FALSE(fromA.empty());
    EXPECT_EQ(fromA.compare(0, RecoveryFolder().size(), RecoveryFolder()), 0) << fromA;
    std::string record;
    ASSERT_TRUE(ReadWholeFile(fromA, record));
    EXPECT_EQ(parseObject(record)->getValue<std::string>("file"), FullPath(a));
    const std::string fromB = leaveRecovery(b);
    EXPECT_NE(fromB, fromA);

    EditorSession sessionB(b, false, {});
    ASSERT_EQ(sessionB.recoveryFiles(), std::vector<std::string>{fromB});
    std::string text;
    ASSERT_TRUE(sessionB.recoveryText(0, text));
    EXPECT_EQ(parseObject(text)->getArray("keymaps")->size(), 0U) << "b's work, not a's";
    EditorSession sessionA(dir.path("b/../a/t.json"), false, {});
    EXPECT_EQ(sessionA.recoveryFiles(), std::vector<std::string>{fromA});

    // A file whose recorded path is another's is not offered, whatever its name.
    std::filesystem::copy_file(std::filesystem::u8path(fromA),
                               std::filesystem::u8path(fromB + ".x"));
    std::filesystem::rename(std::filesystem::u8path(fromB + ".x"), std::filesystem::u8path(fromB));
    EXPECT_TRUE(EditorSession(b, false, {}).recoveryFiles().empty());

    // No data folder at all: the system's temporary folder keeps it.
    const ScopedEnv noHome("HOME", dir.path("nowhere/at/all/\x01"));
    const ScopedEnv temp("TMPDIR", dir.path("tmp"));
    Poco::File(dir.path("tmp")).createDirectories();
    Poco::File(dir.path("nowhere")).createFile();
    const std::string lastResort = leaveRecovery(a);
    EXPECT_EQ(canonical(std::filesystem::u8path(lastResort).parent_path().u8string()),
              canonical(dir.path("tmp")));
}

// Every recovery file is offered, newest first; opening one is an edit, and
// saving it removes the file; dismissing removes it and it stays dismissed.
TEST(EditorApi, RecoveryFilesAreOfferedNewestFirstOpenedAndDismissed) {
    Fixture f;
    const std::string file = f.dir.path("doc.json");
    std::vector<std::string> made;
    for (int i = 0; i < 3; ++i) {
        made.push_back(
            leaveRecovery(file, i == 1 ? testsupport::freshItemText("Click") : std::string()));
    }
    // The second is the newest, whatever its number.
    const auto now = std::filesystem::file_time_type::clock::now();
    const int ages[] = {3600, 60, 7200};
    for (int i = 0; i < 3; ++i) {
        std::filesystem::last_write_time(std::filesystem::u8path(made[static_cast<std::size_t>(i)]),
                                         now - std::chrono::seconds(ages[i]));
    }
    Fixture g;  // a new session on the same file
    g.session.reset(new EditorSession(file, false, {}));
    g.api.reset(new EditorApi(*g.session, kToken, kPort));
    const auto offered = [&g] {
        std::vector<std::string> paths;
        const Poco::JSON::Array::Ptr list =
            parseObject(g.call("GET", "/api/state").body)->getArray("recovery");
        for (std::size_t i = 0; i < list->size(); ++i) {
            paths.push_back(list->getObject(i)->getValue<std::string>("path"));
        }
        return paths;
    };
    EXPECT_EQ(offered(), (std::vector<std::string>{made[1], made[0], made[2]}));
    const Poco::JSON::Object::Ptr newest =
        parseObject(g.call("GET", "/api/state").body)->getArray("recovery")->getObject(0);
    EXPECT_EQ(newest->getValue<int>("n"), 0);
    EXPECT_EQ(newest->getValue<std::string>("time").size(), 20U);
    EXPECT_EQ(newest->getValue<std::string>("time").back(), 'Z');
    EXPECT_EQ(newest->getValue<long long>("bytes"),
              static_cast<long long>(std::filesystem::file_size(std::filesystem::u8path(made[1]))));

    // Edits first: opening does not depend on them.
    ASSERT_EQ(g.call("POST", "/api/edit", R"({"seq":1,"ops":[{"op":"delete","item":1}]})").status,
              200);
    const HttpResponse opened = g.call("POST", "/api/recovery/open", R"({"n": 0})");
    ASSERT_EQ(opened.status, 200) << opened.body;
    EXPECT_EQ(parseObject(opened.body)->getObject("document")->getArray("keymaps")->size(), 1U);
    EXPECT_TRUE(parseObject(opened.body)->getValue<bool>("undo"));
    EXPECT_EQ(offered().size(), 3U) << "kept until its work is saved";
    ASSERT_EQ(g.call("POST", "/api/save").status, 200);
    EXPECT_FALSE(PathExists(made[1]));
    EXPECT_EQ(offered(), (std::vector<std::string>{made[0], made[2]}));

    struct Refusal {
        const char* route;
        const char* body;
        int status;
    } const refusals[] = {
        {"/api/recovery/open", R"({"n": 0})", 404},  // numbers stay: 0 is gone
        {"/api/recovery/open", R"({})", 422},
        {"/api/recovery/open", R"({"n": "1"})", 422},
        {"/api/recovery/dismiss", R"({"n": 7})", 404},
        {"/api/recovery/dismiss", R"({"n": -1})", 422},
    };
    for (const Refusal& r : refusals) {
        SCOPED_TRACE(r.body);
        EXPECT_EQ(g.call("POST", r.route, r.body).status, r.status);
    }
    EXPECT_EQ(g.call("GET", "/api/recovery?n=0").status, 404);

    const HttpResponse dismissed = g.call("POST", "/api/recovery/dismiss", R"({"n": 1})");
    ASSERT_EQ(dismissed.status, 200) << dismissed.body;
    EXPECT_EQ(parseObject(dismissed.body)->getArray("recovery")->size(), 1U);
    EXPECT_FALSE(PathExists(made[0]));
    EXPECT_EQ(g.call("POST", "/api/recovery/dismiss", R"({"n": 1})").status, 404)
        << "a dismissal is remembered";
    ASSERT_EQ(g.call("POST", "/api/recovery/dismiss", "{}").status, 200);
    EXPECT_TRUE(offered().empty());
    EXPECT_FALSE(PathExists(made[2]));
}

// A link planted in a shared folder since the file was opened is not written
// through; "Overwrite" replaces the link itself.
TEST(EditorApi, SavesNeverFollowALinkPlantedInASharedFolder) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "a link of another user is planted as root";
    }
    TempDir dir;
    Poco::File(dir.path("shared")).createDirectories();
    ASSERT_EQ(chmod(dir.path("shared").c_str(), 01777), 0);
    const std::string file = dir.path("shared/doc.json");
    dir.write("shared/doc.json", twoItems());
    dir.write("victim.json", "not yours");
    EditorSession session(file, false, {});
    EditorApi api(session, kToken, kPort);
    const auto call = [&api](const std::string& target, const std::string& body) {
        return api.handle(request("POST", target, kToken, kPort, body));
    };
    ASSERT_EQ(call("/api/edit", R"({"seq":1,"ops":[{"op":"delete","item":1}]})").status, 200);

    ASSERT_EQ(std::remove(file.c_str()), 0);
    ASSERT_EQ(symlink(dir.path("victim.json").c_str(), file.c_str()), 0);
    ASSERT_EQ(lchown(file.c_str(), 4242, 4242), 0);
    const HttpResponse conflict = call("/api/save", "{}");
    EXPECT_EQ(conflict.status, 409) << conflict.body;
    EXPECT_TRUE(parseObject(conflict.body)->getValue<bool>("conflict"));
    EXPECT_EQ(dir.read("victim.json"), "not yours");

    ASSERT_EQ(call("/api/save?force=1", "{}").status, 200);
    EXPECT_EQ(dir.read("victim.json"), "not yours");
    struct stat info {};
    ASSERT_EQ(lstat(file.c_str(), &info), 0);
    EXPECT_TRUE(S_ISREG(info.st_mode)) << "the link itself was replaced";
    EXPECT_EQ(dir.read("shared/doc.json"), session.documentText());

    // Such a link is not opened either.
    ASSERT_EQ(std::remove(file.c_str()), 0);
    ASSERT_EQ(symlink(dir.path("victim.json").c_str(), file.c_str()), 0);
    ASSERT_EQ(lchown(file.c_str(), 4242, 4242), 0);
    EXPECT_EQ(EditorSession(file, false, {}).opened(), EditorSession::Opened::Unreadable);
}
#endif

// On open the page is shown what `zuno-keymap check FILE` says of the file,
// the members and items the held document no longer has included, until a
// save drops them or the file is read again.
TEST(EditorApi, TheReportOnOpenIsTheFilesCheck) {
    Poco::JSON::Object::Ptr click = parseObject(testsupport::freshItemText("Click"));
    click->set("colour_of_the_day", "red");
    click->getObject("icon")->set("glow", true);
    const std::string text =
        testsupport::documentWith(testsupport::stringify(*click) + R"(,{"type":"Clik"})");
    const km::CheckReport expected = km::CheckKeymapDocument(text, false, "doc.json");
    ASSERT_GE(expected.findings.size(), 3U);
    Fixture f(text);
    const auto findings = [&f](const std::string& target) {
        std::vector<std::string> paths;
        const Poco::JSON::Object::Ptr answer = parseObject(f.call("GET", target).body);
        const Poco::JSON::Object::Ptr report =
            answer->has("report") ? answer->getObject("report") : answer;
        const Poco::JSON::Array::Ptr list = report->getArray("findings");
        for (std::size_t i = 0; i < list->size(); ++i) {
            paths.push_back(list->getObject(i)->getValue<std::string>("path") + " " +
                            list->getObject(i)->getValue<std::string>("message"));
        }
        std::sort(paths.begin(), paths.end());
        return paths;
    };
    std::vector<std::string> wanted;
    for (const km::Finding& finding : expected.findings) {
        wanted.push_back(finding.path + " " + finding.message);
    }
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(findings("/api/snapshot"), wanted);
    EXPECT_EQ(findings("/api/check"), wanted);
    ASSERT_EQ(
        f.call("POST", "/api/edit",
               R"({"seq":1,"ops":[{"op":"set","item":1,"member":"icon.description","value":"x"}]})")
            .status,
        200);
    EXPECT_EQ(findings("/api/snapshot"), wanted) << "kept through edits";
    ASSERT_EQ(f.call("POST", "/api/reload", "{}").status, 200);
    EXPECT_EQ(findings("/api/snapshot"), wanted) << "found again on reload";
    ASSERT_EQ(f.call("POST", "/api/save?drop=1", "{}").status, 200);
    EXPECT_EQ(findings("/api/snapshot"), findings("/api/check"));
    EXPECT_LT(findings("/api/snapshot").size(), wanted.size()) << "saved away";
}

TEST(EditorApi, TokensAreLongRandomAndComparedWhole) {
    const std::string a = EditorApi::MakeToken();
    EXPECT_GE(a.size() * 4, 128U);
    EXPECT_NE(a, EditorApi::MakeToken());
    EXPECT_TRUE(EqualInConstantTime(a, a));
    EXPECT_FALSE(EqualInConstantTime(a, a.substr(0, a.size() - 1)));
    EXPECT_FALSE(EqualInConstantTime(a, ""));
}

// The report is written straight as text: in both layouts it must read back
// as the report, whatever the document's strings hold.
TEST(CheckReportJson, ReadsBackAsTheReportCompactAndIndented) {
    const km::CheckReport report = km::CheckKeymapDocument(
        testsupport::documentWith(testsupport::freshItemText("Click") + "," +
                                  testsupport::freshItemText("Click") + ",{\"type\":\"Nope\"}"),
        false, "doc.json");
    ASSERT_GT(report.findings.size(), 1U);
    const std::string source = "d\"o\\c\n\x01\t\xc3\xa9.json";
    for (const bool indented : {false, true}) {
        SCOPED_TRACE(indented ? "indented" : "compact");
        std::string text;
        zunokeymap::JsonWriter writer(text, indented);
        zunokeymap::WriteCheckReportJson(writer, source, report);
        EXPECT_EQ(text.find('\n') != std::string::npos, indented);
        const Poco::JSON::Object::Ptr json = parseObject(text);
        EXPECT_EQ(json->getValue<std::string>("source"), source);
        EXPECT_TRUE(json->getValue<bool>("loaded"));
        EXPECT_EQ(json->getValue<std::size_t>("items"), report.items);
        EXPECT_EQ(json->getValue<std::size_t>("warnings"), report.warnings());
        const Poco::JSON::Array::Ptr findings = json->getArray("findings");
        ASSERT_EQ(findings->size(), report.findings.size());
        for (std::size_t i = 0; i < report.findings.size(); ++i) {
            const Poco::JSON::Object::Ptr finding = findings->getObject(i);
            EXPECT_EQ(finding->getValue<std::string>("kind"),
                      km::FindingKindName(report.findings[i].kind));
            EXPECT_EQ(finding->getValue<std::string>("message"), report.findings[i].message);
        }
    }
}

}  // namespace

// A scheme: several files, each its own session, named by each request.
struct Scheme {
    TempDir dir;
    std::vector<std::unique_ptr<EditorSession>> sessions;
    std::unique_ptr<EditorApi> api;

    Scheme() {
        const std::string onQ =
            testsupport::stringify(*parseObject(twoItems())->getArray("keymaps")->getObject(0));
        dir.write("a.json", twoItems());
        dir.write("b.json", testsupport::documentWith(onQ + "," + onQ));  // two items on Q
        std::vector<EditorSession*> served;
        for (const char* name : {"a.json", "b.json", "c.json"}) {  // c.json is new
            sessions.emplace_back(new EditorSession(dir.path(name), false, {}));
            served.push_back(sessions.back().get());
        }
        api.reset(new EditorApi(served, kToken, kPort));
    }
    HttpResponse call(const std::string& method, const std::string& target,
                      const std::string& body = "") {
        return api->handle(request(method, target, kToken, kPort, body));
    }
};

TEST(EditorApi, EachRequestReachesTheFileItNames) {
    Scheme s;
    const struct {
        const char* target;
        int status;
        int session;  // the one whose document is answered
    } cases[] = {
        {"/api/document", 200, 0},
        {"/api/document?file=0", 200, 0},
        {"/api/document?file=1", 200, 1},
        {"/api/document?file=b.json", 200, 1},
        {"/api/document?file=c.json", 200, 2},
        {"/api/document?file=3", 404, -1},
        {"/api/document?file=-1", 404, -1},
        {"/api/document?file=", 404, -1},
        {"/api/document?file=x.json", 404, -1},
        {"/api/document?file=..%2Fa.json", 404, -1},
        {"/api/document?file=00000000001", 404, -1},
        {"/api/document?file=01", 200, 1},
    };
    for (const auto& c : cases) {
        const HttpResponse answer = s.call("GET", c.target);
        EXPECT_EQ(answer.status, c.status) << c.target << ": " << answer.body;
        if (c.session >= 0) {
            EXPECT_EQ(answer.body, s.sessions[c.session]->documentText()) << c.target;
        }
    }
    EXPECT_EQ(s.call("POST", "/api/save?file=9", "{}").status, 404);
    EXPECT_EQ(s.api->handle(request("GET", "/api/files?file=1", "wrong", kPort)).status, 401)
        << "the door comes before the file";
}

TEST(EditorApi, FilesAreListedWithTheirProblemsAndSavedOneByOne) {
    Scheme s;
    const auto files = [&s] {
        return parseObject(s.call("GET", "/api/files").body)->getArray("files");
    };
    ASSERT_EQ(files()->size(), 3U);
    for (unsigned i = 0; i < 3; ++i) {
        const Poco::JSON::Object::Ptr file = files()->getObject(i);
        const Poco::JSON::Object::Ptr check =
            parseObject(s.call("GET", "/api/check?file=" + std::to_string(i)).body);
        EXPECT_EQ(file->getValue<int>("index"), static_cast<int>(i));
        EXPECT_EQ(file->getValue<std::string>("name"),
                  std::string(1, static_cast<char>('a' + i)) + ".json");
        EXPECT_EQ(file->getValue<int>("problems"),
                  check->getValue<int>("errors") + check->getValue<int>("warnings"));
        EXPECT_FALSE(file->getValue<bool>("unsaved"));
    }
    const int collided = files()->getObject(1)->getValue<int>("problems");

    // An edit, an undo and a save of b touch b alone.
    const long aVersion = files()->getObject(0)->getValue<long>("version");
    const std::string del = R"({"client":"p","seq":1,"ops":[{"op":"delete","item":1}]})";
    ASSERT_EQ(s.call("POST", "/api/edit?file=1", del).status, 200);
    EXPECT_TRUE(files()->getObject(1)->getValue<bool>("unsaved"));
    EXPECT_FALSE(files()->getObject(0)->getValue<bool>("unsaved"));
    EXPECT_LT(files()->getObject(1)->getValue<int>("problems"), collided)
        << "the collision on Q is gone";
    ASSERT_EQ(s.call("POST", "/api/edit?file=0", del).status, 200);
    const std::string undo = R"({"client":"p","seq":2,"ops":[{"op":"undo"}]})";
    ASSERT_EQ(s.call("POST", "/api/edit?file=0", undo).status, 200)
        << "each file remembers the page's requests of its own";
    EXPECT_FALSE(files()->getObject(0)->getValue<bool>("unsaved"));
    EXPECT_TRUE(files()->getObject(1)->getValue<bool>("unsaved")) << "the undo was a's";
    EXPECT_GT(files()->getObject(0)->getValue<long>("version"), aVersion);

    ASSERT_EQ(s.call("POST", "/api/save?file=b.json", "{}").status, 200);
    EXPECT_EQ(s.dir.read("a.json"), twoItems());
    EXPECT_EQ(s.dir.read("b.json"), s.sessions[1]->documentText());
    EXPECT_FALSE(PathExists(s.dir.path("c.json")));
    EXPECT_EQ(s.call("POST", "/api/save", "{}").status, 200) << "the first file, unchanged";
    EXPECT_FALSE(PathExists(s.dir.path("c.json")));
}
