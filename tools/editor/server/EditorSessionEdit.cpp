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
#include "MovedCheck.h"

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

EditorSession::EditAnswer EditorSession::edit(const Poco::JSON::Array::Ptr& ops,
                                              const std::string& client, long long seq) {
    std::lock_guard<std::mutex> editing(editMutex_);
    EditAnswer answer;
    auto known = std::find_if(clients_.begin(), clients_.end(),
                              [&client](const ClientRequest& c) { return c.client == client; });
    if (known != clients_.end()) {
        clients_.splice(clients_.begin(), clients_, known);
        answer.lastSeq = known->seq;
        if (seq <= known->seq) {
            answer.stale = seq < known->seq;
            if (!answer.stale) {
                answer.results = known->results;
            }
            return answer;
        }
    } else {
        clients_.push_front(ClientRequest{client, 0, {}});
        if (clients_.size() > kRememberedClients) {
            clients_.pop_back();
        }
    }
    answer.results = apply(ops);
    clients_.front().seq = seq;
    clients_.front().results = answer.results;
    answer.lastSeq = seq;
    return answer;
}

std::vector<EditResult> EditorSession::apply(const Poco::JSON::Array::Ptr& ops) {
    std::vector<EditResult> results;
    // The batch works on the held document itself: readers wait for it, and
    // see the document as it was before or after, never between.
    std::lock_guard<std::mutex> lock(mutex_);
    if (!doc_) {
        return results;
    }
    HeldState state{text_, ids_};
    std::shared_ptr<const km::CheckReport> report = checked_;
    changed_ = false;
    stale_ = false;
    for (std::size_t i = 0; i < ops->size(); ++i) {
        results.push_back(editOne(ops->getObject(static_cast<unsigned>(i)), state, report));
    }
    freshen(state);
    // Checked (when no "set" did it already) and drawn once, for all of them.
    if (changed_) {
        commitLocked(std::move(state), report);
    }
    return results;
}

namespace {

// The single item an edit changes or copies, when it touches nothing else: a
// move, a member of one item set or removed, a duplicate. Its index in
// `ids`, else -1.
int soleItem(const Poco::JSON::Object::Ptr& op, const std::string& name,
             const std::vector<long>& ids) {
    if ((name != "move" && name != "set" && name != "remove" && name != "duplicate") ||
        !op->has("item") || !op->get("item").isNumeric()) {
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
    // document is neither parsed nor loaded for it. An edit that makes an
    // item (add, duplicate) appends it to a list of the one item it starts
    // from, or of none.
    const km::ConfigItem* held =
        index >= 0 ? doc_->items[static_cast<std::size_t>(index)] : nullptr;
    if (index >= 0 && held == nullptr) {
        return false;
    }
    EditTarget target;
    target.root = new Poco::JSON::Object();
    Poco::JSON::Array::Ptr items = new Poco::JSON::Array();
    std::vector<long> ids;
    if (held != nullptr) {
        items->add(ItemJson(*held));
        ids.push_back(state.ids[static_cast<std::size_t>(index)]);
    }
    const std::size_t given = ids.size();
    target.root->set("keymaps", items);
    target.ids = &ids;
    target.nextId = &nextId_;
    target.loaded = doc_.get();
    if (!ApplyOperation(op, target, result)) {
        return true;
    }
    const bool made = ids.size() > given;
    std::unique_ptr<km::ConfigItem> edited;
    try {
        edited.reset(km::ConfigFactory::ProduceConfigItem(
            items->getObject(static_cast<unsigned>(items->size() - 1))));
    } catch (const Poco::Exception&) {
        return false;  // refused: the whole document's load says why, and where
    }
    if (!edited || items->size() != ids.size()) {
        return false;
    }
    const int at = made ? static_cast<int>(doc_->items.size()) : index;
    const std::string prefix = "keymaps[" + std::to_string(items->size() - 1) + "]";
    if (result.path.compare(0, prefix.size(), prefix) == 0) {
        result.path = "keymaps[" + std::to_string(at) + "]" + result.path.substr(prefix.size());
    }
    result.index = at;
    if (made) {
        // The text waits until something needs it: a request of many adds
        // writes the document once, not once for each.
        const std::string group = op->optValue<std::string>("group", std::string());
        if (!history_.joins(group)) {
            freshen(state);
            history_.record(HeldState{std::move(state.text), state.ids}, group);
        }
        doc_->items.push_back(edited.release());
        state.ids.push_back(ids.back());
        stale_ = true;
        changed_ = true;
        report.reset();
        return true;
    }
    std::unique_ptr<km::ConfigItem> previous(doc_->items[static_cast<std::size_t>(index)]);
    doc_->items[static_cast<std::size_t>(index)] = edited.release();
    HeldState next{std::string(), state.ids};
    next.text = km::SaveKeymapConfigAndInfoToText(doc_.get());
    const std::shared_ptr<const km::CheckReport> before = report;
    if (!acceptSet(op, result, state, next, report)) {
        delete doc_->items[static_cast<std::size_t>(index)];
        doc_->items[static_cast<std::size_t>(index)] = previous.release();
        return true;
    }
    if (before && OperationName(op) == "move") {
        // The other items' findings stay: only the moved one is checked.
        report = CheckAfterMove(*before, next.text, index, joystick_, file_);
    }
    keep(op, state, std::move(next));
    return true;
}

void EditorSession::freshen(HeldState& state) {
    if (stale_) {
        state.text = km::SaveKeymapConfigAndInfoToText(doc_.get());
        stale_ = false;
    }
}

void EditorSession::keep(const Poco::JSON::Object::Ptr& op, HeldState& state, HeldState next) {
    if (next.text != state.text) {
        history_.record(std::move(state), op->optValue<std::string>("group", std::string()));
        state = std::move(next);
        changed_ = true;
    } else if (next.ids != state.ids) {
        state.ids = std::move(next.ids);
        changed_ = true;
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
        freshen(state);
        result.ok = name == "undo" ? history_.undo(state) : history_.redo(state);
        if (!result.ok) {
            result.error = "nothing to " + name;
            return result;
        }
        km::LoadDiagnostic ignored;
        doc_.reset(load(state.text, ignored));
        report.reset();
        changed_ = true;
        return result;
    }
    const int index = soleItem(op, name, state.ids);
    const bool makes = name == "add" || name == "duplicate";
    if (!makes) {
        freshen(state);
    }
    if ((index >= 0 || name == "add") && editItem(op, index, state, result, report)) {
        return result;
    }
    freshen(state);
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
