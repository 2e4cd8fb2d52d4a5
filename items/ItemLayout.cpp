//
// ItemLayout.cpp
//

#include "zuno-keymapmanager/items/ItemLayout.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "zuno-keymapmanager/items/ComposableItems.h"
#include "zuno-keymapmanager/items/CurveMacroItems.h"
#include "zuno-keymapmanager/items/DiamondConfigItem.h"
#include "zuno-keymapmanager/items/FireItem.h"
#include "zuno-keymapmanager/items/SpellItems.h"
#include "zuno-keymapmanager/items/WalkItems.h"

namespace zunokeymapmanager {

namespace {

// Key members, by the class that brings them. A pair and a four-key item
// still carry the base key, but their own keys fire them.

template <typename Item>
Item& as(ConfigItem& item) {
    return static_cast<Item&>(item);
}

const std::vector<KeySlot>& plainKeys() {
    static const std::vector<KeySlot> slots{
        {"key", "key", KeyRole::Key, -1, [](ConfigItem& i) -> ConfigKey& { return i.key; }},
    };
    return slots;
}

const std::vector<KeySlot>& composableKeys() {
    static const std::vector<KeySlot> slots{
        {"key", "key", KeyRole::Key, 1, [](ConfigItem& i) -> ConfigKey& { return i.key; }},
        {"second_key", "second", KeyRole::SecondKey, -1,
         [](ConfigItem& i) -> ConfigKey& { return as<ComposableConfigItem>(i).second_key; }},
    };
    return slots;
}

const std::vector<KeySlot>& pairKeys() {
    static const std::vector<KeySlot> slots{
        {"key", "key", KeyRole::Carried, -1, [](ConfigItem& i) -> ConfigKey& { return i.key; }},
        {"positive_key.key", "positive", KeyRole::PairKey, 2,
         [](ConfigItem& i) -> ConfigKey& { return as<PairConfigItem>(i).positive_key.key; }},
        {"positive_key.second_key", "positive second", KeyRole::PairSecondKey, -1,
         [](ConfigItem& i) -> ConfigKey& { return as<PairConfigItem>(i).positive_key.second_key; }},
        {"negative_key.key", "negative", KeyRole::PairKey, 4,
         [](ConfigItem& i) -> ConfigKey& { return as<PairConfigItem>(i).negative_key.key; }},
        {"negative_key.second_key", "negative second", KeyRole::PairSecondKey, -1,
         [](ConfigItem& i) -> ConfigKey& { return as<PairConfigItem>(i).negative_key.second_key; }},
    };
    return slots;
}

const std::vector<KeySlot>& diamondKeys() {
    static const std::vector<KeySlot> slots{
        {"key", "key", KeyRole::Carried, -1, [](ConfigItem& i) -> ConfigKey& { return i.key; }},
        {"top_key", "top", KeyRole::Direction, -1,
         [](ConfigItem& i) -> ConfigKey& { return as<DiamondConfigItem>(i).top; }},
        {"right_key", "right", KeyRole::Direction, -1,
         [](ConfigItem& i) -> ConfigKey& { return as<DiamondConfigItem>(i).right; }},
        {"bottom_key", "bottom", KeyRole::Direction, -1,
         [](ConfigItem& i) -> ConfigKey& { return as<DiamondConfigItem>(i).bottom; }},
        {"left_key", "left", KeyRole::Direction, -1,
         [](ConfigItem& i) -> ConfigKey& { return as<DiamondConfigItem>(i).left; }},
    };
    return slots;
}

// Points, by the type that has them; every item has a marker and a touch point.

PointSlot marker() {
    return {"icon.rel_position",
            "marker",
            true,
            false,
            [](ConfigItem& i) { return &i.icon.rel_position; },
            nullptr};
}

PointSlot touch() {
    return {"rel_work_position",
            "touch point",
            true,
            false,
            [](ConfigItem& i) { return &i.rel_work_position; },
            nullptr};
}

const std::vector<PointSlot>& basePoints() {
    static const std::vector<PointSlot> slots{marker(), touch()};
    return slots;
}

const std::vector<PointSlot>& spellPoints() {
    static const std::vector<PointSlot> slots{
        marker(),
        touch(),
        {"spell_info.rel_position", "cast point", true, false,
         [](ConfigItem& i) { return &as<SpellConfigItem>(i).spell_info.rel_position; }, nullptr},
        {"swipehold_info.rel_position", "drag centre", true, true,
         [](ConfigItem& i) { return &as<SpellConfigItem>(i).swipehold_info.rel_position; },
         nullptr},
        {"tap_info.rel_center_pos", "tap centre", true, true,
         [](ConfigItem& i) { return &as<SpellConfigItem>(i).tap_info.rel_center_pos; }, nullptr},
    };
    return slots;
}

const std::vector<PointSlot>& firePoints() {
    static const std::vector<PointSlot> slots{
        marker(),
        touch(),
        {"swipehold_info.rel_position", "drag centre", true, true,
         [](ConfigItem& i) { return &as<FireConfigItem>(i).swipehold_info.rel_position; }, nullptr},
    };
    return slots;
}

const std::vector<PointSlot>& curvePoints() {
    static const std::vector<PointSlot> slots{
        marker(),
        touch(),
        {"rel_start_pos", "start", true, false,
         [](ConfigItem& i) { return &as<CurveConfigItem>(i).rel_start_pos; }, nullptr},
        {"rel_all_points_pos", "points", true, false, nullptr,
         [](ConfigItem& i) { return &as<CurveConfigItem>(i).rel_all_points_pos; }},
        {"rel_end_pos", "end", true, false,
         [](ConfigItem& i) { return &as<CurveConfigItem>(i).rel_end_pos; }, nullptr},
    };
    return slots;
}

const std::vector<PointSlot>& rightWalkPoints() {
    static const std::vector<PointSlot> slots{
        marker(),
        touch(),
        {"rel_measurement_pos", "measurement point", false, false,
         [](ConfigItem& i) { return &as<MouseRightWalkConfigItem>(i).rel_measurement_pos; },
         nullptr},
    };
    return slots;
}

// A point moving with the item, not one left alone while unset.
bool takesPart(const PointSlot& slot, const PointF& point) {
    return slot.moves && !(slot.nullIsUnset && point.isNull());
}

// Shortens `delta` so that `at`, if on the screen, stays on it.
void keepOnScreen(double at, double& delta) {
    if (at >= 0.0 && at <= 1.0) {
        delta = std::min(std::max(delta, -at), 1.0 - at);
    }
}

// Calls `visit(number, begin, end)` for every number of a point text, in
// order; [begin, end) is where it stands in `text`.
template <typename Visit>
void forEachNumber(const std::string& text, Visit visit) {
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* p = begin;
    while (p < end) {
        if (!(std::isdigit(static_cast<unsigned char>(*p)) != 0 || *p == '-' || *p == '.')) {
            ++p;
            continue;
        }
        double value = 0;
        const auto result = std::from_chars(p, end, value);
        if (result.ec != std::errc() || result.ptr == p) {
            ++p;
            continue;
        }
        if (!visit(value, static_cast<std::size_t>(p - begin),
                   static_cast<std::size_t>(result.ptr - begin))) {
            return;
        }
        p = result.ptr;
    }
}

// A coordinate as a point text writes it: six decimals at most.
std::string coordinateText(double value) {
    char buffer[64];
    const double rounded = std::round(value * 1e6) / 1e6;
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, rounded == 0.0 ? 0.0 : rounded);
    return std::string(buffer, result.ptr);
}

}  // namespace

