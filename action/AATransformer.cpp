#include "AATransformer.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <functional>

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "AAArguments.h"
#include "AttributeType.h"
#include "CommandTrust.h"
#include "Hooks.h"
#include "MatchList.h"
#include "Node.h"
#include "Parser.h"
#include "RegularExpression.h"
#include "UnicodeString.h"

using Type = AttributeType;

namespace {

icu::UnicodeString U16(const std::string& text) { return icu::UnicodeString::fromUTF8(text); }

std::string U8(const icu::UnicodeString& text) {
    std::string out;
    text.toUTF8String(out);
    return out;
}

bool IsSpaceOrNewline(UChar32 c) { return u_isUWhiteSpace(c) || c == '\n' || c == '\r'; }

// The text without white space and newlines at both ends; with
// `punctuation`, punctuation goes too.
std::string TrimText(const std::string& text, bool punctuation) {
    icu::UnicodeString u = U16(text);
    auto strip = [punctuation](UChar32 c) { return IsSpaceOrNewline(c) || (punctuation && u_ispunct(c)); };
    int32_t start = 0;
    int32_t end = u.length();
    while (start < end && strip(u.char32At(start)))
        start = u.moveIndex32(start, 1);
    while (end > start) {
        int32_t before = u.moveIndex32(end, -1);
        if (!strip(u.char32At(before)))
            break;
        end = before;
    }
    return U8(u.tempSubStringBetween(start, end));
}

// Words by the ICU word boundaries: runs holding a letter or a digit.
std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> words;
    icu::UnicodeString u = U16(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> it(icu::BreakIterator::createWordInstance(icu::Locale::getDefault(), status));
    if (U_FAILURE(status))
        return words;
    it->setText(u);
    int32_t start = it->first();
    for (int32_t end = it->next(); end != icu::BreakIterator::DONE; start = end, end = it->next()) {
        if (it->getRuleStatus() != UBRK_WORD_NONE)
            words.push_back(U8(u.tempSubStringBetween(start, end)));
    }
    return words;
}

// Paragraphs end at a line feed or a carriage return.
std::vector<std::string> Paragraphs(const std::string& text) {
    std::vector<std::string> paragraphs;
    std::string current;
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\n' || c == '\r') {
            paragraphs.push_back(current);
            current.clear();
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
        } else {
            current += c;
        }
    }
    if (!current.empty())
        paragraphs.push_back(current);
    return paragraphs;
}

std::string Join(const std::vector<std::string>& items, const std::string& separator) {
    std::string out;
    for (size_t i = 0; i < items.size(); ++i) {
        if (i)
            out += separator;
        out += items[i];
    }
    return out;
}

// The substring rule shared by `substr` and `.substr`.
std::string Substring(const std::string& text, long start, bool hasLength, long length) {
    icu::UnicodeString u = U16(text);
    long size = u.length();
    if (start < 0)
        start += size;
    start = std::clamp(start, 0L, size);
    long remaining = size - start;
    if (!hasLength)
        length = remaining;
    else if (length < 0)
        length = remaining + length;
    length = std::clamp(length, 0L, remaining);
    return U8(u.tempSubString(static_cast<int32_t>(start), static_cast<int32_t>(length)));
}

// Position of plain `needle` in `haystack` at or after `from`, in UTF-16
// units; -1 when absent.
long FindText(const icu::UnicodeString& haystack, const icu::UnicodeString& needle, long from = 0) {
    return haystack.indexOf(needle, static_cast<int32_t>(from));
}

ActionResult Styled(const ActionResult& receiver, const std::function<void(TextStyle&)>& change) {
    std::string text = receiver.AsString();
    auto styled = receiver.AttributedString() ? std::make_shared<StyledText>(*receiver.AttributedString())
                                              : std::make_shared<StyledText>(text);
    styled->ModifyStyle(0, styled->Length(), change);
    ActionResult result(text);
    result.AttributedString(styled);
    return result;
}

}  // namespace

