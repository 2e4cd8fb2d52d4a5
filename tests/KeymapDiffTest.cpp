// What `diff` tells a reviewer: for each kind of edit, exactly the changes a
// person would name, and nothing for edits that change no meaning; and what
// the drawn diff marks on the picture for them.

#include <gtest/gtest.h>

#include <functional>

#include "DiffPicture.h"
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

void moveRight(Object::Ptr item) {
    for (Object::Ptr point : {item->getObject("rel_work_position"),
                              item->getObject("icon")->getObject("rel_position")}) {
        point->set("rel_x", point->getValue<double>("rel_x") + 0.1);
    }
}

void bindToQ(Object::Ptr item) {
    item->set("key",
              parseObject(R"({"device":"keyboard","scan_code":16,"virtual_key":81,"text":"Q"})"));
}

// Each item group of the drawn diff that carries a change: its change
// classes, its index attribute, then the marks drawn in it
// ("moved data-item-index=2 diff-from diff-arrow").
std::vector<std::string> marksOf(const std::string& svg) {
    static const std::vector<std::string> kClasses = {"added",   "removed",   "moved",
                                                      "rebound", "reordered", "changed"};
    static const std::vector<std::string> kMarks = {"diff-added", "diff-changed", "diff-from",
                                                    "diff-arrow", "diff-caption"};
    std::vector<std::string> found;
    const std::string open = "<g class=\"item";
    for (std::size_t at = svg.find(open); at != std::string::npos;) {
        const std::size_t next = svg.find(open, at + 1);
        const std::string group = svg.substr(at, next == std::string::npos ? next : next - at);
        at = next;
        const std::string classes =
            " " + group.substr(open.size(), group.find('"', open.size()) - open.size()) + " ";
        std::string mark;
        for (const std::string& name : kClasses) {
            if (classes.find(" " + name + " ") != std::string::npos) {
                mark += name + " ";
            }
        }
        if (mark.empty()) {
            continue;
        }
        const std::size_t index = group.find("-index=\"");
        const std::size_t attribute = group.rfind(' ', index) + 1;
        const std::size_t value = index + 8;  // past -index="
        mark += group.substr(attribute, value - 1 - attribute) +
                group.substr(value, group.find('"', value) - value);
        for (const std::string& name : kMarks) {
            if (group.find("class=\"" + name + "\"") != std::string::npos) {
                mark += " " + name;
            }
        }
        found.push_back(mark);
    }
    return found;
}

TEST(KeymapDiff, NamesEachEditInTheKeymapsTermsAndDrawsIt) {
    struct Row {
        const char* what;
        std::string after;
        std::vector<std::string> changes;  // "kind new_index path"
        std::vector<std::string> marks;    // as marksOf gives them
    };
    const std::vector<Row> rows = {
        {"formatting only", edited([](Object::Ptr&) {}), {}, {}},
        {"defaults left out",
         edited([](Object::Ptr& root) {
             for (const char* member : {"transparent_ESC", "transparent_wheel", "is_joystick",
                                        "transparent_mouse_windows_raw_move_period"}) {
                 root->getObject("info")->remove(member);
             }
         }),
         {},
         {}},
        {"one move",
         edited([](Object::Ptr& root) { moveRight(itemAt(root, 2)); }),
         {"moved 2 keymaps[2].icon.rel_position"},
         {"moved data-item-index=2 diff-from diff-arrow"}},
        {"one rebind",
         edited([](Object::Ptr& root) { bindToQ(itemAt(root, 1)); }),
         {"rebound 1 keymaps[1]"},
         {"rebound data-item-index=1 diff-caption"}},
        {"moved and rebound at once",
         edited([](Object::Ptr& root) {
             moveRight(itemAt(root, 2));
             bindToQ(itemAt(root, 2));
         }),
         {"moved 2 keymaps[2].icon.rel_position", "rebound 2 keymaps[2]"},
         {"moved rebound data-item-index=2 diff-from diff-arrow diff-caption"}},
        {"reorder only",
         edited([](Object::Ptr& root) {
             Array::Ptr items = root->getArray("keymaps");
             const Poco::Dynamic::Var first = items->get(0);
             items->set(0, items->get(1));
             items->set(1, first);
         }),
         {"reordered 0 "},
         {"reordered data-item-index=0"}},
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
         {"added 3 "},
         {"added data-item-index=3 diff-added"}},
        {"a member changed",
         edited([](Object::Ptr& root) {
             itemAt(root, 0)->getObject("icon")->set("description", "run");
         }),
         {"changed 0 keymaps[0].icon.description"},
         {"changed data-item-index=0 diff-changed"}},
        {"a removal",
         edited([](Object::Ptr& root) { root->getArray("keymaps")->remove(7); }),
         {"removed -1 "},
         {"removed data-old-index=7"}},
        {"a setting of the document",
         edited([](Object::Ptr& root) { root->getObject("info")->set("visibility", false); }),
         {"changed -1 info.visibility"},
         {}},
    };
    const DocPtr before = loadText(readBytes(kShooter));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const DocPtr after = loadText(row.after);
        const std::vector<zunokeymap::KeymapChange> changes =
            zunokeymap::DiffKeymaps(*before, *after);
        std::vector<std::string> found;
        for (const zunokeymap::KeymapChange& change : changes) {
            found.push_back(std::string(zunokeymap::ChangeKindName(change.kind)) + " " +
                            std::to_string(change.newIndex) + " " + change.path);
        }
        EXPECT_EQ(found, row.changes);

        zunokeymap::render::RenderOptions options;
        options.overlay = zunokeymap::DiffOverlay(*before, *after, changes);
        const std::string svg =
            zunokeymap::render::RenderSvg(*after, zunokeymapmanager::CheckReport(), options);
        EXPECT_EQ(marksOf(svg), row.marks);
    }
}

}  // namespace
