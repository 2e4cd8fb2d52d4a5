//
// EditorSessionEdit.cpp
//
// EditorSession's edits: each operation applied to the held document and
// loaded through the library, one item alone where it can be, the whole
// document where it must; a "set" also checked against the member's declared
// range. And the items a key fires, for test mode.
//

#include <algorithm>
#include <sstream>

#include <Poco/Exception.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>

#include "EditorSession.h"

namespace zunokeymap {
namespace editor {

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
                                            const std::string& client, long seq) {
    std::lock_guard<std::mutex> editing(editMutex_);
    if (!client.empty() && client == lastClient_ && seq <= lastSeq_) {
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
    EditTarget target;
    target.root = new Poco::JSON::Object();
    Poco::JSON::Array::Ptr items = new Poco::JSON::Array();
    items->add(ItemJson(*held));
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
    if (OperationName(op) != "set") {
        report.reset();
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
    report = std::move(checked);
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

}  // namespace editor
}  // namespace zunokeymap
