#include <gtest/gtest.h>

#include <cstdlib>

#include "AttributeType.h"
#include "NodeVector.h"
#include "PColor.h"
#include "SFile.h"
#include "SGeometry.h"
#include "Transformer.h"
#include "Hooks.h"

TEST(PColorTest, TextForms) {
    PColor c;
    EXPECT_TRUE(c.FromString("#FF8000"));
    EXPECT_EQ(c, PColor(0xFFFF, 0x8080, 0));
    EXPECT_EQ(c.ToString(), "#ff8000");
    EXPECT_TRUE(c.FromString("#0f0"));
    EXPECT_EQ(c, PColor(0, 0xFFFF, 0));
    EXPECT_TRUE(c.FromString("#123456789abc"));
    EXPECT_EQ(c, PColor(0x1234, 0x5678, 0x9abc));
    EXPECT_EQ(c.AsString(), "#12569a");

    PColor unchanged(1, 2, 3);
    for (const char* t : {"", "red", "#12345", "#gg0000", "ff0000", "#ff00001"})
        EXPECT_FALSE(unchanged.FromString(t)) << t;
    EXPECT_EQ(unchanged, PColor(1, 2, 3));
}

TEST(PColorTest, HSVAndGray) {
    double h, s, v;
    PColor(0xFFFF, 0, 0).ToHSV(h, s, v);
    EXPECT_DOUBLE_EQ(h, 0.0);
    EXPECT_DOUBLE_EQ(s, 100.0);
    EXPECT_DOUBLE_EQ(v, 100.0);
    PColor(0, 0, 0xFFFF).ToHSV(h, s, v);
    EXPECT_DOUBLE_EQ(h, 240.0);
    PColor(0x8080, 0x8080, 0x8080).ToHSV(h, s, v);
    EXPECT_DOUBLE_EQ(s, 0.0);
    EXPECT_NEAR(v, 50.2, 0.01);

    EXPECT_EQ(PColor::HSV(120, 100, 100), PColor(0, 0xFFFF, 0));
    EXPECT_EQ(PColor::HSV(-240, 100, 100), PColor(0, 0xFFFF, 0));  // hue wraps
    EXPECT_EQ(PColor::HSV(0, 0, 0), PColor::Black());
    // Round trip through HSV.
    PColor teal(0x1000, 0x8000, 0x7000);
    teal.ToHSV(h, s, v);
    PColor back = PColor::HSV(h, s, v);
    EXPECT_NEAR(back.red, teal.red, 1);
    EXPECT_NEAR(back.green, teal.green, 1);
    EXPECT_NEAR(back.blue, teal.blue, 1);

    EXPECT_EQ(PColor::Gray(0), PColor::White());
    EXPECT_EQ(PColor::Gray(16), PColor::Black());
    EXPECT_EQ(PColor::Gray(4).ToString(), "#bfbfbf");
    EXPECT_EQ(PColor::Gray(99), PColor::Black());
}

TEST(GeometryTest, RectTextAndFiles) {
    SRect r(1, 2, 11, 22.5);
    EXPECT_EQ(r.Width(), 20.5);
    EXPECT_EQ(r.Height(), 10.0);
    EXPECT_EQ(r.ToString(), "1 2 11 22.5");
    SRect back;
    EXPECT_TRUE(back.FromString(r.ToString()));
    EXPECT_EQ(back, r);
    EXPECT_FALSE(back.FromString("1 2 x"));
    EXPECT_TRUE(SRect().IsEmpty());
    EXPECT_TRUE(r.Contains(SPoint(3, 5)));
    EXPECT_FALSE(r.Contains(SPoint(1, 5)));

    EXPECT_FALSE(SFile::NoFile().IsValid());
    EXPECT_FALSE(SFile::NoFile().Exists());
    EXPECT_TRUE(SFile(RYL_SOURCE_DIR).Exists());
    EXPECT_FALSE(SFile("/no/such/file/anywhere").Exists());
}

TEST(AttributeTypeTest, Words) {
    EXPECT_EQ(AttributeType::FromString("Number"), 2);
    EXPECT_EQ(AttributeType::FromString("DICTIONARY"), 13);
    EXPECT_EQ(AttributeType::FromString("font"), 0);
    EXPECT_EQ(AttributeType::FromString("nonsense"), 0);
    EXPECT_EQ(AttributeType::TypeStringFor(12), "interval");
    for (int code : {6, 7, 11, 14, -1, 1000}) EXPECT_EQ(AttributeType::TypeStringFor(code), "string") << code;
    for (int code = 0; code <= 13; ++code) {
        std::string word = AttributeType::TypeStringFor(code);
        if (word != "string") {
            EXPECT_EQ(AttributeType::FromString(word), code);
        }
    }
    EXPECT_TRUE(AttributeType(-1).IsNone());
    EXPECT_TRUE(AttributeType(8).IsSet());
}

TEST(TransformerTest, Names) {
    EXPECT_EQ(Transformer::Create("case-sensitive")->Transform("AbC"), "AbC");
    EXPECT_EQ(Transformer::Create("")->Transform("AbC"), "AbC");
    EXPECT_EQ(Transformer::Create("lowercase")->Transform("ÄbC"), "äbc");
    EXPECT_EQ(Transformer::Create("case-insensitive")->Transform("ÄbC"), "äbc");
    EXPECT_EQ(Transformer::Create("last word")->Transform("  the quick  fox "), "fox");
    EXPECT_EQ(TransformerFirstWord().Transform("  the quick fox"), "the");
    EXPECT_EQ(TransformerCapitalize().Transform("éclair  and\tpie"), "Éclair And Pie");
    EXPECT_EQ(TransformerUpperCase().Transform("straße"), "STRASSE");

    Node* alias = reinterpret_cast<Node*>(0x10);
    Node* original = reinterpret_cast<Node*>(0x20);
    auto byOriginal = Transformer::Create("original note");
    EXPECT_EQ(byOriginal->ChooseNode(alias), alias);
    StHooks hooks;
    hooks->originalOf = [&](const Node* n) -> const Node* { return n == alias ? original : n; };
    EXPECT_EQ(byOriginal->ChooseNode(alias), original);
    EXPECT_EQ(byOriginal->Transform("Text"), "Text");
    EXPECT_EQ(Transformer::Create("normal")->ChooseNode(alias), alias);
}

TEST(NodeVectorTest, Container) {
    Node* a = reinterpret_cast<Node*>(0x10);
    Node* b = reinterpret_cast<Node*>(0x20);
    Node* c = reinterpret_cast<Node*>(0x30);
    NodeVector v;
    EXPECT_EQ(v.First(), nullptr);
    v.Add(a);
    v.Add(a);
    v.push_back(b);
    v.push_back(a);
    v.Insert(c);
    EXPECT_EQ(v, (NodeVector{c, a, b, a}));
    v.Remove(a);
    EXPECT_EQ(v, (NodeVector{c, b, a}));
    EXPECT_EQ(v.IndexOf(a), 2);
    EXPECT_EQ(v.IndexOf(nullptr), -1);
    EXPECT_TRUE(v.HasNode(b));
    v.Append(NodeVector{b});
    v.reverse();
    EXPECT_EQ(v.First(), b);
    EXPECT_EQ(v.Last(), c);
    EXPECT_EQ(v.PathString(), "");
}
