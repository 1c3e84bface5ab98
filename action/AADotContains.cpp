#include "AAValue.h"
#include "ArgList.h"
#include "AttributeType.h"
#include "MatchList.h"
#include "RegularExpression.h"
#include "SetList.h"

namespace {

// The regular-expression search of a text receiver: a match stores the
// capture groups and answers its one-based position.
// The one-based position of the match, or 0 for none.
long SearchPosition(std::string_view text, std::string_view pattern, bool caseSensitive, MatchList& matches) {
    RegularExpression& regex = RegularExpression::Cached(pattern, !caseSensitive);
    RegularExpression::Match match;
    if (!regex.Search(text, match))
        return 0;
    matches.matches = std::move(match.groups);
    return static_cast<long>(match.position) + 1;
}

ActionResult Search(std::string_view text, std::string_view pattern, bool caseSensitive, MatchList& matches) {
    long position = SearchPosition(text, pattern, caseSensitive, matches);
    return position ? ActionResult(static_cast<double>(position)) : AAValue::kFalseResult();
}

}  // namespace

bool AADotContains::IsValid(const Node* note) const { return left && right && left->IsValid(note); }

ActionResult AADotContains::Contains(const ActionResult& receiver, int receiverType, const std::string& pattern,
                                     MatchList& matches) const {
    if (receiverType == AttributeType::kSet || receiverType == AttributeType::kList) {
        ArgList items = receiver.AsList();
        long position = -1;
        if (caseSensitive) {
            position = items.IndexOf(pattern);
        } else {
            position = items.IndexOfCaseInsensitive(pattern);
        }
        return position >= 0 ? ActionResult(static_cast<double>(position + 1)) : kFalseResult();
    }
    if (receiverType == AttributeType::kDictionary) {
        SharedDictionary dictionary = receiver.AsDictionary();
        return dictionary && dictionary->count(pattern) ? kTrueResult() : kFalseResult();
    }
    return Search(receiver.AsString(), pattern, caseSensitive, matches);
}

ActionResult AADotContains::ActionValue(Node* note, MatchList& matches) const {
    if (!left || !right)
        return kFalseResult();
    int type = left->ResultType(note, matches);
    if (type == AttributeType::kSet || type == AttributeType::kList || type == AttributeType::kDictionary) {
        ActionResult receiver = ComputeValue(left.get(), note, matches);
        std::string pattern = ComputeValue(right.get(), note, matches).AsString();
        return Contains(receiver, type, pattern, matches);
    }
    long position = SearchText(note, matches);
    return position ? ActionResult(static_cast<double>(position)) : kFalseResult();
}

bool AADotContains::Truth(Node* note, MatchList& matches) const {
    if (!left || !right)
        return false;
    int type = left->ResultType(note, matches);
    if (type == AttributeType::kSet || type == AttributeType::kList || type == AttributeType::kDictionary) {
        ActionResult receiver = ComputeValue(left.get(), note, matches);
        std::string pattern = ComputeValue(right.get(), note, matches).AsString();
        return Contains(receiver, type, pattern, matches).IsTrue();
    }
    return SearchText(note, matches) != 0;
}

long AADotContains::SearchText(Node* note, MatchList& matches) const {
    // A text receiver (the usual query on $Name or $Text) is searched where
    // it lies, with no result built for it or for the pattern.
    std::string textBuffer;
    std::string_view text = EvalText(left.get(), note, matches, textBuffer);
    std::string patternBuffer;
    std::string_view pattern;
    if (!FastText(right.get(), note, matches, patternBuffer, pattern)) {
        // Computing the pattern may run code that changes the note: keep
        // our own copy of a receiver that was viewed in place.
        if (text.data() != textBuffer.data())
            textBuffer.assign(text);
        text = textBuffer;
        patternBuffer = ComputeValue(right.get(), note, matches).AsString();
        pattern = patternBuffer;
    }
    return SearchPosition(text, pattern, caseSensitive, matches);
}

bool AADotContainsAny::Truth(Node* note, MatchList& matches) const { return ActionValue(note, matches).IsTrue(); }

ActionResult AADotContainsAny::ActionValue(Node* note, MatchList& matches) const {
    if (!left || !right)
        return kFalseResult();
    int type = left->ResultType(note, matches);
    ActionResult receiver = ComputeValue(left.get(), note, matches);
    ArgList patterns = ComputeValue(right.get(), note, matches).AsList();
    for (const std::string& pattern : patterns.GetList()) {
        if (Contains(receiver, type, pattern, matches).IsTrue())
            return kTrueResult();
    }
    return kFalseResult();
}
