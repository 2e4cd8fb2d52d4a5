//
// DocumentIO.cpp
//

#include "document/DocumentIO.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

#include <Poco/Exception.h>
#include <Poco/JSON/ParseHandler.h>
#include <Poco/JSON/Parser.h>

#include "document/FileSystem.h"
#include "document/LoadFailure.h"
#include "model/JsonIO.h"
#include "model/LoadTrail.h"
#include "zuno-keymapmanager/document/EmbededConfig.h"
#include "zuno-keymapmanager/model/ConfigFactory.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {
namespace document {

namespace {

constexpr unsigned kIndent = 4;
// Items are elements of the top-level "keymaps" array: two levels deep.
constexpr unsigned kItemIndent = 2 * kIndent;

// Room for one item as saved; a fair guess spares most regrowth of the output.
constexpr std::size_t kTypicalItemBytes = 2048;
// The guess is only a start: beyond this the buffer grows as it fills, so a
// host's item list full of empty slots cannot ask for memory up front.
constexpr std::size_t kMaxInitialBytes = std::size_t{16} << 20;

// An output buffer over a string that grows by doubling and is handed over
// at the end, without the copy a string stream makes.
class StringSink : public std::streambuf {
public:
    explicit StringSink(std::size_t capacity) {
        text_.resize(capacity > 0 ? capacity : 1);
        setp(text_.data(), text_.data() + text_.size());
    }

    std::string take() {
        text_.resize(written());
        setp(nullptr, nullptr);
        return std::move(text_);
    }

protected:
    int_type overflow(int_type c) override {
        if (traits_type::eq_int_type(c, traits_type::eof())) {
            return traits_type::not_eof(c);
        }
        const std::size_t used = written();
        text_.resize(text_.size() * 2);
        setp(text_.data() + used, text_.data() + text_.size());
        sputc(traits_type::to_char_type(c));
        return c;
    }

private:
    std::size_t written() const { return static_cast<std::size_t>(pptr() - text_.data()); }

    std::string text_;
};

Poco::Dynamic::Var parse(bool fromFile, const std::string& text, const std::string& path,
                         ReadProgress& progress) {
    Poco::JSON::Parser parser(new Poco::JSON::ParseHandler(false));
    if (!fromFile) {
        progress.stage = ReadProgress::Stage::Parsing;
        return parser.parse(text);
    }
    // Kept as text, so that a syntax error can be located afterwards.
    progress.fileText = ReadBytes(path);
    progress.stage = ReadProgress::Stage::Parsing;
    return parser.parse(progress.fileText);
}

}  // namespace

const std::string* BuiltInText(const std::string& name, bool joystick) {
    const auto& builtIns =
        joystick ? EmbededConfig::joystickConfigs() : EmbededConfig::keymapConfigs();
    const auto found = builtIns.find(name);
    return found != builtIns.end() ? &found->second : nullptr;
}

void ReadFrom(Origin origin, const std::string& text, const std::string& path, KeymapConfig& doc,
              ReadProgress& progress) {
    json::trail().reset();
    progress.parsed = parse(origin == Origin::File, text, path, progress);
    progress.stage = ReadProgress::Stage::Root;
    progress.root = progress.parsed.extract<Poco::JSON::Object::Ptr>();
    if (progress.root.isNull()) {
        throw Poco::NullPointerException();
    }
    const json::ObjectPtr& root = progress.root;

    progress.stage = ReadProgress::Stage::Keymaps;
    if (root->has(kFieldKeymaps)) {
        progress.elements = json::array(root, kFieldKeymaps);
        const std::size_t count = progress.elements->size();
        for (std::size_t i = 0; i < count; ++i) {
            json::trail().reset();
            progress.itemIndex = static_cast<int>(i);
            progress.item = progress.elements->getObject(i);
            if (!progress.item.isNull() && !progress.keepElements) {
                // The array lets go of the element, which the progress holds
                // until the next one: each element is freed right after its
                // item has read it, while it is still in the cache, and its
                // memory serves the items that follow. An element that is not
                // an object stays, for the diagnostic to describe.
                progress.elements->set(static_cast<unsigned int>(i), Poco::Dynamic::Var());
            }
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

std::unique_ptr<KeymapConfig> Load(Origin origin, const std::string& text, const std::string& path,
                                   bool joystick, LoadDiagnostic& diagnostic) {
    auto doc = std::make_unique<KeymapConfig>();
    doc->info = new ConfigInfo();
    doc->param = new ConfigParam();
    ReadProgress progress;
    diagnostic = LoadDiagnostic();
    diagnostic.source = path;
    const std::string* builtIn = origin == Origin::BuiltIn ? BuiltInText(path, joystick) : &text;
    if (builtIn == nullptr) {
        diagnostic.failed = true;
        diagnostic.problem = LoadDiagnostic::Problem::Unreadable;
        diagnostic.message = "no built-in document named '" + path + "'";
    } else {
        try {
            ReadFrom(origin, *builtIn, path, *doc, progress);
        } catch (const Poco::Exception& error) {
            Describe(progress, error, path, origin == Origin::File ? std::string() : *builtIn,
                     diagnostic);
        }
    }
    if (joystick) {
        doc->info->is_joystick = true;
    }
    return doc;
}

std::string Write(const KeymapConfig& doc) {
    // The output is what the stringifier makes of the whole document object
    // (sorted top-level keys, indentation 4), but the items are written one
    // at a time: each item's object is freed before the next one is built.
    // Holding the objects of a large document at once costs more than
    // stringifying them, because of the memory they spread over. Converting
    // is free of side effects, so info and param can be converted first and
    // the whole text written front to back into one buffer.
    const bool isJoystick = doc.info != nullptr && doc.info->is_joystick;
    const Poco::JSON::Object info =
        doc.info != nullptr ? doc.info->ConvertToJsonObject() : ConfigInfo().ConvertToJsonObject();
    const Poco::JSON::Object param = doc.param != nullptr
                                         ? doc.param->ConvertToJsonObject(isJoystick)
                                         : ConfigParam().ConvertToJsonObject(isJoystick);

    // {"info": ..., "keymaps": [...], "param": ...}, laid out as the
    // stringifier lays out an object at the top level and an array inside it.
    StringSink sink(std::min(kTypicalItemBytes * (doc.items.size() + 1), kMaxInitialBytes));
    std::ostream out(&sink);
    const std::string member = "\n" + std::string(kIndent, ' ') + '"';
    out << '{' << member << kFieldInfo << "\": ";
    info.stringify(out, 2 * kIndent, kIndent);
    out << ',' << member << kFieldKeymaps << "\": [\n";
    bool first = true;
    for (const ConfigItem* item : doc.items) {
        if (item == nullptr) {
            continue;
        }
        out << (first ? "" : ",\n") << std::string(kItemIndent, ' ');
        first = false;
        item->ConvertToJsonObject().stringify(out, kItemIndent + kIndent, kIndent);
    }
    out << '\n' << std::string(kIndent, ' ') << "]," << member << kFieldParam << "\": ";
    param.stringify(out, 2 * kIndent, kIndent);
    out << "\n}";
    return sink.take();
}

}  // namespace document
}  // namespace zunokeymapmanager
