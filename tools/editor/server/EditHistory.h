//
// EditHistory.h
//
// Undo and redo over the documents an editing session held: each step keeps
// the whole document before it, so an undo restores exactly what the library
// accepted then. Steps of one gesture (a drag, a held arrow key) share a group
// and are undone together. The history is bounded in steps and in bytes; the
// oldest steps go first.
//

#ifndef ZUNO_KEYMAP_EDITOR_EDITHISTORY_H
#define ZUNO_KEYMAP_EDITOR_EDITHISTORY_H

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace zunokeymap {
namespace editor {

/// A document as the session holds it: its saved form and the session's
/// identifiers of its items, in document order.
struct HeldState {
    std::string text;
    std::vector<long> ids;
};

class EditHistory {
public:
    static constexpr std::size_t kMaxSteps = 1000;
    static constexpr std::size_t kMaxBytes = std::size_t{64} << 20;

    /// Records that the document was `before` until a change of `group` (a
    /// gesture's name, or empty for a change of its own). A change of the
    /// same group as the step before joins that step.
    void record(HeldState before, const std::string& group);

    /// Whether a change of `group` would join the last step, so that the
    /// state before it need not be recorded.
    bool joins(const std::string& group) const {
        return joinable_ && !group.empty() && !undo_.empty() && undo_.back().group == group;
    }

    bool canUndo() const { return !undo_.empty(); }
    bool canRedo() const { return !redo_.empty(); }

    /// Replaces `current` by the state before the last step; false when
    /// there is none.
    bool undo(HeldState& current);
    /// Replaces `current` by the state the last undo left; false when none.
    bool redo(HeldState& current);

private:
    struct Step {
        HeldState state;
        std::string group;
    };
    static std::size_t sizeOf(const Step& step);
    /// Moves the last step of `from` to `to`, swapping its state with `current`.
    bool step(std::deque<Step>& from, std::deque<Step>& to, HeldState& current);
    void trim();

    std::deque<Step> undo_;
    std::deque<Step> redo_;
    std::size_t bytes_ = 0;
    bool joinable_ = false;  ///< whether the last step may take more of its group
};

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_EDITHISTORY_H
