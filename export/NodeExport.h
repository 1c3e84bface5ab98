#pragma once
// The per-note rules of export: which notes make pages, and the file name a
// note asks for.
#include <string>

#include "NodeFacade.h"

class NodeExport : public NodeFacade {
public:
    using NodeFacade::NodeFacade;

    // Not an adornment; a separator only with exportable children, or with
    // text and a title.
    bool IsExportable() const;
    // Exportable, not the root, and not "HTMLDontExport".
    bool CanBeExported() const;
    bool CanExportChildren() const;
    // CanBeExported, and every ancestor below the root exports its children.
    bool WillBeExported() const;
    bool HasExportableChildren() const;

    // The name made file-safe: punctuation, controls, bytes of 128 and over
    // and white space become one spacer per run; cut to the maximum length
    // (at least 8).
    std::string DefaultFileName() const;
    // "HTMLExportFileName" when set, else DefaultFileName.
    std::string ExportFileName() const;
    // "HTMLExportExtension" with a leading "." (empty stays empty).
    std::string GetHTMLExtension() const;
    std::string FileName() const { return ExportFileName() + GetHTMLExtension(); }
    // The file name length limit: "HTMLFileNameMaxLength", 8 for values below 9.
    long MaxLength() const;
    // "1.2.3": the note's place among its siblings at each level.
    std::string GetSectionNumber() const;

    // The rules above on values already read, for callers that read many
    // notes through attributes they looked up once.
    static std::string FileSafeName(const std::string& name, const std::string& spacer, bool lowerCase, long limit);
    static long LimitFrom(long maxLength) { return maxLength < 9 ? 8 : maxLength; }
    static std::string ExtensionFrom(std::string extension);
};
