#pragma once
// Turns what the user pastes, drops or reads from a file into notes under a
// target note. The manager looks at a source (the flavours of a paste or a
// drop), picks a route, and keeps what the readers made: the notes, their
// count, and the one line that tells why nothing could be read.
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "NodeVector.h"

class Hypertext;
class Importable;
class Node;

// The flavours of a paste or a drop: a type and its data each.
class ImportSource {
public:
    void Add(std::string type, std::string data) { flavours.emplace_back(std::move(type), std::move(data)); }
    const std::string* Find(const std::string& type) const;
    bool Has(const std::string& type) const { return Find(type) != nullptr; }

private:
    std::vector<std::pair<std::string, std::string>> flavours;
};

class ImportManager {
public:
    // Flavour types of a source.
    static constexpr const char* kString = "public.utf8-plain-text";
    static constexpr const char* kRTF = "public.rtf";
    static constexpr const char* kURL = "public.url";
    static constexpr const char* kFileURL = "public.file-url";
    static constexpr const char* kVCard = "public.vcard";
    static constexpr const char* kImage = "public.image";
    static constexpr const char* kDraggedNote = "com.morvent.rylvane.draggedNote";
    static constexpr const char* kDraggedPath = "com.morvent.rylvane.draggedPath";
    static constexpr const char* kStamp = "com.morvent.rylvane.stamp";
    // Other applications' flavours, which only the platform's own bridges read.
    static constexpr const char* kDevonThinkURL = "com.devon-technologies.think.url";
    static constexpr const char* kDevonThinkSelection = "com.devon-technologies.think.selection";
    static constexpr const char* kDeliciousMonster = "com.delicious-monster.library";
    static constexpr const char* kOmniFocus = "com.omnigroup.omnifocus.item";
    static constexpr const char* kOmniOutliner = "com.omnigroup.omnioutliner.rows";
    static constexpr const char* kMailMessage = "com.apple.mail.message";
    static constexpr const char* kCalendarEvent = "com.apple.ical.event";

    // Notes are not made deeper than this below the root, so that the
    // document stays readable and its notes are not nested without end.
    static constexpr int kMaxNoteDepth = 1000;

    // Notes go under `target` (the root of its document when it is null),
    // after the children it has.
    ImportManager(Hypertext* hypertext, Node* target);
    ~ImportManager();
    ImportManager(const ImportManager&) = delete;
    ImportManager& operator=(const ImportManager&) = delete;

    // Whether a source holds anything this manager could read.
    bool CanPaste(const ImportSource& source) const;
    // The route of a paste or a drop; answers whether anything was made.
    bool Import(const ImportSource& source);
    bool ImportFiles(const std::vector<std::string>& paths);
    bool ImportIt(Importable& importable);
    // The text as one plain note, named from its text.
    bool ImportStructuredText(const std::string& text);
    bool ImportURL(const std::string& url);
    bool ImportItems(const std::string& type, const std::string& data);

    // Makes a note for a reader: placed after `after` under `parent` (the
    // target when null) and counted. Readers pass the note they made last
    // under the same parent, so that a long list is not walked again.
    Node* MakeNote(const std::string& name, Node* parent, Node* after);
    // A reader's note that is not kept after all: deleted, and uncounted
    // with its descendants.
    void Discard(Node* note);
    // A user attribute for an imported column or field, made when unknown.
    // Answers the attribute's name, or empty when the name cannot be one.
    std::string MakeUserAttribute(const std::string& name, int type);

    // Why the import failed: one line, with the line of the input when known.
    void Fail(const std::string& message, long line = 0);
    // A file with the OPML extension that does not read as OPML: its text
    // becomes one note named "Imported OPML", and the failure is kept.
    void ReportBadOPML(const std::string& text, const std::string& message, long line);
    // Whether a failure keeps what was made (the "Imported OPML" note).
    bool KeepsFailure() const { return keepsFailure; }
    // Takes over the count of a manager used for a part of this import; what
    // the part made is removed when it failed and keeps nothing.
    void Absorb(ImportManager& part);

    // A possible name for the note of a paste, from the text on the source.
    void ChooseName(const std::string& text);
    const std::string& ChosenName() const { return chosenName; }

    bool IsValid() const { return valid; }
    void Validate() { valid = true; }
    bool Failed() const { return !failure.empty(); }
    // "line L: what" or "what".
    std::string FailureMessage() const;
    long FailureLine() const { return failureLine; }
    bool DontCreate() const { return dontCreate; }
    void DontCreate(bool d) { dontCreate = d; }
    bool AllowAdornments() const { return allowAdornments; }
    void AllowAdornments(bool a) { allowAdornments = a; }

    Hypertext* GetHypertext() const { return hypertext; }
    Node* Target() const { return target; }
    // The notes made directly under the target.
    const NodeVector& Targets() const { return targets; }
    // Every note made, containers included.
    size_t CreatedCount() const { return created; }
    // Brings the document's outline order up to date once the readers are done.
    void Finish();

private:
    Hypertext* hypertext;
    Node* target;
    NodeVector targets;
    size_t created = 0;
    // The note made last directly under the target.
    Node* lastUnderTarget = nullptr;
    bool valid = false;
    bool keepsFailure = false;
    bool dontCreate = false;
    bool allowAdornments = false;
    std::string chosenName;
    std::string failure;
    long failureLine = 0;
};
