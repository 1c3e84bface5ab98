// The link store's queries and filters, the link counts a note shows as
// attributes, and the link type and colour configuration files.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Colors.h"
#include "Link.h"
#include "LinkManager.h"
#include "LinkType.h"
#include "NodeLinks.h"
#include "TestDocument.h"

namespace {

std::vector<std::string> Ends(const LinkBundle& links, const Node* from) {
    std::vector<std::string> names;
    for (const Link* l : links) {
        const Node* other = l->SourceNode() == from ? l->DestNode() : l->SourceNode();
        names.push_back((l->SourceNode() == from ? ">" : "<") + (other ? other->Name() : l->URL()));
    }
    return names;
}

Link* TextLink(Node* from, Node* to, int start, int length, const std::string& type = "example") {
    LinkRecord record(from, start, length);
    record.destNode = to;
    record.type = type;
    return NodeLinks(from).CreateLink(record);
}

Link* WebLink(Node* from, const std::string& url, const std::string& guard = std::string()) {
    LinkRecord record(from);
    record.url = url;
    record.guard = guard;
    return NodeLinks(from).CreateLink(record);
}

// Sets an environment variable for the life of the scope.
class StEnvironment {
public:
    StEnvironment(const char* name, const std::string& value) : name(name) {
        if (const char* old = std::getenv(name))
            previous = old;
        ::setenv(name, value.c_str(), 1);
    }
    ~StEnvironment() {
        if (previous)
            ::setenv(name, previous->c_str(), 1);
        else
            ::unsetenv(name);
    }

private:
    const char* name;
    std::optional<std::string> previous;
};

} // namespace

TEST(LinkQueries, ANotesLinksInPriorityOrderThroughEveryChangeOfPlace) {
    Hypertext doc;
    Node* a = MakeNote(doc, "a");
    Node* b = MakeNote(doc, "b");
    Node* c = MakeNote(doc, "c");
    NodeText(a).SetText("alpha beta gamma");
    Link* ab = NodeLinks(a).CreateLink(b);
    Link* ca = NodeLinks(c).CreateLink(a, "agree");
    Link* aa = NodeLinks(a).CreateLink(a, "self");
    Link* text = TextLink(a, c, 6, 4);
    Link* web = WebLink(a, "https://example.org");
    Link* bc = NodeLinks(b).CreateLink(c);
    LinkManager* links = doc.Links();
    // Outbound and inbound together, a link to itself once, in list order.
    EXPECT_EQ(Ends(links->ListLinks(a, false), a),
              (std::vector<std::string>{">b", "<c", ">a", ">c", ">https://example.org"}));
    EXPECT_EQ(Ends(links->ListLinksTo(a, false), a), (std::vector<std::string>{"<c", ">a"}));

    // Exchange and Reorder move links for every query of both their ends.
    links->Exchange(ab, web);
    EXPECT_EQ(Ends(NodeLinks(a).OutboundLinks(), a),
              (std::vector<std::string>{">https://example.org", ">a", ">c", ">b"}));
    EXPECT_EQ(Ends(NodeLinks(b).InboundLinks(), b), (std::vector<std::string>{"<a"}));
    links->Reorder(bc, ca);   // bc before ca
    links->Reorder(aa, nullptr);   // aa to the end
    EXPECT_EQ(links->PriorityOf(bc), 1);
    EXPECT_EQ(links->Get(links->size() - 1), aa);
    EXPECT_EQ(Ends(links->ListLinks(a, false), a),
              (std::vector<std::string>{">https://example.org", "<c", ">c", ">b", ">a"}));
    EXPECT_EQ(Ends(links->ListLinks(c, false), c), (std::vector<std::string>{"<b", ">a", "<a"}));
    // A place beyond the end is the end; a link already in the list stays where it is.
    Link* late = LinkRecord(c, b, "late").MakeLink();
    links->Insert(late, 1000);
    EXPECT_EQ(links->Get(links->size() - 1), late);
    links->Insert(ab, 0);
    EXPECT_EQ(links->PriorityOf(ab), 4);
    Link* first = LinkRecord(b, a, "first").MakeLink();
    links->Insert(first, 0);
    EXPECT_EQ(Ends(NodeLinks(a).InboundLinks(), a), (std::vector<std::string>{"<b", "<c", ">a"}));

    // The kinds of link, each in order.
    EXPECT_EQ(Ends(NodeLinks(a).OutboundTextLinks(), a), (std::vector<std::string>{">c"}));
    EXPECT_EQ(Ends(NodeLinks(a).WebLinks(), a), (std::vector<std::string>{">https://example.org"}));
    EXPECT_EQ(Ends(NodeLinks(a).OutboundBasicLinks(), a), (std::vector<std::string>{">b", ">a"}));
    EXPECT_EQ(Ends(NodeLinks(c).InboundTextLinks(), c), (std::vector<std::string>{"<a"}));
    EXPECT_EQ(text->AnchorText(), "beta");
    EXPECT_EQ(NodeLinks(a).All().ToString(TextSpan(8, 1)), "c");
    EXPECT_EQ(NodeLinks(a).All().ToString(TextSpan(0, 6)), "");
    EXPECT_EQ(NodeLinks(a).ChooseDefaultLink(), web);
    EXPECT_EQ(NodeLinks(a).LinksOnPath("\"agree\"; self").size(), 1u);
    EXPECT_EQ(Ends(NodeLinks(a).OutboundLinks().NotOnPath("example;*untitled"), a), (std::vector<std::string>{">a"}));
    EXPECT_EQ(NodeLinks(a).OutboundLinks().OnPath("*").size(), 4u);

    // Removing links from the middle keeps every list in order.
    links->Remove(text);
    links->Remove(first);
    EXPECT_EQ(Ends(links->ListLinks(a, false), a),
              (std::vector<std::string>{">https://example.org", "<c", ">b", ">a"}));
    EXPECT_EQ(links->PriorityOf(ab), 3);
}

TEST(LinkQueries, FiltersGuardsAndCopiesOfLinks) {
    Hypertext doc;
    Node* a = MakeNote(doc, "a");
    Node* b = MakeNote(doc, "b");
    Node* c = MakeNote(doc, "c");
    Node* proto = MakeNote(doc, "proto");
    proto->SetBoolean("IsPrototype", true);
    NodeLinks(a).CreateLink(b, "agree");
    a->SetPrototype(proto, false);
    Link* guarded = WebLink(a, "https://example.org/open", "open");
    NodeLinks(c).CreateLink(b, "agree");
    LinkTypes* types = doc.GetLinkTypes();
    ASSERT_TRUE(types->Has("navigation"));
    types->Find("navigation")->SetVisible(false);
    NodeLinks(a).CreateLink(c, "navigation");

    LinkBundle all = NodeLinks(a).OutboundLinks();
    ASSERT_EQ(all.size(), 4u);
    EXPECT_EQ(Ends(all.OmitPrototypes(), a), (std::vector<std::string>{">b", ">https://example.org/open", ">c"}));
    EXPECT_EQ(Ends(all.OmitWebLinks(), a), (std::vector<std::string>{">b", ">proto", ">c"}));
    // The prototype type is not visible either.
    EXPECT_EQ(Ends(all.OmitInvisible(), a), (std::vector<std::string>{">b", ">https://example.org/open"}));
    EXPECT_EQ(all.WithGuardFieldSatisfied("closed").IndexOf(guarded), -1);
    EXPECT_EQ(all.WithGuardFieldSatisfied("open").IndexOf(guarded), 2);
    EXPECT_EQ(all.WithGuardFieldSatisfied("closed").size(), 3u);
    LinkBundle intoB = NodeLinks(b).InboundLinks();
    EXPECT_EQ(intoB.WithUniqueSources().size(), 2u);
    intoB.push_back(intoB[0]);
    EXPECT_EQ(intoB.WithUniqueSources().size(), 2u);
    EXPECT_FALSE(NodeLinks(a).LinkTypeIsVisible("navigation"));
    EXPECT_TRUE(NodeLinks(a).LinkTypeIsVisible("a type nobody made"));
    EXPECT_TRUE(NodeLinks(a).LinkStyleFor("source").IsDotted());

    // Copies of a note's links start at the copy; prototype links only when asked.
    Node* copy = MakeNote(doc, "copy");
    LinkBundle::CloneLinksFrom(a, copy, false);
    EXPECT_EQ(Ends(NodeLinks(copy).OutboundLinks(), copy),
              (std::vector<std::string>{">b", ">https://example.org/open", ">c"}));
    EXPECT_EQ(NodeLinks(copy).WebLinks()[0]->Guard(), "open");
    EXPECT_EQ(copy->GetPrototype(), nullptr);
    Node* copy2 = MakeNote(doc, "copy2");
    LinkBundle::CloneLinksFrom(a, copy2, true);
    EXPECT_EQ(copy2->GetPrototype(), proto);

    // Hiding a note hides the links at both its ends from the lists that
    // leave hidden ones out; its own hidden-inclusive lists still have them.
    NodeDeleter(b).Hide(true);
    EXPECT_EQ(Ends(NodeLinks(a).OutboundLinks(), a), (std::vector<std::string>{">proto", ">https://example.org/open", ">c"}));
    EXPECT_EQ(NodeLinks(a).OutboundStubLinks().size(), 1u);
    EXPECT_EQ(NodeLinks(b).AllLinksIncludeHidden().size(), 4u);
    EXPECT_TRUE(doc.Links()->ListLinks(b, false).empty());
    NodeDeleter(b).Hide(false);
    EXPECT_EQ(NodeLinks(a).OutboundLinks().size(), 4u);
    // Showing leaves putting the note back in the tree to the caller.
    EXPECT_EQ(b->Father(), nullptr);
    NodePosition(b).DoMoveToInternal(doc.Root(), nullptr, 0, 0);
}

TEST(LinkQueries, LinkCountsShownAsAttributes) {
    Hypertext doc;
    Node* a = MakeNote(doc, "a");
    Node* b = MakeNote(doc, "b");
    Node* c = MakeNote(doc, "c");
    Node* proto = MakeNote(doc, "proto");
    proto->SetBoolean("IsPrototype", true);
    NodeText(a).SetText("one two three");
    NodeLinks(a).CreateLink(b);
    NodeLinks(a).CreateLink(c, "agree");
    TextLink(a, b, 4, 3);
    WebLink(a, "https://example.org");
    WebLink(a, "https://example.com");
    a->SetPrototype(proto, false);
    NodeLinks(b).CreateLink(a);
    NodeLinks(c).CreateLink(a);
    Node* alias = NodeMaker(&doc).MakeAlias(a, c, nullptr);
    ASSERT_TRUE(alias);
    NodeLinks(b).CreateLink(alias);

    // Inbound: less prototype and hidden ones.
    EXPECT_EQ(a->GetString("InboundLinkCount"), "2");
    EXPECT_EQ(proto->GetString("InboundLinkCount"), "0");
    EXPECT_EQ(b->GetString("InboundLinkCount"), "2");
    // Outbound: less prototype, web and hidden ones (the text link counts).
    EXPECT_EQ(a->GetString("OutboundLinkCount"), "3");
    // Web and text links are those of the original, also for an alias.
    EXPECT_EQ(a->GetString("WebLinkCount"), "2");
    EXPECT_EQ(alias->GetString("WebLinkCount"), "2");
    EXPECT_EQ(a->GetString("TextLinkCount"), "1");
    EXPECT_EQ(alias->GetString("TextLinkCount"), "1");
    EXPECT_EQ(alias->GetString("OutboundLinkCount"), "0");
    // Plain: the note's own outbound links that are not text links.
    EXPECT_EQ(a->GetString("PlainLinkCount"), "5");
    EXPECT_EQ(alias->GetString("PlainLinkCount"), "0");
    EXPECT_EQ(alias->GetString("InboundLinkCount"), "1");

    NodeDeleter(b).Hide(true);
    EXPECT_EQ(a->GetString("InboundLinkCount"), "1");
    EXPECT_EQ(a->GetString("OutboundLinkCount"), "1");
    EXPECT_EQ(a->GetString("TextLinkCount"), "0");
}

TEST(LinkQueries, ConfigurationFilesForLinkTypesAndColours) {
    namespace fs = std::filesystem;
    fs::path folder = fs::temp_directory_path() / ("rylvane-config-" + std::to_string(::getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    StEnvironment env("RYLVANE_CONFIG_DIR", folder.string());

    // Without files: the built-in lists.
    LinkTypes builtIn;
    Colors builtInColors;
    ASSERT_TRUE(builtIn.Has("*untitled"));
    ASSERT_TRUE(builtIn.Has("*prototype"));
    EXPECT_TRUE(builtInColors.Has("warm gray dark"));

    // The user's files take the place of the built-in ones.
    std::ofstream(folder / "linkTypes.xml")
        << "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<linkTypes>\n"
           "<linkType name=\"cites\" label=\"cites &amp; quotes\" visible=\"0\" showLabel=\"1\" required=\"1\" "
           "colorString=\"moss\" style=\"4\" arrowType=\"2\" onLink=\"$Color=&quot;red&quot;\" />\n"
           "<linkType name=\"\" label=\"nameless, dropped\" />\n"
           "<linkType name=\"cites\" label=\"second cites updates the first\" />\n"
           "</linkTypes>\n";
    std::ofstream(folder / "colors.xml")
        << "<colors><color name=\"moss\" hidden=\"0\">#556b2f</color>"
           "<color name=\"Secret\" hidden=\"1\">#010203</color>"
           "<color name=\"broken\" hidden=\"0\">not a colour</color></colors>";
    LinkTypes user;
    ASSERT_EQ(user.Names(), (std::vector<std::string>{"cites"}));
    const LinkType* cites = user.Find("cites");
    EXPECT_EQ(cites->Label(), "second cites updates the first");
    EXPECT_FALSE(cites->Visible());
    EXPECT_TRUE(cites->Required());
    EXPECT_EQ(cites->ColorString(), "moss");
    EXPECT_TRUE(cites->Style().IsDashed());
    EXPECT_EQ(cites->ArrowType(), 2);
    EXPECT_EQ(cites->OnLink(), "$Color=\"red\"");
    Colors userColors;
    EXPECT_EQ(userColors.size(), 2u);
    EXPECT_EQ(userColors.TranslateColor("MOSS").ToString(), "#556b2f");
    EXPECT_TRUE(userColors.IsHidden("secret"));
    EXPECT_EQ(userColors.NameFor(userColors.TranslateColor("secret")), "");
    EXPECT_FALSE(userColors.Has("broken"));

    // A new document starts from them, and a link of an unknown type adds that type.
    {
        Hypertext doc;
        EXPECT_TRUE(doc.GetLinkTypes()->Has("cites"));
        EXPECT_TRUE(doc.GetColorTable()->Has("moss"));
        Node* a = MakeNote(doc, "a");
        Node* b = MakeNote(doc, "b");
        NodeLinks(a).CreateLink(b);
        EXPECT_TRUE(doc.GetLinkTypes()->Has("*untitled"));
        EXPECT_TRUE(NodeLinks(a).UsesLinkType("*untitled"));
        EXPECT_EQ(doc.GetLinkTypes()->InUse(&doc), (std::vector<std::string>{"*untitled"}));
    }

    // Broken files give way to the built-in lists.
    std::ofstream(folder / "linkTypes.xml") << "<linkTypes><linkType name=\"x\">";
    std::ofstream(folder / "colors.xml") << "<colors><color";
    LinkTypes fallback;
    Colors fallbackColors;
    EXPECT_EQ(fallback.Types(), builtIn.Types());
    EXPECT_TRUE(fallbackColors == builtInColors);
    fs::remove_all(folder);
}
