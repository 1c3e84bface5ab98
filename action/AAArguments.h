#pragma once
// Small helpers the function library shares for reading an argument chain.
#include <string>

#include "AAValue.h"

// The n-th argument of a chain (0 is `first`), or null.
inline const AAValue* NthArgument(const AAValue* first, int n) {
    while (first && n-- > 0)
        first = first->GetNextArgument();
    return first;
}

// The number of arguments in a chain.
inline int CountArguments(const AAValue* first) {
    int count = 0;
    for (; first; first = first->GetNextArgument())
        ++count;
    return count;
}

// An argument computed as text; "" for a missing one.
inline std::string ArgumentText(const AAValue* value, Node* note, MatchList& matches) {
    return value ? AAValue::ComputeValue(value, note, matches).AsString() : std::string();
}
