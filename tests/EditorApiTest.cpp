// The editor's HTTP contract, called as a function: the door first, then what
// each route answers and what it does to the document and the file.

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <filesystem>
#include <vector>

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
        {"edit_nothing", "POST", "/api/edit", json, "{\"ops\": []}", 200},
        {"edit_refused_op", "POST", "/api/edit", json, "{\"ops\": [{\"op\": \"fly\"}]}", 200},
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
    Poco::JSON::Object::Ptr unset = parseObject(f.call("GET", "/api/key").body);
    EXPECT_EQ(unset->getValue<int>("virtual_key"), km::kUnsetKeyCode);
    Poco::JSON::Object::Ptr pad =
        parseObject(f.call("GET", "/api/key?device=joystick&text=LB").body);
    EXPECT_EQ(pad->getValue<std::string>("text"), "LB");
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

    EditorSession next(f.dir.path("doc.json"), false, {});
    EditorApi api(next, kToken, kPort);
    ASSERT_EQ(next.recoveryFiles().size(), 1U) << "the dangling link is no recovery file";
    const HttpResponse offered = api.handle(request("GET", "/api/recovery?n=0", kToken, kPort, ""));
    EXPECT_EQ(offered.body, f.call("GET", "/api/document").body);
    EXPECT_EQ(api.handle(request("GET", "/api/recovery?n=1", kToken, kPort, "")).status, 404);
}
#endif

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
