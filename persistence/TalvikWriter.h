#pragma once
// Writes a document, or a clip of some of its notes, as XML.
//
// The sections of the root element `rylvane`, in order: attribute
// definitions (`attrib` tree), `colors`, stamps, `linkTypes`, the notes (an
// `item`, `agent` or `adornment` tree from the root), `links`, `macros`,
// `preferences`, `windows`, `utilityWindows`, `searches`, `filters`,
// `gallery`, `badges` and `preview`. Sections that this program keeps but
// does not interpret are written back exactly as they were read.
#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "NodeVector.h"

class Attribute;
class Hypertext;
class Node;
class XMLWriter;

class TalvikWriter {
public:
    static constexpr int kVersion = 2;
    static constexpr int kRevision = 13;

    explicit TalvikWriter(const Hypertext* hypertext);

    // The whole document. Answers false when a write is already under way.
    bool Write(std::ostream& out);
    // The notes (each with its descendants) and the links among them, with
    // ids numbered from 1.
    bool ToClip(std::ostream& out, const NodeVector& nodes);
    // The `windows` section kept from reading, written back as it was.
    std::string WindowData() const;

    // The text of `savedBy`; the application sets its version string here.
    static void SetSavedBy(const std::string& text);
    static const std::string& SavedBy();

    // The local values and text of one note, as written inside its element.
    std::string Prepare(const Node* node) const;

private:
    void Begin(XMLWriter& w, bool withUUID);
    void End(XMLWriter& w);
    void Bump(int) {}
    void WriteAttributes(XMLWriter& w);
    void WriteAttribute(XMLWriter& w, const Attribute* attribute);
    void WriteColorTable(XMLWriter& w);
    void WriteStamps(XMLWriter& w);
    void WriteLinkTypes(XMLWriter& w);
    void WriteNodes(XMLWriter& w, const Node* node);
    void WriteNode(XMLWriter& w, const Node* node);
    void WriteLinks(XMLWriter& w, bool onlyRenumbered);
    void WriteMacros(XMLWriter& w);
    void WritePreferences(XMLWriter& w);
    void WriteWindows(XMLWriter& w);
    void WriteUtilityWindows(XMLWriter& w);
    void WriteSearches(XMLWriter& w);
    void WriteFilters(XMLWriter& w);
    void WriteGallery(XMLWriter& w);
    void WriteRecentBadges(XMLWriter& w);
    void WritePreview(XMLWriter& w);
    void WriteCarried(XMLWriter& w, const std::string& section);
    void PrepareInto(const Node* node, std::string& out) const;
    bool CanWrite(const Node* node) const;
    uint32_t WrittenID(uint32_t id) const;
    void Number(const Node* node);

    const Hypertext* hypertext;
    bool renumbering = false;
    // The notes a clip was asked for; their descendants come along.
    std::vector<const Node*> clipTops;
    std::map<uint32_t, uint32_t> renumbered;
    uint32_t nextNumber = 1;
};
