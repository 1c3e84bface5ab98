#include <gtest/gtest.h>

#include <sstream>

#include "Attribute.h"
#include "AttributeInfo.h"
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

namespace {

Node* Make(Hypertext& doc, const std::string& name, Node* parent = nullptr) {
    return AddNote(doc, name, parent, 1.5, 2.25);
}

Node* Child(Node* parent, const std::string& name) {
    for (Node* n = parent->Son(); n; n = n->Brother())
        if (n->Name() == name)
            return n;
    return nullptr;
}

// A document that uses every part of the file.
std::unique_ptr<Hypertext> RichDocument() {
    auto doc = std::make_unique<Hypertext>();
    Hypertext& d = *doc;
    d.SetUUID("0E4C9F39-3C4B-4E1D-9B8A-7A1B2C3D4E5F");
    d.Root()->SetName("Garden book");
    AttributeInfo info(&d);
    Attribute* priority = info.CreateBasicAttribute("Priority", "User", true, AttributeType::kNumber);
    priority->SetDefault("3");
    priority->SetDescription("How urgent, 1 to 5 & \"more\"");
    info.CreateBasicAttribute("Tags", "User", true, AttributeType::kSet);
    info.CreateBasicAttribute("Due", "User", true, AttributeType::kDate);
    Attribute* status = info.CreateBasicAttribute("Status", "User", true, AttributeType::kString);
    status->SuggestedValues("open;done;waiting");
    d.AttributeStorage()->GetAttribute("Color")->SetDefault("blue");

    Node* inbox = Make(d, "Inbox");
    Node* protos = Make(d, "Prototypes");
    Node* task = Make(d, "Task", protos);
    task->SetBoolean("IsPrototype", true);
    task->Set("Color", "red");
    task->Set("Status", "open");
    Node* projects = Make(d, "Projects");
    Node* garden = Make(d, "Garden", projects);
    Node* dig = Make(d, "Dig <the> beds & \"paths\"", garden);
    dig->SetPrototype(task, false);
    dig->Set("Priority", "1,250");
    dig->Set("Tags", "b;a;b");
    dig->Set("Due", "2026-03-01");
    NodeText(dig).SetText("Line one\r\nline two\twith tab and \xC3\xA9 accent");
    Node* sow = Make(d, "Sow", garden);
    StyledText styled("Sow peas \xF0\x9F\x8C\xB1 early\nthen beans");
    TextStyle bold;
    bold.bold = true;
    bold.font = "Georgia";
    bold.size = 14;
    styled.SetStyle(0, 8, bold);
    styled.SetLink(12, 5, "https://example.org/peas?a=1&b=2");
    styled.InsertAttachment(styled.Length(), {"seed.png", std::string("\x89PNG\r\n\x1a\n\0\0\x01", 11), 200, 100});
    NodeText(sow).SetRTFD(styled);
    NodeMaker(&d).MakeAlias(sow, inbox, nullptr);

    NodeLinks(dig).CreateLink(sow, "agree");
    LinkRecord text(sow, 0, 3);
    text.destNode = dig;
    text.type = "example";
    text.guard = "$Status==\"open\"";
    text.comment = "first, then";
    text.color = "dark green";
    text.labelX = 0.5;
    text.labelY = -1.25;
    NodeLinks(sow).CreateLink(text);
    LinkRecord web(garden);
    web.url = "https://example.org/garden";
    web.title = "Garden \"site\"";
    web.linkClass = "external";
    web.target = "_blank";
    NodeLinks(garden).CreateLink(web);
    NodeLinks(garden).CreateLink(inbox->Son(), "navigation");

    d.GetColorTable()->Set("moss", PColor(0x5555, 0x6b6b, 0x2f2f));
    LinkType supports("supports");
    supports.SetColorString("moss");
    d.GetLinkTypes()->Add(supports);
    d.GetPreferences()->Set("Creator", "gardener");
    d.SetCarriedSection("windows", "<windows>\n  <window bounds=\"0,0,800,600\"  ruler=\"1\" ><tabs/></window>\n</windows>");
    d.SetCarriedSection("macros", "<macros><macro name=\"m\">$Color=\"red\"</macro></macros>");
    d.SetPreview(std::string("\x89PNG preview\0bytes", 19));
    d.UpdateOutlineOrder();
    return doc;
}

} // namespace

