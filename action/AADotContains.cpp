#include "AAValue.h"
#include "ArgList.h"
#include "AttributeType.h"
#include "MatchList.h"
#include "RegularExpression.h"
#include "SetList.h"

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
    RegularExpression& regex = RegularExpression::Cached(pattern, !caseSensitive);
    RegularExpression::Match match;
    if (!regex.Search(receiver.AsString(), match))
        return kFalseResult();
    matches.matches = std::move(match.groups);
    return ActionResult(static_cast<double>(match.position + 1));
}

ActionResult AADotContains::ActionValue(Node* note, MatchList& matches) const {
    if (!left || !right)
        return kFalseResult();
    int type = left->ResultType(note, matches);
    ActionResult receiver = ComputeValue(left.get(), note, matches);
    std::string pattern = ComputeValue(right.get(), note, matches).AsString();
    return Contains(receiver, type, pattern, matches);
}

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
