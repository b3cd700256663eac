// The state that the drawing thread draws from, published as one record.
#pragma once

#include "TarnwickBase/FrameTimes.h"
#include "TarnwickBase/PixelSize.h"
#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Performance/Performance.h"
#include "TarnwickCore/Performance/Transport.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickRender/Channels/PerformedSources.h"
#include "TarnwickRender/ShaderProgram.h"
#include "player/Drawing/LiveChannels.h"
#include "player/Drawing/LiveLevels.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::player {

// All sets of inputs of a performance that is replayed, opened in a way that never waits long.
using ReplayedInputs = std::vector<PerformedSource>;

// Constant once it is published. Shared between the thread that publishes it and the drawing
// thread.
struct LiveRecord {
    std::shared_ptr<gpu::Device> device;          // null: nothing is drawn
    std::shared_ptr<const ShaderProgram> program; // of `device`; null: nothing is drawn
    std::uint64_t document = 0;                   // its number
    std::uint64_t revision = 0;                   // of the text that the program is of
    Transport transport;
    std::shared_ptr<const Settings> settings;       // never null with a program
    std::optional<std::array<float, 2>> mouse{};    // [0, 1] from the lower left of the picture
    std::shared_ptr<const LiveChannels> channels{}; // null: all are black
    PixelSize size{};                               // pixels of the picture at full size
    // Host seconds at which compiling the newest text begins, or began; absent: it is compiled.
    std::optional<double> compilesAt{};
    std::optional<int> divisor{};               // of both sides; absent: chosen by itself
    std::shared_ptr<const LiveLevels> levels{}; // of the sound that the program reacts to
    // They are of the program's own sound. A pause, and a player without levels, compute them with
    // the frame.
    bool hearsOwnSound = true;
    double longestFrame = FrameTimes::defaultLongestFrame; // FrameTimes::setLongestFrame
    // Another number than before: the state that is kept between frames is computed again.
    std::uint64_t restart = 0;
    // A performance that is drawn instead of the settings and the mouse, fitted to the program's
    // parameters; null: none. `transport` is its clock then, in seconds of the performance.
    std::shared_ptr<const Performance> replay{};
    std::shared_ptr<const ReplayedInputs> replayedInputs{}; // never null with `replay`
};

// The state of the drawing thread after a frame, or instead of one.
struct LiveNews {
    std::uint64_t document = 0; // whose picture is shown; 0: none
    std::uint64_t revision = 0; // of the program that is shown; 0: none
    double time = 0;            // seconds of the episode, of the frame shown
    PixelSize picture{};        // pixels drawn
    int divisor = 1;
    double frameSeconds = 0;    // from encoding to the end on the GPU, of the last frame
    bool isInFrame = false;     // the next frame is not done; frameSeconds is its time if longer
    double framesPerSecond = 0; // shown, over the last second
    double firstDraw = 0;       // seconds of the first frame of the program that is shown
    struct Warming {
        std::int64_t done = 0, total = 0; // steps or frames; equal: waits for a file of a replay
    };
    std::optional<Warming> warming{}; // what the next frame needs is computed
    std::string failure;              // one sentence if nothing can be drawn; empty otherwise
    bool isTooSlow = false;           // a frame takes too long; drawing waits for a new program
    bool isDeviceLost = false;
    bool hitLoopBudget = false; // a loop of the episode was ended
};

} // namespace tarnwick::player
