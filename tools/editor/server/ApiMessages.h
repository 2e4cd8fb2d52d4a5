//
// ApiMessages.h
//
// The small pieces every route of the editor's HTTP API is made of: answers
// in JSON, and request bodies read strictly, each refusal an answer that
// says what was wrong.
//

#ifndef ZUNO_KEYMAP_EDITOR_APIMESSAGES_H
#define ZUNO_KEYMAP_EDITOR_APIMESSAGES_H

#include <string>
#include <vector>

#include <Poco/Dynamic/Var.h>
#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>
#include <zuno-keymapmanager/keymapmanager.h>

#include "EditorSession.h"
#include "HttpMessage.h"

namespace zunokeymap {
namespace editor {

/// The Content-Type of a JSON answer.
extern const char* const kJsonType;

/// An object that writes its members in the order they were set.
Poco::JSON::Object::Ptr NewObject();

/// An answer of `status` with `body` of `type`.
HttpResponse Respond(int status, const std::string& type, std::string body);
/// An answer of `status` with `value` as JSON.
HttpResponse RespondJson(int status, const Poco::Dynamic::Var& value);
/// {"status", "error"}, with the members of `extra` before them.
HttpResponse RespondError(int status, const std::string& message,
                          const Poco::JSON::Object::Ptr& extra = nullptr);

/// A load's diagnostic as the page reads it.
Poco::JSON::Object::Ptr DiagnosticJson(const zunokeymapmanager::LoadDiagnostic& diagnostic);
/// The recovery files as the page lists them: {"n", "path", "time", "bytes"}.
Poco::JSON::Array::Ptr RecoveryJson(const std::vector<EditorSession::Recovery>& files);

/// A JSON body, or the 400 that says where it stops being JSON.
bool ParseBody(const std::string& body, Poco::Dynamic::Var& value, HttpResponse& error);
/// The array member `name` of a body that is a JSON object, in `array` (null
/// when the body has none); false, with the 400 to give, when it is not JSON.
bool ReadBodyArray(const std::string& text, const char* name, Poco::JSON::Object::Ptr& object,
                   Poco::JSON::Array::Ptr& array, HttpResponse& error);
/// The strings of `array`; false when it is null or holds anything else.
bool ReadLines(const Poco::JSON::Array::Ptr& array, std::vector<std::string>& lines);
/// The body of a macro request, {"lines": [strings]}; false with the answer to give.
bool ReadMacroLines(const std::string& text, std::vector<std::string>& lines, HttpResponse& error);
/// A JSON integer from `least` to below 2^53, where every integer is exact in
/// the page's numbers (request numbers, versions, recovery numbers).
bool ReadWhole(const Poco::Dynamic::Var& value, long long least, long long& whole);
/// A 32-bit integer written in `text` (decimal, or 0x hexadecimal), whole.
bool ReadInt(const std::string& text, int& value);
/// {"n": N} naming a recovery file (with `all`, {} for all of them: -1);
/// false with the answer to give.
bool ReadRecoveryNumber(const std::string& text, bool all, int& n, HttpResponse& error);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_APIMESSAGES_H
