#include "HTExportPath.h"

#include "Node.h"
#include "NodeExport.h"

Node* HTExportPath::Next(const Node* note) const {
    for (Node* at = HTPath::Next(note); at; at = HTPath::Next(at))
        if (NodeExport(at).CanBeExported())
            return at;
    return nullptr;
}

Node* HTExportPath::Previous(const Node* note) const {
    for (Node* at = HTPath::Previous(note); at; at = HTPath::Previous(at))
        if (NodeExport(at).CanBeExported())
            return at;
    return nullptr;
}

Node* HTExportPath::NextSibling(const Node* note) const {
    for (Node* at = HTPath::NextSibling(note); at; at = HTPath::NextSibling(at))
        if (NodeExport(at).CanBeExported())
            return at;
    return nullptr;
}

Node* HTExportPath::PrevSibling(const Node* note) const {
    for (Node* at = HTPath::PrevSibling(note); at; at = HTPath::PrevSibling(at))
        if (NodeExport(at).CanBeExported())
            return at;
    return nullptr;
}
