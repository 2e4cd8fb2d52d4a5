//
// KeyBench.cpp
//
// Key captions and key collisions.
//
// Captions are measured against the straightforward way of computing them:
// building the integer-keyed code tables on every call and then looking the
// code up. The library must beat that by two orders of magnitude, since
// editors ask for captions of whole keyboards at once.
//
// Collisions walk every item of a document, so the cost must grow linearly
// with the number of items. The baseline of a document of N items is the
// same N items, in the same memory, walked as N / 200 documents of 200 items
// each: anything the single walk loses beyond that is growth faster than the
// item count.
//
// Naming: a case "BM_X" is paired with its baseline "BM_X_Baseline"; the
// counter "bar" is the largest acceptable ratio of the two (bench/run).
//

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include <zuno-keymapmanager/keymapmanager.h>

#include "CheckedDocument.h"
#include "DocumentGenerator.h"
#include "labels/KeyLabelRows.h"

namespace {

namespace km = zunokeymapmanager;

// --- Captions ----------------------------------------------------------------

// The same source rows the library folds once; the baseline builds maps from
// them on every call.
using zunokeymapmanager::labels::kArrowRows;
using zunokeymapmanager::labels::kExtendedKeyboardRows;
using zunokeymapmanager::labels::kFixedCaptions;
using zunokeymapmanager::labels::kGeneralKeyboardRows;
using zunokeymapmanager::labels::kMouseRows;
using zunokeymapmanager::labels::Row;

template <std::size_t N>
std::map<int, std::string> buildTable(const Row (&rows)[N]) {
    std::map<int, std::string> table;
    for (const Row& row : rows) {
        table.emplace(row.code, std::string(row.label));
    }
    return table;
}

std::string captionOf(const std::string& label) {
    for (const auto& [from, to] : kFixedCaptions) {
        if (label == from) {
            return std::string(to);
        }
    }
    std::string caption = label.substr(4);
    caption[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(caption[0])));
    return caption == "Unknown" ? std::string() : caption;
}

// The caption rule as written, with both code tables built for every call.
std::string perCallLabel(const std::string& device, int code) {
    const std::map<int, std::string> keyboard = buildTable(kGeneralKeyboardRows);
    const std::map<int, std::string> extended = buildTable(kExtendedKeyboardRows);
    const std::map<int, std::string> mouse = buildTable(kMouseRows);

    if (device == "keyboard") {
        if (const auto found = extended.find(code); found != extended.end()) {
            return found->second;
        }
        if (const auto found = keyboard.find(code); found != keyboard.end()) {
            return found->second;
        }
        if (code >= 328 && code <= 336) {
            return std::string(kArrowRows[code - 328].label);
        }
        return "key.unknown";
    }
    if (device == "mouse") {
        const auto found = mouse.find(code);
        return found != mouse.end() ? found->second : "btn.unknown";
    }
    return "unknown";
}

km::ConfigKey perCallCreateConfigKey(std::string device, int virtualKey, int scanCode) {
    km::ConfigKey key;
    key.device = device;
    key.virtual_key = virtualKey;
    key.scan_code = scanCode;
    key.modifySpecialKey();
    if (device != "joystick") {
        key.text = captionOf(perCallLabel(device, scanCode));
    }
    return key;
}

struct KeyRequest {
    std::string device;
    int virtualKey;
    int scanCode;
};

// What an editor asks for: every keyboard code, the extended block, the
// mouse buttons and button codes, and some codes without a name.
const std::vector<KeyRequest>& keySpread() {
    static const std::vector<KeyRequest> spread = [] {
        std::vector<KeyRequest> requests;
        for (int code = 0; code <= 140; ++code) {
            requests.push_back({"keyboard", code + 1000, code});
        }
        for (int code = 284; code <= 340; ++code) {
            requests.push_back({"keyboard", code + 1000, code});
        }
        for (int code : {1, 2, 3, 4, 8, 16, 256, 272, 288, 304, 320, 336, 544, 548, 549, 999}) {
            requests.push_back({"mouse", code, code});
        }
        for (int code : {500, -1, 2147483647}) {
            requests.push_back({"keyboard", code, code});
        }
        return requests;
    }();
    return spread;
}

