//
// EditorSession.cpp
//

#include "EditorSession.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <utility>

#include <Poco/Exception.h>
#include <Poco/File.h>
#include <Poco/FileStream.h>
#include <Poco/Path.h>
#include <Poco/StreamCopier.h>
#include <zuno-keymapmanager/api/TextFile.h>

#include "LostElements.h"

namespace zunokeymap {
namespace editor {

namespace {

const char* const kBlankDocument = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";

}  // namespace

bool ReadWholeFile(const std::string& path, std::string& bytes) {
    try {
        if (!Poco::File(path).isFile()) {
            return false;
        }
        Poco::FileInputStream in(path, std::ios::in | std::ios::binary);
        std::string content;
        Poco::StreamCopier::copyToString(in, content);
        if (in.bad()) {
            return false;
        }
        bytes.swap(content);
        return true;
    } catch (const Poco::Exception&) {
        return false;
    }
}

namespace {

// Reads the edited file, if there is one, into `bytes`; false, with
// `diagnostic`, when it is there but cannot be read.
bool readEditedFile(const std::string& file, bool& exists, std::string& bytes,
                    km::LoadDiagnostic& diagnostic) {
    exists = PathExists(file);
    if (exists && !ReadWholeFile(file, bytes)) {
        diagnostic.failed = true;
        diagnostic.problem = km::LoadDiagnostic::Problem::Unreadable;
        diagnostic.message = "cannot read the file";
        return false;
    }
    return true;
}

// "NAME.recovery.EXT" for the first, "NAME.recovery-N.EXT" after it.
std::string recoveryName(const Poco::Path& edited, int n) {
    const std::string extension = edited.getExtension().empty() ? "json" : edited.getExtension();
    return edited.getBaseName() + ".recovery" + (n == 1 ? std::string() : "-" + std::to_string(n)) +
           "." + extension;
}

// The recovery files of `file` in its folder and the recovery folder, in the
// order they were made (by number), that are regular files.
std::vector<std::string> findRecoveryFiles(const std::string& file) {
    namespace fs = std::filesystem;
    std::vector<std::string> found;
    const Poco::Path edited(file);
    const std::string ours = edited.getBaseName() + ".recovery";
    for (const std::string& folder : {edited.parent().toString(), RecoveryFolder()}) {
        std::vector<std::pair<int, std::string>> numbered;
        std::error_code code;
        fs::directory_iterator entries(fs::u8path(folder.empty() ? std::string(".") : folder),
                                       code);
        for (; !code && entries != fs::directory_iterator(); entries.increment(code)) {
            const std::string name = entries->path().filename().u8string();
            // Regular files only: a link under the name is nobody's recovery.
            std::error_code status;
            if (name.compare(0, ours.size(), ours) != 0 ||
                !fs::is_regular_file(entries->symlink_status(status))) {
                continue;
            }
            for (int n = 1; n < 1000; ++n) {
                if (name == recoveryName(edited, n)) {
                    numbered.emplace_back(n, entries->path().u8string());
                    break;
                }
            }
        }
        std::sort(numbered.begin(), numbered.end());
        for (auto& entry : numbered) {
            found.push_back(std::move(entry.second));
        }
    }
    return found;
}

}  // namespace

bool PathExists(const std::string& path) {
    try {
        return Poco::File(path).exists();
    } catch (const Poco::Exception&) {
        return false;
    }
}

EditorSession::EditorSession(std::string file, bool joystick, render::RenderOptions render)
    : file_(std::move(file)), joystick_(joystick), render_(std::move(render)) {
    std::unique_ptr<km::KeymapConfig> doc;
    if (!readEditedFile(file_, fileExisted_, fileBytes_, openDiagnostic_)) {
        opened_ = Opened::Unreadable;
        openDiagnostic_.source = file_;
    } else if (!fileBytes_.empty()) {
        doc.reset(load(fileBytes_, openDiagnostic_));
        openDiagnostic_.source = file_;
        opened_ = openDiagnostic_.failed ? Opened::Failed : Opened::Loaded;
    } else {
        // No file, or an empty one: start from the built-in blank document.
        opened_ = Opened::Missing;
        km::LoadDiagnostic ignored;
        doc.reset(loadBlank(ignored));
    }
    if (opened_ == Opened::Loaded) {
        lost_ = LostOnSave(fileBytes_, *doc);
    }
    recoveryFiles_ = findRecoveryFiles(file_);
    if (opened_ == Opened::Loaded || opened_ == Opened::Missing) {
        std::string text = km::SaveKeymapConfigAndInfoToText(doc.get());
        savedText_ = text;
        hold(std::move(doc), std::move(text));
    }
}

km::KeymapConfig* EditorSession::load(const std::string& text,
                                      km::LoadDiagnostic& diagnostic) const {
    return km::ReadKeymapDocument(km::DocumentOrigin::Text, std::string(), text, joystick_,
                                  diagnostic);
}

void EditorSession::hold(std::unique_ptr<km::KeymapConfig> doc, std::string text) {
    report_ =
        std::make_shared<const km::CheckReport>(km::CheckKeymapDocument(text, joystick_, file_));
    ids_ = freshIds(doc->items.size());
    doc_ = std::move(doc);
    text_ = std::move(text);
}

std::vector<long> EditorSession::freshIds(std::size_t count) {
    std::vector<long> ids;
    ids.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        ids.push_back(nextId_++);
    }
    return ids;
}

void EditorSession::commit(HeldState state, std::unique_ptr<km::KeymapConfig> doc,
                           std::shared_ptr<const km::CheckReport> report) {
    std::lock_guard<std::mutex> lock(mutex_);
    doc_ = std::move(doc);
    commitLocked(std::move(state), std::move(report));
}

void EditorSession::commitLocked(HeldState state, std::shared_ptr<const km::CheckReport> report) {
    if (!report) {
        report = std::make_shared<const km::CheckReport>(
            km::CheckKeymapDocument(state.text, joystick_, file_));
    }
    text_ = std::move(state.text);
    ids_ = std::move(state.ids);
    report_ = std::move(report);
    canUndo_ = history_.canUndo();
    canRedo_ = history_.canRedo();
    ++version_;
}

EditorSession::Snapshot EditorSession::snapshot(bool picture) const {
    Snapshot shot;
    std::lock_guard<std::mutex> lock(mutex_);
    shot.text = text_;
    shot.ids = ids_;
    shot.report = report_;
    shot.version = version_;
    shot.unsaved = text_ != savedText_;
    shot.canUndo = canUndo_;
    shot.canRedo = canRedo_;
    if (picture && doc_) {
        // The page shows the background itself: sent with every change, a
        // screenshot would cost more than the document.
        render::RenderOptions options = render_;
        options.background = render::Background();
        shot.svg = render::RenderSvg(*doc_, *report_, options);
    }
    return shot;
}

std::string EditorSession::documentText() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return text_;
}

