#pragma once
// Typed attribute values.
//
// A Value is immutable once built, apart from lazily filled caches. Whoever
// receives a Value* from a factory or from Clone owns one reference and ends it
// with Delete (or hands it to a ValuePtr / StValue). Some values are shared:
// Clone of a shared value returns the same object and its Delete does not
// destroy it, so always pair Clone/Create with exactly one Delete.
//
// Conversions never fail: text that cannot be read gives 0, false, never,
// black or "".
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "AttributeType.h"
#include "Dictionary.h"
#include "PColor.h"
#include "SFile.h"
#include "SGeometry.h"

class STime;
class STimeInterval;
class Transformer;
class Hypertext;
class Node;
class Action;
class RylSerial;

class Value {
public:
    // Guard word states: alive, inside a StringValue destructor, destroyed.
    static constexpr uint32_t kGuardAlive = 42;
    static constexpr uint32_t kGuardDestroying = 666;
    static constexpr uint32_t kGuardDead = 0;

    Value() = default;
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    // A new reference: by default a value made from this one's text.
    virtual Value* Clone() const;
    // Whether every conversion of this value answers what the same
    // conversion of its clone answers, without touching any lock: then a
    // reader may convert the value in place instead of cloning it first.
    // False by default (a clone made from the text may be of another class).
    virtual bool ReadsAsItsClone() const { return false; }
    // The text AsString answers, where the value keeps it, for values whose
    // text is what they hold (strings and colours); null for the rest. Lets
    // a hot read copy the text into a reused buffer with no type test.
    virtual const std::string* TextInPlace() const { return nullptr; }
    // Ends one reference: checks the guard word, then destroys.
    virtual void Delete() const;
    // Calls Delete.
    virtual void Release() const;

    virtual std::string AsString() const;
    virtual std::string AsFormattedString(const std::string& format) const;
    virtual SRect AsRect() const;
    virtual long AsLong() const;
    virtual unsigned long AsUnsignedLong() const;
    virtual bool AsBoolean() const;
    virtual PColor AsColor() const;
    virtual double AsDouble() const;
    // The parsed dictionary of a dictionary value; null for other values.
    virtual SharedDictionary AsDictionary() const;
    virtual STime AsTime() const;
    // The text written to a document file.
    virtual std::string AsXML() const;
    virtual std::string AsShortString() const;
    virtual std::string AsExportString(const std::string& format, Hypertext* document) const;
    // Fills `file` for a file value; leaves it alone otherwise.
    virtual void AsFile(SFile& file) const;
    virtual SFile AsFile() const;
    // The compiled action of a string value (cached); null for other values
    // and for text that does not compile.
    virtual Action* AsAgentAction(Hypertext* document) const;
    // Runs the text as action code on `note`; "" for other values.
    virtual std::string EvaluateFor(const Node* note) const;
    // -1, 0 or 1.
    virtual int compare(const Value* other) const;
    virtual int compare(const Value* other, Transformer* transformer) const;
    virtual bool equal(const Value& other) const;
    virtual bool equal(const Value* other) const;
    // Whether Clone answers this same object (with one more reference)
    // rather than a copy: such a value may be held in many places at once.
    virtual bool IsShared() const { return false; }

    virtual ~Value();

    uint32_t GuardWord() const { return guard; }

    // ------------------------------------------------------------ factories

    // A value of attribute type `type` from its text (see AttributeType).
    static Value* Create(int type, const std::string& text);
    // Untyped creation: legacy tagged forms ("Long[ 5 ]", "Rect[ ... ]", ...)
    // give their class, anything else a string value (shared for "", "left",
    // "center" and "right").
    static Value* Create(const std::string& text);
    // The type code of a legacy tag at the start of the text: 5 for "Date[",
    // 1 for "Color[", 2 for "Double[" and "Long[", else 0.
    static int OldTypeTag(const std::string& text);

