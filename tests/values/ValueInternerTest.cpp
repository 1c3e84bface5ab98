#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AttributeType.h"
#include "DateValue.h"
#include "ValueInterner.h"

// An interner answers values that read exactly like Value::Create's, and the
// same object for the same text while it shares.
TEST(ValueInterner, SharesEqualTextsAndReadsLikeCreate) {
    struct Case {
        int type;
        std::string text;
    };
    std::vector<Case> cases = {{AttributeType::kString, "open"},       {AttributeType::kString, ""},
                               {AttributeType::kColor, "light blue"},  {AttributeType::kColor, "#336699"},
                               {AttributeType::kNumber, "7"},          {AttributeType::kNumber, "2.5"},
                               {AttributeType::kNumber, "1,234"},      {AttributeType::kSet, "b;a;b"},
                               {AttributeType::kDate, "2026-03-04"},   {AttributeType::kBoolean, "true"},
                               {AttributeType::kAction, "$Color=\"red\""}};
    for (const Case& c : cases) {
        ValueInterner interner(c.type);
        ValuePtr first(interner.Make(c.text));
        ValuePtr second(interner.Make(c.text));
        ValuePtr plain(Value::Create(c.type, c.text));
        EXPECT_EQ(first.get(), second.get()) << c.text;
        EXPECT_TRUE(first->IsShared()) << c.text;
        EXPECT_EQ(first->AsString(), plain->AsString()) << c.text;
        EXPECT_EQ(first->AsXML(), plain->AsXML()) << c.text;
        EXPECT_EQ(first->AsDouble(), plain->AsDouble()) << c.text;
        EXPECT_EQ(first->AsColor(), plain->AsColor()) << c.text;
        EXPECT_EQ(first->compare(plain.get()), 0) << c.text;
        // A clone of a shared value is the value itself.
        ValuePtr clone(first->Clone());
        EXPECT_EQ(clone.get(), first.get());
    }
    // Different texts give different values.
    ValueInterner strings(AttributeType::kString);
    ValuePtr a(strings.Make("a")), b(strings.Make("b"));
    EXPECT_NE(a.get(), b.get());
    EXPECT_EQ(strings.Size(), 2u);
}

// Values the interner gave out outlive it; the last reference destroys them.
TEST(ValueInterner, ReferencesOutliveTheTable) {
    ValuePtr kept;
    {
        ValueInterner interner(AttributeType::kString);
        kept.reset(interner.Make("waiting"));
        ValuePtr other(interner.Make("waiting"));
        EXPECT_EQ(static_cast<const SharedValue<StringValue>*>(kept.get())->Count(), 3);
    }
    EXPECT_EQ(static_cast<const SharedValue<StringValue>*>(kept.get())->Count(), 1);
    EXPECT_EQ(kept->AsString(), "waiting");
}

// Past kMaxDistinct texts the interner stops sharing and lets go of its table;
// values it gave out stay valid. Long texts and unshared classes are made
// afresh each time.
TEST(ValueInterner, GivesUpOnMostlyUniqueTexts) {
    ValueInterner names(AttributeType::kString);
    std::vector<ValuePtr> held;
    for (size_t i = 0; i <= ValueInterner::kMaxDistinct; ++i)
        held.emplace_back(names.Make("note " + std::to_string(i)));
    EXPECT_FALSE(names.Sharing());
    EXPECT_EQ(names.Size(), 0u);
    ValuePtr again1(names.Make("note 1")), again2(names.Make("note 1"));
    EXPECT_NE(again1.get(), again2.get());
    EXPECT_EQ(held[1]->AsString(), "note 1");

    ValueInterner texts(AttributeType::kString);
    std::string long_text(ValueInterner::kMaxTextSize + 1, 'x');
    ValuePtr l1(texts.Make(long_text)), l2(texts.Make(long_text));
    EXPECT_NE(l1.get(), l2.get());

    ValueInterner files(AttributeType::kFile);
    ValuePtr f1(files.Make("/tmp/a")), f2(files.Make("/tmp/a"));
    EXPECT_NE(f1.get(), f2.get());
    EXPECT_FALSE(f1->IsShared());
    EXPECT_EQ(files.Size(), 0u);
}
