#pragma once
// Reads a document file, or a clip, into a Hypertext.
//
// The file is read as a stream: notes are made as their elements begin and
// filled as their children end, so that a large document never exists as a
// whole XML tree in memory. Links, aliases and prototypes wait until every
// note exists.
#include <cstdint>
#include <deque>
#include <istream>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Link.h"
#include "NodeVector.h"
#include "ValueInterner.h"
#include "XMLReader.h"

class Attribute;
class Hypertext;
class Node;

class TalvikReader : public XMLReader {
public:
    // Reading a whole document: `root` is the document's root note, which
    // takes the first note of the file. Pasting a clip (`pasting` true): the
    // notes of the file become children of `root`, after `after`, with new ids.
    TalvikReader(Node* root, Node* after = nullptr, bool pasting = false);
    ~TalvikReader() override;

    // Reads and finishes; answers false with ErrorMessage set on failure.
    bool Read(std::string_view data);
    bool Read(std::istream& stream);
    bool ReadFile(const std::string& path);

    // The deepest note a document may hold, the root being at depth 0: the
    // elements around it (the `rylvane` element and the root's) and the
    // leaves inside it must fit within the parser's limit on nesting.
    static constexpr int kMaxNoteDepth = XMLReader::kMaxDepth - 3;

    // Whether data looks like this format: "<rylvane" within its first 1024 bytes.
    static bool CouldBeXML(std::string_view start);

    int Version() const { return version; }
    int Revision() const { return revision; }
    // The notes made at the top level (for a paste, the pasted notes).
    const NodeVector& TopNodes() const { return topNodes; }
    // Counts of what was read, for reports.
    long NoteCount() const { return noteCount; }
    long LinkCount() const { return linksMade; }
    long DroppedLinkCount() const { return linksDropped; }

protected:
    bool StartItem(XMLItem* item) override;
    bool EndItem(XMLItem* item) override;
    bool CapturesRaw(std::string_view name, int depth) const override;
    // The elements inside a note but its child notes (its attribute values
    // and texts) are read as leaves, straight from the parser.
    bool StartLeaf(const char* name, const char** attributes) override;
    void LeafText(const char* text, int length) override;
    void EndLeaf() override;

private:
    struct NoteState;
    // An attribute named in the file, as this reader resolved it.
    struct NamedAttribute {
        const std::string* name = nullptr;     // the key it is kept under
        const Attribute* attribute = nullptr;  // null: the value is not read
        ValueInterner* interner = nullptr;     // null: the text is set as it is
        bool alias = false;                    // the value makes the note an alias
        // The name that followed this one in the last note that had it.
        NamedAttribute* next = nullptr;
    };
    enum class LeafKind : uint8_t { kSkipped, kAttribute, kText, kRTF, kRTFD, kPicture };

    bool Finish(bool parsed);
    void StartNote(XMLItem* item);
    void EndNote(XMLItem* item);
    // The attribute a note names after `previous` (null: first in the note).
    NamedAttribute& ResolveAttribute(const char* name, NamedAttribute* previous);
    void MakeAttribute(const XMLItem* item, Attribute* parent);
    void MakeColors(const XMLItem* item);
    void MakeLinkTypes(const XMLItem* item);
    void MakePrefs(const XMLItem* item);
    void MakePreview(const XMLItem* item);
    void MakeAliases();
    void MakePrototypes();
    void MakeLinks();
    Node* FindNode(uint32_t id, const std::string& creator) const;
    const Attribute* AttributeNamed(const std::string& name);

    Node* root;
    Node* after;
    bool pasting;
    Hypertext* hypertext;
    int version = 0;
    int revision = 0;
    bool sawRoot = false;
    bool sawFirstNote = false;
    bool previousInhibit = false;
    bool previousDontRename = false;

    std::vector<std::unique_ptr<NoteState>> stack;
    // States of finished notes, ready for the next ones.
    std::vector<std::unique_ptr<NoteState>> spareStates;
    NodeVector topNodes;
    // The notes by the id the file gave them, in file order; sorted by id
    // (keeping that order among equal ids) once every note is read.
    std::vector<std::pair<uint32_t, Node*>> byID;
    // Notes read as aliases, with their ids in the file.
    std::vector<std::pair<Node*, uint32_t>> proxies;
    std::vector<std::pair<Node*, std::string>> prototypeRequests;
    // Links wait here until every note exists; a deque grows without moving
    // what it holds.
    std::deque<LinkRecord> linkRecords;
    // One per attribute: notes that hold the same text share one value.
    std::unordered_map<const Attribute*, ValueInterner> interners;
    // The attribute names met so far. Notes of one document mostly name the
    // same attributes in the same order, so each name remembers the one
    // that came after it, and that guess usually saves the look-up.
    std::unordered_map<std::string, NamedAttribute> namedAttributes;
    NamedAttribute* firstNamed = nullptr;
    // How many local values the last note read ended with.
    size_t lastValueCount = 0;
    // The leaf being read.
    LeafKind leafKind = LeafKind::kSkipped;
    const NamedAttribute* leafAttribute = nullptr;
    std::string* leafTarget = nullptr;
    std::string leafBuffer;
    long noteCount = 0;
    long linksMade = 0;
    long linksDropped = 0;
};
