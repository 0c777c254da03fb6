// What the page's three-dimensional view is made from.
#ifndef VELMORN64_TOOLS_REPORT_DATA_H
#define VELMORN64_TOOLS_REPORT_DATA_H

#include <nlohmann/json.hpp>

#include "velmorn/coloured_cloud.h"
#include "velmorn/report_frame.h"
#include "velmorn/report_model.h"
#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// The shapes, and the cloud as numbers of 16 bits within its box (least + step * number), little
// endian, in base 64; colours and cameras of 8 bits likewise. A point's camera counts the record's
// cameras; 255 is none of them.
nlohmann::ordered_json reportData(const StitchRecord& record, const ReportModel& model,
                                  const ReportFrame& frame, const ColouredCloud& cloud);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_REPORT_DATA_H
