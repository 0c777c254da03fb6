// The report as one HTML page.
#ifndef VELMORN64_TOOLS_REPORT_PAGE_H
#define VELMORN64_TOOLS_REPORT_PAGE_H

#include <cstddef>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "velmorn/stitch_record.h"
#include "velmorn/thumbnails.h"

namespace velmorn::tool {

struct ReportPage {
  std::string title;
  std::string resultName;                         // of the result file
  std::string topView;                            // <svg>; empty when no camera has a place
  nlohmann::ordered_json data;                    // of the three-dimensional view
  std::string cloudNote;                          // what is shown of the cloud; empty without one
  std::string aerialName;                         // of the picture from above; empty without one
  std::string aerialAddress;                      // data: address of it
  std::vector<std::vector<ShotPicture>> pictures; // by camera and shot
};

// A page that needs nothing from outside; its own rules forbid it to ask for anything, and to run
// any script but the built-in ones.
std::string reportHtml(const StitchRecord& record, const ReportPage& page);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_REPORT_PAGE_H
