#include "NodeExport.h"

#include <cctype>

#include "Node.h"
#include "NodeHelpers.h"

bool NodeExport::IsExportable() const {
    if (Invalid() || IsAdornment())
        return false;
    if (!IsSeparator())
        return true;
    return HasExportableChildren() || (NodeText(node).HasText() && !IsUntitled());
}

bool NodeExport::CanBeExported() const {
    if (Invalid() || IsRoot() || !IsExportable())
        return false;
    return !GetBoolean("HTMLDontExport");
}

bool NodeExport::CanExportChildren() const { return Valid() && GetBoolean("HTMLExportChildren"); }

bool NodeExport::WillBeExported() const {
    if (!CanBeExported())
        return false;
    for (Node* up = Father(); up && !up->IsRoot(); up = up->Father())
        if (!NodeExport(up).CanExportChildren())
            return false;
    return true;
}

bool NodeExport::HasExportableChildren() const {
    return AnyChild([](Node* child) { return !child->IsAdornment(); });
}

long NodeExport::MaxLength() const { return LimitFrom(GetLong("HTMLFileNameMaxLength")); }

std::string NodeExport::DefaultFileName() const {
    if (Invalid())
        return std::string();
    const Node* original = node->GetOriginal();
    return FileSafeName(Name(), original->GetString("HTMLExportFileNameSpacer"),
                        original->GetBoolean("HTMLFileNameLowerCase"), MaxLength());
}

std::string NodeExport::FileSafeName(const std::string& name, const std::string& spacer, bool lowerCase, long limit) {
    std::string result;
    result.reserve(name.size());
    // A run of odd bytes writes one spacer, before what follows it: a run
    // at the end writes none.
    bool pending = false;
    auto flush = [&] {
        if (pending)
            result += spacer;
        pending = false;
    };
    for (char c : name) {
        if (c == '-' || c == '_') {
            flush();
            result += c;
        } else if (c == '\0') {
            break;
        } else if (std::ispunct(static_cast<unsigned char>(c)) || static_cast<signed char>(c) < 32 ||
                   std::isspace(static_cast<unsigned char>(c))) {
            pending = true;
        } else {
            flush();
            result += lowerCase ? static_cast<char>(std::tolower(static_cast<unsigned char>(c))) : c;
        }
    }
    if (result.size() > static_cast<size_t>(limit))
        result.resize(static_cast<size_t>(limit));
    return result;
}

std::string NodeExport::ExportFileName() const {
    std::string given = GetString("HTMLExportFileName");
    return given.empty() ? DefaultFileName() : given;
}

std::string NodeExport::GetHTMLExtension() const { return ExtensionFrom(GetString("HTMLExportExtension")); }

std::string NodeExport::ExtensionFrom(std::string extension) {
    if (!extension.empty() && extension[0] != '.')
        extension.insert(0, ".");
    return extension;
}

std::string NodeExport::GetSectionNumber() const {
    std::string number;
    for (Node* at = node; at && !at->IsRoot(); at = at->Father()) {
        long place = 1;
        for (Node* elder = at->ElderBrother(); elder; elder = elder->ElderBrother())
            ++place;
        number = std::to_string(place) + (number.empty() ? "" : "." + number);
    }
    return number;
}
