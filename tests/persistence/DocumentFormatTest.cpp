// The document file section by section: what is written where, what comes
// back, and what is carried through untouched.
#include <gtest/gtest.h>

#include <sstream>

#include "Attribute.h"
#include "AttributeInfo.h"
#include "Base64.h"
#include "Colors.h"
#include "Content.h"
#include "DocumentComparison.h"
#include "Hypertext.h"
#include "Link.h"
#include "LinkManager.h"
#include "LinkType.h"
#include "Log.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"
#include "Prefs.h"
#include "Props.h"
#include "TalvikReader.h"
#include "TalvikWriter.h"
#include "DocumentTestSupport.h"
#include "XMLReader.h"

namespace {

Node* Named(Hypertext& doc, const std::string& name) {
    return HypertextFacade(&doc).First([&](Node* n) { return !n->IsHidden() && !n->IsAlias() && n->Name() == name; });
}

// The names of the elements directly inside the root element, in order.
std::vector<std::string> Sections(const std::string& bytes) {
    XMLReader reader;
    EXPECT_TRUE(reader.Parse(bytes)) << reader.ErrorMessage();
    std::vector<std::string> names;
    if (XMLItem* root = reader.GetNodeList())
        for (XMLItem* child = root->Son(); child; child = child->Brother())
            names.push_back(child->Name());
    return names;
}

// The start tag of the first element that holds `marker`.
std::string TagHolding(const std::string& bytes, const std::string& marker) {
    size_t at = bytes.find(marker);
    if (at == std::string::npos)
        return {};
    size_t open = bytes.rfind('<', at);
    size_t close = bytes.find('>', at);
    return bytes.substr(open, close - open + 1);
}

// The names of the XML attributes of a start tag, in order.
std::vector<std::string> AttributeOrder(const std::string& tag) {
    std::vector<std::string> names;
    size_t at = tag.find(' ');
    while (at != std::string::npos) {
        size_t eq = tag.find('=', at);
        if (eq == std::string::npos)
            break;
        names.push_back(tag.substr(at + 1, eq - at - 1));
        size_t quote = tag.find('"', eq + 2);
        at = tag.find(' ', quote);
        if (at != std::string::npos && (at + 1 >= tag.size() || tag[at + 1] == '/' || tag[at + 1] == '>'))
            break;
    }
    return names;
}

} // namespace

