#pragma once
// Elements that encode their argument's expansion for a place in the
// output: HTML text, URLs, identifiers, quoted strings, OPML attributes.
#include "MarkupExportElement.h"

class MarkupEncode : public MarkupExportElement {
public:
    enum Kind { kEntities, kURL, kIdentifier, kBackslash, kOPML };
    MarkupEncode(std::string name, std::string arguments, Kind kind);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;

    static std::string EncodeQuotes(const std::string& text);
    static std::string EncodeAmpersands(const std::string& text);
    static std::string URLEncode(const std::string& text);
    static std::string IdentifierFor(const std::string& text);
    static std::string BackslashEncode(const std::string& text);
    static std::string OPMLEncode(const std::string& text);

private:
    Kind kind;
};
