#include "ExportFileManager.h"

#include <algorithm>
#include <vector>

#include "Hypertext.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeFacade.h"

namespace {

// Bounds the search for a free variation of a name.
constexpr int kMaxVariations = 100000;

}  // namespace

ExportFileManager::ExportFileManager(Hypertext* hypertext, std::string extensionOverride)
    : hypertext(hypertext), extensionOverride(std::move(extensionOverride)), read(hypertext) {}

std::string ExportFileManager::UnixPath(const std::string& path) {
    if (!path.empty() && path[0] == kDelimiter)
        return path.substr(1);
    return path;
}

std::string ExportFileManager::StripExtension(const std::string& prefix) {
    size_t dot = prefix.rfind('.');
    std::string directory;
    if (dot == 0)
        return prefix;
    if (dot == std::string::npos)
        directory = prefix;
    else
        directory = prefix.substr(0, dot);
    if (directory.empty() || directory.back() != kDelimiter)
        directory += kDelimiter;
    return directory;
}

std::string ExportFileManager::GetHTMLExtension(Node* node) {
    if (!extensionOverride.empty())
        return extensionOverride;
    if (!node || node->Invalid())
        return std::string();
    return NodeExport::ExtensionFrom(node->GetString(read.extension));
}

std::string ExportFileManager::MakeFileNameFor(Node* node) {
    if (!node || node->Invalid())
        return GetHTMLExtension(node);
    std::string name = node->GetString(read.fileName);
    if (name.empty()) {
        const Node* original = node->GetOriginal();
        name = NodeExport::FileSafeName(node->Name(), original->GetString(read.spacer),
                                        original->GetBoolean(read.lowerCase), LimitFor(node));
    }
    return name + GetHTMLExtension(node);
}

long ExportFileManager::LimitFor(Node* node) const {
    return NodeExport::LimitFrom(node && !node->Invalid() ? node->GetLong(read.maxLength) : 0);
}

std::string ExportFileManager::Variation(Node* node, int n) {
    std::string suffix = "_" + std::to_string(n);
    std::string name = MakeFileNameFor(node);
    size_t dot = name.rfind('.');
    std::string stem = dot == std::string::npos ? name : name.substr(0, dot);
    std::string extension = dot == std::string::npos ? std::string() : name.substr(dot);
    size_t limit = static_cast<size_t>(LimitFor(node));
    if (stem.size() + suffix.size() > limit)
        stem.resize(limit > suffix.size() ? limit - suffix.size() : 0);
    return stem + suffix + extension;
}

bool ExportFileManager::IsTaken(const std::string& name) const {
    return (building && building->Has(name)) || (table && table->Has(name)) || later.count(name) != 0;
}

std::string ExportFileManager::UniqueFileNameFor(Node* node, const std::string& directory) {
    std::string name = MakeFileNameFor(node);
    for (int n = 1; n <= kMaxVariations; ++n) {
        if (!IsTaken(directory + name))
            return name;
        if (node && node->GetPreferences() && extensionOverride.empty()) {
            Node* root = node->Root();
            if (root && root->GetString(read.extension) != node->GetString(read.extension))
                return name;
        }
        name = Variation(node, n);
    }
    return name;
}

void ExportFileManager::AddName(Node* node, const std::string& prefix) {
    // An explicit stack: a deep outline must not deepen the call stack.
    std::vector<std::pair<Node*, std::string>> pending;
    pending.emplace_back(node, prefix);
    while (!pending.empty()) {
        Node* note = pending.back().first;
        std::string from = std::move(pending.back().second);
        pending.pop_back();
        // NodeExport::IsExportable, with the separator read through the
        // attribute looked up once: most notes are not separators.
        if (!note || note->Invalid() || note->IsAdornment() ||
            (note->GetBoolean(read.separator) && !NodeExport(note).IsExportable()))
            continue;
        std::string directory = StripExtension(from);
        std::string full = directory + UniqueFileNameFor(note, directory);
        // The note is exportable and not the root: it can be exported unless
        // it says not to.
        if (!note->GetBoolean(read.dontExport) || note->GetBoolean(read.exportChildren))
            building->Add(note, full);
        if (!note->Son())
            continue;
        full += kDelimiter;
        // Pushed youngest first, so that elder siblings take names first.
        size_t first = pending.size();
        for (Node* child = note->Son(); child; child = child->Brother())
            pending.emplace_back(child, full);
        std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(first), pending.end());
    }
}

