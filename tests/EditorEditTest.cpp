// Edits as the page sends them: each applied to the held document through
// the library, refused alone when it does not load or breaks a declared
// range, undone as one step per gesture, and never applied twice.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "ItemGeometry.h"
#include "tests/EditorTestSupport.h"

namespace {

using namespace editortest;
using Poco::JSON::Array;
using Poco::JSON::Object;
using testsupport::parseObject;

const std::string kToken = "0123456789abcdef0123456789abcdef";
const int kPort = 43118;

// A Click on Q (id 1), a Swipehold on its defaults (id 2), a Spell on E (id 3).
std::string threeItems() {
    Object::Ptr spell = parseObject(testsupport::freshItemText("Spell"));
    spell->set("key",
               parseObject(R"({"device":"keyboard","text":"E","scan_code":18,"virtual_key":69})"));
    const auto at = [](double x, double y) {
        Object::Ptr p = new Object();
        p->set("rel_x", x);
        p->set("rel_y", y);
        return p;
    };
    spell->getObject("icon")->set("rel_position", at(0.7, 0.8));
    spell->set("rel_work_position", at(0.7, 0.8));
    spell->getObject("spell_info")->set("rel_position", at(0.7, 0.8));
    const std::string two = twoItems();
    return two.substr(0, two.rfind(']')) + "," + testsupport::stringify(*spell) + "]}";
}

struct Editor {
    TempDir dir;
    std::unique_ptr<EditorSession> session;
    std::unique_ptr<EditorApi> api;
    int seq = 0;