TEST(Talvik, WriteReadWriteKeepsEveryNoteValueLinkAndSection) {
    auto original = RichDocument();
    std::string first = WriteDocument(*original);
    ASSERT_EQ(first.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<rylvane version=\"2\" revision=\"13\" ", 0), 0u)
        << first.substr(0, 200);
    std::string error;
    auto copy = ReadDocument(first, &error);
    ASSERT_TRUE(copy) << error;
    EXPECT_EQ(DocumentDifference(*original, *copy), "");
    std::string second = WriteDocument(*copy);
    EXPECT_EQ(second, first);
    if (second != first) {
        size_t at = 0;
        while (at < first.size() && first[at] == second[at])
            ++at;
        ADD_FAILURE() << "first difference: " << first.substr(at > 80 ? at - 80 : 0, 160) << "\n---\n"
                      << second.substr(at > 80 ? at - 80 : 0, 160);
    }

    // The reading is the document's, not only equal bytes.
    Node* garden = Child(Child(copy->Root(), "Projects"), "Garden");
    ASSERT_TRUE(garden);
    Node* dig = garden->Son();
    EXPECT_EQ(dig->Name(), "Dig <the> beds & \"paths\"");
    EXPECT_EQ(dig->GetPrototype(), Child(Child(copy->Root(), "Prototypes"), "Task"));
    EXPECT_EQ(dig->GetString("Color"), "red");
    EXPECT_EQ(dig->GetString("Status"), "open");
    EXPECT_EQ(dig->GetString("Priority"), "1250");
    EXPECT_EQ(dig->GetString("Tags"), "a;b");
    EXPECT_EQ(NodeText(dig).GetText(), "Line one\r\nline two\twith tab and \xC3\xA9 accent");
    Node* alias = Child(copy->Root(), "Inbox")->Son();
    ASSERT_TRUE(alias);
    EXPECT_TRUE(alias->IsAlias());
    EXPECT_EQ(alias->GetOriginal(), garden->Son()->Brother());
    EXPECT_EQ(NodeText(alias).CreateAttributedString().AttachmentCount(), 1);
    EXPECT_EQ(NodeLinks(garden).OutboundLinks().back()->DestNode(), alias);
    EXPECT_EQ(copy->AttributeStorage()->GetAttribute("Color")->GetDefaultValueAsString(), "blue");
    EXPECT_EQ(copy->GetPreferences()->Get("Creator"), "gardener");
}

TEST(Talvik, ADocumentReadOnASecondThreadIsTheSame) {
    auto original = RichDocument();
    std::string bytes = WriteDocument(*original);
    auto alone = ReadDocument(bytes, nullptr, SIZE_MAX);
    ASSERT_TRUE(alone);
    // From the first byte, from inside the first note, and from inside the
    // sections carried unchanged, which are captured byte for byte.
    for (size_t from : {size_t(0), bytes.find("<item") + 9, bytes.find("<windows") + 3}) {
        std::string error;
        auto copy = ReadDocument(bytes, &error, from);
        ASSERT_TRUE(copy) << error;
        EXPECT_EQ(DocumentDifference(*alone, *copy), "") << "from byte " << from;
        EXPECT_EQ(WriteDocument(*copy), bytes) << "from byte " << from;
    }
    // A refusal from the reader names the same place either way.
    std::string newer = bytes;
    newer.replace(newer.find("version=\"2\""), 11, "version=\"3\"");
    std::string aloneError, twoError;
    EXPECT_FALSE(ReadDocument(newer, &aloneError, SIZE_MAX));
    EXPECT_FALSE(ReadDocument(newer, &twoError, 0));
    EXPECT_EQ(twoError, aloneError);
    EXPECT_NE(aloneError.find("line 2, column 1: version 3"), std::string::npos) << aloneError;
}

