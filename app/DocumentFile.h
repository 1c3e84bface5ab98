#pragma once
// Opening and saving document files for the commands, and finding notes by
// path. Every failure becomes one line of text naming the file.
#include <memory>
#include <string>

class Attribute;
class Hypertext;
class Node;

// Whether `path` names a regular file (or a symbolic link to one) that can
// be read as a document; anything else (a folder, a FIFO, a device) is
// refused before it is opened, with `error` set to one line.
bool CheckDocumentFile(const std::string& path, std::string& error);

// The line for a file that could not be opened or examined: "PATH: no such
// file" or "PATH: " and the system's reason (such as "File name too long").
std::string DescribeOpenFailure(const std::string& path, int error);

// Reads a document. On failure answers null and sets `error` to a line such
// as "notes.ryl: line 3, column 7: mismatched tag". `version` and
// `revision` receive those of the file.
std::unique_ptr<Hypertext> OpenDocument(const std::string& path, std::string& error, int* version = nullptr,
                                        int* revision = nullptr);

// Writes the document beside the file, flushes it to disk and renames it
// over the file, so that a failure leaves the old file as it was (see
// SafeReplace.h: links are followed, mode and owner kept, hard links refused).
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

// How deep a note stands (the root is at depth 0), and how many levels of
// descendants it has (0 for a note without children).
int DepthOfNote(const Node* node);
int HeightOfNote(const Node* node);

// A name or path as one line of output shows it: as it is, unless it holds
// a control character (a line break could fake a line) or begins with a
// double quote; then in double quotes, with \n, \r, \t, \", \\ and \xHH.
std::string LineSafe(const std::string& text);

// The path of a note in the same form.
std::string PathOfNote(const Node* node);
