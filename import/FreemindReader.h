#pragma once
// Reads a Freemind mind map: the "node" elements under "map" become notes,
// nested as they nest, with their colours, fonts and rich content.
#include <string>
#include <string_view>
#include <vector>

#include "XMLReader.h"

class ImportManager;
class Node;

class FreemindReader : public XMLReader {
public:
    FreemindReader(ImportManager& manager, Node* container);

    // Reads the text; answers false with ErrorMessage set when it is no map.
    bool Read(std::string_view text);
    size_t Count() const { return made; }

    // The text of an HTML fragment: character data, with a line break after
    // each paragraph, line break, list item, heading or division.
    static std::string ToText(std::string_view html);

protected:
    bool StartItem(XMLItem* item) override;
    bool EndItem(XMLItem* item) override;
    bool CapturesRaw(std::string_view name, int depth) const override { return name == "richcontent"; }

private:
    Node* DoOutline(XMLItem* item, Node* parent, Node* previous);
    void DoFont(XMLItem* item, Node* note);
    void DoRichContent(XMLItem* item, Node* note);

    ImportManager& manager;
    Node* container;
    std::vector<Node*> parents;
    std::vector<Node*> last;
    // The depth of each note element still open, matching parents[1...].
    std::vector<int> depths;
    size_t made = 0;
    long row = 0;
};
