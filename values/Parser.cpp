#include "Parser.h"

#include <cctype>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace {

using Traits = std::char_traits<char>;

// What istream::peek answers, without building a sentry: the next
// character, or eof with eofbit set; a stream that is not good fails.
int PeekChar(std::istream& in) {
    if (!in.good()) {
        in.setstate(std::ios_base::failbit);
        return Traits::eof();
    }
    int c = in.rdbuf()->sgetc();
    if (c == Traits::eof()) in.setstate(std::ios_base::eofbit);
    return c;
}

bool IsSpaceByte(int c) {
    return c != Traits::eof() && std::isspace(static_cast<unsigned char>(c));
}

// White space and newlines as the platform's text classes count them: the
// Unicode separators, tab, the ASCII line breaks and NEL.
bool IsWhiteOrNewline(UChar32 c) {
    if (c == 0x20 || (c >= 0x09 && c <= 0x0D) || c == 0x85) return true;
    if (c < 0x80) return false;
    int8_t type = u_charType(c);
    return type == U_SPACE_SEPARATOR || type == U_LINE_SEPARATOR || type == U_PARAGRAPH_SEPARATOR;
}

void AppendUTF8(std::string& out, UChar32 c) {
    char buffer[U8_MAX_LENGTH];
    int32_t length = 0;
    UBool error = false;
    U8_APPEND(buffer, length, U8_MAX_LENGTH, c, error);
    if (!error) out.append(buffer, length);
}

}  // namespace

// ---------------------------------------------------------------- Parser

namespace {

// Parsers over strings are made by the thousand while action code compiles,
// and setting up a new stream (its locale above all) costs more than most
// parses. Each thread keeps the streams of finished parsers for reuse.
class StreamPool {
public:
    std::unique_ptr<std::istringstream> Acquire(const std::string& text) {
        if (streams.empty()) return std::make_unique<std::istringstream>(text);
        std::unique_ptr<std::istringstream> stream = std::move(streams.back());
        streams.pop_back();
        stream->str(text);
        stream->clear();
        stream->flags(std::ios_base::skipws | std::ios_base::dec);
        return stream;
    }

    void Release(std::unique_ptr<std::istringstream> stream) {
        if (streams.size() >= kKept) return;
        stream->str(std::string());
        streams.push_back(std::move(stream));
    }

private:
    static constexpr size_t kKept = 32;
    std::vector<std::unique_ptr<std::istringstream>> streams;
};

thread_local StreamPool streamPool;

}  // namespace

Parser::Parser(const std::string& text) : owned(streamPool.Acquire(text)), in(owned.get()) {}

Parser::Parser(std::istream& stream) : in(&stream) {
    NoSkip();
}

Parser::~Parser() {
    if (owned) streamPool.Release(std::move(owned));
}

bool Parser::good() const {
    return in->good();
}

bool Parser::OK() const {
    return error.empty();
}

bool Parser::Read(char* c) {
    if (!Parser::ReadRaw(c)) return false;
    if (*c == '\\' && PeekChar(*in) == '\\') in->rdbuf()->sbumpc();
    return true;
}

bool Parser::ReadRaw(char* c) {
    // With skipping off, a formatted read of one character is a read from
    // the buffer; taking it directly saves building a sentry per character.
    if (in->flags() & std::ios_base::skipws) return static_cast<bool>(*in >> *c);
    if (!in->good()) {
        in->setstate(std::ios_base::failbit);
        return false;
    }
    int next = in->rdbuf()->sbumpc();
    if (next == Traits::eof()) {
        in->setstate(std::ios_base::eofbit | std::ios_base::failbit);
        return false;
    }
    *c = Traits::to_char_type(next);
    return true;
}

bool Parser::Munch(char c) {
    char next;
    while (Read(&next)) {
        if (next == c) return true;
    }
    Error(std::string("unterminated expression: expected ") + c);
    return false;
}

std::string Parser::GetQuote(char c) {
    QuoteParser quote(*in, c);
    return quote.Token();
}

