#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <typeinfo>

#include "Log.h"
#include "Transformer.h"
#include "Value.h"
#include "Hooks.h"

namespace {

ValuePtr Make(int type, const std::string& text) {
    return ValuePtr(Value::Create(type, text));
}

template <typename T>
bool Is(const ValuePtr& v) {
    return dynamic_cast<const T*>(v.get()) != nullptr;
}

}  // namespace

TEST(ValueCreate, NumberText) {
    auto thousands = Make(AttributeType::kNumber, "1,234");
    EXPECT_TRUE(Is<LongValue>(thousands));
    EXPECT_EQ(thousands->AsLong(), 1234);
    EXPECT_EQ(thousands->AsXML(), "1234");

    auto decimal = Make(AttributeType::kNumber, "1,234.5");
    EXPECT_TRUE(Is<DoubleValue>(decimal));
    EXPECT_DOUBLE_EQ(decimal->AsDouble(), 1234.5);
    EXPECT_EQ(decimal->AsString(), "1234.5");

    auto hex = Make(AttributeType::kNumber, "#ff");
    EXPECT_TRUE(Is<UnsignedValue>(hex));
    EXPECT_EQ(hex->AsUnsignedLong(), 255u);

    auto e = Make(AttributeType::kNumber, "e");
    EXPECT_TRUE(Is<DoubleValue>(e));
    EXPECT_EQ(e->AsDouble(), 0.0);

    EXPECT_EQ(Make(AttributeType::kNumber, "abc")->AsLong(), 0);
    EXPECT_EQ(Make(AttributeType::kNumber, "-17")->AsLong(), -17);
    EXPECT_EQ(Make(AttributeType::kNumber, "1e3")->AsDouble(), 1000.0);
    // A leading comma is kept, so the text no longer reads as a number.
    EXPECT_EQ(Make(AttributeType::kNumber, ",5")->AsLong(), 0);

    // 0 and 1 are shared, other integers are not.
    auto zero = Make(AttributeType::kNumber, "0");
    auto one = Make(AttributeType::kNumber, "1");
    EXPECT_TRUE(Is<CountedLongValue>(zero));
    EXPECT_TRUE(Is<CountedLongValue>(one));
    EXPECT_EQ(one.get(), ValuePtr(Value::ForInt(1)).get());
    EXPECT_FALSE(Is<CountedLongValue>(Make(AttributeType::kNumber, "2")));
}

TEST(ValueCreate, BooleanText) {
    for (const char* t : {"true", "1", "no", "yes", "False"}) EXPECT_TRUE(Make(4, t)->AsBoolean()) << t;
    for (const char* t : {"false", "0", ""}) EXPECT_FALSE(Make(4, t)->AsBoolean()) << t;
    auto yes = Make(4, "true");
    EXPECT_EQ(yes->AsXML(), "true");
    EXPECT_EQ(Make(4, "0")->AsString(), "false");
    EXPECT_EQ(yes.get(), ValuePtr(Value::ForBoolean(true)).get());

    // The text constructor is stricter.
    EXPECT_TRUE(CountedBooleanValue("true").AsBoolean());
    EXPECT_FALSE(CountedBooleanValue("1").AsBoolean());

    // Clone counts references on the shared instance and returns it.
    auto* shared = dynamic_cast<CountedBooleanValue*>(yes.get());
    ASSERT_NE(shared, nullptr);
    long before = shared->Count();
    Value* clone = yes->Clone();
    EXPECT_EQ(clone, yes.get());
    EXPECT_EQ(shared->Count(), before + 1);
    clone->Delete();
    EXPECT_EQ(yes->AsString(), "true");
}

