//
// EditorSessionRecovery.cpp
//
// EditorSession's recovery files: the unsaved work of a session that ended
// without a save, written where the next session on the same file finds it.
// Beside the file the name alone ties it to the file, and it holds the
// document alone; in the shared folders (the user's data folder, the
// system's temporary folder) its name carries a hash of the file's full path
// and it records that path beside the document, so another folder's file of
// the same name is never offered this file's work.
//

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <sstream>

#include <Poco/DateTimeFormatter.h>
#include <Poco/Exception.h>
#include <Poco/File.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>
#include <Poco/Path.h>
#include <zuno-keymapmanager/api/TextFile.h>

#include "EditorSession.h"
#include "FileTrust.h"
#include "JsonWriter.h"

namespace zunokeymap {
namespace editor {

namespace fs = std::filesystem;

namespace {

// The most recovery files of one file in one folder.
constexpr int kMaxRecoveries = 999;

// A folder recovery files may go to; `hashed` ones are shared by all files.
struct Folder {
    std::string path;
    bool hashed;
};

std::vector<Folder> recoveryFolders(const std::string& fullPath) {
    std::vector<Folder> folders{{fs::u8path(fullPath).parent_path().u8string(), false}};
    const std::string data = RecoveryFolder();
    if (!data.empty()) {
        folders.push_back({data, true});
    }
    std::error_code code;
    const fs::path temp = fs::temp_directory_path(code);
    if (!code && !temp.empty()) {
        folders.push_back({temp.u8string(), true});
    }
    return folders;
}

// 64-bit FNV-1a: short, stable across platforms and runs.
std::string pathHash(const std::string& text) {
    std::uint64_t hash = 14695981039346656037ULL;
    for (const unsigned char c : text) {
        hash = (hash ^ c) * 1099511628211ULL;
    }
    static const char kHex[] = "0123456789abcdef";
    std::string hex(16, '0');
    for (int i = 15; i >= 0; --i, hash >>= 4) {
        hex[static_cast<std::size_t>(i)] = kHex[hash & 15];
    }
    return hex;
}

// "NAME.recovery.EXT" for the first, "NAME.recovery-N.EXT" after it; in a
// shared folder "NAME.HASH.recovery.EXT".
std::string recoveryName(const std::string& fullPath, bool hashed, int n) {
    const Poco::Path edited(fullPath);
    const std::string extension = edited.getExtension().empty() ? "json" : edited.getExtension();
    return edited.getBaseName() + (hashed ? "." + pathHash(fullPath) : std::string()) +
           ".recovery" + (n == 1 ? std::string() : "-" + std::to_string(n)) + "." + extension;
}

// The number of recovery file `name` of `fullPath` in its kind of folder, or 0.
int recoveryNumber(const std::string& name, const std::string& fullPath, bool hashed) {
    const std::string first = recoveryName(fullPath, hashed, 1);
    const std::string stem = first.substr(0, first.rfind('.'));
    if (name.compare(0, stem.size(), stem) != 0) {
        return 0;
    }
    for (int n = 1; n <= kMaxRecoveries; ++n) {
        if (name == recoveryName(fullPath, hashed, n)) {
            return n;
        }
    }
    return 0;
}

// The document a recovery file keeps, and the full path it names (empty for
// one beside the file, which holds the document alone).
bool readRecovery(const std::string& path, std::string& document, std::string& owner) {
    std::string bytes;
    if (!ReadWholeFile(path, bytes)) {
        return false;
    }
    try {
        Poco::JSON::Parser parser;
        const Poco::Dynamic::Var parsed = parser.parse(bytes);
        const auto& object = parsed.extract<Poco::JSON::Object::Ptr>();
        if (object->has("file") && object->has("document")) {
            owner = object->getValue<std::string>("file");
            std::ostringstream text;
            Poco::JSON::Stringifier::stringify(object->getObject("document"), text);
            document = text.str();
            return !object->getObject("document").isNull();
        }
    } catch (const Poco::Exception&) {
        // A document that does not parse is still offered beside the file,
        // where its name alone makes it this file's: its load says why.
    } catch (const std::exception&) {
    }
    owner.clear();
    document = std::move(bytes);
    return true;
}

// The list of recovery files dismissed although they could not be removed
// (a folder the user may not write): "STAMP PATH" lines.
std::string dismissedList() {
    const std::string folder = RecoveryFolder();
    return folder.empty() ? std::string()
                          : (fs::u8path(folder) / fs::u8path("dismissed.txt")).u8string();
}

std::string dismissedLine(const std::string& path, long long stamp) {
    return std::to_string(stamp) + " " + path + "\n";
}

bool isDismissed(const std::string& list, const std::string& path, long long stamp) {
    const std::string line = dismissedLine(path, stamp);
    return list.compare(0, line.size(), line) == 0 || list.find("\n" + line) != std::string::npos;
}

// Remembers for later sessions that the recovery file `path` of this age is
// not to be offered again.
void rememberDismissed(const std::string& path, long long stamp) {
    const std::string list = dismissedList();
    std::string text;
    if (list.empty()) {
        return;
    }
    ReadWholeFile(list, text);
    if (isDismissed(text, path, stamp)) {
        return;
    }
    try {
        Poco::File(RecoveryFolder()).createDirectories();
    } catch (const Poco::Exception&) {
        return;
    }
    std::string ignored;
    km::WriteTextFile(list, text + dismissedLine(path, stamp), ignored);
}

}  // namespace

// The names recoveryName gives beside the file, for any NAME.
bool IsRecoveryName(const std::string& name) {
    const std::string recovery = ".recovery";
    const std::size_t mark = name.rfind(recovery);
    if (mark == std::string::npos) {
        return false;
    }
    const std::string rest = name.substr(mark + recovery.size());
    if (rest == ".json") {
        return true;
    }
    return rest.size() > 6 && rest[0] == '-' &&
           rest.find_first_not_of("0123456789", 1) == rest.size() - 5 &&
           rest.compare(rest.size() - 5, 5, ".json") == 0;
}

std::string RecoveryFolder() {
    try {
        const std::string data = Poco::Path::dataHome();
        if (data.empty() || !Poco::Path(data).isAbsolute()) {
            return std::string();
        }
        return Poco::Path(Poco::Path::forDirectory(data))
            .pushDirectory("zuno-keymap")
            .pushDirectory("recovery")
            .toString();
    } catch (const Poco::Exception&) {
        return std::string();
    }
}

std::string FullPath(const std::string& file) {
    // The folder's links and ".." are resolved, not the file's own link: its
    // recovery file belongs beside the name that was edited.
    std::error_code code;
    const fs::path given = fs::absolute(fs::u8path(file), code);
    if (code) {
        return file;
    }
    const fs::path folder = fs::weakly_canonical(given.parent_path(), code);
    return ((code ? given.parent_path().lexically_normal() : folder) / given.filename()).u8string();
}

void EditorSession::findRecoveries() {
    std::vector<Found> found;
    std::string dismissed;
    ReadWholeFile(dismissedList(), dismissed);
    for (const Folder& folder : recoveryFolders(fullPath_)) {
        std::error_code code;
        fs::directory_iterator entries(fs::u8path(folder.path), code);
        for (; !code && entries != fs::directory_iterator(); entries.increment(code)) {
            const std::string name = entries->path().filename().u8string();
            const std::string path = entries->path().u8string();
            const int n = recoveryNumber(name, fullPath_, folder.hashed);
            // Regular files only: a link under the name is nobody's recovery;
            // in a shared folder, only the user's own files.
            std::error_code status;
            if (n == 0 || !fs::is_regular_file(entries->symlink_status(status)) ||
                (folder.hashed && !OwnedByUser(path))) {
                continue;
            }
            std::string document;
            std::string owner;
            if (!readRecovery(path, document, owner) || (folder.hashed && owner != fullPath_)) {
                continue;
            }
            Found entry;
            entry.path = path;
            try {
                Poco::File file(path);
                entry.stamp = file.getLastModified().epochMicroseconds();
                entry.bytes = static_cast<long long>(file.getSize());
                entry.time =
                    Poco::DateTimeFormatter::format(file.getLastModified(), "%Y-%m-%dT%H:%M:%SZ");
            } catch (const Poco::Exception&) {
                continue;
            }
            if (isDismissed(dismissed, path, entry.stamp)) {
                continue;
            }
            entry.n = n;  // the order among files of one age, then renumbered
            found.push_back(std::move(entry));
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const Found& a, const Found& b) {
        return a.stamp != b.stamp ? a.stamp > b.stamp : a.n > b.n;
    });
    for (std::size_t i = 0; i < found.size(); ++i) {
        found[i].n = static_cast<int>(i);
    }
    recovery_ = std::move(found);
}

std::vector<EditorSession::Recovery> EditorSession::recoveries() const {
    std::lock_guard<std::mutex> lock(mutex_);
    std::vector<Recovery> offered;
    for (const Found& entry : recovery_) {
        if (!entry.gone) {
            offered.push_back(entry);
        }
    }
    return offered;
}

std::vector<std::string> EditorSession::recoveryFiles() const {
    std::vector<std::string> paths;
    for (const Recovery& entry : recoveries()) {
        paths.push_back(entry.path);
    }
    return paths;
}

bool EditorSession::recoveryText(int n, std::string& text) const {
    std::string path;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        const auto entry = std::find_if(recovery_.begin(), recovery_.end(),
                                        [n](const Found& e) { return e.n == n && !e.gone; });
        if (entry == recovery_.end()) {
            return false;
        }
        path = entry->path;
    }
    std::string owner;
    return readRecovery(path, text, owner);
}

bool EditorSession::openRecovery(int n, km::LoadDiagnostic& diagnostic) {
    std::string text;
    if (!recoveryText(n, text)) {
        return false;
    }
    std::unique_ptr<km::KeymapConfig> doc(load(text, diagnostic));
    if (diagnostic.failed) {
        return false;
    }
    std::lock_guard<std::mutex> editing(editMutex_);
    HeldState state = freshState(*doc);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        for (Found& entry : recovery_) {
            entry.opened = entry.opened || entry.n == n;
        }
    }
    commit(std::move(state), std::move(doc), nullptr);
    return true;
}

