#include "XMLReader.h"

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
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

// ---------------------------------------------------------------- sources

namespace {

// Pieces handed to expat at a time.
constexpr size_t kPiece = 256 * 1024;
// Blocks of recorded elements handed from the parsing thread, and how many
// may wait at once: enough to ride out uneven work on either side while
// the memory they take stays small.
constexpr size_t kBlock = 256 * 1024;
constexpr size_t kMostWaitingBlocks = 8;

// Counts lines and columns the way expat does: a line ends at LF, CR or
// CR LF, and a column is one character, however many bytes it takes.
struct PositionCounter {
    long line = 1;
    long column = 0;
    bool afterCR = false;
    void Advance(std::string_view bytes) {
        for (char c : bytes) {
            if (afterCR) {
                afterCR = false;
                if (c == '\n')
                    continue;
            }
            if (c == '\n') {
                ++line;
                column = 0;
            } else if (c == '\r') {
                ++line;
                column = 0;
                afterCR = true;
            } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
                ++column;
            }
        }
    }
};

} // namespace

// Where the bytes come from: a buffer in memory, or a stream read in pieces.
struct XMLReader::Source {
    explicit Source(std::string_view d) : data(d) {}
    explicit Source(std::istream& s) : stream(&s), origin(s.tellg()) {}

    // The next piece, of at most `most` bytes; `last` when nothing follows.
    std::string_view Next(size_t most, bool& last) {
        if (!stream) {
            size_t size = std::min(most, data.size() - offset);
            std::string_view piece = data.substr(offset, size);
            offset += size;
            last = offset == data.size();
            return piece;
        }
        buffer.resize(most);
        stream->read(buffer.data(), static_cast<std::streamsize>(most));
        size_t got = static_cast<size_t>(stream->gcount());
        last = got < most;
        if (stream->bad())
            readError = true;
        return std::string_view(buffer.data(), got);
    }

    // Whether the bytes can be read again from the start, to find the line
    // and column of a position after they were parsed.
    bool CanRescan() const { return !stream || origin != std::streampos(-1); }

    // The line and column (counted from 1) of the byte at `index`.
    bool PositionOf(long long index, long& line, long& column) {
        PositionCounter counter;
        if (!stream) {
            counter.Advance(data.substr(0, static_cast<size_t>(std::max(0LL, index))));
        } else {
            stream->clear();
            stream->seekg(origin);
            std::string piece(64 * 1024, '\0');
            for (long long left = index; left > 0 && *stream;) {
                size_t want = static_cast<size_t>(std::min<long long>(left, static_cast<long long>(piece.size())));
                stream->read(piece.data(), static_cast<std::streamsize>(want));
                size_t got = static_cast<size_t>(stream->gcount());
                counter.Advance(std::string_view(piece.data(), got));
                left -= static_cast<long long>(got);
                if (got < want)
                    return false;
            }
        }
        line = counter.line;
        column = counter.column + 1;
        return true;
    }

    std::string_view data;
    size_t offset = 0;
    std::istream* stream = nullptr;
    std::streampos origin;
    std::string buffer;
    bool readError = false;
};

// ---------------------------------------------------------------- the parsing side

// Recorded elements on their way from the parsing thread: bytes appended
// with one check of room per record and no filling of fresh room.
class XMLReader::RecordBlock {
public:
    static constexpr size_t npos = static_cast<size_t>(-1);
    RecordBlock() = default;
    RecordBlock(RecordBlock&& other) noexcept
        : bytes(std::move(other.bytes)), size(std::exchange(other.size, 0)),
          capacity(std::exchange(other.capacity, 0)) {}
    RecordBlock& operator=(RecordBlock&& other) noexcept {
        bytes = std::move(other.bytes);
        size = std::exchange(other.size, 0);
        capacity = std::exchange(other.capacity, 0);
        return *this;
    }

    // Room for `n` more bytes at the end, to be written by the caller.
    char* Grow(size_t n) {
        if (capacity - size < n) {
            size_t wanted = std::max({capacity * 2, size + n, kBlock + kBlock / 4});
            auto grown = std::make_unique_for_overwrite<char[]>(wanted);
            if (size)
                std::memcpy(grown.get(), bytes.get(), size);
            bytes = std::move(grown);
            capacity = wanted;
        }
        char* at = bytes.get() + size;
        size += n;
        return at;
    }
    char* At(size_t offset) { return bytes.get() + offset; }
    const char* Data() const { return bytes.get(); }
    size_t Size() const { return size; }
    void Clear() { size = 0; }

private:
    std::unique_ptr<char[]> bytes;
    size_t size = 0;
    size_t capacity = 0;
};

