#include "XMLReader.h"

#include <cerrno>
#include <cstdlib>
#include <algorithm>
#include <cstring>
#include <fstream>

#include <expat.h>

// ---------------------------------------------------------------- XMLAttributes

const std::string* XMLAttributes::Find(std::string_view name) const {
    for (const auto& [key, value] : items)
        if (key == name)
            return &value;
    return nullptr;
}

std::string XMLAttributes::GetString(std::string_view name, const std::string& otherwise) const {
    const std::string* value = Find(name);
    return value ? *value : otherwise;
}

long XMLAttributes::GetLong(std::string_view name, long otherwise) const {
    const std::string* value = Find(name);
    if (!value)
        return otherwise;
    errno = 0;
    char* end = nullptr;
    long n = std::strtol(value->c_str(), &end, 10);
    if (end == value->c_str() || errno == ERANGE)
        return otherwise;
    return n;
}

unsigned long XMLAttributes::GetUnsigned(std::string_view name, unsigned long otherwise) const {
    const std::string* value = Find(name);
    if (!value)
        return otherwise;
    const char* start = value->c_str();
    while (*start == ' ' || *start == '\t' || *start == '\n' || *start == '\r')
        ++start;
    if (*start == '-')
        return otherwise;
    errno = 0;
    char* end = nullptr;
    unsigned long n = std::strtoul(start, &end, 10);
    if (end == start || errno == ERANGE)
        return otherwise;
    return n;
}

double XMLAttributes::GetDouble(std::string_view name, double otherwise) const {
    const std::string* value = Find(name);
    if (!value)
        return otherwise;
    char* end = nullptr;
    double n = std::strtod(value->c_str(), &end);
    if (end == value->c_str())
        return otherwise;
    return n;
}

bool XMLAttributes::GetBoolean(std::string_view name, bool otherwise) const {
    const std::string* value = Find(name);
    if (!value)
        return otherwise;
    std::string lower;
    for (char c : *value)
        if (c != ' ')
            lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower == "1" || lower == "true" || lower == "yes";
}

// ---------------------------------------------------------------- XMLItem

XMLItem::~XMLItem() {
    // Children are freed without recursion, so that deep trees cannot
    // exhaust the stack: each grandchild list is spliced into the list
    // being freed.
    XMLItem* list = son;
    son = youngest = nullptr;
    while (list) {
        XMLItem* item = list;
        list = item->brother;
        if (item->son) {
            item->youngest->brother = list;
            list = item->son;
            item->son = item->youngest = nullptr;
        }
        item->brother = nullptr;
        delete item;
    }
}

XMLItem* XMLItem::Find(std::string_view childName) const {
    for (XMLItem* child = son; child; child = child->brother)
        if (child->name == childName)
            return child;
    return nullptr;
}

size_t XMLItem::ChildCount() const {
    size_t count = 0;
    for (XMLItem* child = son; child; child = child->brother)
        ++count;
    return count;
}

void XMLItem::AddSon(XMLItem* child) {
    child->father = this;
    child->brother = nullptr;
    child->elder = youngest;
    if (youngest)
        youngest->brother = child;
    else
        son = child;
    youngest = child;
}

void XMLItem::Reuse(const char* newName) {
    name.assign(newName);
    attributes.Clear();
    text.clear();
    raw.clear();
    father = son = youngest = brother = elder = nullptr;
    keepText = true;
    captureRaw = false;
}

XMLItem* XMLItem::RemoveYoungestSon() {
    XMLItem* last = youngest;
    if (!last)
        return nullptr;
    youngest = last->elder;
    if (youngest)
        youngest->brother = nullptr;
    else
        son = nullptr;
    last->father = nullptr;
    last->elder = nullptr;
    return last;
}

// ---------------------------------------------------------------- XMLReader

struct XMLReader::Impl {
    XML_Parser parser = nullptr;
    ~Impl() {
        if (parser)
            XML_ParserFree(parser);
    }
};

