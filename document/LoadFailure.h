//
// LoadFailure.h
//
// What a failed load says about itself.
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_LOADFAILURE_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_LOADFAILURE_H

#include <string>

#include <Poco/Exception.h>

#include "document/DocumentIO.h"
#include "zuno-keymapmanager/document/LoadDiagnostic.h"

namespace zunokeymapmanager {
namespace document {

/// Says why the read recorded in `progress` failed with `error`. `source` is
/// the loaded path or built-in name, `text` the text that was parsed (empty
/// when it came from the file).
void Describe(const ReadProgress& progress, const Poco::Exception& error, const std::string& source,
              const std::string& text, LoadDiagnostic& out);

}  // namespace document
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_LOADFAILURE_H
