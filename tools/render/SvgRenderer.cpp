//
// SvgRenderer.cpp
//

#include "SvgRenderer.h"

#include <sstream>

namespace zunokeymap {
namespace render {

// First cut: the screen alone; items, geometry and problem marks come next.
std::string RenderSvg(const zunokeymapmanager::KeymapConfig& doc,
                      const zunokeymapmanager::CheckReport& report, const RenderOptions& options) {
    (void)doc;
    (void)report;
    std::ostringstream out;
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" viewBox=\"0 0 "
        << options.width << ' ' << options.height << "\"></svg>\n";
    return out.str();
}

}  // namespace render
}  // namespace zunokeymap
