#pragma once
// Reads XML through expat into a tree of XMLItem elements.
//
// By default the whole document is kept as a tree (GetNodeList). A subclass
// can instead consume elements as they finish (EndItem answers true), so
// that a large document never exists as a whole tree in memory, and can take
// small elements whole from the parser (StartLeaf), without an item for them.
//
// A large input is read by two threads: past its first kBackgroundThreshold
// bytes, expat parses on a thread of its own and hands the elements over in
// blocks, while the calling thread runs the subclass's hooks on them. The
// hooks always run on the calling thread, in document order, and see the
// same elements, texts and error positions as when one thread does it all.
//
// Documents with a document type declaration are refused: the files read here
// never carry one, and refusing it keeps entity expansion out of reach.
#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class XMLAttributes {
public:
    void Add(std::string name, std::string value) { items.emplace_back(std::move(name), std::move(value)); }
    bool Has(std::string_view name) const { return Find(name) != nullptr; }
    // The value of the attribute, or null when absent.
    const std::string* Find(std::string_view name) const;
    std::string GetString(std::string_view name, const std::string& otherwise = std::string()) const;
    // Numbers read leniently: leading white space, a sign, digits; anything
    // unreadable gives the fallback.
    long GetLong(std::string_view name, long otherwise = 0) const;
    unsigned long GetUnsigned(std::string_view name, unsigned long otherwise = 0) const;
    double GetDouble(std::string_view name, double otherwise = 0) const;
    // "1", "true" and "yes" (any case) are true; other text false.
    bool GetBoolean(std::string_view name, bool otherwise = false) const;

    size_t size() const { return items.size(); }
    bool empty() const { return items.empty(); }
    void Clear() { items.clear(); }
    const std::vector<std::pair<std::string, std::string>>& Items() const { return items; }

private:
    std::vector<std::pair<std::string, std::string>> items;
};

class XMLItem {
public:
    explicit XMLItem(std::string name) : name(std::move(name)) {}
    ~XMLItem();
    XMLItem(const XMLItem&) = delete;
    XMLItem& operator=(const XMLItem&) = delete;

    const std::string& Name() const { return name; }
    const XMLAttributes& Attributes() const { return attributes; }
    XMLAttributes& Attributes() { return attributes; }
    const std::string& Text() const { return text; }
    std::string& MutableText() { return text; }

    XMLItem* Father() const { return father; }
    XMLItem* Son() const { return son; }
    XMLItem* Brother() const { return brother; }
    // The first child with that name, or null.
    XMLItem* Find(std::string_view childName) const;
    size_t ChildCount() const;

    // Takes ownership of `child` and appends it as the youngest son.
    void AddSon(XMLItem* child);
    // Unlinks the youngest son and answers it (now owned by the caller).
    XMLItem* RemoveYoungestSon();

    // Whether character data inside this element is kept. A reader that
    // knows an element holds only children can turn this off to save memory.
    bool keepText = true;
    // The element's exact bytes, from "<" of its start tag to ">" of its end
    // tag, when the reader asked for them (XMLReader::CapturesRaw).
    const std::string& Raw() const { return raw; }

private:
    // Makes a finished, childless item ready to stand for another element,
    // keeping the room its strings have grown.
    void Reuse(const char* newName);
    std::string name;
    XMLAttributes attributes;
    std::string text;
    std::string raw;
    XMLItem* father = nullptr;
    XMLItem* son = nullptr;
    XMLItem* youngest = nullptr;
    XMLItem* brother = nullptr;
    XMLItem* elder = nullptr;
    friend class XMLReader;
};

class XMLReader {
public:
    XMLReader();
    virtual ~XMLReader();
    XMLReader(const XMLReader&) = delete;
    XMLReader& operator=(const XMLReader&) = delete;

    // Parses a complete document. Answers false on an error (ErrorMessage).
    bool Parse(std::string_view data);
    bool Parse(std::istream& stream);
    bool ParseFile(const std::string& path);

    // "line L, column C: what is wrong", empty after a good parse.
    const std::string& ErrorMessage() const { return errorMessage; }
    long ErrorLine() const { return errorLine; }
    long ErrorColumn() const { return errorColumn; }

    // The document element, when the tree was kept.
    XMLItem* GetNodeList() const { return root.get(); }
    // The first child of the document element.
    XMLItem* FirstNode() const { return root ? root->Son() : nullptr; }

    // Deepest nesting of elements accepted.
    static constexpr int kMaxDepth = 4096;
    // Inputs longer than this are parsed on a second thread from this many
    // bytes on (see above); SetBackgroundThreshold changes it for a reader.
    static constexpr size_t kBackgroundThreshold = 1 << 20;
    void SetBackgroundThreshold(size_t bytes) { backgroundThreshold = bytes; }

protected:
    // Called when an element has begun, with its attributes read. Answering
    // false stops the parse (with the message given to Fail, if any).
    virtual bool StartItem(XMLItem* item) { return true; }
    // Called when an element has ended. Answering true means the element was
    // consumed: it is unlinked and deleted at once.
    virtual bool EndItem(XMLItem* item) { return false; }
    // Called before an item is made for an element, with its name and its
    // attributes as name and value pairs ending in null. Answering true
    // takes the element as a leaf: no item is made, its own character data
    // goes to LeafText and its end to EndLeaf. Elements nested inside a leaf
    // are skipped with their text, as an item's Text() leaves them out.
    virtual bool StartLeaf(const char* name, const char** attributes) { return false; }
    virtual void LeafText(const char* text, int length) {}
    virtual void EndLeaf() {}
    // The innermost element that has an item: the father of a leaf.
    XMLItem* Current() const { return current; }
    // Whether the element's exact bytes are wanted in its item's Raw() when
    // it ends; `depth` is 1 for the document element. One element is
    // captured at a time: elements inside a captured one are not asked.
    // This may be called on the parsing thread, so it may look at nothing
    // but its arguments and what does not change during a parse.
    virtual bool CapturesRaw(std::string_view name, int depth) const { return false; }
    // Ends the parse with an error at the current position. Outside a
    // parse it only records the message.
    void Fail(const std::string& message);
    int Depth() const { return depth; }

private:
    friend struct XMLReaderCallbacks;
    struct Impl;
    struct Source;
    class RecordBlock;
    bool Begin();
    bool Run(Source& source);
    // Runs the hooks on the blocks of the parsing thread until it is done.
    bool ReplayBlocks(Source& source);
    bool Finish(bool ok);
    void Replay(const RecordBlock& block);
    void OnStart(const char* name, const char** atts);
    void OnEnd(const std::string* raw);
    void OnText(const char* data, int length);
    void RecordError(const std::string& message);
    void SetError(long line, long column, const std::string& message);
    XMLItem* MakeItem(const char* name);
    void Drop(XMLItem* item);

    std::unique_ptr<Impl> impl;
    std::unique_ptr<XMLItem> root;
    // Finished items kept for the next elements: most elements of a large
    // file are small leaves read and dropped one after another.
    std::vector<std::unique_ptr<XMLItem>> spare;
    XMLItem* current = nullptr;
    int depth = 0;
    // Inside a leaf: 1 for the leaf itself, more inside elements within it.
    int leafDepth = 0;
    std::string errorMessage;
    long errorLine = 0;
    long errorColumn = 0;
    std::string failure;
    bool parsing = false;
    size_t backgroundThreshold = kBackgroundThreshold;
};
