// Undo and redo of a value.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick::player {

// Keeps the states of a value, each with the name of the change that led to it.
template <typename State> class History {
  public:
    static constexpr std::size_t longest = 500; // states; the oldest are dropped

    explicit History(State first) { states_.push_back({std::move(first), "", ""}); }

    const State& state() const { return states_[now_].state; }

    // Adds a state. `change` names it for people: "Change speed". A change with the same `gesture`
    // as the last one, not empty, replaces it, so that dragging a slider is one change.
    void push(State state, std::string change, std::string gesture = {}) {
        if (state == states_[now_].state)
            return;
        const bool continues = now_ > 0 && !gesture.empty() && states_[now_].gesture == gesture;
        states_.resize(now_ + 1);
        if (continues)
            states_[now_].state = std::move(state);
        else
            add({std::move(state), std::move(change), std::move(gesture)});
    }
    // The next push() adds a state, also with the same gesture.
    void endGesture() { states_[now_].gesture.clear(); }
    // Drops the state that the gesture made, if it goes on.
    void cancelGesture(const std::string& gesture) {
        if (now_ == 0 || gesture.empty() || states_[now_].gesture != gesture)
            return;
        states_.erase(states_.begin() + static_cast<std::ptrdiff_t>(now_), states_.end());
        --now_;
    }

    bool canUndo() const { return now_ > 0; }
    bool canRedo() const { return now_ + 1 < states_.size(); }
    // The names of the changes that undo() and redo() would take; empty without one.
    std::string undoName() const { return canUndo() ? states_[now_].change : std::string(); }
    std::string redoName() const { return canRedo() ? states_[now_ + 1].change : std::string(); }

    void undo() {
        if (canUndo())
            --now_;
        endGesture();
    }
    void redo() {
        if (canRedo())
            ++now_;
        endGesture();
    }

  private:
    struct Entry {
        State state;
        std::string change, gesture;
    };

    void add(Entry entry) {
        if (states_.size() == longest)
            states_.erase(states_.begin());
        states_.push_back(std::move(entry));
        now_ = states_.size() - 1;
    }

    std::vector<Entry> states_; // at least one
    std::size_t now_ = 0;       // index of the present state
};

} // namespace tarnwick::player
