//
// EditorBench.cpp
//
// One edit round trip of the editor on a 200-item document, as the page makes
// it: a changed document PUT (loaded, saved to text and checked by the
// library) and its picture drawn, through the editor's request handling.
// Baseline: a plain load and save (to text) of the same document.
//

#include <memory>
#include <string>

#include <Poco/File.h>
#include <Poco/TemporaryFile.h>
#include <benchmark/benchmark.h>

#include <zuno-keymapmanager/keymapmanager.h>

#include "CheckedDocument.h"
#include "DocumentGenerator.h"
#include "EditorApi.h"

namespace {

namespace km = zunokeymapmanager;
using namespace zunokeymap::editor;

constexpr std::size_t kItems = 200;

// Two versions of the document, so that every round trip is a real change.
const std::string& versionOf(int which) {
    static const std::string texts[2] = {benchdocs::GenerateDocument(kItems, 1),
                                         benchdocs::GenerateDocument(kItems, 2)};
    return texts[which];
}

HttpRequest request(const std::string& method, const std::string& target, std::string body) {
    HttpRequest r;
    r.method = method;
    r.target = target;
    r.headers = {{"Host", "127.0.0.1:1"},
                 {"Authorization", "Bearer token"},
                 {"Content-Type", "application/json"}};
    r.body = std::move(body);
    return r;
}

void BM_EditRoundTrip(benchmark::State& state) {
    const std::string dir = Poco::TemporaryFile::tempName();
    Poco::File(dir).createDirectories();
    EditorSession session(dir + "/doc.json", false, {});
    EditorApi api(session, "token", 1);
    const HttpRequest puts[2] = {request("PUT", "/api/document", versionOf(0)),
                                 request("PUT", "/api/document", versionOf(1))};
    const HttpRequest render = request("GET", "/api/render.svg", "");
    int which = 0;
    for (auto _ : state) {
        const HttpResponse put = api.handle(puts[which]);
        const HttpResponse picture = api.handle(render);
        if (put.status != 200 || picture.status != 200) {
            state.SkipWithError("the editor refused a round trip");
            break;
        }
        benchmark::DoNotOptimize(picture.body.data());
        which = 1 - which;
    }
    Poco::File(dir).remove(true);
    state.counters["bar"] = 3.0;
}

void BM_EditRoundTrip_Baseline(benchmark::State& state) {
    int which = 0;
    for (auto _ : state) {
        const benchdocs::DocumentPtr doc = benchdocs::loadChecked(versionOf(which), kItems);
        const std::string text = km::SaveKeymapConfigAndInfoToText(doc.get());
        benchmark::DoNotOptimize(text.data());
        which = 1 - which;
    }
    state.counters["bar"] = 3.0;
}

}  // namespace

BENCHMARK(BM_EditRoundTrip)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditRoundTrip_Baseline)->Unit(benchmark::kMillisecond);
