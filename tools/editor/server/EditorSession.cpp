//
// EditorSession.cpp
//

#include "EditorSession.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <sstream>
#include <utility>

#include <Poco/Exception.h>
#include <Poco/File.h>
#include <Poco/FileStream.h>
#include <Poco/Path.h>
#include <Poco/StreamCopier.h>
#include <zuno-keymapmanager/api/TextFile.h>

#include "Captions.h"
#include "FileTrust.h"
#include "JsonWriter.h"
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

// What the picture writes for each of `doc`'s items: one text everywhere the
// page names a key.
std::string captionsJson(const km::KeymapConfig& doc) {
    std::string text;
    JsonWriter out(text);
    out.beginArray();
    for (const km::ConfigItem* item : doc.items) {
        out.beginObject();
        if (item != nullptr) {
            out.key("marker").value(render::ItemCaption(*item));
            out.key("keys").beginObject();
            const std::vector<km::KeySlot>& slots = km::KeySlotsOf(*item);
            for (const km::KeySlot& slot : slots) {
                const std::string caption =
                    slot.second >= 0 ? render::CombinationCaption(
                                           slot.in(*item),
                                           slots[static_cast<std::size_t>(slot.second)].in(*item))
                                     : render::KeyCaption(slot.in(*item));
                if (!caption.empty()) {
                    out.key(slot.path).value(caption);
                }
            }
            out.endObject();
        }
        out.endObject();
    }
    out.endArray();
    return text;
}

// Replaces the link `path` itself, never what it points to, by a new file
// holding `text`.
bool replaceLink(const std::string& path, const std::string& text, std::string& error) {
    namespace fs = std::filesystem;
    const fs::path link = fs::u8path(path);
    std::random_device random;
    for (int attempt = 0; attempt < 16; ++attempt) {
        const fs::path temp = link.parent_path() / fs::u8path("." + link.filename().u8string() +
                                                              ".new-" + std::to_string(random()));
        if (!km::WriteNewTextFile(temp.u8string(), text, std::string(), error)) {
            continue;
        }
        std::error_code code;
        fs::rename(temp, link, code);
        if (!code) {
            return true;
        }
        error = code.message();
        fs::remove(temp, code);
        return false;
    }
    return false;
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
    : file_(std::move(file)),
      joystick_(joystick),
      render_(std::move(render)),
      fullPath_(FullPath(file_)) {
    std::unique_ptr<km::KeymapConfig> doc;
    fileWasLink_ = IsLink(file_);
    if (IsUntrustedLink(file_)) {
        opened_ = Opened::Unreadable;
        openDiagnostic_.failed = true;
        openDiagnostic_.problem = km::LoadDiagnostic::Problem::Unreadable;
        openDiagnostic_.message =
            "a link that another user owns in a shared folder: it is not followed";
        openDiagnostic_.source = file_;
    } else if (!readEditedFile(file_, fileExisted_, fileBytes_, openDiagnostic_)) {
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
    findRecoveries();
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
    checked_ =
        std::make_shared<const km::CheckReport>(km::CheckKeymapDocument(text, joystick_, file_));
    carried_ = fileFindings(*checked_);
    report_ = withCarried(checked_);
    ids_ = freshIds(doc->items.size());
    doc_ = std::move(doc);
    text_ = std::move(text);
}

std::vector<km::Finding> EditorSession::fileFindings(const km::CheckReport& held) const {
    // What the check finds in the file's own text that the held document no
    // longer has: members and items the library drops, values it takes as
    // given. The page shows what `zuno-keymap check FILE` says.
    std::vector<km::Finding> carried;
    if (fileBytes_.empty()) {
        return carried;
    }
    const km::CheckReport file = km::CheckKeymapDocument(fileBytes_, joystick_, file_);
    for (const km::Finding& finding : file.findings) {
        const bool held_too = std::any_of(
            held.findings.begin(), held.findings.end(), [&finding](const km::Finding& h) {
                return h.kind == finding.kind && h.path == finding.path &&
                       h.message == finding.message;
            });
        if (!held_too) {
            carried.push_back(finding);
        }
    }
    return carried;
}

std::shared_ptr<const km::CheckReport> EditorSession::withCarried(
    const std::shared_ptr<const km::CheckReport>& checked) const {
    if (carried_.empty()) {
        return checked;
    }
    auto shown = std::make_shared<km::CheckReport>(*checked);
    std::vector<km::Finding> findings;
    for (const km::Finding& finding : carried_) {
        const bool there = std::any_of(
            checked->findings.begin(), checked->findings.end(), [&finding](const km::Finding& h) {
                return h.kind == finding.kind && h.path == finding.path &&
                       h.message == finding.message;
            });
        if (!there) {
            findings.push_back(finding);
        }
    }
    // The file's own findings first, as its check lists load findings first.
    shown->findings.insert(shown->findings.begin(), findings.begin(), findings.end());
    return shown;
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
    checked_ = std::move(report);
    report_ = withCarried(checked_);
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
    if (doc_) {
        shot.captions = captionsJson(*doc_);
    }
    if (picture && doc_) {
        // The page shows the background itself: sent with every change, a
        // screenshot would cost more than the document.
        render::RenderOptions options = render_;
        options.background = render::Background();
        shot.svg = render::RenderSvg(*doc_, *checked_, options);
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
    const auto checked = std::make_shared<const km::CheckReport>(
        km::CheckKeymapDocument(state.text, joystick_, file_));
    {
        std::lock_guard<std::mutex> lock(mutex_);
        fileExisted_ = exists;
        fileBytes_ = bytes;
        savedText_ = state.text;
        lost_ = std::move(lost);
        carried_ = fileFindings(*checked);
    }
    commit(std::move(state), std::move(doc), checked);
    return true;
}

std::shared_ptr<const km::CheckReport> EditorSession::check() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return report_;
}

std::pair<int, int> EditorSession::screenSize() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return {render_.width, render_.height};
}

void EditorSession::turnScreen() {
    std::lock_guard<std::mutex> lock(mutex_);
    std::swap(render_.width, render_.height);
}

std::string EditorSession::renderSvg() const {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!doc_) {
        return std::string();
    }
    return render::RenderSvg(*doc_, *checked_, render_);
}

