//
// EditorSession.h
//
// What one `zuno-keymap edit` holds: the file it edits, the document as last
// accepted by the library, its check, and what the file looked like when it
// was opened or last saved. The HTTP server serves on several threads, so
// every member function takes the session's lock.
//

#ifndef ZUNO_KEYMAP_EDITOR_EDITORSESSION_H
#define ZUNO_KEYMAP_EDITOR_EDITORSESSION_H

#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <Poco/JSON/Array.h>
#include <zuno-keymapmanager/keymapmanager.h>

#include "EditHistory.h"
#include "EditOperations.h"
#include "SvgRenderer.h"

namespace zunokeymap {
namespace editor {

namespace km = zunokeymapmanager;

class EditorSession {
public:
    /// How the file was found when the session was opened.
    enum class Opened {
        Loaded,      ///< the file loaded through the library
        Missing,     ///< no file: the session starts from the blank document
        Unreadable,  ///< it exists but cannot be read (see error())
        Failed,      ///< it does not load (see diagnostic())
    };

    /// The outcome of save().
    enum class SaveResult {
        Saved,
        Stale,      ///< the page saw an older version of the held document
        Conflict,   ///< the file changed on disk
        WouldLose,  ///< the file holds elements the library does not keep (see lost())
        Failed,
    };

    /// Opens `file` (UTF-8) as a keymap, or, with `joystick`, as a gamepad
    /// keymap. `render` gives the picture's size and background.
    EditorSession(std::string file, bool joystick, render::RenderOptions render);

    Opened opened() const { return opened_; }
    const km::LoadDiagnostic& openDiagnostic() const { return openDiagnostic_; }
    const std::string& file() const { return file_; }
    bool joystick() const { return joystick_; }
    /// The picture's background. Its size is screenSize(): it may turn.
    const render::RenderOptions& renderOptions() const { return render_; }
    /// The picture's width and height, in pixels.
    std::pair<int, int> screenSize() const;
    /// Swaps the picture's width and height: portrait becomes landscape and
    /// back. The document keeps only fractions of the screen, so it is not
    /// changed and nothing is undone.
    void turnScreen();

    /// What the page shows, taken at one moment.
    struct Snapshot {
        std::string text;       ///< the held document in the library's saved form
        std::vector<long> ids;  ///< the session's identifiers of its items
        std::shared_ptr<const km::CheckReport> report;
        std::string svg;  ///< its picture, without the background image
        /// The captions the picture writes, as JSON: for each item
        /// {"marker": caption, "keys": {member path: caption}}.
        std::string captions;
        long version = 0;  ///< counts the changes of the held document
        bool unsaved = false;
        bool canUndo = false;
        bool canRedo = false;
    };
    /// The held document, its check, its picture (when `picture`) and the
    /// state of the history.
    Snapshot snapshot(bool picture) const;

    /// How many pages' last requests are remembered for their retries.
    static constexpr std::size_t kRememberedClients = 64;

    /// What edit() made of a request.
    struct EditAnswer {
        std::vector<EditResult> results;  ///< one for each edit, in order
        bool stale = false;               ///< an older request of its page: not applied
        long long lastSeq = 0;            ///< the page's last request number
    };

    /// Applies the edits `ops` in order (see EditOperations.h; also "undo"
    /// and "redo"), each loaded through the library before the next: an edit
    /// the library does not load, or whose member the check then finds out
    /// of range, is refused and the others still apply. `client` names the
    /// page and `seq` (rising) its request: the last request of each of the
    /// kRememberedClients pages heard from last is remembered, so a retry
    /// after a lost answer gets the first answer's results and is not
    /// applied again, and an older request is not applied at all.
    EditAnswer edit(const Poco::JSON::Array::Ptr& ops, const std::string& client, long long seq);

    /// The items `trigger` fires, by the library's match rules, as
    /// [{"index", "role", "rel_x", "rel_y"}] with the point each touches.
    Poco::JSON::Array::Ptr triggered(const km::KeyTrigger& trigger) const;

    /// The held document in the library's saved form.
    std::string documentText() const;
    /// Whether the held document differs from what was opened or last saved.
    bool unsaved() const;

