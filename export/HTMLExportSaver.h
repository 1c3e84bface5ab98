#pragma once
// Decides whether a page must be written, runs the note's export command
// when commands are allowed, and writes the file. A page whose text has
// not changed is not rewritten, so that its date stays.
#include <string>

class Node;

class HTMLExportSaver {
public:
    enum Outcome { kWritten, kUnchanged, kSkipped, kFailed };

    // The file holds this text already; bytes that differ where the text
    // has white space do not count.
    static bool FileContentsUnchanged(const std::string& path, const std::string& text);
    // No file yet and nothing but white space to write.
    static bool NothingToExport(const std::string& path, const std::string& text);
    // Writes `text` for `node` at `path` as the rules say. `error` is set
    // on kFailed.
    static Outcome Export(Node* node, const std::string& path, const std::string& text, std::string& error);
    static bool Save(const std::string& path, const std::string& text, std::string& error);
};