// ---------------------------------------------------------------------------
// Case

ActionResult AATransformer::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(Transform(ArgumentText(operand.get(), note, matches)));
}

int AATransformer::ResultType(Node*, MatchList&) const { return Type::kString; }

std::string AAUppercase::Transform(const std::string& text) const { return UnicodeString::Uppercase(text); }
std::string AALowercase::Transform(const std::string& text) const { return UnicodeString::Lowercase(text); }

std::string AACapitalize::Transform(const std::string& text) const {
    icu::UnicodeString u = U16(text);
    u.toTitle(nullptr, icu::Locale::getDefault());
    return U8(u);
}

ActionResult AAFirstWord::ActionValue(Node* note, MatchList& matches) const {
    std::vector<std::string> words = Words(ArgumentText(operand.get(), note, matches));
    return ActionResult(words.empty() ? std::string() : words.front());
}
int AAFirstWord::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AALastWord::ActionValue(Node* note, MatchList& matches) const {
    std::vector<std::string> words = Words(ArgumentText(operand.get(), note, matches));
    return ActionResult(words.empty() ? std::string() : words.back());
}
int AALastWord::ResultType(Node*, MatchList&) const { return Type::kString; }

// ---------------------------------------------------------------------------
// Encoders

ActionResult AAURLEncode::ActionValue(Node* note, MatchList& matches) const {
    // Percent-encodes every byte outside the characters a URL query keeps.
    static const std::string kept = "-._~!$&'()*+,;=:@/?";
    std::string text = ArgumentText(operand.get(), note, matches);
    std::string out;
    for (unsigned char c : text) {
        if (std::isalnum(c) || kept.find(static_cast<char>(c)) != std::string::npos) {
            out += static_cast<char>(c);
        } else {
            char buffer[4];
            std::snprintf(buffer, sizeof buffer, "%%%02X", c);
            out += buffer;
        }
    }
    return ActionResult(out);
}
int AAURLEncode::ResultType(Node*, MatchList&) const { return Type::kString; }

namespace {
std::string EntityEncode(const std::string& text, bool quotes) {
    std::string out;
    for (char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"':
            out += quotes ? "&quot;" : "\"";
            break;
        default: out += c;
        }
    }
    return out;
}
}  // namespace

ActionResult AAAttributeEncode::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(EntityEncode(ArgumentText(operand.get(), note, matches), true));
}
int AAAttributeEncode::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAEscapeHTML::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(EntityEncode(ArgumentText(operand.get(), note, matches), false));
}
int AAEscapeHTML::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAJSONEncode::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(UnicodeString::ToJSON(ArgumentText(operand.get(), note, matches)));
}
int AAJSONEncode::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AALocale::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(ArgumentText(operand.get(), note, matches));
}
int AALocale::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAUTF8::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(ArgumentText(operand.get(), note, matches));
}
int AAUTF8::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAIDEncode::ActionValue(Node* note, MatchList& matches) const {
    // A letter or "_" begins the identifier; anything else gives "_", and a
    // run of other characters later becomes one "_".
    icu::UnicodeString u = U16(Parser::TrimQuotes(ArgumentText(operand.get(), note, matches)));
    icu::UnicodeString out;
    bool gap = false;
    for (int32_t i = 0; i < u.length(); i = u.moveIndex32(i, 1)) {
        UChar32 c = u.char32At(i);
        bool word = u_isalpha(c) || u_isdigit(c) || c == '_';
        if (i == 0) {
            if (u_isalpha(c) || c == '_') {
                out.append(c);
            } else {
                out.append(static_cast<UChar32>('_'));
                if (u_isdigit(c))
                    out.append(c);
                else
                    gap = true;
            }
            continue;
        }
        if (word) {
            out.append(c);
            gap = false;
        } else if (!gap) {
            out.append(static_cast<UChar32>('_'));
            gap = true;
        }
    }
    return ActionResult(U8(out));
}
int AAIDEncode::ResultType(Node*, MatchList&) const { return Type::kString; }

