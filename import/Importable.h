#pragma once
// One importable thing: a file, a folder, or a flavour of a paste. Each kind
// knows how to make notes of itself (ImportSelf) under the target the
// manager gives it.
#include <memory>
#include <string>
#include <vector>

class ImportManager;
class Node;

class Importable {
public:
    virtual ~Importable() = default;

    // By flavour type: a card, styled text, a file URL, a URL, plain text, a
    // dragged path. Null for anything else (images among them).
    static std::unique_ptr<Importable> Create(const std::string& data, const std::string& type);
    // A "file://" URL (or a plain path): "~" stands for the home folder and
    // percent escapes are decoded. Null when no such file exists.
    static std::unique_ptr<Importable> CreateForFileURL(const std::string& url);
    // By the file's extension; a folder imports the files in it.
    static std::unique_ptr<Importable> CreateForFile(const std::string& path);
    // The flavour types Create takes.
    static std::vector<std::string> ImportableTypes();

    virtual bool IsValid() const { return true; }
    virtual bool DontCreate() const { return false; }
    // Sets the target and container, then ImportSelf.
    bool Import(Node* target, Node* container, ImportManager& manager);
    // Makes the notes; answers false with the failure told to the manager.
    virtual bool ImportSelf(ImportManager& manager) = 0;
    // Gives a note made for a file the file's name and path.
    virtual void ImportFileInfo(Node* note) const;

    // The file's extension without the dot, as written.
    std::string Extension() const;
    // The file's name without folder and extension.
    std::string Stem() const;
    const std::string& GetFile() const { return file; }
    void SetFile(const std::string& f) { file = f; }
    Node* Target() const { return target; }
    void SetTarget(Node* t) { target = t; }
    Node* Container() const { return container; }
    void SetContainer(Node* c) { container = c; }

protected:
    // Reads the whole file; on failure tells the manager and answers false.
    bool ReadFile(ImportManager& manager, std::string& bytes) const;

    std::string file;
    Node* target = nullptr;
    Node* container = nullptr;
};

// A web address: a note named by it, holding it as its URL.
class ImportableURL : public Importable {
public:
    explicit ImportableURL(std::string url) : url(std::move(url)) {}
    bool ImportSelf(ImportManager& manager) override;

private:
    std::string url;
};

// Cards: a note each.
class ImportableVCard : public Importable {
public:
    explicit ImportableVCard(std::string text) : text(std::move(text)) {}
    bool ImportSelf(ImportManager& manager) override;

private:
    std::string text;
};

// Styled text in RTF: one note holding it.
class ImportableRTF : public Importable {
public:
    explicit ImportableRTF(std::string rtf) : rtf(std::move(rtf)) {}
    bool ImportSelf(ImportManager& manager) override;

protected:
    std::string rtf;
};

// Text files of every plain kind (text, Markdown, CSV, TSV, RIS, mail):
// what the text is decides how it is read (see ImportableText).
class ImportableTextFile : public Importable {
public:
    explicit ImportableTextFile(const std::string& path) { SetFile(path); }
    bool ImportSelf(ImportManager& manager) override;
};

class ImportableOPMLFile : public ImportableTextFile {
public:
    using ImportableTextFile::ImportableTextFile;
};

class ImportableRTFFile : public Importable {
public:
    explicit ImportableRTFFile(const std::string& path) { SetFile(path); }
    bool ImportSelf(ImportManager& manager) override;
};

// A web page: its text, without the markup, in one note.
class ImportableHTMLFile : public Importable {
public:
    explicit ImportableHTMLFile(const std::string& path) { SetFile(path); }
    bool ImportSelf(ImportManager& manager) override;
};

class ImportableFreemindFile : public Importable {
public:
    explicit ImportableFreemindFile(const std::string& path) { SetFile(path); }
    bool ImportSelf(ImportManager& manager) override;
};

// A TaskPaper list given as text; the container is named `name`.
class ImportableTaskpaper : public Importable {
public:
    ImportableTaskpaper(std::string text, std::string name) : text(std::move(text)), name(std::move(name)) {}
    bool ImportSelf(ImportManager& manager) override;

private:
    std::string text;
    std::string name;
};

class ImportableTaskpaperFile : public Importable {
public:
    explicit ImportableTaskpaperFile(const std::string& path) { SetFile(path); }
    bool ImportSelf(ImportManager& manager) override;
};

// A picture: a note named after the file that refers to it.
class ImportableImageFile : public Importable {
public:
    explicit ImportableImageFile(const std::string& path) { SetFile(path); }
    bool ImportSelf(ImportManager& manager) override;
};

// A folder: a container named after it, holding what its files make.
class ImportableFolder : public Importable {
public:
    explicit ImportableFolder(const std::string& path, int depth = 0) : depth(depth) { SetFile(path); }
    bool ImportSelf(ImportManager& manager) override;
    // Folders inside folders are followed this deep.
    static constexpr int kMaxDepth = 16;

private:
    int depth;
};

// What only the platform's own services can read (PDF and Word text, web
// archives, text clippings, colour schemes, stamps, other applications'
// files): refused with a line that names the kind.
class ImportableUnsupported : public Importable {
public:
    ImportableUnsupported(const std::string& path, std::string kind) : kind(std::move(kind)) { SetFile(path); }
    bool IsValid() const override { return false; }
    bool ImportSelf(ImportManager& manager) override;
    const std::string& Kind() const { return kind; }

private:
    std::string kind;
};