template <typename Create>
void runCaptions(benchmark::State& state, Create create) {
    const auto& spread = keySpread();
    for (auto _ : state) {
        for (const KeyRequest& request : spread) {
            km::ConfigKey key = create(request.device, request.virtualKey, request.scanCode);
            benchmark::DoNotOptimize(key.text.data());
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(spread.size()));
    // At least a hundred times faster than the per-call tables.
    state.counters["bar"] = 0.01;
}

void BM_CreateConfigKey(benchmark::State& state) {
    runCaptions(state, &km::CreateConfigKey);
}

void BM_CreateConfigKey_Baseline(benchmark::State& state) {
    runCaptions(state, &perCallCreateConfigKey);
}

// --- Collisions ----------------------------------------------------------------

constexpr std::size_t kUnitItems = 200;

km::KeymapConfig& documentOf(std::size_t items) {
    static std::map<std::size_t, benchdocs::DocumentPtr> documents;
    auto& doc = documents[items];
    if (!doc) {
        doc = benchdocs::loadChecked(benchdocs::GenerateDocument(items), items);
    }
    return *doc;
}

// Documents that borrow consecutive runs of another document's items.
class Slices {
public:
    Slices(const km::KeymapConfig& whole, std::size_t itemsEach) {
        for (std::size_t first = 0; first < whole.items.size(); first += itemsEach) {
            auto slice = std::make_unique<km::KeymapConfig>();
            const auto begin = whole.items.begin() + static_cast<std::ptrdiff_t>(first);
            slice->items.assign(begin, begin + static_cast<std::ptrdiff_t>(std::min(
                                                   itemsEach, whole.items.size() - first)));
            pointers_.push_back(slice.get());
            slices_.push_back(std::move(slice));
        }
    }
    ~Slices() {
        for (auto& slice : slices_) {
            slice->items.clear();  // borrowed
        }
    }
    Slices(const Slices&) = delete;
    Slices& operator=(const Slices&) = delete;

    const std::vector<km::KeymapConfig*>& documents() const { return pointers_; }

private:
    std::vector<std::unique_ptr<km::KeymapConfig>> slices_;
    std::vector<km::KeymapConfig*> pointers_;
};

// Single keys and combinations, present in the documents and absent.
struct Probe {
    km::ConfigKey first;
    km::ConfigKey second;
};

// Not const: the public function takes the keys by pointer to non-const.
std::vector<Probe>& probes() {
    static std::vector<Probe> all = {
        {km::ConfigKey("keyboard", "Q", 81, 16), km::ConfigKey()},
        {km::ConfigKey("keyboard", "Ctrl", 17, 29), km::ConfigKey("keyboard", "1", 49, 2)},
        {km::ConfigKey("mouse", "left_mouse", 1, 1), km::ConfigKey()},
        {km::ConfigKey("joystick", "LB", km::kUnsetKeyCode, km::kUnsetKeyCode),
         km::ConfigKey("joystick", "A", km::kUnsetKeyCode, km::kUnsetKeyCode)},
        {km::ConfigKey("keyboard", "F12", 123, 88), km::ConfigKey()},
    };
    return all;
}

void checkCollisions(benchmark::State& state, const std::vector<km::KeymapConfig*>& docs) {
    std::vector<Probe>& keys = probes();
    std::size_t items = 0;
    for (const km::KeymapConfig* doc : docs) {
        items += doc->items.size();
    }
    for (auto _ : state) {
        // Every probe walks all the items, as an editor checks one key at a
        // time; probing each small document repeatedly would keep it cached.
        for (Probe& probe : keys) {
            for (km::KeymapConfig* doc : docs) {
                benchmark::DoNotOptimize(km::isConfigKeyMatch(doc, &probe.first, &probe.second));
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items * keys.size()));
    state.counters["bar"] = 1.5;
}

void BM_IsConfigKeyMatch(benchmark::State& state) {
    checkCollisions(state, {&documentOf(static_cast<std::size_t>(state.range(0)))});
}

void BM_IsConfigKeyMatch_Baseline(benchmark::State& state) {
    const Slices slices(documentOf(static_cast<std::size_t>(state.range(0))), kUnitItems);
    checkCollisions(state, slices.documents());
}

}  // namespace

BENCHMARK(BM_CreateConfigKey)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CreateConfigKey_Baseline)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_IsConfigKeyMatch)->Arg(200)->Arg(2000)->Arg(20000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_IsConfigKeyMatch_Baseline)->Arg(2000)->Arg(20000)->Unit(benchmark::kMicrosecond);