    /// Loads `text` through the library. On success it becomes the held
    /// document (a step that can be undone); on failure `diagnostic` says why
    /// and nothing changes.
    bool replace(const std::string& text, km::LoadDiagnostic& diagnostic);

    /// Takes the file as it is on disk now: it becomes the held document (a
    /// step that can be undone) and what saves compare with. False, with
    /// `diagnostic`, when it cannot be read or does not load.
    bool reload(km::LoadDiagnostic& diagnostic);

    /// The check of the held document (shared, not copied: reports of large
    /// documents are large).
    std::shared_ptr<const km::CheckReport> check() const;
    /// The picture of the held document.
    std::string renderSvg() const;

    /// Replaces the file by the held document in one step (never writing
    /// into it), unless the file changed on disk since it was opened or last
    /// saved by this session and `force` is false, or the file held elements
    /// the library does not keep and `dropLost` is false, or `expected` (0:
    /// any) is not the held version: then nothing is written. `held` gets
    /// the version after the save.
    SaveResult save(bool force, bool dropLost, long long expected, long long& held,
                    std::string& message);

    /// The held document's version: it moves on every change, reload and save.
    long version() const;

    /// The JSON paths of what the file held when opened that the library
    /// does not keep (unknown item types and members), until a save drops
    /// them.
    std::vector<std::string> lost() const;

    /// With unsaved changes, writes them to a new recovery file and returns
    /// its name; otherwise, or when none could be written, an empty string.
    /// The file is made beside the edited one (NAME.recovery.json, or
    /// NAME.recovery-2.json and so on) when its folder can be written, else
    /// in RecoveryFolder() or the system's temporary folder under a name
    /// that carries a hash of the edited file's full path; never over
    /// anything that exists, with the edited file's permissions and group.
    /// It records that full path beside the document.
    std::string writeRecovery();

    /// A recovery file of an earlier session on this file.
    struct Recovery {
        int n = 0;         ///< its number for the page, the same all session
        std::string path;  ///< where it is
        std::string time;  ///< its last change, UTC: "2026-11-25T19:30:00Z"
        long long bytes = 0;
    };
    /// The recovery files of earlier sessions on this file found when the
    /// session was opened, newest first, but those dismissed or whose work
    /// was opened and saved.
    std::vector<Recovery> recoveries() const;
    /// Their paths, as recoveries() lists them.
    std::vector<std::string> recoveryFiles() const;
    /// The document recovery file `n` keeps; false when it names none.
    bool recoveryText(int n, std::string& text) const;
    /// Takes recovery file `n`'s document as the held document (a step that
    /// can be undone); the file is removed after the next successful save.
    /// False when `n` names none (`diagnostic` not failed) or its document
    /// does not load (`diagnostic` says why).
    bool openRecovery(int n, km::LoadDiagnostic& diagnostic);
    /// Removes recovery file `n` (all of them when `n` is negative) where the
    /// user may, and offers it no more; false when `n` names none.
    bool dismissRecovery(int n);

private:
    void hold(std::unique_ptr<km::KeymapConfig> doc, std::string text);
    /// The findings of the check of fileBytes_ that `held`, the check of
    /// the document loaded from it, lacks.
    std::vector<km::Finding> fileFindings(const km::CheckReport& held) const;
    /// `checked` with carried_ added; mutex_ is held.
    std::shared_ptr<const km::CheckReport> withCarried(
        const std::shared_ptr<const km::CheckReport>& checked) const;
    /// Makes `state` the held document; `doc` is it loaded, `report` its
    /// check when known.
    void commit(HeldState state, std::unique_ptr<km::KeymapConfig> doc,
                std::shared_ptr<const km::CheckReport> report);
    /// commit() of the document doc_ already holds, with mutex_ held.
    void commitLocked(HeldState state, std::shared_ptr<const km::CheckReport> report);
    /// Applies a request's edits; editMutex_ is held.
    std::vector<EditResult> apply(const Poco::JSON::Array::Ptr& ops);
    /// One edit of edit(), on `state` and doc_ (which it changes only when
    /// the edit is taken); `report` is the check of `state` when known.
    EditResult editOne(const Poco::JSON::Object::Ptr& op, HeldState& state,
                       std::shared_ptr<const km::CheckReport>& report);
    /// editOne() for an edit of item `index` alone; false when the whole
    /// document must be loaded to apply it or to say why it is refused.
    bool editItem(const Poco::JSON::Object::Ptr& op, int index, HeldState& state,
                  EditResult& result, std::shared_ptr<const km::CheckReport>& report);
    /// Whether a "set" leaves its member within what the check accepts and
    /// the library keeps. `report` is the check of `state`, made here when
    /// not known; once the edit is accepted, that of `next` (unknown, null,
    /// for anything but a "set").
    bool acceptSet(const Poco::JSON::Object::Ptr& op, EditResult& result, const HeldState& state,
                   const HeldState& next, std::shared_ptr<const km::CheckReport>& report);
    /// Writes the state's text afresh from doc_ when it lags behind.
    void freshen(HeldState& state);
    /// Makes `next` the state, recording `state` in the history when it differs.
    void keep(const Poco::JSON::Object::Ptr& op, HeldState& state, HeldState next);
    std::vector<long> freshIds(std::size_t count);
    /// The state of `doc`, loaded afresh, with new item identifiers; what was
    /// held goes to the history when it differs. editMutex_ is held.
    HeldState freshState(const km::KeymapConfig& doc);
    /// Lists the recovery files of the file, in recovery_.
    void findRecoveries();
    /// Removes the recovery files whose work was opened; mutex_ is held.
    void removeOpenedRecoveries();
    /// The built-in blank document.
    km::KeymapConfig* loadBlank(km::LoadDiagnostic& diagnostic) const;
    km::KeymapConfig* load(const std::string& text, km::LoadDiagnostic& diagnostic) const;