TEST(DocumentFormat, SectionsStandInTheirOrderAndOpaqueOnesComeBackByteForByte) {
    // Opaque sections given out of order, with odd spacing, comments, CDATA,
    // entities and single quotes: they come back as they were, in the order
    // of the format.
    const std::string badges = "<badges>\n <badge  name='star' >\xE2\x98\x85</badge><!-- kept --></badges>";
    const std::string gallery = "<gallery><![CDATA[<not a tag> & ]]>&amp;&#65;</gallery>";
    const std::string filters = "<filters count=\"2\"><filter q=\"$Color==&quot;red&quot;\"/></filters>";
    const std::string searches = "<searches>\r\n\t<search>a &lt; b</search>\n</searches>";
    const std::string utility = "<utilityWindows><window bounds=\"1,2,3,4\" ID=\"77\"/></utilityWindows>";
    const std::string windows = "<windows><window bounds=\"0,0,640,480\" ruler=\"0\" toolbar=\"1\">"
                                "<tabs><tab viewType=\"map\" scale=\"1.5\"/></tabs></window></windows>";
    const std::string macros = "<macros><macro name=\"twice\">$1+$1</macro></macros>";
    const std::string stamps = "<stamps><menu name=\"Done\" Value=\"$Checked=true\" kind=\"0\"/></stamps>";
    std::string file = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
                       "<rylvane version=\"2\" revision=\"13\" savedBy=\"x\" >\n" +
                       badges + "\n" + gallery + "\n" + filters + "\n" + searches + "\n" + utility + "\n" +
                       windows + "\n" + macros + "\n" + stamps + "\n" +
                       "<item ID=\"5\" Creator=\"me\" ><attribute name=\"Name\">Top</attribute>\n"
                       "<item ID=\"6\" Creator=\"me\" ><attribute name=\"Name\">Child</attribute></item>\n"
                       "</item>\n"
                       "<uuid> 1A2B-3C </uuid>\n"
                       "<preview>" + Base64::Encode(std::string("\x89PNG\0\x01\x02", 7), 4) + "</preview>\n"
                       "</rylvane>\n";
    std::string error;
    auto doc = ReadDocument(file, &error);
    ASSERT_TRUE(doc) << error;
    EXPECT_EQ(doc->UUID(), "1A2B-3C");
    EXPECT_EQ(doc->Preview(), std::string("\x89PNG\0\x01\x02", 7));

    std::string saved = WriteDocument(*doc);
    for (const std::string* section : {&badges, &gallery, &filters, &searches, &utility, &windows, &macros, &stamps})
        EXPECT_NE(saved.find(*section), std::string::npos) << *section;
    EXPECT_EQ(TalvikWriter(doc.get()).WindowData(), windows);

    std::vector<std::string> order = Sections(saved);
    std::vector<std::string> expected = {"attrib",     "colors",         "stamps",   "linkTypes", "item",
                                         "links",      "macros",         "preferences", "windows", "utilityWindows",
                                         "searches",   "filters",        "gallery",  "badges",    "preview"};
    EXPECT_EQ(order, expected);
    // The root's attributes: version, revision, savedBy and the uuid.
    EXPECT_EQ(AttributeOrder(TagHolding(saved, "<rylvane ")),
              (std::vector<std::string>{"version", "revision", "savedBy", "uuid"}));
    EXPECT_NE(saved.find("uuid=\"1A2B-3C\""), std::string::npos);

    // A second trip changes nothing at all.
    auto again = ReadDocument(saved, &error);
    ASSERT_TRUE(again) << error;
    EXPECT_EQ(DocumentDifference(*doc, *again), "");
    EXPECT_EQ(WriteDocument(*again), saved);

    // Nothing to carry, nothing written: no empty opaque sections, no preview.
    Hypertext empty;
    std::vector<std::string> bare = Sections(WriteDocument(empty));
    EXPECT_EQ(bare, (std::vector<std::string>{"attrib", "colors", "linkTypes", "item", "links", "preferences"}));
}

TEST(DocumentFormat, OddCharactersInNamesValuesAndTextSurviveOrLeaveWellFormedXml) {
    Hypertext doc;
    AttributeInfo info(&doc);
    info.CreateBasicAttribute("Remark", "User", true, AttributeType::kString);
    info.CreateBasicAttribute("Items", "User", true, AttributeType::kList);
    const std::string name = "<a href=\"x\">Tom & 'Jerry'</a> ]]> \xC3\xA9\xF0\x9F\x98\x80";
    Node* n = AddNote(doc, name);
    n->Set("Remark", "line one\nline two\r\n\ttabbed \"q\" 'a' & <b> ]]>");
    n->Set("Items", "x;y&z;<w>");
    NodeText(n).SetText("CRLF\r\nCR\rLF\n\ttab  two  blanks  \xE2\x80\xA8 end ");
    Node* one = AddNote(doc, "1"); // the texts "1" and "0" take the short path
    one->Set("Remark", "0");
    // Control characters and broken UTF-8 cannot be held by XML: they are
    // left out, and the file still reads.
    Node* bad = AddNote(doc, std::string("bad\x01name\xFF\xC3", 11));
    bad->Set("Remark", std::string("nul\0and\x1b[0m", 12));
    NodeText(bad).SetText("\x80\x81 text \xED\xA0\x80 end\x0b");

    std::string bytes = WriteDocument(doc);
    std::string error;
    auto copy = ReadDocument(bytes, &error);
    ASSERT_TRUE(copy) << error;
    Node* n2 = Named(*copy, name);
    ASSERT_TRUE(n2);
    EXPECT_EQ(n2->GetString("Remark"), "line one\nline two\r\n\ttabbed \"q\" 'a' & <b> ]]>");
    EXPECT_EQ(n2->GetString("Items"), "x;y&z;<w>");
    EXPECT_EQ(NodeText(n2).GetText(), "CRLF\r\nCR\rLF\n\ttab  two  blanks  \xE2\x80\xA8 end ");
    Node* one2 = Named(*copy, "1");
    ASSERT_TRUE(one2);
    EXPECT_EQ(one2->GetString("Remark"), "0");
    Node* bad2 = Named(*copy, "badname");
    ASSERT_TRUE(bad2);
    EXPECT_EQ(bad2->GetString("Remark"), "nuland[0m");
    EXPECT_EQ(NodeText(bad2).GetText(), " text  end");
    // Reading what was read writes the same bytes.
    EXPECT_EQ(WriteDocument(*copy), bytes);
}

