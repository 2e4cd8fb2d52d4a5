// A move checks the moved item alone and keeps the other findings: the
// report must still be, finding for finding, the whole document's check.

#include <gtest/gtest.h>

#include <sstream>

#include "tests/EditorTestSupport.h"

namespace {

using namespace editortest;
namespace km = zunokeymapmanager;

std::string describe(const km::CheckReport& report) {
    std::ostringstream out;
    out << report.items << " items, failed " << report.diagnostic.failed << "\n";
    for (const km::Finding& f : report.findings) {
        out << km::FindingKindName(f.kind) << ' ' << km::FindingSeverityName(f.severity) << ' '
            << f.path << " #" << f.item_index << ' ' << f.item_type << " / " << f.other_index << ' '
            << f.other_type << " @" << f.line << ':' << f.column << " [" << f.script_line << ' '
            << f.script_text << "] " << f.keys << " {";
        for (int i : f.items) {
            out << i << ' ';
        }
        out << "} " << f.message << " | " << f.suggestion << "\n";
    }
    return out.str();
}

// Items that collide on Q, one of them at the screen's corner (an unset
// position), and the same again with a drag radius of 0.
std::string crowded() {
    Poco::JSON::Object::Ptr click =
        testsupport::parseObject(twoItems())->getArray("keymaps")->getObject(0);
    const std::string q = testsupport::stringify(*click);
    click->getObject("icon")->set("rel_position",
                                  testsupport::parseObject(R"({"rel_x":0,"rel_y":0})"));
    const std::string corner = testsupport::stringify(*click);
    const std::string two = twoItems();
    return two.substr(0, two.rfind(']')) + "," + q + "," + corner + "," +
           testsupport::freshItemText("Spell") + "," + q + "]}";
}

TEST(EditorMovedCheck, AMoveLeavesTheWholeChecksReport) {
    struct Case {
        std::string name;
        std::string text;
        bool joystick;
    };
    const auto example = [](const char* name) {
        std::string text;
        EXPECT_TRUE(ReadWholeFile(std::string(ZUNO_KM_EXAMPLES_DIR "/") + name + ".json", text));
        return text;
    };
    const Case cases[] = {
        {"crowded", crowded(), false},         {"shooter", example("shooter"), false},
        {"moba", example("moba"), false},      {"macros", example("macros"), false},
        {"gamepad", example("gamepad"), true},
    };
    // Small steps, off the screen's edge and back, and onto the corner.
    const double moves[][2] = {{0.01, 0.02}, {1.5, 0}, {-1.5, -0.3}, {-2, -2}};
    for (const Case& c : cases) {
        TempDir dir;
        dir.write("doc.json", c.text);
        // The saved form, so that the report holds no finding about what
        // the library does not keep.
        const std::string saved =
            EditorSession(dir.path("doc.json"), c.joystick, {}).documentText();
        dir.write("doc.json", saved);
        EditorSession session(dir.path("doc.json"), c.joystick, {});
        const std::vector<long> ids = session.snapshot(false).ids;
        ASSERT_FALSE(ids.empty()) << c.name;
        long long seq = 0;
        for (std::size_t i = 0; i < ids.size() && i < 12; ++i) {
            for (const auto& move : moves) {
                Poco::JSON::Array::Ptr ops = new Poco::JSON::Array();
                ops->add(testsupport::parseObject(
                    R"({"op":"move","item":)" + std::to_string(ids[i]) + R"(,"dx":)" +
                    std::to_string(move[0]) + R"(,"dy":)" + std::to_string(move[1]) + "}"));
                session.edit(ops, "t", ++seq);
                const km::CheckReport whole = km::CheckKeymapDocument(
                    session.documentText(), c.joystick, dir.path("doc.json"));
                ASSERT_EQ(describe(*session.check()), describe(whole))
                    << c.name << ": item " << i << " moved by " << move[0] << ", " << move[1];
            }
        }
    }
}

}  // namespace
