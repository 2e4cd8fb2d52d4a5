//
// CheckBench.cpp
//
// The document check. Its collision search must grow with the items, not
// with their pairs: 20,000 items against 2,000 is the ratio that tells. The
// whole check, schema included, is measured against loading the same text,
// and against itself on an object of an eighth of the members, so that
// nothing in it grows with the square of one object's members.
//
// Naming: a case "BM_X" is paired with its baseline "BM_X_Baseline"; the
// counter "bar" is the largest acceptable ratio of the two (bench/run).
//

#include <cstdlib>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>
#include <Poco/JSON/ParseHandler.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>
#include <benchmark/benchmark.h>

#include <zuno-keymapmanager/keymapmanager.h>

#include "CheckedDocument.h"
#include "DocumentGenerator.h"
#include "check/CheckFindings.h"
#include "check/KeyCollisions.h"

namespace {

namespace km = zunokeymapmanager;
using Poco::JSON::Array;
using Poco::JSON::Object;

constexpr std::size_t kItems = 2000;

// Gives every key of the generated document a code (or gamepad name) of its
// own, except that every tenth item repeats the keys of the item before it:
// a keymap with a collision per ten items, as hand-made ones have, rather
// than the generator's forty keys shared by thousands of items.
class KeySpreader {
public:
    void item(Object::Ptr element, bool repeat) {
        next_ = repeat ? previous_ : next_;
        previous_ = next_;
        walk(element);
    }

private:
    void walk(Object::Ptr object) {
        if (object->has("device") && object->has("scan_code")) {
            const int code = 1000 + next_++;
            object->set("scan_code", code);
            if (object->getValue<std::string>("device") == "joystick") {
                object->set("text", "Pad" + std::to_string(code));
            } else {
                object->set("text", "");
            }
            return;
        }
        for (auto& member : *object) {
            if (member.second.type() == typeid(Object::Ptr)) {
                walk(member.second.extract<Object::Ptr>());
            }
        }
    }

