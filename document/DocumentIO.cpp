//
// DocumentIO.cpp
//

#include "document/DocumentIO.h"

#include <sys/stat.h>

#include <fstream>
#include <memory>
#include <sstream>

#include <Poco/Exception.h>
#include <Poco/JSON/ParseHandler.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>

#include "model/JsonIO.h"
#include "model/LoadTrail.h"
#include "zuno-keymapmanager/model/ConfigFactory.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {
namespace document {

namespace {

// Stringifier options: strings quoted and escaped, no Unicode escaping.
constexpr int kWriteOptions = Poco::JSON_WRAP_STRINGS;
constexpr unsigned kIndent = 4;

Poco::Dynamic::Var parse(const std::string& text, const std::string& path, ReadProgress& progress) {
    Poco::JSON::Parser parser(new Poco::JSON::ParseHandler(false));
    if (!text.empty()) {
        progress.stage = ReadProgress::Stage::Parsing;
        return parser.parse(text);
    }
    // Only regular files are read: a pipe or a device could block the host forever.
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
        throw Poco::OpenFileException(path);
    }
    std::ifstream in(path, std::ios::in);
    if (!in) {
        throw Poco::OpenFileException(path);
    }
    // Kept as text, so that a syntax error can be located afterwards.
    std::ostringstream content;
    content << in.rdbuf();
    if (in.bad()) {
        throw Poco::ReadFileException(path);
    }
    progress.fileText = content.str();
    progress.stage = ReadProgress::Stage::Parsing;
    return parser.parse(progress.fileText);
}

}  // namespace

void Read(const std::string& text, const std::string& path, KeymapConfig& doc) {
    ReadProgress progress;
    Read(text, path, doc, progress);
}

void Read(const std::string& text, const std::string& path, KeymapConfig& doc,
          ReadProgress& progress) {
    json::trail().reset();
    progress.parsed = parse(text, path, progress);
    progress.stage = ReadProgress::Stage::Root;
    progress.root = progress.parsed.extract<Poco::JSON::Object::Ptr>();
    if (progress.root.isNull()) {
        throw Poco::NullPointerException();
    }
    const json::ObjectPtr& root = progress.root;

    progress.stage = ReadProgress::Stage::Keymaps;
    if (root->has(kFieldKeymaps)) {
        progress.elements = json::array(root, kFieldKeymaps);
        const json::ArrayPtr& elements = progress.elements;
        for (std::size_t i = 0; i < elements->size(); ++i) {
            json::trail().reset();
            progress.itemIndex = static_cast<int>(i);
            progress.item = elements->getObject(i);
            std::unique_ptr<ConfigItem> item(ConfigFactory::ProduceConfigItem(progress.item));
            if (item) {
                // Make room first, so the document owns the item the moment it is released.
                doc.items.push_back(nullptr);
                doc.items.back() = item.release();
            }
        }
        progress.itemIndex = -1;
        progress.item = nullptr;
    }

    json::trail().reset();
    progress.stage = ReadProgress::Stage::Info;
    doc.info->FillFromJsonObject(json::object(root, kFieldInfo));

    if (root->has(kFieldParam)) {
        json::trail().reset();
        progress.stage = ReadProgress::Stage::Param;
        doc.param->FillFromJsonObject(json::object(root, kFieldParam));
    }
    progress.stage = ReadProgress::Stage::Done;
}

std::string Write(const KeymapConfig& doc) {
    json::ArrayPtr elements = new Poco::JSON::Array();
    for (const ConfigItem* item : doc.items) {
        if (item != nullptr) {
            elements->add(json::ObjectPtr(new Poco::JSON::Object(item->ConvertToJsonObject())));
        }
    }
    const bool isJoystick = doc.info != nullptr && doc.info->is_joystick;

    json::ObjectPtr root = json::newObject();
    root->set(kFieldKeymaps, elements);
    root->set(kFieldInfo, json::ObjectPtr(new Poco::JSON::Object(
                              doc.info != nullptr ? doc.info->ConvertToJsonObject()
                                                  : ConfigInfo().ConvertToJsonObject())));
    root->set(kFieldParam,
              json::ObjectPtr(new Poco::JSON::Object(
                  doc.param != nullptr ? doc.param->ConvertToJsonObject(isJoystick)
                                       : ConfigParam().ConvertToJsonObject(isJoystick))));

    std::ostringstream out;
    Poco::JSON::Stringifier::stringify(root, out, kIndent, -1, kWriteOptions);
    return out.str();
}

bool WriteFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::out | std::ios::trunc | std::ios::binary);
    if (!out) {
        return false;
    }
    out << text;
    out.close();
    return static_cast<bool>(out);
}

}  // namespace document
}  // namespace zunokeymapmanager
