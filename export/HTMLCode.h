#pragma once
// A text with tags placed at character positions, and the writing out of it.
//
// Positions count UTF-16 code units, as the styled text and the anchors of
// text links do. The tags at one position are kept as two lists: the closing
// tags of stretches that end there, written first, and then the opening tags
// of stretches that begin there. Stretches nest by their bounds: at one
// position the longer stretch opens first and the one opened later closes
// first. Between stretches with the same bounds, `Enclose` wraps what is
// already placed and `Insert` goes inside it. The positions holding tags form a balanced tree of pieces (a map), so
// that no text, however many tags it gets, makes a deep structure.
#include <deque>
#include <map>
#include <string>

#include "HTMLEncoder.h"

class Node;

class HTMLMarkupTag {
public:
    HTMLMarkupTag(std::string text, int position, bool open) : text(std::move(text)), position(position), open(open) {}

    const std::string& AsString() const { return text; }
    int GetPosition() const { return position; }
    void SetPosition(int p) { position = p; }
    bool IsOpenTag() const { return open; }
    // Characters of the text, from the tag's position, that the tag replaces.
    int Skip() const { return skip; }
    void Skip(int count) { skip = count < 0 ? 0 : count; }
    // The position of the other end of the stretch the tag belongs to (its
    // own position for a single tag).
    int Partner() const { return partner; }
    void SetPartner(int p) { partner = p; }

private:
    std::string text;
    int position;
    bool open;
    int skip = 0;
    int partner = position;
};

class TagList : public std::deque<HTMLMarkupTag> {
public:
    void Write(std::string& out) const;
    // The largest skip count of the list's tags.
    int Skip() const;
};

class HTMLCode {
public:
    // With `entities`, the text is written through HTMLEncoder::EntityFilter
    // (angle brackets encoded when `encodeAngles`); otherwise as it stands.
    HTMLCode(std::u16string text, bool entities, bool encodeAngles);

    const std::u16string& Text() const { return text; }
    // The end of the text that is written; tags beyond it are left out and
    // stretches that cross it are closed at it.
    int End() const { return last; }
    void SetLast(int position);

    // Places `open` and `close` inside the tags already at their positions.
    void Insert(const HTMLMarkupTag& open, const HTMLMarkupTag& close);
    // Places `open` and `close` around the tags already at their positions.
    void Enclose(const HTMLMarkupTag& open, const HTMLMarkupTag& close);
    // One tag among the opening or closing tags of its position (by
    // IsOpenTag), after those there (`atEnd`) or before them.
    void Add(const HTMLMarkupTag& tag, bool atEnd);

    // Writes the text with every tag in place.
    void Generate(std::string& out) const;
    // Writes the text from `from` for `length` code units.
    void Export(std::string& out, int from, int length) const;
    void ForNode(const Node* n) { node = n; }
    const Node* GetNode() const { return node; }
    // The code for a note, with entities as set.
    std::string ToHTML(const Node* n);
    // The code for a note with the text as it stands, whatever the entity flags.
    std::string ToString(const Node* n);

    // The number of positions holding tags.
    size_t PieceCount() const { return pieces.size(); }

private:
    struct Piece {
        TagList endTags;     // closing tags of stretches ending here
        TagList startTags;   // opening tags of stretches starting here
    };
    // Clips a stretch to the written text; false when nothing of it is left.
    bool Clip(int& start, int& end) const;
    Piece& PieceAt(int position) { return pieces[position]; }
    void Place(const HTMLMarkupTag& open, const HTMLMarkupTag& close, bool around);

    std::u16string text;
    int last;
    bool entities;
    bool encodeAngles;
    const Node* node = nullptr;
    std::map<int, Piece> pieces;
    // State of the "<code" tracking between stretches of one generation.
    mutable TagState codeState;
};
