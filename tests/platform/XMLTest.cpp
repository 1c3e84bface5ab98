#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>

#include "XMLReader.h"
#include "XMLWriter.h"

TEST(XMLWriter, EscapesWhatXmlCannotHoldAsIs) {
    EXPECT_EQ(XMLWriter::ToXML("a&b<c>d\"e'f"), "a&amp;b&lt;c&gt;d&quot;e&apos;f");
    EXPECT_EQ(XMLWriter::ToXML("1"), "1");
    EXPECT_EQ(XMLWriter::ToXML("0"), "0");
    // Line breaks and tabs stay in text, become references in attributes;
    // a carriage return is a reference in both.
    EXPECT_EQ(XMLWriter::ToXML("a\tb\nc\rd"), "a\tb\nc&#13;d");
    EXPECT_EQ(XMLWriter::ToXML("a\tb\nc\rd", true), "a&#9;b&#10;c&#13;d");
    // Other control characters, broken UTF-8 and non-characters vanish.
    EXPECT_EQ(XMLWriter::ToXML(std::string("x\x01y\0z", 5)), "xyz");
    EXPECT_EQ(XMLWriter::ToXML("caf\xC3\xA9 \xF0\x9F\x98\x80"), "caf\xC3\xA9 \xF0\x9F\x98\x80");
    EXPECT_EQ(XMLWriter::ToXML("bad\xC3 \xFF\xFE end"), "bad  end");
    EXPECT_EQ(XMLWriter::ToXML("nc\xEF\xBF\xBF!"), "nc!");
    EXPECT_EQ(XMLWriter::ToXML("sur\xED\xA0\x80!"), "sur!");
    EXPECT_EQ(XMLWriter::ToXML("over\xC0\xAF!"), "over!");

    XMLWriter w;
    w.Open("item");
    w.Put("ID", "12");
    w.PutBoolean("on", true);
    w.PutDouble("x", 0.1);
    w.PutUnsigned("n", 4000000000UL);
    w.EndTag();
    w.Element("text", "<b>");
    w.Close("item");
    EXPECT_EQ(w.Result(), "<item ID=\"12\" on=\"1\" x=\"0.1\" n=\"4000000000\" ><text>&lt;b&gt;</text>\n</item>\n");
}

TEST(XMLReader, ReadsBackWhatTheWriterWrote) {
    const std::string tricky = "line1\nline2\r\nend\twith \"quotes\" & 'apostrophes' <tags> \xE2\x82\xAC";
    std::ostringstream stream;
    {
        XMLWriter w(stream);
        w.Declaration();
        w.Open("root");
        w.Put("value", tricky);
        w.PutDouble("pi", 3.141592653589793);
        w.EndTag(true);
        for (int i = 0; i < 3; ++i) {
            w.Open("child");
            w.PutLong("n", -i);
            w.EndTag();
            w.Text(tricky);
            w.Close("child");
        }
        w.Close("root");
    }
    XMLReader reader;
    ASSERT_TRUE(reader.Parse(stream.str())) << reader.ErrorMessage();
    XMLItem* root = reader.GetNodeList();
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->Name(), "root");
    EXPECT_EQ(root->Attributes().GetString("value"), tricky);
    EXPECT_EQ(root->Attributes().GetDouble("pi"), 3.141592653589793);
    EXPECT_EQ(root->ChildCount(), 3u);
    int n = 0;
    for (XMLItem* child = reader.FirstNode(); child; child = child->Brother(), ++n) {
        EXPECT_EQ(child->Text(), tricky);
        EXPECT_EQ(child->Attributes().GetLong("n"), -n);
        EXPECT_EQ(child->Father(), root);
    }
    EXPECT_EQ(root->Find("child"), reader.FirstNode());
    EXPECT_EQ(root->Find("none"), nullptr);

    // Lenient typed lookups.
    XMLAttributes a;
    a.Add("b", "TRUE");
    a.Add("u", "-3");
    a.Add("d", "nonsense");
    EXPECT_TRUE(a.GetBoolean("b"));
    EXPECT_EQ(a.GetUnsigned("u", 7), 7u);
    EXPECT_EQ(a.GetDouble("d", 1.5), 1.5);
    EXPECT_EQ(a.GetLong("missing", 9), 9);
}