TEST(ValueCreate, OtherTypesAndTags) {
    auto set = Make(AttributeType::kSet, "b;a;b");
    EXPECT_EQ(set->AsString(), "a;b");
    EXPECT_TRUE(Is<StringValue>(set));

    EXPECT_EQ(Make(AttributeType::kUnsigned, "")->AsUnsignedLong(), 0u);
    EXPECT_EQ(Make(AttributeType::kUnsigned, "42")->AsUnsignedLong(), 42u);
    EXPECT_TRUE(Is<StringValue>(Make(AttributeType::kAction, "$Name=1")));
    EXPECT_TRUE(Is<DictionaryValue>(Make(AttributeType::kDictionary, "a:1")));
    EXPECT_TRUE(Is<FileValue>(Make(AttributeType::kFile, "/tmp")));
    EXPECT_TRUE(Is<ColorValue>(Make(AttributeType::kColor, "red")));
    for (int type : {0, 9, 10, 11, 99, -5}) EXPECT_TRUE(Is<StringValue>(Make(type, "x"))) << type;

    // Legacy tagged forms.
    auto tagLong = ValuePtr(Value::Create("Long[ 12 ]"));
    EXPECT_TRUE(Is<LongValue>(tagLong));
    EXPECT_EQ(tagLong->AsLong(), 12);
    auto tagDouble = ValuePtr(Value::Create("Double[ 2.5 ]"));
    EXPECT_TRUE(Is<DoubleValue>(tagDouble));
    EXPECT_EQ(tagDouble->AsString(), "Double[ 2.5 ]");  // the tagged text itself
    EXPECT_EQ(tagDouble->AsXML(), "2.5");
    auto tagRect = ValuePtr(Value::Create("Rect[ 1 2 3 4 ]"));
    EXPECT_EQ(tagRect->AsRect(), SRect(1, 2, 3, 4));
    EXPECT_EQ(tagRect->AsXML(), "1 2 3 4");
    EXPECT_TRUE(Is<ColorValue>(ValuePtr(Value::Create("Color[ 1 2 3 ]"))));

    EXPECT_EQ(Value::OldTypeTag("Date[ 5 ]"), 5);
    EXPECT_EQ(Value::OldTypeTag("  Color[ x ]"), 1);
    EXPECT_EQ(Value::OldTypeTag("Double[ 1 ]"), 2);
    EXPECT_EQ(Value::OldTypeTag("Long[ 1 ]"), 2);
    EXPECT_EQ(Value::OldTypeTag("Rect[ 1 ]"), 0);
    EXPECT_EQ(ValuePtr(Value::ForInt("Long[ 7 ]"))->AsLong(), 7);
    EXPECT_EQ(ValuePtr(Value::ForInt(" 9"))->AsLong(), 9);

    // The shared strings.
    EXPECT_TRUE(Is<CountedStringValue>(ValuePtr(Value::Create(""))));
    EXPECT_EQ(ValuePtr(Value::Create("left")).get(), ValuePtr(Value::CloneLeftValue()).get());
    EXPECT_EQ(ValuePtr(Value::Create("center")).get(), ValuePtr(Value::CloneCenterValue()).get());
    EXPECT_EQ(ValuePtr(Value::Create("right")).get(), ValuePtr(Value::CloneRightValue()).get());
    EXPECT_FALSE(Is<CountedStringValue>(ValuePtr(Value::Create("Left"))));
}

TEST(ValueConversions, StringsAndNumbers) {
    StringValue s("12abc");
    EXPECT_EQ(s.AsLong(), 12);
    EXPECT_EQ(s.AsDouble(), 12.0);
    EXPECT_EQ(StringValue("abc").AsLong(), 0);
    EXPECT_EQ(StringValue(" 3.25x").AsDouble(), 3.25);
    for (const char* t : {"", "false", "0"}) EXPECT_FALSE(StringValue(t).AsBoolean()) << t;
    for (const char* t : {"no", "0.0", "False", " "}) EXPECT_TRUE(StringValue(t).AsBoolean()) << t;
    EXPECT_EQ(StringValue("x").AsColor(), PColor::Black());
    EXPECT_EQ(StringValue("x").AsDictionary(), nullptr);
    EXPECT_EQ(StringValue("x").AsRect(), SRect());

    EXPECT_EQ(DoubleValue(0.5).AsXML(), "0.5");
    EXPECT_EQ(DoubleValue(1e12).AsXML(), "1e+12");
    EXPECT_EQ(DoubleValue(1.0 / 3.0).AsXML(), "0.3333333333");
    EXPECT_EQ(DoubleValue(2.0).AsXML(), "2");
    EXPECT_EQ(DoubleValue(-1.7).AsLong(), -1);
    EXPECT_EQ(DoubleValue(2.5).AsLong(), 3);
    EXPECT_EQ(DoubleValue(-1.7).AsUnsignedLong(), 0u);
    EXPECT_EQ(DoubleValue(1.5).AsUnsignedLong(), 2u);
    EXPECT_FALSE(DoubleValue(0.0).AsBoolean());

    LongValue l(-3);
    EXPECT_EQ(l.AsString(), "-3");
    EXPECT_EQ(l.AsDouble(), -3.0);
    EXPECT_TRUE(l.AsBoolean());
    EXPECT_EQ(UnsignedValue(7u).AsXML(), "7");
}