TEST(DocumentFormat, LinksKeepEveryFieldTheirOrderAndTheirWrittenForm) {
    Hypertext doc;
    Node* a = AddNote(doc, "a");
    Node* b = AddNote(doc, "b");
    Node* c = AddNote(doc, "c");
    NodeText(a).SetText("see \xF0\x9F\x8C\xB1 the garden plan");
    Link* ab = NodeLinks(a).CreateLink(b, "agree");
    NodeLinks(a).CreateLink(c, "disagree");
    Link* ba = NodeLinks(b).CreateLink(a);
    LinkRecord text(a, 7, 3);   // "the", behind a character of two UTF-16 units
    text.destNode = c;
    text.type = "example";
    text.destSpan = TextSpan(2, 4);
    text.guard = "$Status==\"open\"";
    text.comment = "why & <how>";
    text.color = "dark green";
    LinkStyle style;
    style.SetDashed(true);
    style.SetCurved(true);
    text.style = style;
    text.arrowType = 3;
    text.labelX = 0.25;
    text.labelY = -12.5;
    text.controlX = 1e-3;
    text.controlY = 123456.75;
    text.width = 2.5;
    text.sourcePad = 4;
    text.destPad = -1;
    Link* textLink = NodeLinks(a).CreateLink(text);
    ASSERT_TRUE(textLink);
    LinkRecord web(c);
    web.url = "https://example.org/q?a=1&b=\"2\"#x y";
    web.title = "It's <here>";
    web.linkClass = "external";
    web.target = "_blank";
    web.comment = "see also";
    Link* webLink = NodeLinks(c).CreateLink(web);
    ASSERT_TRUE(webLink);
    // The user's order: the text link first, then ba, ab, ac, the web link.
    doc.Links()->Reorder(textLink, ab);
    doc.Links()->Exchange(ab, ba);
    ASSERT_EQ(doc.Links()->PriorityOf(textLink), 0);
    ASSERT_EQ(doc.Links()->PriorityOf(ba), 1);

    std::string bytes = WriteDocument(doc);
    // A note link: the common attributes, then destid, destcreator, color.
    std::string noteTag = TagHolding(bytes, "<link name=\"example\"");
    EXPECT_EQ(AttributeOrder(noteTag),
              (std::vector<std::string>{"name", "sourceid", "sourcecreator", "sstart", "slen", "dstart", "dlen",
                                        "style", "arrowtype", "labelx", "labely", "cpx", "cpy", "linkWidth",
                                        "sourcepad", "destpad", "destid", "destcreator", "color", "guard",
                                        "comment"}))
        << noteTag;
    EXPECT_NE(noteTag.find("sstart=\"7\" slen=\"3\" dstart=\"2\" dlen=\"4\""), std::string::npos) << noteTag;
    // A web link: URL, title, class, target; no destination.
    std::string webTag = TagHolding(bytes, "URL=");
    std::vector<std::string> webOrder = AttributeOrder(webTag);
    ASSERT_GE(webOrder.size(), 20u) << webTag;
    EXPECT_EQ(std::vector<std::string>(webOrder.begin() + 16, webOrder.end()),
              (std::vector<std::string>{"URL", "title", "class", "target", "comment"}))
        << webTag;
    // A colour of "normal" is left out.
    EXPECT_EQ(TagHolding(bytes, "<link name=\"agree\"").find("color="), std::string::npos);

    std::string error;
    auto copy = ReadDocument(bytes, &error);
    ASSERT_TRUE(copy) << error;
    EXPECT_EQ(DocumentDifference(doc, *copy), "");
    LinkBundle all = copy->Links()->All();
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(all[0]->Name(), "example");
    EXPECT_EQ(all[0]->AnchorText(), "the");
    EXPECT_EQ(all[0]->Guard(), "$Status==\"open\"");
    EXPECT_EQ(all[0]->Comment(), "why & <how>");
    EXPECT_EQ(all[0]->Color(), "dark green");
    EXPECT_TRUE(all[0]->Style().IsDashed());
    EXPECT_TRUE(all[0]->Style().IsCurved());
    EXPECT_EQ(all[0]->ControlY(), 123456.75);
    EXPECT_EQ(all[0]->DestSpan(), TextSpan(2, 4));
    EXPECT_EQ(all[1]->Name(), "*untitled");
    EXPECT_EQ(all[2]->Name(), "disagree");
    EXPECT_EQ(all[3]->Name(), "agree");
    EXPECT_EQ(all[4]->URL(), "https://example.org/q?a=1&b=\"2\"#x y");
    EXPECT_EQ(all[4]->Title(), "It's <here>");
    EXPECT_EQ(all[4]->Target(), "_blank");
    EXPECT_TRUE(all[4]->IsWebLink());
    Node* a2 = Named(*copy, "a");
    std::vector<std::string> out;
    for (const Link* l : NodeLinks(a2).OutboundLinks())
        out.push_back(l->Name());
    EXPECT_EQ(out, (std::vector<std::string>{"example", "disagree", "agree"}));

    // A link to a note that is not in the file is dropped, the rest stay.
    std::string dangling = bytes;
    std::string destid = "destid=\"" + std::to_string(b->GetID().GetID()) + "\"";
    size_t at = dangling.find(destid);
    ASSERT_NE(at, std::string::npos);
    dangling.replace(at, destid.size(), "destid=\"4000000000\"");
    auto partial = std::make_unique<Hypertext>();
    TalvikReader partialReader(partial->Root());
    ASSERT_TRUE(partialReader.Read(dangling)) << partialReader.ErrorMessage();
    EXPECT_EQ(partialReader.DroppedLinkCount(), 1);
    EXPECT_EQ(partial->Links()->size(), 4u);
}

