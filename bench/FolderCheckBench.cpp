//
// FolderCheckBench.cpp
//
// `zuno-keymap check` of a folder of 500 keymaps against checking the same
// files one process each, as a loop in a script or a hook does. The folder
// run shares one process and every core. What a user waits for is the
// clock, so both are timed by the clock (the "wall" counter tells
// bench/report.py), not by this process's CPU.
//

#include <cstdio>
#include <string>
#include <vector>

#include <Poco/File.h>
#include <Poco/TemporaryFile.h>
#include <benchmark/benchmark.h>

#include "DocumentGenerator.h"
#include "tests/ProcessSupport.h"
#include "tests/TestSupport.h"

namespace {

constexpr int kDocuments = 500;
constexpr std::size_t kItems = 40;

// The folder, written once and removed when the process ends.
struct Folder {
    std::string path = Poco::TemporaryFile::tempName();
    std::vector<std::string> files;

    Folder() {
        Poco::File(path).createDirectories();
        for (int i = 0; i < kDocuments; ++i) {
            files.push_back(path + "/keymap-" + std::to_string(i) + ".json");
            testsupport::writeBytes(
                files.back(), benchdocs::GenerateDocument(kItems, benchdocs::kDefaultSeed + i));
        }
    }
    ~Folder() { Poco::File(path).remove(true); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
};

const Folder& folder() {
    static const Folder made;
    return made;
}

// A run whose output does not say it checked every file measured nothing.
bool checkedAll(const testsupport::Result& result) {
    return result.status >= 0 && result.status <= 1 && result.err.empty();
}

void BM_CheckFolder(benchmark::State& state) {
    const Folder& documents = folder();
    for (auto _ : state) {
        const testsupport::Result result =
            testsupport::RunProgram(ZUNO_KEYMAP_TOOL, {"check", documents.path});
        if (!checkedAll(result) ||
            result.out.find(std::to_string(kDocuments) + " files:") == std::string::npos) {
            state.SkipWithError("the folder check did not check every file");
            break;
        }
    }
    state.counters["bar"] = 0.6;
    state.counters["wall"] = 1;
}

void BM_CheckFolder_Baseline(benchmark::State& state) {
    const Folder& documents = folder();
    for (auto _ : state) {
        for (const std::string& file : documents.files) {
            if (!checkedAll(testsupport::RunProgram(ZUNO_KEYMAP_TOOL, {"check", file}))) {
                state.SkipWithError("a file's check failed");
                break;
            }
        }
    }
    state.counters["bar"] = 0.6;
    state.counters["wall"] = 1;
}

}  // namespace

BENCHMARK(BM_CheckFolder)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CheckFolder_Baseline)->Unit(benchmark::kMillisecond)->UseRealTime();
