#include "AAValue.h"

#include <cstdio>

AAValue::~AAValue() { DestroyChildren(); }

bool AAValue::SingleArgument() const {
    const AAValue* first = GetArgument();
    return first && !first->GetNextArgument();
}

void AAValue::Describe(AAValueParts& parts) const {}

void AAValue::ReleaseChildren(std::vector<AAValuePtr>& out) {
    if (next)
        out.push_back(std::move(next));
}

void AAValue::DestroyChildren() {
    // The outermost destruction on a thread runs the loop; the destructors
    // of the nodes it frees only hand their children over to it.
    thread_local std::vector<AAValuePtr>* running = nullptr;
    if (running) {
        ReleaseChildren(*running);
        return;
    }
    std::vector<AAValuePtr> pending;
    ReleaseChildren(pending);
    if (pending.empty())
        return;
    running = &pending;
    while (!pending.empty()) {
        AAValuePtr node = std::move(pending.back());
        pending.pop_back();
        node.reset();
    }
    running = nullptr;
}

std::string AAQuoteForDump(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 32 || c == 127) {
                char buffer[8];
                std::snprintf(buffer, sizeof buffer, "\\x%02x", c);
                out += buffer;
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    out += '"';
    return out;
}

void AAStringValue::Describe(AAValueParts& parts) const { parts.fields.push_back(AAQuoteForDump(token)); }

void AAQuotedStringValue::Describe(AAValueParts& parts) const {
    parts.fields.push_back(AAQuoteForDump(token));
    if (quote == '\'')
        parts.fields.push_back("single-quoted");
}

void AAInvalid::Describe(AAValueParts& parts) const { parts.fields.push_back(AAQuoteForDump(token)); }

void AAMatchValue::Describe(AAValueParts& parts) const { parts.fields.push_back(AAQuoteForDump(token)); }

void AAAttributeValue::Describe(AAValueParts& parts) const {
    parts.fields.push_back(AAQuoteForDump(token));
    if (!designator.empty())
        parts.fields.push_back("designator " + AAQuoteForDump(designator));
}

void AATemplateValue::Describe(AAValueParts& parts) const { parts.fields.push_back(AAQuoteForDump(token)); }

void AARegexValue::Describe(AAValueParts& parts) const {
    parts.fields.push_back(AAQuoteForDump(token));
    parts.fields.push_back("pattern " + AAQuoteForDump(pattern));
    parts.fields.push_back(caseSensitive ? "case-sensitive" : "case-insensitive");
}

void AALinks::Describe(AAValueParts& parts) const {
    parts.fields.push_back("designator " + AAQuoteForDump(designator));
    parts.fields.push_back("query " + AAQuoteForDump(query));
}

AAIfExpression::~AAIfExpression() { DestroyChildren(); }

void AAIfExpression::Describe(AAValueParts& parts) const {
    parts.operands = {condition.get(), thenBranch.get(), elseBranch.get()};
}

void AAIfExpression::ReleaseChildren(std::vector<AAValuePtr>& out) {
    out.push_back(std::move(condition));
    out.push_back(std::move(thenBranch));
    out.push_back(std::move(elseBranch));
    AAValue::ReleaseChildren(out);
}

AAUnaryOperator::~AAUnaryOperator() { DestroyChildren(); }

void AAUnaryOperator::Describe(AAValueParts& parts) const {
    if (operand)
        parts.operands.push_back(operand.get());
}

void AAUnaryOperator::ReleaseChildren(std::vector<AAValuePtr>& out) {
    if (operand)
        out.push_back(std::move(operand));
    AAValue::ReleaseChildren(out);
}

AABinaryOperator::~AABinaryOperator() { DestroyChildren(); }

void AABinaryOperator::Describe(AAValueParts& parts) const {
    // An empty right side is left out; an empty left side before a right
    // one is shown as an empty slot.
    if (left || right)
        parts.operands.push_back(left.get());
    if (right)
        parts.operands.push_back(right.get());
}

void AABinaryOperator::ReleaseChildren(std::vector<AAValuePtr>& out) {
    if (left)
        out.push_back(std::move(left));
    if (right)
        out.push_back(std::move(right));
    AAValue::ReleaseChildren(out);
}

void AADotContains::Describe(AAValueParts& parts) const {
    parts.fields.push_back(caseSensitive ? "case-sensitive" : "case-insensitive");
    AADotOperator::Describe(parts);
}

void AACompositeFunction::Describe(AAValueParts& parts) const {
    for (const std::string& argument : arguments)
        parts.fields.push_back(AAQuoteForDump(argument));
    AAUnaryOperator::Describe(parts);
}