    int next_ = 0;
    int previous_ = 0;
};

std::string spreadDocument(std::size_t items) {
    Poco::JSON::Parser parser(new Poco::JSON::ParseHandler(false));
    const Object::Ptr root =
        parser.parse(benchdocs::GenerateDocument(items)).extract<Object::Ptr>();
    const Array::Ptr elements = root->getArray("keymaps");
    KeySpreader spreader;
    for (std::size_t i = 0; i < elements->size(); ++i) {
        spreader.item(elements->getObject(static_cast<unsigned>(i)), i % 10 == 9);
    }
    std::ostringstream text;
    Poco::JSON::Stringifier::stringify(root, text);
    return text.str();
}

const std::string& spreadText(std::size_t items) {
    static std::map<std::size_t, std::string> texts;
    std::string& text = texts[items];
    if (text.empty()) {
        text = spreadDocument(items);
    }
    return text;
}

void BM_CheckCollisions(benchmark::State& state) {
    const std::size_t items = static_cast<std::size_t>(state.range(0));
    const benchdocs::DocumentPtr doc = benchdocs::loadChecked(spreadText(items), items);
    std::size_t found = 0;
    for (auto _ : state) {
        found = km::check::FindCollisions(doc->items).size();
        benchmark::DoNotOptimize(found);
    }
    state.counters["collisions"] = static_cast<double>(found);
    state.counters["bar"] = 12;
}

// The same items searched as 2,000-item documents, one after the other, so
// that each search finds its items no nearer in memory than the whole search
// does: a linear search takes a tenth of the time, one over all pairs a
// hundredth.
void BM_CheckCollisions_Baseline(benchmark::State& state) {
    const std::size_t items = static_cast<std::size_t>(state.range(0));
    const benchdocs::DocumentPtr doc = benchdocs::loadChecked(spreadText(items), items);
    std::vector<std::vector<km::ConfigItem*>> slices;
    for (std::size_t first = 0; first < items; first += kItems) {
        slices.emplace_back(doc->items.begin() + static_cast<std::ptrdiff_t>(first),
                            doc->items.begin() + static_cast<std::ptrdiff_t>(first + kItems));
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(km::check::FindCollisions(slices[next]).size());
        next = (next + 1) % slices.size();
    }
    state.counters["bar"] = 12;
}

const std::string& generatedText() {
    static const std::string text = [] {
        std::string generated = benchdocs::GenerateDocument(kItems);
        benchdocs::loadChecked(generated, kItems);
        return generated;
    }();
    return text;
}

void BM_CheckDocument(benchmark::State& state) {
    for (auto _ : state) {
        const km::CheckReport report = km::CheckKeymapDocument(generatedText(), false);
        benchmark::DoNotOptimize(report.findings.data());
    }
    state.counters["bar"] = 3;
}

void BM_CheckDocument_Baseline(benchmark::State& state) {
    for (auto _ : state) {
        km::KeymapConfig* doc =
            km::LoadKeymapConfigAndInfo(benchdocs::kHostTextPath, generatedText());
        benchmark::DoNotOptimize(doc);
        delete doc;
    }
    state.counters["bar"] = 3;
}

// Every finding's line and column, found in one scan of the text: a small
// part of the check of a 2,000-item document, measured against the same
// check leaving them unset.
void BM_CheckLocating(benchmark::State& state) {
    std::size_t placed = 0;
    for (auto _ : state) {
        const km::CheckReport report = km::check::CheckText(generatedText(), false, "", true);
        placed = report.findings.empty() ? 0 : static_cast<std::size_t>(report.findings[0].line);
        benchmark::DoNotOptimize(report.findings.data());
    }
    if (placed == 0) {
        state.SkipWithError("nothing was located: the case measures nothing");
    }
    state.counters["bar"] = 1.1;
}

void BM_CheckLocating_Baseline(benchmark::State& state) {
    for (auto _ : state) {
        const km::CheckReport report = km::check::CheckText(generatedText(), false, "", false);
        benchmark::DoNotOptimize(report.findings.data());
    }
    state.counters["bar"] = 1.1;
}

// A fresh Click, as the library writes it, on Q and placed.
std::string clickText() {
    std::unique_ptr<km::ConfigItem> click(km::CreateConfigItem("Click"));
    click->key = km::CreateConfigKey("keyboard", 0x51, 16);
    click->icon.rel_position = km::PointF(0.5, 0.5);
    click->rel_work_position = km::PointF(0.5, 0.5);
    std::ostringstream one;
    Poco::JSON::Stringifier::stringify(click->ConvertToJsonObject(), one);
    return one.str();
}

// A blank document whose "keymaps" holds `items` (elements, comma-separated),
// loaded once to be sure it holds `count` items.
std::string documentOf(const std::string& items, std::size_t count) {
    std::unique_ptr<km::KeymapConfig> blank(
        km::LoadKeymapConfigAndInfo("sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300", ""));
    std::string document = km::SaveKeymapConfigAndInfoToText(blank.get());
    const std::size_t open = document.find('[', document.find("\"keymaps\""));
    document.insert(open + 1, items);
    const std::unique_ptr<km::KeymapConfig> loaded(
        km::LoadKeymapConfigAndInfo(benchdocs::kHostTextPath, document));
    if (loaded->items.size() != count) {
        std::abort();  // the setup is wrong: nothing here would be measured
    }
    return document;
}

// A hostile document: every item on one key. Reported as one finding per
// key, its check stays within a few loads; as pairs it was quadratic.
const std::string& oneKeyText() {
    static const std::string text = [] {
        const std::string one = clickText();
        std::string items;
        for (int i = 0; i < 10000; ++i) {
            items += (i == 0 ? "" : ",") + one;
        }
        return documentOf(items, 10000);
    }();
    return text;
}

void BM_CheckOneKey(benchmark::State& state) {
    for (auto _ : state) {
        const km::CheckReport report = km::CheckKeymapDocument(oneKeyText(), false);
        benchmark::DoNotOptimize(report.findings.data());
    }
    state.counters["bar"] = 3;
}

void BM_CheckOneKey_Baseline(benchmark::State& state) {
    for (auto _ : state) {
        km::KeymapConfig* doc = km::LoadKeymapConfigAndInfo(benchdocs::kHostTextPath, oneKeyText());
        benchmark::DoNotOptimize(doc);
        delete doc;
    }
    state.counters["bar"] = 3;
}

// Another: one item with tens of thousands of members of its own, each
// reported as unknown and each looked for among the names before it. The
// search for repeated names must stay linear in the members of one object.
const std::string& wideText(std::size_t members) {
    static std::map<std::size_t, std::string> texts;
    std::string& text = texts[members];
    if (text.empty()) {
        std::string item = clickText();
        std::string extra;
        for (std::size_t k = 0; k < members; ++k) {
            extra += "\"m" + std::to_string(k) + "\":" + std::to_string(k) + ",";
        }
        item.insert(1, extra);
        text = documentOf(item, 1);
    }
    return text;
}

void checkWide(benchmark::State& state, std::size_t members) {
    const std::string& text = wideText(members);
    std::size_t found = 0;
    for (auto _ : state) {
        const km::CheckReport report = km::CheckKeymapDocument(text, false);
        found = report.findings.size();
        benchmark::DoNotOptimize(report.findings.data());
    }
    state.counters["findings"] = static_cast<double>(found);
}

void BM_CheckWideObject(benchmark::State& state) {
    checkWide(state, static_cast<std::size_t>(state.range(0)));
    state.counters["bar"] = 12;
}

// The argument only pairs it with its case: an eighth of the members.
void BM_CheckWideObject_Baseline(benchmark::State& state) {
    checkWide(state, static_cast<std::size_t>(state.range(0)) / 8);
}

// The whole check at growing sizes, fitted: it must come out linear.
void BM_CheckDocumentGrowth(benchmark::State& state) {
    const std::string& text = spreadText(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const km::CheckReport report = km::CheckKeymapDocument(text, false);
        benchmark::DoNotOptimize(report.findings.data());
    }
    state.SetComplexityN(state.range(0));
}

}  // namespace

BENCHMARK(BM_CheckCollisions)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckCollisions_Baseline)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckDocument)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckDocument_Baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckLocating)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckLocating_Baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckOneKey)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckOneKey_Baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckWideObject)->Arg(160000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckWideObject_Baseline)->Arg(160000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckDocumentGrowth)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(4000)
    ->Arg(8000)
    ->Complexity(benchmark::oN)
    ->Unit(benchmark::kMillisecond);
