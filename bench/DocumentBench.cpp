//
// DocumentBench.cpp
//
// Loading and saving a large document, each against what the JSON library
// alone needs for the same text: the library cannot be faster than its parser
// and its stringifier, so these baselines are the floor.
//
// Naming: a case "BM_X" is paired with its baseline "BM_X_Baseline"; the
// counter "bar" is the largest acceptable ratio of the two (bench/run).
//

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <Poco/JSON/Object.h>
#include <Poco/JSON/ParseHandler.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>
#include <Poco/Process.h>
#include <benchmark/benchmark.h>

#include <zuno-keymapmanager/keymapmanager.h>

#include "CheckedDocument.h"
#include "DocumentGenerator.h"

namespace {

namespace km = zunokeymapmanager;

constexpr std::size_t kItems = 2000;

const std::string& documentText() {
    static const std::string text = [] {
        std::string generated = benchdocs::GenerateDocument(kItems);
        benchdocs::loadChecked(generated, kItems);
        return generated;
    }();
    return text;
}

// The parse a load cannot avoid: the same parser and handler the library
// uses, without order preservation.
Poco::Dynamic::Var plainParse(const std::string& text) {
    Poco::JSON::Parser parser(new Poco::JSON::ParseHandler(false));
    return parser.parse(text);
}

std::string outputPath(const char* name) {
    return (std::filesystem::temp_directory_path() /
            ("zuno-km-bench-" + std::to_string(Poco::Process::id()) + "-" + name + ".json"))
        .string();
}

void setBar(benchmark::State& state, double bar) {
    state.counters["bar"] = bar;
    state.counters["bytes"] = static_cast<double>(documentText().size());
}

void BM_Load(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        km::KeymapConfig* doc = km::LoadKeymapConfigAndInfo(benchdocs::kHostTextPath, text);
        benchmark::DoNotOptimize(doc);
        delete doc;
    }
    setBar(state, 1.3);
}

void BM_Load_Baseline(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        Poco::Dynamic::Var root = plainParse(text);
        benchmark::DoNotOptimize(root);
    }
    setBar(state, 1.3);
}

void BM_Save(benchmark::State& state) {
    const benchdocs::DocumentPtr doc = benchdocs::loadChecked(documentText(), kItems);
    const std::string path = outputPath("save");
    for (auto _ : state) {
        benchmark::DoNotOptimize(km::SaveKeymapConfigAndInfo(path, doc.get()));
    }
    std::remove(path.c_str());
    setBar(state, 1.5);
}

// Stringifies exactly what the library writes: the tree parsed back from the
// library's own output, so both cases produce the same bytes.
void BM_Save_Baseline(benchmark::State& state) {
    const benchdocs::DocumentPtr doc = benchdocs::loadChecked(documentText(), kItems);
    const std::string path = outputPath("plain");
    km::SaveKeymapConfigAndInfo(path, doc.get());
    std::stringstream saved;
    saved << std::ifstream(path).rdbuf();
    const Poco::JSON::Object::Ptr root = plainParse(saved.str()).extract<Poco::JSON::Object::Ptr>();

    for (auto _ : state) {
        // Streaming straight into the file stream is several times slower
        // than stringifying to memory and writing once; the faster way is
        // the floor.
        std::ostringstream text;
        Poco::JSON::Stringifier::stringify(root, text, 4, -1, Poco::JSON_WRAP_STRINGS);
        std::ofstream out(path, std::ios::out | std::ios::trunc | std::ios::binary);
        out << text.str();
    }
    std::remove(path.c_str());
    setBar(state, 1.5);
}

}  // namespace

BENCHMARK(BM_Load)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Load_Baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Save)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Save_Baseline)->Unit(benchmark::kMillisecond);