bool EditorSession::dismissRecovery(int n) {
    std::lock_guard<std::mutex> lock(mutex_);
    bool named = false;
    for (Found& entry : recovery_) {
        if (!entry.gone && (n < 0 || entry.n == n)) {
            std::error_code code;
            if (!fs::remove(fs::u8path(entry.path), code)) {
                // One the user may not remove is not offered again either.
                rememberDismissed(entry.path, entry.stamp);
            }
            entry.gone = true;
            named = true;
        }
    }
    return named || n < 0;
}

void EditorSession::removeOpenedRecoveries() {
    for (Found& entry : recovery_) {
        if (entry.opened && !entry.gone) {
            std::error_code ignored;
            fs::remove(fs::u8path(entry.path), ignored);
            entry.gone = true;
        }
    }
}

std::string EditorSession::writeRecovery() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!doc_ || text_ == savedText_) {
        return std::string();
    }
    // Beside the file the document alone, which `zuno-keymap` reads as it is;
    // in a shared folder with the full path of the file it belongs to.
    std::string record;
    JsonWriter out(record);
    out.beginObject().key("file").value(fullPath_);
    record += ",\"document\":";
    record += text_;
    record += "}";
    for (const Folder& folder : recoveryFolders(fullPath_)) {
        if (folder.hashed && folder.path == RecoveryFolder()) {
            try {
                Poco::File(folder.path).createDirectories();
            } catch (const Poco::Exception&) {
                continue;
            }
        }
        for (int n = 1; n <= kMaxRecoveries; ++n) {
            std::string candidate =
                (fs::u8path(folder.path) / fs::u8path(recoveryName(fullPath_, folder.hashed, n)))
                    .u8string();
            std::string error;
            if (km::WriteNewTextFile(candidate, folder.hashed ? record : text_, file_, error)) {
                // The work of an opened recovery file is in this one now.
                removeOpenedRecoveries();
                return candidate;
            }
            std::error_code code;
            if (!fs::exists(fs::symlink_status(fs::u8path(candidate), code))) {
                break;  // not a taken name: this folder takes no file at all
            }
        }
    }
    return std::string();
}

}  // namespace editor
}  // namespace zunokeymap