TEST(XMLReader, ReportsWhereADocumentIsBroken) {
    XMLReader reader;
    EXPECT_FALSE(reader.Parse("<a>\n  <b></c>\n</a>"));
    EXPECT_EQ(reader.ErrorLine(), 2);
    EXPECT_EQ(reader.ErrorColumn(), 8);
    EXPECT_EQ(reader.ErrorMessage(), "line 2, column 8: mismatched tag");

    EXPECT_FALSE(reader.Parse(""));
    EXPECT_FALSE(reader.ErrorMessage().empty());
    EXPECT_FALSE(reader.Parse("<a>unclosed"));
    EXPECT_NE(reader.ErrorMessage().find("line 1"), std::string::npos);

    // Entity tricks are refused at the document type.
    EXPECT_FALSE(reader.Parse("<!DOCTYPE a [<!ENTITY x \"xx\">]><a>&x;</a>"));
    EXPECT_NE(reader.ErrorMessage().find("document type"), std::string::npos);

    std::string deep;
    for (int i = 0; i <= XMLReader::kMaxDepth; ++i)
        deep += "<a>";
    EXPECT_FALSE(reader.Parse(deep));
    EXPECT_NE(reader.ErrorMessage().find("nested too deeply"), std::string::npos);

    // A good parse clears the previous error.
    EXPECT_TRUE(reader.Parse("<a/>"));
    EXPECT_EQ(reader.ErrorMessage(), "");
    EXPECT_FALSE(reader.ParseFile("/nonexistent/file.ryl"));
    EXPECT_NE(reader.ErrorMessage().find("cannot open"), std::string::npos);
}

namespace {

// Consumes every <n> element as it ends, keeping only a count and a sum.
class CountingReader : public XMLReader {
public:
    long count = 0;
    long sum = 0;
    size_t mostChildrenSeen = 0;

protected:
    bool StartItem(XMLItem* item) override {
        if (item->Name() == "list")
            item->keepText = false;
        return item->Name() != "stop";
    }
    bool EndItem(XMLItem* item) override {
        if (item->Name() != "n")
            return false;
        ++count;
        sum += std::stol(item->Text());
        if (item->Father())
            mostChildrenSeen = std::max(mostChildrenSeen, item->Father()->ChildCount());
        return true;
    }
};

} // namespace

TEST(XMLReader, ConsumesElementsAsTheyEnd) {
    std::string doc = "<list>\n";
    long expected = 0;
    for (int i = 0; i < 200000; ++i) {
        doc += "<n>" + std::to_string(i) + "</n>\n";
        expected += i;
    }
    doc += "<kept/></list>";
    std::istringstream stream(doc);
    CountingReader reader;
    ASSERT_TRUE(reader.Parse(stream)) << reader.ErrorMessage();
    EXPECT_EQ(reader.count, 200000);
    EXPECT_EQ(reader.sum, expected);
    EXPECT_EQ(reader.mostChildrenSeen, 1u);
    ASSERT_EQ(reader.GetNodeList()->ChildCount(), 1u);
    EXPECT_EQ(reader.FirstNode()->Name(), "kept");
    EXPECT_EQ(reader.GetNodeList()->Text(), "");

    // A subclass can stop the parse; the position is reported.
    EXPECT_FALSE(reader.Parse("<list>\n<stop/></list>"));
    EXPECT_EQ(reader.ErrorLine(), 2);
}

namespace {

// Keeps the exact bytes of every <opaque> element.
class CapturingReader : public XMLReader {
public:
    std::vector<std::string> captured;

protected:
    bool CapturesRaw(std::string_view name, int) const override { return name == "opaque"; }
    bool EndItem(XMLItem* item) override {
        if (item->Name() != "opaque" || item->Father()->Name() == "opaque")
            return false;
        captured.push_back(item->Raw());
        return true;
    }
};

} // namespace

TEST(XMLReader, CapturesTheExactBytesOfAnElement) {
    std::vector<std::string> pieces = {
        "<opaque   a='1'  b=\"&amp;\"/>",
        "<opaque>\n  <inner x=\"y\" >t&lt;ext</inner>\r\n<!-- note --><opaque>nested</opaque>\n</opaque >",
        "<opaque><![CDATA[<raw> & stuff]]>\xC3\xA9</opaque>",
    };
    std::string doc = "<?xml version=\"1.0\"?>\n<root>";
    std::vector<std::string> expected;
    // Enough filler that elements straddle the reader's 256 KB chunks.
    for (int round = 0; round < 40; ++round) {
        doc += "<filler>" + std::string(9000 + round * 377, 'x') + "</filler>\n";
        const std::string& piece = pieces[round % pieces.size()];
        doc += piece;
        expected.push_back(piece);
    }
    doc += "</root>";

    CapturingReader fromString;
    ASSERT_TRUE(fromString.Parse(doc)) << fromString.ErrorMessage();
    EXPECT_EQ(fromString.captured, expected);

    std::istringstream stream(doc);
    CapturingReader fromStream;
    ASSERT_TRUE(fromStream.Parse(stream)) << fromStream.ErrorMessage();
    EXPECT_EQ(fromStream.captured, expected);
}

