//
// LoadDiagnostic.cpp
//

#include "zuno-keymapmanager/document/LoadDiagnostic.h"

namespace zunokeymapmanager {

const char* ProblemName(LoadDiagnostic::Problem problem) {
    switch (problem) {
        case LoadDiagnostic::Problem::None:
            return "none";
        case LoadDiagnostic::Problem::Unreadable:
            return "unreadable";
        case LoadDiagnostic::Problem::Malformed:
            return "malformed";
        case LoadDiagnostic::Problem::NotAnObject:
            return "not-an-object";
        case LoadDiagnostic::Problem::NotAnArray:
            return "not-an-array";
        case LoadDiagnostic::Problem::Missing:
            return "missing";
        case LoadDiagnostic::Problem::WrongType:
            return "wrong-type";
    }
    return "unknown";
}

}  // namespace zunokeymapmanager
