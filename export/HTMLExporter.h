#pragma once
// Writes a folder of pages: one file per exported note, children in a
// folder named after their parent's page, links relative between pages.
// Every file it writes lies inside the export folder, whatever the notes'
// names hold.
//
// Each folder is made once; in a folder this export made, a page cannot be
// there already and is written without looking for an old one.
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "ExportFileManager.h"
#include "Exporter.h"

class HTMLExporter : public Exporter {
public:
    HTMLExporter(Hypertext* hypertext, const std::string& folder);
    ~HTMLExporter() override;

    bool Prepare(bool all) override;
    std::string RelativeURL(Node* target, Node* current) override;
    std::string FileNameFor(Node* node) override;
    std::string NameOfFile(Node* node) override;
    std::string AuxFileName(Node* node) override;
    std::string ImageFileName(Node* node, int index) override;
    std::string ImageLocalFileName(Node* node, int index) override;
    void ExportToFile(Node* node) override;
    bool WriteFile(const std::string& relative, const std::string& text) override;

    ExportFileManager& GetFileManager();
    // The note whose page is at this local path, or null.
    Node* NodeForPath(const std::string& path);
    bool PrepareDirectoryFor(Node* node) override;
    // The first failure, as one line; empty when none.
    const std::string& Error() const { return error; }

private:
    // Records a failure. `replaces`: the message takes the place of an
    // earlier one (otherwise it is kept only when it is the first).
    void Fail(const std::string& message, bool replaces);
    // The path inside the export folder for a relative name; empty when the
    // name would lead outside it.
    std::string InsideFolder(const std::string& relative) const;
    bool MakeDirectory(const std::string& relative);
    // Whether no file can be at this path yet: its folder was made by this
    // export and nothing has been written there at that path.
    bool IsFresh(const std::string& relative);

    std::unique_ptr<ExportFileManager> files;
    std::string error;
    // Folders known to exist, relative to the export folder ("" for the
    // folder itself), each with whether this export made it.
    std::unordered_map<std::string, bool> folders;
    // Paths written in the folders this export made.
    std::unordered_set<std::string> freshPaths;
};
