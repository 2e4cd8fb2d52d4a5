//
// KeymapCheckTest.cpp
//
// The document check: each mistake authors make by hand is found, with its
// path, in one run; collisions come out as a plain walk over all pairs finds
// them.
//

#include <functional>
#include <random>

#include <gtest/gtest.h>

#include <sstream>

#include <map>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;
using Poco::JSON::Object;

const std::string kQ = R"({"device":"keyboard","text":"Q","scan_code":16,"virtual_key":81})";

// A fresh item of `type` on Q, placed mid-screen, changed by `edit`.
std::string placed(const std::string& type, const std::function<void(Object&)>& edit = {}) {
    Object::Ptr item = parseObject(freshItemText(type));
    if (item->has("key") && type != "Swipehold") {
        item->set("key", parseObject(kQ));
    }
    item->set("rel_work_position", parseObject(R"({"rel_x":0.5,"rel_y":0.5})"));
    if (edit) {
        edit(*item);
    }
    return stringify(*item);
}

Object::Ptr at(Object& item, const std::string& member) {
    return item.getObject(member);
}

struct Mistake {
    const char* name;
    std::string document;
    bool joystick;
    km::FindingKind kind;
    km::FindingSeverity severity;
    std::string path;
    std::string suggestion;
};

using K = km::FindingKind;
constexpr km::FindingSeverity kError = km::FindingSeverity::Error;
constexpr km::FindingSeverity kWarning = km::FindingSeverity::Warning;

TEST(KeymapCheck, FindsEachHandWrittenMistakeWithItsPath) {
    const std::string click = placed("Click");
    const std::vector<Mistake> mistakes = {
        {"type in the wrong case",
         documentWith(click + "," +
                      placed("Swipehold", [](Object& i) { i.set("type", "SwipeHold"); })),
         false, K::UnknownType, kError, "keymaps[1].type", "Swipehold"},
        {"device name in the wrong case",
         documentWith(placed("Click", [](Object& i) { at(i, "key")->set("device", "Keyboard"); })),
         false, K::Schema, kWarning, "keymaps[0].key.device", "keyboard"},
        {"text of another key",
         documentWith(placed("Tip", [](Object& i) { at(i, "key")->set("text", "E"); })), false,
         K::KeyText, kWarning, "keymaps[0].key.text", "Q"},
        {"pixels for a fraction",
         documentWith(
             placed("Click", [](Object& i) { at(i, "rel_work_position")->set("rel_x", 860); })),
         false, K::Schema, kWarning, "keymaps[0].rel_work_position.rel_x", ""},
        {"position left at (0, 0)",
         documentWith(placed("Click",
                             [](Object& i) {
                                 at(i, "rel_work_position")->set("rel_x", 0.0);
                                 at(i, "rel_work_position")->set("rel_y", 0.0);
                             })),
         false, K::UnsetPosition, kWarning, "keymaps[0].rel_work_position", ""},
        {"policy name misspelt",
         documentWith(placed(
             "Spell",
             [](Object& i) {
                 at(i, "spell_option")->set("spell_trigger_policy", "Spell_Trigger_On_Press");
             })),
         false, K::Schema, kWarning, "keymaps[0].spell_option.spell_trigger_policy",
         "Spell_Trigger_On_Press_Key"},
        {"colour with a letter past F",
         documentWith(placed(
             "Click", [](Object& i) { at(i, "icon")->set("background_color", "0000GG66"); })),
         false, K::Schema, kWarning, "keymaps[0].icon.background_color", ""},
        {"member misspelt",
         documentWith(placed("Wheel", [](Object& i) { i.set("sensitivty", 5); })), false, K::Schema,
         kWarning, "keymaps[0].sensitivty", "sensitivity"},
        {"keyboard keymap checked as a gamepad document", documentWith(click), true,
         K::JoystickMismatch, kWarning, "info.is_joystick", "true"},
        {"drag radius of 0", documentWith(placed("Swipehold")), false, K::ZeroRadius, kWarning,
         "keymaps[0].rel_radius", ""},
        {"second item on the same key", documentWith(click + "," + placed("Macro")), false,
         K::KeyCollision, kWarning, "keymaps[0]", ""},
        {"a type written twice, the last one winning",
         documentWith("{\"type\": \"Macro\", " + click.substr(click.find('{') + 1)), false,
         K::DuplicateMember, kWarning, "keymaps[0].type", ""},
        {"a byte-order mark", "\xEF\xBB\xBF" + documentWith(click), false, K::LoadFailed, kError,
         "", ""},
        {"a macro tapping beyond the macro screen",
         documentWith(placed("Macro",
                             [](Object& i) {
                                 Poco::JSON::Array::Ptr lines = new Poco::JSON::Array();
                                 lines->add("click 960,540");
                                 lines->add("click 10,10 1920,540");
                                 i.set("release_actions", lines);
                             })),
         false, K::OffScreenPoint, kWarning, "keymaps[0].release_actions[1]", ""},
    };
    for (const Mistake& mistake : mistakes) {
        SCOPED_TRACE(mistake.name);
        const km::CheckReport report = km::CheckKeymapDocument(mistake.document, mistake.joystick);
        const auto found = std::find_if(
            report.findings.begin(), report.findings.end(),
            [&](const km::Finding& f) { return f.kind == mistake.kind && f.path == mistake.path; });
        ASSERT_NE(found, report.findings.end()) << mistake.document;
        EXPECT_EQ(found->severity, mistake.severity) << found->message;
        EXPECT_EQ(found->suggestion, mistake.suggestion) << found->message;
        EXPECT_EQ(report.findings.size(), 1U) << report.findings.back().message;
    }
}

