#include <cctype>
#include "Value.h"

#include <sstream>

#include "Log.h"
#include "Parser.h"
#include "RylSerial.h"
#include "SetList.h"
#include "Transformer.h"
#include "Hooks.h"

namespace {

int Sign(int c) {
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

std::string XMLOf(const Value* value) {
    return value ? value->AsXML() : std::string();
}

// The shared instances live for the run of the program and are never destroyed.
template <typename T, typename... Args>
T* Shared(Args&&... args) {
    return new T(std::forward<Args>(args)...);
}

CountedBooleanValue* SharedTrue() {
    static CountedBooleanValue* value = Shared<CountedBooleanValue>(true);
    return value;
}

CountedBooleanValue* SharedFalse() {
    static CountedBooleanValue* value = Shared<CountedBooleanValue>(false);
    return value;
}

CountedLongValue* SharedOne() {
    static CountedLongValue* value = Shared<CountedLongValue>(1);
    return value;
}

CountedLongValue* SharedZero() {
    static CountedLongValue* value = Shared<CountedLongValue>(0);
    return value;
}

}  // namespace

// ---------------------------------------------------------------- defaults

Value::~Value() {
    guard = kGuardDead;
}

Value* Value::Clone() const {
    return Value::Create(AsString());
}

void Value::Delete() const {
    if (guard != kGuardDead && guard != kGuardAlive) LogLine("bad value");
    delete this;
}

void Value::Release() const {
    Delete();
}

std::string Value::AsString() const {
    LogLine("Value::AsString() called for a subtype that cant be a string?");
    return "";
}

std::string Value::AsFormattedString(const std::string&) const {
    return AsString();
}

SRect Value::AsRect() const {
    return SRect(0, 0, 0, 0);
}

long Value::AsLong() const {
    return 0;
}

unsigned long Value::AsUnsignedLong() const {
    return 0;
}

bool Value::AsBoolean() const {
    return AsDouble() != 0.0;
}

PColor Value::AsColor() const {
    return PColor::Black();
}

double Value::AsDouble() const {
    return 0.0;
}

SharedDictionary Value::AsDictionary() const {
    return nullptr;
}

std::string Value::AsXML() const {
    return AsString();
}

std::string Value::AsShortString() const {
    return AsXML();
}

std::string Value::AsExportString(const std::string&, Hypertext*) const {
    return AsXML();
}

void Value::AsFile(SFile&) const {}

SFile Value::AsFile() const {
    return SFile::NoFile();
}

Action* Value::AsAgentAction(Hypertext*) const {
    return nullptr;
}

std::string Value::EvaluateFor(const Node*) const {
    return "";
}

int Value::compare(const Value* other) const {
    return Sign(AsXML().compare(XMLOf(other)));
}

int Value::compare(const Value* other, Transformer*) const {
    return compare(other);
}

bool Value::equal(const Value& other) const {
    return equal(&other);
}

bool Value::equal(const Value* other) const {
    return compare(other) == 0;
}

RylSerial& Value::Queue() {
    // Made on first use and never destroyed, so that values dying late in the
    // process still find it.
    static RylSerial* queue = new RylSerial("com.morvent.rylvane.Value");
    return *queue;
}

// ---------------------------------------------------------------- factories

namespace {

// The first blank-delimited word, as a stream read with `>>` finds it.
std::string FirstWord(const std::string& text) {
    size_t start = 0;
    while (start < text.size() && std::isspace(static_cast<unsigned char>(text[start]))) ++start;
    size_t end = start;
    while (end < text.size() && !std::isspace(static_cast<unsigned char>(text[end]))) ++end;
    return text.substr(start, end - start);
}

}  // namespace

int Value::OldTypeTag(const std::string& text) {
    std::string word = FirstWord(text);
    if (word == "Date[") return AttributeType::kDate;
    if (word == "Color[") return AttributeType::kColor;
    if (word == "Double[" || word == "Long[") return AttributeType::kNumber;
    return 0;
}

Value* Value::Create(const std::string& text) {
    // Only a first word ending in "[" can be a legacy tag; most texts are
    // plain strings and need no word split.
    if (text.find('[') == std::string::npos) return StringValue::CreateFor(text);
    std::string word = FirstWord(text);
    if (!word.empty() && word.back() == '[') {
        if (word == "Rect[") return new RectValue(text);
        if (word == "Date[") return ForDate(text);
        if (word == "Color[") return new ColorValue(text);
        if (word == "Double[") return new DoubleValue(text);
        if (word == "Long[") return new LongValue(text);
    }
    return StringValue::CreateFor(text);
}

namespace {

Value* NumberFromText(const std::string& text) {
    if (text.find('.') != std::string::npos || text.find('e') != std::string::npos) {
        std::istringstream in(Parser::Strip(text, ','));
        double number = 0.0;
        in >> number;
        return Value::ForDouble(number);
    }
    if (text.empty() || text[0] != '#') {
        std::istringstream in(Parser::Strip(text, ','));
        int32_t number = 0;
        in >> number;
        return Value::ForInt(number);
    }
    std::istringstream in(text.substr(1));
    uint32_t number = 0;
    in >> std::hex >> number;
    return Value::ForUnsigned(number);
}

bool BooleanFromText(const std::string& text) {
    if (text == "true" || text == "1") return true;
    if (text == "false" || text == "0" || text.empty()) return false;
    return true;
}

}  // namespace

Value* Value::Create(int type, const std::string& text) {
    switch (type) {
        case AttributeType::kColor: return new ColorValue(text);
        case AttributeType::kNumber: return NumberFromText(text);
        case AttributeType::kFile: return new FileValue(text);
        case AttributeType::kBoolean: return ForBoolean(BooleanFromText(text));
        case AttributeType::kDate: return ForDate(text);
        case AttributeType::kUnsigned: return ForUnsigned(text);
        case AttributeType::kAction: return new StringValue(text);
        case AttributeType::kSet: return Create(SetList(text, ';').ToString(";"));
        case AttributeType::kInterval: return ForInterval(text);
        case AttributeType::kDictionary: return new DictionaryValue(text);
        default: return Create(text);
    }
}

Value* Value::ForString(const std::string& text) {
    return StringValue::CreateFor(text);
}

Value* Value::ForBoolean(bool flag) {
    return (flag ? SharedTrue() : SharedFalse())->Clone();
}

Value* Value::ForFile(const std::string& path) {
    return new FileValue(path);
}

Value* Value::ForFile(const SFile& file) {
    return new FileValue(file);
}

Value* Value::ForDouble(double number) {
    return new DoubleValue(number);
}

Value* Value::ForDouble(const std::string& text) {
    if (OldTypeTag(text) != 0) return new DoubleValue(text);
    std::istringstream in(text);
    double number = 0.0;
    in >> number;
    return new DoubleValue(number);
}

Value* Value::ForUnsigned(unsigned number) {
    return new UnsignedValue(number);
}

Value* Value::ForUnsigned(const std::string& text) {
    if (text.empty()) return new UnsignedValue(0u);
    std::istringstream in(text);
    uint32_t number = 0;
    in >> number;
    return new UnsignedValue(number);
}

Value* Value::ForInt(int number) {
    if (number == 1) return SharedOne()->Clone();
    if (number == 0) return SharedZero()->Clone();
    return new LongValue(number);
}

Value* Value::ForInt(const std::string& text) {
    if (OldTypeTag(text) != 0) return new LongValue(text);
    std::istringstream in(text);
    int32_t number = 0;
    in >> number;
    return ForInt(number);
}

Value* Value::ForColor(const std::string& text) {
    return new ColorValue(text);
}

Value* Value::ForColor(const PColor& color) {
    return new ColorValue(color);
}

Value* Value::ForAction(const std::string& text) {
    return StringValue::CreateFor(text);
}

Value* Value::ForRectangle(const SRect& rect) {
    return new RectValue(rect);
}

namespace {

CountedStringValue* SharedEmpty() {
    static CountedStringValue* value = Shared<CountedStringValue>("");
    return value;
}

CountedStringValue* SharedLeft() {
    static CountedStringValue* value = Shared<CountedStringValue>("left");
    return value;
}

CountedStringValue* SharedCenter() {
    static CountedStringValue* value = Shared<CountedStringValue>("center");
    return value;
}

CountedStringValue* SharedRight() {
    static CountedStringValue* value = Shared<CountedStringValue>("right");
    return value;
}

}  // namespace

Value* Value::CloneNullValue() {
    return SharedEmpty()->Clone();
}

Value* Value::CloneLeftValue() {
    return SharedLeft()->Clone();
}

Value* Value::CloneCenterValue() {
    return SharedCenter()->Clone();
}

Value* Value::CloneRightValue() {
    return SharedRight()->Clone();
}

// ---------------------------------------------------------------- StValue

StValue::StValue(const Value* value, const Node* n) : clone(value ? value->Clone() : nullptr), note(n) {}

StValue::~StValue() {
    if (!clone) return;
    const Hooks& hooks = GetHooks();
    if (hooks.deleteValueForNote) {
        hooks.deleteValueForNote(note, clone);
    } else {
        clone->Delete();
    }
}

int StValue::compare(const Value* other) const {
    return clone ? clone->compare(other) : 0;
}

int StValue::compare(const Value* other, Transformer* transformer) const {
    return clone ? clone->compare(other, transformer) : 0;
}

int StValue::compare(const StValue& other, Transformer* transformer) const {
    return compare(other.Get(), transformer);
}