    static Value* ForString(const std::string& text);
    static Value* ForBoolean(bool flag);
    static Value* ForDate(const std::string& text);
    static Value* ForDate(const STime& time);
    static Value* ForDate(const STime& time, const std::string& text);
    static Value* ForToday();
    static Value* ForFile(const std::string& path);
    static Value* ForFile(const SFile& file);
    static Value* ForInterval(const std::string& text);
    static Value* ForDouble(double number);
    static Value* ForDouble(const std::string& text);
    static Value* ForUnsigned(unsigned number);
    static Value* ForUnsigned(const std::string& text);
    static Value* ForInt(int number);
    static Value* ForInt(const std::string& text);
    static Value* ForColor(const std::string& text);
    static Value* ForColor(const PColor& color);
    static Value* ForAction(const std::string& text);
    static Value* ForRectangle(const SRect& rect);
    static STime AddTime(const STime& time, const std::string& interval);
    // The ActionPool of a document is reached through the hooks; values hand
    // compiled actions back with Hooks::recycleAction.

    // The shared never date (a new reference; Delete it).
    static Value* Never();
    // The shared strings "", "left", "center" and "right".
    static Value* CloneNullValue();
    static Value* CloneLeftValue();
    static Value* CloneCenterValue();
    static Value* CloneRightValue();

    // The serial queue that guards reference counts and compiled actions.
    static RylSerial& Queue();

protected:
    mutable uint32_t guard = kGuardAlive;
};

// Calls Delete: the deleter of ValuePtr.
struct ValueDeleter {
    void operator()(const Value* value) const {
        if (value) value->Delete();
    }
};
using ValuePtr = std::unique_ptr<Value, ValueDeleter>;
using ConstValuePtr = std::unique_ptr<const Value, ValueDeleter>;

// ---------------------------------------------------------------- strings

class StringValue : public Value {
public:
    bool ReadsAsItsClone() const override { return true; }
    const std::string* TextInPlace() const override { return &text; }
    explicit StringValue(const std::string& text);
    ~StringValue() override;

    // The shared instances for "", "left", "center" and "right"; a new
    // StringValue otherwise.
    static Value* CreateFor(const std::string& text);

    // Copies the text and the compiled action, but not the duty to hand the
    // action back.
    Value* Clone() const override;
    std::string AsString() const override;
    std::string AsXML() const override;
    long AsLong() const override;
    double AsDouble() const override;
    bool AsBoolean() const override;
    Action* AsAgentAction(Hypertext* document) const override;
    std::string EvaluateFor(const Node* note) const override;
    int compare(const Value* other, Transformer* transformer) const override;
    using Value::compare;

    const std::string& Text() const { return text; }

protected:
    std::string text;
    // The compiled action (with whether this value must hand it back, and to
    // which document) and the parsed action for EvaluateFor. Most strings are
    // never run as code, so this is made on first use.
    struct ActionCache {
        Action* action = nullptr;
        bool ownsAction = false;
        Hypertext* actionDocument = nullptr;
        std::shared_ptr<void> parsedAction;
    };
    mutable std::unique_ptr<ActionCache> actions;
};

// A shared string: Clone returns itself and Delete does nothing.
class CountedStringValue : public StringValue {
public:
    explicit CountedStringValue(const std::string& text);
    Value* Clone() const override;
    void Delete() const override;
    bool IsShared() const override { return true; }

    long Count() const { return count; }

private:
    long count = 1;
};

// A string of "key:value" pairs joined with ";" whose dictionary is parsed on
// first use. Comparisons and conversions are those of the text.
class DictionaryValue : public StringValue {
public:
    explicit DictionaryValue(const std::string& text);
    explicit DictionaryValue(const Dictionary& dictionary);
    DictionaryValue(const std::string& text, SharedDictionary dictionary);

    Value* Clone() const override;
    SharedDictionary AsDictionary() const override;

private:
    mutable std::mutex lock;
    mutable SharedDictionary dictionary;
};

// ---------------------------------------------------------------- numbers

class LongValue : public Value {
public:
    bool ReadsAsItsClone() const override { return true; }
    explicit LongValue(int32_t number);
    // The tagged form "Long[ n ]".
    explicit LongValue(const std::string& tagged);

    Value* Clone() const override;
    std::string AsString() const override;
    std::string AsXML() const override;
    long AsLong() const override;
    unsigned long AsUnsignedLong() const override;
    double AsDouble() const override;
    bool AsBoolean() const override;
    int compare(const Value* other) const override;
    using Value::compare;

    int32_t Number() const { return value; }

protected:
    int32_t value = 0;
};

// A shared integer: Clone returns itself and Delete does nothing.
class CountedLongValue : public LongValue {
public:
    explicit CountedLongValue(int32_t number);
    Value* Clone() const override;
    void Delete() const override;
    bool IsShared() const override { return true; }

protected:
    mutable long count = 1;
};