    const std::string file_;
    const bool joystick_;
    render::RenderOptions render_;  // its size is guarded by mutex_, its background never changes
    Opened opened_ = Opened::Loaded;
    km::LoadDiagnostic openDiagnostic_;

    std::mutex editMutex_;  ///< held by whatever changes the document, one at a time
    EditHistory history_;
    long nextId_ = 1;
    bool changed_ = false;  ///< whether the edits of apply() changed the state
    bool stale_ = false;    ///< whether the state's text lags behind doc_ in apply()
    /// The last request of each page heard from, the most recent first.
    struct ClientRequest {
        std::string client;
        long long seq = 0;
        std::vector<EditResult> results;
    };
    std::list<ClientRequest> clients_;

    mutable std::mutex mutex_;
    std::vector<long> ids_;
    long version_ = 1;
    bool canUndo_ = false;
    bool canRedo_ = false;
    std::unique_ptr<km::KeymapConfig> doc_;
    std::string text_;                                ///< doc_ in the saved form
    std::shared_ptr<const km::CheckReport> checked_;  ///< the check of text_
    /// What the page is shown: checked_ with carried_ in it.
    std::shared_ptr<const km::CheckReport> report_;
    /// The findings of the file's check about what the held document no
    /// longer has (dropped members, types), until a save or a reload.
    std::vector<km::Finding> carried_;
    std::string savedText_;  ///< the saved form of what the file holds for us
    bool fileExisted_ = false;
    bool fileWasLink_ = false;  ///< the file was a link when opened or last saved
    std::string fileBytes_;     ///< the file's bytes when opened or last saved
    std::vector<std::string> lost_;
    const std::string fullPath_;  ///< file_'s full path: what recovery files belong to
    struct Found : Recovery {
        long long stamp = 0;  ///< `time` for sorting
        bool opened = false;  ///< its work was taken: removed on the next save
        bool gone = false;    ///< dismissed, or removed once its work was saved
    };
    std::vector<Found> recovery_;  ///< newest first
};

/// Where recovery files go when the edited file's folder cannot be written:
/// a folder in the user's data directory; empty when there is none.
std::string RecoveryFolder();

/// Whether the file name `name` is a recovery file beside its keymap
/// ("NAME.recovery.json", "NAME.recovery-2.json"), not a keymap itself.
bool IsRecoveryName(const std::string& name);

/// `file`'s full path: absolute, its folder's links and ".." resolved.
std::string FullPath(const std::string& file);

/// Reads the whole file `path` (UTF-8); false when it cannot be read.
bool ReadWholeFile(const std::string& path, std::string& bytes);

/// Whether a file (or anything else) exists at `path`.
bool PathExists(const std::string& path);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_EDITORSESSION_H
