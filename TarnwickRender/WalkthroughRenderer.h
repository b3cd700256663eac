// Draws the pages of a walkthrough as pictures to be laid over the episode's.
#pragma once

#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/Walkthroughs/WalkthroughLayout.h"

#include <cstddef>

namespace tarnwick {

// Of one size of frame. Never changes, so any number of threads may draw with one.
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

    // The pages of one stage, drawn one at a time. Lives no longer than the renderer and the stage.
    class Pages {
      public:
        // Page `page`: heading, code and caption over nothing. The fourth byte of each pixel is its
        // alpha, by which the colours have been multiplied; it is 0 all over the episode's picture.
        Picture overlay(std::size_t page) const;

      private:
        friend class WalkthroughRenderer;
        Pages(const WalkthroughLayout& layout, const WalkthroughStage& stage,
              std::size_t stageCount);

        const WalkthroughLayout& layout_;
        const WalkthroughStage& stage_;
        std::size_t stageCount_;
        double points_; // of the code, in pixels
        double top_;    // of what is drawn
    };

    // Of one of `stageCount` stages. All its pages show their code in one size, as large as their
    // lines allow: rather one is wrapped than that people cannot read it well, and rather it is
    // small than cut with an ellipsis.
    Pages pages(const WalkthroughStage& stage, std::size_t stageCount) const {
        return {layout_, stage, stageCount};
    }

    // The frame as a movie shows it: `picture`, which has the size of its place, under the overlay.
    Picture frame(const Picture& picture, const Picture& overlay) const;

  private:
    WalkthroughLayout layout_;
};

} // namespace tarnwick
