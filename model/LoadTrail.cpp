//
// LoadTrail.cpp
//

#include "model/LoadTrail.h"

namespace zunokeymapmanager {
namespace json {

namespace {

// Plain data, zero-initialised: no guard or constructor on first use.
thread_local LoadTrail tTrail;

}  // namespace

LoadTrail& trail() {
    return tTrail;
}

}  // namespace json
}  // namespace zunokeymapmanager
