// The keys of the active episode as the keys panel edits them: selection, commands, gestures.
#pragma once

#include "player/App/Player.h"
#include "player/Keys/KeyDrag.h"
#include "player/Keys/KeySteps.h"
#include "player/KeysPanel/KeysView.h"
#include "player/Model/LoopEnds.h"

#include <QObject>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarnwick::player {

// Without an active episode there are no parameters and all commands do nothing. Each command is
// one change that can be undone.
class KeysEditor : public QObject {
    Q_OBJECT

  public:
    KeysEditor(Player& player, KeysView& view, QObject* parent);

    OpenDocument* document() const { return document_; } // null without one
    const std::vector<ParamDecl>& params() const;
    const KeyframeTracks& keys() const;
    const ParamDecl* param(std::string_view name) const; // null without one
    double now() const;                                  // the playhead, in seconds
    std::optional<LoopRange> loop() const;
    // The value without keys.
    float baseValue(const ParamDecl& param) const;
    // The value that the keys give at a time, within the range.
    float valueAt(const ParamDecl& param, double time) const;
    double length() const; // seconds from 0 to the end of the episode, its keys and the loop

    // The current parameter. Its row is 0 without parameters.
    std::size_t row() const { return row_; }
    const ParamDecl* currentParam() const;
    void setRow(std::size_t row);
    // Curves are shown of the current parameter, of those with selected keys, and of pinned ones.
    bool isPinned(const std::string& name) const { return pinned_.contains(name); }
    void togglePin();
    void togglePin(const std::string& name);
    std::vector<std::size_t> shownCurves() const; // rows; the current one is the last

    const KeySelection& selection() const { return selection_; }
    // The key that the keyboard moves from; absent: none.
    const std::optional<KeyPlace>& focus() const { return focus_; }
    void select(KeySelection selection);
    void select(KeySelection selection, std::optional<KeyPlace> focus);
    void setFocus(std::optional<KeyPlace> key);
    void selectAll();
    void selectNone();
    void selectParam(); // the keys of the current parameter
    void selectTime();  // the keys at the time of the focused key, else at the playhead
    void toggleFocused();
    // A step along the row, or to another row; the new key is selected, or added.
    enum class Extend : std::uint8_t { no, yes };
    void stepKey(Direction direction, Extend extend);
    void stepRow(int rows, Extend extend);
    void goToEnd(Direction direction, Extend extend);

    void addKey(); // at the playhead, for the current parameter
    void addKeysForAll();
    void addKey(const ParamDecl& param, double time, float value);
    void removeSelected();
    void cut();
    void copy() const;
    void paste();
    void setEase(KeyframeTracks::Ease ease);
    // The first key of the selection comes to the time; the length is scaled from there.
    void setTime(double seconds);
    void setLengthOfSelection(double seconds);
    void setValue(float value);
    // Keys that are passed on the way come back with the next step.
    void nudge(const KeyMove& move);
    void undo();
    void redo();

    // A gesture is one change. Each preview replaces the one before.
    KeyDrag beginDrag();
    void preview(KeyDrag::Result result, const char* change);
    void endDrag();
    void cancelDrag(KeySelection selection); // as it was before
    bool isDragging() const { return isDragging_; }
    const std::optional<double>& guide() const { return guide_; } // seconds; while snapped

    void seek(double time); // to a frame if the view snaps
    // Snapped: to a key or the playhead within `reach` seconds, else to a frame.
    void setLoopEnd(LoopEnd which, double time, Snap snap, double reach);
    void jump(Direction direction); // to the next key of any parameter
    // The next change is one of its own.
    void endGesture();

  signals:
    void changed();      // keys, selection, rows
    void replaced();     // another document
    void entryWanted();  // of exact numbers
    void focusChanged(); // another focused key

  private:
    void follow();
    void takeChange();
    double placed(double time) const;
    void apply(KeyEdit edit, const std::string& change, const std::string& gesture = {});
    void change(KeyframeTracks tracks, const std::string& change, const std::string& gesture = {});
    void moveTo(std::optional<KeyPlace> key, Extend extend);

    Player& player_;
    KeysView& view_;
    OpenDocument* document_ = nullptr;
    std::size_t row_ = 0;
    std::set<std::string, std::less<>> pinned_; // names
    KeySelection selection_;
    std::optional<KeyPlace> focus_;
    bool isDragging_ = false;
    std::optional<double> guide_;
    std::optional<KeyPlace> draggedFocus_; // where the focused key was
    // The steps so far, and the keys before them.
    struct Nudge {
        KeyframeTracks before;
        KeySelection selection;
        KeyMove total;
        KeyEdit result;
    };
    std::optional<Nudge> nudge_;
};

} // namespace tarnwick::player
