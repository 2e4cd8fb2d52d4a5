//
// AnswerParts.cpp
//
// Cutting a document, a picture and the captions into their items' pieces.
//

#include "AnswerParts.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "CheckReport.h"
#include "JsonWriter.h"

namespace zunokeymap {
namespace editor {

namespace {

// Skips the JSON string whose '"' is at `i`; gives the index of its closing '"'.
std::size_t skipString(const std::string& text, std::size_t i) {
    for (++i; i < text.size() && text[i] != '"'; ++i) {
        i += text[i] == '\\' ? 1 : 0;
    }
    return i;
}

// The elements of the array whose '[' is at `open`.
TextParts elementsFrom(const std::string& text, std::size_t open) {
    TextParts parts;
    int depth = 0;
    std::size_t start = std::string::npos;
    for (std::size_t i = open + 1; i < text.size(); ++i) {
        const char c = text[i];
        if (c == ' ' || c == '\n' || c == '\r' || c == '\t') {
            continue;
        }
        if (depth == 0 && (c == ',' || c == ']')) {
            if (start != std::string::npos) {
                std::size_t end = i;
                while (end > start && std::strchr(" \n\r\t", text[end - 1]) != nullptr) {
                    --end;
                }
                parts.items.emplace_back(start, end);
                start = std::string::npos;
            }
            if (c == ']') {
                parts.head = parts.items.empty() ? i : parts.items.front().first;
                parts.tail = parts.items.empty() ? i : parts.items.back().second;
                parts.ok = true;
                return parts;
            }
            continue;
        }
        if (start == std::string::npos) {
            start = i;
        }
        if (c == '"') {
            i = skipString(text, i);
        } else if (c == '{' || c == '[') {
            ++depth;
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return parts;
}

}  // namespace

TextParts KeymapItemParts(const std::string& text) {
    int depth = 0;
    std::size_t keyStart = 0;
    std::size_t keyEnd = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            const std::size_t open = i;
            i = skipString(text, i);
            if (depth == 1) {
                keyStart = open + 1;
                keyEnd = i;
            }
        } else if (c == '{' || c == '[') {
            if (depth == 1 && c == '[' && keyEnd - keyStart == 7 &&
                text.compare(keyStart, 7, "keymaps") == 0) {
                return elementsFrom(text, i);
            }
            ++depth;
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return TextParts();
}

TextParts ArrayParts(const std::string& text) {
    const std::size_t open = text.find_first_not_of(" \n\r\t");
    return open != std::string::npos && text[open] == '[' ? elementsFrom(text, open) : TextParts();
}

TextParts PictureParts(const std::string& text) {
    static const char kItems[] = "<g class=\"items\">";
    TextParts parts;
    const std::size_t opened = text.find(kItems);
    if (opened == std::string::npos) {
        return parts;
    }
    int depth = 0;
    std::size_t start = 0;
    for (std::size_t at = text.find('<', opened + sizeof kItems - 1); at != std::string::npos;
         at = text.find('<', at + 1)) {
        const bool closing = text.compare(at, 3, "</g") == 0;
        const bool opening = !closing && text.compare(at, 2, "<g") == 0 &&
                             (at + 2 >= text.size() || std::strchr(" >/", text[at + 2]) != nullptr);
        if (!closing && !opening) {
            continue;
        }
        const std::size_t end = text.find('>', at);
        if (end == std::string::npos) {
            return TextParts();
        }
        if (closing && depth == 0) {
            parts.head = parts.items.empty() ? at : parts.items.front().first;
            parts.tail = at;
            parts.ok = true;
            return parts;
        }
        if (depth == 0) {
            start = at;
        }
        if (closing) {
            --depth;
        } else if (text[end - 1] != '/') {
            ++depth;
        }
        if (depth == 0) {
            parts.items.emplace_back(start, end + 1);
        }
        at = end;
    }
    return TextParts();
}

bool ChangedItems(const std::string& before, const TextParts& was, const std::string& after,
                  const TextParts& is, std::vector<std::size_t>& changed) {
    changed.clear();
    if (!was.ok || !is.ok || was.items.size() != is.items.size() || was.head != is.head ||
        before.compare(0, was.head, after, 0, is.head) != 0 ||
        before.compare(was.tail, std::string::npos, after, is.tail, std::string::npos) != 0) {
        return false;
    }
    for (std::size_t k = 0; k < was.items.size(); ++k) {
        const auto& a = was.items[k];
        const auto& b = is.items[k];
        if (before.compare(a.first, a.second - a.first, after, b.first, b.second - b.first) != 0) {
            changed.push_back(k);
        }
    }
    return true;
}

void AnswerBasis::swap(Shown& shown) {
    std::lock_guard<std::mutex> lock(mutex_);
    std::swap(shown_, shown);
}

namespace {

// {"INDEX": piece, ...} of the pieces at `changed`: JSON values as they
// are, or (`quoted`) texts made JSON strings.
void appendPieces(std::string& body, const std::string& text, const TextParts& parts,
                  const std::vector<std::size_t>& changed, bool quoted) {
    body += '{';
    for (std::size_t k : changed) {
        const auto& piece = parts.items[k];
        body += body.back() == '{' ? "\"" : ",\"";
        body += std::to_string(k);
        body += "\":";
        if (quoted) {
            JsonWriter(body).value(
                std::string_view(text).substr(piece.first, piece.second - piece.first));
        } else {
            body.append(text, piece.first, piece.second - piece.first);
        }
    }
    body += '}';
}

}  // namespace

std::string SnapshotJson(const EditorSession::Snapshot& shot, const std::string& file,
                         const std::vector<EditResult>* results, const AnswerDelta* delta,
                         const std::string* written) {
    std::string head;
    JsonWriter out(head);
    out.beginObject();
    out.key("version").value(shot.version);
    out.key("unsaved").value(shot.unsaved);
    out.key("undo").value(shot.canUndo);
    out.key("redo").value(shot.canRedo);
    out.key("ids").beginArray();
    for (long id : shot.ids) {
        out.value(id);
    }
    out.endArray();
    if (results != nullptr) {
        out.key("results").beginArray();
        for (const EditResult& result : *results) {
            out.beginObject().key("ok").value(result.ok);
            if (!result.error.empty()) {
                out.key("error").value(result.error);
            }
            if (!result.path.empty()) {
                out.key("path").value(result.path);
            }
            if (result.item >= 0) {
                out.key("index").value(result.index).key("item").value(result.item);
            }
            if (!result.unbound.empty()) {
                out.key("unbound").beginArray();
                for (const std::string& member : result.unbound) {
                    out.value(member);
                }
                out.endArray();
            }
            out.endObject();
        }
        out.endArray();
    }
    if (delta == nullptr) {
        out.key("svg").value(shot.svg);
    } else {
        out.key("since").value(delta->since);
    }
    // The object stays open for the members written as they are.
    std::string report;
    if (written == nullptr) {
        JsonWriter reportWriter(report);
        WriteCheckReportJson(reportWriter, file, *shot.report);
    }
    const std::string& reportText = written != nullptr ? *written : report;
    std::string body = std::move(head);
    if (delta != nullptr) {
        body += ",\"svg_items\":";
        appendPieces(body, shot.svg, delta->svg, delta->svgChanged, true);
        body += ",\"captions_items\":";
        appendPieces(body, shot.captions, delta->captions, delta->captionsChanged, false);
        body += ",\"document_items\":";
        appendPieces(body, shot.text, delta->document, delta->documentChanged, false);
    } else {
        body.reserve(body.size() + reportText.size() + shot.text.size() + 32);
        body += ",\"captions\":";
        body += shot.captions.empty() ? "[]" : shot.captions;
        body += ",\"document\":";
        body += shot.text.empty() ? "null" : shot.text;
    }
    if (delta == nullptr || !delta->sameReport) {
        body += ",\"report\":";
        body += reportText;
    }
    body += "}";
    return body;
}

}  // namespace editor
}  // namespace zunokeymap