TEST(Talvik, HiddenNotesAndTheirAliasesAndLinksStayOut) {
    auto doc = RichDocument();
    Node* projects = Child(doc->Root(), "Projects");
    Node* garden = Child(projects, "Garden");
    Node* sow = Child(garden, "Sow");
    Node* extra = Make(*doc, "Extra", projects);
    NodeLinks(extra).CreateLink(garden);
    NodeDeleter(sow).Hide(true);   // its alias goes too
    NodeDeleter(extra).Hide(true);
    std::string bytes = WriteDocument(*doc);
    EXPECT_EQ(bytes.find(">Sow<"), std::string::npos);
    EXPECT_EQ(bytes.find(">Extra<"), std::string::npos);
    EXPECT_EQ(bytes.find("name=\"Alias\""), std::string::npos);
    auto copy = ReadDocument(bytes);
    ASSERT_TRUE(copy);
    EXPECT_EQ(Child(copy->Root(), "Inbox")->Son(), nullptr);
    // Only the web link of Garden and nothing that touched a hidden note.
    EXPECT_EQ(copy->Links()->All().OmitPrototypes().size(), 1u);
}

TEST(Talvik, AttributeDefinitionsFromTheFile) {
    auto doc = std::make_unique<Hypertext>();
    std::string bytes = WriteDocument(*doc);
    // A system attribute's default comes from the file; its flags do not.
    size_t at = bytes.find("<attrib Name=\"Color\" ");
    ASSERT_NE(at, std::string::npos);
    size_t end = bytes.find('>', at);
    std::string tag = bytes.substr(at, end - at);
    std::string changed = tag;
    changed.replace(changed.find("editable=\"1\""), 12, "editable=\"0\"");
    changed.replace(changed.find("default=\""), 9, "default=\"green");
    bytes.replace(at, tag.size(), changed);
    // An attribute the program does not know is made from its description.
    std::string user = "<attrib Name=\"Weight\" parent=\"User\" editable=\"1\" visibleInEditor=\"0\" type=\"2\" "
                       "sequential=\"1\" canInherit=\"0\" description=\"kg\" default=\"7\" ></attrib>\n";
    bytes.insert(bytes.find("<colors"), user);
    auto copy = ReadDocument(bytes);
    ASSERT_TRUE(copy);
    Attribute* color = copy->AttributeStorage()->GetAttribute("Color");
    EXPECT_TRUE(color->IsEditable());
    EXPECT_EQ(color->GetDefaultValueAsString().substr(0, 5), "green");
    ASSERT_TRUE(copy->AttributeStorage()->Has("Weight"));
    Attribute* weight = copy->AttributeStorage()->GetAttribute("Weight");
    EXPECT_EQ(weight->GetType(), AttributeType::kNumber);
    EXPECT_FALSE(weight->VisibleInEditor());
    EXPECT_TRUE(weight->IsSequential());
    EXPECT_FALSE(weight->CanInherit());
    EXPECT_EQ(weight->Description(), "kg");
    EXPECT_EQ(weight->GetDefaultValueAsString(), "7");
    EXPECT_TRUE(weight->IsUserAttribute());
}

TEST(Talvik, MissingPrototypesWaitAndUnknownValuesAreKept) {
    auto doc = std::make_unique<Hypertext>();
    Node* a = Make(*doc, "a");
    std::string bytes = WriteDocument(*doc);
    std::string id = std::to_string(a->GetID().GetID());
    std::string tag = "<item ID=\"" + id + "\" Creator=\"" + a->Creator() + "\" >";
    size_t at = bytes.find(tag);
    ASSERT_NE(at, std::string::npos);
    bytes.replace(at, tag.size(),
                  "<item ID=\"" + id + "\" Creator=\"" + a->Creator() + "\" proto=\"Ghost\" >\n"
                  "<attribute name=\"Mood\">sunny</attribute>\n<styles>old</styles>");
    StLogCapture log;
    auto copy = ReadDocument(bytes);
    ASSERT_TRUE(copy);
    Node* read = copy->Root()->Son();
    EXPECT_EQ(read->GetPrototype(), nullptr);
    EXPECT_EQ(read->GetPrototypeRequest(), "Ghost");
    EXPECT_EQ(read->GetString("Mood"), "sunny");
    EXPECT_TRUE(log.Contains("Mood"));
}