// ---------------------------------------------------------------------------
// Substrings and searches

ActionResult AASubstring::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* text = operand.get();
    const AAValue* start = NthArgument(text, 1);
    const AAValue* length = NthArgument(text, 2);
    long from = start ? ComputeValue(start, note, matches).AsNumber() : 0;
    long count = length ? ComputeValue(length, note, matches).AsNumber() : 0;
    return ActionResult(Substring(ArgumentText(text, note, matches), from, length != nullptr, count));
}
int AASubstring::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AADotSubstring::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* start = right.get();
    const AAValue* length = NthArgument(start, 1);
    long from = start ? ComputeValue(start, note, matches).AsNumber() : 0;
    long count = length ? ComputeValue(length, note, matches).AsNumber() : 0;
    return ActionResult(Substring(ArgumentText(left.get(), note, matches), from, length != nullptr, count));
}
int AADotSubstring::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AADotBeginsWith::ActionValue(Node* note, MatchList& matches) const {
    if (!left || !right)
        return kFalseResult();
    std::string text = ArgumentText(left.get(), note, matches);
    std::string prefix = ArgumentText(right.get(), note, matches);
    return text.compare(0, prefix.size(), prefix) == 0 ? kTrueResult() : kFalseResult();
}
int AADotBeginsWith::ResultType(Node*, MatchList&) const { return Type::kBoolean; }

ActionResult AADotEndsWith::ActionValue(Node* note, MatchList& matches) const {
    if (!left || !right)
        return kFalseResult();
    std::string text = ArgumentText(left.get(), note, matches);
    std::string suffix = ArgumentText(right.get(), note, matches);
    bool ends = text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
    return ends ? kTrueResult() : kFalseResult();
}
int AADotEndsWith::ResultType(Node*, MatchList&) const { return Type::kBoolean; }

ActionResult AADotFind::ActionValue(Node* note, MatchList& matches) const {
    icu::UnicodeString text = U16(ArgumentText(left.get(), note, matches));
    icu::UnicodeString needle = U16(ArgumentText(right.get(), note, matches));
    return ActionResult(static_cast<double>(needle.isEmpty() ? -1 : FindText(text, needle)));
}
int AADotFind::ResultType(Node*, MatchList&) const { return Type::kNumber; }

ActionResult AADotCountOccurrencesOf::ActionValue(Node* note, MatchList& matches) const {
    icu::UnicodeString text = U16(ArgumentText(left.get(), note, matches));
    icu::UnicodeString needle = U16(ArgumentText(right.get(), note, matches));
    if (needle.isEmpty())
        return kFalseResult();
    long count = 0;
    for (long at = FindText(text, needle); at >= 0; at = FindText(text, needle, at + needle.length()))
        ++count;
    return ActionResult(static_cast<double>(count));
}
int AADotCountOccurrencesOf::ResultType(Node*, MatchList&) const { return Type::kNumber; }

ActionResult AATrim::ActionValue(Node* note, MatchList& matches) const {
    bool punctuation = right && ArgumentText(right.get(), note, matches) == "punctuation";
    return ActionResult(TrimText(ArgumentText(left.get(), note, matches), punctuation));
}
int AATrim::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AADeleteCharacters::ActionValue(Node* note, MatchList& matches) const {
    icu::UnicodeString text = U16(ArgumentText(left.get(), note, matches));
    icu::UnicodeString set = U16(ArgumentText(right.get(), note, matches));
    icu::UnicodeString out;
    for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        UChar32 c = text.char32At(i);
        if (set.indexOf(c) < 0)
            out.append(c);
    }
    return ActionResult(U8(out));
}
int AADeleteCharacters::ResultType(Node*, MatchList&) const { return Type::kString; }

// ---------------------------------------------------------------------------
// Pieces: split, paragraphs, words, following

