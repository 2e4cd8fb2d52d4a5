//
// RenderBench.cpp
//
// Drawing a large document as a picture, against loading the same document:
// a host or the editor loads a keymap and then shows it, and showing it
// should not cost much more than loading it. Pictures are drawn as the editor
// draws them, with every description placed beside its marker (--labels), so
// that fanning and label placement are measured too. The scaling case draws
// ten times the items against the 2,000-item drawing, so a renderer that is
// not linear in the items misses its bar.
//
// The check lists every colliding pair, and the generated documents reuse
// few keys, so their reports grow with the square of the items (85,000
// findings at 2,000 items, 8.6 million at 20,000). The scaling case therefore
// hands both sizes a report of one collision per item, with its neighbour,
// which marks every item as the full report does.
//
// Naming: a case "BM_X" is paired with its baseline "BM_X_Baseline"; the
// counter "bar" is the largest acceptable ratio of the two (bench/run).
//

#include <map>
#include <string>

#include <SvgRenderer.h>
#include <benchmark/benchmark.h>

#include <zuno-keymapmanager/keymapmanager.h>

#include "CheckedDocument.h"
#include "DocumentGenerator.h"

namespace {

namespace km = zunokeymapmanager;
namespace render = zunokeymap::render;

constexpr std::size_t kItems = 2000;

// A generated document, loaded, with a check report, as the render command
// has them: the library's own check, or one collision per item.
struct Prepared {
    std::string text;
    benchdocs::DocumentPtr doc;
    km::CheckReport report;
};

enum class Report { Checked, Neighbours };

const Prepared& prepared(std::size_t items, Report kind) {
    static std::map<std::pair<std::size_t, Report>, Prepared> cache;
    auto found = cache.find({items, kind});
    if (found == cache.end()) {
        Prepared p;
        p.text = benchdocs::GenerateDocument(items);
        p.doc = benchdocs::loadChecked(p.text, items);
        if (kind == Report::Checked) {
            p.report = km::CheckKeymapDocument(p.text, false);
        } else {
            for (std::size_t i = 0; i + 1 < items; i += 2) {
                km::Finding collision;
                collision.kind = km::FindingKind::KeyCollision;
                collision.item_index = static_cast<int>(i);
                collision.other_index = static_cast<int>(i + 1);
                collision.message = "both fire on the same key";
                p.report.findings.push_back(collision);
            }
        }
        found = cache.emplace(std::make_pair(items, kind), std::move(p)).first;
    }
    return found->second;
}

void draw(benchmark::State& state, std::size_t items, Report kind) {
    const Prepared& p = prepared(items, kind);
    render::RenderOptions options;
    options.labels = true;
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::string svg = render::RenderSvg(*p.doc, p.report, options);
        bytes = svg.size();
        benchmark::DoNotOptimize(svg.data());
    }
    state.counters["svg_bytes"] = static_cast<double>(bytes);
}

void BM_Render(benchmark::State& state) {
    draw(state, kItems, Report::Checked);
    state.counters["bar"] = 1.5;
}

void BM_Render_Baseline(benchmark::State& state) {
    const std::string& text = prepared(kItems, Report::Checked).text;
    for (auto _ : state) {
        km::KeymapConfig* doc = km::LoadKeymapConfigAndInfo(benchdocs::kHostTextPath, text);
        benchmark::DoNotOptimize(doc);
        delete doc;
    }
}

void BM_RenderScaling(benchmark::State& state) {
    draw(state, static_cast<std::size_t>(state.range(0)), Report::Neighbours);
    state.counters["bar"] = 12;
}

// The argument only pairs it with its case: it always draws 2,000 items.
void BM_RenderScaling_Baseline(benchmark::State& state) {
    draw(state, kItems, Report::Neighbours);
}

}  // namespace

BENCHMARK(BM_Render)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Render_Baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RenderScaling)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RenderScaling_Baseline)->Arg(20000)->Unit(benchmark::kMillisecond);
