// Many host threads using the library at once while another thread keeps
// replacing the callbacks: every failed load still reaches a callback once.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
const std::string kGood = documentWith("");

std::atomic<int> firstCalls{0};
std::atomic<int> secondCalls{0};
void onFirst(const std::string&) {
    firstCalls.fetch_add(1);
}
void onSecond(const std::string&) {
    secondCalls.fetch_add(1);
}

TEST(Concurrency, LoadsSavesMacrosAndCaptionsWhileCallbacksChange) {
    constexpr int kThreads = 8;
    constexpr int kRounds = 60;
    const std::vector<std::string> editing = {
        "click 100,200", "", "sleep 50", "release_actions", "loop 3", "text \"hi\"", "bogus"};
    const km::Rect rect(0, 0, 1920, 1080);
    const auto grammar = km::MacroKeyEditingTextGrammarCheck(editing);
    const auto running = km::MacroKeyEditingTextChangeToRunningText(editing, rect);
    const auto back = km::MacroKeyRunningTextChangeToEditingText(running, rect);
    const std::string caption = km::CreateConfigKey("keyboard", 0x41, 30).text;
    DocPtr blank(km::LoadKeymapConfigAndInfo(kBlank, ""));
    const std::string saved = saveText(blank.get());

    KeymapManagerCallbacks first{&onFirst};
    KeymapManagerCallbacks second{&onSecond};
    firstCalls = 0;
    secondCalls = 0;
    km::SetCallbacks(&first);

    std::atomic<int> failedLoads{0};
    std::atomic<int> mismatches{0};
    std::atomic<bool> done{false};
    std::thread replacer([&] {
        for (bool flip = false; !done.load(); flip = !flip) {
            km::SetCallbacks(flip ? &first : &second);
            std::this_thread::yield();
        }
    });
    std::vector<std::thread> workers;
    for (int t = 0; t < kThreads; ++t) {
        workers.emplace_back([&, t] {
            TempFile file;
            for (int round = 0; round < kRounds; ++round) {
                switch ((t + round) % 4) {
                    case 0: {
                        DocPtr good = loadText(kGood);
                        DocPtr bad = loadText("{\"info\":", "bad-" + std::to_string(t));
                        DocPtr badPad = loadJoystickText("[1]", "bad-pad");
                        failedLoads += 2;
                        mismatches += good->info->background_color != "000000FF";
                        break;
                    }
                    case 1: {
                        DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
                        km::SaveKeymapConfigAndInfo(file.path(), doc.get());
                        DocPtr reread(km::LoadKeymapConfigAndInfo(file.path(), ""));
                        mismatches += saveText(reread.get()) != saved;
                        break;
                    }
                    case 2:
                        mismatches += km::MacroKeyEditingTextGrammarCheck(editing) != grammar;
                        mismatches +=
                            km::MacroKeyEditingTextChangeToRunningText(editing, rect) != running;
                        mismatches +=
                            km::MacroKeyRunningTextChangeToEditingText(running, rect) != back;
                        break;
                    default: {
                        km::ConfigKey key = km::CreateConfigKey("keyboard", 0x41, 30);
                        km::SetTextForConfigKey(&key);
                        mismatches += key.text != caption;
                        mismatches += km::ModifyKeyboardScanCodeIfNeeded(312) != 56;
                        break;
                    }
                }
            }
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    done = true;
    replacer.join();
    km::SetCallbacks(nullptr);

    EXPECT_EQ(mismatches.load(), 0);
    EXPECT_GT(failedLoads.load(), 0);
    EXPECT_EQ(firstCalls.load() + secondCalls.load(), failedLoads.load());
}

}  // namespace
