// The SwiftUI view that runs an exported episode. A part of SwiftUIExport, which callers use.
#pragma once

#include "TarnwickCore/Params.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct SwiftUIView {
    // The target of the view, where it finds the Metal function. In a package the view is public
    // and reads the library of the package; in any other target it reads the library of the
    // program.
    enum class Place : std::uint8_t { anyTarget, package };

    std::string title;    // one line
    std::string name;     // of the view, without "View" at its end
    std::string function; // name of the Metal function
    std::vector<ParamDecl> params;

    std::string text(Place place) const; // the Swift source
};

} // namespace tarnwick