// The members the schema names are looked up, not walked to, in an item of
// many members: what is wrong in them is found at every width, and each
// member of no meaning is one finding.
TEST(KeymapCheck, WideItemsHideNoMistakeInTheirOwnMembers) {
    struct Case {
        const char* name;
        std::string item;
        std::string path;
    };
    const std::vector<Case> cases = {
        {"device name in the wrong case",
         placed("Click", [](Object& i) { at(i, "key")->set("device", "Keyboard"); }),
         "keymaps[0].key.device"},
        {"policy name misspelt in a nested object",
         placed("Spell",
                [](Object& i) { at(i, "spell_option")->set("spell_trigger_policy", "On_Press"); }),
         "keymaps[0].spell_option.spell_trigger_policy"},
        {"a required member missing", placed("Click", [](Object& i) { i.remove("key"); }),
         "keymaps[0].key"},
    };
    for (const Case& c : cases) {
        for (const int width : {0, 40, 2000}) {
            SCOPED_TRACE(std::string(c.name) + ", " + std::to_string(width) + " extra members");
            std::string members;
            for (int k = 0; k < width; ++k) {
                members += "\"x" + std::to_string(k) + "\":" + std::to_string(k) + ",";
            }
            const km::CheckReport report =
                km::CheckKeymapDocument(documentWith("{" + members + c.item.substr(1)), false);
            const auto unknown =
                std::count_if(report.findings.begin(), report.findings.end(),
                              [](const km::Finding& f) { return f.message.find("unknown") == 0; });
            EXPECT_EQ(unknown, width);
            EXPECT_TRUE(std::any_of(report.findings.begin(), report.findings.end(),
                                    [&](const km::Finding& f) { return f.path == c.path; }));
        }
    }
}

// Members named again are found however wide their object, before and after
// it has too many names to compare one by one; each repeat is one finding,
// in text order, and the findings about the document's shape stay in item
// order.
TEST(KeymapCheck, FindsRepeatedMembersInObjectsOfAnyWidth) {
    struct Wide {
        const char* name;
        int members;                     // "m0", "m1", ... before the item's own
        std::vector<std::string> again;  // written again after them
    };
    const std::vector<Wide> cases = {
        {"a narrow object", 5, {"m3"}},
        {"the name that fills the list", 32, {"m31"}},
        {"early and late names of a wide one", 100, {"m3", "m99", "m3"}},
        {"a wide object without repeats", 100, {}},
    };
    const std::string click = placed("Click");
    for (const Wide& wide : cases) {
        SCOPED_TRACE(wide.name);
        std::string members;
        for (int k = 0; k < wide.members; ++k) {
            members += "\"m" + std::to_string(k) + "\":" + std::to_string(k) + ",";
        }
        for (const std::string& name : wide.again) {
            members += "\"" + name + "\":0,";
        }
        const std::string item = "{" + members + click.substr(1);
        const km::CheckReport report =
            km::CheckKeymapDocument(documentWith(item + "," + item), false);
        std::vector<std::string> repeated;
        int lastItem = -1;
        for (const km::Finding& finding : report.findings) {
            if (finding.kind == K::KeyCollision) {
                continue;  // the two items share Q: collisions come last
            }
            EXPECT_GE(finding.item_index, lastItem) << finding.message;
            lastItem = finding.item_index;
            if (finding.kind == K::DuplicateMember) {
                repeated.push_back(finding.path);
            }
        }
        std::vector<std::string> expected;
        for (const char* element : {"keymaps[0].", "keymaps[1]."}) {
            for (const std::string& name : wide.again) {
                expected.push_back(element + name);
            }
        }
        EXPECT_EQ(repeated, expected);
    }
}