// A shared boolean, written "true" or "false".
class CountedBooleanValue : public CountedLongValue {
public:
    explicit CountedBooleanValue(bool flag);
    // Only "true" gives true.
    explicit CountedBooleanValue(const std::string& text);
    explicit CountedBooleanValue(const char* text) : CountedBooleanValue(std::string(text ? text : "")) {}

    // Counts the reference on the values' queue and returns itself.
    Value* Clone() const override;
    std::string AsString() const override;
    std::string AsXML() const override;
    // Byte order of the texts.
    int compare(const Value* other) const override;
    using Value::compare;

    long Count() const;
};

class UnsignedValue : public Value {
public:
    bool ReadsAsItsClone() const override { return true; }
    explicit UnsignedValue(uint32_t number);
    // The tagged form "Long[ n ]" or similar: word, integer, word.
    explicit UnsignedValue(const std::string& tagged);

    Value* Clone() const override;
    std::string AsString() const override;
    std::string AsXML() const override;
    long AsLong() const override;
    unsigned long AsUnsignedLong() const override;
    double AsDouble() const override;
    bool AsBoolean() const override;
    int compare(const Value* other) const override;
    using Value::compare;

private:
    uint32_t value = 0;
};

class DoubleValue : public Value {
public:
    explicit DoubleValue(double number);
    // The tagged form "Double[ x ]"; AsString answers that text itself.
    explicit DoubleValue(const std::string& tagged);

    // A double written at precision 10 in the default notation.
    static std::string Format(double number);

    Value* Clone() const override;
    std::string AsString() const override;
    std::string AsXML() const override;
    long AsLong() const override;
    unsigned long AsUnsignedLong() const override;
    double AsDouble() const override;
    bool AsBoolean() const override;
    int compare(const Value* other) const override;
    using Value::compare;

    // Whether the value was read from the tagged form, whose text it keeps.
    bool IsTagged() const { return taggedText != nullptr; }

private:
    double value = 0.0;
    // The whole tagged text of a value read from "Double[ x ]", which
    // AsString answers; absent for plain numbers, whose text is formatted.
    std::unique_ptr<const std::string> taggedText;
};

// ---------------------------------------------------------------- others

// A colour kept as the text it was given (a name or "#rrggbb"), which is what
// is stored and compared.
class ColorValue : public Value {
public:
    explicit ColorValue(const std::string& text);
    explicit ColorValue(const PColor& color);

    Value* Clone() const override;
    std::string AsString() const override;
    const std::string* TextInPlace() const override { return &text; }
    std::string AsXML() const override;
    long AsLong() const override;
    bool AsBoolean() const override;
    PColor AsColor() const override;
    std::string AsExportString(const std::string& format, Hypertext* document) const override;
    // Byte order of the texts, reversed.
    int compare(const Value* other) const override;
    using Value::compare;

    const std::string& Text() const { return text; }

private:
    PColor color;
    std::string text;
};

class RectValue : public Value {
public:
    explicit RectValue(const SRect& rect);
    // The tagged form "Rect[ top left bottom right ]".
    explicit RectValue(const std::string& tagged);

    std::string AsString() const override;
    std::string AsXML() const override;
    SRect AsRect() const override;
    int compare(const Value* other) const override;
    using Value::compare;

private:
    SRect rect;
};

class FileValue : public Value {
public:
    explicit FileValue(const std::string& path);
    explicit FileValue(const SFile& file);

    std::string AsString() const override;
    // "" for a path of 32769 bytes or more.
    std::string AsXML() const override;
    void AsFile(SFile& file) const override;
    SFile AsFile() const override;
    // The file's path when it exists, the stored text otherwise.
    std::string Path() const;

private:
    std::string path;
    SFile file;
};

// ---------------------------------------------------------------- scope guard

// Holds a clone of a value borrowed from a note and hands it back to the
// note's document when it goes.
class StValue {
public:
    StValue(const Value* value, const Node* note);
    ~StValue();
    StValue(const StValue&) = delete;
    StValue& operator=(const StValue&) = delete;

    const Value* Get() const { return clone; }
    // Compares the held clone; 0 when there is none.
    int compare(const Value* other) const;
    int compare(const Value* other, Transformer* transformer) const;
    int compare(const StValue& other, Transformer* transformer = nullptr) const;

private:
    Value* clone = nullptr;
    const Node* note = nullptr;
};
