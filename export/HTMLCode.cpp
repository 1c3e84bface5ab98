#include "HTMLCode.h"

#include <algorithm>

#include "StyledText.h"

void TagList::Write(std::string& out) const {
    for (const HTMLMarkupTag& tag : *this)
        out += tag.AsString();
}

int TagList::Skip() const {
    int skip = 0;
    for (const HTMLMarkupTag& tag : *this)
        skip = std::max(skip, tag.Skip());
    return skip;
}

HTMLCode::HTMLCode(std::u16string t, bool entities, bool encodeAngles)
    : text(std::move(t)), last(static_cast<int>(text.size())), entities(entities), encodeAngles(encodeAngles) {}

void HTMLCode::SetLast(int position) {
    last = std::clamp(position, 0, static_cast<int>(text.size()));
    // Tags past the new end go; closing tags of stretches that cross it
    // were placed at their own positions and move to the end.
    TagList moved;
    for (auto it = pieces.upper_bound(last); it != pieces.end();) {
        for (const HTMLMarkupTag& tag : it->second.endTags)
            if (tag.Partner() < last)
                moved.push_back(tag);
        it = pieces.erase(it);
    }
    // Stretches that would open at the end now hold nothing.
    if (auto it = pieces.find(last); it != pieces.end()) {
        TagList& opening = it->second.startTags;
        for (auto tag = opening.begin(); tag != opening.end();)
            tag = tag->Partner() > last ? opening.erase(tag) : tag + 1;
    }
    if (!moved.empty()) {
        Piece& end = PieceAt(last);
        for (HTMLMarkupTag& tag : moved) {
            tag.SetPosition(last);
            end.endTags.push_back(tag);
        }
    }
}

bool HTMLCode::Clip(int& start, int& end) const {
    if (start < 0)
        start = 0;
    if (end < start)
        end = start;
    if (start > last || (start == last && end > last))
        return false;
    if (end > last)
        end = last;
    return true;
}

void HTMLCode::Place(const HTMLMarkupTag& open, const HTMLMarkupTag& close, bool around) {
    int start = open.GetPosition();
    int end = close.GetPosition();
    if (!Clip(start, end))
        return;
    HTMLMarkupTag first = open;
    first.SetPosition(start);
    first.SetPartner(end);
    HTMLMarkupTag second = close;
    second.SetPosition(end);
    second.SetPartner(start);
    // Opening tags run from the stretch that ends last to the one that ends
    // first; a stretch that encloses goes before those of the same end.
    TagList& opening = PieceAt(start).startTags;
    auto at = std::find_if(opening.begin(), opening.end(), [&](const HTMLMarkupTag& tag) {
        return around ? tag.Partner() <= end : tag.Partner() < end;
    });
    opening.insert(at, first);
    // Closing tags run from the stretch that began last to the one that
    // began first; a stretch that encloses goes after those of the same start.
    TagList& closing = PieceAt(end).endTags;
    at = std::find_if(closing.begin(), closing.end(), [&](const HTMLMarkupTag& tag) {
        return around ? tag.Partner() < start : tag.Partner() <= start;
    });
    closing.insert(at, second);
}

void HTMLCode::Insert(const HTMLMarkupTag& open, const HTMLMarkupTag& close) { Place(open, close, false); }

void HTMLCode::Enclose(const HTMLMarkupTag& open, const HTMLMarkupTag& close) { Place(open, close, true); }

void HTMLCode::Add(const HTMLMarkupTag& tag, bool atEnd) {
    int position = std::max(tag.GetPosition(), 0);
    if (position > last)
        return;
    HTMLMarkupTag placed = tag;
    placed.SetPosition(position);
    Piece& piece = PieceAt(position);
    TagList& list = tag.IsOpenTag() ? piece.startTags : piece.endTags;
    if (atEnd)
        list.push_back(placed);
    else
        list.push_front(placed);
}

void HTMLCode::Export(std::string& out, int from, int length) const {
    if (length <= 0 || from < 0 || from >= static_cast<int>(text.size()))
        return;
    std::string utf8 = Utf16ToUtf8(std::u16string_view(text).substr(from, length));
    if (entities) {
        out += HTMLEncoder::EntityFilter(utf8, false, encodeAngles, codeState);
        return;
    }
    // Attachment characters stand for pictures and never reach the page.
    static const std::string attachment = "\xEF\xBF\xBC";
    for (size_t i = utf8.find(attachment); i != std::string::npos; i = utf8.find(attachment, i))
        utf8.erase(i, attachment.size());
    out += utf8;
}

void HTMLCode::Generate(std::string& out) const {
    codeState = TagState();
    int position = 0;   // the next character to write
    for (const auto& [at, piece] : pieces) {
        if (at > last)
            break;
        if (at > position) {
            Export(out, position, at - position);
            position = at;
        }
        piece.endTags.Write(out);
        piece.startTags.Write(out);
        int skip = std::max(piece.endTags.Skip(), piece.startTags.Skip());
        position = std::max(position, std::min(at + skip, last));
    }
    if (last > position)
        Export(out, position, last - position);
}

std::string HTMLCode::ToHTML(const Node* n) {
    ForNode(n);
    std::string out;
    out.reserve(text.size() + text.size() / 5);
    Generate(out);
    return out;
}

std::string HTMLCode::ToString(const Node* n) {
    bool saved = entities;
    entities = false;
    std::string out = ToHTML(n);
    entities = saved;
    return out;
}