TEST(DocumentFormat, AliasesAndPrototypesComeBackWhereverTheyStand) {
    Hypertext doc;
    Node* early = AddNote(doc, "Early");
    Node* protos = AddNote(doc, "Prototypes");
    Node* task = AddNote(doc, "Task", protos);
    task->SetBoolean("IsPrototype", true);
    task->Set("Color", "red");
    Node* later = AddNote(doc, "Later");
    Node* deep = AddNote(doc, "Deep", later);
    deep->SetPrototype(task, false);
    NodeText(deep).SetText("deep text");
    // An alias that stands before its original in the file, with its own place.
    Node* alias = NodeMaker(&doc).MakeAlias(deep, early, nullptr, 7.5, -3);
    ASSERT_TRUE(alias);
    // An alias of an alias aliases the first original.
    Node* second = NodeMaker(&doc).MakeAlias(alias, later, deep);
    ASSERT_TRUE(second);
    // Setting an inheritable value on the alias sets the original's.
    alias->Set("Subtitle", "via alias");
    // Notes can link to aliases.
    NodeLinks(task).CreateLink(alias, "source");

    std::string bytes = WriteDocument(doc);
    // No text is written for an alias; its Alias value names the original.
    std::string id = std::to_string(deep->GetID().GetID());
    size_t first = bytes.find("<attribute name=\"Alias\">" + id + "</attribute>");
    ASSERT_NE(first, std::string::npos);
    EXPECT_NE(bytes.find("<attribute name=\"Alias\">" + id + "</attribute>", first + 1), std::string::npos);
    EXPECT_EQ(bytes.find("deep text"), bytes.rfind("deep text"));
    // An alias carries no `proto` of its own.
    EXPECT_EQ(TagHolding(bytes, "ID=\"" + std::to_string(alias->GetID().GetID()) + "\"").find("proto="),
              std::string::npos);

    std::string error;
    auto copy = ReadDocument(bytes, &error);
    ASSERT_TRUE(copy) << error;
    EXPECT_EQ(DocumentDifference(doc, *copy), "");
    Node* early2 = Named(*copy, "Early");
    Node* deep2 = Named(*copy, "Deep");
    ASSERT_TRUE(early2 && deep2);
    Node* alias2 = early2->Son();
    ASSERT_TRUE(alias2 && alias2->IsAlias());
    EXPECT_EQ(alias2->GetOriginal(), deep2);
    EXPECT_EQ(alias2->GetID().GetID(), alias->GetID().GetID());
    EXPECT_EQ(alias2->GetDouble("Xpos"), 7.5);
    EXPECT_EQ(alias2->GetDouble("Ypos"), -3);
    EXPECT_EQ(NodeText(alias2).GetText(), "deep text");
    EXPECT_EQ(alias2->GetString("Subtitle"), "via alias");
    EXPECT_EQ(deep2->GetString("Subtitle"), "via alias");
    EXPECT_EQ(alias2->GetPrototype(), Named(*copy, "Task"));
    EXPECT_EQ(alias2->GetString("Color"), "red");
    Node* second2 = deep2->Brother();
    ASSERT_TRUE(second2 && second2->IsAlias());
    EXPECT_EQ(second2->GetOriginal(), deep2);
    LinkBundle in = NodeLinks(alias2).InboundLinks().OmitPrototypes();
    ASSERT_EQ(in.size(), 1u);
    EXPECT_EQ(in[0]->SourceNode(), Named(*copy, "Task"));

    // The prototype is found by name wherever it stands in the file, also after
    // the notes that use it.
    Node* user = AddNote(doc, "User of later proto");
    Node* lateProto = AddNote(doc, "Late proto");
    lateProto->SetBoolean("IsPrototype", true);
    user->SetPrototype(lateProto, false);
    auto late = ReadDocument(WriteDocument(doc), &error);
    ASSERT_TRUE(late) << error;
    EXPECT_EQ(Named(*late, "User of later proto")->GetPrototype(), Named(*late, "Late proto"));
}