TEST(ValueConversions, ColorsRectsFiles) {
    ColorValue hex("#ff0000");
    EXPECT_EQ(hex.AsColor(), PColor(0xFFFF, 0, 0));
    EXPECT_EQ(hex.AsXML(), "#ff0000");
    EXPECT_EQ(hex.AsLong(), 1);
    EXPECT_TRUE(hex.AsBoolean());
    for (const char* t : {"", "black", "Black", "normal"}) EXPECT_FALSE(ColorValue(t).AsBoolean()) << t;
    EXPECT_TRUE(ColorValue("warm gray dark").AsBoolean());
    EXPECT_TRUE(ColorValue("#000000").AsBoolean());  // black by number, but not by name

    // Export resolves names through the document's colour table.
    Hypertext* document = reinterpret_cast<Hypertext*>(0x1);
    EXPECT_EQ(ColorValue("red").AsExportString("", document), "#000000");
    StHooks hooks;
    hooks->translateColorForDocument = [](Hypertext*, const std::string& name) {
        return name == "red" ? PColor(0xFFFF, 0, 0) : PColor();
    };
    EXPECT_EQ(ColorValue("red").AsExportString("", document), "#ff0000");
    EXPECT_EQ(ColorValue("red").AsExportString("", nullptr), "#000000");
    EXPECT_EQ(ColorValue("#00ff00").AsExportString("", document), "#00ff00");

    RectValue rect(SRect(1.5, 2, 3, 4));
    EXPECT_EQ(rect.AsString(), "1.5 2 3 4");
    // Cloning goes through the text, so the clone is a plain string.
    ValuePtr rectClone(rect.Clone());
    EXPECT_EQ(rectClone->AsString(), "1.5 2 3 4");
    EXPECT_EQ(dynamic_cast<RectValue*>(rectClone.get()), nullptr);

    FileValue file("/definitely/not/here");
    EXPECT_EQ(file.AsXML(), "/definitely/not/here");
    EXPECT_EQ(file.Path(), "/definitely/not/here");
    EXPECT_TRUE(file.AsFile().IsValid());
    SFile filled;
    file.AsFile(filled);
    EXPECT_EQ(filled.UnixPath(), "/definitely/not/here");
    EXPECT_FALSE(FileValue("").AsFile().IsValid());
    EXPECT_EQ(FileValue(std::string(32768, 'a')).AsXML().size(), 32768u);
    EXPECT_EQ(FileValue(std::string(32769, 'a')).AsXML(), "");
}

TEST(ValueCompare, ByClass) {
    // Strings: byte order of the texts.
    EXPECT_LT(StringValue("B").compare(ValuePtr(Value::Create("a")).get()), 0);
    EXPECT_EQ(StringValue("a").compare(ValuePtr(Value::Create("a")).get()), 0);
    EXPECT_TRUE(StringValue("a").equal(StringValue("a")));
    EXPECT_EQ(StringValue("a").compare(nullptr), 1);

    // Numbers compare as numbers, whatever the other side is.
    EXPECT_EQ(LongValue(10).compare(ValuePtr(Value::ForDouble(9.5)).get()), 1);
    EXPECT_EQ(LongValue(2).compare(ValuePtr(Value::Create("2")).get()), 0);
    EXPECT_EQ(DoubleValue(1.5).compare(ValuePtr(Value::ForInt(2)).get()), -1);
    EXPECT_EQ(DoubleValue(std::nan("")).compare(ValuePtr(Value::ForInt(2)).get()), 0);
    EXPECT_EQ(UnsignedValue(5u).compare(ValuePtr(Value::ForDouble(4.6)).get()), 0);  // 4.6 rounds to 5

    // Colours: byte order reversed.
    ColorValue a("#aaaaaa"), b("#bbbbbb");
    EXPECT_EQ(a.compare(&b), 1);
    EXPECT_EQ(b.compare(&a), -1);
    EXPECT_EQ(a.compare(ValuePtr(Value::ForColor("#aaaaaa")).get()), 0);

    // Booleans compare as text.
    ValuePtr t(Value::ForBoolean(true)), f(Value::ForBoolean(false));
    EXPECT_EQ(t->compare(f.get()), 1);

    // Rectangles: top, left, right, bottom.
    RectValue r1(SRect(0, 0, 9, 5)), r2(SRect(0, 0, 1, 6));
    EXPECT_EQ(r1.compare(&r2), -1);  // right 5 < 6 decides before bottom
    EXPECT_EQ(r2.compare(&r1), 1);
}

