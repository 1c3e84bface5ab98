#include <sstream>

#include "ArgList.h"
#include "RylSerial.h"
#include "Transformer.h"
#include "UnicodeString.h"
#include "Parser.h"
#include "Value.h"
#include "Hooks.h"

namespace {

int Sign(int c) {
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

}  // namespace

// ---------------------------------------------------------------- StringValue

StringValue::StringValue(const std::string& t) : text(t) {}

StringValue::~StringValue() {
    guard = kGuardDestroying;
    if (actions && actions->ownsAction && actions->action) {
        // A compiled action may still be running elsewhere: it goes back to
        // its document's pool instead of being destroyed here.
        Action* compiled = actions->action;
        Hypertext* document = actions->actionDocument;
        Value::Queue().Sync([&] {
            const Hooks& hooks = GetHooks();
            if (hooks.recycleAction) hooks.recycleAction(document, compiled);
        });
    }
}

Value* StringValue::CreateFor(const std::string& text) {
    if (text.empty()) return Value::CloneNullValue();
    if (text == "left") return Value::CloneLeftValue();
    if (text == "center") return Value::CloneCenterValue();
    if (text == "right") return Value::CloneRightValue();
    return new StringValue(text);
}

Value* StringValue::Clone() const {
    // The clone compiles its own action when asked: it never shares one that
    // its source may hand back.
    return new StringValue(text);
}

std::string StringValue::AsString() const {
    return text;
}

std::string StringValue::AsXML() const {
    return text;
}

long StringValue::AsLong() const {
    std::istringstream in(text);
    int32_t number = 0;
    in >> number;
    return number;
}

double StringValue::AsDouble() const { return Parser::ReadDouble(text); }

bool StringValue::AsBoolean() const {
    return !(text.empty() || text == "false" || text == "0");
}

Action* StringValue::AsAgentAction(Hypertext* document) const {
    return Value::Queue().Sync([&]() -> Action* {
        if (actions && actions->ownsAction && actions->action) return actions->action;
        const Hooks& hooks = GetHooks();
        if (!hooks.createAction) return nullptr;
        if (!actions) actions = std::make_unique<ActionCache>();
        actions->actionDocument = document;
        try {
            Action* compiled = hooks.createAction(text);
            if (compiled) {
                actions->action = compiled;
                actions->ownsAction = true;
            }
            return compiled;
        } catch (...) {
            return nullptr;
        }
    });
}

std::string StringValue::EvaluateFor(const Node* note) const {
    const Hooks& hooks = GetHooks();
    std::shared_ptr<void> parsed = Value::Queue().Sync([&]() -> std::shared_ptr<void> {
        if (!actions) actions = std::make_unique<ActionCache>();
        if (!actions->parsedAction && hooks.parseAction) {
            try {
                actions->parsedAction = hooks.parseAction(text);
            } catch (...) {
                actions->parsedAction.reset();
            }
        }
        return actions->parsedAction;
    });
    if (!parsed || !hooks.evaluateAction) return "";
    try {
        return hooks.evaluateAction(parsed, note);
    } catch (...) {
        return "syntax error";
    }
}

int StringValue::compare(const Value* other, Transformer* transformer) const {
    if (!transformer) return compare(other);
    std::string mine = transformer->Transform(AsXML());
    std::string theirs = transformer->Transform(other ? other->AsXML() : std::string());
    if (mine != theirs) {
        // Empty texts sort after everything else.
        if (mine.empty()) return 1;
        if (theirs.empty()) return -1;
    }
    return Sign(UnicodeString::LocalizedCompare(mine, theirs));
}

// ---------------------------------------------------------------- CountedStringValue

CountedStringValue::CountedStringValue(const std::string& t) : StringValue(t) {}

Value* CountedStringValue::Clone() const {
    return const_cast<CountedStringValue*>(this);
}

void CountedStringValue::Delete() const {}

// ---------------------------------------------------------------- DictionaryValue

namespace {

std::string Render(const Dictionary& dictionary) {
    std::string text;
    for (const auto& [key, value] : dictionary) {
        if (!text.empty()) text += ';';
        text += key;
        text += ':';
        text += value;
    }
    return text;
}

}  // namespace

DictionaryValue::DictionaryValue(const std::string& t) : StringValue(t) {}

DictionaryValue::DictionaryValue(const Dictionary& d)
    : StringValue(Render(d)), dictionary(std::make_shared<const Dictionary>(d)) {}

DictionaryValue::DictionaryValue(const std::string& t, SharedDictionary d) : StringValue(t), dictionary(std::move(d)) {}

Value* DictionaryValue::Clone() const {
    std::lock_guard<std::mutex> hold(lock);
    return new DictionaryValue(text, dictionary);
}

SharedDictionary DictionaryValue::AsDictionary() const {
    std::lock_guard<std::mutex> hold(lock);
    if (!dictionary) {
        auto parsed = std::make_shared<Dictionary>();
        for (const std::string& item : ArgList(text, ';')) {
            ArgList parts(item, ':');
            if (parts.size() == 2) (*parsed)[parts[0]] = parts[1];
        }
        dictionary = parsed;
    }
    return dictionary;
}