void Parser::Error(const std::string& message) {
    error = message;
}

std::string Parser::GetError() const {
    return error;
}

std::string Parser::Rest() {
    std::string rest;
    if (in->good()) {
        std::streambuf* buffer = in->rdbuf();
        for (int next = buffer->sbumpc(); next != Traits::eof(); next = buffer->sbumpc())
            rest += Traits::to_char_type(next);
        in->setstate(std::ios_base::eofbit);
    }
    // As a read past the end does.
    in->setstate(std::ios_base::failbit);
    return rest;
}

bool Parser::NextCharIs(char c) {
    return in->good() && PeekChar(*in) == Traits::to_int_type(c);
}

bool Parser::NextCharIsSpace() {
    return in->good() && IsSpaceByte(PeekChar(*in));
}

bool Parser::NextCharIsNumeric() {
    if (!in->good()) return false;
    int c = PeekChar(*in);
    return c == '.' || (c >= '0' && c <= '9');
}

void Parser::NoSkip() {
    in->unsetf(std::ios_base::skipws);
}

void Parser::SkipWhiteSpace() {
    // What std::ws does in the classic locale, read straight from the buffer
    // rather than through the locale's ctype facet on every call.
    if (!in->good()) {
        in->setstate(std::ios_base::failbit);
    } else {
        std::streambuf* buffer = in->rdbuf();
        int c = buffer->sgetc();
        while (IsSpaceByte(c)) c = buffer->snextc();
        if (c == Traits::eof()) in->setstate(std::ios_base::eofbit);
    }
    NoSkip();
}

int Parser::Peek() {
    return PeekChar(*in);
}

void Parser::PutBack(char c) {
    in->putback(c);
}

std::string Parser::Strip(const std::string& text, char c) {
    if (text.empty() || text[0] == c) return text;
    std::string result;
    result.reserve(text.size());
    for (char ch : text) {
        if (ch != c) result += ch;
    }
    return result;
}

std::string Parser::CRLF(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    for (char ch : text) {
        if (ch != '\n') result += ch;
    }
    return result;
}

std::string Parser::Trim(const std::string& text) {
    const size_t n = text.size();
    bool ascii = true;
    for (unsigned char ch : text) {
        if (ch >= 0x80) {
            ascii = false;
            break;
        }
    }
    if (ascii) {
        size_t begin = 0;
        while (begin < n && IsWhiteOrNewline(static_cast<unsigned char>(text[begin]))) ++begin;
        size_t end = n;
        while (end > begin && IsWhiteOrNewline(static_cast<unsigned char>(text[end - 1]))) --end;
        return text.substr(begin, end - begin);
    }
    // Walk code points: find the first and the end of the last non-blank one,
    // and refuse text that is not valid UTF-8.
    const uint8_t* s = reinterpret_cast<const uint8_t*>(text.data());
    const int32_t length = static_cast<int32_t>(n);
    int32_t i = 0;
    int32_t first = -1;
    int32_t lastEnd = 0;
    while (i < length) {
        int32_t start = i;
        UChar32 c;
        U8_NEXT(s, i, length, c);
        if (c < 0) return "encoding error";
        if (!IsWhiteOrNewline(c)) {
            if (first < 0) first = start;
            lastEnd = i;
        }
    }
    if (first < 0) return "";
    return text.substr(first, lastEnd - first);
}

std::string Parser::TrimQuotes(const std::string& text) {
    if (text.size() >= 2 && (text[0] == '\'' || text[0] == '"') && text.back() == text[0])
        return text.substr(1, text.size() - 2);
    return text;
}

std::string Parser::TrimParens(const std::string& text) {
    ParenParser parser(text);
    return parser.Token();
}

std::string Parser::TrimBrackets(const std::string& text) {
    BracketParser parser(text);
    return parser.Token();
}

