#pragma once
// Owns every file name of one export: each note that makes a page (or a
// folder for its children) gets a unique name inside the export folder,
// children living in a folder named after their parent's page.
#include <memory>
#include <string>
#include <unordered_set>

#include "ExportNameTable.h"

class Hypertext;
class Node;

class ExportFileManager {
public:
    static constexpr char kDelimiter = '/';

    explicit ExportFileManager(Hypertext* hypertext, std::string extensionOverride = std::string());
    virtual ~ExportFileManager() = default;

    // "/a/b.html": the note's name in the export, from the export folder.
    virtual std::string LocalFileName(Node* node);
    virtual std::string LocalFolderName(Node* node);
    virtual std::string LocalFolderPath(Node* node);
    // The link from a page to another: "../" up to the common folder, then
    // the path down to the target.
    virtual std::string RelativeURL(Node* target, Node* source, const std::string& extension);
    // "a/b.html", without the leading "/".
    virtual std::string FileNameFor(Node* node);
    virtual std::string NameOfFile(Node* node) { return node ? LocalFileName(node) : std::string(); }
    virtual std::string AuxFileName(Node* node);
    virtual std::string ImageFileName(Node* node, int index);
    virtual std::string ImageLocalFileName(Node* node, int index);
    virtual std::string GetHTMLExtension(Node* node);
    virtual std::string UniqueFileNameFor(Node* node, const std::string& directory);
    virtual void Initialize();
    // "a/b.html" gives "a/b/"; a prefix with no "." is kept, with "/" added.
    static std::string StripExtension(const std::string& prefix);
    virtual std::string MakeFileNameFor(Node* node);
    // The last part of the file name, cut at its first ".".
    virtual std::string ShortNameFor(Node* node);
    virtual std::string Variation(Node* node, int n);

    static std::string UnixPath(const std::string& path);
    // Whether the name was given out already ("/a/b.html").
    bool IsTaken(const std::string& name) const;

private:
    // Names the note and its descendants into `building` (Initialize only).
    void AddName(Node* node, const std::string& prefix);
    long LimitFor(Node* node) const;

    Hypertext* hypertext;
    std::string extensionOverride;
    const ExportNameTable::Reads read;
    // The names of the notes, shared with the document's cache once made;
    // `building` is the table being filled while the names are made.
    std::shared_ptr<const ExportNameTable> table;
    ExportNameTable* building = nullptr;
    // Names taken after the notes were named (the auxiliary files).
    std::unordered_set<std::string> later;
    bool initialized = false;
};
