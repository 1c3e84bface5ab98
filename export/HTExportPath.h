#pragma once
// Paths as export reads them: the steps through the outline (next,
// previous, siblings) pass over notes that make no page.
#include "HTPath.h"

class HTExportPath : public HTPath {
public:
    using HTPath::HTPath;
    Node* Next(const Node* note) const override;
    Node* Previous(const Node* note) const override;
    Node* NextSibling(const Node* note) const override;
    Node* PrevSibling(const Node* note) const override;
};
