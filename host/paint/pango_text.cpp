#include "host/paint/pango_text.h"

#include <string>

namespace Orvex::Paint {

namespace {

void Configure(PangoContext* context) {
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    pango_cairo_context_set_font_options(context, options);
    cairo_font_options_destroy(options);
    pango_context_set_round_glyph_positions(context, FALSE);
}

void SetText(PangoLayout* layout, const TQVLFont& font, double fontPx, std::string_view text) {
    PangoFontDescription* desc = pango_font_description_new();
    pango_font_description_set_family(desc, font.Name.empty() ? "Sans" : font.Name.c_str());
    pango_font_description_set_weight(desc, font.Bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_style(desc, font.Italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    pango_font_description_set_absolute_size(desc, std::max(fontPx, 0.01) * PANGO_SCALE);
    pango_layout_set_font_description(layout, desc);
    pango_font_description_free(desc);
    if (font.Underline || font.Strikeout) {
        PangoAttrList* attrs = pango_attr_list_new();
        if (font.Underline) pango_attr_list_insert(attrs, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
        if (font.Strikeout) pango_attr_list_insert(attrs, pango_attr_strikethrough_new(TRUE));
        pango_layout_set_attributes(layout, attrs);
        pango_attr_list_unref(attrs);
    }
    const std::string copy(text);
    pango_layout_set_text(layout, copy.c_str(), static_cast<int>(copy.size()));
}

}  // namespace

TLayoutPtr MakeLayout(cairo_t* cr, const TQVLFont& font, double fontPx, std::string_view text) {
    PangoLayout* layout = pango_cairo_create_layout(cr);
    Configure(pango_layout_get_context(layout));
    pango_layout_context_changed(layout);
    SetText(layout, font, fontPx, text);
    return TLayoutPtr(layout);
}

TLayoutPtr MakeMeasureLayout(const TQVLFont& font, double fontPx, std::string_view text) {
    PangoContext* context = pango_font_map_create_context(pango_cairo_font_map_get_default());
    Configure(context);
    PangoLayout* layout = pango_layout_new(context);
    g_object_unref(context);  // the layout holds its own reference
    SetText(layout, font, fontPx, text);
    return TLayoutPtr(layout);
}

TTextExtent Extent(PangoLayout* layout) {
    PangoRectangle logical{};
    pango_layout_get_extents(layout, nullptr, &logical);
    return {static_cast<double>(logical.width) / PANGO_SCALE,
            static_cast<double>(logical.height) / PANGO_SCALE,
            static_cast<double>(pango_layout_get_baseline(layout)) / PANGO_SCALE};
}

void ShowLayout(cairo_t* cr, PangoLayout* layout, double x, double baselineY, TAlphaColor color) {
    SetColor(cr, color);
    cairo_move_to(cr, x, baselineY - static_cast<double>(pango_layout_get_baseline(layout)) / PANGO_SCALE);
    pango_cairo_show_layout(cr, layout);
}

}  // namespace Orvex::Paint
