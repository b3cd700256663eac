// What the device makes of an export. It is made again after the device was lost, and the export
// goes on with the frame and the samples that were not done.
#pragma once

#include "TarnwickRender/ExportSegment.h"
#include "TarnwickRender/Movies/ExportTimeline.h"

#include <utility>

namespace tarnwick {

// Shared by the tasks of an export, which leave it one after the other.
struct ExportGround {
    ExportGround(ExportStage made, std::int64_t fps)
        : stage(std::move(made)), timeline(ExportTimeline::of(stage.segments, fps)) {}
    ExportGround(const ExportGround&) = delete;
    ExportGround& operator=(const ExportGround&) = delete;

    ExportStage stage;
    ExportTimeline timeline; // of the stage's segments
};

} // namespace tarnwick
