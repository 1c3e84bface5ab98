#pragma once
// The drivers of export: they walk the document, run templates and write
// the results. `Exporter` holds what every driver shares (the document, the
// default template, the note now exporting, counts, the stop flag) and
// names files flatly; `HTMLExporter` (HTMLExporter.h) writes a folder of
// pages; `DummyHTMLExporter` expands into memory; the single-file drivers
// are in TextExporter.h.
#include <functional>
#include <memory>
#include <string>

#include "ExportTemplate.h"

class Hypertext;
class Node;

class Exporter {
public:
    explicit Exporter(Hypertext* hypertext);
    virtual ~Exporter();
    Exporter(const Exporter&) = delete;
    Exporter& operator=(const Exporter&) = delete;

    // Runs the whole export: loads the template, prepares and exports the
    // document. False when preparation failed (see GetErrorCode).
    virtual bool Export(bool all);
    virtual std::string Host() const;
    virtual bool HasChildLinks() const { return true; }
    virtual bool HasTextLinks() const { return true; }
    virtual bool HasLinkNames() const { return true; }
    virtual bool HasBasicLinks() const { return true; }
    // Loads the default template: the template named by the document (or
    // chosen for this run), else the text "Unable to find this template".
    virtual void LoadTemplate();
    virtual void LoadPreviewTemplate();
    virtual std::string RelativeURL(Node* target, Node* current);
    virtual std::string FileNameFor(Node* node);
    virtual std::string NameOfFile(Node* node);
    virtual std::string AuxFileName(Node* node);
    virtual std::string ImageFileName(Node* node, int index);
    virtual std::string ImageLocalFileName(Node* node, int index);
    virtual bool UseHTML() const { return true; }
    virtual bool Prepare(bool all) { return true; }
    virtual Node* Exporting() const { return exporting; }
    // Sets the note now exporting; answers the previous one.
    virtual Node* IsExporting(Node* node);
    virtual bool CanExport(Node* node) const;
    virtual int GetErrorCode() const { return errorCode; }
    virtual Hypertext* GetHypertext() const { return hypertext; }
    virtual const std::string& GetExportFolder() const { return exportFolder; }
    virtual void SetExportFolder(const std::string& folder) { exportFolder = folder; }
    virtual std::string RootPath() const { return rootPath; }
    virtual void RootPath(const std::string& path) { rootPath = path; }
    virtual bool HasRootPath() const { return !rootPath.empty(); }
    virtual bool HasBeenStopped() const { return stopped; }
    virtual void Stop() { stopped = true; }
    virtual LinkIndex* GetLinkIndex() { return &linkIndex; }
    virtual bool CanExportChildren(Node* node) const;
    virtual void ExportDocument();
    virtual void ExportNote(Node* node);
    virtual void ExportToFile(Node* node) {}
    // Writes a file of the export, named relative to the export folder.
    // Drivers without a folder write nothing.
    virtual bool WriteFile(const std::string& relative, const std::string& text) { return false; }
    virtual void ExportChildrenOf(Node* node);
    // Makes what a note's page needs before it is written (its folder);
    // false stops the export.
    virtual bool PrepareDirectoryFor(Node* node) { return true; }
    virtual void Cleanup() {}
    virtual long CountExportedNotes() const;
    virtual void UpdateProgress(const std::string& name);

    // Expands the template that applies to `node` (its own or the default)
    // into a string.
    virtual std::string ExportOne(Node* node);
    // The note's own template when it names one other than the default;
    // null for the default. Owned by the caller.
    virtual std::unique_ptr<ExportTemplate> ExportTemplateFor(Node* node);
    ExportTemplate* DefaultTemplate() const { return defaultTemplate.get(); }

    // The template this run uses when the document names none: a template
    // note's path or a built-in template's name.
    void ChooseTemplate(const std::string& name) { chosenTemplate = name; }
    // Replaces the default template by this text (render --text).
    void SetTemplateText(const std::string& text);
    // Whether the document or the run names a template that exists.
    bool HasTemplate() const;
    // The extension of every page, replacing the notes' own (the Markdown
    // export); empty: the notes' own.
    void SetExtension(const std::string& ext) { extension = ext; }
    const std::string& ExtensionOverride() const { return extension; }
    // Notes' text is written as Markdown rather than HTML (the Markdown
    // export).
    void SetMarkdown(bool on) { markdown = on; }
    bool Markdown() const { return markdown; }
    // Called with (done, total) as pages are exported.
    void OnProgress(std::function<void(long, long)> callback) { progress = std::move(callback); }

    long FileCount() const { return fileCount; }
    long Written() const { return written; }
    long Unchanged() const { return unchanged; }

protected:
    // Writes `text` to `path` unless the file holds it already, counting the
    // file as written or unchanged.
    bool SaveIfChanged(const std::string& path, const std::string& text, std::string& error);
    // Finds the text of a template by name: a template note of the document
    // first, then a built-in template. False when there is none.
    bool FindTemplate(const std::string& name, Node* from, std::string& text, std::string& foundName) const;
    std::string TemplateNameFor(Node* node) const;

    Hypertext* hypertext;
    std::unique_ptr<ExportTemplate> defaultTemplate;
    Node* exporting = nullptr;
    std::string status;
    bool stopped = false;
    int errorCode = 0;
    long fileCount = 0;
    long total = 0;
    long written = 0;
    long unchanged = 0;
    std::string exportFolder;
    std::string rootPath;
    std::string chosenTemplate;
    std::string extension;
    bool markdown = false;
    LinkIndex linkIndex;
    std::function<void(long, long)> progress;
};

// Expansion into memory: no files, no file manager. Links are the notes'
// own file names.
class DummyHTMLExporter : public Exporter {
public:
    using Exporter::Exporter;
};
