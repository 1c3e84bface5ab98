#pragma once
// Outlines written as lines indented by tabs: one note per line, each line's
// depth its count of leading tabs.
#include <string>
#include <string_view>
#include <vector>

class ImportManager;
class Node;

class TabbedTextReader {
public:
    explicit TabbedTextReader(char lineEnd = '\n') : lineEnd(lineEnd) {}
    virtual ~TabbedTextReader() = default;

    // Lines and characters per line that CanRead looks at.
    static constexpr size_t kMaxLines = 1000;
    static constexpr size_t kMaxLineLength = 1000;

    // Whether the text reads as an outline with this reader's line end: no
    // line goes more than one level deeper than the one before, and the
    // outline is not too short or too thin.
    bool CanRead(std::string_view text) const;
    // Makes a note per line under the note of the depth above it, all under
    // `container`. Answers the number of notes made.
    size_t Parse(std::string_view text, ImportManager& manager, Node* container);

    // Fewer than 3 lines, or fewer indented lines than a third of them.
    virtual bool TooShort(size_t lines, size_t indentedLines) const;
    // Names the note from its line (its leading tabs already gone).
    virtual void ProcessNote(Node* note, std::string_view line);

    // The depth of a line (its leading tabs) and the line after them.
    static size_t ParseLine(std::string_view line, std::string_view& rest);
    static bool IsTab(char c) { return c == '\t'; }
    // The prefix an outliner writes before each item ("- ", "• ", "◦ ", "▸ ",
    // "▾ "): its length in bytes, or 0.
    static size_t HasOmniOutlinerPrefix(std::string_view line);

protected:
    // The lines of the text at this reader's line end; a return before a
    // newline is dropped.
    std::vector<std::string_view> Lines(std::string_view text, size_t limit) const;
    // Removes the notes that stayed without name, text and children.
    void Cleanup(Node* container, ImportManager& manager);

    char lineEnd;
};
