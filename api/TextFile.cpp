//
// TextFile.cpp
//

#include "zuno-keymapmanager/api/TextFile.h"

#include "document/FileSystem.h"

namespace zunokeymapmanager {

bool WriteTextFile(const std::string& path, const std::string& text) {
    return document::WriteFile(path, text);
}

}  // namespace zunokeymapmanager