TEST(DocumentFormat, AClipPastesItsAliasesLinksAndTextAsTheyWere) {
    Hypertext doc;
    Node* outside = AddNote(doc, "Outside");
    // The outside note's id is one that the clip will also use for one of its own.
    outside->SetID(2, outside->Creator());
    Node* box = AddNote(doc, "Box");
    Node* inner = AddNote(doc, "Inner", box);
    Node* other = AddNote(doc, "Other", box);
    NodeText(inner).SetText("inner text");
    StyledText styled("Styled \\ {braces}");
    TextStyle bold;
    bold.bold = true;
    styled.SetStyle(0, 6, bold);
    NodeText(other).SetRTFD(styled);
    // One alias of a note inside the clip, one of a note outside it.
    Node* aliasInside = NodeMaker(&doc).MakeAlias(inner, box, other);
    Node* aliasOutside = NodeMaker(&doc).MakeAlias(outside, box, aliasInside);
    ASSERT_TRUE(aliasInside && aliasOutside);
    NodeLinks(inner).CreateLink(other, "agree");
    NodeLinks(inner).CreateLink(outside, "disagree");
    doc.UpdateOutlineOrder();

    NodeVector selection;
    selection.push_back(box);
    std::ostringstream clip;
    ASSERT_TRUE(TalvikWriter(&doc).ToClip(clip, selection));

    Node* target = AddNote(doc, "Target");
    TalvikReader paste(target, nullptr, true);
    ASSERT_TRUE(paste.Read(clip.str())) << paste.ErrorMessage();
    ASSERT_EQ(paste.TopNodes().size(), 1u);
    Node* box2 = paste.TopNodes()[0];
    ASSERT_EQ(box2->Name(), "Box");
    std::vector<Node*> kids;
    for (Node* k = box2->Son(); k; k = k->Brother())
        kids.push_back(k);
    // The alias of the outside note stays behind: its original's id would
    // be read as that of the clipped note that has the same number.
    ASSERT_EQ(kids.size(), 3u);
    EXPECT_EQ(NodeText(kids[0]).GetText(), "inner text");
    EXPECT_TRUE(NodeText(kids[1]).CreateAttributedString() == styled);
    ASSERT_TRUE(kids[2]->IsAlias());
    EXPECT_EQ(kids[2]->GetOriginal(), kids[0]);
    EXPECT_EQ(NodeText(kids[2]).GetText(), "inner text");
    // Only the link between two clipped notes came along.
    LinkBundle out = NodeLinks(kids[0]).OutboundLinks();
    ASSERT_EQ(out.size(), 1u);
    EXPECT_EQ(out[0]->DestNode(), kids[1]);
    EXPECT_EQ(NodeLinks(outside).InboundLinks().size(), 1u);
}

namespace {

// Checks every `attrib` element under `item`: its `parent` names the element
// it stands in, and its XML attributes come in the order of the format.
void CheckAttribNesting(const XMLItem* item, const std::string& fatherName, int& count) {
    static const std::vector<std::string> order = {"Name",      "parent",    "editable",  "visibleInEditor",
                                                   "kind",      "type",      "sequential", "canInherit",
                                                   "suggested", "description", "default"};
    for (const XMLItem* child = item->Son(); child; child = child->Brother()) {
        if (child->Name() != "attrib")
            continue;
        ++count;
        const XMLAttributes& a = child->Attributes();
        std::string name = a.GetString("Name");
        EXPECT_EQ(a.GetString("parent"), fatherName) << name;
        EXPECT_EQ(a.Has("parent"), !fatherName.empty()) << name;
        std::vector<std::string> names;
        for (const auto& [key, value] : a.Items())
            names.push_back(key);
        EXPECT_TRUE(std::is_sorted(names.begin(), names.end(), [](const std::string& x, const std::string& y) {
            return std::find(order.begin(), order.end(), x) < std::find(order.begin(), order.end(), y);
        })) << name;
        CheckAttribNesting(child, name, count);
    }
}

} // namespace

TEST(DocumentFormat, AttributeDefinitionsNestAsTheirCategoriesAndReadBackByKind) {
    Hypertext doc;
    AttributeInfo info(&doc);
    Attribute* weight = info.CreateBasicAttribute("Weight", "User", true, AttributeType::kNumber);
    weight->BeSequential(true);
    weight->CanInherit(false);
    weight->VisibleInEditor(false);
    weight->SuggestedValues("1;2;10");
    weight->SetDescription("kilograms, \"net\"");
    weight->SetDefault("2.5");
    info.CreateBasicAttribute("Remark", "User", true, AttributeType::kString);
    std::string bytes = WriteDocument(doc);

    // Every attribute element stands inside the one its `parent` names.
    XMLReader reader;
    ASSERT_TRUE(reader.Parse(bytes));
    int count = 0;
    CheckAttribNesting(reader.GetNodeList(), "", count);
    EXPECT_GT(count, 300);
    // A number attribute with every flag: all in order; a string attribute
    // leaves out its type and what is unset.
    EXPECT_EQ(AttributeOrder(TagHolding(bytes, "<attrib Name=\"Weight\"")),
              (std::vector<std::string>{"Name", "parent", "editable", "visibleInEditor", "type", "sequential",
                                        "canInherit", "suggested", "description", "default"}));
    EXPECT_NE(TagHolding(bytes, "<attrib Name=\"Weight\"").find("canInherit=\"0\" suggested=\"1;2;10\""),
              std::string::npos)
        << TagHolding(bytes, "<attrib Name=\"Weight\"");
    EXPECT_EQ(AttributeOrder(TagHolding(bytes, "<attrib Name=\"Remark\"")),
              (std::vector<std::string>{"Name", "parent", "editable", "visibleInEditor", "default"}));
    // A preference attribute names its kind.
    EXPECT_NE(TagHolding(bytes, "<attrib Name=\"TextExportTemplate\"").find(" kind=\"10\" "), std::string::npos);

    std::string error;
    auto copy = ReadDocument(bytes, &error);
    ASSERT_TRUE(copy) << error;
    EXPECT_EQ(DocumentDifference(doc, *copy), "");

    // A system attribute takes its default and suggestions from the file,
    // but not its type, description or other flags.
    std::string edited = bytes;
    std::string tag = TagHolding(edited, "<attrib Name=\"Badge\"");
    ASSERT_FALSE(tag.empty());
    std::string changed = tag;
    changed.replace(changed.find("default=\""), 9, "type=\"2\" canInherit=\"0\" suggested=\"star;flag\" "
                                                   "description=\"changed\" default=\"flag");
    edited.replace(edited.find(tag), tag.size(), changed);
    // An unknown attribute that names a kind is a preference attribute; one
    // that names an unknown parent goes under the root of the table.
    std::string added = "<attrib Name=\"MyPref\" parent=\"User\" editable=\"1\" visibleInEditor=\"1\" kind=\"10\" "
                        "default=\"\" ></attrib>\n<attrib Name=\"Stray\" parent=\"Nowhere\" editable=\"0\" "
                        "visibleInEditor=\"1\" type=\"4\" default=\"true\" ></attrib>\n";
    edited.insert(edited.find("<colors"), added);
    auto read = ReadDocument(edited, &error);
    ASSERT_TRUE(read) << error;
    Props* props = read->AttributeStorage();
    Attribute* badge = props->GetAttribute("Badge");
    EXPECT_EQ(badge->GetDefaultValueAsString(), "flag");
    EXPECT_EQ(badge->SuggestedValues().ToString(";"), "star;flag");
    EXPECT_EQ(badge->GetType(), AttributeType::kString);
    EXPECT_TRUE(badge->CanInherit());
    EXPECT_EQ(badge->Description(), doc.AttributeStorage()->GetAttribute("Badge")->Description());
    ASSERT_TRUE(props->Has("MyPref"));
    EXPECT_TRUE(props->GetAttribute("MyPref")->IsPreferenceAttribute());
    EXPECT_EQ(props->GetAttribute("MyPref")->GetKind(), 10);
    ASSERT_TRUE(props->Has("Stray"));
    EXPECT_FALSE(props->GetAttribute("Stray")->IsEditable());
    EXPECT_EQ(props->GetAttribute("Stray")->GetType(), AttributeType::kBoolean);
    EXPECT_EQ(read->Root()->GetString("Stray"), "true");
}

TEST(DocumentFormat, PreferencesOlderFilesAndWhatCountsAsADocument) {
    Hypertext doc;
    doc.GetPreferences()->Set("LastVersionSeen", "7.1");
    doc.GetPreferences()->Set("Odd key & <more>", "value with\nline and \"quotes\"");
    doc.GetPreferences()->Set("HTMLExtension", ".htm");
    AddNote(doc, "only");
    std::string bytes = WriteDocument(doc);
    EXPECT_NE(bytes.find("<pref name=\"HTMLExtension\" >.htm</pref>"), std::string::npos);
    std::string error;
    auto copy = ReadDocument(bytes, &error);
    ASSERT_TRUE(copy) << error;
    EXPECT_EQ(copy->GetPreferences()->Get("LastVersionSeen"), "7.1");
    EXPECT_EQ(copy->GetPreferences()->Get("Odd key & <more>"), "value with\nline and \"quotes\"");
    // The export extension of earlier documents becomes the preferred one when
    // it is ".html" or empty, and stays when the document chose another.
    EXPECT_EQ(copy->AttributeStorage()->GetAttribute("HTMLExportExtension")->GetDefaultValueAsString(), ".htm");
    EXPECT_EQ(copy->Root()->Son()->GetString("HTMLExportPath"), "/only.htm");
    std::string chosen = bytes;
    std::string tag = TagHolding(chosen, "<attrib Name=\"HTMLExportExtension\"");
    ASSERT_NE(tag.find("default=\".html\""), std::string::npos) << tag;
    std::string php = tag;
    php.replace(php.find("default=\".html\""), 15, "default=\".php\"");
    chosen.replace(chosen.find(tag), tag.size(), php);
    auto kept = ReadDocument(chosen, &error);
    ASSERT_TRUE(kept) << error;
    EXPECT_EQ(kept->AttributeStorage()->GetAttribute("HTMLExportExtension")->GetDefaultValueAsString(), ".php");

    // Earlier versions and revisions read; a later version does not.
    for (const std::string& root : {std::string("<rylvane version=\"1\" >"), std::string("<rylvane revision=\"9\" >"),
                                    std::string("<rylvane version=\"2\" revision=\"99\" >")}) {
        std::string old = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n" + root +
                          "<item ID=\"3\" Creator=\"x\" ><attribute name=\"Name\">r</attribute>"
                          "<item ID=\"4\" Creator=\"x\" ><attribute name=\"Name\">c</attribute></item></item>"
                          "</rylvane>";
        auto read = ReadDocument(old, &error);
        ASSERT_TRUE(read) << root << ": " << error;
        EXPECT_EQ(read->Root()->Son()->Name(), "c");
    }
    for (const std::string version : {"3", "10"}) {
        std::string newer = bytes;
        newer.replace(newer.find("version=\"2\""), 11, "version=\"" + version + "\"");
        EXPECT_FALSE(ReadDocument(newer, &error)) << version;
        EXPECT_NE(error.find("version " + version), std::string::npos) << error;
    }

    // The mark must stand within the first 1024 bytes.
    std::string comment = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<!--" + std::string(900, 'x') + "-->\n";
    std::string body = bytes.substr(bytes.find('\n') + 1);
    EXPECT_TRUE(ReadDocument(comment + body, &error)) << error;
    std::string longComment = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<!--" + std::string(1100, 'x') + "-->\n";
    EXPECT_FALSE(ReadDocument(longComment + body, &error));
    EXPECT_EQ(error, "not a Rylvane document");
    EXPECT_TRUE(TalvikReader::CouldBeXML(std::string(1016, ' ') + "<rylvane"));
    EXPECT_FALSE(TalvikReader::CouldBeXML(std::string(1017, ' ') + "<rylvane"));
}

// Notes read with the same text for an attribute share one value; a note
// read needs no values beyond what the file gives it; and writing one of the
// sharing notes later changes that note alone.
TEST(DocumentFormat, NotesReadWithEqualTextsShareOneValueYetChangeAlone) {
    Hypertext doc;
    AttributeInfo(&doc).CreateBasicAttribute("Status", "User", true, AttributeType::kString);
    Node* a = AddNote(doc, "a", nullptr, 3, 4);
    Node* b = AddNote(doc, "b", nullptr, 3, 5);
    Node* c = AddNote(doc, "c", a, 3, 6);
    for (Node* n : {a, b, c})
        n->Set("Status", "open");
    std::string bytes = WriteDocument(doc);

    auto read = ReadDocument(bytes);
    ASSERT_TRUE(read);
    Node* ra = Named(*read, "a");
    Node* rb = Named(*read, "b");
    Node* rc = Named(*read, "c");
    ASSERT_TRUE(ra && rb && rc);
    const Attribute* status = read->AttributeStorage()->GetAttribute("Status");
    const Attribute* xpos = read->AttributeStorage()->GetAttribute("Xpos");
    EXPECT_EQ(ra->DoGetImmediate(status), rb->DoGetImmediate(status));
    EXPECT_EQ(ra->DoGetImmediate(status), rc->DoGetImmediate(status));
    EXPECT_EQ(ra->DoGetImmediate(xpos), rc->DoGetImmediate(xpos));
    // Each note holds exactly the values its element lists, plus its id.
    for (Node* n : {ra, rb, rc}) {
        std::vector<std::string> names;
        for (const auto& [attribute, value] : n->Properties())
            names.push_back(attribute->Name());
        EXPECT_EQ(names, (std::vector<std::string>{"Created", "Creator", "ID", "Modified", "Name", "Status", "Xpos",
                                                   "Ypos"}))
            << n->Name();
    }

    rb->Set("Status", "done");
    rc->Set("Status", ra->CreateClonedValue(status));
    EXPECT_EQ(ra->GetString("Status"), "open");
    EXPECT_EQ(rb->GetString("Status"), "done");
    EXPECT_EQ(rc->GetString("Status"), "open");
    EXPECT_EQ(WriteDocument(*ReadDocument(WriteDocument(*read))), WriteDocument(*read));
}
