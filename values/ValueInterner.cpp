#include "ValueInterner.h"

#include <typeinfo>

#include "DateValue.h"

ValueInterner::~ValueInterner() { Clear(); }

void ValueInterner::Clear() {
    for (auto& entry : values)
        entry.second->Delete();
    values.clear();
}

Value* ValueInterner::Share(Value* made) {
    // Values that count their references already need no wrapper.
    if (made->IsShared())
        return made;
    const std::type_info& kind = typeid(*made);
    Value* shared = nullptr;
    if (kind == typeid(StringValue))
        shared = new SharedValue<StringValue>(static_cast<StringValue*>(made)->Text());
    else if (kind == typeid(ColorValue))
        shared = new SharedValue<ColorValue>(static_cast<ColorValue*>(made)->Text());
    else if (kind == typeid(LongValue))
        shared = new SharedValue<LongValue>(static_cast<LongValue*>(made)->Number());
    else if (kind == typeid(DoubleValue) && !static_cast<DoubleValue*>(made)->IsTagged())
        shared = new SharedValue<DoubleValue>(made->AsDouble());
    if (shared)
        made->Delete();
    return shared;
}

Value* ValueInterner::Make(const std::string& text) {
    if (!sharing || text.size() > kMaxTextSize)
        return Value::Create(type, text);
    if (auto found = values.find(text); found != values.end())
        return found->second->Clone();
    Value* made = Value::Create(type, text);
    Value* shared = Share(made);
    if (!shared)
        return made;
    if (values.size() >= kMaxDistinct) {
        sharing = false;
        Clear();
        return shared;
    }
    values.emplace(text, shared);
    return shared->Clone();
}
