// A board's sheet as a file, drawn by cairo.
#include "velmorn/sheet_drawing.h"

#include <cmath>
#include <memory>
#include <vector>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <opencv2/core.hpp>

#include "velmorn/grey_image.h"
#include "velmorn/png_file.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;
constexpr double kMostPixels = 4e8;
constexpr int kMostPixelsPerSide = 32000; // of cairo's pictures, less a little

// A font that is part of cairo: every machine draws the same text.
constexpr const char* kFont = "@cairo:";

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

cairo_status_t append(void* file, const unsigned char* bytes, unsigned int length) {
  try {
    static_cast<std::string*>(file)->append(reinterpret_cast<const char*>(bytes), length);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::exception&) {
    return CAIRO_STATUS_WRITE_ERROR;
  }
}

void requireSuccess(cairo_status_t status) {
  if (status == CAIRO_STATUS_SUCCESS) return;
  throw ToolError(std::string("the board could not be drawn: ") + cairo_status_to_string(status));
}

void addBox(cairo_t* context, const InkBox& box) {
  cairo_move_to(context, box.left, box.top);
  cairo_line_to(context, box.right, box.top);
  cairo_line_to(context, box.right, box.bottom);
  cairo_line_to(context, box.left, box.bottom);
  cairo_close_path(context);
}

// The whole pattern is filled at once, so that no viewer shows a seam between two boxes.
void drawInk(cairo_t* context, const BoardSheet& sheet) {
  for (const InkBox& box : sheet.pattern) addBox(context, box);
  addBox(context, sheet.bar);
  cairo_fill(context);
  cairo_select_font_face(context, kFont, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(context, kSheetTextSize);
  for (const SheetLine& line : sheet.lines) {
    cairo_move_to(context, line.start.x, line.start.y);
    cairo_show_text(context, line.text.c_str());
  }
}

// Draws in millimetres times `scale`, from `shift` on.
void draw(cairo_surface_t* surface, const BoardSheet& sheet, double scale, cv::Point2d shift,
          bool onWhite) {
  const Context context(cairo_create(surface), &cairo_destroy);
  if (onWhite) {
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());
  }
  cairo_set_source_rgb(context.get(), 0, 0, 0);
  cairo_translate(context.get(), shift.x, shift.y);
  cairo_scale(context.get(), scale, scale);
  drawInk(context.get(), sheet);
  requireSuccess(cairo_status(context.get()));
}

// Draws on a surface that writes to `file`, and completes the file.
void drawTo(const Surface& surface, const BoardSheet& sheet) {
  requireSuccess(cairo_surface_status(surface.get()));
  draw(surface.get(), sheet, kPointsPerMillimetre, {}, true);
  cairo_surface_finish(surface.get());
  requireSuccess(cairo_surface_status(surface.get()));
}

// The drawing library counts its surfaces and writes the number of this one as a name.
std::string withoutSurfaceNumber(const std::string& file) {
  const std::string head = "<g id=\"surface";
  const std::size_t begin = file.find(head);
  const std::size_t end = begin == std::string::npos ? begin : file.find('"', begin + head.size());
  if (end == std::string::npos) return file;
  return file.substr(0, begin) + "<g id=\"board" + file.substr(end);
}

// How far a place has to move to lie between two pixels.
double towardsPixelEdge(double place) { return std::round(place) - place; }

cv::Size pixelsOf(const cv::Size2d& page, double pixelsPerMillimetre) {
  const cv::Size2d pixels(std::ceil(page.width * pixelsPerMillimetre),
                          std::ceil(page.height * pixelsPerMillimetre));
  if (std::max(pixels.width, pixels.height) > kMostPixelsPerSide || pixels.area() > kMostPixels)
    throw ToolError("the picture would be too large; take a lower --dpi, or .pdf or .svg");
  return {static_cast<int>(pixels.width), static_cast<int>(pixels.height)};
}

} // namespace

std::string sheetAsPdf(const BoardSheet& sheet) {
  std::string file;
  const Surface surface(
      cairo_pdf_surface_create_for_stream(append, &file, sheet.page.width * kPointsPerMillimetre,
                                          sheet.page.height * kPointsPerMillimetre),
      &cairo_surface_destroy);
  // A date that is none is left out.
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
  drawTo(surface, sheet);
  return file;
}

std::string sheetAsSvg(const BoardSheet& sheet) {
  std::string file;
  const Surface surface(
      cairo_svg_surface_create_for_stream(append, &file, sheet.page.width * kPointsPerMillimetre,
                                          sheet.page.height * kPointsPerMillimetre),
      &cairo_surface_destroy);
  drawTo(surface, sheet);
  return withoutSurfaceNumber(file);
}

std::string sheetAsPng(const BoardSheet& sheet, double pixelsPerMillimetre) {
  const cv::Size size = pixelsOf(sheet.page, pixelsPerMillimetre);
  const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_A8, size.width);
  cv::Mat_<uchar> ink(size.height, stride, uchar{0});
  const Surface surface(cairo_image_surface_create_for_data(ink.data, CAIRO_FORMAT_A8, size.width,
                                                            size.height, stride),
                        &cairo_surface_destroy);
  requireSuccess(cairo_surface_status(surface.get()));
  const cv::Point2d origin = sheet.origin * pixelsPerMillimetre;
  draw(surface.get(), sheet, pixelsPerMillimetre,
       {towardsPixelEdge(origin.x), towardsPixelEdge(origin.y)}, false);
  cairo_surface_flush(surface.get());
  cv::Mat picture;
  cv::bitwise_not(ink.colRange(0, size.width), picture);
  return pngFile(picture, pixelsPerMillimetre);
}

} // namespace velmorn::tool
