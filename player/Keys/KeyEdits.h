// Changes of the selected keys, each a function from tracks to tracks.
//
// A changed key that comes to the time of an unchanged key of its parameter replaces it. Of two
// changed keys at one time, the later one in the old order remains. Times are at least 0; values
// are clamped to the range of the parameter. Keys of parameters that are not declared stay.
#pragma once

#include "player/Keys/KeySelection.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace tarnwick::player {

struct KeyEdit {
    KeyframeTracks tracks;
    KeySelection selection; // the changed keys, at their new times

    bool operator==(const KeyEdit&) const = default;
};

struct KeyMove {
    double seconds = 0;
    double share = 0; // of the range of each parameter
    bool operator==(const KeyMove&) const = default;
};

enum class Originals : std::uint8_t { moved, kept }; // kept: the changed keys are copies

// The move with which no selected key comes before 0.
KeyMove clamped(KeyMove move, const KeySelection& selection);
KeyEdit moved(const KeyframeTracks& tracks, const KeySelection& selection,
              std::span<const ParamDecl> params, const KeyMove& move,
              Originals originals = Originals::moved);
// Multiplies the distances in time from `fixed`, in seconds. `factor` is at least 0.
KeyEdit scaled(const KeyframeTracks& tracks, const KeySelection& selection, double fixed,
               double factor);
// Moves the selection, so that its first key is at `time`.
KeyEdit startingAt(const KeyframeTracks& tracks, const KeySelection& selection,
                   std::span<const ParamDecl> params, double time);

KeyframeTracks withValue(KeyframeTracks tracks, const KeySelection& selection,
                         std::span<const ParamDecl> params, float value);
KeyframeTracks withEase(KeyframeTracks tracks, const KeySelection& selection,
                        KeyframeTracks::Ease ease);
KeyframeTracks without(KeyframeTracks tracks, const KeySelection& selection);

// Keys that were copied. Their times count from the first of them.
using CopiedKeys = KeyframeTracks;
CopiedKeys copied(const KeyframeTracks& tracks, const KeySelection& selection);
// Adds copied keys from `time` on, in seconds. Keys of one parameter are pasted onto `target`, if
// given; their values then keep their position within the range of the parameter. Keys of several
// parameters are pasted onto these; keys of parameters that are not declared are dropped.
KeyEdit pasted(const KeyframeTracks& tracks, const CopiedKeys& copied,
               std::span<const ParamDecl> params, double time, const ParamDecl* target = nullptr);

} // namespace tarnwick::player
