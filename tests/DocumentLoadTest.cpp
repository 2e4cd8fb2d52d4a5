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
const std::string kMinimalInfo = R"({"info":{"background_color":"000000FF","visibility":true}})";

// A built-in name wins over host text, host text over the file at the path.
TEST(DocumentLoad, TextComesFromBuiltInThenHostTextThenFile) {
    CallbackRecorder recorder;
    TempFile file;
    file.write(R"({"info":{"background_color":"FROMFILE","visibility":true}})");
    const std::string hostText = R"({"info":{"background_color":"FROMHOST","visibility":true}})";
    struct Case {
        std::string path;
        std::string data;
        std::string background;
    };
    const Case cases[] = {
        {kSystem, hostText, "000000FF"},
        {file.path(), hostText, "FROMHOST"},
        {"/nonexistent/dir/file.json", hostText, "FROMHOST"},
        {file.path(), "", "FROMFILE"},
    };
    for (const Case& c : cases) {
        DocPtr doc(km::LoadKeymapConfigAndInfo(c.path, c.data));
        EXPECT_EQ(doc->info->background_color, c.background) << c.path;
    }
    EXPECT_TRUE(recorder.take().empty());
}

TEST(DocumentLoad, BuiltInNamesAreExactAndPerTable) {
    CallbackRecorder recorder;
    struct Case {
        bool joystick;
        std::string path;
        bool fails;
    };
    const Case cases[] = {
        {false, kBlank, false},
        {false, kSystem, false},
        {true, kBlank, false},
        {true, kSystem, true},  // no gamepad "system" document: read as a file path
        {false, "SANITARY-4EA33DC3-6C4B-46A2-A180-6F2597234300", true},
        {false, kBlank + " ", true},
    };
    for (const Case& c : cases) {
        DocPtr doc(c.joystick ? km::LoadJoystickConfigAndInfo(c.path, "")
                              : km::LoadKeymapConfigAndInfo(c.path, ""));
        ASSERT_NE(doc, nullptr);
        EXPECT_EQ(recorder.take().size(), c.fails ? 1U : 0U) << c.path;
    }
}

// Every way a load can fail calls the callback exactly once with the load's
// path, and still returns what was read before the failure.
TEST(DocumentLoad, FailuresCallBackOnceAndKeepWhatWasRead) {
    struct Case {
        const char* name;
        std::string text;
        std::size_t itemsKept;
        std::string background;  // the info as far as it was read
    };
    const Case cases[] = {
        {"empty text and missing file", "", 0, "000000FF"},
        {"malformed JSON", R"({"info":)", 0, "000000FF"},
        {"top level is an array", "[1,2]", 0, "000000FF"},
        {"top level is a string", R"("text")", 0, "000000FF"},
        {"info missing", R"({"keymaps":[]})", 0, "000000FF"},
        {"info empty", R"({"info":{}})", 0, "000000FF"},
        {"info not an object", R"({"info":3})", 0, "000000FF"},
        {"info half read", R"({"info":{"background_color":"FFFFFFFF"}})", 0, "FFFFFFFF"},
        {"keymaps not an array", R"({"keymaps":{},"info":{"background_color":"1","visibility":1}})",
         0, "000000FF"},
        {"element not an object",
         R"({"keymaps":[7],"info":{"background_color":"1","visibility":1}})", 0, "000000FF"},
        {"element without type",
         R"({"keymaps":[{}],"info":{"background_color":"1","visibility":1}})", 0, "000000FF"},
        {"param not an object", R"({"info":{"background_color":"1","visibility":1},"param":[]})", 0,
         "1"},
        {"param wheel policy incomplete",
         R"({"info":{"background_color":"1","visibility":1},"param":{"wheel_policy":{"zoom_steps":4}}})",
         0, "1"},
    };
    for (const Case& c : cases) {
        CallbackRecorder recorder;
        const std::string path = std::string("doc-") + c.name;
        DocPtr doc = loadText(c.text, path);
        const auto calls = recorder.take();
        ASSERT_EQ(calls.size(), 1U) << c.name;
        EXPECT_EQ(calls[0].path, path) << c.name;
        EXPECT_NE(calls[0].thread, std::this_thread::get_id()) << c.name;
        ASSERT_NE(doc->info, nullptr);
        ASSERT_NE(doc->param, nullptr);
        EXPECT_EQ(doc->items.size(), c.itemsKept) << c.name;
        EXPECT_EQ(doc->info->background_color, c.background) << c.name;
    }
}

TEST(DocumentLoad, FailedParameterReadKeepsTheValuesReadBeforeIt) {
    CallbackRecorder recorder;
    DocPtr doc = loadText(
        R"({"info":{"background_color":"1","visibility":true},"param":{"wheel_policy":{"zoom_first_interval":3,"zoom_last_idle":4}}})");
    EXPECT_EQ(recorder.take().size(), 1U);
    EXPECT_EQ(doc->param->zoom_first_interval, 3);
    EXPECT_EQ(doc->param->zoom_last_idle, 4);
    EXPECT_EQ(doc->param->zoom_period, 16);
}

TEST(DocumentLoad, UnknownItemTypesAreDroppedSilently) {
    CallbackRecorder recorder;
    DocPtr doc = loadText(documentWith(
        R"({"type":"Unknown"},{"type":"click"},{"type":""},{"type":5},{"type":"Nope","x":1})"));
    EXPECT_TRUE(doc->items.empty());
    EXPECT_TRUE(recorder.take().empty());
}

TEST(DocumentLoad, LoadReturnsOnlyAfterTheCallbackHasFinished) {
    static std::atomic<bool> finished{false};
    static std::atomic<bool> otherThread{false};
    static std::thread::id loader;
    KeymapManagerCallbacks callbacks{};
    callbacks.loadConfigAndInfoFailed = [](const std::string&) {
        otherThread = std::this_thread::get_id() != loader;
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        finished = true;
    };
    loader = std::this_thread::get_id();
    km::SetCallbacks(&callbacks);
    DocPtr doc = loadText("not json");
    EXPECT_TRUE(finished.load());
    EXPECT_TRUE(otherThread.load());
    km::SetCallbacks(nullptr);
}

TEST(DocumentLoad, NoCallbackWhenNoneIsRegistered) {
    km::SetCallbacks(nullptr);
    DocPtr doc = loadText("{");
    ASSERT_NE(doc, nullptr);
    EXPECT_TRUE(doc->items.empty());
}

TEST(DocumentLoad, NonRegularFilesAreUnreadable) {
    CallbackRecorder recorder;
    for (const char* path : {"/tmp", "/dev/null", "/dev/zero", "/nonexistent"}) {
        DocPtr doc(km::LoadKeymapConfigAndInfo(path, ""));
        EXPECT_EQ(recorder.take().size(), 1U) << path;
    }
}

TEST(DocumentLoad, JoystickLoadsAreAlwaysMarkedAsGamepadDocuments) {
    CallbackRecorder recorder;
    DocPtr fromText = loadJoystickText(
        R"({"info":{"background_color":"1","visibility":true,"is_joystick":false}})");
    EXPECT_TRUE(fromText->info->is_joystick);
    DocPtr failed = loadJoystickText("[]");
    EXPECT_TRUE(failed->info->is_joystick);
    EXPECT_EQ(recorder.take().size(), 1U);
}

}  // namespace
