#include "RylDocumentOpener.h"

#include <filesystem>

#include "Hypertext.h"
#include "Node.h"

std::string RylDocumentOpener::DocumentName(const std::string& path) {
    return std::filesystem::path(path).stem().string();
}

void RylDocumentOpener::prepare() {
    if (!hypertext || !hypertext->Root())
        return;
    // Where the document lies, as action code's document(...) tells it.
    std::error_code failed;
    std::filesystem::path where = std::filesystem::absolute(path, failed);
    hypertext->SetDefaultPathname(failed ? path : where.lexically_normal().string());
    std::string name = DocumentName(path);
    if (name.empty())
        return;
    bool dontRename = hypertext->DontRename();
    hypertext->DontRename(true);
    hypertext->Root()->SetName(name);
    hypertext->DontRename(dontRename);
}
