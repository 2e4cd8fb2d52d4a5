//
// ItemGeometry.cpp
//

#include "ItemGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include <Poco/Exception.h>
#include <Poco/JSON/Array.h>

#include "ItemShapes.h"
#include "Markers.h"

namespace zunokeymap {
namespace editor {

using Poco::JSON::Array;
using Poco::JSON::Object;

namespace {

// The object at `path` ("a.b") inside `object`, or null.
Object::Ptr objectAt(const Object::Ptr& object, const std::string& path) {
    const std::size_t dot = path.find('.');
    const std::string name = path.substr(0, dot);
    if (object.isNull() || !object->has(name) || !object->isObject(name)) {
        return nullptr;
    }
    const Object::Ptr child = object->getObject(name);
    return dot == std::string::npos ? child : objectAt(child, path.substr(dot + 1));
}

Object::Ptr entry(const char* kind, const std::string& member, const std::string& label, bool moves,
                  bool nullIsTouch, const std::string& centre) {
    Object::Ptr handle = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    handle->set("kind", std::string(kind));
    handle->set("member", member);
    handle->set("label", label);
    handle->set("moves", moves);
    handle->set("null_is_touch", nullIsTouch);
    handle->set("centre", centre);
    return handle;
}

double clamp01(double value) {
    return std::min(std::max(value, 0.0), 1.0);
}

// Screen spots from the centre outwards, for a fresh item without a place.
const std::vector<km::PointF>& candidateSpots() {
    static const std::vector<km::PointF> spots = [] {
        std::vector<km::PointF> all;
        for (int row = 1; row < 10; ++row) {
            for (int col = 1; col < 16; ++col) {
                all.emplace_back(col / 16.0, row / 10.0);
            }
        }
        std::stable_sort(all.begin(), all.end(), [](const km::PointF& a, const km::PointF& b) {
            return std::hypot(a.x - 0.5, a.y - 0.5) < std::hypot(b.x - 0.5, b.y - 0.5);
        });
        return all;
    }();
    return spots;
}

// Where nothing is yet: the spot nearest the centre at least a marker's
// breadth from every marker and touch point, else the emptiest spot.
km::PointF freeSpot(const km::KeymapConfig& doc) {
    std::vector<km::PointF> taken;
    for (const km::ConfigItem* item : doc.items) {
        if (item != nullptr) {
            taken.push_back(item->icon.rel_position);
            taken.push_back(item->rel_work_position);
        }
    }
    km::PointF best(0.5, 0.5);
    double bestDistance = -1;
    for (const km::PointF& spot : candidateSpots()) {
        double nearest = std::numeric_limits<double>::max();
        for (const km::PointF& point : taken) {
            nearest = std::min(nearest, std::hypot(point.x - spot.x, point.y - spot.y));
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

}  // namespace

Object::Ptr ShapesJson() {
    Object::Ptr handles = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    Object::Ptr keys = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    Object::Ptr kinds = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    Object::Ptr colours = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    Object::Ptr markers = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    for (std::size_t i = 1; i < km::kItemTypeNames.size(); ++i) {
        const std::string type(km::kItemTypeNames[i]);
        const std::unique_ptr<km::ConfigItem> fresh(km::CreateConfigItem(type));
        if (!fresh) {
            continue;
        }
        Array::Ptr list = new Array();
        for (const km::PointSlot& slot : km::PointSlotsOf(*fresh)) {
            list->add(entry(!slot.isText ? "point" : "points", slot.path, slot.name, slot.moves,
                            slot.nullIsUnset, ""));
        }
        for (const km::SizeSlot& size : km::SizeSlotsOf(*fresh)) {
            list->add(entry(size.isArea ? "area" : "radius", size.path, size.name, false, false,
                            size.centre));
        }
        handles->set(type, list);
        Array::Ptr members = new Array();
        for (const km::KeySlot& slot : km::KeySlotsOf(*fresh)) {
            if (slot.role != km::KeyRole::Carried) {
                members->add(std::string(slot.path));
            }
        }
        keys->set(type, members);
        // A type whose fresh key is a gamepad control is for gamepad
        // documents, one on a mouse button for keyboard-and-mouse ones.
        const std::string& device = fresh->key.device;
        kinds->set(type, std::string(device == "joystick" ? "gamepad"
                                     : device == "mouse"  ? "keyboard"
                                                          : "both"));
        if (const render::TypeShape* shape = render::FindTypeShape(type)) {
            colours->set(type, std::string(shape->colour));
            markers->set(type, std::string(render::MarkerShapeName(shape->marker)));
        }
    }
    Object::Ptr shapes = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    shapes->set("handles", handles);
    shapes->set("keys", keys);
    shapes->set("kinds", kinds);
    shapes->set("colours", colours);
    shapes->set("markers", markers);
    return shapes;
}

bool MovePointBy(km::ConfigItem& item, const std::string& member, int point, double dx, double dy) {
    if (!std::isfinite(dx) || !std::isfinite(dy)) {
        return false;
    }
    const std::vector<km::PointSlot>& slots = km::PointSlotsOf(item);
    const auto slot = std::find_if(slots.begin(), slots.end(),
                                   [&](const km::PointSlot& s) { return member == s.path; });
    if (slot == slots.end()) {
        return false;
    }
    if (slot->isText) {
        // Only point number `point` moves: the text around it is kept.
        std::string& text = *slot->text(item);
        std::size_t open = std::string::npos;
        for (int k = 0; k <= point; ++k) {
            open = text.find('(', open == std::string::npos ? 0 : open + 1);
            if (open == std::string::npos) {
                return false;
            }
        }
        const std::size_t close = text.find(')', open);
        if (close == std::string::npos) {
            return false;
        }
        text = text.substr(0, open) +
               km::MovePointText(text.substr(open, close + 1 - open), dx, dy) +
               text.substr(close + 1);
        return true;
    }
    km::PointF& at = *slot->point(item);
    if (at.isNull() && slot->nullIsUnset) {
        at = item.rel_work_position;
    }
    at = km::PointF(clamp01(at.x + dx), clamp01(at.y + dy));
    return true;
}

void PlaceFreshItem(km::ConfigItem& item, const km::KeymapConfig& doc, double x, double y) {
    const km::PointF at = x >= 0 && x <= 1 && y >= 0 && y <= 1 ? km::PointF(x, y) : freeSpot(doc);
    km::PlaceItem(item, at);
    // A stroke from its start to the same spot draws nothing: it gets a length.
    if (auto* curve = dynamic_cast<km::CurveConfigItem*>(&item)) {
        curve->rel_end_pos = km::PointF(clamp01(at.x + 0.1), at.y);
    }
}

void SizeFreshItem(const Object::Ptr& item) {
    const std::unique_ptr<km::ConfigItem> fresh(
        km::CreateConfigItem(item->optValue<std::string>("type", std::string())));
    if (!fresh) {
        return;
    }
    for (const km::SizeSlot& size : km::SizeSlotsOf(*fresh)) {
        if (size.zeroMeans || size.isArea) {
            continue;
        }
        const std::string& path = size.path;
        const std::size_t dot = path.rfind('.');
        Object::Ptr parent = dot == std::string::npos ? item : objectAt(item, path.substr(0, dot));
        const std::string name = dot == std::string::npos ? path : path.substr(dot + 1);
        if (parent.isNull() || !parent->has(name) || !parent->get(name).isNumeric()) {
            continue;
        }
        const double value = parent->getValue<double>(name);
        if (value <= 0 || value >= 0.45) {
            parent->set(name, 0.08);
        }
    }
}

std::vector<std::string> UnsetTakenKeys(km::ConfigItem& item, const km::KeymapConfig& doc) {
    std::vector<std::string> unset;
    const std::vector<km::KeySlot>& slots = km::KeySlotsOf(item);
    for (const km::KeySlot& slot : slots) {
        if (!slot.fires() || !slot.in(item).isSet()) {
            continue;
        }
        km::KeyTrigger trigger;
        trigger.first = slot.in(item);
        if (slot.second >= 0) {
            trigger.second = slots[static_cast<std::size_t>(slot.second)].in(item);
            trigger.combination = trigger.second.isSet();
        }
        const bool taken =
            std::any_of(doc.items.begin(), doc.items.end(), [&](km::ConfigItem* other) {
                return other != nullptr && km::TriggerFires(*other, trigger);
            });
        if (taken) {
            unset.emplace_back(slot.path);
            slot.in(item) = km::ConfigKey();
            if (slot.second >= 0) {
                slots[static_cast<std::size_t>(slot.second)].in(item) = km::ConfigKey();
            }
        }
    }
    return unset;
}

}  // namespace editor
}  // namespace zunokeymap
