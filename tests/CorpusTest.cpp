// Every case of a public collection of JSON parser tests, loaded in all four
// ways a host can load a document: no crash, no leak, and malformed text is
// always a failed load reported exactly once.

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

std::vector<std::string> corpusFiles(const std::string& dir) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(dir, error)) {
        if (entry.path().extension() == ".json") {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

bool topLevelIsObject(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != std::string::npos && text[first] == '{';
}

TEST(ParserCorpus, EveryCaseLoadsSafelyAndMalformedTextFailsOnce) {
    const std::string dir = ZUNO_KM_JSON_CORPUS_DIR;
    const std::vector<std::string> files = corpusFiles(dir);
    if (files.empty()) {
        GTEST_SKIP() << "JSON parser corpus not found at " << dir;
    }
    CallbackRecorder recorder;
    std::size_t loads = 0;
    for (const std::string& name : files) {
        SCOPED_TRACE(name);
        const std::string path = dir + "/" + name;
        const std::string text = readFile(path);
        // The host-text loads use a path that names no file, so empty text
        // fails as a missing file would.
        const std::string textPath = "corpus-text:" + name;
        DocPtr docs[] = {DocPtr(km::LoadKeymapConfigAndInfo(textPath, text)),
                         DocPtr(km::LoadJoystickConfigAndInfo(textPath, text)),
                         DocPtr(km::LoadKeymapConfigAndInfo(path, "")),
                         DocPtr(km::LoadJoystickConfigAndInfo(path, ""))};
        const std::string paths[] = {textPath, textPath, path, path};
        loads += 4;
        for (const DocPtr& doc : docs) {
            ASSERT_NE(doc, nullptr);
            ASSERT_NE(doc->info, nullptr);
            ASSERT_NE(doc->param, nullptr);
            for (const km::ConfigItem* item : doc->items) {
                EXPECT_NE(item, nullptr);
            }
        }
        EXPECT_TRUE(docs[1]->info->is_joystick);
        EXPECT_TRUE(docs[3]->info->is_joystick);

        const std::vector<CallbackRecorder::Call> calls = recorder.take();
        const bool mustFail = name[0] == 'n' || (name[0] == 'y' && !topLevelIsObject(text));
        if (mustFail) {
            ASSERT_EQ(calls.size(), 4U);
            for (std::size_t i = 0; i < 4; ++i) {
                EXPECT_EQ(calls[i].path, paths[i]);
            }
        } else {
            // A load fails at most once; the same text fails the same way
            // whichever way it came in.
            EXPECT_TRUE(calls.empty() || calls.size() == 4U) << calls.size() << " callbacks";
        }
        // The check never calls the host back, and fails what the load fails.
        for (const bool joystick : {false, true}) {
            const km::CheckReport report = km::CheckKeymapDocument(text, joystick, name);
            EXPECT_EQ(report.diagnostic.failed, !calls.empty());
            EXPECT_TRUE(!report.diagnostic.failed || report.errors() > 0);
        }
        EXPECT_TRUE(recorder.take().empty());
    }
    std::cout << "[ corpus   ] " << files.size() << " files, " << loads << " loads\n";
}

}  // namespace