ActionResult AASplit::ActionValue(Node* note, MatchList& matches) const {
    std::string text = ArgumentText(left.get(), note, matches);
    std::string pattern = ArgumentText(right.get(), note, matches);
    RegularExpression& regex = RegularExpression::Cached(pattern, false);
    std::vector<RegularExpression::Match> found;
    regex.SearchAll(text, found);
    icu::UnicodeString u = U16(text);
    std::vector<std::string> pieces;
    long start = 0;
    for (const RegularExpression::Match& match : found) {
        pieces.push_back(U8(u.tempSubStringBetween(static_cast<int32_t>(start), static_cast<int32_t>(match.position))));
        start = match.position + match.length;
    }
    pieces.push_back(U8(u.tempSubString(static_cast<int32_t>(start))));
    return ActionResult(Join(pieces, ";"));
}
int AASplit::ResultType(Node*, MatchList&) const { return Type::kList; }

ActionResult AAParagraphs::ActionValue(Node* note, MatchList& matches) const {
    std::vector<std::string> paragraphs = Paragraphs(ArgumentText(left.get(), note, matches));
    long n = right ? ComputeValue(right.get(), note, matches).AsNumber() : 1;
    if (n < 0)
        n = 0;
    if (static_cast<size_t>(n) < paragraphs.size())
        paragraphs.resize(n);
    return ActionResult(Join(paragraphs, "\n"));
}
int AAParagraphs::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAParagraph::ActionValue(Node* note, MatchList& matches) const {
    // The n-th paragraph, counted from 1.
    std::vector<std::string> paragraphs = Paragraphs(ArgumentText(left.get(), note, matches));
    long n = right ? ComputeValue(right.get(), note, matches).AsNumber() : 1;
    if (n < 1 || static_cast<size_t>(n) > paragraphs.size())
        return ActionResult(std::string());
    return ActionResult(paragraphs[n - 1]);
}
int AAParagraph::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAParagraphCount::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(static_cast<double>(Paragraphs(ArgumentText(left.get(), note, matches)).size()));
}
int AAParagraphCount::ResultType(Node*, MatchList&) const { return Type::kNumber; }

ActionResult AAParagraphList::ActionValue(Node* note, MatchList& matches) const {
    std::vector<std::string> paragraphs = Paragraphs(ArgumentText(left.get(), note, matches));
    std::vector<std::string> kept;
    for (const std::string& paragraph : paragraphs)
        if (!TrimText(paragraph, false).empty())
            kept.push_back(paragraph);
    return ActionResult(Join(kept, ";"));
}
int AAParagraphList::ResultType(Node*, MatchList&) const { return Type::kList; }

ActionResult AAWordList::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(Join(Words(ArgumentText(left.get(), note, matches)), ";"));
}
int AAWordList::ResultType(Node*, MatchList&) const { return Type::kList; }

ActionResult AANounList::ActionValue(Node* note, MatchList& matches) const {
    // No tagger of parts of speech: the argument is computed and "" answered.
    ArgumentText(left.get(), note, matches);
    return ActionResult(std::string());
}
int AANounList::ResultType(Node*, MatchList&) const { return Type::kList; }

