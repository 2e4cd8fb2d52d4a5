// Where a load takes its text from, and what a failed load gives the host.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
const std::string kSystem = "system-9252A9CA-0C32-4FFD-8BF6-82653751D068";

// A built-in name wins over host text, host text over the file at the path.
// Built-in names are exact and belong to one table; anything else, and any
// path that is no regular file, reads as an unreadable file.
TEST(DocumentLoad, TextComesFromBuiltInThenHostTextThenFile) {
    CallbackRecorder recorder;
    TempFile file;
    file.write(R"({"info":{"background_color":"FROMFILE","visibility":true}})");
    const std::string host = R"({"info":{"background_color":"FROMHOST","visibility":true}})";
    const struct {
        bool joystick;
        std::string path, data;
        const char* background;  // null: the load fails
    } cases[] = {
        {false, kSystem, host, "000000FF"},
        {false, file.path(), host, "FROMHOST"},
        {false, file.path(), "", "FROMFILE"},
        {false, kBlank, "", "000000FF"},
        {true, kBlank, "", "000000FF"},
        {true, kSystem, "", nullptr},
        {false, "SANITARY-4EA33DC3-6C4B-46A2-A180-6F2597234300", "", nullptr},
        {false, kBlank + " ", "", nullptr},
        {false, "/tmp", "", nullptr},
        {false, "/dev/null", "", nullptr},
        {false, "/dev/zero", "", nullptr},
    };
    for (const auto& c : cases) {
        DocPtr doc(c.joystick ? km::LoadJoystickConfigAndInfo(c.path, c.data)
                              : km::LoadKeymapConfigAndInfo(c.path, c.data));
        EXPECT_EQ(recorder.take().size(), c.background ? 0U : 1U) << c.path;
        EXPECT_EQ(doc->info->background_color, c.background ? c.background : "000000FF") << c.path;
        EXPECT_EQ(doc->info->is_joystick, c.joystick) << c.path;
    }
}

// Every way a load can fail calls the callback exactly once with the load's
// path on another thread, and still returns what was read before the failure.
TEST(DocumentLoad, FailuresCallBackOnceAndKeepWhatWasRead) {
    const std::string info = R"("info":{"background_color":"1","visibility":1})";
    const struct {
        const char* name;
        std::string text;
        std::string background;  // the info as far as it was read
        bool joystick;
    } cases[] = {
        {"empty text and missing file", "", "000000FF", false},
        {"malformed JSON", R"({"info":)", "000000FF", false},
        {"top level is an array", "[1,2]", "000000FF", true},
        {"info missing", R"({"keymaps":[]})", "000000FF", false},
        {"info empty", R"({"info":{}})", "000000FF", false},
        {"info not an object", R"({"info":3})", "000000FF", false},
        {"info half read", R"({"info":{"background_color":"FFFFFFFF"}})", "FFFFFFFF", false},
        {"keymaps not an array", R"({"keymaps":{},)" + info + "}", "000000FF", false},
        {"element not an object", R"({"keymaps":[7],)" + info + "}", "000000FF", false},
        {"element without type", R"({"keymaps":[{}],)" + info + "}", "000000FF", false},
        {"param not an object", "{" + info + R"(,"param":[]})", "1", false},
        {"param wheel policy incomplete",
         "{" + info + R"(,"param":{"wheel_policy":{"zoom_first_interval":3,"zoom_last_idle":4}}})",
         "1", false},
    };
    for (const auto& c : cases) {
        CallbackRecorder recorder;
        const std::string path = std::string("doc-") + c.name;
        DocPtr doc = c.joystick ? loadJoystickText(c.text, path) : loadText(c.text, path);
        const auto calls = recorder.take();
        ASSERT_EQ(calls.size(), 1U) << c.name;
        EXPECT_EQ(calls[0].path, path) << c.name;
        EXPECT_NE(calls[0].thread, std::this_thread::get_id()) << c.name;
        ASSERT_NE(doc->param, nullptr);
        EXPECT_TRUE(doc->items.empty()) << c.name;
        EXPECT_EQ(doc->info->background_color, c.background) << c.name;
        EXPECT_EQ(doc->info->is_joystick, c.joystick) << c.name;
    }
    DocPtr partial = loadText(cases[std::size(cases) - 1].text);
    EXPECT_EQ(partial->param->zoom_last_idle, 4) << "values read before the failure stay";
    EXPECT_EQ(partial->param->zoom_period, 16);
    DocPtr pad =
        loadJoystickText("{" + info.substr(0, info.size() - 1) + R"(,"is_joystick":false}})");
    EXPECT_TRUE(pad->info->is_joystick);
}

TEST(DocumentLoad, LoadReturnsOnlyAfterTheCallbackHasFinished) {
    static std::atomic<bool> finished{false};
    KeymapManagerCallbacks callbacks{};
    callbacks.loadConfigAndInfoFailed = [](const std::string&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        finished = true;
    };
    km::SetCallbacks(&callbacks);
    DocPtr doc = loadText("not json");
    EXPECT_TRUE(finished.load());
    km::SetCallbacks(nullptr);
    DocPtr unwatched = loadText("{");
    EXPECT_TRUE(unwatched->items.empty());
}

}  // namespace
