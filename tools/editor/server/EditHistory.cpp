//
// EditHistory.cpp
//

#include "EditHistory.h"

#include <utility>

namespace zunokeymap {
namespace editor {

std::size_t EditHistory::sizeOf(const Step& step) {
    return step.state.text.size() + step.state.ids.size() * sizeof(long) + step.group.size();
}

void EditHistory::record(HeldState before, const std::string& group) {
    for (const Step& step : redo_) {
        bytes_ -= sizeOf(step);
    }
    redo_.clear();
    if (joins(group)) {
        return;  // the step already holds the state before the gesture
    }
    undo_.push_back({std::move(before), group});
    bytes_ += sizeOf(undo_.back());
    joinable_ = true;
    trim();
}

bool EditHistory::undo(HeldState& current) {
    return step(undo_, redo_, current);
}

bool EditHistory::redo(HeldState& current) {
    return step(redo_, undo_, current);
}

bool EditHistory::step(std::deque<Step>& from, std::deque<Step>& to, HeldState& current) {
    if (from.empty()) {
        return false;
    }
    Step step = std::move(from.back());
    from.pop_back();
    bytes_ -= sizeOf(step);
    std::swap(step.state, current);
    bytes_ += sizeOf(step);
    to.push_back(std::move(step));
    joinable_ = false;
    return true;
}

void EditHistory::trim() {
    while (undo_.size() > 1 && (undo_.size() > kMaxSteps || bytes_ > kMaxBytes)) {
        bytes_ -= sizeOf(undo_.front());
        undo_.pop_front();
    }
}

}  // namespace editor
}  // namespace zunokeymap