namespace {

// Writes down everything a reader's hooks see, so that two parses of one
// input can be compared: items with their attributes, texts and captured
// bytes; <leaf> elements taken whole with their text; failures at <bad>.
class TracingReader : public XMLReader {
public:
    std::string trace;

protected:
    bool StartItem(XMLItem* item) override {
        trace += "<" + item->Name();
        for (const auto& [name, value] : item->Attributes().Items())
            trace += " " + name + "=" + value;
        trace += ">";
        if (item->Name() == "bad")
            Fail("bad element");
        return true;
    }
    bool EndItem(XMLItem* item) override {
        trace += "[" + item->Text() + "|" + item->Raw() + "]</" + item->Name() + ">";
        return true;
    }
    bool StartLeaf(const char* name, const char** attributes) override {
        if (std::string(name) != "leaf")
            return false;
        trace += "{";
        for (const char** a = attributes; a[0]; a += 2)
            trace += std::string(a[0]) + "=" + a[1] + " ";
        return true;
    }
    void LeafText(const char* text, int length) override { trace.append(text, static_cast<size_t>(length)); }
    void EndLeaf() override { trace += "}"; }
    bool CapturesRaw(std::string_view name, int) const override { return name == "opaque"; }
};

struct Outcome {
    bool ok;
    std::string trace;
    std::string error;
    bool operator==(const Outcome&) const = default;
};

Outcome ParseFrom(const std::string& doc, size_t backgroundFrom, bool asStream) {
    TracingReader reader;
    reader.SetBackgroundThreshold(backgroundFrom);
    bool ok;
    if (asStream) {
        std::istringstream stream(doc);
        ok = reader.Parse(stream);
    } else {
        ok = reader.Parse(doc);
    }
    return {ok, reader.trace, reader.ErrorMessage()};
}

void PrintTo(const Outcome& o, std::ostream* os) {
    *os << (o.ok ? "ok" : "failed") << " \"" << o.error << "\" trace of " << o.trace.size() << " bytes";
}

} // namespace

TEST(XMLReader, ASecondThreadParsesTheSameAsOne) {
    // A body with what parsers split or count differently: entities, CDATA,
    // CR LF and lone CR line ends, characters of several bytes, comments,
    // leaves with elements inside, and captured elements long enough to
    // cross the pieces and blocks of a parse.
    std::string body;
    for (int i = 0; i < 3000; ++i) {
        body += "<n i=\"" + std::to_string(i) + "\" q='&lt;&amp;'>t&gt;" + std::to_string(i) + "\xC3\xA9\r\n";
        body += "<leaf name=\"v" + std::to_string(i % 7) + "\">x<sub>hidden</sub>y<![CDATA[<z>]]>\rw</leaf>";
        if (i % 500 == 250)
            body += "<opaque a='1'>\n" + std::string(300000, 'o') + "<inner/>\xF0\x9F\x8C\xB1</opaque>";
        body += "<!-- c --></n>\n";
    }
    std::string good = "<?xml version=\"1.0\"?>\n<root>" + body + "</root>";
    // Failures found by expat, by the reader, and by the reader's depth
    // limit, all after the first bytes.
    std::string broken = "<root>" + body + "<n>\xC3\xA9\xC3\xA9 <unclosed </n></root>";
    std::string refused = "<root>" + body + "\r\n  \xE2\x82\xAC\xF0\x9F\x8C\xB1<bad x='1'/>" + body + "</root>";
    std::string deep = "<root>" + body;
    for (int i = 0; i < XMLReader::kMaxDepth + 5; ++i)
        deep += "<d>";

    for (const std::string* doc : {&good, &broken, &refused, &deep}) {
        Outcome alone = ParseFrom(*doc, SIZE_MAX, false);
        EXPECT_EQ(alone.ok, doc == &good) << alone.error;
        for (size_t from : {size_t(0), size_t(1), size_t(4093), doc->size() / 2})
            for (bool asStream : {false, true})
                EXPECT_EQ(ParseFrom(*doc, from, asStream), alone) << "from byte " << from << (asStream ? " of a stream" : "");
    }
    Outcome refusal = ParseFrom(refused, 0, true);
    EXPECT_NE(refusal.error.find(": bad element"), std::string::npos) << refusal.error;
    // The reader stopped at <bad>: nothing after it reached the hooks.
    EXPECT_TRUE(refusal.trace.ends_with("<bad x=1>")) << refusal.trace.substr(refusal.trace.size() - 40);

    // A reader used again after a parse on two threads starts afresh.
    TracingReader reader;
    reader.SetBackgroundThreshold(0);
    EXPECT_FALSE(reader.Parse(broken));
    reader.trace.clear();
    EXPECT_TRUE(reader.Parse(good)) << reader.ErrorMessage();
    EXPECT_TRUE(reader.trace == ParseFrom(good, SIZE_MAX, false).trace);
}
