// Data Matrix symbols, encoded by zint.
#include "velmorn/data_matrix.h"

#include <array>
#include <memory>

#include <zint.h>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// zint numbers the square sizes from 1.
constexpr std::array<int, 24> kSquareSizes = {10, 12, 14, 16, 18, 20, 22, 24, 26,  32,  36,  40,
                                              44, 48, 52, 64, 72, 80, 88, 96, 104, 120, 132, 144};
constexpr int kAnySize = 0;

using Symbol = std::unique_ptr<zint_symbol, decltype(&ZBarcode_Delete)>;

int sizeNumber(int modules) {
  for (std::size_t i = 0; i < kSquareSizes.size(); ++i)
    if (kSquareSizes[i] == modules) return static_cast<int>(i) + 1;
  throw ToolError("there is no square Data Matrix of " + std::to_string(modules) + " modules");
}

Symbol encode(const std::string& text, int size) {
  Symbol symbol(ZBarcode_Create(), &ZBarcode_Delete);
  if (!symbol) throw ToolError("out of memory");
  symbol->symbology = BARCODE_DATAMATRIX;
  symbol->option_2 = size;
  symbol->option_3 = DM_SQUARE;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  if (ZBarcode_Encode(symbol.get(), bytes, static_cast<int>(text.size())) >= ZINT_ERROR)
    throw ToolError("\"" + text + "\" does not fit into the Data Matrix: " + symbol->errtxt);
  return symbol;
}

} // namespace

int smallestDataMatrix(const std::string& text) { return encode(text, kAnySize)->rows; }

cv::Mat_<uchar> dataMatrix(const std::string& text, int modules) {
  const Symbol symbol = encode(text, sizeNumber(modules));
  if (symbol->rows != modules || symbol->width != modules)
    throw ToolError("\"" + text + "\" does not fit into a Data Matrix of " +
                    std::to_string(modules) + " modules");
  cv::Mat_<uchar> picture(modules, modules);
  for (int row = 0; row < modules; ++row)
    for (int column = 0; column < modules; ++column)
      picture(row, column) =
          static_cast<uchar>((symbol->encoded_data[row][column / 8] >> (column % 8)) & 1);
  return picture;
}

} // namespace velmorn::tool
