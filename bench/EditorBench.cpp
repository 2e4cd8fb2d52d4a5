//
// EditorBench.cpp
//
// The editor's edits on a 200-item document, through its request handling:
// one operation as the page sends it (applied to the held document, loaded
// and saved to text by the library, checked, drawn, and answered with all
// three; also on 1,000 items, and there as the page names the version it
// shows, answered with the items that changed), and a whole changed document
// PUT with its picture fetched. Baseline of these: a plain load and save (to
// text) of the same document. And one request of 200 adds against one of 20.
//

#include <cstdlib>
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

// A session holding `text`, in a folder of its own.
struct Held {
    std::string dir = Poco::TemporaryFile::tempName();
    std::unique_ptr<EditorSession> session;
    std::unique_ptr<EditorApi> api;
    long long seq = 0;

    explicit Held(const std::string& text) {
        Poco::File(dir).createDirectories();
        session.reset(new EditorSession(dir + "/doc.json", false, {}));
        api.reset(new EditorApi(*session, "token", 1));
        ok = api->handle(request("PUT", "/api/document", text)).status == 200;
    }
    ~Held() { Poco::File(dir).remove(true); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    // One edit request of `ops` (a JSON array's members), as the page numbers
    // them; with `since`, naming the version of the last answer.
    HttpResponse edit(const std::string& ops, bool since = false) {
        const std::string shown = since ? R"(,"since":)" + std::to_string(version) : "";
        HttpResponse answer =
            api->handle(request("POST", "/api/edit",
                                R"({"client":"bench","seq":)" + std::to_string(++seq) + shown +
                                    R"(,"ops":[)" + ops + "]}"));
        const std::size_t at = answer.body.find("\"version\":");
        version = at == std::string::npos ? 0 : std::atol(answer.body.c_str() + at + 10);
        return answer;
    }
    long version = 0;
    bool ok = false;
};

// One move of one item of a document of `items` items; `since`: as the page
// sends it, naming the version it shows.
void moveOne(benchmark::State& state, std::size_t items, bool since) {
    Held held(items == kItems ? versionOf(0) : benchdocs::GenerateDocument(items, 1));
    if (!held.ok) {
        state.SkipWithError("the editor refused the document");
        return;
    }
    // The middle item, back and forth, so that every operation is a real change.
    Poco::JSON::Parser parser;
    const std::string id =
        std::to_string(parser.parse(held.api->handle(request("GET", "/api/snapshot", "")).body)
                           .extract<Poco::JSON::Object::Ptr>()
                           ->getArray("ids")
                           ->getElement<long>(static_cast<int>(items / 2)));
    const std::string moves[2] = {R"({"op":"move","item":)" + id + R"(,"dx":0.01,"dy":0.005})",
                                  R"({"op":"move","item":)" + id + R"(,"dx":-0.01,"dy":-0.005})"};
    int which = 0;
    for (auto _ : state) {
        const HttpResponse answer = held.edit(moves[which], since);
        if (answer.status != 200 || answer.body.find("\"ok\":true") == std::string::npos) {
            state.SkipWithError("the editor refused an operation");
            break;
        }
        benchmark::DoNotOptimize(answer.body.data());
        which = 1 - which;
    }
    state.counters["bar"] = 3.0;
}

void BM_EditOperation(benchmark::State& state) {
    moveOne(state, static_cast<std::size_t>(state.range(0)), false);
}

void BM_EditOperationSince(benchmark::State& state) {
    moveOne(state, static_cast<std::size_t>(state.range(0)), true);
}

// One request adding state.range(0) items to the 200-item document, then
// undone; the baseline adds a tenth as many, so the ratio shows how the
// cost grows with the number of operations in a request.
void addItems(benchmark::State& state, int count) {
    Held held(versionOf(0));
    std::string adds;
    for (int i = 0; i < count; ++i) {
        adds += i == 0 ? "" : ",";
        adds += R"({"op":"add","type":"Click","group":"paste"})";
    }
    for (auto _ : state) {
        const HttpResponse answer = held.edit(adds);
        state.PauseTiming();
        const bool undone = held.edit(R"({"op":"undo"})").status == 200;
        state.ResumeTiming();
        if (answer.status != 200 || !undone) {
            state.SkipWithError("the editor refused the adds");
            break;
        }
        benchmark::DoNotOptimize(answer.body.data());
    }
    state.counters["bar"] = 15.0;
}

void BM_EditAdds(benchmark::State& state) {
    addItems(state, 200);
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
    const auto items = static_cast<std::size_t>(state.range(0));
    if (items == kItems) {
        BM_EditRoundTrip_Baseline(state);
        return;
    }
    const std::string text = benchdocs::GenerateDocument(items, 1);
    for (auto _ : state) {
        const benchdocs::DocumentPtr doc = benchdocs::loadChecked(text, items);
        const std::string saved = km::SaveKeymapConfigAndInfoToText(doc.get());
        benchmark::DoNotOptimize(saved.data());
    }
    state.counters["bar"] = 3.0;
}

void BM_EditOperationSince_Baseline(benchmark::State& state) {
    BM_EditOperation_Baseline(state);
}

void BM_EditAdds_Baseline(benchmark::State& state) {
    addItems(state, 20);
}

BENCHMARK(BM_EditRoundTrip)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditRoundTrip_Baseline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditOperation)->Arg(200)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditOperation_Baseline)->Arg(200)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditOperationSince)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditOperationSince_Baseline)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditAdds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditAdds_Baseline)->Unit(benchmark::kMillisecond);
