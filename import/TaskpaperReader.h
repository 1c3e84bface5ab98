#pragma once
// TaskPaper lists: projects end with ":", tasks begin with "-", and words of
// the form @tag or @tag(arguments) become attributes of the item.
#include <string>
#include <string_view>
#include <vector>

#include "TabbedTextReader.h"

class TaskpaperReader : public TabbedTextReader {
public:
    using TabbedTextReader::TabbedTextReader;

    // Any TaskPaper text is long enough.
    bool TooShort(size_t, size_t) const override { return false; }
    void ProcessNote(Node* note, std::string_view line) override;

    static bool IsProject(std::string_view line);
    static bool IsTask(std::string_view line);

    // The next tag of `line` from `position` on: its start, or npos. A tag is
    // "@" at the start of a word followed by a name.
    static size_t NextTag(std::string_view line, size_t position);
    // Takes the tag at `start` out of `line`, answering its whole text
    // ("@due(2024-05-01)").
    static std::string ExtractTag(std::string& line, size_t start);
    // The name and the arguments of a tag's text.
    static std::string Tag(std::string_view tag);
    static std::string Arguments(std::string_view tag);
    // Sets the attributes the tags stand for.
    static void ProcessTags(Node* note, const std::vector<std::string>& tags);
};