// Runs expat: on the calling thread, or for the rest of a large input on a
// thread of its own, which records the elements into blocks for the
// calling thread to replay. Only this side touches the parser while it runs.
struct XMLReader::Impl {
    explicit Impl(XMLReader* r) : reader(r) {}
    ~Impl() {
        StopProducing();
        if (parser)
            XML_ParserFree(parser);
    }

    void Reset() {
        depth = 0;
        chunk = {};
        chunkBase = 0;
        capturing = false;
        captureBuffer.clear();
        raw.clear();
        background = false;
        stop = false;
        done = false;
        full.clear();
        block.Clear();
        lastText = RecordBlock::npos;
        expatError = XML_ERROR_NONE;
        failure.clear();
        failureLine = failureColumn = 0;
        eventByte = 0;
    }

    // Parses one piece. Answers false when the parse has ended in error or
    // was stopped.
    bool Feed(std::string_view piece, bool last) {
        chunk = piece;
        if (capturing)
            captureBuffer.append(chunk);
        bool ok = XML_Parse(parser, piece.data(), static_cast<int>(piece.size()), last) == XML_STATUS_OK;
        chunkBase += static_cast<long long>(piece.size());
        if (!ok && expatError == XML_ERROR_NONE) {
            expatError = XML_GetErrorCode(parser);
            if (expatError != XML_ERROR_ABORTED)
                RecordPosition();
        }
        return ok;
    }

    // How big the next piece should be. Expat keeps a token that a piece
    // ends inside (a long attribute value) and scans it again from its start
    // with each piece that follows: pieces at least as long as what waits
    // keep that work linear in the token's length rather than quadratic.
    size_t NextPiece() const {
        long long index = XML_GetCurrentByteIndex(parser);
        size_t pending = index >= 0 && chunkBase > index ? static_cast<size_t>(chunkBase - index) : 0;
        return std::max(kPiece, pending);
    }

    void RecordPosition() {
        failureLine = static_cast<long>(XML_GetCurrentLineNumber(parser));
        failureColumn = static_cast<long>(XML_GetCurrentColumnNumber(parser)) + 1;
    }

    // A failure found by the parsing side itself (a document type
    // declaration) while it runs on its own thread.
    void Fail(const std::string& message) {
        if (!failure.empty())
            return;
        failure = message;
        RecordPosition();
        XML_StopParser(parser, XML_FALSE);
    }

    // --------------------------------------------------- raw capture

    void BeginElement(const char* name) {
        ++depth;
        if (capturing || !reader->CapturesRaw(name, depth))
            return;
        long long index = XML_GetCurrentByteIndex(parser);
        if (index < 0)
            return;
        // From "<" to the end of what expat holds: its own buffer keeps a
        // start tag that began in an earlier piece.
        int offset = 0, size = 0;
        const char* held = XML_GetInputContext(parser, &offset, &size);
        if (held && offset >= 0 && offset <= size) {
            captureBuffer.assign(held + offset, static_cast<size_t>(size - offset));
        } else {
            long long inChunk = index - chunkBase;
            if (inChunk < 0 || static_cast<size_t>(inChunk) > chunk.size())
                return;
            captureBuffer.assign(chunk.substr(static_cast<size_t>(inChunk)));
        }
        capturing = true;
        captureDepth = depth;
        captureStart = index;
        captureStartTagEnd = index + XML_GetCurrentByteCount(parser);
    }

    // The element's exact bytes when it was captured, else null.
    const std::string* EndElement() {
        int ending = depth--;
        if (!capturing || ending != captureDepth)
            return nullptr;
        int count = XML_GetCurrentByteCount(parser);
        long long end = count > 0 ? XML_GetCurrentByteIndex(parser) + count : captureStartTagEnd;
        raw = captureBuffer.substr(0, static_cast<size_t>(end - captureStart));
        captureBuffer.clear();
        captureBuffer.shrink_to_fit();
        capturing = false;
        return &raw;
    }

    // --------------------------------------------------- recording

