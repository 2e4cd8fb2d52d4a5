//
// TextFile.cpp
//

#include "zuno-keymapmanager/api/TextFile.h"

#include "document/FileSystem.h"

namespace zunokeymapmanager {

bool WriteTextFile(const std::string& path, const std::string& text) {
    std::string error;
    return WriteTextFile(path, text, error);
}

bool WriteTextFile(const std::string& path, const std::string& text, std::string& error) {
    return document::ReplaceWhole(path, text, error) == document::ReplaceResult::Replaced;
}

bool WriteNewTextFile(const std::string& path, const std::string& text, const std::string& like,
                      std::string& error) {
    return document::CreateNewFile(path, text, like, error);
}

}  // namespace zunokeymapmanager
