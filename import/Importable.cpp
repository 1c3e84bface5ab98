#include "Importable.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "FreemindReader.h"
#include "ImportManager.h"
#include "ImportableText.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "HexEscapes.h"
#include "VCard.h"

namespace fs = std::filesystem;

namespace {

std::string Lower(std::string s) {
    for (char& c : s)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// Files larger than this are not read: an import of that size is a mistake.
constexpr std::uintmax_t kMaxFileSize = 1ull << 30;

} // namespace

// ---------------------------------------------------------------- Importable

std::unique_ptr<Importable> Importable::Create(const std::string& data, const std::string& type) {
    if (type == ImportManager::kVCard)
        return std::make_unique<ImportableVCard>(data);
    if (type == ImportManager::kRTF)
        return std::make_unique<ImportableRTF>(data);
    if (type == ImportManager::kFileURL)
        return CreateForFileURL(data);
    if (type == ImportManager::kURL)
        return std::make_unique<ImportableURL>(data);
    if (type == ImportManager::kString)
        return std::make_unique<ImportableText>(data);
    if (type == ImportManager::kDraggedPath)
        return CreateForFile(data);
    return nullptr;
}

std::unique_ptr<Importable> Importable::CreateForFileURL(const std::string& url) {
    std::string path = url;
    if (path.rfind("file://", 0) == 0) {
        path.erase(0, 7);
        // "file://localhost/path" names the same file as "file:///path".
        if (path.rfind("localhost/", 0) == 0)
            path.erase(0, 9);
    }
    path = HexEscapes::Decode(path, '%');
    if (path == "~" || path.rfind("~/", 0) == 0) {
        const char* home = std::getenv("HOME");
        if (home)
            path = std::string(home) + path.substr(1);
    }
    std::error_code code;
    if (path.empty() || !fs::exists(path, code))
        return nullptr;
    return CreateForFile(path);
}

std::unique_ptr<Importable> Importable::CreateForFile(const std::string& path) {
    std::error_code code;
    if (fs::is_directory(path, code))
        return std::make_unique<ImportableFolder>(path);
    std::string ext = fs::path(path).extension().string();
    if (!ext.empty())
        ext.erase(0, 1);
    std::string lower = Lower(ext);
    static const char* const textKinds[] = {"txt", "text", "md", "markdown", "mmd", "csv", "tsv", "ris", "eml",
                                            "vcf", ""};
    if (lower == "rtf")
        return std::make_unique<ImportableRTFFile>(path);
    if (lower == "rtfd")
        return std::make_unique<ImportableUnsupported>(path, "RTFD packages");
    for (const char* kind : textKinds)
        if (lower == kind)
            return std::make_unique<ImportableTextFile>(path);
    if (lower == "htm" || lower == "html")
        return std::make_unique<ImportableHTMLFile>(path);
    if (lower == "opml")
        return std::make_unique<ImportableOPMLFile>(path);
    if (lower == "mm")
        return std::make_unique<ImportableFreemindFile>(path);
    if (lower == "taskpaper")
        return std::make_unique<ImportableTaskpaperFile>(path);
    if (lower == "doc" || lower == "docx")
        return std::make_unique<ImportableUnsupported>(path, "Word documents");
    if (lower == "pdf")
        return std::make_unique<ImportableUnsupported>(path, "PDF text");
    if (lower == "tbc")
        return std::make_unique<ImportableUnsupported>(path, "colour schemes");
    if (lower == "rylstamp")
        return std::make_unique<ImportableUnsupported>(path, "stamp files");
    if (lower == "textclipping")
        return std::make_unique<ImportableUnsupported>(path, "text clippings");
    if (lower == "glassboard")
        return std::make_unique<ImportableUnsupported>(path, "Glassboard files");
    if (lower == "webarchive")
        return std::make_unique<ImportableUnsupported>(path, "web archives");
    static const char* const images[] = {"png", "jpg", "jpeg", "gif", "tif", "tiff", "bmp", "heic", "webp", "svg"};
    for (const char* image : images)
        if (lower == image)
            return std::make_unique<ImportableImageFile>(path);
    // Other files are read as text; what the text is decides the rest.
    return std::make_unique<ImportableTextFile>(path);
}

std::vector<std::string> Importable::ImportableTypes() {
    return {ImportManager::kVCard, ImportManager::kRTF, ImportManager::kFileURL, ImportManager::kURL,
            ImportManager::kString, ImportManager::kDraggedPath};
}

bool Importable::Import(Node* t, Node* c, ImportManager& manager) {
    target = t;
    container = c;
    return ImportSelf(manager);
}

void Importable::ImportFileInfo(Node* note) const {
    if (!note || file.empty())
        return;
    note->SetName(Stem());
    note->Set("File", file);
}

std::string Importable::Extension() const {
    std::string ext = fs::path(file).extension().string();
    return ext.empty() ? ext : ext.substr(1);
}

std::string Importable::Stem() const { return fs::path(file).stem().string(); }

bool Importable::ReadFile(ImportManager& manager, std::string& bytes) const {
    std::error_code code;
    auto size = fs::file_size(file, code);
    if (code) {
        manager.Fail("cannot read: " + code.message());
        return false;
    }
    if (size > kMaxFileSize) {
        manager.Fail("too large to import");
        return false;
    }
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        manager.Fail("cannot read the file");
        return false;
    }
    std::ostringstream buffer;
    buffer << in.rdbuf();
    bytes = buffer.str();
    return true;
}