ActionResult AAWords::ActionValue(Node* note, MatchList& matches) const {
    // Words are separated by white space; the text between them is kept.
    std::string text = ArgumentText(left.get(), note, matches);
    long n = right ? ComputeValue(right.get(), note, matches).AsNumber() : 0;
    if (n == 0)
        return ActionResult(std::string());
    std::vector<std::pair<size_t, size_t>> spans;
    size_t i = 0;
    while (i < text.size()) {
        while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i])))
            ++i;
        size_t start = i;
        while (i < text.size() && !std::isspace(static_cast<unsigned char>(text[i])))
            ++i;
        if (i > start)
            spans.emplace_back(start, i);
    }
    if (spans.empty())
        return ActionResult(std::string());
    size_t count = std::min(static_cast<size_t>(n < 0 ? -n : n), spans.size());
    if (n > 0)
        return ActionResult(text.substr(spans[0].first, spans[count - 1].second - spans[0].first));
    size_t first = spans.size() - count;
    return ActionResult(text.substr(spans[first].first, spans.back().second - spans[first].first));
}
int AAWords::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAFollowing::ActionValue(Node* note, MatchList& matches) const {
    std::string text = ArgumentText(left.get(), note, matches);
    std::string separator = ArgumentText(right.get(), note, matches);
    std::vector<std::string> result;
    if (separator.empty())
        return ActionResult(std::string());
    for (const std::string& line : Paragraphs(text)) {
        size_t at = line.find(separator);
        if (at == std::string::npos)
            continue;
        // The second piece ends at the next separator, as a split would.
        size_t after = at + separator.size();
        size_t next = line.find(separator, after);
        std::string second = line.substr(after, next == std::string::npos ? std::string::npos : next - after);
        result.push_back(TrimText(second, false));
        matches.matches.push_back(TrimText(line.substr(0, at), false));
    }
    return ActionResult(Join(result, ";"));
}
int AAFollowing::ResultType(Node*, MatchList&) const { return Type::kList; }

// ---------------------------------------------------------------------------
// Replacement

ActionResult AAReplace::ActionValue(Node* note, MatchList& matches) const {
    if (!left || !right)
        return ActionResult(std::string());
    std::string text = ArgumentText(left.get(), note, matches);
    std::string pattern = ArgumentText(right.get(), note, matches);
    RegularExpression& regex = RegularExpression::Cached(pattern, false);
    if (!regex.IsValid())
        return ActionResult(std::string());
    const AAValue* replacementValue = right->GetNextArgument();
    std::string replacement = ArgumentText(replacementValue, note, matches);
    std::vector<RegularExpression::Match> found;
    regex.SearchAll(text, found);
    // Walked last to first, so that the captures left behind are those of
    // the first match.
    for (auto it = found.rbegin(); it != found.rend(); ++it)
        matches.matches = it->groups;
    return ActionResult(regex.ReplaceAll(text, replacement));
}
int AAReplace::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AATr::ActionValue(Node* note, MatchList& matches) const {
    std::string text = ArgumentText(left.get(), note, matches);
    std::string from = ArgumentText(right.get(), note, matches);
    std::string to = ArgumentText(right ? right->GetNextArgument() : nullptr, note, matches);
    std::string command = "tr \"" + from + "\" \"" + to + "\"";
    return ActionResult(CommandTrust::Run(note, command, text, std::string()));
}
int AATr::ResultType(Node*, MatchList&) const { return Type::kString; }

// ---------------------------------------------------------------------------
// Size and shape

ActionResult AASize::ActionValue(Node* note, MatchList& matches) const {
    if (!left)
        return ActionResult(0.0);
    int type = left->ResultType(note, matches);
    ActionResult value = ComputeValue(left.get(), note, matches);
    if (type == Type::kList || type == Type::kSet)
        return ActionResult(static_cast<double>(value.AsList().size()));
    if (type == Type::kDictionary) {
        SharedDictionary dictionary = value.AsDictionary();
        return ActionResult(static_cast<double>(dictionary ? dictionary->size() : 0));
    }
    return ActionResult(static_cast<double>(U16(value.AsString()).length()));
}
int AASize::ResultType(Node*, MatchList&) const { return Type::kNumber; }

ActionResult AAEmpty::ActionValue(Node* note, MatchList& matches) const {
    if (!left)
        return kTrueResult();
    int type = left->ResultType(note, matches);
    ActionResult value = ComputeValue(left.get(), note, matches);
    bool empty = false;
    if (type == Type::kList || type == Type::kSet)
        empty = value.AsList().empty();
    else if (type == Type::kDictionary) {
        SharedDictionary dictionary = value.AsDictionary();
        empty = !dictionary || dictionary->empty();
    } else
        empty = value.AsString().empty();
    return empty ? kTrueResult() : kFalseResult();
}
int AAEmpty::ResultType(Node*, MatchList&) const { return Type::kBoolean; }

