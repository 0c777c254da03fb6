// The links of a rig as a drawing.
#include "velmorn/relation_tree_svg.h"

#include <algorithm>
#include <vector>

#include "velmorn/html_text.h"
#include "velmorn/relation_tree.h"
#include "velmorn/report_style.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// Pixels of the drawing.
constexpr int kBoxWidth = 190;
constexpr int kBoxHeight = 52;
constexpr int kColumnPitch = 360;
constexpr int kRowPitch = 80;
constexpr int kMargin = 8;
constexpr int kBend = 40; // from a box to the vertical part of a line
constexpr int kTextInset = 16;
constexpr int kSwatchWidth = 6;
constexpr std::size_t kMostCharacters = 22; // of an id in a box

struct Place {
  double left = 0;
  double top = 0;

  double middle() const { return top + kBoxHeight / 2.0; }
};

Place placeOf(int column, double row) {
  return {static_cast<double>(kMargin + column * kColumnPitch), kMargin + row * kRowPitch};
}

std::string number(double value) { return htmlNumber(value, 1); }

std::string textAt(double x, double y, const std::string& kind, const std::string& text) {
  return "<text class=\"" + kind + "\" x=\"" + number(x) + "\" y=\"" + number(y) + "\">" +
         htmlText(text) + "</text>\n";
}

std::string box(const CameraRecord& camera, std::size_t index, const Place& place,
                const std::string& note, const std::string& kind) {
  const std::string corner = "x=\"" + number(place.left) + "\" y=\"" + number(place.top) + "\" ";
  const std::string height = "height=\"" + std::to_string(kBoxHeight) + "\"";
  // The inner svg cuts off what is too long for the box.
  return "<g><title>" + htmlText(camera.id) + "</title>\n<rect class=\"" + kind + "\" " + corner +
         "width=\"" + std::to_string(kBoxWidth) + "\" " + height + " rx=\"4\"/>\n<rect class=\"" +
         cameraClass(index) + "\" fill=\"currentColor\" " + corner + "width=\"" +
         std::to_string(kSwatchWidth) + "\" " + height + "/>\n<svg " + corner + "width=\"" +
         std::to_string(kBoxWidth) + "\" " + height + ">" +
         textAt(kTextInset, 22, "name", shortenedText(camera.id, kMostCharacters)) +
         textAt(kTextInset, 41, "note", note) + "</svg></g>\n";
}

std::string shotsNote(const CameraRecord& camera) {
  return std::to_string(camera.imagesFound) + " of " + counted(camera.imagesTotal, "shot") +
         " used";
}

std::string link(const CameraRecord& camera, const Place& from, const Place& to) {
  const double start = from.left + kBoxWidth;
  const double textX = start + kBend + 8;
  const std::string residual =
      camera.residual ? "residual " + htmlNumber(*camera.residual, 4) : "no residual";
  return "<path class=\"link\" d=\"M" + number(start) + " " + number(from.middle()) + "h" +
         std::to_string(kBend) + "V" + number(to.middle()) + "H" + number(to.left) + "\"/>\n" +
         textAt(textX, to.middle() - 7, "name", residual) +
         textAt(textX, to.middle() + 17, "note", counted(camera.imagesShared, "shared shot"));
}

std::string linkedPart(const StitchRecord& record, const RelationTree& tree) {
  std::string svg;
  for (const TreeNode& node : tree.nodes) {
    const CameraRecord& camera = record.cameras[node.camera];
    const Place place = placeOf(node.column, node.row);
    if (node.parent) {
      const TreeNode& parent = tree.nodes[*node.parent];
      svg += link(camera, placeOf(parent.column, parent.row), place);
    }
    const std::string note = (node.parent ? "" : "base, ") + shotsNote(camera);
    svg += box(camera, node.camera, place, note, node.parent ? "box" : "box base");
  }
  return svg;
}

std::string unlinkedPart(const StitchRecord& record, const RelationTree& tree) {
  std::string svg;
  for (std::size_t i = 0; i < tree.unlinked.size(); ++i) {
    const std::size_t camera = tree.unlinked[i];
    svg += box(record.cameras[camera], camera, placeOf(0, tree.rows + static_cast<double>(i)),
               "not linked", "box unlinked");
  }
  return svg;
}

} // namespace

std::string relationTreeSvg(const StitchRecord& record) {
  const RelationTree tree = layOutTree(record.cameras);
  const auto rows = tree.rows + static_cast<int>(tree.unlinked.size());
  const int width = 2 * kMargin + std::max(0, tree.columns - 1) * kColumnPitch + kBoxWidth;
  const int height = 2 * kMargin + std::max(0, rows - 1) * kRowPitch + kBoxHeight;
  const std::string size = std::to_string(width) + "\" height=\"" + std::to_string(height);
  return "<svg class=\"tree\" role=\"img\" aria-label=\"Links between the cameras\" width=\"" +
         size + "\" viewBox=\"0 0 " + std::to_string(width) + " " + std::to_string(height) +
         "\">\n" + linkedPart(record, tree) + unlinkedPart(record, tree) + "</svg>\n";
}

} // namespace velmorn::tool
