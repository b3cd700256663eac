// Sheets of stills.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickPlatform/Text/ContactSheet.h"
#include "programs/CommandLine/Output.h"
#include "programs/Episode/EpisodePicture.h"

#include <cstddef>
#include <span>

namespace tarnwick {

// The layout of a sheet with one still per label, from --columns and --size, with space for the
// longest label below each still. Throws CommandError if the sheet is too large.
SheetLayout sheetLayoutOf(const Arguments& arguments, std::span<const std::string> labels);

// The size at which a still is drawn before it is halved: twice as large, for smooth fine lines.
PixelSize drawnSize(const SheetLayout& layout);

// Throws CommandError and PictureError.
void writeSheet(std::span<const LabelledPicture> stills, const SheetLayout& layout,
                const Output& out);

constexpr std::array<Option, 1> columnsOptions{{
    {.name = "--columns",
     .value = "N",
     .help = "number of stills side by side",
     .values = WholeNumber{.least = 1, .most = 100},
     .byDefault = "3"},
}};
constexpr Option stillSizeOption{.name = "--size",
                                 .value = "WxH",
                                 .help = "size of each still",
                                 .values = SizeInPixels{},
                                 .byDefault = "400x225"};

} // namespace tarnwick
