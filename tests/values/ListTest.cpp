#include <gtest/gtest.h>

#include "ActionList.h"
#include "ArgList.h"
#include "SetList.h"

namespace {
std::vector<std::string> V(std::initializer_list<std::string> items) {
    return items;
}
}  // namespace

TEST(ArgListTest, SplittingAndQuoting) {
    ArgList list(" b ; a;\"x;y\" ;; b ;f(1;2)");
    EXPECT_EQ(list.GetList(), V({"b", "a", "\"x;y\"", "b", "f(1;2)"}));
    EXPECT_EQ(list.ToString(";"), "b;a;\"x;y\";b;f(1;2)");

    ArgList keep("a;;b", ';', true);
    EXPECT_EQ(keep.GetList(), V({"a", "", "b"}));
    EXPECT_TRUE(ArgList("").empty());
    EXPECT_EQ(ArgList("a;b;").size(), 2u);

    // An item that holds the separator is not quoted when written back.
    ArgList escaped("a\\;b;c");
    EXPECT_EQ(escaped.GetList(), V({"a;b", "c"}));
    EXPECT_EQ(escaped.ToString(";"), "a;b;c");

    EXPECT_EQ(list.at(1), "a");
    EXPECT_EQ(list.at(-1), "");
    EXPECT_EQ(list.at(99), "");
    EXPECT_EQ(ArgList("1.5;x").GetNum(0), 1.5);
    EXPECT_EQ(ArgList("1.5;x").GetNum(1), 0.0);
    EXPECT_EQ(ArgList("1.5;x").GetNum(7), 0.0);
}

TEST(ArgListTest, Editing) {
    ArgList list("a;b;a;c");
    EXPECT_EQ(list.IndexOf("c"), 3);
    EXPECT_EQ(list.IndexOf("z"), -1);
    list.RemoveOne("a");
    EXPECT_EQ(list.GetList(), V({"b", "a", "c"}));
    list.Remove("a");
    EXPECT_EQ(list.GetList(), V({"b", "c"}));
    list.Toggle("b");
    EXPECT_EQ(list.GetList(), V({"c"}));
    list.Toggle("d;e");  // an absent item is added through the splitter
    EXPECT_EQ(list.GetList(), V({"c", "d", "e"}));
    list.Insert(0, "first");
    list.Insert(99, "last");
    list.Set(1, "C");
    list.Remove(2);
    EXPECT_EQ(list.GetList(), V({"first", "C", "e", "last"}));
    list.Set("x;y", ';');
    list.Add("z", ';');
    EXPECT_EQ(list.GetList(), V({"x", "y", "z"}));

    ArgList words("Äpfel;Birne");
    EXPECT_TRUE(words.HasCaseInsensitive("äPFEL"));
    EXPECT_EQ(words.IndexOfCaseInsensitive("BIRNE"), 1);
    EXPECT_FALSE(words.Has("birne"));
    EXPECT_EQ(words.IndexOfCaseInsensitive("pear"), -1);
}

TEST(ArgListTest, NumericItems) {
    EXPECT_TRUE(ArgList("1; 2.5 ;-3;-.5;").IsNumeric());
    EXPECT_TRUE(ArgList("").IsNumeric());
    EXPECT_TRUE(ArgList("1;;2", ';', true).IsNumeric());
    EXPECT_FALSE(ArgList("1;2.5.1").IsNumeric());
    EXPECT_FALSE(ArgList("1;2-").IsNumeric());
    EXPECT_FALSE(ArgList("1e3").IsNumeric());
}

TEST(ActionListTest, BracesStayWhole) {
    ActionList statements("$A=1;if($B){$C=1;$D=2}else{$E=3};$F=\"a;b\"");
    EXPECT_EQ(statements.GetList(), V({"$A=1", "if($B){$C=1;$D=2}else{$E=3}", "$F=\"a;b\""}));
    // A plain list splits inside braces.
    EXPECT_EQ(ArgList("{a;b}").size(), 2u);
}

TEST(SetListTest, SortedUniqueAndQuoted) {
    SetList set("b;a;b; c ;;");
    EXPECT_EQ(set.size(), 3u);
    EXPECT_EQ(set.ToString(";"), "a;b;c");
    EXPECT_EQ(set.at(0), "a");
    EXPECT_EQ(set.at(2), "c");
    EXPECT_EQ(set.at(3), "");
    EXPECT_EQ(set.ToJson(), "[\"a\",\"b\",\"c\"]");
    EXPECT_EQ(SetList("").ToJson(), "[]");

    // An item holding the separator is quoted when written back...
    SetList quoted("x\\;y;z");
    EXPECT_EQ(quoted.ToString(";"), "\"x;y\";z");
    // ...and one written in quotes keeps them.
    SetList kept("\"p;q\"");
    EXPECT_EQ(kept.at(0), "\"p;q\"");
    // Byte order: upper case first.
    EXPECT_EQ(SetList("b;B;a").ToString(","), "B,a,b");
}

TEST(SetListTest, Editing) {
    SetList set("a;b");
    set.Add("c;;a", ';');
    EXPECT_EQ(set.ToString(";"), "a;b;c");
    set.Remove("a;z", ';');
    EXPECT_EQ(set.ToString(";"), "b;c");
    set.Toggle("b;d", ';');
    EXPECT_EQ(set.ToString(";"), "c;d");
    set.Set("x", ';');
    EXPECT_EQ(set.ToString(";"), "x");
    EXPECT_TRUE(set.Has("x"));
    EXPECT_NE(set.Find("x"), set.end());
    set.Clear();
    EXPECT_TRUE(set.empty());

    SetList pairs("color:red;size:big;loose;color:blue;a:b:c");
    EXPECT_EQ(pairs.RemoveKey("color").ToString(";"), "size:big");

    SetList one("a;b;c"), two("b;c;d");
    EXPECT_EQ(one.Intersection(two).ToString(";"), "b;c");
    EXPECT_EQ(one.Union(two).ToString(";"), "a;b;c;d");
}
