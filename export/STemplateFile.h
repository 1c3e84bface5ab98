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
    // Template files larger than this are not read.
    static constexpr long kMaxFileSize = 4L << 20;

    // The text of the built-in template, or "" when there is none. A name
    // beginning with "/" is the path of a template file (see
    // ReadTemplateFile).
    static std::string BuiltInTemplate(const std::string& name);
    // The text of the template file at `path`: "" unless outside programs
    // are allowed (CommandTrust), the path is a regular file and it is no
    // larger than kMaxFileSize.
    static std::string ReadTemplateFile(const std::string& path);
    // The templates a user may choose, in order.
    static std::vector<std::string> Names();
    // The page extension a built-in template writes (".html", ".md"), or
    // "" for a template that writes one file.
    static std::string ExtensionFor(const std::string& name);
};
