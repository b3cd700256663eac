// The dragging of selected keys, from the keys as they were when it began.
#pragma once

#include "player/Keys/KeyEdits.h"
#include "player/Keys/Snapping.h"

#include <optional>
#include <utility>
#include <vector>

namespace tarnwick::player {

enum class Snap : std::uint8_t { on, off };

// Each function gives the tracks that the document gets; none depends on an earlier call.
class KeyDrag {
  public:
    struct Result {
        KeyEdit edit;
        double seconds = 0;            // moved by
        std::optional<double> guide{}; // the time that was snapped to
    };

    // `others` are times to snap to, besides the keys that are not selected.
    KeyDrag(KeyframeTracks tracks, std::vector<ParamDecl> params, KeySelection selection,
            std::vector<double> others);

    // `grabbed` is the time of the key under the pointer, which snaps; `reach` is in seconds.
    Result moved(double grabbed, const KeyMove& move, Originals originals, Snap snap,
                 double reach) const;
    // Brings one end of the selection to `time`; the other is `fixed`. The selection stays at
    // least a frame long.
    Result scaled(double end, double fixed, double time, Snap snap, double reach) const;

    const KeySelection& selection() const { return selection_; }

  private:
    Snapped placed(double time, Snap snap, double reach) const;

    KeyframeTracks tracks_;
    std::vector<ParamDecl> params_;
    KeySelection selection_;
    SnapTargets targets_;
};

} // namespace tarnwick::player
