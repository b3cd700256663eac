// Draws the pages of a walkthrough as overlays of the episode's picture.
#pragma once

#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/Walkthroughs/WalkthroughLayout.h"

#include <cstddef>

namespace tarnwick {

// For one size of frame. Constant: threads may share one.
class WalkthroughRenderer {
  public:
    // Pixels, each in [WalkthroughLayout::leastSide, WalkthroughLayout::greatestSide].
    WalkthroughRenderer(std::int64_t width, std::int64_t height);

    // Maximum of lines on a page, for Walkthrough::stages.
    std::int64_t capacity() const { return layout_.capacity(); }
    // The place of the episode's picture in the frame.
    const WalkthroughLayout::Area& picture() const { return layout_.picture; }
    // The colour of the rest of the frame.
    static constexpr gpu::ClearColor background{0.051, 0.055, 0.071, 1};

    // The pages of one stage. The renderer and the stage outlive it.
    class Pages {
      public:
        // Heading, code and caption of page `page`. The fourth byte of each pixel is alpha, the
        // colours are premultiplied; alpha is 0 over the episode's picture.
        Picture overlay(std::size_t page) const;

      private:
        friend class WalkthroughRenderer;
        Pages(const WalkthroughLayout& layout, const WalkthroughStage& stage,
              std::size_t stageCount);

        const WalkthroughLayout& layout_;
        const WalkthroughStage& stage_;
        std::size_t stageCount_;
        double points_; // of the code, in pixels
        double top_;    // of the text, in pixels
    };

    // The pages of one of `stageCount` stages. They show their code in one size, the largest
    // without wrapped lines. If that is too small to read well, long lines are wrapped; if they do
    // not fit then, the size is smaller; only after that lines are cut with an ellipsis.
    Pages pages(const WalkthroughStage& stage, std::size_t stageCount) const {
        return {layout_, stage, stageCount};
    }

    // The whole frame: `picture`, of the size of its place, under the overlay.
    Picture frame(const Picture& picture, const Picture& overlay) const;

  private:
    WalkthroughLayout layout_;
};

} // namespace tarnwick