namespace {

void XMLCALL StartHandler(void* data, const XML_Char* name, const XML_Char** atts);
void XMLCALL EndHandler(void* data, const XML_Char* name);
void XMLCALL TextHandler(void* data, const XML_Char* text, int length);
void XMLCALL DoctypeHandler(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int);

} // namespace

// Friends of a sort: the C callbacks reach the reader through these.
struct XMLReaderCallbacks {
    static void Start(XMLReader* r, const char* name, const char** atts) { r->OnStart(name, atts); }
    static void End(XMLReader* r) { r->OnEnd(); }
    static void Text(XMLReader* r, const char* text, int length) { r->OnText(text, length); }
    static void Fail(XMLReader* r, const std::string& message) { r->Fail(message); }
};

namespace {

void XMLCALL StartHandler(void* data, const XML_Char* name, const XML_Char** atts) {
    XMLReaderCallbacks::Start(static_cast<XMLReader*>(data), name, atts);
}
void XMLCALL EndHandler(void* data, const XML_Char*) { XMLReaderCallbacks::End(static_cast<XMLReader*>(data)); }
void XMLCALL TextHandler(void* data, const XML_Char* text, int length) {
    XMLReaderCallbacks::Text(static_cast<XMLReader*>(data), text, length);
}
void XMLCALL DoctypeHandler(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int) {
    XMLReaderCallbacks::Fail(static_cast<XMLReader*>(data), "document type declarations are not accepted");
}

} // namespace

XMLReader::XMLReader() : impl(std::make_unique<Impl>()) {}

XMLReader::~XMLReader() = default;

bool XMLReader::Begin() {
    if (impl->parser)
        XML_ParserFree(impl->parser);
    impl->parser = XML_ParserCreate("UTF-8");
    root.reset();
    current = nullptr;
    depth = 0;
    leafDepth = 0;
    errorMessage.clear();
    errorLine = errorColumn = 0;
    failure.clear();
    chunk = {};
    chunkBase = 0;
    capturing = nullptr;
    captureBuffer.clear();
    if (!impl->parser) {
        errorMessage = "out of memory";
        return false;
    }
    XML_SetUserData(impl->parser, this);
    XML_SetElementHandler(impl->parser, StartHandler, EndHandler);
    XML_SetCharacterDataHandler(impl->parser, TextHandler);
    XML_SetStartDoctypeDeclHandler(impl->parser, DoctypeHandler);
    return true;
}

void XMLReader::RecordError(const std::string& message) {
    errorLine = static_cast<long>(XML_GetCurrentLineNumber(impl->parser));
    errorColumn = static_cast<long>(XML_GetCurrentColumnNumber(impl->parser)) + 1;
    errorMessage = "line " + std::to_string(errorLine) + ", column " + std::to_string(errorColumn) + ": " + message;
}

void XMLReader::Fail(const std::string& message) {
    if (!failure.empty())
        return;
    failure = message.empty() ? std::string("stopped") : message;
    if (!parsing) {
        errorMessage = failure;
        errorLine = errorColumn = 0;
        return;
    }
    RecordError(failure);
    XML_StopParser(impl->parser, XML_FALSE);
}

bool XMLReader::Feed(const char* data, size_t length, bool last) {
    // expat takes lengths as int: feed large buffers in pieces.
    constexpr size_t kPiece = 1 << 30;
    struct Parsing {
        bool& flag;
        explicit Parsing(bool& f) : flag(f) { flag = true; }
        ~Parsing() { flag = false; }
    } parsingNow(parsing);
    do {
        size_t piece = std::min(length, kPiece);
        bool final = last && piece == length;
        chunk = std::string_view(data, piece);
        if (capturing)
            captureBuffer.append(chunk);
        if (XML_Parse(impl->parser, data, static_cast<int>(piece), final) != XML_STATUS_OK) {
            if (failure.empty())
                RecordError(XML_ErrorString(XML_GetErrorCode(impl->parser)));
            return false;
        }
        data += piece;
        length -= piece;
        chunkBase += static_cast<long long>(piece);
    } while (length > 0);
    return true;
}