std::string Parser::EscapeCharacters(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\\' && i + 1 < text.size()) {
            char next = text[++i];
            if (next == 'n') {
                result += '\n';
            } else if (next == 't') {
                result += '\t';
            } else {
                result += '\\';
                result += next;
            }
        } else {
            result += c;
        }
    }
    return result;
}

std::string Parser::EscapeBackslash(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\\' && i + 1 < text.size()) {
            result += text[++i];
        } else {
            result += c;
        }
    }
    return result;
}

namespace {

bool EncodeOne(std::string& out, char c) {
    switch (c) {
        case '\t': out += "\\t"; return true;
        case '\n': out += "\\n"; return true;
        case '\r': out += "\\r"; return true;
        default: return false;
    }
}

}  // namespace

std::string Parser::EncodeCharacters(const std::string& text) {
    std::string result;
    result.reserve(text.size() + 8);
    for (char c : text) {
        if (!EncodeOne(result, c)) result += c;
    }
    return result;
}

std::string Parser::EncodeCharactersNotBackslash(const std::string& text) {
    std::string result;
    result.reserve(text.size() + 8);
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\\') {
            if (i + 1 < text.size()) result += text[++i];
        } else if (!EncodeOne(result, c)) {
            result += c;
        }
    }
    return result;
}

// ---------------------------------------------------------------- ParenParser

ParenParser::ParenParser(const std::string& text, bool preserve)
    : Parser(text), preserveClosingTokenDelimiter(preserve) {}

ParenParser::ParenParser(std::istream& stream, bool preserve)
    : Parser(stream), preserveClosingTokenDelimiter(preserve) {}

std::string ParenParser::Balanced(char open, char close, bool singleQuotes, bool keepBackslash,
                                  const char* unclosedMessage) {
    char c;
    // The opening character; on a parser over a string this read still skips
    // leading white space.
    if (!ReadRaw(&c)) {
        Error(unclosedMessage);
        return "";
    }
    NoSkip();
    int depth = 1;
    std::string text;
    while (ReadRaw(&c)) {
        if (c == '"' || (singleQuotes && c == '\'')) {
            text += c;
            text += GetQuote(c);
            text += c;
        } else if (c == '\\') {
            char next;
            if (keepBackslash) text += '\\';
            if (ReadRaw(&next)) text += next;
        } else {
            text += c;
            if (c == open) {
                ++depth;
            } else if (c == close && --depth == 0) {
                return CloseParentheticalExpression(text);
            }
        }
    }
    Error(unclosedMessage);
    return "";
}

std::string ParenParser::Token() {
    return Balanced('(', ')', true, true, "unclosed parenthesis");
}

std::string ParenParser::CloseParentheticalExpression(const std::string& text) {
    std::string result = text.empty() ? text : text.substr(0, text.size() - 1);
    if (NextCharIs(TokenDelimiter()) && !preserveClosingTokenDelimiter) Munch(TokenDelimiter());
    return result;
}

BracketParser::BracketParser(const std::string& text, bool preserve) : ParenParser(text, preserve) {}
BracketParser::BracketParser(std::istream& stream, bool preserve) : ParenParser(stream, preserve) {}

std::string BracketParser::Token() {
    return Trim(Balanced('[', ']', false, false, "unclosed bracket"));
}

BraceParser::BraceParser(const std::string& text, bool preserve) : ParenParser(text, preserve) {}
BraceParser::BraceParser(std::istream& stream, bool preserve) : ParenParser(stream, preserve) {}

std::string BraceParser::Token() {
    return Trim(Balanced('{', '}', false, false, "unclosed brace"));
}

// ---------------------------------------------------------------- QuoteParser

QuoteParser::QuoteParser(std::istream& stream, char quote) : Parser(stream), quoteChar(quote) {}
QuoteParser::QuoteParser(const std::string& text, char quote) : Parser(text), quoteChar(quote) {}

