// Sheets of stills, as several commands draw them.
#pragma once

#include "TarnwickPlatform/Text/ContactSheet.h"
#include "programs/CommandLine/Arguments.h"
#include "programs/CommandLine/Output.h"
#include "programs/Episode/EpisodePicture.h"

#include <cstddef>
#include <span>

namespace tarnwick {

// What --columns and --size say of a sheet of one still a label, with room for the longest label
// below each. Throws CommandError where they say nothing usable or the sheet would be too large.
SheetLayout sheetLayoutOf(const Arguments& arguments, std::span<const std::string> labels);

// The size to draw a still at before it is halved: twice as large, so that fine lines are smooth.
PixelSize drawnSize(const SheetLayout& layout);

// Throws CommandError and PictureError.
void writeSheet(std::span<const LabelledPicture> stills, const SheetLayout& layout,
                const Output& out);

// The help of the two options.
constexpr Option columnsOption{"--columns", "N", "stills side by side; default: 3"};
constexpr Option stillSizeOption{"--size", "WxH", "of each still, in pixels; default: 400x225"};

} // namespace tarnwick
