#pragma once
// One command's use of a document file: open it, find notes and attributes
// in it, and (for a command that changes it) save it again. A command is
// then its options and the few lines of its own work:
//
//   std::string error;
//   auto session = DocumentSession::Open(state.file, true, error);
//   Node* node = session ? session->Note(state.path, error) : nullptr;
//   if (!node)
//       return CommandFailure(error);
//   ... change the note ...
//   if (!session->Save(error))
//       return CommandFailure(error);
//
// Writers are serialised by an advisory lock on the document file: a
// session opened for a change takes it before reading and keeps it until
// the session ends, through the save's rename, so that two commands changing
// one document at once cannot lose one of the changes. Readers take no lock:
// a save replaces the file whole, so a reader sees the old or the new one.
#include <memory>
#include <string>

class Attribute;
class Hypertext;
class Node;

class DocumentSession {
public:
    // Opens FILE. With `forChange` the writer's advisory lock is taken before reading and held until
    // the session ends (through the save's rename). Null with `error` set to one line on failure.
    static std::unique_ptr<DocumentSession> Open(const std::string& file, bool forChange, std::string& error);
    ~DocumentSession();
    DocumentSession(const DocumentSession&) = delete;
    DocumentSession& operator=(const DocumentSession&) = delete;

    Hypertext* Document() const;
    const std::string& File() const;
    // "FILE: no note at PATH" on failure.
    Node* Note(const std::string& path, std::string& error) const;
    // "FILE: no attribute named NAME" on failure (a leading "$" allowed).
    const Attribute* AttributeNamed(const std::string& name, std::string& error) const;
    // Saves atomically (only valid for a session opened forChange).
    bool Save(std::string& error);

    // Whether a note `levels` deep may be made: false with `error` set
    // when a document that deep could not be read back.
    bool CanHoldDepth(int levels, std::string& error) const;

    // The format version and revision the file was written with.
    int Version() const { return version; }
    int Revision() const { return revision; }

private:
    DocumentSession(std::string file, bool forChange);

    std::string file;
    bool forChange;
    std::unique_ptr<Hypertext> hypertext;
    int lockDescriptor = -1;
    int version = 0;
    int revision = 0;
};