std::string QuoteParser::Token() {
    NoSkip();
    std::string result;
    result.reserve(512);
    char c;
    while (ReadRaw(&c)) {
        if (c == quoteChar) {
            if (NextCharIs(quoteChar)) {
                ReadRaw(&c);
                result += quoteChar;
                continue;
            }
            return result;
        }
        if (c == '\\') {
            char next;
            if (!ReadRaw(&next)) {
                result += '\\';
                break;
            }
            switch (next) {
                case 'n': result += '\n'; break;
                case 'r': result += '\r'; break;
                case 't': result += '\t'; break;
                case '"':
                case '\'': result += next; break;
                default:
                    if (next == quoteChar) {
                        result += next;
                    } else {
                        result += '\\';
                        result += next;
                    }
            }
            continue;
        }
        result += c;
    }
    Error(std::string("unterminated expression: expected ") + quoteChar);
    return result;
}

TSVQuoteParser::TSVQuoteParser(std::istream& stream) : Parser(stream) {}
TSVQuoteParser::TSVQuoteParser(const std::string& text) : Parser(text) {}

std::string TSVQuoteParser::Token() {
    NoSkip();
    std::string result;
    char c;
    while (ReadRaw(&c)) {
        if (c == '"') {
            if (NextCharIs('"')) {
                ReadRaw(&c);
                result += "\"\"";
                continue;
            }
            return result;
        }
        result += c;
    }
    Error("unterminated expression: expected \"");
    return result;
}

// ---------------------------------------------------------------- LineParser

LineParser::LineParser(std::istream& stream) : Parser(stream) {}
LineParser::LineParser(const std::string& text) : Parser(text) {}

std::string LineParser::Token() {
    NoSkip();
    std::string result;
    char c;
    while (ReadRaw(&c)) {
        if (c == '\n' || c == '\r') break;
        if (c == '"' || c == '\'') {
            result += GetQuote(c);
        } else if (c == '\\') {
            char next;
            if (ReadRaw(&next)) result += next;
        } else {
            result += c;
        }
    }
    return result;
}

// ---------------------------------------------------------------- EntityParser

EntityParser::EntityParser(std::istream& stream) : Parser(stream) {}
EntityParser::EntityParser(const std::string& text) : Parser(text) {}

std::string EntityParser::Token() {
    NoSkip();
    std::string result;
    char c;
    while (ReadRaw(&c)) {
        if (c == '&') {
            result += EntityToken();
        } else {
            result += c;
        }
    }
    return result;
}

std::string EntityParser::EntityToken() {
    NoSkip();
    std::string name;
    char c;
    while (ReadRaw(&c)) {
        if (c == ';') break;
        if (IsSpaceByte(static_cast<unsigned char>(c))) return "&" + name + c;
        name += c;
    }
    if (name.empty()) return "";
    if (name[0] == '#') {
        long code = 0;
        bool digits = name.size() > 1;
        for (size_t i = 1; i < name.size() && digits; ++i) {
            if (name[i] < '0' || name[i] > '9') {
                digits = false;
            } else if (code <= 0x10FFFF) {
                code = code * 10 + (name[i] - '0');
            }
        }
        std::string character;
        // A code that names no character resolves to nothing.
        if (digits && code > 0 && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF))
            AppendUTF8(character, static_cast<UChar32>(code));
        return character;
    }
    return "&" + name + (good() ? ";" : "");
}

// ---------------------------------------------------------------- DotParser

DotParser::DotParser(std::istream& stream) : Parser(stream) {}
DotParser::DotParser(const std::string& text) : Parser(text) {}

std::string DotParser::Token() {
    std::string result;
    bool atStart = true;
    int dots = 0;
    char c;
    // The first read follows the stream's skipping; the rest read every character.
    bool first = true;
    while (true) {
        bool got = Read(&c);
        if (first) {
            NoSkip();
            first = false;
        }
        if (!got) break;
        if (c == '"' || (c == '\'' && atStart)) {
            result += c;
            result += GetQuote(c);
            result += c;
        } else if (c == '\\') {
            char next;
            if (Read(&next)) result += next;
        } else if (std::strchr("&*+-/<=>|(", c) != nullptr) {
            PutBack(c);
            break;
        } else if (IsSpaceByte(static_cast<unsigned char>(c))) {
            break;
        } else if (c == '.') {
            if (++dots == 4) {
                PutBack(c);
                break;
            }
            result += c;
        } else {
            result += c;
        }
        atStart = false;
    }
    return result;
}

