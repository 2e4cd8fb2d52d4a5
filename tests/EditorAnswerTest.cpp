// An edit's answer to a page that shows the last answer's version carries
// only the items that changed: put in place of the page's own, they must
// make the whole snapshot, byte for byte.

#include <gtest/gtest.h>

#include "AnswerParts.h"
#include "tests/EditorTestSupport.h"

namespace {

using namespace editortest;
using Poco::JSON::Array;
using Poco::JSON::Object;
using testsupport::parseObject;
using testsupport::stringify;

const std::string kToken = "0123456789abcdef0123456789abcdef";
const int kPort = 43119;

std::string compact(const Poco::Dynamic::Var& value) {
    std::ostringstream out;
    Poco::JSON::Stringifier::stringify(value, out);
    return out.str();
}

// What the page holds: the parts of the last answer, as it would merge them.
struct Shown {
    long version = 0;
    std::string svg;
    Array::Ptr keymaps;
    Object::Ptr document;
    Array::Ptr captions;
    std::string report;

    void take(const Object::Ptr& answer) {
        version = answer->getValue<long>("version");
        if (!answer->has("since")) {
            svg = answer->getValue<std::string>("svg");
            document = answer->getObject("document");
            captions = answer->getArray("captions");
            report = compact(answer->get("report"));
            return;
        }
        const TextParts parts = PictureParts(svg);
        ASSERT_TRUE(parts.ok);
        std::vector<std::string> groups;
        for (const auto& piece : parts.items) {
            groups.push_back(svg.substr(piece.first, piece.second - piece.first));
        }
        const auto put = [](const Object::Ptr& pieces,
                            const std::function<void(int, const Poco::Dynamic::Var&)>& at) {
            for (const auto& member : *pieces) {
                at(std::stoi(member.first), member.second);
            }
        };
        put(answer->getObject("svg_items"), [&groups](int k, const Poco::Dynamic::Var& v) {
            groups.at(static_cast<std::size_t>(k)) = v.extract<std::string>();
        });
        // The groups in place, and what lies between them as it was.
        std::string merged = svg.substr(0, parts.head);
        for (std::size_t k = 0; k < groups.size(); ++k) {
            merged += groups[k];
            const std::size_t next = k + 1 < groups.size() ? parts.items[k + 1].first : parts.tail;
            merged += svg.substr(parts.items[k].second, next - parts.items[k].second);
        }
        svg = merged + svg.substr(parts.tail);
        put(answer->getObject("document_items"), [this](int k, const Poco::Dynamic::Var& v) {
            document->getArray("keymaps")->set(static_cast<unsigned>(k), v);
        });
        put(answer->getObject("captions_items"), [this](int k, const Poco::Dynamic::Var& v) {
            captions->set(static_cast<unsigned>(k), v);
        });
        if (answer->has("report")) {
            report = compact(answer->get("report"));
        }
    }
};

TEST(EditorAnswer, AnAnswerSinceTheVersionShownMakesTheSnapshot) {
    TempDir dir;
    // A Click on Q (id 1), a Swipehold on W, A, S and D (2), and a second
    // Click on Q (3): one collision.
    const Object::Ptr doc = parseObject(twoItems());
    doc->getArray("keymaps")->add(doc->getArray("keymaps")->getObject(0));
    dir.write("doc.json", stringify(*doc));
    EditorSession session(dir.path("doc.json"), false, {});
    EditorApi api(session, kToken, kPort);
    const auto get = [&]() {
        return parseObject(api.handle(request("GET", "/api/snapshot", kToken, kPort)).body);
    };
    Shown shown;
    shown.take(get());
    struct Step {
        const char* name;
        std::string ops;
        bool delta;       // whether the answer may carry only what changed
        long since = -1;  // the version named, when not the one shown
    };
    const Step steps[] = {
        {"a first edit: no answer to tell it from", R"([{"op":"move","item":1,"dx":0.01,"dy":0}])",
         false},
        {"a move", R"([{"op":"move","item":1,"dx":0.01,"dy":0.02}])", true},
        {"a description, drawn as a label",
         R"([{"op":"set","item":2,"member":"icon.description","value":"jump"}])", true},
        {"another collision of as many items: the report changes, the legend not",
         R"([{"op":"set","item":3,"member":"key","value":{"device":"keyboard","text":"W","scan_code":17,"virtual_key":87}}])",
         true},
        {"an item added: the items are others", R"([{"op":"add","type":"Click"}])", false},
        {"undone", R"([{"op":"undo"}])", false},
        {"a move, seen since an older version", R"([{"op":"move","item":2,"dx":0.1,"dy":0}])",
         false, 1},
        {"a move after the whole answer", R"([{"op":"move","item":2,"dx":0.05,"dy":0}])", true},
        {"nothing done", "[]", true},
    };
    int seq = 0;
    for (const Step& step : steps) {
        const long since = step.since >= 0 ? step.since : shown.version;
        const std::string body = R"({"client":"t","seq":)" + std::to_string(++seq) +
                                 R"(,"since":)" + std::to_string(since) + R"(,"ops":)" + step.ops +
                                 "}";
        const HttpResponse answer = api.handle(request("POST", "/api/edit", kToken, kPort, body));
        ASSERT_EQ(answer.status, 200) << step.name << ": " << answer.body;
        const Object::Ptr data = parseObject(answer.body);
        EXPECT_EQ(data->has("since"), step.delta) << step.name;
        shown.take(data);
        const Object::Ptr whole = get();
        EXPECT_EQ(shown.version, whole->getValue<long>("version")) << step.name;
        EXPECT_EQ(shown.svg, whole->getValue<std::string>("svg")) << step.name;
        EXPECT_EQ(compact(shown.document), compact(whole->get("document"))) << step.name;
        EXPECT_EQ(compact(shown.captions), compact(whole->get("captions"))) << step.name;
        EXPECT_EQ(shown.report, compact(whole->get("report"))) << step.name;
    }
}

}  // namespace
