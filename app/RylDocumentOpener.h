#pragma once
// Finishes a document once its file has been read.
#include <string>

class Hypertext;

class RylDocumentOpener {
public:
    // `path` is the file the document was read from.
    RylDocumentOpener(Hypertext* hypertext, std::string path) : hypertext(hypertext), path(std::move(path)) {}

    // The root takes the document's name, the file's name without its
    // extension: a document copied to "Field Notes.ryl" is "Field Notes",
    // whatever its root was called before. Text links are not renamed for
    // it (DontRename is on meanwhile). The document also learns its file's
    // absolute path.
    void prepare();

    // The document's name for a file.
    static std::string DocumentName(const std::string& path);

private:
    Hypertext* hypertext;
    std::string path;
};
