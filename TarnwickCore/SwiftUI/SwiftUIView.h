// The SwiftUI view that runs an exported episode. Part of SwiftUIExport, which callers use.
#pragma once

#include "TarnwickCore/Params.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct SwiftUIView {
    // Where the view stands, which is where it finds the Metal function: in a package it is public
    // and reads the package's own library; in any other target it reads the program's.
    enum class Place : std::uint8_t { anyTarget, package };

    std::string title;    // one line
    std::string name;     // the view's, without the "View" at its end
    std::string function; // the Metal function's
    std::vector<ParamDecl> params;

    std::string text(Place place) const;
};

} // namespace tarnwick