TEST(ValueCompare, TransformerPutsEmptyLastAndIgnoresCase) {
    auto caseInsensitive = Transformer::Create("case-insensitive");
    auto plain = Transformer::Create("case-sensitive");
    StringValue empty(""), apple("apple"), Apple("Apple"), banana("banana");

    EXPECT_EQ(empty.compare(&apple, plain.get()), 1);
    EXPECT_EQ(apple.compare(&empty, plain.get()), -1);
    EXPECT_EQ(empty.compare(&empty, plain.get()), 0);
    EXPECT_LT(apple.compare(&banana, plain.get()), 0);
    EXPECT_EQ(apple.compare(&Apple, caseInsensitive.get()), 0);
    EXPECT_NE(apple.compare(&Apple, plain.get()), 0);
    // Locale order, not byte order: "Banana" sorts after "apple".
    StringValue Banana("Banana");
    EXPECT_LT(apple.compare(&Banana, plain.get()), 0);
    EXPECT_GT(apple.compare(&Banana), 0);
    // Without a transformer the other classes ignore it.
    EXPECT_EQ(LongValue(1).compare(ValuePtr(Value::ForInt(2)).get(), caseInsensitive.get()), -1);
}

TEST(ValueLifecycle, CloneDeleteAndGuard) {
    StringValue* s = new StringValue("text");
    Value* c = s->Clone();
    EXPECT_NE(c, s);
    EXPECT_EQ(c->AsString(), "text");
    s->Delete();
    c->Delete();

    ValuePtr d(Value::ForDouble(2.25));
    ValuePtr dc(d->Clone());
    EXPECT_NE(d.get(), dc.get());
    EXPECT_EQ(dc->AsDouble(), 2.25);

    // Shared integers and strings: Clone is the same object, Delete is nothing.
    ValuePtr one(Value::ForInt(1));
    one->Delete();
    one->Delete();
    EXPECT_EQ(one->AsLong(), 1);
    Value* empty = Value::CloneNullValue();
    empty->Delete();
    EXPECT_EQ(Value::CloneNullValue(), empty);

    // A corrupted guard word is logged and the value destroyed anyway.
    struct Probe : StringValue {
        using StringValue::StringValue;
        void Corrupt() { guard = 7; }
    };
    Probe* probe = new Probe("x");
    EXPECT_EQ(probe->GuardWord(), Value::kGuardAlive);
    probe->Corrupt();
    StLogCapture log;
    probe->Delete();
    EXPECT_TRUE(log.Contains("bad value"));
}

TEST(ValueLifecycle, DictionaryValue) {
    DictionaryValue d("a:1;b:2;bad;c:3:4;\"q:r\":s");
    SharedDictionary dict = d.AsDictionary();
    ASSERT_NE(dict, nullptr);
    EXPECT_EQ(dict->size(), 3u);  // "bad" and "c:3:4" are not two parts
    EXPECT_EQ(dict->at("\"q:r\""), "s");  // quotes protect a colon and stay
    EXPECT_EQ(dict->at("a"), "1");
    EXPECT_EQ(dict->at("b"), "2");
    EXPECT_EQ(d.AsDictionary(), dict);  // parsed once
    ValuePtr clone(d.Clone());
    EXPECT_EQ(clone->AsDictionary(), dict);  // shared with the clone
    EXPECT_EQ(clone->AsString(), d.AsString());

    DictionaryValue built(Dictionary{{"z", "26"}, {"a", "1"}});
    EXPECT_EQ(built.AsString(), "a:1;z:26");
    EXPECT_EQ(built.compare(ValuePtr(Value::Create("a:1;z:26")).get()), 0);
}