const std::vector<KeySlot>& KeySlotsOf(const ConfigItem& item) {
    if (dynamic_cast<const PairConfigItem*>(&item) != nullptr) {
        return pairKeys();
    }
    if (dynamic_cast<const ComposableConfigItem*>(&item) != nullptr) {
        return composableKeys();
    }
    if (dynamic_cast<const DiamondConfigItem*>(&item) != nullptr) {
        return diamondKeys();
    }
    return plainKeys();
}

const std::vector<PointSlot>& PointSlotsOf(const ConfigItem& item) {
    if (dynamic_cast<const SpellConfigItem*>(&item) != nullptr) {
        return spellPoints();
    }
    if (dynamic_cast<const FireConfigItem*>(&item) != nullptr) {
        return firePoints();
    }
    if (dynamic_cast<const CurveConfigItem*>(&item) != nullptr) {
        return curvePoints();
    }
    if (dynamic_cast<const MouseRightWalkConfigItem*>(&item) != nullptr) {
        return rightWalkPoints();
    }
    return basePoints();
}

std::vector<PointF> PointsOfText(const std::string& text, std::size_t limit) {
    std::vector<PointF> points;
    double pending = 0;
    bool half = false;
    forEachNumber(text, [&](double value, std::size_t, std::size_t) {
        if (half) {
            if (points.size() >= limit) {
                return false;
            }
            points.emplace_back(pending, value);
        }
        pending = value;
        half = !half;
        return true;
    });
    return points;
}

std::string MovePointText(const std::string& text, double dx, double dy) {
    std::string moved;
    std::size_t copied = 0;
    bool isY = false;
    forEachNumber(text, [&](double value, std::size_t begin, std::size_t end) {
        moved.append(text, copied, begin - copied);
        moved += coordinateText(value + (isY ? dy : dx));
        copied = end;
        isY = !isY;
        return true;
    });
    moved.append(text, copied, std::string::npos);
    return moved;
}

PointF MoveItem(ConfigItem& item, double dx, double dy) {
    PointF delta{std::isfinite(dx) ? dx : 0.0, std::isfinite(dy) ? dy : 0.0};
    const std::vector<PointSlot>& slots = PointSlotsOf(item);
    for (const PointSlot& slot : slots) {
        if (slot.point != nullptr && takesPart(slot, *slot.point(item))) {
            keepOnScreen(slot.point(item)->x, delta.x);
            keepOnScreen(slot.point(item)->y, delta.y);
        } else if (slot.text != nullptr && slot.moves) {
            for (const PointF& point : PointsOfText(*slot.text(item), slot.text(item)->size())) {
                keepOnScreen(point.x, delta.x);
                keepOnScreen(point.y, delta.y);
            }
        }
    }
    if (delta.isNull()) {
        return delta;
    }
    for (const PointSlot& slot : slots) {
        if (slot.point != nullptr && takesPart(slot, *slot.point(item))) {
            *slot.point(item) += delta;
        } else if (slot.text != nullptr && slot.moves) {
            *slot.text(item) = MovePointText(*slot.text(item), delta.x, delta.y);
        }
    }
    return delta;
}

void PlaceItem(ConfigItem& item, PointF at) {
    if (!item.rel_work_position.isNull()) {
        MoveItem(item, at.x - item.rel_work_position.x, at.y - item.rel_work_position.y);
        return;
    }
    for (const PointSlot& slot : PointSlotsOf(item)) {
        if (slot.point != nullptr && takesPart(slot, *slot.point(item))) {
            *slot.point(item) = at;
        }
    }
}

}  // namespace zunokeymapmanager