bool EditorSession::unsaved() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return text_ != savedText_;
}

bool EditorSession::replace(const std::string& text, km::LoadDiagnostic& diagnostic) {
    // The load and the check need no lock: only what the session holds does.
    std::unique_ptr<km::KeymapConfig> doc(load(text, diagnostic));
    if (diagnostic.failed) {
        return false;
    }
    std::lock_guard<std::mutex> editing(editMutex_);
    HeldState state = freshState(*doc);
    commit(std::move(state), std::move(doc), nullptr);
    return true;
}

HeldState EditorSession::freshState(const km::KeymapConfig& doc) {
    HeldState state{km::SaveKeymapConfigAndInfoToText(&doc), freshIds(doc.items.size())};
    if (doc_ && state.text != text_) {
        history_.record({text_, ids_}, std::string());
    }
    return state;
}

km::KeymapConfig* EditorSession::loadBlank(km::LoadDiagnostic& diagnostic) const {
    return km::ReadKeymapDocument(km::DocumentOrigin::BuiltIn, kBlankDocument, "", joystick_,
                                  diagnostic);
}

bool EditorSession::reload(km::LoadDiagnostic& diagnostic) {
    std::string bytes;
    bool exists = false;
    if (!readEditedFile(file_, exists, bytes, diagnostic)) {
        return false;
    }
    std::unique_ptr<km::KeymapConfig> doc(bytes.empty() ? loadBlank(diagnostic)
                                                        : load(bytes, diagnostic));
    if (diagnostic.failed) {
        return false;
    }
    std::lock_guard<std::mutex> editing(editMutex_);
    HeldState state = freshState(*doc);
    std::vector<std::string> lost =
        bytes.empty() ? std::vector<std::string>() : LostOnSave(bytes, *doc);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        fileExisted_ = exists;
        fileBytes_ = bytes;
        savedText_ = state.text;
        lost_ = std::move(lost);
    }
    commit(std::move(state), std::move(doc), nullptr);
    return true;
}

