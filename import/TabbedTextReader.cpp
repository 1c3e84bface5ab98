#include "TabbedTextReader.h"

#include <algorithm>

#include "ImportManager.h"
#include "Node.h"
#include "NodeHelpers.h"

namespace {

bool IsBlank(std::string_view line) {
    return std::all_of(line.begin(), line.end(), [](char c) { return c == ' ' || c == '\t' || c == '\r'; });
}

} // namespace

std::vector<std::string_view> TabbedTextReader::Lines(std::string_view text, size_t limit) const {
    std::vector<std::string_view> lines;
    size_t start = 0;
    while (start < text.size() && lines.size() < limit) {
        size_t end = text.find(lineEnd, start);
        if (end == std::string_view::npos)
            end = text.size();
        std::string_view line = text.substr(start, end - start);
        if (lineEnd == '\n' && !line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

size_t TabbedTextReader::ParseLine(std::string_view line, std::string_view& rest) {
    size_t depth = 0;
    while (depth < line.size() && IsTab(line[depth]))
        ++depth;
    rest = line.substr(depth);
    return depth;
}

size_t TabbedTextReader::HasOmniOutlinerPrefix(std::string_view line) {
    static const std::string_view prefixes[] = {"- ", "\xE2\x80\xA2 ", "\xE2\x97\xA6 ", "\xE2\x96\xB8 ", "\xE2\x96\xBE "};
    for (std::string_view prefix : prefixes)
        if (line.substr(0, prefix.size()) == prefix)
            return prefix.size();
    return 0;
}

bool TabbedTextReader::TooShort(size_t lines, size_t indentedLines) const {
    return lines < 3 || lines / 3 > indentedLines;
}

bool TabbedTextReader::CanRead(std::string_view text) const {
    size_t lines = 0, indented = 0, previous = 0;
    for (std::string_view line : Lines(text, kMaxLines)) {
        line = line.substr(0, kMaxLineLength);
        if (IsBlank(line))
            continue;
        std::string_view rest;
        size_t depth = ParseLine(line, rest);
        if (depth > previous + 1)
            return false;
        previous = depth;
        ++lines;
        if (depth > 0)
            ++indented;
    }
    return !TooShort(lines, indented);
}

void TabbedTextReader::ProcessNote(Node* note, std::string_view line) {
    line.remove_prefix(HasOmniOutlinerPrefix(line));
    while (!line.empty() && (line.back() == ' ' || line.back() == '\t'))
        line.remove_suffix(1);
    note->SetName(std::string(line));
}

size_t TabbedTextReader::Parse(std::string_view text, ImportManager& manager, Node* container) {
    // parents[d] holds the notes of depth d; last[d] is the one made last there.
    std::vector<Node*> parents{container};
    std::vector<Node*> last{nullptr};
    size_t made = 0;
    for (std::string_view line : Lines(text, static_cast<size_t>(-1))) {
        if (IsBlank(line))
            continue;
        std::string_view rest;
        // A jump of more than one level is taken as one level deeper.
        size_t depth = std::min(ParseLine(line, rest), parents.size() - 1);
        Node* note = manager.MakeNote("", parents[depth], last[depth]);
        if (!note)
            break;
        ++made;
        ProcessNote(note, rest);
        last[depth] = note;
        parents.resize(depth + 1);
        last.resize(depth + 1);
        parents.push_back(note);
        last.push_back(nullptr);
    }
    Cleanup(container, manager);
    return made;
}

void TabbedTextReader::Cleanup(Node* container, ImportManager& manager) {
    // Children before their fathers, so that a father emptied of children
    // is looked at after them; the walk keeps no stack of its own.
    std::vector<Node*> all;
    Node* n = container->Son();
    while (n) {
        all.push_back(n);
        if (n->Son()) {
            n = n->Son();
            continue;
        }
        while (n && n != container && !n->Brother())
            n = n->Father();
        n = (n && n != container) ? n->Brother() : nullptr;
    }
    for (auto it = all.rbegin(); it != all.rend(); ++it) {
        Node* note = *it;
        if (!note->Son() && note->Name().empty() && !NodeText(note).HasText())
            manager.Discard(note);
    }
}
