#include "TaskpaperReader.h"

#include <cctype>

#include "DateTranslator.h"
#include "Node.h"

namespace {

bool IsTagCharacter(char c) {
    unsigned char u = static_cast<unsigned char>(c);
    return std::isalnum(u) || c == '-' || c == '_' || c == '.' || u >= 0x80;
}

std::string_view Trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
        s.remove_suffix(1);
    return s;
}

// Where the tag that begins at `start` ends: after its name, and after its
// arguments when a "(" follows the name (to the line's end when unclosed).
size_t TagEnd(std::string_view line, size_t start) {
    size_t end = start + 1;
    while (end < line.size() && IsTagCharacter(line[end]))
        ++end;
    if (end < line.size() && line[end] == '(') {
        size_t close = line.find(')', end);
        end = close == std::string_view::npos ? line.size() : close + 1;
    }
    return end;
}

} // namespace

bool TaskpaperReader::IsProject(std::string_view line) { return !line.empty() && line.back() == ':'; }

bool TaskpaperReader::IsTask(std::string_view line) {
    size_t i = 0;
    while (i < line.size() && IsTab(line[i]))
        ++i;
    return i < line.size() && line[i] == '-';
}

size_t TaskpaperReader::NextTag(std::string_view line, size_t position) {
    for (size_t i = line.find('@', position); i != std::string_view::npos; i = line.find('@', i + 1)) {
        bool wordStart = i == 0 || line[i - 1] == ' ' || line[i - 1] == '\t';
        if (wordStart && i + 1 < line.size() && IsTagCharacter(line[i + 1]))
            return i;
    }
    return std::string_view::npos;
}

std::string TaskpaperReader::ExtractTag(std::string& line, size_t start) {
    size_t end = TagEnd(line, start);
    std::string tag = line.substr(start, end - start);
    // The blank before the tag goes with it.
    size_t from = start > 0 && line[start - 1] == ' ' ? start - 1 : start;
    line.erase(from, end - from);
    return tag;
}

std::string TaskpaperReader::Tag(std::string_view tag) {
    if (!tag.empty() && tag.front() == '@')
        tag.remove_prefix(1);
    return std::string(tag.substr(0, tag.find('(')));
}

std::string TaskpaperReader::Arguments(std::string_view tag) {
    size_t open = tag.find('(');
    if (open == std::string_view::npos)
        return "";
    std::string_view rest = tag.substr(open + 1);
    if (!rest.empty() && rest.back() == ')')
        rest.remove_suffix(1);
    return std::string(Trim(rest));
}

void TaskpaperReader::ProcessTags(Node* note, const std::vector<std::string>& tags) {
    std::string others;
    for (const std::string& tag : tags) {
        std::string name = Tag(tag), arguments = Arguments(tag);
        if (name == "done") {
            note->SetBoolean("Checked", true);
            note->SetBoolean("NameStrike", true);
            if (!arguments.empty())
                note->SetTime("EndDate", DateTranslator::For(arguments));
        } else if (name == "due") {
            note->SetTime("DueDate", DateTranslator::For(arguments));
        } else if (name == "start") {
            note->SetTime("StartDate", DateTranslator::For(arguments));
        } else {
            if (!others.empty())
                others += ";";
            others += name;
        }
    }
    if (!others.empty())
        note->Set("Tags", others);
}

void TaskpaperReader::ProcessNote(Node* note, std::string_view text) {
    std::string line(Trim(text));
    if (IsTask(line)) {
        line.erase(0, 1);
        line = std::string(Trim(line));
    }
    // The tags are taken out in one pass, each with the blank before it, as
    // ExtractTag would take them one by one; erasing them one by one would
    // cost the line's length for each tag.
    std::vector<std::string> tags;
    std::string kept;
    size_t pos = 0;
    for (size_t at = NextTag(line, 0); at != std::string::npos;) {
        if (at > pos) {
            size_t from = line[at - 1] == ' ' ? at - 1 : at;
            kept.append(line, pos, from - pos);
        } else if (!kept.empty() && kept.back() == ' ') {
            kept.pop_back();
        }
        size_t end = TagEnd(line, at);
        tags.push_back(line.substr(at, end - at));
        pos = end;
        // Right after a tag, what was kept before it decides whether an "@"
        // begins a word; further on, the line itself does.
        bool wordStart = kept.empty() || kept.back() == ' ' || kept.back() == '\t';
        if (wordStart && pos + 1 < line.size() && line[pos] == '@' && IsTagCharacter(line[pos + 1]))
            at = pos;
        else
            at = pos < line.size() ? NextTag(line, pos + 1) : std::string::npos;
    }
    kept.append(line, pos, std::string::npos);
    std::string name(Trim(kept));
    if (IsProject(name))
        name.pop_back();
    note->SetName(std::string(Trim(name)));
    ProcessTags(note, tags);
}
