#include "KindNode.h"

bool KindNode::KindOfElement(std::string_view elementName, Kind& kind) {
    if (elementName == "agent") {
        kind = Kind::kAgent;
        return true;
    }
    if (elementName == "adornment") {
        kind = Kind::kAdornment;
        return true;
    }
    return false;
}

Node* KindNode::CreateForReading(Kind kind, Node* parent, Node* after, const uint32_t* fileID,
                                 const std::string* fileCreator, size_t expectedValues) {
    if (!parent || !parent->GetHypertext())
        return nullptr;
    return FinishForReading(new KindNode(kind, parent, after), parent, after, fileID, fileCreator, expectedValues);
}

Node* KindNode::Clone(unsigned char withLinks) const { return new KindNode(*this, withLinks); }

bool KindNode::IsSticky() const { return kind == Kind::kAdornment && GetBoolean("Sticky"); }