TEST(HooksUse, ActionsAndStValue) {
    struct Counter {
        int compiled = 0, recycled = 0, parsed = 0;
    };
    static Counter counter;
    counter = Counter();
    Action* fake = reinterpret_cast<Action*>(0x1234);
    StHooks guard;
    Hooks& hooks = *guard;
    hooks.createAction = [fake](const std::string& text) -> Action* {
        if (text == "throw") throw 1;
        ++counter.compiled;
        return fake;
    };
    hooks.recycleAction = [fake](Hypertext*, Action* action) {
        EXPECT_EQ(action, fake);
        ++counter.recycled;
    };
    {
        StringValue code("$Name=1");
        EXPECT_EQ(code.AsAgentAction(nullptr), fake);
        EXPECT_EQ(code.AsAgentAction(nullptr), fake);
        EXPECT_EQ(counter.compiled, 1);  // compiled once
        ValuePtr clone(code.Clone());
    }
    EXPECT_EQ(counter.recycled, 1);  // handed back by the original only
    EXPECT_EQ(StringValue("throw").AsAgentAction(nullptr), nullptr);
    EXPECT_EQ(LongValue(3).AsAgentAction(nullptr), nullptr);

    hooks.parseAction = [](const std::string& text) -> std::shared_ptr<void> {
        ++counter.parsed;
        if (text == "bad") return nullptr;
        return std::make_shared<std::string>(text);
    };
    hooks.evaluateAction = [](const std::shared_ptr<void>& parsed, const Node*) -> std::string {
        const std::string& text = *static_cast<std::string*>(parsed.get());
        if (text == "boom") throw 2;
        return "ran " + text;
    };
    StringValue run("x");
    EXPECT_EQ(run.EvaluateFor(nullptr), "ran x");
    EXPECT_EQ(run.EvaluateFor(nullptr), "ran x");
    EXPECT_EQ(counter.parsed, 1);
    EXPECT_EQ(StringValue("bad").EvaluateFor(nullptr), "");
    EXPECT_EQ(StringValue("boom").EvaluateFor(nullptr), "syntax error");
    EXPECT_EQ(LongValue(1).EvaluateFor(nullptr), "");
    hooks.parseAction = nullptr;
    hooks.evaluateAction = nullptr;
    hooks.createAction = nullptr;
    EXPECT_EQ(StringValue("x").EvaluateFor(nullptr), "");
    EXPECT_EQ(StringValue("x").AsAgentAction(nullptr), nullptr);

    // StValue hands its clone to the note's document.
    static int handedBack = 0;
    hooks.deleteValueForNote = [](const Node*, const Value* v) {
        ++handedBack;
        v->Delete();
    };
    {
        LongValue five(5);
        StValue held(&five, nullptr);
        ASSERT_NE(held.Get(), nullptr);
        EXPECT_NE(held.Get(), &five);
        EXPECT_EQ(held.compare(ValuePtr(Value::ForInt(5)).get()), 0);
        StValue none(nullptr, nullptr);
        EXPECT_EQ(none.Get(), nullptr);
        EXPECT_EQ(none.compare(&five), 0);
    }
    EXPECT_EQ(handedBack, 1);
}

TEST(HooksUse, ScopeRestoresWhatWasInstalled) {
    StHooks outer;
    outer->displayName = [](const Node*) { return std::string("outer"); };
    {
        StHooks inner;
        inner->displayName = [](const Node*) { return std::string("inner"); };
        inner->noteURL = [](const Node*) { return std::string("url"); };
        EXPECT_EQ(GetHooks().displayName(nullptr), "inner");
    }
    ASSERT_TRUE(GetHooks().displayName);
    EXPECT_EQ(GetHooks().displayName(nullptr), "outer");
    EXPECT_FALSE(GetHooks().noteURL);
}

TEST(DoubleText, WrittenAsPrintfWritesTenSignificantDigits) {
    const double values[] = {0.0, -0.0, 0.5, 1234.5, 1e12, 1e-5, 1e-6, 123456789012.0, 0.1 + 0.2, 1.0 / 3.0,
                             -2.5e-300, 1e308, 5e-324, 9999999999.5, 99999.999995,
                             std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    for (double value : values) {
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.10g", value);
        EXPECT_EQ(DoubleValue::Format(value), expected) << value;
    }
}