    // Records: 'S' byte-index name NUL count (attribute NUL value NUL)...,
    // 'E' byte-index has-raw [length bytes], 'T' length bytes; adjacent
    // texts are recorded as one.
    template <class T>
    static char* Put(char* out, const T& value) {
        std::memcpy(out, &value, sizeof value);
        return out + sizeof value;
    }
    static char* Put(char* out, const char* text, size_t size) {
        std::memcpy(out, text, size);
        return out + size;
    }

    void RecordStart(const char* name, const char** atts) {
        // Lengths with their terminating NUL, measured once for most elements.
        constexpr size_t kMeasured = 32;
        size_t lengths[kMeasured];
        size_t nameLength = std::strlen(name) + 1;
        size_t size = 1 + sizeof(long long) + nameLength + sizeof(uint32_t);
        uint32_t count = 0;
        for (const char** a = atts; a && a[0]; a += 2, ++count)
            for (int i = 0; i < 2; ++i) {
                size_t length = std::strlen(a[i]) + 1;
                if (2 * count + i < kMeasured)
                    lengths[2 * count + i] = length;
                size += length;
            }
        char* out = block.Grow(size);
        *out++ = 'S';
        out = Put(out, static_cast<long long>(XML_GetCurrentByteIndex(parser)));
        out = Put(out, name, nameLength);
        out = Put(out, count);
        for (uint32_t i = 0; i < 2 * count; ++i) {
            const char* text = atts[i];
            out = Put(out, text, i < kMeasured ? lengths[i] : std::strlen(text) + 1);
        }
        lastText = RecordBlock::npos;
        Ship();
    }

    void RecordEnd(const std::string* captured) {
        size_t size = 1 + sizeof(long long) + 1 + (captured ? sizeof(uint64_t) + captured->size() : 0);
        char* out = block.Grow(size);
        *out++ = 'E';
        out = Put(out, static_cast<long long>(XML_GetCurrentByteIndex(parser)));
        *out++ = captured ? '\1' : '\0';
        if (captured) {
            out = Put(out, static_cast<uint64_t>(captured->size()));
            Put(out, captured->data(), captured->size());
        }
        lastText = RecordBlock::npos;
        Ship();
    }

    void RecordText(const char* text, int length) {
        uint32_t size = static_cast<uint32_t>(length);
        if (lastText != RecordBlock::npos) {
            uint32_t before = 0;
            std::memcpy(&before, block.At(lastText), sizeof before);
            if (before <= UINT32_MAX - size) {
                before += size;
                std::memcpy(block.At(lastText), &before, sizeof before);
                Put(block.Grow(size), text, size);
                Ship();
                return;
            }
        }
        char* out = block.Grow(1 + sizeof size + size);
        *out++ = 'T';
        lastText = block.Size() - size - sizeof size;
        out = Put(out, size);
        Put(out, text, size);
        Ship();
    }

    // Hands the block over once it is big enough, waiting while the
    // calling thread is behind.
    void Ship(bool finished = false) {
        if (block.Size() < kBlock && !finished)
            return;
        std::unique_lock lock(mutex);
        room.wait(lock, [this] { return full.size() < kMostWaitingBlocks || stop; });
        if (!stop && block.Size())
            full.push_back(std::move(block));
        block.Clear();
        lastText = RecordBlock::npos;
        if (!spareBlocks.empty()) {
            block = std::move(spareBlocks.back());
            spareBlocks.pop_back();
        }
        if (finished)
            done = true;
        lock.unlock();
        ready.notify_one();
    }

    // The producing thread: parses the rest of the source.
    void Produce(Source& source) {
        for (;;) {
            bool last = false;
            std::string_view piece = source.Next(NextPiece(), last);
            if (source.readError || !Feed(piece, last) || last)
                break;
        }
        Ship(true);
    }

    bool StopRequested() const { return stop.load(std::memory_order_relaxed); }

    void StopProducing() {
        if (!thread.joinable())
            return;
        {
            std::lock_guard lock(mutex);
            stop = true;
        }
        room.notify_all();
        thread.join();
    }

    XMLReader* reader;
    XML_Parser parser = nullptr;
    int depth = 0;

    // The piece being parsed, for capturing raw elements.
    std::string_view chunk;
    long long chunkBase = 0;
    bool capturing = false;
    int captureDepth = 0;
    long long captureStart = 0;
    long long captureStartTagEnd = 0;
    std::string captureBuffer;
    std::string raw;

    // How the parse ended on this side.
    XML_Error expatError = XML_ERROR_NONE;
    std::string failure;
    long failureLine = 0;
    long failureColumn = 0;

