#pragma once
// Notes of the kinds a document file names "agent" and "adornment". What
// such notes do (an agent's query, an adornment's place on the map) is the
// business of the layers above the core; here they keep their kind, so that
// IsAgent, IsAdornment, AdornmentCount and the file see them as what they
// are, and a document does not lose its agents with one save.
#include <string>
#include <string_view>

#include "Node.h"

class KindNode : public Node {
public:
    enum class Kind : unsigned char { kAgent, kAdornment };

    // The kind a note element's name stands for; false for "item" and any
    // other name.
    static bool KindOfElement(std::string_view elementName, Kind& kind);

    // As Node::CreateForReading, for a note of `kind`.
    static Node* CreateForReading(Kind kind, Node* parent, Node* after, const uint32_t* fileID = nullptr,
                                  const std::string* fileCreator = nullptr, size_t expectedValues = 0);

    Node* Clone(unsigned char withLinks) const override;
    Kind GetKind() const { return kind; }

    const char* XMLKind() const override { return kind == Kind::kAgent ? "agent" : "adornment"; }
    bool IsAgent() const override { return kind == Kind::kAgent; }
    bool IsAdornment() const override { return kind == Kind::kAdornment; }
    // Adornments lie under notes on the map: they hold no notes and no links,
    // and are sticky when their "Sticky" says so.
    bool CanReceiveChildren() const override { return kind != Kind::kAdornment; }
    bool CanLink() const override { return kind != Kind::kAdornment; }
    bool IsSticky() const override;

    // An adornment's picture on the map, as PNG bytes; "" when it has none.
    // Kept as read so that a save gives it back.
    const std::string& Picture() const { return picture; }
    void SetPicture(std::string png) { picture = std::move(png); }

private:
    KindNode(Kind kind, Node* parent, Node* after) : Node(parent, after, true), kind(kind) {}
    KindNode(const KindNode& source, unsigned char withLinks) : Node(source, withLinks), kind(source.kind), picture(source.picture) {}

    Kind kind;
    std::string picture;
};