    Editor() {
        dir.write("doc.json", threeItems());
        session.reset(new EditorSession(dir.path("doc.json"), false, {}));
        api.reset(new EditorApi(*session, kToken, kPort));
    }
    // Sends `ops` (a JSON array text) as the page does; the answer's object.
    Object::Ptr edit(const std::string& ops, int number = -1, const std::string& client = "t",
                     int status = 200) {
        const std::string body = R"({"client":")" + client + R"(","seq":)" +
                                 std::to_string(number < 0 ? ++seq : number) + R"(,"ops":)" + ops +
                                 "}";
        const HttpResponse answer = api->handle(request("POST", "/api/edit", kToken, kPort, body));
        EXPECT_EQ(answer.status, status) << answer.body;
        return parseObject(answer.body);
    }
    Object::Ptr item(const Object::Ptr& answer, int index) const {
        return answer->getObject("document")->getArray("keymaps")->getObject(index);
    }
};

double at(const Object::Ptr& item, const std::string& path, const char* axis) {
    Object::Ptr object = item;
    std::size_t start = 0;
    for (std::size_t dot = path.find('.'); dot != std::string::npos; dot = path.find('.', start)) {
        object = object->getObject(path.substr(start, dot - start));
        start = dot + 1;
    }
    return object->getObject(path.substr(start))->getValue<double>(axis);
}

std::vector<bool> oks(const Object::Ptr& answer) {
    std::vector<bool> out;
    const Array::Ptr results = answer->getArray("results");
    for (std::size_t i = 0; i < results->size(); ++i) {
        out.push_back(results->getObject(i)->getValue<bool>("ok"));
    }
    return out;
}

struct EditCase {
    const char* name;
    std::string ops;
    std::vector<bool> ok;
    std::function<void(const Editor&, const Object::Ptr&)> expect;
};

TEST(EditorEdit, OperationsApplyOrAreRefusedOneByOne) {
    // A Click on E at (0.2, 0.2), as another document holds it.
    const std::string clickOnE = [] {
        Object::Ptr click = parseObject(testsupport::freshItemText("Click"));
        click->set(
            "key",
            parseObject(R"({"device":"keyboard","text":"E","scan_code":18,"virtual_key":69})"));
        const std::string place = R"({"rel_x":0.2,"rel_y":0.2})";
        click->set("rel_work_position", parseObject(place));
        click->getObject("icon")->set("rel_position", parseObject(place));
        return testsupport::stringify(*click);
    }();
    const EditCase cases[] = {
        {"move takes marker, touch point and cast point along",
         R"([{"op":"move","item":3,"dx":-0.1,"dy":-0.2}])",
         {true},
         [](const Editor& e, const Object::Ptr& a) {
             const Object::Ptr spell = e.item(a, 2);
             for (const char* point :
                  {"icon.rel_position", "rel_work_position", "spell_info.rel_position"}) {
                 EXPECT_NEAR(at(spell, point, "rel_x"), 0.6, 1e-9) << point;
                 EXPECT_NEAR(at(spell, point, "rel_y"), 0.6, 1e-9) << point;
             }
             EXPECT_EQ(at(spell, "swipehold_info.rel_position", "rel_x"), 0) << "unset stays unset";
         }},
        {"a move stops at the screen's edge, keeping the shape",
         R"([{"op":"move","item":3,"dx":0.9,"dy":0}])",
         {true},
         [](const Editor& e, const Object::Ptr& a) {
             EXPECT_NEAR(at(e.item(a, 2), "icon.rel_position", "rel_x"), 1, 1e-9);
         }},
        {"a point moves alone",
         R"([{"op":"move","item":3,"member":"spell_info.rel_position","dx":0.05,"dy":0}])",
         {true},
         [](const Editor& e, const Object::Ptr& a) {
             EXPECT_NEAR(at(e.item(a, 2), "spell_info.rel_position", "rel_x"), 0.75, 1e-9);
             EXPECT_NEAR(at(e.item(a, 2), "icon.rel_position", "rel_x"), 0.7, 1e-9);
         }},
        {"an unset drag centre starts from the touch point",
         R"([{"op":"move","item":3,"member":"swipehold_info.rel_position","dx":0.1,"dy":0}])",
         {true},
         [](const Editor& e, const Object::Ptr& a) {
             EXPECT_NEAR(at(e.item(a, 2), "swipehold_info.rel_position", "rel_x"), 0.8, 1e-9);
         }},
        {"set, a value the load refuses, and one out of its declared form",
         R"([{"op":"set","item":1,"member":"icon.description","value":"jump"},
             {"op":"set","item":1,"member":"editor_icon_scale","value":"big"},
             {"op":"set","item":1,"member":"icon.background_color","value":"red"}])",
         {true, false, false},
         [](const Editor& e, const Object::Ptr& a) {
             EXPECT_EQ(e.item(a, 0)->getObject("icon")->getValue<std::string>("description"),
                       "jump");
             const Array::Ptr results = a->getArray("results");
             EXPECT_NE(results->getObject(2)->getValue<std::string>("error").find("not a colour"),
                       std::string::npos);
             EXPECT_EQ(results->getObject(2)->getValue<std::string>("path"),
                       "keymaps[0].icon.background_color");
         }},
        {"a negative button radius is out of its range",
         R"([{"op":"set","item":3,"member":"spell_info.rel_radius","value":-0.1},
             {"op":"set","item":3,"member":"spell_info.rel_radius","value":0.2}])",
         {false, true},
         [](const Editor& e, const Object::Ptr& a) {
             EXPECT_NEAR(e.item(a, 2)->getObject("spell_info")->getValue<double>("rel_radius"), 0.2,
                         1e-9);
         }},
        {"set and remove document settings",
         R"([{"op":"set","member":"info.transparent_wheel","value":true},
             {"op":"set","member":"keymaps","value":[]}])",
         {true, false},
         [](const Editor&, const Object::Ptr& a) {
             EXPECT_TRUE(
                 a->getObject("document")->getObject("info")->getValue<bool>("transparent_wheel"));
         }},
        {"add lands on a free spot with a drag radius, its taken keys unbound",
         R"([{"op":"add","type":"Swipehold"},{"op":"add","type":"Swipehold","at":{"rel_x":0.2,"rel_y":0.3}},
             {"op":"add","type":"Click"}])",
         {true, true, true},
         [](const Editor& e, const Object::Ptr& a) {
             const Object::Ptr first = e.item(a, 3);
             const Object::Ptr click = e.item(a, 5);
             EXPECT_GT(std::hypot(at(first, "icon.rel_position", "rel_x") -
                                      at(click, "icon.rel_position", "rel_x"),
                                  at(first, "icon.rel_position", "rel_y") -
                                      at(click, "icon.rel_position", "rel_y")),
                       0.05)
                 << "never on another item";
             EXPECT_GT(first->getValue<double>("rel_radius"), 0);
             const Object::Ptr placed = e.item(a, 4);
             EXPECT_NEAR(at(placed, "rel_work_position", "rel_x"), 0.2, 1e-9);
             const Object::Ptr second = a->getArray("results")->getObject(1);
             EXPECT_EQ(second->getArray("unbound")->size(), 4U) << "the first took its keys";
             EXPECT_EQ(second->getValue<long>("item"), 5);
         }},
        {"duplicate has a new id, sits beside, and leaves the key to bind",
         R"([{"op":"duplicate","item":1}])",
         {true},
         [](const Editor& e, const Object::Ptr& a) {
             EXPECT_EQ(a->getArray("ids")->getElement<long>(3), 4);
             EXPECT_EQ(e.item(a, 3)->getObject("key")->getValue<std::string>("device"), "");
         }},
        {"paste reads another document's item, moves it, and unbinds a key taken here",
         R"([{"op":"paste","value":)" + clickOnE + R"(,"dx":0.1,"dy":0.1},
             {"op":"paste","value":{"type":"Click"}},{"op":"paste","value":{"type":"Nothing"}},
             {"op":"paste"}])",
         {true, false, false, false},
         [](const Editor& e, const Object::Ptr& a) {
             const Object::Ptr made = e.item(a, 3);
             EXPECT_NEAR(at(made, "rel_work_position", "rel_x"), 0.3, 1e-9);
             EXPECT_EQ(made->getObject("key")->getValue<std::string>("device"), "");
             EXPECT_EQ(a->getArray("results")->getObject(0)->getArray("unbound")->size(), 1U);
         }},
        {"delete, then an edit of the deleted item is refused alone",
         R"([{"op":"delete","item":1},{"op":"set","item":1,"member":"icon.description","value":"x"},
             {"op":"reorder","item":3,"to":0},{"op":"fly"}])",
         {true, false, true, false},
         [](const Editor& e, const Object::Ptr& a) {
             EXPECT_EQ(a->getArray("ids")->getElement<long>(0), 3);
             EXPECT_EQ(e.item(a, 0)->getValue<std::string>("type"), "Spell");
         }},
    };
    for (const EditCase& c : cases) {
        SCOPED_TRACE(c.name);
        Editor e;
        const Object::Ptr answer = e.edit(c.ops);
        EXPECT_EQ(oks(answer), c.ok);
        c.expect(e, answer);
        EXPECT_EQ(e.dir.read("doc.json"), threeItems()) << "only a save writes the file";
    }
}

