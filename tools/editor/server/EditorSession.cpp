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
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>
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
    fileExisted_ = PathExists(file_);
    std::unique_ptr<km::KeymapConfig> doc;
    if (fileExisted_ && !ReadWholeFile(file_, fileBytes_)) {
        opened_ = Opened::Unreadable;
        openDiagnostic_.failed = true;
        openDiagnostic_.problem = km::LoadDiagnostic::Problem::Unreadable;
        openDiagnostic_.source = file_;
        openDiagnostic_.message = "cannot read the file";
    } else if (fileExisted_ && !fileBytes_.empty()) {
        doc.reset(load(fileBytes_, openDiagnostic_));
        openDiagnostic_.source = file_;
        opened_ = openDiagnostic_.failed ? Opened::Failed : Opened::Loaded;
    } else {
        // No file, or an empty one: start from the built-in blank document.
        opened_ = Opened::Missing;
        km::LoadDiagnostic ignored;
        doc.reset(km::ReadKeymapDocument(km::DocumentOrigin::BuiltIn, kBlankDocument, "", joystick_,
                                         ignored));
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

namespace {

// Whether the check `after` finds something at or under `path` that `before`
// did not: a value out of its range, of the wrong type, not among the names.
const km::Finding* newFindingAt(const std::string& path, const km::CheckReport& before,
                                const km::CheckReport& after) {
    const auto under = [&path](const km::Finding& finding) {
        return finding.kind == km::FindingKind::Schema &&
               finding.path.compare(0, path.size(), path) == 0 &&
               (finding.path.size() == path.size() || finding.path[path.size()] == '.' ||
                finding.path[path.size()] == '[');
    };
    for (const km::Finding& finding : after.findings) {
        if (!under(finding)) {
            continue;
        }
        const bool known = std::any_of(
            before.findings.begin(), before.findings.end(), [&](const km::Finding& old) {
                return old.path == finding.path && old.message == finding.message;
            });
        if (!known) {
            return &finding;
        }
    }
    return nullptr;
}

// Whether the saved form `text` still has the member `path` ("keymaps[2].a.b").
bool keeps(const std::string& text, const std::string& path) {
    std::vector<std::string> tokens;
    std::string token;
    for (char c : path) {
        if (c == '.' || c == '[' || c == ']') {
            if (!token.empty()) {
                tokens.push_back(token);
            }
            token.clear();
        } else {
            token += c;
        }
    }
    if (!token.empty()) {
        tokens.push_back(token);
    }
    Poco::JSON::Parser parser;
    Poco::Dynamic::Var at = parser.parse(text);
    for (const std::string& name : tokens) {
        if (at.type() == typeid(Poco::JSON::Array::Ptr)) {
            const auto array = at.extract<Poco::JSON::Array::Ptr>();
            const std::size_t index = std::strtoul(name.c_str(), nullptr, 10);
            if (index >= array->size()) {
                return false;
            }
            at = array->get(static_cast<unsigned>(index));
        } else if (at.type() == typeid(Poco::JSON::Object::Ptr)) {
            const auto object = at.extract<Poco::JSON::Object::Ptr>();
            if (!object->has(name)) {
                return false;
            }
            at = object->get(name);
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace

std::vector<EditResult> EditorSession::edit(const Poco::JSON::Array::Ptr& ops,
                                            const std::string& client, long seq, bool& repeated) {
    std::lock_guard<std::mutex> editing(editMutex_);
    repeated = !client.empty() && client == lastClient_ && seq <= lastSeq_;
    if (repeated) {
        return seq == lastSeq_ ? lastResults_ : std::vector<EditResult>();
    }
    std::vector<EditResult> results;
    // The batch works on the held document itself: readers wait for it, and
    // see the document as it was before or after, never between.
    std::lock_guard<std::mutex> lock(mutex_);
    if (!doc_) {
        return results;
    }
    HeldState state{text_, ids_};
    std::shared_ptr<const km::CheckReport> report = report_;
    bool changed = false;
    for (std::size_t i = 0; i < ops->size(); ++i) {
        const Poco::JSON::Object::Ptr op = ops->getObject(static_cast<unsigned>(i));
        const std::string before = state.text;
        results.push_back(editOne(op, state, report));
        changed = changed || state.text != before || state.ids != ids_;
    }
    if (changed) {
        commitLocked(std::move(state), report);
    }
    lastClient_ = client;
    lastSeq_ = seq;
    lastResults_ = results;
    return results;
}

namespace {

// The single item an edit changes, when it changes nothing else: a move, or a
// member of one item set or removed. Its index in `ids`, else -1.
int soleItem(const Poco::JSON::Object::Ptr& op, const std::string& name,
             const std::vector<long>& ids) {
    if ((name != "move" && name != "set" && name != "remove") || !op->has("item") ||
        !op->get("item").isNumeric()) {
        return -1;
    }
    const double id = op->get("item").convert<double>();
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (static_cast<double>(ids[i]) == id) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

Poco::JSON::Object::Ptr parsedObject(const std::string& text) {
    Poco::JSON::Parser parser;
    return parser.parse(text).extract<Poco::JSON::Object::Ptr>();
}

}  // namespace

bool EditorSession::editItem(const Poco::JSON::Object::Ptr& op, int index, HeldState& state,
                             EditResult& result, std::shared_ptr<const km::CheckReport>& report) {
    // The item alone, through the library's writer and reader: a whole
    // document is neither parsed nor loaded for it.
    km::ConfigItem*& held = doc_->items[static_cast<std::size_t>(index)];
    if (held == nullptr) {
        return false;
    }
    std::ostringstream itemText;
    Poco::JSON::Stringifier::stringify(held->ConvertToJsonObject(), itemText);
    EditTarget target;
    target.root = new Poco::JSON::Object();
    Poco::JSON::Array::Ptr items = new Poco::JSON::Array();
    items->add(parsedObject(itemText.str()));
    target.root->set("keymaps", items);
    std::vector<long> ids{state.ids[static_cast<std::size_t>(index)]};
    target.ids = &ids;
    target.nextId = &nextId_;
    target.loaded = doc_.get();
    if (!ApplyOperation(op, target, result)) {
        return true;
    }
    std::unique_ptr<km::ConfigItem> edited;
    try {
        edited.reset(km::ConfigFactory::ProduceConfigItem(items->getObject(0)));
    } catch (const Poco::Exception&) {
        return false;  // refused: the whole document's load says why, and where
    }
    if (!edited) {
        return false;
    }
    const std::string prefix = "keymaps[0]";
    if (result.path.compare(0, prefix.size(), prefix) == 0) {
        result.path = "keymaps[" + std::to_string(index) + "]" + result.path.substr(prefix.size());
    }
    result.index = index;
    std::unique_ptr<km::ConfigItem> previous(held);
    held = edited.release();
    HeldState next{km::SaveKeymapConfigAndInfoToText(doc_.get()), state.ids};
    if (!acceptSet(op, result, state, next, report)) {
        delete held;
        held = previous.release();
        return true;
    }
    keep(op, state, std::move(next));
    return true;
}

void EditorSession::keep(const Poco::JSON::Object::Ptr& op, HeldState& state, HeldState next) {
    if (next.text != state.text) {
        history_.record(std::move(state), op->optValue<std::string>("group", std::string()));
        state = std::move(next);
    } else {
        state.ids = std::move(next.ids);
    }
}

bool EditorSession::acceptSet(const Poco::JSON::Object::Ptr& op, EditResult& result,
                              const HeldState& state, const HeldState& next,
                              std::shared_ptr<const km::CheckReport>& report) {
    checked_.reset();
    if (OperationName(op) != "set") {
        return true;
    }
    auto checked = std::make_shared<const km::CheckReport>(
        km::CheckKeymapDocument(next.text, joystick_, file_));
    if (!report) {
        report = std::make_shared<const km::CheckReport>(
            km::CheckKeymapDocument(state.text, joystick_, file_));
    }
    if (const km::Finding* finding = newFindingAt(result.path, *report, *checked)) {
        result.ok = false;
        result.error = finding->message;
        return false;
    }
    // A member set to what the library leaves out (an unset second key) is a
    // change; one it leaves out although it was not there is not.
    if (next.text == state.text && !keeps(next.text, result.path)) {
        result.ok = false;
        result.error = "the library does not keep " + result.path + " with this value";
        return false;
    }
    checked_ = std::move(checked);
    return true;
}

EditResult EditorSession::editOne(const Poco::JSON::Object::Ptr& op, HeldState& state,
                                  std::shared_ptr<const km::CheckReport>& report) {
    EditResult result;
    const std::string name = OperationName(op);
    if (name == "undo" || name == "redo") {
        result.ok = name == "undo" ? history_.undo(state) : history_.redo(state);
        if (!result.ok) {
            result.error = "nothing to " + name;
            return result;
        }
        km::LoadDiagnostic ignored;
        doc_.reset(load(state.text, ignored));
        report.reset();
        return result;
    }
    const int index = soleItem(op, name, state.ids);
    if (index >= 0 && editItem(op, index, state, result, report)) {
        report = result.ok ? checked_ : report;
        return result;
    }
    result = EditResult();
    HeldState next{std::string(), state.ids};
    EditTarget target;
    try {
        target.root = parsedObject(state.text);
    } catch (const Poco::Exception& e) {
        result.error = "the held document does not parse: " + e.displayText();
        return result;
    }
    target.ids = &next.ids;
    target.nextId = &nextId_;
    target.loaded = doc_.get();
    if (!ApplyOperation(op, target, result)) {
        return result;
    }
    std::ostringstream text;
    Poco::JSON::Stringifier::stringify(target.root, text);
    km::LoadDiagnostic diagnostic;
    std::unique_ptr<km::KeymapConfig> loaded(load(text.str(), diagnostic));
    if (diagnostic.failed || loaded->items.size() != next.ids.size()) {
        result.ok = false;
        result.error = diagnostic.failed ? diagnostic.message
                                         : "the library does not keep an item of this type";
        if (!diagnostic.path.empty()) {
            result.path = diagnostic.path;
        }
        return result;
    }
    next.text = km::SaveKeymapConfigAndInfoToText(loaded.get());
    if (!acceptSet(op, result, state, next, report)) {
        return result;
    }
    keep(op, state, std::move(next));
    doc_ = std::move(loaded);
    report = checked_;
    return result;
}

Poco::JSON::Array::Ptr EditorSession::triggered(const km::KeyTrigger& trigger) const {
    Poco::JSON::Array::Ptr items = new Poco::JSON::Array();
    std::lock_guard<std::mutex> lock(mutex_);
    if (!doc_) {
        return items;
    }
    for (std::size_t i = 0; i < doc_->items.size(); ++i) {
        km::ConfigItem* item = doc_->items[i];
        if (item == nullptr || !km::TriggerFires(*item, trigger)) {
            continue;
        }
        std::string role = "key";
        for (km::KeyTrigger& own : km::KeyTriggersOf(*item)) {
            if (own.first.Match(trigger.first)) {
                role = own.role;
                break;
            }
        }
        Poco::JSON::Object::Ptr entry = new Poco::JSON::Object(Poco::JSON_PRESERVE_KEY_ORDER);
        entry->set("index", static_cast<int>(i));
        entry->set("role", role);
        entry->set("rel_x", item->rel_work_position.x);
        entry->set("rel_y", item->rel_work_position.y);
        items->add(entry);
    }
    return items;
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
    HeldState state{km::SaveKeymapConfigAndInfoToText(doc.get()), freshIds(doc->items.size())};
    if (doc_ && state.text != text_) {
        history_.record({text_, ids_}, std::string());
    }
    commit(std::move(state), std::move(doc), nullptr);
    return true;
}

bool EditorSession::reload(km::LoadDiagnostic& diagnostic) {
    std::string bytes;
    const bool exists = PathExists(file_);
    if (exists && !ReadWholeFile(file_, bytes)) {
        diagnostic.failed = true;
        diagnostic.problem = km::LoadDiagnostic::Problem::Unreadable;
        diagnostic.message = "cannot read the file";
        return false;
    }
    std::unique_ptr<km::KeymapConfig> doc;
    if (bytes.empty()) {
        doc.reset(km::ReadKeymapDocument(km::DocumentOrigin::BuiltIn, kBlankDocument, "", joystick_,
                                         diagnostic));
    } else {
        doc.reset(load(bytes, diagnostic));
    }
    if (diagnostic.failed) {
        return false;
    }
    std::lock_guard<std::mutex> editing(editMutex_);
    HeldState state{km::SaveKeymapConfigAndInfoToText(doc.get()), freshIds(doc->items.size())};
    if (state.text != text_) {
        history_.record({text_, ids_}, std::string());
    }
    std::vector<std::string> lost = LostOnSave(bytes, *doc);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        fileExisted_ = exists;
        fileBytes_ = bytes;
        savedText_ = state.text;
        lost_ = bytes.empty() ? std::vector<std::string>() : std::move(lost);
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
