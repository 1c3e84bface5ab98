#pragma once
// The one place where export turns a note's text into HTML (through
// HTMLMarkup) and encodes text for HTML (through HTMLEncoder). Templates
// call it through ExportTemplate::DoTextMarkup.
#include <string>

class ExportTemplate;
class Node;

class NoteTextMarkup {
public:
    // The note's text as HTML for the page of the template's exporting
    // note, cut at `limit` characters when above 0. The text is marked up
    // as if the note's "HTMLEntities" were off (the markup encodes the text
    // itself); the note is not changed.
    static std::string ToHTML(Node* node, ExportTemplate* exportTemplate, int limit);
    // HTMLEncoder's entity filter.
    static std::string EscapeText(const std::string& text, bool keepAmpersands, bool encodeAngles);
};
