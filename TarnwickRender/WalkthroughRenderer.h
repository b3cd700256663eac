// Draws the pages of a walkthrough as pictures to be laid over the episode's.
#pragma once

#include "TarnwickCore/Walkthrough.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/WalkthroughLayout.h"

#include <cstddef>

namespace tarnwick {

// Of one size of frame. Has no other state, so any number of threads may draw with one.
class WalkthroughRenderer {
  public:
    // The sides lie within WalkthroughLayout's limits, in pixels.
    WalkthroughRenderer(std::int64_t width, std::int64_t height);

    // The most lines of a page: what Walkthrough::stages wants to know.
    std::int64_t capacity() const { return layout_.capacity(); }
    // Where the episode's picture shows.
    const WalkthroughLayout::Area& picture() const { return layout_.picture; }
    // Of the rest of the frame.
    static constexpr gpu::ClearColor background{0.051, 0.055, 0.071, 1};

    // Page `page` of the stage, of `stageCount` in all: heading, code and caption over nothing. The
    // fourth byte of each pixel is its alpha, by which the colours have been multiplied; it is 0
    // all over the episode's picture. All pages of a stage show their code in one size, as large as
    // their longest lines allow; lines that are too long for the smallest readable size are wrapped
    // where the page has room for it, else cut with an ellipsis.
    Picture overlay(const WalkthroughStage& stage, std::size_t page, std::size_t stageCount) const;

    // The frame as a film shows it: `picture`, which has the size of its place, under the overlay.
    Picture frame(const Picture& picture, const Picture& overlay) const;

  private:
    WalkthroughLayout layout_;
};

} // namespace tarnwick