std::shared_ptr<const km::CheckReport> EditorSession::check() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return report_;
}

std::string EditorSession::renderSvg() const {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!doc_) {
        return std::string();
    }
    return render::RenderSvg(*doc_, *report_, render_);
}

EditorSession::SaveResult EditorSession::save(bool force, bool dropLost, std::string& message) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!doc_) {
        message = "no document is held";
        return SaveResult::Failed;
    }
    std::string onDisk;
    const bool exists = PathExists(file_);
    const bool readable = exists && ReadWholeFile(file_, onDisk);
    const bool same = exists == fileExisted_ && (!exists || (readable && onDisk == fileBytes_));
    if (!same && !force) {
        message = exists ? "the file changed on disk since it was opened or last saved"
                         : "the file was removed since it was opened or last saved";
        return SaveResult::Conflict;
    }
    if (!lost_.empty() && !dropLost) {
        message = "saving would drop " + std::to_string(lost_.size()) +
                  (lost_.size() == 1 ? " element" : " elements") +
                  " of the file that the library does not keep";
        return SaveResult::WouldLose;
    }
    std::string error;
    if (!km::WriteTextFile(file_, text_, error)) {
        message = "the file could not be written: " + error;
        return SaveResult::Failed;
    }
    fileExisted_ = true;
    fileBytes_ = text_;
    savedText_ = text_;
    lost_.clear();
    message.clear();
    return SaveResult::Saved;
}

std::vector<std::string> EditorSession::lost() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return lost_;
}

std::string EditorSession::writeRecovery() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!doc_ || text_ == savedText_) {
        return std::string();
    }
    const Poco::Path edited(file_);
    for (const std::string& folder : {edited.parent().toString(), RecoveryFolder()}) {
        if (folder.empty()) {
            continue;
        }
        try {
            Poco::File(folder).createDirectories();
        } catch (const Poco::Exception&) {
            continue;
        }
        for (int n = 1; n < 1000; ++n) {
            Poco::Path candidate(Poco::Path::forDirectory(folder));
            candidate.setFileName(recoveryName(edited, n));
            std::string error;
            if (km::WriteNewTextFile(candidate.toString(), text_, file_, error)) {
                return candidate.toString();
            }
            std::error_code code;
            if (!std::filesystem::exists(std::filesystem::symlink_status(
                    std::filesystem::u8path(candidate.toString()), code))) {
                break;  // not a taken name: this folder takes no file at all
            }
        }
    }
    return std::string();
}

std::string RecoveryFolder() {
    try {
        return Poco::Path(Poco::Path::dataHome())
            .pushDirectory("zuno-keymap")
            .pushDirectory("recovery")
            .toString();
    } catch (const Poco::Exception&) {
        return std::string();
    }
}

}  // namespace editor
}  // namespace zunokeymap
