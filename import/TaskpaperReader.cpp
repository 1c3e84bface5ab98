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
    size_t end = start + 1;
    while (end < line.size() && IsTagCharacter(line[end]))
        ++end;
    if (end < line.size() && line[end] == '(') {
        size_t close = line.find(')', end);
        end = close == std::string::npos ? line.size() : close + 1;
    }
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
    std::vector<std::string> tags;
    for (size_t at = NextTag(line, 0); at != std::string::npos; at = NextTag(line, at))
        tags.push_back(ExtractTag(line, at));
    std::string name(Trim(line));
    if (IsProject(name))
        name.pop_back();
    note->SetName(std::string(Trim(name)));
    ProcessTags(note, tags);
}