    // Parsing on a thread of its own.
    bool background = false;
    std::thread thread;
    std::mutex mutex;
    std::condition_variable ready;
    std::condition_variable room;
    std::atomic<bool> stop{false};
    bool done = false;
    std::deque<RecordBlock> full;
    std::vector<RecordBlock> spareBlocks;
    // What each side writes for every element lives on a cache line of its
    // own, so that the two threads do not pass lines back and forth.
    alignas(64) RecordBlock block;
    // Where the length of the text recorded last is, while it may grow.
    size_t lastText = RecordBlock::npos;
    // The position of the element being replayed.
    alignas(64) long long eventByte = 0;
    char padding[64 - sizeof(long long)];
};

// Friends of a sort: the C callbacks reach the reader through these.
struct XMLReaderCallbacks {
    static void Start(void* data, const char* name, const char** atts) {
        auto* p = static_cast<XMLReader::Impl*>(data);
        if (p->background && p->StopRequested()) {
            XML_StopParser(p->parser, XML_FALSE);
            return;
        }
        p->BeginElement(name);
        if (p->background)
            p->RecordStart(name, atts);
        else
            p->reader->OnStart(name, atts);
    }
    static void End(void* data) {
        auto* p = static_cast<XMLReader::Impl*>(data);
        if (p->background && p->StopRequested()) {
            XML_StopParser(p->parser, XML_FALSE);
            return;
        }
        const std::string* raw = p->EndElement();
        if (p->background)
            p->RecordEnd(raw);
        else
            p->reader->OnEnd(raw);
    }
    static void Text(void* data, const char* text, int length) {
        auto* p = static_cast<XMLReader::Impl*>(data);
        if (p->background)
            p->RecordText(text, length);
        else
            p->reader->OnText(text, length);
    }
    static void Fail(void* data, const std::string& message) {
        auto* p = static_cast<XMLReader::Impl*>(data);
        if (p->background)
            p->Fail(message);
        else
            p->reader->Fail(message);
    }
};

namespace {

void XMLCALL StartHandler(void* data, const XML_Char* name, const XML_Char** atts) {
    XMLReaderCallbacks::Start(data, name, atts);
}
void XMLCALL EndHandler(void* data, const XML_Char*) {
    XMLReaderCallbacks::End(data);
}
void XMLCALL TextHandler(void* data, const XML_Char* text, int length) {
    XMLReaderCallbacks::Text(data, text, length);
}
void XMLCALL DoctypeHandler(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int) {
    XMLReaderCallbacks::Fail(data, "document type declarations are not accepted");
}

} // namespace

// ---------------------------------------------------------------- XMLReader

XMLReader::XMLReader() : impl(std::make_unique<Impl>(this)) {}

XMLReader::~XMLReader() = default;

bool XMLReader::Begin() {
    impl->StopProducing();
    if (impl->parser)
        XML_ParserFree(impl->parser);
    impl->parser = XML_ParserCreate("UTF-8");
    impl->Reset();
    root.reset();
    current = nullptr;
    depth = 0;
    leafDepth = 0;
    errorMessage.clear();
    errorLine = errorColumn = 0;
    failure.clear();
    if (!impl->parser) {
        errorMessage = "out of memory";
        return false;
    }
    XML_SetUserData(impl->parser, impl.get());
    XML_SetElementHandler(impl->parser, StartHandler, EndHandler);
    XML_SetCharacterDataHandler(impl->parser, TextHandler);
    XML_SetStartDoctypeDeclHandler(impl->parser, DoctypeHandler);
    return true;
}

void XMLReader::RecordError(const std::string& message) {
    SetError(static_cast<long>(XML_GetCurrentLineNumber(impl->parser)),
             static_cast<long>(XML_GetCurrentColumnNumber(impl->parser)) + 1, message);
}

void XMLReader::SetError(long line, long column, const std::string& message) {
    errorLine = line;
    errorColumn = column;
    errorMessage = "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + message;
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
    if (impl->background) {
        // The parser belongs to the other thread: it is told to stop, and
        // the position is found from the element's byte once it has.
        {
            std::lock_guard lock(impl->mutex);
            impl->stop = true;
        }
        impl->room.notify_all();
        return;
    }
    RecordError(failure);
    XML_StopParser(impl->parser, XML_FALSE);
}