TEST(Talvik, ClipWritesSubtreesOnceWithNewNumbersAndPastes) {
    auto doc = RichDocument();
    Node* projects = Child(doc->Root(), "Projects");
    Node* garden = Child(projects, "Garden");
    Node* dig = garden->Son();
    NodeVector selection;
    selection.push_back(dig);      // inside garden: written once, under it
    selection.push_back(garden);
    std::ostringstream clip;
    ASSERT_TRUE(TalvikWriter(doc.get()).ToClip(clip, selection));
    std::string text = clip.str();
    EXPECT_EQ(text.find("uuid"), std::string::npos);
    EXPECT_EQ(text.find("<attrib "), std::string::npos);
    size_t first = text.find(">Dig &lt;the&gt;");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(text.find(">Dig &lt;the&gt;", first + 1), std::string::npos);
    EXPECT_NE(text.find("<item ID=\"1\" "), std::string::npos);
    EXPECT_NE(text.find("<item ID=\"3\" "), std::string::npos);
    // Links among the clipped notes come along, the rest stay behind.
    EXPECT_NE(text.find("name=\"agree\" sourceid=\"2\""), std::string::npos);
    EXPECT_NE(text.find("https://example.org/garden"), std::string::npos);
    EXPECT_EQ(text.find("name=\"navigation\""), std::string::npos);

    Node* target = Child(doc->Root(), "Inbox");
    TalvikReader paste(target, target->Son(), true);
    ASSERT_TRUE(paste.Read(text)) << paste.ErrorMessage();
    ASSERT_EQ(paste.TopNodes().size(), 1u);
    Node* pasted = paste.TopNodes()[0];
    EXPECT_EQ(pasted->Father(), target);
    EXPECT_EQ(pasted->ElderBrother(), target->Son());
    EXPECT_EQ(pasted->Name(), "Garden");
    EXPECT_NE(pasted->GetID().GetID(), garden->GetID().GetID());
    EXPECT_NE(pasted->GetID().GetID(), 1u);
    Node* pastedDig = pasted->Son();
    ASSERT_TRUE(pastedDig);
    EXPECT_EQ(pastedDig->GetString("Priority"), "1250");
    LinkBundle out = NodeLinks(pastedDig).OutboundLinks().OmitPrototypes();
    ASSERT_EQ(out.size(), 1u);
    EXPECT_EQ(out[0]->DestNode(), pastedDig->Brother());
    EXPECT_EQ(pastedDig->GetPrototype(), dig->GetPrototype());
}

TEST(Talvik, RefusesWhatItCannotRead) {
    std::string error;
    auto good = RichDocument();
    std::string bytes = WriteDocument(*good);

    std::string v3 = bytes;
    v3.replace(v3.find("version=\"2\""), 11, "version=\"3\"");
    EXPECT_FALSE(ReadDocument(v3, &error));
    EXPECT_NE(error.find("version 3"), std::string::npos) << error;

    std::string broken = bytes;
    broken.replace(broken.find("</links>"), 8, "</link>");
    EXPECT_FALSE(ReadDocument(broken, &error));
    EXPECT_NE(error.find("line "), std::string::npos);
    EXPECT_NE(error.find("column "), std::string::npos);
    EXPECT_NE(error.find("mismatched tag"), std::string::npos);

    EXPECT_FALSE(ReadDocument("<?xml version=\"1.0\"?><opml><rylvane/></opml>", &error));
    EXPECT_NE(error.find("not a Rylvane document"), std::string::npos);
    EXPECT_FALSE(ReadDocument("\x89PNG\r\n\x1a\n binary", &error));
    EXPECT_EQ(error, "not a Rylvane document");
    EXPECT_FALSE(ReadDocument("", &error));

    // A document whose end is missing fails as a whole.
    EXPECT_FALSE(ReadDocument(bytes.substr(0, bytes.size() / 2), &error));
    EXPECT_NE(error.find("line "), std::string::npos);
}
