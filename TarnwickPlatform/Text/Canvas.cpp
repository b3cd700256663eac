#include "TarnwickPlatform/Text/Canvas.h"

#include "TarnwickPlatform/Text/PangoParts.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarnwick {
namespace {

using Attributes = std::unique_ptr<PangoAttrList, Release<pango_attr_list_unref>>;
using Context = std::unique_ptr<PangoContext, Release<g_object_unref>>;
using FontOptions = std::unique_ptr<cairo_font_options_t, Release<cairo_font_options_destroy>>;

int pangoUnits(double pixels) {
    return static_cast<int>(std::lround(pixels * PANGO_SCALE));
}

// Subpixel positions of glyphs: widths scale with the size, and moving text is smooth.
Context textContext() {
    Context context(pango_font_map_create_context(pango_cairo_font_map_get_default()));
    const FontOptions options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_SLIGHT);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context.get(), options.get());
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    return context;
}

Font fontOf(const TextBlock& block) {
    const bool isCode = block.typeface == TextBlock::Typeface::code;
    Font font(pango_font_description_from_string(isCode ? "DejaVu Sans Mono, monospace"
                                                        : "system-ui, sans-serif"));
    pango_font_description_set_absolute_size(font.get(), block.points * PANGO_SCALE);
    if (block.weight == TextBlock::Weight::bold)
        pango_font_description_set_weight(font.get(), PANGO_WEIGHT_BOLD);
    return font;
}

guint16 channel(double value) {
    return static_cast<guint16>(std::lround(std::clamp(value, 0.0, 1.0) * 65535));
}

Attributes attributesOf(const TextBlock& block) {
    Attributes attributes(pango_attr_list_new());
    auto add = [&](PangoAttribute* attribute, std::size_t start, std::size_t end) {
        attribute->start_index = static_cast<guint>(start);
        attribute->end_index = static_cast<guint>(end);
        pango_attr_list_change(attributes.get(), attribute);
    };
    auto addInk = [&](const Ink& ink, std::size_t start, std::size_t end) {
        add(pango_attr_foreground_new(channel(ink.red), channel(ink.green), channel(ink.blue)),
            start, end);
        // For Pango, alpha 0 means that none is set.
        add(pango_attr_foreground_alpha_new(std::max<guint16>(channel(ink.alpha), 1)), start, end);
    };
    constexpr std::size_t whole = PANGO_ATTR_INDEX_TO_TEXT_END;
    add(pango_attr_line_height_new_absolute(pangoUnits(block.points * block.lineHeight)), 0, whole);
    if (block.spacing != 0)
        add(pango_attr_letter_spacing_new(pangoUnits(block.spacing)), 0, whole);
    addInk(block.ink, 0, whole);
    for (const TextBlock::Stretch& stretch : block.stretches)
        addInk(stretch.ink, stretch.start, stretch.start + stretch.length);
    return attributes;
}

Layout layoutOf(const TextBlock& block) {
    Layout layout(pango_layout_new(textContext().get()));
    pango_layout_set_font_description(layout.get(), fontOf(block).get());
    pango_layout_set_attributes(layout.get(), attributesOf(block).get());
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    pango_layout_set_auto_dir(layout.get(), FALSE);
    pango_layout_set_width(layout.get(), pangoUnits(block.width));
    pango_layout_set_indent(layout.get(), -pangoUnits(block.hanging));
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    pango_layout_set_height(layout.get(), -block.lines);
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    const std::string_view text = std::string_view(block.text).substr(0, mostTextBytes);
    pango_layout_set_text(layout.get(), validText(text).get(), -1);
    return layout;
}

TextExtent extentOf(const TextBlock& block, PangoLayout* layout) {
    PangoRectangle logical{};
    pango_layout_get_extents(layout, nullptr, &logical);
    const int lines = pango_layout_get_line_count(layout);
    return {.width = std::min(pango_units_to_double(logical.x + logical.width), block.width),
            .height = lines * block.points * block.lineHeight,
            .lines = lines};
}

} // namespace

struct Canvas::Parts {
    Surface surface;
    CairoCanvas canvas;
};

TextExtent extentOf(const TextBlock& block) {
    return extentOf(block, layoutOf(block).get());
}

Canvas::Canvas(std::uint32_t width, std::uint32_t height) : parts_(std::make_unique<Parts>()) {
    parts_->surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width),
                                                     static_cast<int>(height)));
    parts_->canvas.reset(cairo_create(parts_->surface.get()));
}

Canvas::~Canvas() = default;

void Canvas::fill(const TextBand& area, const Ink& ink, double radius) {
    cairo_t* const canvas = parts_->canvas.get();
    const auto [x, y, width, height] = area;
    const double r = std::clamp(radius, 0.0, std::max(0.0, std::min(width, height) / 2));
    constexpr double quarter = std::numbers::pi / 2;
    cairo_new_sub_path(canvas);
    cairo_arc(canvas, x + width - r, y + r, r, -quarter, 0);
    cairo_arc(canvas, x + width - r, y + height - r, r, 0, quarter);
    cairo_arc(canvas, x + r, y + height - r, r, quarter, 2 * quarter);
    cairo_arc(canvas, x + r, y + r, r, 2 * quarter, 3 * quarter);
    cairo_close_path(canvas);
    cairo_set_source_rgba(canvas, ink.red, ink.green, ink.blue, ink.alpha);
    cairo_fill(canvas);
}

void Canvas::draw(const TextBlock& block, double x, double y) {
    cairo_t* const canvas = parts_->canvas.get();
    const Layout layout = layoutOf(block);
    cairo_save(canvas);
    cairo_rectangle(canvas, x, y, block.width, extentOf(block, layout.get()).height);
    cairo_clip(canvas);
    cairo_move_to(canvas, x, y);
    pango_cairo_update_layout(canvas, layout.get());
    pango_cairo_show_layout(canvas, layout.get());
    cairo_restore(canvas);
}

Picture Canvas::picture() const {
    cairo_surface_t* const surface = parts_->surface.get();
    cairo_surface_flush(surface);
    const auto height = static_cast<std::size_t>(cairo_image_surface_get_height(surface));
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    const std::uint8_t* const bytes = cairo_image_surface_get_data(surface);
    return {.width = static_cast<std::uint32_t>(cairo_image_surface_get_width(surface)),
            .height = static_cast<std::uint32_t>(height),
            .bytesPerRow = stride,
            .bytes = std::vector(bytes, bytes + height * stride)};
}

} // namespace tarnwick
