// The save's promises that rest on POSIX file modes, owners, links and
// resource limits.

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
const std::string kOldText = "{\"old\": \"keymap the user must not lose\"}\n";

mode_t modeOf(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

/// Saves in a child process that may write at most `limit` bytes to any file,
/// so the write fails midway as on a full disk. Returns the child's save result.
bool saveWithFileSizeLimit(const std::string& path, km::KeymapConfig* doc, rlim_t limit) {
    std::fflush(nullptr);  // the child must not write the parent's pending output again
    const pid_t child = fork();
    if (child == 0) {
        const rlimit small{limit, limit};
        setrlimit(RLIMIT_FSIZE, &small);
        signal(SIGXFSZ, SIG_IGN);
        _exit(km::SaveKeymapConfigAndInfo(path, doc) ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(SaveSafetyPosix, AWriteFailingMidwayLeavesTheOldFileWhole) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    ASSERT_GT(saveText(doc.get()).size(), 200U);
    struct Case {
        const char* what;
        bool oldFileExists;
        rlim_t limit;
    };
    const Case cases[] = {{"first bytes fail", true, 0},
                          {"fails after a part", true, 100},
                          {"new file, fails after a part", false, 100}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TempDir dir;
        const std::string path = dir.file("keymap.json");
        if (c.oldFileExists) {
            writeBytes(path, kOldText);
            chmod(path.c_str(), 0640);
        }
        EXPECT_TRUE(saveWithFileSizeLimit(path, doc.get(), c.limit));
        if (c.oldFileExists) {
            EXPECT_EQ(readBytes(path), kOldText);
            EXPECT_EQ(modeOf(path), 0640U);
            EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"}) << "no leftovers";
        } else {
            EXPECT_TRUE(dir.entries().empty()) << "no file, no leftovers";
        }
    }
}

TEST(SaveSafetyPosix, ReplacedFileKeepsItsModeAndGetsTheWholeText) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    const std::string expected = saveText(doc.get());
    for (const mode_t mode : {0600, 0640, 0604, 0755}) {
        SCOPED_TRACE(mode);
        TempDir dir;
        const std::string path = dir.file("keymap.json");
        writeBytes(path, kOldText);
        chmod(path.c_str(), mode);
        EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
        EXPECT_EQ(readBytes(path), expected);
        EXPECT_EQ(modeOf(path), mode);
        EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"});
    }
}

TEST(SaveSafetyPosix, NewFileGetsTheUsualModeForNewFiles) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const mode_t mask = umask(022);
    const std::string path = dir.file("new.json");
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    umask(mask);
    EXPECT_EQ(modeOf(path), 0644U);
    EXPECT_EQ(readBytes(path), saveText(doc.get()));
}

TEST(SaveSafetyPosix, SymbolicLinkStaysALinkAndItsTargetIsReplaced) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string target = dir.file("real.json");
    const std::string link = dir.file("link.json");
    writeBytes(target, kOldText);
    chmod(target.c_str(), 0640);
    ASSERT_EQ(symlink("real.json", link.c_str()), 0);

    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(link, doc.get()));
    struct stat info {};
    ASSERT_EQ(lstat(link.c_str(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    EXPECT_EQ(readBytes(target), saveText(doc.get()));
    EXPECT_EQ(modeOf(target), 0640U);
    EXPECT_EQ(dir.entries(), (std::vector<std::string>{"link.json", "real.json"}));
}

TEST(SaveSafetyPosix, ReadOnlyFileIsNotReplaced) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may write any file";
    }
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file("keymap.json");
    writeBytes(path, kOldText);
    chmod(path.c_str(), 0444);
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    EXPECT_EQ(readBytes(path), kOldText);
    EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"});
}

// A replaced file is a new file: a hard link keeps the old text, which is
// how a reader can tell that no byte was written in place.
TEST(SaveSafetyPosix, TheSaveReplacesRatherThanRewrites) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file(std::string(250, 'k'));
    writeBytes(path, kOldText);
    ASSERT_EQ(link(path.c_str(), dir.file("other").c_str()), 0);
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    EXPECT_EQ(readBytes(path), saveText(doc.get()));
    EXPECT_EQ(readBytes(dir.file("other")), kOldText);
}

// A pipe in the file's place: nobody reads it, and no save may wait for
// one. The host's save returns, the checked write refuses it.
TEST(SaveSafetyPosix, APipeInTheFilesPlaceNeverBlocks) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file("keymap.json");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    std::string error;
    EXPECT_FALSE(km::WriteTextFile(path, "{}", error));
    EXPECT_EQ(error, "not a regular file");
}

// A save killed midway leaves its temporary file; the next save of the same
// file removes it, its writer being gone.
TEST(SaveSafetyPosix, AKilledSavesLeftoverGoesWithTheNextSave) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file("keymap.json");
    writeBytes(path, kOldText);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        const rlimit small{100, 100};  // SIGXFSZ kills it in the middle of the write
        setrlimit(RLIMIT_FSIZE, &small);
        std::string error;
        km::WriteTextFile(path, std::string(4096, ' '), error);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_EQ(dir.entries().size(), 2U) << "the killed save left its file";
    EXPECT_EQ(readBytes(path), kOldText);
    std::string error;
    EXPECT_TRUE(km::WriteTextFile(path, saveText(doc.get()), error)) << error;
    EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"});
}

}  // namespace
