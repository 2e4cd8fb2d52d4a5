// What `diff` tells a reviewer: for each kind of edit, exactly the changes a
// person would name, and nothing for edits that change no meaning.

#include <gtest/gtest.h>

#include <functional>

#include "KeymapDiff.h"
#include "tests/TestSupport.h"

namespace {

using namespace testsupport;
using Poco::JSON::Array;
using Poco::JSON::Object;

const std::string kShooter = ZUNO_KM_EXAMPLES_DIR "/shooter.json";

std::string edited(const std::function<void(Object::Ptr&)>& edit) {
    Object::Ptr root = parseObject(readBytes(kShooter));
    edit(root);
    return stringify(*root);
}

Object::Ptr itemAt(const Object::Ptr& root, unsigned index) {
    return root->getArray("keymaps")->getObject(index);
}

TEST(KeymapDiff, NamesEachEditInTheKeymapsTerms) {
    struct Row {
        const char* what;
        std::string after;
        std::vector<std::string> changes;  // "kind new_index path"
    };
    const std::vector<Row> rows = {
        {"formatting only", edited([](Object::Ptr&) {}), {}},
        {"one move",
         edited([](Object::Ptr& root) {
             for (const char* member : {"rel_work_position"}) {
                 Object::Ptr point = itemAt(root, 2)->getObject(member);
                 point->set("rel_x", point->getValue<double>("rel_x") + 0.1);
             }
             Object::Ptr marker = itemAt(root, 2)->getObject("icon")->getObject("rel_position");
             marker->set("rel_x", marker->getValue<double>("rel_x") + 0.1);
         }),
         {"moved 2 keymaps[2].icon.rel_position"}},
        {"one rebind",
         edited([](Object::Ptr& root) {
             itemAt(root, 1)->set(
                 "key", parseObject(
                            R"({"device":"keyboard","scan_code":16,"virtual_key":81,"text":"Q"})"));
         }),
         {"rebound 1 keymaps[1]"}},
        {"reorder only",
         edited([](Object::Ptr& root) {
             Array::Ptr items = root->getArray("keymaps");
             const Poco::Dynamic::Var first = items->get(0);
             items->set(0, items->get(1));
             items->set(1, first);
         }),
         {"reordered 0 "}},
        {"an insertion in the middle",
         edited([](Object::Ptr& root) {
             Array::Ptr items = root->getArray("keymaps");
             Array::Ptr grown = new Array();
             for (unsigned i = 0; i < items->size(); ++i) {
                 if (i == 3) {
                     grown->add(parseObject(freshItemText("Tip")));
                 }
                 grown->add(items->get(i));
             }
             root->set("keymaps", grown);
         }),
         {"added 3 "}},
        {"a member changed",
         edited([](Object::Ptr& root) {
             itemAt(root, 0)->getObject("icon")->set("description", "run");
         }),
         {"changed 0 keymaps[0].icon.description"}},
        {"a removal",
         edited([](Object::Ptr& root) { root->getArray("keymaps")->remove(7); }),
         {"removed -1 "}},
        {"a setting of the document",
         edited([](Object::Ptr& root) { root->getObject("info")->set("visibility", false); }),
         {"changed -1 info.visibility"}},
    };
    const DocPtr before = loadText(readBytes(kShooter));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const DocPtr after = loadText(row.after);
        std::vector<std::string> found;
        for (const zunokeymap::KeymapChange& change : zunokeymap::DiffKeymaps(*before, *after)) {
            found.push_back(std::string(zunokeymap::ChangeKindName(change.kind)) + " " +
                            std::to_string(change.newIndex) + " " + change.path);
        }
        EXPECT_EQ(found, row.changes);
    }
}

}  // namespace
