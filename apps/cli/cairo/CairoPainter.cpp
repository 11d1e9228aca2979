#include "cli/cairo/CairoPainter.h"

#include <cairo-pdf.h>
#include <cairo.h>
#include <pango/pangocairo.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <variant>

namespace poweranalysis {

namespace {

constexpr double kPixelsPerInch = 96;
constexpr double kPointsPerInch = 72;
// Pictures are drawn at twice the size of the layout, for screens and paper of high resolution.
constexpr double kPngScale = 2;
constexpr double kColourRange = 255;

struct SurfaceDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDeleter {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
struct ObjectDeleter {
  void operator()(void* object) const { g_object_unref(object); }
};
struct FontDeleter {
  void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
};

using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;
using Context = std::unique_ptr<cairo_t, ContextDeleter>;

struct Painter {
  cairo_t* cairo;
  const ChartTheme& theme;

  void Colour(Role role) const {
    const Rgb& colour = theme[role];
    cairo_set_source_rgb(cairo, colour.red / kColourRange, colour.green / kColourRange,
                         colour.blue / kColourRange);
  }

  void operator()(const LineItem& line) const {
    Colour(line.role);
    cairo_set_line_width(cairo, line.width);
    cairo_new_path(cairo);
    cairo_move_to(cairo, line.from.x, line.from.y);
    cairo_line_to(cairo, line.to.x, line.to.y);
    cairo_stroke(cairo);
  }

  void operator()(const RectItem& rect) const {
    Colour(rect.role);
    cairo_rectangle(cairo, rect.corner.x, rect.corner.y, rect.width, rect.height);
    cairo_fill(cairo);
  }

  void operator()(const PolylineItem& line) const {
    Colour(line.role);
    cairo_set_line_width(cairo, line.width);
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
    // A text before it leaves a current point.
    cairo_new_path(cairo);
    for (const Point& point : line.points) {
      cairo_line_to(cairo, point.x, point.y);
    }
    cairo_stroke(cairo);
  }

  void operator()(const DotItem& dot) const {
    Colour(dot.role);
    cairo_new_path(cairo);
    cairo_arc(cairo, dot.centre.x, dot.centre.y, dot.radius, 0, 2 * std::numbers::pi);
    cairo_fill(cairo);
  }

  void operator()(const TextItem& text) const {
    constexpr double kHalfTurn = 180;
    const std::unique_ptr<PangoLayout, ObjectDeleter> layout(pango_cairo_create_layout(cairo));
    const std::unique_ptr<PangoFontDescription, FontDeleter> font(pango_font_description_new());
    pango_font_description_set_family(font.get(), "sans-serif");
    pango_font_description_set_absolute_size(font.get(), text.size * PANGO_SCALE);
    pango_font_description_set_weight(font.get(),
                                      text.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_text(layout.get(), text.text.data(), static_cast<int>(text.text.size()));
    int width = 0;
    int height = 0;
    pango_layout_get_size(layout.get(), &width, &height);
    const double shift = text.anchor == Anchor::Start ? 0 : text.anchor == Anchor::Middle ? 0.5 : 1;
    Colour(text.role);
    cairo_save(cairo);
    cairo_translate(cairo, text.at.x, text.at.y);
    cairo_rotate(cairo, -text.rotation * std::numbers::pi / kHalfTurn);
    cairo_move_to(cairo, -shift * width / PANGO_SCALE,
                  -static_cast<double>(pango_layout_get_baseline(layout.get())) / PANGO_SCALE);
    pango_cairo_show_layout(cairo, layout.get());
    cairo_restore(cairo);
    cairo_new_path(cairo);
  }
};

cairo_status_t Draw(cairo_surface_t* surface, const DisplayList& list, double scale) {
  const Context cairo(cairo_create(surface));
  cairo_scale(cairo.get(), scale, scale);
  const Painter painter{cairo.get(), LightTheme()};
  for (const DisplayItem& item : list.items) {
    std::visit(painter, item);
  }
  cairo_show_page(cairo.get());
  return cairo_status(cairo.get());
}

struct Sink {
  PowerAnalysisSink write;
  void* context;
};

cairo_status_t WriteToSink(void* closure, const unsigned char* data, unsigned int length) {
  const Sink& sink = *static_cast<Sink*>(closure);
  sink.write(sink.context, reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

cairo_status_t PaintAsPng(const DisplayList& list, Sink& sink) {
  const Surface surface(cairo_image_surface_create(
      CAIRO_FORMAT_RGB24, static_cast<int>(std::lround(list.width * kPngScale)),
      static_cast<int>(std::lround(list.height * kPngScale))));
  const cairo_status_t status = Draw(surface.get(), list, kPngScale);
  return status == CAIRO_STATUS_SUCCESS
             ? cairo_surface_write_to_png_stream(surface.get(), WriteToSink, &sink)
             : status;
}

cairo_status_t PaintAsPdf(const DisplayList& list, Sink& sink) {
  constexpr double kScale = kPointsPerInch / kPixelsPerInch;
  const Surface surface(cairo_pdf_surface_create_for_stream(WriteToSink, &sink, list.width * kScale,
                                                            list.height * kScale));
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, list.title.c_str());
  // A fixed date, so that two runs give the same bytes.
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE,
                                 "2000-01-01T00:00:00Z");
  const cairo_status_t status = Draw(surface.get(), list, kScale);
  cairo_surface_finish(surface.get());
  return status == CAIRO_STATUS_SUCCESS ? cairo_surface_status(surface.get()) : status;
}

}  // namespace

}  // namespace poweranalysis

extern "C" __attribute__((visibility("default"))) int PowerAnalysisPaint(
    const poweranalysis::DisplayList* list,
    poweranalysis::PaintFormat format,
    PowerAnalysisSink sink,
    void* context,
    char* error,
    std::size_t errorSize) {
  poweranalysis::Sink target{sink, context};
  const cairo_status_t status = format == poweranalysis::PaintFormat::Pdf
                                    ? poweranalysis::PaintAsPdf(*list, target)
                                    : poweranalysis::PaintAsPng(*list, target);
  if (status == CAIRO_STATUS_SUCCESS) {
    return 0;
  }
  return poweranalysis::FailBecause(cairo_status_to_string(status), error, errorSize);
}
