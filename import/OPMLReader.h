#pragma once
// Reads an OPML outline into notes: each "outline" element of the body
// becomes a note, nested as the elements nest. Outlines are made as their
// start tags arrive and dropped when they end, so that a large file is never
// held whole.
#include <string>
#include <string_view>
#include <vector>

#include "XMLReader.h"

class ImportManager;
class Node;

class OPMLReader : public XMLReader {
public:
    // The notes go under `container`.
    OPMLReader(ImportManager& manager, Node* container);

    // Whether the text parses as XML whose root element is "opml" or "OPML".
    static bool IsOPML(std::string_view text);

    // Reads the text; on success the container takes the title and the
    // columns. Answers false with ErrorMessage set when the text is not OPML.
    bool Read(std::string_view text);

    const std::string& Title() const { return title; }
    const std::string& ExpansionState() const { return expansionState; }
    // The user attributes the outlines set, in the order first met.
    const std::vector<std::string>& Columns() const { return columns; }
    size_t Count() const { return made; }

protected:
    bool StartItem(XMLItem* item) override;
    bool EndItem(XMLItem* item) override;

private:
    // A note for an outline element under `parent`, after `previous`.
    Node* DoOutline(XMLItem* item, Node* parent, Node* previous);
    void ImportUserAttribute(Node* note, const std::string& name, const std::string& value);
    void Finish();

    ImportManager& manager;
    Node* container;
    std::vector<Node*> parents;
    std::vector<Node*> last;
    std::vector<std::string> columns;
    std::string title;
    std::string expansionState;
    bool inHead = false;
    bool inBody = false;
    size_t made = 0;
};