// ---------------------------------------------------------------- NumberParser

NumberParser::NumberParser(std::istream& stream) : Parser(stream) {}
NumberParser::NumberParser(const std::string& text) : Parser(text) {}

std::string NumberParser::Token() {
    NoSkip();
    std::string result;
    bool decimal = false;
    while (in->good()) {
        int c = in->peek();
        if (c >= '0' && c <= '9') {
            result += static_cast<char>(in->get());
        } else if (c == '.') {
            if (decimal) {
                Error("unexpected decimal");
                break;
            }
            decimal = true;
            result += static_cast<char>(in->get());
        } else {
            break;
        }
    }
    return result;
}

// ---------------------------------------------------------------- ArgListParser

ArgListParser::ArgListParser(const std::string& text, char delim) : Parser(text), delimiter(delim) {}
ArgListParser::ArgListParser(std::istream& stream, char delim) : Parser(stream), delimiter(delim) {}

bool ArgListParser::IsEscapable(char c) const {
    return c == '"' || c == '(' || c == ')' || c == delimiter;
}

bool ArgListParser::ReadBraceBlock(std::string&) {
    return false;
}

std::string ArgListParser::Token() {
    SkipWhiteSpace();
    std::string token;
    bool atStart = true;
    char c;
    while (ReadRaw(&c)) {
        if (c == delimiter) {
            SkipWhiteSpace();
            return Trim(token);
        }
        if (c == '"' || (c == '\'' && atStart)) {
            token += c;
            token += GetQuote(c);
            token += c;
        } else if (c == '(') {
            PutBack(c);
            ParenParser paren(*in, true);
            token += '(';
            token += paren.Token();
            token += ')';
        } else if (c == '{' && ReadBraceBlock(token)) {
            // copied whole by the statement splitter
        } else if (c == '\\') {
            char next;
            if (ReadRaw(&next)) {
                if (!IsEscapable(next)) token += '\\';
                token += next;
            } else {
                token += '\\';
            }
        } else {
            token += c;
        }
        atStart = false;
    }
    return Trim(token);
}

ActionListParser::ActionListParser(const std::string& text, char delim) : ArgListParser(text, delim) {}
ActionListParser::ActionListParser(std::istream& stream, char delim) : ArgListParser(stream, delim) {}

bool ActionListParser::IsEscapable(char c) const {
    return c == '{' || c == '}' || ArgListParser::IsEscapable(c);
}

bool ActionListParser::ReadBraceBlock(std::string& token) {
    PutBack('{');
    BraceParser brace(*in, true);
    token += '{';
    token += brace.Token();
    token += '}';
    return true;
}

double Parser::ReadDouble(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i])))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    // A stream reads no words such as "inf" or "nan", nor a second sign.
    if (i >= text.size() || !(std::isdigit(static_cast<unsigned char>(text[i])) || text[i] == '.'))
        return 0.0;
    const char* end = text.data() + text.size();
    double value = 0.0;
    auto [stop, error] = std::from_chars(text.data() + i, end, value, std::chars_format::general);
    if (error == std::errc::invalid_argument)
        return 0.0;
    if (error == std::errc::result_out_of_range)
        value = std::strtod(std::string(text.substr(i)).c_str(), nullptr);
    // An exponent mark without digits makes a stream fail.
    if (stop < end && (*stop == 'e' || *stop == 'E')) {
        const char* digit = stop + 1;
        if (digit < end && (*digit == '+' || *digit == '-'))
            ++digit;
        if (digit >= end || !std::isdigit(static_cast<unsigned char>(*digit)))
            return 0.0;
    }
    return negative ? -value : value;
}
