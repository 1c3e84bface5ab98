#pragma once
// The templates that come with the program, compiled in. A document's own
// template notes of the same name come first (see ExportTemplate::Named).
//
//   html              a page per note: title, text, the way up, children,
//                     links in and out (HTML5)
//   markdown          a Markdown file per note, with links to its children
//   outline           the whole document as one indented text outline
//   opml              the whole document as one OPML file
//
// Names ending in "-item" are the per-note parts the others include.
#include <string>
#include <vector>

class STemplateFile {
public:
    // The text of the built-in template, or "" when there is none. Names
    // beginning with "/" are file paths, which a document may not read:
    // they give "" here.
    static std::string BuiltInTemplate(const std::string& name);
    // The templates a user may choose, in order.
    static std::vector<std::string> Names();
    // The page extension a built-in template writes (".html", ".md"), or
    // "" for a template that writes one file.
    static std::string ExtensionFor(const std::string& name);
};
