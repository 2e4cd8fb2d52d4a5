//
// ItemGeometry.cpp
//

#include "ItemGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <memory>

#include <Poco/Exception.h>
#include <Poco/JSON/Array.h>

#include "ItemShapes.h"

namespace zunokeymap {
namespace editor {

using Poco::JSON::Array;
using Poco::JSON::Object;

namespace {

using Kind = Handle::Kind;

const std::vector<Handle>& sharedHandles() {
    static const std::vector<Handle> shared = {
        {Kind::Point, "icon.rel_position", "Marker", true},
        {Kind::Point, "rel_work_position", "Touch point", true},
    };
    return shared;
}

const std::map<std::string, std::vector<Handle>>& typeHandles() {
    static const std::map<std::string, std::vector<Handle>> table = {
        {"Swipehold", {{Kind::Radius, "rel_radius", "Drag radius"}}},
        {"LeftStickWalk", {{Kind::Radius, "rel_radius", "Stick radius"}}},
        {"Fire",
         {{Kind::Point, "swipehold_info.rel_position", "Drag centre", true, true},
          {Kind::Radius, "swipehold_info.rel_radius", "Drag radius", false, false,
           "swipehold_info.rel_position"}}},
        {"Spell",
         {{Kind::Point, "spell_info.rel_position", "Cast point", true},
          {Kind::Radius, "spell_info.rel_radius", "Range", false, false, "spell_info.rel_position"},
          {Kind::Point, "swipehold_info.rel_position", "Drag centre", true, true},
          {Kind::Radius, "swipehold_info.rel_radius", "Drag radius", false, false,
           "swipehold_info.rel_position"},
          {Kind::Point, "tap_info.rel_center_pos", "Tap centre", true}}},
        {"Staring", {{Kind::Area, "staring_range", "Look area"}}},
        {"RightStickEye", {{Kind::Area, "staring_range", "Look area"}}},
        {"RightWalk",
         {{Kind::Point, "rel_measurement_pos", "Measure point"},
          {Kind::Radius, "first_move_policy.rel_radius", "First move radius"}}},
        {"Curve",
         {{Kind::Point, "rel_start_pos", "Curve start", true},
          {Kind::PointList, "rel_all_points_pos", "Curve point", true},
          {Kind::Point, "rel_end_pos", "Curve end", true}}},
        {"Zoom", {{Kind::Radius, "one_side_gap", "Finger gap"}}},
    };
    return table;
}

const char* kindName(Kind kind) {
    switch (kind) {
        case Kind::Point:
            return "point";
        case Kind::Radius:
            return "radius";
        case Kind::Area:
            return "area";
        case Kind::PointList:
            return "points";
    }
    return "point";
}

// The object at `path` ("a.b") inside `object`, or null.
Object::Ptr objectAt(Object::Ptr object, const std::string& path) {
    std::size_t start = 0;
    while (!object.isNull() && start <= path.size()) {
        const std::size_t dot = path.find('.', start);
        const std::string name = path.substr(start, dot - start);
        object = object->has(name) && object->isObject(name) ? object->getObject(name) : nullptr;
        if (dot == std::string::npos) {
            break;
        }
        start = dot + 1;
    }
    return object;
}

bool readNumber(const Object::Ptr& object, const char* name, double& value) {
    if (object.isNull() || !object->has(name)) {
        return false;
    }
    try {
        value = object->getValue<double>(name);
        return std::isfinite(value);
    } catch (const Poco::Exception&) {
        return false;
    }
}

// Sums of small steps gather noise in the last digits ("0.30000000000000004"):
// nine decimals keep a step of a pixel exact and the file readable.
double rounded(double value) {
    return std::round(value * 1e9) / 1e9;
}

struct Spot {
    Object::Ptr object;  // the {"rel_x", "rel_y"} object
    double x;
    double y;
};

// The points of `item` that move with it and are set.
std::vector<Spot> movingPoints(Object::Ptr item) {
    std::vector<Spot> spots;
    const auto add = [&](const Handle& handle) {
        if (handle.kind != Kind::Point || !handle.moves) {
            return;
        }
        const Object::Ptr point = objectAt(item, handle.member);
        double x = 0;
        double y = 0;
        if (!readNumber(point, "rel_x", x) || !readNumber(point, "rel_y", y)) {
            return;
        }
        const bool unset = x == 0 && y == 0;
        if (unset && (handle.nullIsTouch || std::string(handle.member) != "icon.rel_position")) {
            return;  // "not set" stays not set; an unset marker is drawn at the touch point
        }
        spots.push_back({point, x, y});
    };
    for (const Handle& handle : sharedHandles()) {
        add(handle);
    }
    const std::string type = item->optValue<std::string>("type", std::string());
    for (const Handle& handle : HandlesOf(type)) {
        add(handle);
    }
    return spots;
}

// Every "(x,y)" of a curve's point text moved by (dx, dy); other text kept.
std::string movePointText(const std::string& text, double dx, double dy) {
    std::string out;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t open = text.find('(', at);
        const std::size_t close = open == std::string::npos ? open : text.find(')', open);
        double x = 0;
        double y = 0;
        char rest = 0;
        if (close == std::string::npos ||
            std::sscanf(text.substr(open + 1, close - open - 1).c_str(), "%lf,%lf%c", &x, &y,
                        &rest) != 2 ||
            !std::isfinite(x) || !std::isfinite(y)) {
            out += text.substr(at);
            break;
        }
        char number[64];
        std::snprintf(number, sizeof(number), "(%.6g,%.6g)", rounded(x + dx), rounded(y + dy));
        out += text.substr(at, open - at) + number;
        at = close + 1;
    }
    return out;
}

void setPoint(const Object::Ptr& item, const char* member, double x, double y) {
    Object::Ptr point = objectAt(item, member);
    if (point.isNull()) {
        return;
    }
    point->set("rel_x", rounded(x));
    point->set("rel_y", rounded(y));
}

// Screen spots from the centre outwards, for a fresh item without a place.
std::vector<std::pair<double, double>> candidateSpots() {
    std::vector<std::pair<double, double>> spots;
    for (int row = 1; row < 10; ++row) {
        for (int col = 1; col < 16; ++col) {
            spots.emplace_back(col / 16.0, row / 10.0);
        }
    }
    std::stable_sort(spots.begin(), spots.end(), [](const auto& a, const auto& b) {
        return std::hypot(a.first - 0.5, a.second - 0.5) <
               std::hypot(b.first - 0.5, b.second - 0.5);
    });
    return spots;
}

// Where nothing is yet: the spot nearest the centre at least a marker's
// breadth from every marker and touch point, else the emptiest spot.
std::pair<double, double> freeSpot(const km::KeymapConfig& doc) {
    std::vector<km::PointF> taken;
    for (const km::ConfigItem* item : doc.items) {
        if (item != nullptr) {
            taken.push_back(item->icon.rel_position);
            taken.push_back(item->rel_work_position);
        }
    }
    std::pair<double, double> best(0.5, 0.5);
    double bestDistance = -1;
    for (const auto& spot : candidateSpots()) {
        double nearest = std::numeric_limits<double>::max();
        for (const km::PointF& point : taken) {
            nearest = std::min(nearest, std::hypot(point.x - spot.first, point.y - spot.second));
        }
        if (nearest >= 0.07) {
            return spot;
        }
        if (nearest > bestDistance) {
            bestDistance = nearest;
            best = spot;
        }
    }
    return best;
}

// A length that is zero (nothing to drag) or as large as the screen gets a
// size people start from.
void sensibleLength(const Object::Ptr& item, const char* member, double value) {
    const std::string path(member);
    const std::size_t dot = path.rfind('.');
    Object::Ptr parent = dot == std::string::npos ? item : objectAt(item, path.substr(0, dot));
    const std::string name = dot == std::string::npos ? path : path.substr(dot + 1);
    double current = 0;
    if (readNumber(parent, name.c_str(), current) && (current <= 0 || current >= 0.45)) {
        parent->set(name, value);
    }
}

// The members of the keys that fire `item`, by role ("top" -> "top_key").
std::string memberOfRole(const std::string& role, bool second) {
    if (role == "key") {
        return second ? "second_key" : "key";
    }
    if (role == "positive" || role == "negative") {
        return role + (second ? "_key.second_key" : "_key.key");
    }
    return role + "_key";
}

const Object::Ptr& unsetKey() {
    static const Object::Ptr key = [] {
        Object::Ptr object = new Object();
        object->set("device", std::string());
        object->set("text", std::string());
        object->set("scan_code", km::kUnsetKeyCode);
        object->set("virtual_key", km::kUnsetKeyCode);
        return object;
    }();
    return key;
}

void setMember(const Object::Ptr& item, const std::string& path, const Object::Ptr& value) {
    const std::size_t dot = path.rfind('.');
    Object::Ptr parent = dot == std::string::npos ? item : objectAt(item, path.substr(0, dot));
    if (!parent.isNull()) {
        parent->set(dot == std::string::npos ? path : path.substr(dot + 1),
                    Object::Ptr(new Object(*value)));
    }
}

}  // namespace

const std::vector<Handle>& HandlesOf(const std::string& type) {
    static const std::vector<Handle> none;
    const auto found = typeHandles().find(type);
    return found == typeHandles().end() ? none : found->second;
}

std::vector<std::string> KeyMembersOf(const std::string& type) {
    std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
    if (!item || type == "Unknown") {
        return {};
    }
    if (dynamic_cast<km::DiamondConfigItem*>(item.get()) != nullptr) {
        return {"top_key", "right_key", "bottom_key", "left_key"};
    }
    if (dynamic_cast<km::PairConfigItem*>(item.get()) != nullptr) {
        return {"positive_key.key", "positive_key.second_key", "negative_key.key",
                "negative_key.second_key"};
    }
    if (dynamic_cast<km::ComposableConfigItem*>(item.get()) != nullptr) {
        return {"key", "second_key"};
    }
    return {"key"};
}

Object::Ptr ShapesJson() {
    Object::Ptr all = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    Object::Ptr keys = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    Object::Ptr kinds = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    Object::Ptr colours = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    for (std::size_t i = 1; i < km::kItemTypeNames.size(); ++i) {
        const std::string type(km::kItemTypeNames[i]);
        Array::Ptr list = new Array();
        std::vector<Handle> handles = sharedHandles();
        const std::vector<Handle>& own = HandlesOf(type);
        handles.insert(handles.end(), own.begin(), own.end());
        for (const Handle& handle : handles) {
            Object::Ptr entry = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
            entry->set("kind", std::string(kindName(handle.kind)));
            entry->set("member", std::string(handle.member));
            entry->set("label", std::string(handle.label));
            entry->set("moves", handle.moves);
            entry->set("null_is_touch", handle.nullIsTouch);
            entry->set("centre", std::string(handle.centre));
            list->add(entry);
        }
        all->set(type, list);
        Array::Ptr members = new Array();
        for (const std::string& member : KeyMembersOf(type)) {
            members->add(member);
        }
        keys->set(type, members);
        if (const render::TypeShape* shape = render::FindTypeShape(type)) {
            colours->set(type, std::string(shape->colour));
        }
        // A type whose fresh key is a gamepad control is for gamepad
        // documents, one on a mouse button for keyboard-and-mouse ones.
        std::unique_ptr<km::ConfigItem> fresh(km::CreateConfigItem(type));
        const std::string device = fresh ? fresh->key.device : std::string();
        kinds->set(type, std::string(device == "joystick" ? "gamepad"
                                     : device == "mouse"  ? "keyboard"
                                                          : "both"));
    }
    Object::Ptr shapes = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    shapes->set("handles", all);
    shapes->set("keys", keys);
    shapes->set("kinds", kinds);
    shapes->set("colours", colours);
    return shapes;
}

void MoveItemBy(Poco::JSON::Object::Ptr item, double dx, double dy) {
    if (item.isNull() || !std::isfinite(dx) || !std::isfinite(dy)) {
        return;
    }
    std::vector<Spot> spots = movingPoints(item);
    // The whole item stops at the screen's edge, keeping its shape.
    double low = -1;
    double high = 1;
    double top = -1;
    double bottom = 1;
    for (const Spot& spot : spots) {
        low = std::max(low, -spot.x);
        high = std::min(high, 1 - spot.x);
        top = std::max(top, -spot.y);
        bottom = std::min(bottom, 1 - spot.y);
    }
    dx = low > high ? 0 : std::min(std::max(dx, low), high);
    dy = top > bottom ? 0 : std::min(std::max(dy, top), bottom);
    for (Spot& spot : spots) {
        spot.object->set("rel_x", rounded(spot.x + dx));
        spot.object->set("rel_y", rounded(spot.y + dy));
    }
    const std::string type = item->optValue<std::string>("type", std::string());
    for (const Handle& handle : HandlesOf(type)) {
        if (handle.kind == Kind::PointList && item->has(handle.member) &&
            item->get(handle.member).isString()) {
            item->set(handle.member,
                      movePointText(item->getValue<std::string>(handle.member), dx, dy));
        }
    }
}

bool MovePointBy(Object::Ptr item, const std::string& member, int point, double dx, double dy) {
    if (item.isNull() || !std::isfinite(dx) || !std::isfinite(dy)) {
        return false;
    }
    const std::string type = item->optValue<std::string>("type", std::string());
    std::vector<Handle> handles = sharedHandles();
    const std::vector<Handle>& own = HandlesOf(type);
    handles.insert(handles.end(), own.begin(), own.end());
    const auto handle = std::find_if(handles.begin(), handles.end(), [&](const Handle& h) {
        return member == h.member && (h.kind == Kind::Point || h.kind == Kind::PointList);
    });
    if (handle == handles.end()) {
        return false;
    }
    const auto clamp = [](double v) { return rounded(std::min(std::max(v, 0.0), 1.0)); };
    if (handle->kind == Kind::PointList) {
        if (!item->has(member) || !item->get(member).isString()) {
            return false;
        }
        // Only point number `point` moves: the others are moved by nothing.
        const std::string text = item->getValue<std::string>(member);
        std::string out;
        std::size_t at = 0;
        for (int k = 0;; ++k) {
            const std::size_t open = text.find('(', at);
            const std::size_t close = open == std::string::npos ? open : text.find(')', open);
            if (close == std::string::npos) {
                if (k <= point) {
                    return false;
                }
                out += text.substr(at);
                break;
            }
            const std::string piece = text.substr(at, close + 1 - at);
            out += k == point ? movePointText(piece, dx, dy) : piece;
            at = close + 1;
        }
        item->set(member, out);
        return true;
    }
    Object::Ptr object = objectAt(item, member);
    double x = 0;
    double y = 0;
    if (!readNumber(object, "rel_x", x) || !readNumber(object, "rel_y", y)) {
        return false;
    }
    if (x == 0 && y == 0 && handle->nullIsTouch) {
        const Object::Ptr touch = objectAt(item, "rel_work_position");
        readNumber(touch, "rel_x", x);
        readNumber(touch, "rel_y", y);
    }
    object->set("rel_x", clamp(x + dx));
    object->set("rel_y", clamp(y + dy));
    return true;
}

std::vector<std::string> UnsetTakenKeys(const Object::Ptr& item, const km::KeymapConfig& doc,
                                        int skip) {
    std::vector<std::string> unset;
    std::unique_ptr<km::ConfigItem> fresh;
    try {
        fresh.reset(km::ConfigFactory::ProduceConfigItem(item));
    } catch (const Poco::Exception&) {
        return unset;
    }
    if (!fresh) {
        return unset;
    }
    for (const km::KeyTrigger& trigger : km::KeyTriggersOf(*fresh)) {
        bool taken = false;
        for (std::size_t i = 0; i < doc.items.size() && !taken; ++i) {
            km::ConfigItem* other = doc.items[i];
            taken = other != nullptr && static_cast<int>(i) != skip &&
                    km::TriggerFires(*other, trigger);
        }
        if (!taken) {
            continue;
        }
        unset.push_back(memberOfRole(trigger.role, false));
        setMember(item, unset.back(), unsetKey());
        if (trigger.combination) {
            setMember(item, memberOfRole(trigger.role, true), unsetKey());
        }
    }
    return unset;
}

std::vector<std::string> FitFreshItem(Object::Ptr item, const km::KeymapConfig& doc, double x,
                                      double y) {
    if (!(x >= 0 && x <= 1 && y >= 0 && y <= 1)) {
        std::tie(x, y) = freeSpot(doc);
    }
    // Every point is placed relative to the marker, as the item would be drawn there.
    double mx = 0;
    double my = 0;
    Object::Ptr marker = objectAt(item, "icon.rel_position");
    readNumber(marker, "rel_x", mx);
    readNumber(marker, "rel_y", my);
    MoveItemBy(item, x - mx, y - my);
    setPoint(item, "icon.rel_position", x, y);
    setPoint(item, "rel_work_position", x, y);
    const std::string type = item->optValue<std::string>("type", std::string());
    for (const Handle& handle : HandlesOf(type)) {
        if (handle.kind == Kind::Point && handle.moves && !handle.nullIsTouch &&
            std::string(handle.member) != "tap_info.rel_center_pos") {
            setPoint(item, handle.member, x, y);
        }
        // Only drag and range sizes: a first-move radius or a finger gap
        // means something else at zero.
        if (handle.kind == Kind::Radius && std::string(handle.member) != "one_side_gap" &&
            std::string(handle.member) != "first_move_policy.rel_radius") {
            sensibleLength(item, handle.member, 0.08);
        }
    }
    if (type == "Curve") {
        setPoint(item, "rel_end_pos", std::min(x + 0.1, 1.0), y);
    }
    return UnsetTakenKeys(item, doc);
}

}  // namespace editor
}  // namespace zunokeymap
