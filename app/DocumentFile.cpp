#include "DocumentFile.h"

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

std::unique_ptr<Hypertext> OpenDocument(const std::string& path, std::string& error, int* version, int* revision) {
    std::error_code code;
    if (!std::filesystem::exists(path, code)) {
        error = path + ": no such file";
        return nullptr;
    }
    if (std::filesystem::is_directory(path, code)) {
        error = path + ": is a folder, not a document";
        return nullptr;
    }
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
    std::filesystem::path target(path);
    std::string folder = target.has_parent_path() ? target.parent_path().string() : std::string(".");
    std::string pattern = folder + "/." + target.filename().string() + ".XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    int fd = mkstemp(name.data());
    if (fd < 0) {
        error = path + ": cannot write beside it: " + std::strerror(errno);
        return false;
    }
    std::string temporary(name.data());
    auto fail = [&](const std::string& what) {
        error = path + ": " + what;
        ::close(fd);
        std::remove(temporary.c_str());
        return false;
    };
    std::ostringstream text;
    if (!TalvikWriter(hypertext).Write(text))
        return fail("the document could not be written");
    const std::string bytes = text.str();
    size_t written = 0;
    while (written < bytes.size()) {
        ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return fail(std::string("cannot write: ") + std::strerror(errno));
        }
        written += static_cast<size_t>(n);
    }
    if (::fsync(fd) != 0)
        return fail(std::string("cannot write: ") + std::strerror(errno));
    // Keep the permissions of the file being replaced.
    struct stat old {};
    if (::stat(path.c_str(), &old) == 0)
        ::fchmod(fd, old.st_mode & 07777);
    else
        ::fchmod(fd, 0644);
    if (::close(fd) != 0) {
        std::remove(temporary.c_str());
        error = path + ": cannot write: " + std::strerror(errno);
        return false;
    }
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        error = path + ": cannot replace: " + std::strerror(errno);
        std::remove(temporary.c_str());
        return false;
    }
    return true;
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

std::string PathOfNote(const Node* node) { return node ? NodeFacade(node).HTPath() : std::string("/"); }
