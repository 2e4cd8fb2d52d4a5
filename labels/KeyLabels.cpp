//
// KeyLabels.cpp
//

#include "labels/KeyLabels.h"

namespace zunokeymapmanager {
namespace labels {

std::string Caption(std::string_view /*device*/, int /*code*/) {
    return {};
}

int CodeOf(std::string_view /*device*/, std::string_view /*caption*/) {
    return -1;
}

}  // namespace labels
}  // namespace zunokeymapmanager