// Line and column (one-based, in bytes) of the byte at `offset` of `text`.
std::pair<int, int> placeOf(const std::string& text, std::size_t offset) {
    const std::size_t lineStart = text.rfind('\n', offset - 1);
    const int line = 1 + static_cast<int>(std::count(text.begin(), text.begin() + offset, '\n'));
    return {line,
            static_cast<int>(offset - (lineStart == std::string::npos ? 0 : lineStart + 1)) + 1};
}

TEST(KeymapCheck, FindingsKnowTheirLineAndColumnInAnyLayout) {
    const std::string wheel = placed("Wheel", [](Object& i) {
        i.set("sensitivty", 5);
        at(i, "icon")->remove("description");
    });
    const Poco::JSON::Object::Ptr tree = parseObject(documentWith(wheel));
    std::ostringstream pretty;
    std::ostringstream minified;
    Poco::JSON::Stringifier::stringify(tree, pretty, 4);
    Poco::JSON::Stringifier::stringify(tree, minified, 0);
    std::string crlf;
    for (const char c : pretty.str()) {
        crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    // As a person might lay it out: tabs, each value on the line after its
    // name, two members on one line.
    std::string hand;
    bool inString = false;
    int commas = 0;
    for (const char c : minified.str()) {
        const bool escaped = !hand.empty() && hand.back() == '\\';
        hand += c;
        if (c == '"' && !escaped) {
            inString = !inString;
        } else if (!inString && c == ':') {
            hand += "\n\t\t ";
        } else if (!inString && c == ',') {
            hand += ++commas % 2 == 0 ? "\n\t" : "  ";
        }
    }
    for (const std::string& text : {pretty.str(), minified.str(), crlf, hand}) {
        SCOPED_TRACE(text.size());
        const km::CheckReport report = km::CheckKeymapDocument(text, false);
        // The unknown member: at its value. The missing one: at the icon.
        const std::size_t value = text.find_first_of("5", text.find("\"sensitivty\""));
        const std::size_t icon = text.find('{', text.find("\"icon\""));
        std::map<std::string, std::pair<int, int>> found;
        for (const km::Finding& f : report.findings) {
            found[f.path] = {f.line, f.column};
        }
        EXPECT_EQ(found["keymaps[0].sensitivty"], placeOf(text, value));
        EXPECT_EQ(found["keymaps[0].icon.description"], placeOf(text, icon));
    }
    const km::CheckReport broken = km::CheckKeymapDocument("{\n  \"info\" {}\n}", false);
    ASSERT_FALSE(broken.findings.empty());
    EXPECT_EQ(std::make_pair(broken.findings[0].line, broken.findings[0].column),
              std::make_pair(2, 10));
}

TEST(KeymapCheck, ReportsEveryMissingMemberInOneRun) {
    const std::string spell = placed("Spell", [](Object& i) {
        i.remove("editor_icon_scale");
        at(i, "icon")->remove("description");
        at(i, "swipehold_info")->remove("steps");
    });
    const km::CheckReport report = km::CheckKeymapDocument(documentWith(spell), false, "a.json");
    ASSERT_TRUE(report.diagnostic.failed);
    EXPECT_EQ(report.findings.front().kind, K::LoadFailed);
    std::vector<std::string> paths;
    for (const km::Finding& finding : report.findings) {
        EXPECT_EQ(finding.severity, kError) << finding.message;
        EXPECT_EQ(finding.item_type, "Spell");
        paths.push_back(finding.path);
    }
    EXPECT_EQ(paths, (std::vector<std::string>{"keymaps[0].editor_icon_scale",
                                               "keymaps[0].icon.description",
                                               "keymaps[0].swipehold_info.steps"}));
}

TEST(KeymapCheck, CleanDocumentsHaveNoFindings) {
    for (const char* type : {"Click", "Spell", "Eye", "Wheel", "Macro", "Fire", "Curve"}) {
        SCOPED_TRACE(type);
        const km::CheckReport report = km::CheckKeymapDocument(documentWith(placed(type)), false);
        EXPECT_TRUE(report.findings.empty()) << report.findings.front().message;
        EXPECT_EQ(report.items, 1U);
    }
}

// Many items on a few keys, combinations, gamepad names, pairs and direction
// keys: the indexed search must find exactly the pairs, in the order, that
// asking every item about every other item's triggers finds.
TEST(KeymapCheck, CollisionsMatchThePlainWalk) {
    std::mt19937 random(7);
    const std::vector<std::string> keys = {
        kQ, R"({"device":"keyboard","text":"Ctrl","scan_code":29,"virtual_key":17})",
        R"({"device":"mouse","text":"Q","scan_code":16,"virtual_key":1})",
        R"({"device":"joystick","text":"A","scan_code":1,"virtual_key":1})",
        R"({"device":"joystick","text":"B","scan_code":1,"virtual_key":1})"};
    const std::vector<std::string> types = {"Click", "Macro", "Eye", "Wheel", "Fire", "Staring"};
    auto pick = [&](const std::vector<std::string>& from) {
        return from[std::uniform_int_distribution<std::size_t>(0, from.size() - 1)(random)];
    };
    std::string items;
    for (int i = 0; i < 150; ++i) {
        items += (i == 0 ? "" : ",") + placed(pick(types), [&](Object& item) {
                     for (const char* member : {"key", "top_key", "left_key"}) {
                         if (item.has(member)) {
                             item.set(member, parseObject(pick(keys)));
                         }
                     }
                     if (item.has("positive_key")) {
                         at(item, "positive_key")->set("key", parseObject(pick(keys)));
                         at(item, "negative_key")->set("second_key", parseObject(pick(keys)));
                     } else if (random() % 3 == 0 && item.getValue<std::string>("type") != "Fire" &&
                                item.getValue<std::string>("type") != "Eye") {
                         item.set("second_key", parseObject(pick(keys)));
                     }
                 });
    }
    const std::string text = documentWith(items);
    DocPtr doc = loadText(text);
    std::vector<std::pair<int, int>> expected;
    const int count = static_cast<int>(doc->items.size());
    for (int i = 0; i < count; ++i) {
        for (const km::KeyTrigger& trigger : km::KeyTriggersOf(*doc->items[i])) {
            for (int j = 0; j < count; ++j) {
                const std::pair<int, int> pair{std::min(i, j), std::max(i, j)};
                if (j != i && km::TriggerFires(*doc->items[j], trigger) &&
                    std::find(expected.begin(), expected.end(), pair) == expected.end()) {
                    expected.push_back(pair);
                }
            }
        }
    }
    std::vector<km::Finding> found;
    for (const km::Finding& finding : km::CheckKeymapDocument(text, false).findings) {
        if (finding.kind == K::KeyCollision) {
            found.push_back(finding);
        }
    }
    EXPECT_GT(expected.size(), 100U);
    // Every pair the plain walk finds is named together by one finding...
    for (const auto& pair : expected) {
        const bool named = std::any_of(found.begin(), found.end(), [&](const km::Finding& f) {
            const auto has = [&f](int i) {
                return std::find(f.items.begin(), f.items.end(), i) != f.items.end();
            };
            return has(pair.first) && has(pair.second);
        });
        EXPECT_TRUE(named) << pair.first << " and " << pair.second;
    }
    // ...and a finding names only items whose key it is or that it fires.
    for (const km::Finding& f : found) {
        const auto owns = [&](int i, km::KeyTrigger* key) {
            for (const km::KeyTrigger& trigger : km::KeyTriggersOf(*doc->items[i])) {
                if (km::DescribeKeyTrigger(trigger) == f.keys) {
                    if (key != nullptr) {
                        *key = trigger;
                    }
                    return true;
                }
            }
            return false;
        };
        km::KeyTrigger key;
        ASSERT_TRUE(std::any_of(f.items.begin(), f.items.end(), [&](int i) {
            return owns(i, &key);
        })) << f.message;
        for (const int i : f.items) {
            EXPECT_TRUE(owns(i, nullptr) || km::TriggerFires(*doc->items[i], key))
                << i << " in " << f.message;
        }
    }
}

TEST(KeymapCheck, ItemsSharingOneKeyAreOneFinding) {
    // Quadratic pairs would be 50 million findings here; one names them all.
    std::string items;
    for (int i = 0; i < 10000; ++i) {
        items += (i == 0 ? "" : ",") + placed("Click", [](Object&) {});
    }
    std::vector<km::Finding> found;
    for (const km::Finding& finding :
         km::CheckKeymapDocument(documentWith(items), false).findings) {
        if (finding.kind == K::KeyCollision) {
            found.push_back(finding);
        }
    }
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].items.size(), 10000U);
    EXPECT_EQ(found[0].items.back(), 9999);
    EXPECT_NE(found[0].message.find("and 9996 more collide: all fire on"), std::string::npos)
        << found[0].message;
}

}  // namespace
