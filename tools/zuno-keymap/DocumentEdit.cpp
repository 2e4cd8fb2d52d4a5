//
// DocumentEdit.cpp
//

#include "DocumentEdit.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>
#include <sstream>

#include <Poco/Exception.h>
#include <Poco/File.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>

#include "CheckReport.h"
#include "CommandLine.h"
#include "Keys.h"
#include "LostElements.h"
#include "TerminalText.h"

namespace zunokeymap {

namespace {

using Poco::Dynamic::Var;
using Poco::JSON::Array;
using Poco::JSON::Object;

// How long an edit waits for another tool that is writing the same file.
constexpr int kLockWaitMs = 10000;

// One step of a member path: a member name, or an array index when `name` is empty.
struct Step {
    std::string name;
    std::size_t index = 0;
};

bool parsePath(const std::string& path, std::vector<Step>& steps) {
    std::size_t at = 0;
    while (at < path.size()) {
        if (path[at] == '[') {
            const std::size_t close = path.find(']', at);
            const std::string digits =
                close == std::string::npos ? "" : path.substr(at + 1, close - at - 1);
            if (digits.empty() || digits.size() > 9 ||
                digits.find_first_not_of("0123456789") != std::string::npos) {
                return false;
            }
            steps.push_back({"", static_cast<std::size_t>(std::stoul(digits))});
            at = close + 1;
            continue;
        }
        if (path[at] == '.') {
            if (steps.empty()) {
                return false;
            }
            ++at;
        } else if (!steps.empty()) {
            return false;
        }
        const std::size_t end = path.find_first_of(".[", at);
        const std::string name = path.substr(at, end == std::string::npos ? end : end - at);
        if (name.empty()) {
            return false;
        }
        steps.push_back({name, 0});
        at = end == std::string::npos ? path.size() : end;
    }
    return !steps.empty();
}

// The value VALUE stands for: JSON if it is JSON, else the string itself.
Var parseValue(const std::string& value) {
    try {
        Poco::JSON::Parser parser;
        const Var parsed = parser.parse("[" + value + "]");
        Array::Ptr array = parsed.extract<Array::Ptr>();
        if (array->size() == 1) {
            return array->get(0);
        }
    } catch (const Poco::Exception&) {
    }
    return Var(value);
}

// Whether the member holds a key: it does, or its name says it would.
Object::Ptr parseObject(const std::string& text) {
    try {
        Poco::JSON::Parser parser;
        return parser.parse(text).extract<Object::Ptr>();
    } catch (const Poco::Exception&) {
        return Object::Ptr();
    }
}

bool isKeyMember(const std::string& name, const Var& value) {
    const std::string suffix = "_key";
    return (value.type() == typeid(Object::Ptr) && value.extract<Object::Ptr>()->has("device")) ||
           name == "key" ||
           (name.size() > suffix.size() &&
            name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0);
}

// Walks `steps` below `root` to the container of the last step, which must
// exist, as must every step before it. Empty with `error` set when it does not.
Var containerOf(const Object::Ptr& root, const std::vector<Step>& steps, std::string& error) {
    Var at = root;
    std::string reached;
    for (std::size_t s = 0; s < steps.size(); ++s) {
        const Step& step = steps[s];
        reached += step.name.empty() ? "[" + std::to_string(step.index) + "]"
                                     : (reached.empty() ? "" : ".") + step.name;
        const bool last = s + 1 == steps.size();
        if (step.name.empty()) {
            if (at.type() != typeid(Array::Ptr) || step.index >= at.extract<Array::Ptr>()->size()) {
                error = "no element " + reached;
                return Var();
            }
            if (!last) {
                at = at.extract<Array::Ptr>()->get(static_cast<unsigned>(step.index));
            }
        } else {
            if (at.type() != typeid(Object::Ptr) ||
                (!last && !at.extract<Object::Ptr>()->has(step.name))) {
                error = "no member " + reached;
                return Var();
            }
            if (!last) {
                at = at.extract<Object::Ptr>()->get(step.name);
            }
        }
    }
    return at;
}

}  // namespace

int SetMember(const std::string& command, const Object::Ptr& root, const std::string& path,
              const std::string& value, bool joystick) {
    std::vector<Step> steps;
    if (!parsePath(path, steps)) {
        return UsageError(command, "'" + path + "' is not a member path like keymaps[0].key");
    }
    std::string error;
    const Var container = containerOf(root, steps, error);
    if (container.isEmpty()) {
        return UsageError(command, error);
    }
    const Step& last = steps.back();
    Var newValue = parseValue(value);
    const Var old = last.name.empty()
                        ? container.extract<Array::Ptr>()->get(static_cast<unsigned>(last.index))
                        : container.extract<Object::Ptr>()->get(last.name);
    if (isKeyMember(last.name, old) && newValue.type() != typeid(Object::Ptr)) {
        if (value.empty() && !last.name.empty()) {
            // An unset key is not written at all: the member goes.
            Object::Ptr object = container.extract<Object::Ptr>();
            object->remove(last.name);
            return kClean;
        }
        km::ConfigKey key;
        if (!KeyFromText(value, joystick, key, error)) {
            return UsageError(command, error);
        }
        newValue = km::KeyToJson(key);
    }
    if (last.name.empty()) {
        Array::Ptr array = container.extract<Array::Ptr>();
        array->set(static_cast<unsigned>(last.index), newValue);
    } else {
        Object::Ptr object = container.extract<Object::Ptr>();
        object->set(last.name, newValue);
    }
    return kClean;
}

bool ParseScreenPoint(const std::string& text, km::PointF& at) {
    char rest = 0;
    return std::sscanf(text.c_str(), "%lf,%lf%c", &at.x, &at.y, &rest) == 2 && at.x >= 0 &&
           at.x <= 1 && at.y >= 0 && at.y <= 1;
}

int PlaceMember(const std::string& command, const Object::Ptr& root, const std::string& path,
                const km::PointF& at) {
    std::vector<Step> steps;
    if (!parsePath(path, steps) || !steps.back().name.empty()) {
        return UsageError(command, "'" + path + "' is not an item's path like keymaps[0]");
    }
    std::string error;
    const Var container = containerOf(root, steps, error);
    if (container.isEmpty()) {
        return UsageError(command, error);
    }
    Array::Ptr array = container.extract<Array::Ptr>();
    const auto index = static_cast<unsigned>(steps.back().index);
    const Var element = array->get(index);
    std::unique_ptr<km::ConfigItem> item;
    try {
        if (element.type() == typeid(Object::Ptr)) {
            item.reset(km::ConfigFactory::ProduceConfigItem(element.extract<Object::Ptr>()));
        }
    } catch (const Poco::Exception& e) {
        return UsageError(command, path + " cannot be moved: " + e.displayText());
    }
    if (!item) {
        return UsageError(command, path + " is not an item of a known type");
    }
    km::PlaceItem(*item, at);
    array->set(index, Object::Ptr(new Object(item->ConvertToJsonObject())));
    return kClean;
}

bool HasMember(const Poco::JSON::Object::Ptr& root, const std::string& path) {
    std::vector<Step> steps;
    std::string error;
    if (!parsePath(path, steps)) {
        return false;
    }
    const Var container = containerOf(root, steps, error);
    return !container.isEmpty() &&
           (steps.back().name.empty() || container.extract<Object::Ptr>()->has(steps.back().name));
}

int LockForRewrite(const std::string& command, const std::string& file, bool joystick,
                   FileLock& lock) {
    if (file == "-" || IsBuiltIn(file, joystick) || DescriptorNamed(file) >= 0) {
        return UsageError(command, "FILE must be a file to rewrite, not '" + file + "'");
    }
    // Two tools editing one file at once would each write over the other's change.
    std::string error;
    if (!lock.acquire(kLockWaitMs, error)) {
        std::cerr << "zuno-keymap " << command << ": cannot lock '" << ForTerminal(file)
                  << "' to rewrite it: " << ForTerminal(error) << "\n";
        return kUsage;
    }
    return kClean;
}

int EditDocument(const std::string& command, const std::string& file, bool joystick, bool mayCreate,
                 bool force, const std::function<int(const Object::Ptr& root)>& edit,
                 const std::vector<std::string>& kept) {
    FileLock lock(file);
    if (const int status = LockForRewrite(command, file, joystick, lock)) {
        return status;
    }
    bool missing = false;
    try {
        missing = !Poco::File(file).exists();  // a UTF-8 path on every platform
    } catch (const Poco::Exception&) {
    }
    Loaded loaded = Load(missing && mayCreate ? BlankName(joystick) : file, joystick);
    loaded.source = file;
    if (loaded.diagnostic.failed) {
        return ReportLoadFailure(loaded);
    }
    const std::string before = SavedText(loaded.doc.get());
    // The edit starts from the library's form of the file: whatever that
    // leaves out of the user's file is lost unless the user says so.
    if (!force) {
        const std::vector<std::string> lost = LostOnSave(loaded.text, *loaded.doc);
        if (!lost.empty()) {
            std::cerr << LostElementsMessage(command, file, lost);
            return kProblems;
        }
    }
    const Object::Ptr root = parseObject(before);
    if (root.isNull()) {
        return kProblems;  // the library wrote what it cannot read back
    }
    if (const int status = edit(root)) {
        return status;
    }
    std::ostringstream text;
    Poco::JSON::Stringifier::stringify(root, text);
    km::LoadDiagnostic diagnostic;
    const bool gamepad = joystick || loaded.doc->info->is_joystick;
    std::unique_ptr<km::KeymapConfig> edited(
        km::ReadKeymapDocument(km::DocumentOrigin::Text, file, text.str(), gamepad, diagnostic));
    if (diagnostic.failed) {
        std::cerr << ForTerminal(file) << ": error: " << ForTerminal(diagnostic.message) << "\n"
                  << "zuno-keymap " << command << ": the edited document does not load; "
                  << ForTerminal(file) << " is left as it was\n";
        return kProblems;
    }
    const std::string after = SavedText(edited.get());
    // An edit the library does not keep is refused: a member it does not
    // know as a usage error, anything else (a misspelt type drops its item)
    // as what would be lost.
    const std::vector<std::string> dropped = LostOnSave(text.str(), *edited);
    const Object::Ptr saved = parseObject(after);
    for (const std::string& path : kept) {
        const bool droppedItself = std::find(dropped.begin(), dropped.end(), path) != dropped.end();
        if (droppedItself || (dropped.empty() && (saved.isNull() || !HasMember(saved, path)))) {
            std::cerr << "zuno-keymap " << command << ": the document has no member "
                      << ForTerminal(path) << "; " << ForTerminal(file) << " is left as it was\n";
            return kUsage;
        }
    }
    if (!force && !dropped.empty()) {
        std::cerr << LostElementsMessage(command, file, dropped);
        return kProblems;
    }
    if (!WriteOutput(command, file, after)) {
        return kUsage;
    }
    PrintCheckReport(std::cout, file, km::CheckKeymapDocument(after, gamepad, file));
    return kClean;
}

}  // namespace zunokeymap
