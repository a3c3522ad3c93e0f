#pragma once
// The states that an edited value went through, and which of them is shown. States never change once recorded
// and are shared between copies of a history.

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace karto {

template<typename State>
class EditHistory {
public:
    explicit EditHistory(State initial) { append(std::move(initial)); }

    // Oldest first, never empty.
    [[nodiscard]] const std::vector<std::shared_ptr<const State>>& states() const { return states_; }

    [[nodiscard]] std::size_t currentIndex() const { return currentIndex_; }

    [[nodiscard]] bool canUndo() const { return currentIndex_ > 0; }

    [[nodiscard]] bool canRedo() const { return currentIndex_ + 1 < states_.size(); }

    // Makes `state` the current one and drops what could be redone; a state equal to the current one changes
    // nothing.
    void record(const State& state) {
        if (state == *states_[currentIndex_]) {
            return;
        }
        states_.resize(currentIndex_ + 1);
        append(state);
    }

    // The state before or after, which becomes the current one; absent when there is none.
    std::optional<State> undo() {
        if (!canUndo()) {
            return std::nullopt;
        }
        return *states_[--currentIndex_];
    }

    std::optional<State> redo() {
        if (!canRedo()) {
            return std::nullopt;
        }
        return *states_[++currentIndex_];
    }

private:
    void append(State state) {
        states_.push_back(std::make_shared<const State>(std::move(state)));
        currentIndex_ = states_.size() - 1;
    }

    std::vector<std::shared_ptr<const State>> states_;
    std::size_t currentIndex_ = 0;
};

} // namespace karto