TEST(EditorEdit, AGestureIsOneUndoStepAndARetryIsNotAppliedAgain) {
    Editor e;
    const std::string start = e.session->documentText();
    for (int i = 0; i < 5; ++i) {
        e.edit(R"([{"op":"move","item":1,"dx":0.01,"dy":0,"group":"key-1"}])");
    }
    const Object::Ptr repeated =
        e.edit(R"([{"op":"move","item":1,"dx":0.01,"dy":0,"group":"key-1"}])", e.seq);
    EXPECT_NEAR(at(e.item(repeated, 0), "icon.rel_position", "rel_x"), 0.05, 1e-9)
        << "the same request number again is the same request";
    const Object::Ptr undone = e.edit(R"([{"op":"undo"}])");
    EXPECT_EQ(e.session->documentText(), start);
    EXPECT_TRUE(undone->getValue<bool>("redo"));
    EXPECT_FALSE(undone->getValue<bool>("undo"));
    e.edit(R"([{"op":"redo"}])");
    EXPECT_NEAR(at(e.item(e.edit("[]"), 0), "icon.rel_position", "rel_x"), 0.05, 1e-9);
    e.edit(R"([{"op":"undo"},{"op":"delete","item":2}])");
    EXPECT_FALSE(e.edit("[]")->getValue<bool>("redo")) << "a new edit ends what there was to redo";
    EXPECT_EQ(oks(e.edit(R"([{"op":"undo"},{"op":"undo"}])")), (std::vector<bool>{true, false}));

    // Adds in one request: each a step of its own, unless of one gesture.
    const std::string before = e.session->documentText();
    const Object::Ptr added = e.edit(R"([{"op":"add","type":"Click"},
        {"op":"add","type":"Tip","group":"paste"},{"op":"add","type":"Tip","group":"paste"}])");
    ASSERT_EQ(added->getArray("ids")->size(), 6U);
    EXPECT_EQ(added->getObject("document")->getArray("keymaps")->size(), 6U);
    EXPECT_EQ(e.edit(R"([{"op":"undo"}])")->getArray("ids")->size(), 4U);
    EXPECT_EQ(e.edit(R"([{"op":"undo"}])")->getArray("ids")->size(), 3U);
    EXPECT_EQ(e.session->documentText(), before);
}