// -------------------------------------------------------------- the kinds

bool ImportableURL::ImportSelf(ImportManager& manager) {
    Node* note = manager.MakeNote(manager.ChosenName().empty() ? url : manager.ChosenName(), target, nullptr);
    if (!note)
        return false;
    note->Set("URL", url);
    return true;
}

bool ImportableVCard::ImportSelf(ImportManager& manager) {
    ImportableText cards(text, ImportableText::Kind::VCard);
    return cards.Import(target, container, manager);
}

bool ImportableRTF::ImportSelf(ImportManager& manager) {
    Node* note = manager.MakeNote(manager.ChosenName(), target, nullptr);
    if (!note)
        return false;
    NodeText(note).SetRTF(rtf);
    if (manager.ChosenName().empty())
        note->SetName(NodeName(note).MakeName(NodeText(note).GetText()));
    return true;
}

bool ImportableTextFile::ImportSelf(ImportManager& manager) {
    std::string bytes;
    if (!ReadFile(manager, bytes))
        return false;
    ImportableText text(std::move(bytes));
    text.SetFile(file);
    return text.Import(target, container, manager);
}

bool ImportableRTFFile::ImportSelf(ImportManager& manager) {
    std::string bytes;
    if (!ReadFile(manager, bytes))
        return false;
    Node* note = manager.MakeNote(Stem(), target, nullptr);
    if (!note)
        return false;
    NodeText(note).SetRTF(bytes);
    ImportFileInfo(note);
    return true;
}

bool ImportableHTMLFile::ImportSelf(ImportManager& manager) {
    std::string bytes;
    if (!ReadFile(manager, bytes))
        return false;
    Node* note = manager.MakeNote(Stem(), target, nullptr);
    if (!note)
        return false;
    NodeText(note).SetText(FreemindReader::ToText(bytes));
    ImportFileInfo(note);
    return true;
}

bool ImportableFreemindFile::ImportSelf(ImportManager& manager) {
    std::string bytes;
    if (!ReadFile(manager, bytes))
        return false;
    ImportableText text(std::move(bytes), ImportableText::Kind::Freemind);
    text.SetFile(file);
    return text.Import(target, container, manager);
}

bool ImportableTaskpaper::ImportSelf(ImportManager& manager) {
    ImportableText list(text, ImportableText::Kind::TaskPaper);
    list.SetFile(name.empty() ? file : name + ".taskpaper");
    return list.Import(target, container, manager);
}

bool ImportableTaskpaperFile::ImportSelf(ImportManager& manager) {
    std::string bytes;
    if (!ReadFile(manager, bytes))
        return false;
    ImportableText list(std::move(bytes), ImportableText::Kind::TaskPaper);
    list.SetFile(file);
    return list.Import(target, container, manager);
}

bool ImportableImageFile::ImportSelf(ImportManager& manager) {
    Node* note = manager.MakeNote(Stem(), target, nullptr);
    if (!note)
        return false;
    ImportFileInfo(note);
    return true;
}

bool ImportableFolder::ImportSelf(ImportManager& manager) {
    if (depth >= kMaxDepth) {
        manager.Fail("folders nested too deeply");
        return false;
    }
    std::error_code code;
    std::vector<fs::path> entries;
    for (fs::directory_iterator it(file, code), end; !code && it != end; it.increment(code)) {
        // Links are not followed, so that a link to a folder above cannot
        // make the walk go round.
        if (it->is_symlink(code))
            continue;
        if (it->path().filename().string().rfind('.', 0) == 0)
            continue;
        entries.push_back(it->path());
    }
    if (code) {
        manager.Fail("cannot read the folder: " + code.message());
        return false;
    }
    std::sort(entries.begin(), entries.end());
    Node* holder = manager.MakeNote(fs::path(file).filename().string(), target, nullptr);
    if (!holder)
        return false;
    container = holder;
    for (const fs::path& entry : entries) {
        std::unique_ptr<Importable> item = fs::is_directory(entry, code)
                                               ? std::make_unique<ImportableFolder>(entry.string(), depth + 1)
                                               : CreateForFile(entry.string());
        // A file that cannot be read is left out; the others still come in.
        if (!item || !item->IsValid())
            continue;
        ImportManager inner(manager.GetHypertext(), holder);
        item->Import(holder, nullptr, inner);
        manager.Absorb(inner);
    }
    return true;
}

bool ImportableUnsupported::ImportSelf(ImportManager& manager) {
    manager.Fail(kind + " cannot be imported here: reading them needs a platform service this build lacks");
    return false;
}
