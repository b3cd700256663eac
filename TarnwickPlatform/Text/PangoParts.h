// Owners of Pango's and Cairo's objects, for this folder's .cpp files.
#pragma once

#include <pango/pangocairo.h>

#include <cstddef>
#include <memory>
#include <string_view>

namespace tarnwick {

template <auto release> struct Release {
    template <class Object> void operator()(Object* object) const { release(object); }
};

using Surface = std::unique_ptr<cairo_surface_t, Release<cairo_surface_destroy>>;
using CairoCanvas = std::unique_ptr<cairo_t, Release<cairo_destroy>>;
using Layout = std::unique_ptr<PangoLayout, Release<g_object_unref>>;
using Font = std::unique_ptr<PangoFontDescription, Release<pango_font_description_free>>;
using ValidText = std::unique_ptr<char, Release<g_free>>;

// The maximum bytes of text that are laid out. A band shows less; a megabyte would take
// minutes.
inline constexpr std::size_t mostTextBytes = 4096;

inline ValidText validText(std::string_view text) {
    return ValidText(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
}

} // namespace tarnwick
