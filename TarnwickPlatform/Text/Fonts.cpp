#include "TarnwickPlatform/Text/Fonts.h"

#include "TarnwickPlatform/Text/PangoParts.h"

namespace tarnwick {

SystemFonts systemFonts() {
    PangoFontMap* map = pango_cairo_font_map_get_default();
    PangoFontFamily** families = nullptr;
    int count = 0;
    pango_font_map_list_families(map, &families, &count);
    g_free(families);
    if (count == 0)
        return {};
    const std::unique_ptr<PangoContext, Release<g_object_unref>> context(
        pango_font_map_create_context(map));
    const Font wanted(pango_font_description_from_string("system-ui, sans-serif 12"));
    const std::unique_ptr<PangoFont, Release<g_object_unref>> font(
        pango_font_map_load_font(map, context.get(), wanted.get()));
    if (!font)
        return {};
    const Font found(pango_font_describe(font.get()));
    return {.families = static_cast<std::size_t>(count),
            .used = pango_font_description_get_family(found.get())};
}

} // namespace tarnwick
