#pragma once
// Opening and saving document files for the commands, and finding notes by
// path. Every failure becomes one line of text naming the file.
#include <memory>
#include <string>

class Attribute;
class Hypertext;
class Node;

// Reads a document. On failure answers null and sets `error` to a line such
// as "notes.ryl: line 3, column 7: mismatched tag". `version` and
// `revision` receive those of the file.
std::unique_ptr<Hypertext> OpenDocument(const std::string& path, std::string& error, int* version = nullptr,
                                        int* revision = nullptr);

// Writes the document beside the file, flushes it to disk and renames it
// over the file, so that a failure leaves the old file as it was.
bool SaveDocument(Hypertext* hypertext, const std::string& path, std::string& error);

// A new, empty document whose root is named after the file.
std::unique_ptr<Hypertext> NewDocument(const std::string& path);

// The note at a path such as "/Projects/Ideas" ("/" is the root). A "/" in a
// name may be typed "\/" (and a backslash "\\"). Null when there is no such
// note.
Node* FindNoteByPath(Hypertext* hypertext, const std::string& path);

// The note at `path` in the document read from `file`; null with `error`
// set to "FILE: no note at PATH" when there is none.
Node* FindNote(Hypertext* hypertext, const std::string& file, const std::string& path, std::string& error);

// The attribute of that name (a leading "$" is allowed); null with `error`
// set to "FILE: no attribute named NAME" when there is none.
const Attribute* FindAttribute(Hypertext* hypertext, const std::string& file, const std::string& name,
                               std::string& error);

// The path of a note as the whole program writes it (NodeFacade::HTPath):
// names stand as they are, so a "/" in a name is not escaped.
std::string PathOfNote(const Node* node);
