//
// EditOperations.cpp
//

#include "EditOperations.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>

#include <Poco/Exception.h>
#include <Poco/JSON/Array.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>

#include "ItemGeometry.h"

namespace zunokeymap {
namespace editor {

using Poco::JSON::Array;
using Poco::JSON::Object;

namespace {

// An item identifier or index larger than this is no item.
constexpr long kMaxItems = 1L << 24;

bool fail(EditResult& result, std::string message) {
    result.ok = false;
    result.error = std::move(message);
    return false;
}

bool readNumber(const Object::Ptr& op, const char* name, double& value) {
    if (!op->has(name)) {
        return false;
    }
    try {
        const Poco::Dynamic::Var var = op->get(name);
        if (!var.isNumeric()) {
            return false;
        }
        value = var.convert<double>();
        return std::isfinite(value);
    } catch (const Poco::Exception&) {
        return false;
    }
}

bool readWhole(const Object::Ptr& op, const char* name, long& value) {
    double number = 0;
    if (!readNumber(op, name, number) || number != std::floor(number) || number < 0 ||
        number > kMaxItems) {
        return false;
    }
    value = static_cast<long>(number);
    return true;
}

Object::Ptr deepCopy(const Object::Ptr& object) {
    std::ostringstream text;
    Poco::JSON::Stringifier::stringify(object, text);
    Poco::JSON::Parser parser;
    return parser.parse(text.str()).extract<Object::Ptr>();
}

// An item object through the library's reader and back through its writer.
std::unique_ptr<km::ConfigItem> itemOf(const Object::Ptr& object) {
    std::unique_ptr<km::ConfigItem> item(km::ConfigFactory::ProduceConfigItem(object));
    if (!item) {
        throw Poco::InvalidArgumentException("the library does not know this item's type");
    }
    return item;
}

std::string itemPath(std::size_t index) {
    return "keymaps[" + std::to_string(index) + "]";
}

class Applier {
public:
    Applier(const Object::Ptr& op, EditTarget& target, EditResult& result)
        : op_(op), target_(target), result_(result), ids_(*target.ids) {}

    bool run() {
        items_ = target_.root->getArray("keymaps");
        if (items_.isNull() || items_->size() != ids_.size()) {
            return fail(result_, "the held document has no item list");
        }
        const std::string name = OperationName(op_);
        if (name == "set" || name == "remove") {
            return setOrRemove(name == "set");
        }
        if (name == "move") {
            return move();
        }
        if (name == "add") {
            return add();
        }
        if (name == "duplicate") {
            return duplicate();
        }
        if (name == "paste") {
            return paste();
        }
        if (name == "delete") {
            return remove();
        }
        if (name == "reorder") {
            return reorder();
        }
        return fail(result_, "no edit '" + name + "'");
    }

private:
    // The index of the item the op names by "item"; false when it is gone.
    bool findItem(std::size_t& index) {
        long id = -1;
        if (!readWhole(op_, "item", id)) {
            return fail(result_, "the edit names no item");
        }
        const auto found = std::find(ids_.begin(), ids_.end(), id);
        if (found == ids_.end()) {
            return fail(result_, "the item was deleted meanwhile");
        }
        index = static_cast<std::size_t>(found - ids_.begin());
        result_.index = static_cast<int>(index);
        result_.item = id;
        return true;
    }

    bool setOrRemove(bool set) {
        Object::Ptr object = target_.root;
        std::string prefix;
        if (op_->has("item")) {
            std::size_t index = 0;
            if (!findItem(index)) {
                return false;
            }
            object = items_->getObject(static_cast<unsigned>(index));
            prefix = itemPath(index) + ".";
        }
        const std::string member = op_->optValue<std::string>("member", std::string());
        const std::vector<std::string> names = SplitMemberPath(member);
        if (names.empty() || (!op_->has("item") && names[0] == "keymaps") ||
            (op_->has("item") && names[0] == "type")) {
            return fail(result_, "no member '" + member + "' to change");
        }
        result_.path = prefix + member;
        for (std::size_t k = 0; k + 1 < names.size(); ++k) {
            if (object.isNull() || !object->has(names[k]) || !object->isObject(names[k])) {
                return fail(result_, "there is no " + names[k] + " in " + result_.path);
            }
            object = object->getObject(names[k]);
        }
        if (!set) {
            object->remove(names.back());
        } else if (!op_->has("value")) {
            return fail(result_, "the edit has no value");
        } else {
            object->set(names.back(), op_->get("value"));
        }
        result_.ok = true;
        return true;
    }

    bool move() {
        std::size_t index = 0;
        double dx = 0;
        double dy = 0;
        if (!findItem(index)) {
            return false;
        }
        if (!readNumber(op_, "dx", dx) || !readNumber(op_, "dy", dy) || std::abs(dx) > 2 ||
            std::abs(dy) > 2) {
            return fail(result_, "a move needs dx and dy, fractions of the screen");
        }
        std::unique_ptr<km::ConfigItem> item =
            itemOf(items_->getObject(static_cast<unsigned>(index)));
        result_.path = itemPath(index);
        if (op_->has("member")) {
            const std::string member = op_->optValue<std::string>("member", std::string());
            long point = 0;
            if (op_->has("point") && !readWhole(op_, "point", point)) {
                return fail(result_, "'point' must be a point's number");
            }
            if (!MovePointBy(*item, member, static_cast<int>(point), dx, dy)) {
                return fail(result_, "the item has no point '" + member + "'");
            }
            result_.path += "." + member;
        } else {
            km::MoveItem(*item, dx, dy);
        }
        items_->set(static_cast<unsigned>(index), ItemJson(*item));
        result_.ok = true;
        return true;
    }

