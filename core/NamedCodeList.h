#pragma once
// The document's named code: stamps (action code a user applies to notes by
// name) and macros (code with `$1`, `$2`... standing for arguments). The file
// keeps them in the sections "stamps" (and the older "menu") and "macros",
// which the document carries as read; this part reads those sections when a
// name is first asked for, and again whenever their text has changed.
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Hypertext.h"

class NamedCodeList : public DocumentPart {
public:
    enum class Kind { kStamps, kMacros };

    NamedCodeList(Kind kind, Hypertext* document) : kind(kind), document(document) {}

    // The document's stamps or macros, made on first use; null without a
    // document.
    static NamedCodeList* Stamps(Hypertext* document);
    static NamedCodeList* Macros(Hypertext* document);

    // The code of the entry of that exact name; nothing when there is none.
    std::optional<std::string> Find(const std::string& name);
    // Every entry in file order, as name and code.
    std::vector<std::pair<std::string, std::string>> Entries();

    // The code with `$1`, `$2`... replaced by the arguments (1-based); a
    // placeholder with no argument becomes empty text. "$" not followed by a
    // digit stays as it is. Text that would grow past kMaxText gives ""
    // (arguments may themselves be macro results, so text can double at
    // every call).
    static constexpr size_t kMaxText = size_t(16) << 20;
    static std::string Substitute(const std::string& code, const std::vector<std::string>& arguments);

    // Reads entries from the raw text of a section; entries of a section
    // that does not parse are left out.
    static std::vector<std::pair<std::string, std::string>> Read(Kind kind, const std::string& raw);

private:
    static NamedCodeList* For(Hypertext* document, Kind kind);
    void Refresh();

    const Kind kind;
    Hypertext* const document;
    std::mutex mutex;
    // The section texts the entries were read from.
    std::vector<std::string> readFrom;
    std::vector<std::pair<std::string, std::string>> entries;
};
