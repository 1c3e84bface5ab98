#include "HTMLExporter.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <vector>

#include <sys/stat.h>

#include "HTMLExportSaver.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeFacade.h"

namespace fs = std::filesystem;

namespace {

std::string WithoutTrailingSlash(std::string folder) {
    while (!folder.empty() && folder.back() == '/')
        folder.pop_back();
    return folder;
}

std::string FolderOf(const std::string& relative) {
    size_t slash = relative.rfind('/');
    return slash == std::string::npos ? std::string() : WithoutTrailingSlash(relative.substr(0, slash));
}

}  // namespace

HTMLExporter::HTMLExporter(Hypertext* hypertext, const std::string& folder) : Exporter(hypertext) {
    SetExportFolder(folder);
}

HTMLExporter::~HTMLExporter() = default;

ExportFileManager& HTMLExporter::GetFileManager() {
    if (!files)
        files = std::make_unique<ExportFileManager>(hypertext, ExtensionOverride());
    return *files;
}

bool HTMLExporter::Prepare(bool) {
    std::error_code code;
    bool existed = fs::exists(GetExportFolder(), code);
    fs::create_directories(GetExportFolder(), code);
    if (code || !fs::is_directory(GetExportFolder())) {
        Fail("cannot make the export folder " + GetExportFolder() + ": " + code.message(), true);
        return false;
    }
    folders.clear();
    folders[std::string()] = !existed;
    freshPaths.clear();
    GetFileManager().Initialize();
    return true;
}

void HTMLExporter::Fail(const std::string& message, bool replaces) {
    if (replaces || error.empty())
        error = message;
    errorCode = 1;
}

std::string HTMLExporter::RelativeURL(Node* target, Node* current) {
    std::string extension = ExtensionOverride().empty() ? NodeExport(target).GetHTMLExtension() : ExtensionOverride();
    return GetFileManager().RelativeURL(target, current, extension);
}

std::string HTMLExporter::FileNameFor(Node* node) { return GetFileManager().FileNameFor(node); }
std::string HTMLExporter::NameOfFile(Node* node) { return GetFileManager().NameOfFile(node); }
std::string HTMLExporter::AuxFileName(Node* node) { return GetFileManager().AuxFileName(node); }

std::string HTMLExporter::ImageFileName(Node* node, int index) {
    std::string name = GetFileManager().ImageFileName(node, index);
    Node* now = Exporting();
    if (now && node && now->Father() != node->Father()) {
        std::string url = RelativeURL(node, now);
        if (size_t slash = url.rfind('/'); slash != std::string::npos)
            name = url.substr(0, slash + 1) + name;
    }
    return name;
}

std::string HTMLExporter::ImageLocalFileName(Node* node, int index) {
    return GetFileManager().ImageLocalFileName(node, index);
}

Node* HTMLExporter::NodeForPath(const std::string& path) {
    return HypertextFacade(hypertext).First([&](Node* n) { return GetFileManager().LocalFileName(n) == path; });
}

std::string HTMLExporter::InsideFolder(const std::string& relative) const {
    if (relative.empty() || relative.find('\0') != std::string::npos)
        return std::string();
    fs::path path(relative);
    if (path.is_absolute())
        return std::string();
    for (const fs::path& part : path)
        if (part == ".." || part == ".")
            return std::string();
    return (fs::path(GetExportFolder()) / path).string();
}

bool HTMLExporter::MakeDirectory(const std::string& relative) {
    std::string key = WithoutTrailingSlash(relative);
    if (key.empty() || folders.count(key))
        return true;
    std::string path = InsideFolder(relative);
    if (path.empty()) {
        Fail("refused to write outside the export folder: " + relative, true);
        return false;
    }
    // Each folder is made once. One that this export made is known to be
    // empty but for what the export puts there.
    if (::mkdir(path.c_str(), 0777) == 0) {
        folders[key] = true;
        return true;
    }
    std::error_code code(errno, std::generic_category());
    struct stat info;
    if (code.value() == EEXIST && ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) {
        folders[key] = false;
        return true;
    }
    if (code.value() == ENOENT) {
        // A level above is missing too.
        code.clear();
        if (fs::create_directories(path, code), !code && fs::is_directory(path, code)) {
            folders[key] = false;
            return true;
        }
    }
    Fail("cannot make the folder " + path + ": " + code.message(), true);
    return false;
}

bool HTMLExporter::PrepareDirectoryFor(Node* node) {
    Node* father = node ? node->Father() : nullptr;
    if (father && !father->IsRoot() && NodeExport(father).CanExportChildren())
        MakeDirectory(GetFileManager().LocalFolderPath(father));
    return errorCode == 0;
}

bool HTMLExporter::IsFresh(const std::string& relative) {
    auto folder = folders.find(FolderOf(relative));
    if (folder == folders.end() || !folder->second)
        return false;
    // A second file at the same path in one export finds the first.
    return freshPaths.insert(relative).second;
}

bool HTMLExporter::WriteFile(const std::string& relative, const std::string& text) {
    std::string path = InsideFolder(relative);
    if (path.empty()) {
        Fail("refused to write outside the export folder: " + relative, true);
        return false;
    }
    if (!MakeDirectory(FolderOf(relative)))
        return false;
    IsFresh(relative);
    std::string failure;
    if (!SaveIfChanged(path, text, failure)) {
        Fail(failure, true);
        return false;
    }
    return true;
}

void HTMLExporter::ExportToFile(Node* node) {
    if (!node || !CanExport(node))
        return;
    std::string text = ExportOne(node);
    std::string relative = GetFileManager().FileNameFor(node);
    std::string path = InsideFolder(relative);
    if (path.empty()) {
        Fail("refused to write outside the export folder: " + relative, false);
        return;
    }
    if (!MakeDirectory(FolderOf(relative)))
        return;
    std::string failure;
    switch (HTMLExportSaver::Export(node, path, text, failure, IsFresh(relative))) {
    case HTMLExportSaver::kWritten: ++written; break;
    case HTMLExportSaver::kUnchanged: ++unchanged; break;
    case HTMLExportSaver::kSkipped: break;
    case HTMLExportSaver::kFailed: Fail(failure, false); break;
    }
}