void ExportFileManager::Initialize() {
    initialized = true;
    Node* root = HypertextFacade(hypertext).Root();
    if (!root)
        return;
    // An unchanged document is named as its last export named it.
    ExportNameCache* cache = ExportNameCache::For(hypertext);
    ExportNameTable::Key key = ExportNameTable::KeyFor(hypertext, read, extensionOverride);
    if (cache) {
        if (std::shared_ptr<const ExportNameTable> kept = cache->Find(key)) {
            table = std::move(kept);
            return;
        }
    }
    auto made = std::make_shared<ExportNameTable>();
    building = made.get();
    for (Node* child = root->Son(); child; child = child->Brother())
        AddName(child, "");
    building = nullptr;
    table = made;
    if (cache)
        cache->Keep(std::move(key), std::move(made));
}

std::string ExportFileManager::LocalFileName(Node* node) {
    if (!node)
        return std::string();
    if (!initialized)
        Initialize();
    if (const std::string* file = table ? table->FileOf(node) : nullptr)
        return *file;
    if (node->IsRoot())
        return "/";
    std::string path;
    for (Node* at = node; at && !at->IsRoot(); at = at->Father())
        path = "/" + NodeExport(at).ExportFileName() + path;
    return path + GetHTMLExtension(node);
}

std::string ExportFileManager::LocalFolderName(Node* node) { return StripExtension(LocalFileName(node)); }

std::string ExportFileManager::LocalFolderPath(Node* node) { return UnixPath(LocalFolderName(node)); }

std::string ExportFileManager::FileNameFor(Node* node) {
    return node ? UnixPath(LocalFileName(node)) : std::string();
}

std::string ExportFileManager::ShortNameFor(Node* node) {
    std::string name = FileNameFor(node);
    if (size_t slash = name.rfind('/'); slash != std::string::npos)
        name = name.substr(slash + 1);
    if (size_t dot = name.find('.'); dot != std::string::npos)
        name.resize(dot);
    return name;
}

std::string ExportFileManager::RelativeURL(Node* target, Node* source, const std::string& extension) {
    if (!target)
        return std::string();
    if (target == source)
        return "#";
    std::string up;
    Node* stop = source;
    while (stop && !stop->IsRoot()) {
        Node* father = stop->Father();
        if (father && target->IsDescendedFrom(father) && father != target)
            break;
        up += "../";
        stop = father;
    }
    std::string path = ShortNameFor(target);
    Node* stopFather = stop ? stop->Father() : nullptr;
    for (Node* at = target; at && at != stop && !at->IsRoot();) {
        at = at->Father();
        if (!at || at == stopFather || at->IsRoot())
            break;
        path = ShortNameFor(at) + "/" + path;
    }
    return up + path + extension;
}

std::string ExportFileManager::AuxFileName(Node* node) {
    std::string file = FileNameFor(node);
    size_t slash = file.rfind('/');
    std::string directory = slash == std::string::npos ? std::string() : file.substr(0, slash + 1);
    std::string rest = slash == std::string::npos ? file : file.substr(slash + 1);
    if (size_t dot = rest.rfind('.'); dot != std::string::npos)
        rest.resize(dot);
    std::string name = rest;
    for (int n = 1; IsTaken(directory + name) && n <= kMaxVariations; ++n)
        name = rest + "_" + std::to_string(n);
    later.insert(directory + name);
    return directory + name;
}

std::string ExportFileManager::ImageFileName(Node* node, int index) {
    std::string name = ShortNameFor(node);
    if (size_t dot = name.rfind('.'); dot != std::string::npos)
        name.resize(dot);
    if (index > 0)
        name += std::to_string(index);
    return name + ".png";
}

std::string ExportFileManager::ImageLocalFileName(Node* node, int index) {
    std::string local = LocalFileName(node);
    size_t slash = local.rfind('/');
    std::string folder = slash == std::string::npos ? std::string() : local.substr(0, slash + 1);
    return folder + ImageFileName(node, index);
}
