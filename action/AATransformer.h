#pragma once
// Text functions: case transformers, encoders, substrings, searches, splitting,
// paragraphs and words, replacement, and the rich-text dot operators.
// Positions count UTF-16 units from 0.
#include "AAValue.h"

// Case mapping in the user's locale.
class AAUppercase : public AATransformer {
public:
    using AATransformer::AATransformer;
    const char* ClassName() const override { return "AAUppercase"; }
    std::string Transform(const std::string& text) const override;
};

class AALowercase : public AATransformer {
public:
    using AATransformer::AATransformer;
    const char* ClassName() const override { return "AALowercase"; }
    std::string Transform(const std::string& text) const override;
};

// The first letter of each word in capitals, the rest in small letters.
class AACapitalize : public AATransformer {
public:
    using AATransformer::AATransformer;
    const char* ClassName() const override { return "AACapitalize"; }
    std::string Transform(const std::string& text) const override;
};

// The first and last words of a text.
class AALastWord : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALastWord"; }
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AAFirstWord : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAFirstWord"; }
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// Encoders: percent-encoding for URLs, entities for attribute values and
// HTML, JSON string escapes, identifiers; `utf8` and `locale` pass the text
// through, since every text is UTF-8 already.
class AAURLEncode : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAURLEncode"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AAAttributeEncode : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAAttributeEncode"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AAJSONEncode : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAJSONEncode"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AAEscapeHTML : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAEscapeHTML"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AALocale : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALocale"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AAUTF8 : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUTF8"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AAIDEncode : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAIDEncode"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `substr(text, start, length)`: a negative start counts from the end; a
// negative length is measured back from the end; no length means to the end.
class AASubstring : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AASubstring"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// Searches for plain text (no regular expressions).
class AADotBeginsWith : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotBeginsWith"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AADotEndsWith : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotEndsWith"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AADotCountOccurrencesOf : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotCountOccurrencesOf"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// The position of the text, -1 when absent.
class AADotFind : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotFind"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// White space and newlines at both ends; with the argument "punctuation"
// punctuation too.
class AATrim : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AATrim"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// The words of the text as a list.
class AAWordList : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAWordList"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// Needs a linguistic tagger that the platform lacks: answers "".
class AANounList : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AANounList"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// The paragraphs of the text as a list.
class AAParagraphList : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAParagraphList"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// For each line holding the separator: the trimmed text after it goes to
// the result, the trimmed text before it to the captures.
class AAFollowing : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAFollowing"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// Rich text: the result carries the style over its whole length.
class AAFontSize : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAFontSize"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AADotTextColor : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotTextColor"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AADotSubstring : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotSubstring"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// Runs "tr" on the text through the shell, when commands are allowed.
class AATr : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AATr"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `.replace(pattern, replacement)`: every match of the regular expression
// replaced, `$1` naming a group; the captures are set for each match.
class AAReplace : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAReplace"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AADeleteCharacters : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADeleteCharacters"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// Pieces between the matches of a regular expression, joined with ";".
class AASplit : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AASplit"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// Paragraphs end at a line feed or a carriage return.
class AAParagraphs : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAParagraphs"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AAParagraph : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAParagraph"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AAParagraphCount : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAParagraphCount"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// The first n words (the last ones for negative n); 0 gives "".
class AAWords : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAWords"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// The text with its last character advanced by one.
class AANext : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AANext"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// By type: text length, list length, dictionary count.
class AASize : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AASize"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AAEmpty : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAEmpty"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// A text reversed by bytes, a list by items.
class AAReverse : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAReverse"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AADotBold : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotBold"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AADotItalic : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotItalic"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AADotPlain : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotPlain"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

class AADotStrike : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotStrike"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `wordsRelatedTo(word[, count])`: the words that share the most notes with
// the word in the document's word index, most shared notes first, ties in
// alphabetical order, the word itself left out, at most `count`
// (kDefaultCount when not given), as a list. "" without the word index.
class AARelatedWords : public AAFunction {
public:
    using AAFunction::AAFunction;
    static constexpr long kDefaultCount = 10;
    const char* ClassName() const override { return "AARelatedWords"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};
