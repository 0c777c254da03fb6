// The rig from above as a drawing, for pages without a three-dimensional view.
#ifndef VELMORN64_TOOLS_TOP_VIEW_SVG_H
#define VELMORN64_TOOLS_TOP_VIEW_SVG_H

#include <string>

#include "velmorn/report_frame.h"
#include "velmorn/report_model.h"
#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// An inline <svg>: cameras as pyramids with their names, the boards' outlines and a grid with the
// view's cells. x of the view is to the right and z down.
std::string topViewSvg(const StitchRecord& record, const ReportModel& model,
                       const ReportFrame& frame);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_TOP_VIEW_SVG_H
