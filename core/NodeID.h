#pragma once
// The identity of a note: a 32-bit number and the name of its creator.
//
// New ids come from one process-wide counter shared by every open document.
// It starts from the clock (seconds since 1970) and then counts up by one.
#include <cstdint>
#include <string>
#include <utility>

class Hypertext;
class Value;

class NodeID {
public:
    NodeID() = default;
    // An id read from a file: takes it as it stands and only nudges the shared
    // counter when it collides with it.
    NodeID(uint32_t id, std::string creator);
    // A fresh id for a note of this document.
    explicit NodeID(const Hypertext* hypertext);
    virtual ~NodeID() = default;

    virtual uint32_t GetID() const { return id; }
    virtual const std::string& GetCreator() const { return creator->first; }
    virtual void MakeUnique(const Hypertext* hypertext);
    virtual bool Equal(const NodeID& other) const { return Equal(other.id, other.creator->first); }
    virtual bool Equal(uint32_t otherID, const std::string& otherCreator) const {
        return id == otherID && creator->first == otherCreator;
    }
    // The creator as a value for the note's Creator attribute: a new
    // reference to one value shared by every id of that creator.
    Value* CreatorValue() const;
    // Inverted sense: 1 when the other's id is below this one's.
    virtual int Compare(const NodeID& other) const;
    virtual bool operator<(const NodeID& other) const { return Compare(other) == 1; }

    // The shared counter, for tests and diagnostics.
    static uint32_t LastID();
    static void SetLastID(uint32_t value);

private:
    // Creator names are few and repeated on every note: each is kept once,
    // with the value notes store for it, and lives as long as the program.
    using Creator = std::pair<const std::string, Value*>;
    static const Creator* Intern(const std::string& name);

    uint32_t id = 0;
    const Creator* creator = Intern("");
};