long EditorSession::version() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return version_;
}

EditorSession::SaveResult EditorSession::save(bool force, bool dropLost, long long expected,
                                              long long& held, std::string& message) {
    std::lock_guard<std::mutex> lock(mutex_);
    held = version_;
    if (!doc_) {
        message = "no document is held";
        return SaveResult::Failed;
    }
    if (expected != 0 && expected != version_) {
        message = "the document was changed from another page since this one last showed it";
        return SaveResult::Stale;
    }
    // A link that was not there when the file was opened, or that someone
    // else planted in a shared folder, is never written through.
    const bool link = IsLink(file_);
    const bool foreignLink = link && (!fileWasLink_ || IsUntrustedLink(file_));
    std::string onDisk;
    const bool exists = link || PathExists(file_);
    const bool readable = !foreignLink && exists && ReadWholeFile(file_, onDisk);
    const bool same =
        !foreignLink && exists == fileExisted_ && (!exists || (readable && onDisk == fileBytes_));
    if (!same && !force) {
        message = foreignLink ? "the file was replaced by a link since it was opened or last saved"
                  : exists    ? "the file changed on disk since it was opened or last saved"
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
    if (!(foreignLink ? replaceLink(file_, text_, error)
                      : km::WriteTextFile(file_, text_, error))) {
        message = "the file could not be written: " + error;
        return SaveResult::Failed;
    }
    fileWasLink_ = link && !foreignLink;
    fileExisted_ = true;
    fileBytes_ = text_;
    savedText_ = text_;
    lost_.clear();
    carried_.clear();
    report_ = checked_;
    removeOpenedRecoveries();
    held = ++version_;
    message.clear();
    return SaveResult::Saved;
}

std::vector<std::string> EditorSession::lost() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return lost_;
}

}  // namespace editor
}  // namespace zunokeymap
