//
// SchemaCheck.cpp
//

#include "api/CheckFindings.h"

namespace zunokeymapmanager {
namespace check {

void CheckSchema(const Poco::JSON::Object::Ptr& root, std::vector<Finding>& out) {
    (void)root;
    (void)out;
}

}  // namespace check
}  // namespace zunokeymapmanager
