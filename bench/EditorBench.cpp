//
// EditorBench.cpp
//
// The editor's edits on a 200-item document, through its request handling:
// one operation as the page sends it (applied to the held document, loaded
// and saved to text by the library, checked, drawn, and answered with all
// three), and a whole changed document PUT with its picture fetched.
// Baseline of both: a plain load and save (to text) of the same document.
//

#include <memory>
#include <string>

#include <Poco/File.h>
#include <Poco/JSON/Parser.h>
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

void BM_EditOperation(benchmark::State& state) {
    const std::string dir = Poco::TemporaryFile::tempName();
    Poco::File(dir).createDirectories();
    EditorSession session(dir + "/doc.json", false, {});
    EditorApi api(session, "token", 1);
    if (api.handle(request("PUT", "/api/document", versionOf(0))).status != 200) {
        state.SkipWithError("the editor refused the document");
        return;
    }
    // Item 100, back and forth, so that every operation is a real change.
    Poco::JSON::Parser parser;
    const std::string id =
        std::to_string(parser.parse(api.handle(request("GET", "/api/snapshot", "")).body)
                           .extract<Poco::JSON::Object::Ptr>()
                           ->getArray("ids")
                           ->getElement<long>(100));
    const HttpRequest moves[2] = {
        request("POST", "/api/edit",
                R"({"ops":[{"op":"move","item":)" + id + R"(,"dx":0.01,"dy":0.005}]})"),
        request("POST", "/api/edit",
                R"({"ops":[{"op":"move","item":)" + id + R"(,"dx":-0.01,"dy":-0.005}]})")};
    int which = 0;
    for (auto _ : state) {
        const HttpResponse answer = api.handle(moves[which]);
        if (answer.status != 200 || answer.body.find("\"ok\":true") == std::string::npos) {
            state.SkipWithError("the editor refused an operation");
            break;
        }
        benchmark::DoNotOptimize(answer.body.data());
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

void BM_EditOperation_Baseline(benchmark::State& state) {
    BM_EditRoundTrip_Baseline(state);
}

BENCHMARK(BM_EditRoundTrip)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditRoundTrip_Baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditOperation)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditOperation_Baseline)->Unit(benchmark::kMillisecond);

namespace {

// One operation as the page sends it on a document of state.range(0) items,
// its middle item moved back and forth, against a plain load and save of
// the same document: what a drag's release costs as documents grow.
void BM_EditOperationAt(benchmark::State& state) {
    const auto items = static_cast<std::size_t>(state.range(0));
    const std::string dir = Poco::TemporaryFile::tempName();
    Poco::File(dir).createDirectories();
    {
        EditorSession session(dir + "/doc.json", false, {});
        EditorApi api(session, "token", 1);
        const HttpResponse put =
            api.handle(request("PUT", "/api/document", benchdocs::GenerateDocument(items, 1)));
        Poco::JSON::Parser parser;
        const Poco::JSON::Array::Ptr ids =
            parser.parse(api.handle(request("GET", "/api/snapshot", "")).body)
                .extract<Poco::JSON::Object::Ptr>()
                ->getArray("ids");
        const std::string item = ids && ids->size() == items
                                     ? std::to_string(ids->getElement<long>(items / 2))
                                     : std::string();
        if (put.status != 200 || item.empty()) {
            state.SkipWithError("the editor refused the document");
        }
        // Each request is numbered, as the page numbers them.
        const auto moveBy = [&item](long long seq, const char* dx, const char* dy) {
            return request("POST", "/api/edit",
                           R"({"client":"bench","seq":)" + std::to_string(seq) +
                               R"(,"ops":[{"op":"move","item":)" + item + R"(,"dx":)" + dx +
                               R"(,"dy":)" + dy + "}]}");
        };
        long long seq = 0;
        for (auto _ : state) {
            const bool back = (++seq % 2) == 0;
            const HttpRequest move =
                moveBy(seq, back ? "-0.01" : "0.01", back ? "-0.005" : "0.005");
            const HttpResponse answer = api.handle(move);
            if (answer.status != 200 || answer.body.find("\"ok\":true") == std::string::npos) {
                state.SkipWithError("the editor refused an operation");
                break;
            }
            benchmark::DoNotOptimize(answer.body.data());
        }
    }
    Poco::File(dir).remove(true);
    state.counters["bar"] = 3.0;
}

void BM_EditOperationAt_Baseline(benchmark::State& state) {
    const auto items = static_cast<std::size_t>(state.range(0));
    const std::string text = benchdocs::GenerateDocument(items, 1);
    for (auto _ : state) {
        const benchdocs::DocumentPtr doc = benchdocs::loadChecked(text, items);
        const std::string saved = km::SaveKeymapConfigAndInfoToText(doc.get());
        benchmark::DoNotOptimize(saved.data());
    }
    state.counters["bar"] = 3.0;
}

}  // namespace

BENCHMARK(BM_EditOperationAt)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditOperationAt_Baseline)->Arg(1000)->Unit(benchmark::kMillisecond);
