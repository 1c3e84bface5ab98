#include "DocumentFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <vector>
#include <sstream>
#include <unistd.h>

#include "Hypertext.h"
#include "Node.h"
#include "NodeFacade.h"
#include "Props.h"
#include "RylUUID.h"
#include "RylDocumentOpener.h"
#include "SafeReplace.h"
#include "TalvikReader.h"
#include "TalvikWriter.h"

namespace {

// The names along a path; backslash takes the next character as it is.
std::vector<std::string> SplitPath(const std::string& path) {
    std::vector<std::string> names;
    std::string current;
    bool any = false;
    for (size_t i = 0; i < path.size(); ++i) {
        char c = path[i];
        if (c == '\\' && i + 1 < path.size()) {
            current += path[++i];
            any = true;
        } else if (c == '/') {
            if (any)
                names.push_back(current);
            current.clear();
            any = false;
        } else {
            current += c;
            any = true;
        }
    }
    if (any)
        names.push_back(current);
    return names;
}

} // namespace

std::unique_ptr<Hypertext> NewDocument(const std::string& path) {
    auto hypertext = std::make_unique<Hypertext>();
    hypertext->SetUUID(NewUUIDString());
    std::string name = RylDocumentOpener::DocumentName(path);
    if (!name.empty())
        hypertext->Root()->SetName(name);
    return hypertext;
}

std::string DescribeOpenFailure(const std::string& path, int error) {
    if (error == ENOENT)
        return path + ": no such file";
    return path + ": " + std::strerror(error);
}

bool CheckDocumentFile(const std::string& path, std::string& error) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        error = DescribeOpenFailure(path, errno);
        return false;
    }
    if (S_ISDIR(status.st_mode)) {
        error = path + ": is a folder, not a document";
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        error = path + ": not a regular file";
        return false;
    }
    return true;
}

std::unique_ptr<Hypertext> OpenDocument(const std::string& path, std::string& error, int* version, int* revision) {
    if (!CheckDocumentFile(path, error))
        return nullptr;
    auto hypertext = std::make_unique<Hypertext>();
    TalvikReader reader(hypertext->Root());
    if (!reader.ReadFile(path)) {
        error = path + ": " + reader.ErrorMessage();
        return nullptr;
    }
    if (version)
        *version = reader.Version();
    if (revision)
        *revision = reader.Revision();
    RylDocumentOpener(hypertext.get(), path).prepare();
    return hypertext;
}

bool SaveDocument(Hypertext* hypertext, const std::string& path, std::string& error) {
    // The document is written straight to the file, not gathered in memory first.
    return ReplaceFile(
        path, [hypertext](std::ostream& out) { return TalvikWriter(hypertext).Write(out); }, error);
}

Node* FindNote(Hypertext* hypertext, const std::string& file, const std::string& path, std::string& error) {
    Node* node = FindNoteByPath(hypertext, path);
    if (!node)
        error = file + ": no note at " + path;
    return node;
}

const Attribute* FindAttribute(Hypertext* hypertext, const std::string& file, const std::string& name,
                               std::string& error) {
    std::string plain = !name.empty() && name[0] == '$' ? name.substr(1) : name;
    Props* props = hypertext ? hypertext->AttributeStorage() : nullptr;
    if (plain.empty() || !props || !props->Has(plain)) {
        error = file + ": no attribute named " + name;
        return nullptr;
    }
    return props->GetAttribute(plain);
}

Node* FindNoteByPath(Hypertext* hypertext, const std::string& path) {
    if (!hypertext)
        return nullptr;
    Node* node = hypertext->Root();
    for (const std::string& name : SplitPath(path)) {
        Node* found = nullptr;
        for (Node* child = node->Son(); child; child = child->Brother())
            if (!child->IsHidden() && child->Name() == name) {
                found = child;
                break;
            }
        if (!found)
            return nullptr;
        node = found;
    }
    return node;
}

std::string PathOfNote(const Node* node) {
    if (!node || !node->Father())
        return "/";
    return NodeFacade(node).HTPath(true);
}

int DepthOfNote(const Node* node) {
    int depth = 0;
    for (const Node* n = node; n && n->Father(); n = n->Father())
        ++depth;
    return depth;
}

int HeightOfNote(const Node* node) {
    if (!node)
        return 0;
    // A walk in outline order that keeps its depth, without recursion, so
    // that a tree of any depth is measured.
    int height = 0;
    int depth = 0;
    const Node* n = node;
    for (;;) {
        if (const Node* son = n->Son()) {
            n = son;
            height = std::max(height, ++depth);
            continue;
        }
        while (n != node && !n->Brother()) {
            n = n->Father();
            --depth;
        }
        if (n == node)
            return height;
        n = n->Brother();
    }
}

std::string LineSafe(const std::string& text) {
    bool plain = text.empty() || text[0] != '"';
    for (unsigned char c : text)
        if (c < 0x20 || c == 0x7f)
            plain = false;
    if (plain)
        return text;
    static const char kHex[] = "0123456789abcdef";
    std::string quoted = "\"";
    for (unsigned char c : text) {
        switch (c) {
        case '\n': quoted += "\\n"; break;
        case '\r': quoted += "\\r"; break;
        case '\t': quoted += "\\t"; break;
        case '"': quoted += "\\\""; break;
        case '\\': quoted += "\\\\"; break;
        default:
            if (c < 0x20 || c == 0x7f) {
                quoted += "\\x";
                quoted += kHex[c >> 4];
                quoted += kHex[c & 15];
            } else {
                quoted += static_cast<char>(c);
            }
        }
    }
    return quoted + "\"";
}
