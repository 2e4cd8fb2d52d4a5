// A save replaces the keymap in one step: a failure midway never leaves a
// truncated or lost file behind.

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
const std::string kOldText = "{\"old\": \"keymap the user must not lose\"}\n";

/// A fresh directory, removed with everything in it.
class TempDir {
public:
    TempDir() {
        char pattern[] = "/tmp/zuno-km-save-XXXXXX";
        path_ = mkdtemp(pattern) != nullptr ? pattern : "";
    }
    ~TempDir() {
        for (const std::string& name : entries()) {
            std::remove((path_ + "/" + name).c_str());
        }
        rmdir(path_.c_str());
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::string file(const std::string& name) const { return path_ + "/" + name; }
    std::vector<std::string> entries() const {
        std::vector<std::string> names;
        if (DIR* dir = opendir(path_.c_str())) {
            while (const dirent* entry = readdir(dir)) {
                const std::string name = entry->d_name;
                if (name != "." && name != "..") {
                    names.push_back(name);
                }
            }
            closedir(dir);
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::string path_;
};

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

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

TEST(SaveSafety, AWriteFailingMidwayLeavesTheOldFileWhole) {
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
            writeFile(path, kOldText);
            chmod(path.c_str(), 0640);
        }
        EXPECT_TRUE(saveWithFileSizeLimit(path, doc.get(), c.limit));
        if (c.oldFileExists) {
            EXPECT_EQ(readFile(path), kOldText);
            EXPECT_EQ(modeOf(path), 0640U);
            EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"}) << "no leftovers";
        } else {
            EXPECT_TRUE(dir.entries().empty()) << "no file, no leftovers";
        }
    }
}

TEST(SaveSafety, ReplacedFileKeepsItsModeAndGetsTheWholeText) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    const std::string expected = saveText(doc.get());
    for (const mode_t mode : {0600, 0640, 0604, 0755}) {
        SCOPED_TRACE(mode);
        TempDir dir;
        const std::string path = dir.file("keymap.json");
        writeFile(path, kOldText);
        chmod(path.c_str(), mode);
        EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
        EXPECT_EQ(readFile(path), expected);
        EXPECT_EQ(modeOf(path), mode);
        EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"});
    }
}

TEST(SaveSafety, NewFileGetsTheUsualModeForNewFiles) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const mode_t mask = umask(022);
    const std::string path = dir.file("new.json");
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    umask(mask);
    EXPECT_EQ(modeOf(path), 0644U);
    EXPECT_EQ(readFile(path), saveText(doc.get()));
}

TEST(SaveSafety, SymbolicLinkStaysALinkAndItsTargetIsReplaced) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string target = dir.file("real.json");
    const std::string link = dir.file("link.json");
    writeFile(target, kOldText);
    chmod(target.c_str(), 0640);
    ASSERT_EQ(symlink("real.json", link.c_str()), 0);

    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(link, doc.get()));
    struct stat info {};
    ASSERT_EQ(lstat(link.c_str(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    EXPECT_EQ(readFile(target), saveText(doc.get()));
    EXPECT_EQ(modeOf(target), 0640U);
    EXPECT_EQ(dir.entries(), (std::vector<std::string>{"link.json", "real.json"}));
}

TEST(SaveSafety, WhereNoFileFitsBesideTheTargetTheTargetIsWrittenInPlace) {
    // A name of the longest allowed length leaves no room for a second name
    // derived from it.
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file(std::string(255, 'k'));
    writeFile(path, kOldText);
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    EXPECT_EQ(readFile(path), saveText(doc.get()));
    EXPECT_EQ(dir.entries().size(), 1U);
}

TEST(SaveSafety, ReadOnlyFileIsNotReplaced) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may write any file";
    }
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file("keymap.json");
    writeFile(path, kOldText);
    chmod(path.c_str(), 0444);
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    EXPECT_EQ(readFile(path), kOldText);
    EXPECT_EQ(dir.entries(), std::vector<std::string>{"keymap.json"});
}

TEST(SaveSafety, SavedFileLoadsBack) {
    CallbackRecorder recorder;
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    TempDir dir;
    const std::string path = dir.file("keymap.json");
    writeFile(path, kOldText);
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo(path, doc.get()));
    DocPtr reread(km::LoadKeymapConfigAndInfo(path, ""));
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(saveText(reread.get()), readFile(path));
}

}  // namespace