bool XMLReader::Run(Source& source) {
    struct Parsing {
        bool& flag;
        explicit Parsing(bool& f) : flag(f) { flag = true; }
        ~Parsing() { flag = false; }
    } parsingNow(parsing);
    size_t fed = 0;
    bool ok = true;
    bool last = false;
    bool canHandOver = source.CanRescan();
    for (;;) {
        // The start, on this thread, and all of it when no thread can be had.
        while (ok && !last && (fed < backgroundThreshold || !canHandOver)) {
            size_t most = impl->NextPiece();
            if (most == kPiece && fed < backgroundThreshold)
                most = std::min(kPiece, backgroundThreshold - fed);
            std::string_view piece = source.Next(most, last);
            if (source.readError)
                break;
            fed += piece.size();
            ok = impl->Feed(piece, last);
        }
        if (!ok || last || source.readError)
            break;
        // The rest, on a thread of its own.
        impl->background = true;
        try {
            impl->thread = std::thread([this, &source] { impl->Produce(source); });
            return ReplayBlocks(source);
        } catch (const std::system_error&) {
            impl->background = false;
            canHandOver = false;
        }
    }
    if (source.readError) {
        errorMessage = "read error";
        return false;
    }
    if (!ok) {
        if (failure.empty())
            RecordError(XML_ErrorString(XML_GetErrorCode(impl->parser)));
        return false;
    }
    return true;
}

bool XMLReader::ReplayBlocks(Source& source) {
    for (;;) {
        RecordBlock block;
        {
            std::unique_lock lock(impl->mutex);
            impl->ready.wait(lock, [this] { return !impl->full.empty() || impl->done; });
            if (impl->full.empty())
                break;
            block = std::move(impl->full.front());
            impl->full.pop_front();
        }
        impl->room.notify_one();
        Replay(block);
        if (!failure.empty())
            break;
        block.Clear();
        std::lock_guard lock(impl->mutex);
        if (impl->spareBlocks.size() < 2)
            impl->spareBlocks.push_back(std::move(block));
    }
    impl->StopProducing();
    impl->background = false;
    if (!failure.empty()) {
        // Failed while replaying: the position comes from the bytes.
        long line = 0, column = 0;
        if (source.PositionOf(impl->eventByte, line, column))
            SetError(line, column, failure);
        else
            errorMessage = failure;
        return false;
    }
    if (!impl->failure.empty()) {
        failure = impl->failure;
        SetError(impl->failureLine, impl->failureColumn, failure);
        return false;
    }
    if (impl->expatError != XML_ERROR_NONE) {
        SetError(impl->failureLine, impl->failureColumn, XML_ErrorString(impl->expatError));
        return false;
    }
    if (source.readError) {
        errorMessage = "read error";
        return false;
    }
    return true;
}

void XMLReader::Replay(const RecordBlock& block) {
    std::vector<const char*> atts;
    const char* p = block.Data();
    const char* end = p + block.Size();
    std::string raw;
    while (p < end && failure.empty()) {
        char tag = *p++;
        if (tag == 'S') {
            std::memcpy(&impl->eventByte, p, sizeof(long long));
            p += sizeof(long long);
            const char* name = p;
            p += std::strlen(p) + 1;
            uint32_t count = 0;
            std::memcpy(&count, p, sizeof count);
            p += sizeof count;
            atts.clear();
            for (uint32_t i = 0; i < 2 * count; ++i) {
                atts.push_back(p);
                p += std::strlen(p) + 1;
            }
            atts.push_back(nullptr);
            OnStart(name, atts.data());
        } else if (tag == 'E') {
            std::memcpy(&impl->eventByte, p, sizeof(long long));
            p += sizeof(long long);
            bool hasRaw = *p++ != 0;
            if (hasRaw) {
                uint64_t size = 0;
                std::memcpy(&size, p, sizeof size);
                p += sizeof size;
                raw.assign(p, static_cast<size_t>(size));
                p += size;
            }
            OnEnd(hasRaw ? &raw : nullptr);
        } else {
            uint32_t size = 0;
            std::memcpy(&size, p, sizeof size);
            p += sizeof size;
            OnText(p, static_cast<int>(size));
            p += size;
        }
    }
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
    Source source(data);
    return Finish(Run(source));
}

bool XMLReader::Parse(std::istream& stream) {
    if (!Begin())
        return false;
    Source source(stream);
    return Finish(Run(source));
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
    if (!StartItem(item) && failure.empty())
        Fail("stopped");
}

void XMLReader::OnEnd(const std::string* raw) {
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
    if (raw)
        item->raw = *raw;
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
