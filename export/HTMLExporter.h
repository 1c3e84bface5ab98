#pragma once
// Writes a folder of pages: one file per exported note, children in a
// folder named after their parent's page, links relative between pages.
// Every file it writes lies inside the export folder, whatever the notes'
// names hold.
#include <memory>
#include <string>

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
    // The path inside the export folder for a relative name; empty when the
    // name would lead outside it.
    std::string InsideFolder(const std::string& relative) const;
    bool MakeDirectory(const std::string& relative);

    std::unique_ptr<ExportFileManager> files;
    std::string error;
    // The folder of the last page written, known to exist.
    std::string madeFolder = "\n";
};
