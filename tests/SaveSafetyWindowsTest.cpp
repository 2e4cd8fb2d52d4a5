// The save's promises on Windows, where another program may hold the file
// open and decide whether it may be replaced or written.

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
const std::string kOldText = "{\"old\": \"keymap the user must not lose\"}\n";

/// The file at `path` held open for reading, as another program would,
/// letting others share it as `share` says.
class Holder {
public:
    Holder(const std::string& path, DWORD share)
        : handle_(::CreateFileW(std::filesystem::u8path(path).c_str(), GENERIC_READ, share, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    ~Holder() {
        if (handle_ != INVALID_HANDLE_VALUE) {
            ::CloseHandle(handle_);
        }
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

    bool holds() const { return handle_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle_;
};

TEST(SaveSafetyWindows, ATargetHeldOpenIsReplacedWrittenOrKeptWhole) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    const std::string saved = saveText(doc.get());
    struct Case {
        const char* what;
        DWORD share;
        bool lands;  // else the old text stays whole and the save fails
    };
    const Case cases[] = {
        {"shared for everything: replaced", FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
         true},
        {"shared for writing, not replacing: written in place", FILE_SHARE_READ | FILE_SHARE_WRITE,
         true},
        {"shared for reading only: kept", FILE_SHARE_READ, false},
        {"not shared: kept", 0, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TempDir dir;
        const std::string path = dir.file("keymap.json");
        writeBytes(path, kOldText);
        bool ok = false;
        {
            Holder holder(path, c.share);
            ASSERT_TRUE(holder.holds());
            ok = km::SaveKeymapConfigAndInfo(path, doc.get());
        }
        EXPECT_EQ(ok, c.lands);
        EXPECT_EQ(readBytes(path), c.lands ? saved : kOldText);
        EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"}) << "no leftovers";
    }
}

TEST(SaveSafetyWindows, ReadOnlyFileIsNotReplaced) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file("keymap.json");
    writeBytes(path, kOldText);
    const std::wstring wide = std::filesystem::u8path(path).wstring();
    ASSERT_TRUE(::SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_FALSE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    EXPECT_EQ(readBytes(path), kOldText);
    EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"});
    ::SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace
