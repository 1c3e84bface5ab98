#include "AttributeToken.h"

#include "AAValue.h"
#include "Action.h"
#include "HTPath.h"
#include "MatchList.h"
#include "Parser.h"

AttributeToken::AttributeToken(const std::string& source, Node* note, MatchList& matches) {
    std::string text = Parser::Trim(source);
    if (!text.empty() && text[0] == '$')
        text.erase(0, 1);

    size_t open = text.find('[');
    size_t close = text.rfind(']');
    if (open != std::string::npos && close != std::string::npos && close > open) {
        std::string inner = text.substr(open + 1, close - open - 1);
        AAValuePtr expression = Action::ParseExpression(inner, true);
        index = AAValue::ComputeValue(expression.get(), note, matches).AsString();
        hasIndex = true;
        text.erase(open, close - open + 1);
    }

    size_t lastParen = text.rfind(')');
    size_t from = lastParen == std::string::npos ? 0 : lastParen;
    size_t dot = text.rfind('.');
    if (dot != std::string::npos && dot >= from) {
        facet = text.substr(dot + 1);
        text.erase(dot);
    } else {
        size_t colon = text.rfind(':');
        if (colon != std::string::npos && colon >= from) {
            facet = text.substr(colon + 1);
            text.erase(colon);
        }
    }

    size_t paren = text.find('(');
    lastParen = text.rfind(')');
    if (paren != std::string::npos && lastParen != std::string::npos && lastParen > paren) {
        designator = text.substr(paren + 1, lastParen - paren - 1);
        name = Parser::Trim(text.substr(0, paren));
    } else {
        name = Parser::Trim(text);
    }
}

Node* AttributeToken::TargetFor(Node* note, MatchList& matches) const {
    if (designator.empty())
        return note;
    return HTPath::Get(note, designator, matches);
}

NodeVector AttributeToken::TargetsFor(Node* note, MatchList& matches) const {
    if (designator.empty())
        return note ? NodeVector{note} : NodeVector();
    NodeVector targets = HTPath::All(note, designator, matches);
    if (!targets.empty())
        return targets;
    AAValuePtr expression = Action::ParseExpression(designator, true);
    std::string computed = AAValue::ComputeValue(expression.get(), note, matches).AsString();
    return HTPath::All(note, computed, matches);
}