ActionResult AAReverse::ActionValue(Node* note, MatchList& matches) const {
    if (!left)
        return ActionResult(std::string());
    int type = left->ResultType(note, matches);
    std::string text = ArgumentText(left.get(), note, matches);
    if (type == Type::kList || type == Type::kSet || (type == Type::kNone && text.find(';') != std::string::npos)) {
        std::vector<std::string> items = ArgList(text, ';', false).GetList();
        std::reverse(items.begin(), items.end());
        return ActionResult(Join(items, ";"));
    }
    std::reverse(text.begin(), text.end());
    return ActionResult(text);
}
int AAReverse::ResultType(Node*, MatchList&) const { return Type::kNone; }

ActionResult AANext::ActionValue(Node* note, MatchList& matches) const {
    icu::UnicodeString text = U16(ArgumentText(left.get(), note, matches));
    if (text.isEmpty())
        return ActionResult(std::string());
    int32_t last = text.moveIndex32(text.length(), -1);
    UChar32 c = text.char32At(last);
    text.truncate(last);
    text.append(static_cast<UChar32>(c + 1));
    return ActionResult(U8(text));
}
int AANext::ResultType(Node*, MatchList&) const { return Type::kString; }

// ---------------------------------------------------------------------------
// Rich text

ActionResult AADotBold::ActionValue(Node* note, MatchList& matches) const {
    return Styled(ComputeValue(left.get(), note, matches), [](TextStyle& s) { s.bold = true; });
}
int AADotBold::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AADotItalic::ActionValue(Node* note, MatchList& matches) const {
    return Styled(ComputeValue(left.get(), note, matches), [](TextStyle& s) { s.italic = true; });
}
int AADotItalic::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AADotStrike::ActionValue(Node* note, MatchList& matches) const {
    return Styled(ComputeValue(left.get(), note, matches), [](TextStyle& s) { s.strikethrough = true; });
}
int AADotStrike::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AADotPlain::ActionValue(Node* note, MatchList& matches) const {
    return Styled(ComputeValue(left.get(), note, matches), [](TextStyle& s) { s = TextStyle(); });
}
int AADotPlain::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAFontSize::ActionValue(Node* note, MatchList& matches) const {
    double size = right ? ComputeValue(right.get(), note, matches).AsDouble() : 0.0;
    return Styled(ComputeValue(left.get(), note, matches), [size](TextStyle& s) { s.size = size; });
}
int AAFontSize::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AADotTextColor::ActionValue(Node* note, MatchList& matches) const {
    PColor color = right ? ComputeValue(right.get(), note, matches).AsColor(note) : PColor::Black();
    TextRGB rgb{static_cast<uint8_t>(color.red >> 8), static_cast<uint8_t>(color.green >> 8), static_cast<uint8_t>(color.blue >> 8)};
    return Styled(ComputeValue(left.get(), note, matches), [rgb](TextStyle& s) { s.foreground = rgb; });
}
int AADotTextColor::ResultType(Node*, MatchList&) const { return Type::kString; }

// ---------------------------------------------------------------------------
// Words of the document

ActionResult AARelatedWords::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* wordArgument = operand.get();
    std::string word = Parser::TrimQuotes(Parser::Trim(ArgumentText(wordArgument, note, matches)));
    long count = kDefaultCount;
    if (const AAValue* countArgument = NthArgument(wordArgument, 1)) {
        double number = ComputeValue(countArgument, note, matches).AsDouble();
        count = std::isnan(number) || number < 1 ? 0 : number > 1e6 ? 1000000L : static_cast<long>(number);
    }
    const auto& related = GetHooks().relatedWords;
    if (!related || !note || note->Invalid() || word.empty() || count < 1)
        return ActionResult(std::string());
    std::string out;
    for (const std::string& item : related(note, word, static_cast<size_t>(count))) {
        if (!out.empty())
            out += ';';
        out += item;
    }
    return ActionResult(out);
}
int AARelatedWords::ResultType(Node*, MatchList&) const { return Type::kList; }