bool XMLReader::Finish(bool ok) {
    if (ok && !root) {
        errorMessage = "no document element";
        ok = false;
    }
    return ok;
}

bool XMLReader::Parse(std::string_view data) {
    if (!Begin())
        return false;
    return Finish(Feed(data.data(), data.size(), true));
}

bool XMLReader::Parse(std::istream& stream) {
    if (!Begin())
        return false;
    constexpr size_t kChunk = 256 * 1024;
    std::string buffer(kChunk, '\0');
    for (;;) {
        stream.read(buffer.data(), static_cast<std::streamsize>(kChunk));
        size_t got = static_cast<size_t>(stream.gcount());
        bool last = got < kChunk;
        if (!Feed(buffer.data(), got, last))
            return false;
        if (last)
            break;
    }
    if (stream.bad()) {
        errorMessage = "read error";
        return false;
    }
    return Finish(true);
}

bool XMLReader::ParseFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        errorMessage = std::string("cannot open: ") + std::strerror(errno);
        return false;
    }
    return Parse(file);
}

void XMLReader::OnStart(const char* name, const char** atts) {
    if (!failure.empty())
        return;
    if (++depth > kMaxDepth) {
        Fail("elements nested too deeply");
        return;
    }
    if (leafDepth > 0) {
        ++leafDepth;
        return;
    }
    if (current && StartLeaf(name, atts)) {
        leafDepth = 1;
        return;
    }
    XMLItem* item = MakeItem(name);
    for (const char** a = atts; a && a[0]; a += 2)
        item->Attributes().Add(a[0], a[1]);
    if (current) {
        current->AddSon(item);
    } else {
        root.reset(item);
    }
    current = item;
    if (!StartItem(item) && failure.empty()) {
        Fail("stopped");
        return;
    }
    if (item->captureRaw && !capturing) {
        long long index = XML_GetCurrentByteIndex(impl->parser);
        long long offset = index - chunkBase;
        if (index >= 0 && offset >= 0 && static_cast<size_t>(offset) <= chunk.size()) {
            capturing = item;
            captureStart = index;
            captureStartTagEnd = index + XML_GetCurrentByteCount(impl->parser);
            captureBuffer.assign(chunk.substr(static_cast<size_t>(offset)));
        }
    }
}

void XMLReader::OnEnd() {
    if (!failure.empty() || !current)
        return;
    --depth;
    if (leafDepth > 0) {
        if (--leafDepth == 0)
            EndLeaf();
        return;
    }
    XMLItem* item = current;
    current = item->Father();
    if (item == capturing) {
        int count = XML_GetCurrentByteCount(impl->parser);
        long long end = count > 0 ? XML_GetCurrentByteIndex(impl->parser) + count : captureStartTagEnd;
        item->raw = captureBuffer.substr(0, static_cast<size_t>(end - captureStart));
        captureBuffer.clear();
        captureBuffer.shrink_to_fit();
        capturing = nullptr;
    }
    if (EndItem(item) && current) {
        Drop(current->RemoveYoungestSon());
    }
}

XMLItem* XMLReader::MakeItem(const char* name) {
    if (spare.empty())
        return new XMLItem(name);
    XMLItem* item = spare.back().release();
    spare.pop_back();
    item->Reuse(name);
    return item;
}

void XMLReader::Drop(XMLItem* item) {
    // Only leaves are kept, and only a few: enough for the deepest run of
    // elements that end one after another.
    constexpr size_t kMaxSpare = 64;
    if (item && !item->Son() && spare.size() < kMaxSpare && item->text.capacity() < 64 * 1024)
        spare.emplace_back(item);
    else
        delete item;
}

void XMLReader::OnText(const char* text, int length) {
    if (leafDepth > 0) {
        if (leafDepth == 1 && failure.empty())
            LeafText(text, length);
        return;
    }
    if (current && current->keepText && failure.empty())
        current->MutableText().append(text, static_cast<size_t>(length));
}
