#include "HTMLExporter.h"

#include <filesystem>
#include <vector>

#include "HTMLExportSaver.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeFacade.h"

namespace fs = std::filesystem;

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
    fs::create_directories(GetExportFolder(), code);
    if (code || !fs::is_directory(GetExportFolder())) {
        error = "cannot make the export folder " + GetExportFolder() + ": " + code.message();
        errorCode = 1;
        return false;
    }
    GetFileManager().Initialize();
    return true;
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
    if (relative.empty())
        return true;
    std::string path = InsideFolder(relative);
    if (path.empty()) {
        error = "refused to write outside the export folder: " + relative;
        errorCode = 1;
        return false;
    }
    std::error_code code;
    if (fs::is_directory(path, code))
        return true;
    fs::create_directories(path, code);
    if (code) {
        error = "cannot make the folder " + path + ": " + code.message();
        errorCode = 1;
        return false;
    }
    return true;
}

bool HTMLExporter::PrepareDirectoryFor(Node* node) {
    Node* father = node ? node->Father() : nullptr;
    if (father && !father->IsRoot() && NodeExport(father).CanExportChildren())
        MakeDirectory(GetFileManager().LocalFolderPath(father));
    return errorCode == 0;
}

bool HTMLExporter::WriteFile(const std::string& relative, const std::string& text) {
    std::string path = InsideFolder(relative);
    if (path.empty()) {
        error = "refused to write outside the export folder: " + relative;
        errorCode = 1;
        return false;
    }
    if (!MakeDirectory(std::filesystem::path(relative).parent_path().string()))
        return false;
    std::string failure;
    if (!SaveIfChanged(path, text, failure)) {
        error = failure;
        errorCode = 1;
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
        if (error.empty())
            error = "refused to write outside the export folder: " + relative;
        errorCode = 1;
        return;
    }
    std::string folder = fs::path(relative).parent_path().string();
    if (folder != madeFolder) {
        if (!MakeDirectory(folder))
            return;
        madeFolder = folder;
    }
    std::string failure;
    switch (HTMLExportSaver::Export(node, path, text, failure)) {
    case HTMLExportSaver::kWritten: ++written; break;
    case HTMLExportSaver::kUnchanged: ++unchanged; break;
    case HTMLExportSaver::kSkipped: break;
    case HTMLExportSaver::kFailed:
        if (error.empty())
            error = failure;
        errorCode = 1;
        break;
    }
}