    // Appends `made` with a new identifier, its keys that others fire on
    // unset, and, when `fresh`, its sizes fitted.
    void append(km::ConfigItem& made, bool fresh) {
        result_.unbound = UnsetTakenKeys(made, *target_.loaded);
        const Object::Ptr item = ItemJson(made);
        if (fresh) {
            SizeFreshItem(item);
        }
        items_->add(item);
        ids_.push_back((*target_.nextId)++);
        result_.index = static_cast<int>(ids_.size() - 1);
        result_.item = ids_.back();
        result_.path = itemPath(ids_.size() - 1);
        result_.ok = true;
    }

    bool add() {
        const std::string type = op_->optValue<std::string>("type", std::string());
        std::unique_ptr<km::ConfigItem> fresh(km::CreateConfigItem(type));
        if (!fresh) {
            return fail(result_, "no item type '" + type + "'");
        }
        double x = -1;
        double y = -1;
        const Object::Ptr at =
            op_->has("at") && op_->isObject("at") ? op_->getObject("at") : nullptr;
        if (!at.isNull() && (!readNumber(at, "rel_x", x) || !readNumber(at, "rel_y", y))) {
            return fail(result_, "'at' needs rel_x and rel_y");
        }
        PlaceFreshItem(*fresh, *target_.loaded, x, y);
        append(*fresh, true);
        return true;
    }

    bool duplicate() {
        std::size_t index = 0;
        if (!findItem(index)) {
            return false;
        }
        std::unique_ptr<km::ConfigItem> copy =
            itemOf(items_->getObject(static_cast<unsigned>(index)));
        km::MoveItem(*copy, 0.03, 0.03);
        append(*copy, false);
        return true;
    }

    // An item copied from this or another document, read by the library as
    // a file's item would be, moved by (dx, dy); keys others fire on unset.
    bool paste() {
        if (!op_->has("value") || !op_->isObject("value")) {
            return fail(result_, "a paste needs the item as its value");
        }
        double dx = 0;
        double dy = 0;
        if ((op_->has("dx") && !readNumber(op_, "dx", dx)) ||
            (op_->has("dy") && !readNumber(op_, "dy", dy)) || std::abs(dx) > 2 ||
            std::abs(dy) > 2) {
            return fail(result_, "a paste's dx and dy are fractions of the screen");
        }
        std::unique_ptr<km::ConfigItem> copy = itemOf(op_->getObject("value"));
        km::MoveItem(*copy, dx, dy);
        append(*copy, false);
        return true;
    }

    bool remove() {
        std::size_t index = 0;
        if (!findItem(index)) {
            return false;
        }
        items_->remove(static_cast<unsigned>(index));
        ids_.erase(ids_.begin() + static_cast<std::ptrdiff_t>(index));
        result_.path = itemPath(index);
        result_.ok = true;
        return true;
    }

    bool reorder() {
        std::size_t from = 0;
        long to = 0;
        if (!findItem(from)) {
            return false;
        }
        if (!readWhole(op_, "to", to) || static_cast<std::size_t>(to) >= ids_.size()) {
            return fail(result_, "'to' must be an index of the item list");
        }
        std::vector<Poco::Dynamic::Var> elements;
        for (std::size_t i = 0; i < items_->size(); ++i) {
            elements.push_back(items_->get(static_cast<unsigned>(i)));
        }
        const auto rotate = [from, to](auto& list) {
            auto first = list.begin() + static_cast<std::ptrdiff_t>(from);
            auto last = list.begin() + to;
            if (from < static_cast<std::size_t>(to)) {
                std::rotate(first, first + 1, last + 1);
            } else {
                std::rotate(last, first, first + 1);
            }
        };
        rotate(elements);
        rotate(ids_);
        items_->clear();
        for (const Poco::Dynamic::Var& element : elements) {
            items_->add(element);
        }
        result_.index = static_cast<int>(to);
        result_.path = itemPath(static_cast<std::size_t>(to));
        result_.ok = true;
        return true;
    }

    const Object::Ptr& op_;
    EditTarget& target_;
    EditResult& result_;
    std::vector<long>& ids_;
    Array::Ptr items_;
};

}  // namespace

std::string OperationName(const Object::Ptr& op) {
    if (op.isNull() || !op->has("op") || !op->get("op").isString()) {
        return std::string();
    }
    return op->getValue<std::string>("op");
}

std::vector<std::string> SplitMemberPath(const std::string& path) {
    std::vector<std::string> names;
    std::size_t start = 0;
    for (;;) {
        const std::size_t dot = path.find('.', start);
        std::string name = path.substr(start, dot - start);
        const bool plain = !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                   c == '_';
        });
        if (!plain || names.size() >= 16) {
            return {};
        }
        names.push_back(std::move(name));
        if (dot == std::string::npos) {
            return names;
        }
        start = dot + 1;
    }
}

bool ApplyOperation(const Object::Ptr& op, EditTarget& target, EditResult& result) {
    try {
        return Applier(op, target, result).run();
    } catch (const Poco::Exception& e) {
        return fail(result, "the edit could not be applied: " + e.displayText());
    }
}

// Through text: a written object shares nothing with what it was made from.
Object::Ptr ItemJson(const km::ConfigItem& item) {
    return deepCopy(new Object(item.ConvertToJsonObject()));
}

}  // namespace editor
}  // namespace zunokeymap