// Each page's retry is recognised by its own last request, whatever other
// pages sent in between; an older request is not applied at all.
TEST(EditorEdit, RetriesAreRecognisedPerPage) {
    Editor e;
    const std::string move = R"([{"op":"move","item":1,"dx":0.01,"dy":0}])";
    const Object::Ptr first = e.edit(move, 1, "a");
    e.edit(move, 1, "b");
    const Object::Ptr retry = e.edit(move, 1, "a");
    EXPECT_NEAR(at(e.item(retry, 0), "icon.rel_position", "rel_x"), 0.02, 1e-9)
        << "a's retry after b's request is not applied again";
    EXPECT_EQ(oks(retry), oks(first)) << "it is answered with the first answer's results";
    e.edit(move, 2, "a");
    const Object::Ptr older = e.edit(move, 1, "a", 409);
    EXPECT_EQ(older->getValue<long>("seq"), 2);
    EXPECT_NEAR(at(e.item(e.edit("[]", 3, "a"), 0), "icon.rel_position", "rel_x"), 0.03, 1e-9);

    // The memory is bounded: a page not heard from while many others were
    // is forgotten, and its number starts afresh.
    for (std::size_t i = 0; i < EditorSession::kRememberedClients; ++i) {
        e.edit("[]", 1, "other" + std::to_string(i));
    }
    EXPECT_NEAR(at(e.item(e.edit(move, 1, "a"), 0), "icon.rel_position", "rel_x"), 0.04, 1e-9);
}

// The item list and the panel write keys as the picture does.
TEST(EditorEdit, CaptionsAreThePicturesCaptions) {
    Editor e;
    const Object::Ptr answer = e.edit(R"([{"op":"set","item":1,"member":"second_key",
        "value":{"device":"keyboard","text":"Ctrl","scan_code":29,"virtual_key":17}},
        {"op":"set","item":3,"member":"key",
        "value":{"device":"mouse","text":"left_mouse","scan_code":1,"virtual_key":1}}])");
    ASSERT_EQ(oks(answer), (std::vector<bool>{true, true}));
    const Array::Ptr captions = answer->getArray("captions");
    ASSERT_EQ(captions->size(), 3U);
    EXPECT_EQ(captions->getObject(0)->getValue<std::string>("marker"), "Ctrl+Q");
    EXPECT_EQ(captions->getObject(0)->getObject("keys")->getValue<std::string>("key"), "Ctrl+Q");
    EXPECT_EQ(captions->getObject(0)->getObject("keys")->getValue<std::string>("second_key"),
              "Ctrl");
    EXPECT_EQ(captions->getObject(2)->getValue<std::string>("marker"), "LMB");
    EXPECT_NE(answer->getValue<std::string>("svg").find("Ctrl+Q"), std::string::npos);
}

TEST(EditorEdit, KeysLightTheItemsTheLibraryMatches) {
    Editor e;
    e.edit(R"([{"op":"set","item":1,"member":"second_key",
                "value":{"device":"keyboard","text":"Ctrl","scan_code":29,"virtual_key":17}}])");
    struct Case {
        const char* keys;
        std::vector<int> lit;
    } const cases[] = {
        {R"([{"device":"keyboard","scan_code":16,"virtual_key":81},{"device":"keyboard","scan_code":29,"virtual_key":17}])",
         {0}},
        {R"([{"device":"keyboard","scan_code":16,"virtual_key":81}])", {}},
        {R"([{"device":"keyboard","scan_code":17,"virtual_key":87}])", {1}},
        {R"([{"device":"keyboard","scan_code":18,"virtual_key":69}])", {2}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.keys);
        const HttpResponse answer = e.api->handle(request(
            "POST", "/api/trigger", kToken, kPort, std::string(R"({"keys":)") + c.keys + "}"));
        ASSERT_EQ(answer.status, 200) << answer.body;
        const Array::Ptr items = parseObject(answer.body)->getArray("items");
        std::vector<int> lit;
        for (std::size_t i = 0; i < items->size(); ++i) {
            lit.push_back(items->getObject(i)->getValue<int>("index"));
        }
        EXPECT_EQ(lit, c.lit);
    }
}

TEST(EditorEdit, ShapesNameEveryTypesHandlesAndKeys) {
    const Object::Ptr shapes = zunokeymap::editor::ShapesJson();
    for (const std::string_view name : km::kDocumentItemTypeNames) {
        const std::string type(name);
        SCOPED_TRACE(type);
        EXPECT_GE(shapes->getObject("handles")->getArray(type)->size(), 2U);
        EXPECT_GE(shapes->getObject("keys")->getArray(type)->size(), 1U);
        EXPECT_TRUE(shapes->getObject("colours")->has(type));
        EXPECT_TRUE(shapes->getObject("markers")->has(type));
    }
    EXPECT_EQ(shapes->getObject("kinds")->getValue<std::string>("LeftStickWalk"), "gamepad");
}

}  // namespace
