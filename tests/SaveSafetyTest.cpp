// A save replaces the keymap in one step: a failure midway never leaves a
// truncated or lost file behind. Paths are UTF-8 on every platform.

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
const std::string kOldText = "{\"old\": \"keymap the user must not lose\"}\n";

TEST(SaveSafety, ReplacedFileGetsTheWholeTextAndNothingIsLeftBeside) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    const std::string expected = saveText(doc.get());
    for (const bool exists : {true, false}) {
        SCOPED_TRACE(exists ? "replacing a file" : "a new file");
        TempDir dir;
        const std::string path = dir.file("keymap.json");
        if (exists) {
            writeBytes(path, kOldText);
        }
        EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
        EXPECT_EQ(readBytes(path), expected);
        EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"});
    }
}

// Names as hosts pass them: UTF-8, whatever the platform's code page.
TEST(SaveSafety, NonAsciiPathsLoadAndSave) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    const std::string expected = saveText(doc.get());
    for (const std::string name :
         {"cl\u00e9.json", "\u9375\u4f4d.json",
          "\u0440\u0430\u0441\u043a\u043b\u0430\u0434\u043a\u0430 1.json", "\U0001F3AE.json"}) {
        SCOPED_TRACE(name);
        TempDir dir;
        const std::string path = dir.file(name);
        EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
        EXPECT_EQ(dir.entries(), std::vector<std::string>{name}) << "the name as given";
        EXPECT_EQ(readBytes(path), expected);

        CallbackRecorder recorder;
        DocPtr reread(km::LoadKeymapConfigAndInfo(path, ""));
        EXPECT_TRUE(recorder.take().empty()) << "loads without a failure";
        EXPECT_EQ(saveText(reread.get()), expected);
        km::LoadDiagnostic diagnostic;
        DocPtr(km::LoadKeymapConfigAndInfo(dir.file("x" + name), "", &diagnostic));
        EXPECT_NE(diagnostic.message.find("no such file"), std::string::npos) << diagnostic.message;
    }
}

TEST(SaveSafety, NamesOfTheLongestLengthAreReplacedToo) {
    // The temporary name is short whatever the target's, so even a name of
    // the longest allowed length has one beside it.
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file(std::string(255, 'k'));
    writeBytes(path, kOldText);
    std::string error;
    EXPECT_TRUE(km::WriteTextFile(path, saveText(doc.get()), error)) << error;
    EXPECT_EQ(readBytes(path), saveText(doc.get()));
    EXPECT_EQ(dir.entries().size(), 1U);
}

TEST(SaveSafety, SavedFileLoadsBack) {
    CallbackRecorder recorder;
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file("keymap.json");
    writeBytes(path, kOldText);
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    DocPtr reread(km::LoadKeymapConfigAndInfo(path, ""));
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(saveText(reread.get()), readBytes(path));
}

}  // namespace
