#pragma once
// Decides whether a page must be written, runs the note's export command
// when commands are allowed, and writes the file (plain open, write and
// close: no stream, no separate look at the path before each step). A page whose text has
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
    // `fresh`: no file can be at the path yet (its folder was just made), so
    // there is no old one to look at.
    static Outcome Export(Node* node, const std::string& path, const std::string& text, std::string& error,
                          bool fresh = false);
    // The page without a command.
    static Outcome Write(const std::string& path, const std::string& text, std::string& error, bool fresh);
    static bool Save(const std::string& path, const std::string& text, std::string& error);
};
