#include "TarnwickPlatform/Text/Text.h"

#include "TarnwickPlatform/Text/PangoParts.h"

namespace tarnwick {
namespace {

Layout centeredLayout(cairo_t* canvas, std::string_view text, double points, double width) {
    const Font font(pango_font_description_from_string("system-ui, sans-serif"));
    // An absolute size: one point is one pixel, for any resolution of the display.
    pango_font_description_set_absolute_size(font.get(), points * PANGO_SCALE);
    Layout layout(pango_cairo_create_layout(canvas));
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_alignment(layout.get(), PANGO_ALIGN_CENTER);
    pango_layout_set_width(layout.get(), static_cast<int>(width * PANGO_SCALE));
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    text = text.substr(0, mostTextBytes);
    pango_layout_set_text(layout.get(), validText(text).get(), -1);
    return layout;
}

// Pixels from the top of the layout to the end of the last line that ends within `limit`.
double heightOfWholeLines(PangoLayout* layout, double limit) {
    const std::unique_ptr<PangoLayoutIter, Release<pango_layout_iter_free>> lines(
        pango_layout_get_iter(layout));
    double height = 0;
    do {
        int top = 0, bottom = 0; // in PANGO_SCALE parts of a pixel
        pango_layout_iter_get_line_yrange(lines.get(), &top, &bottom);
        if (bottom > limit * PANGO_SCALE)
            break;
        height = pango_units_to_double(bottom);
    } while (pango_layout_iter_next_line(lines.get()));
    return height;
}

} // namespace

void drawCenteredText(Picture& picture, std::string_view text, double points,
                      const TextBand& band) {
    if (band.width <= 0 || band.height <= 0)
        return;
    const Surface surface(cairo_image_surface_create_for_data(
        picture.bytes.data(), CAIRO_FORMAT_RGB24, static_cast<int>(picture.width),
        static_cast<int>(picture.height), static_cast<int>(picture.bytesPerRow)));
    const CairoCanvas canvas(cairo_create(surface.get()));
    const Layout layout = centeredLayout(canvas.get(), text, points, band.width);
    const double height = heightOfWholeLines(layout.get(), band.height);
    const double top = band.y + (band.height - height) / 2;
    cairo_rectangle(canvas.get(), band.x, top, band.width, height);
    cairo_clip(canvas.get());
    cairo_set_source_rgb(canvas.get(), 1, 1, 1);
    cairo_move_to(canvas.get(), band.x, top);
    pango_cairo_show_layout(canvas.get(), layout.get());
    cairo_surface_flush(surface.get());
}

} // namespace tarnwick
