// What a document file holds beside plain notes comes back as it was: agents
// and adornments stay what they are, composites stay as they were written,
// and dates stay the instant they were given as.
#include "DocumentTestSupport.h"

#include "Content.h"
#include "KindNode.h"
#include "NodeFacade.h"

namespace {

const char* const kDocument =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
    "<rylvane version=\"2\" revision=\"13\" >\n"
    "<item ID=\"1\" Creator=\"x\" ><attribute name=\"Name\">root</attribute>\n"
    "<item ID=\"2\" Creator=\"x\" ><attribute name=\"Name\">Map</attribute>\n"
    "<adornment ID=\"3\" Creator=\"x\" ><attribute name=\"Name\">Backdrop</attribute>"
    "<attribute name=\"Sticky\">true</attribute><image>iVBORw0K\nGgo=</image></adornment>\n"
    "<item ID=\"4\" Creator=\"x\" ><attribute name=\"Name\">Plain</attribute>"
    "<text>body</text><image>AAAA</image>"
    "<composites><composite name=\"pair\" ids=\"4;5\" >kept &amp; <b>as is</b></composite></composites>"
    "</item>\n"
    "</item>\n"
    "<agent ID=\"5\" Creator=\"x\" ><attribute name=\"Name\">Finder</attribute>"
    "<attribute name=\"AgentQuery\">$Name==\"Plain\"</attribute>"
    "<attribute name=\"HTMLExportChildren\">false</attribute></agent>\n"
    "</item>\n"
    "</rylvane>\n";

const char* const kComposites =
    "<composites><composite name=\"pair\" ids=\"4;5\" >kept &amp; <b>as is</b></composite></composites>";

Node* Named(Hypertext& doc, const std::string& name) {
    Node* found = nullptr;
    HypertextFacade(&doc).Apply([&](Node* n) {
        if (!found && n->Name() == name)
            found = n;
    });
    return found;
}

} // namespace

TEST(NoteKinds, AgentsAdornmentsAndCompositesSurviveReadingAndWriting) {
    std::string error;
    std::string bytes = kDocument;
    for (int round = 0; round < 2; ++round) {
        auto doc = ReadDocument(bytes, &error);
        ASSERT_TRUE(doc) << error;
        Node* map = Named(*doc, "Map");
        Node* backdrop = Named(*doc, "Backdrop");
        Node* finder = Named(*doc, "Finder");
        Node* plain = Named(*doc, "Plain");
        ASSERT_TRUE(map && backdrop && finder && plain);

        EXPECT_STREQ(backdrop->XMLKind(), "adornment");
        EXPECT_TRUE(backdrop->IsAdornment());
        EXPECT_TRUE(backdrop->IsSticky());
        EXPECT_FALSE(backdrop->CanReceiveChildren());
        EXPECT_EQ(backdrop->GetString("IsAdornment"), "true");
        EXPECT_EQ(map->GetString("AdornmentCount"), "1");
        EXPECT_EQ(map->GetString("ChildCount"), "1");
        EXPECT_EQ(static_cast<KindNode*>(backdrop)->Picture(), std::string("\x89PNG\r\n\x1a\n"));

        EXPECT_STREQ(finder->XMLKind(), "agent");
        EXPECT_TRUE(finder->IsAgent());
        EXPECT_FALSE(finder->IsAdornment());
        EXPECT_FALSE(finder->GetBoolean("HTMLExportChildren"));
        EXPECT_EQ(finder->GetString("AgentQuery"), "$Name==\"Plain\"");

        EXPECT_STREQ(plain->XMLKind(), "item");
        EXPECT_EQ(plain->CompositeData(), kComposites);
        EXPECT_EQ(plain->GetContent()->GetText(), "body");

        // A change and a save keep all of it.
        plain->Set("Color", "red");
        bytes = WriteDocument(*doc);
        EXPECT_NE(bytes.find("<adornment ID=\"3\" "), std::string::npos) << bytes;
        EXPECT_NE(bytes.find("<agent ID=\"5\" "), std::string::npos) << bytes;
        EXPECT_NE(bytes.find("</agent>"), std::string::npos) << bytes;
        EXPECT_NE(bytes.find("<attribute name=\"HTMLExportChildren\">false</attribute>"), std::string::npos);
        EXPECT_NE(bytes.find(kComposites), std::string::npos) << bytes;
        EXPECT_EQ(bytes.find("<composites>"), bytes.rfind("<composites>"));
        // The adornment's picture goes back; an image on a plain note meant
        // nothing and is gone.
        EXPECT_NE(bytes.find("<image>iVBORw0KGgo=</image>"), std::string::npos) << bytes;
        EXPECT_EQ(bytes.find("<image>"), bytes.rfind("<image>"));

        // A copy keeps the kind and the composites.
        Node* copy = Node::Create(*finder, 0);
        ASSERT_NE(copy, nullptr);
        EXPECT_TRUE(copy->IsAgent());
        Node* plainCopy = Node::Create(*plain, 0);
        EXPECT_EQ(plainCopy->CompositeData(), kComposites);
        Node* backdropCopy = Node::Create(*backdrop, 0);
        ASSERT_NE(backdropCopy, nullptr);
        EXPECT_EQ(static_cast<KindNode*>(backdropCopy)->Picture(), static_cast<KindNode*>(backdrop)->Picture());
        NodeDeleter(backdropCopy).Delete();
        NodeDeleter(copy).Delete();
        NodeDeleter(plainCopy).Delete();
    }
}

// Dates given as free text go to the file and to the clip as the instant.
TEST(NoteKinds, DatesGoToTheFileAndTheClipAsTheirInstant) {
    Hypertext doc;
    Node* note = AddNote(doc, "N");
    note->Set("DueDate", "1500000000");
    note->Set("StartDate", "7/2000");
    std::string bytes = WriteDocument(doc);
    EXPECT_NE(bytes.find("<attribute name=\"DueDate\">2017-07-14T02:40:00Z</attribute>"), std::string::npos);
    EXPECT_EQ(bytes.find(">1500000000<"), std::string::npos);
    EXPECT_EQ(bytes.find(">7/2000<"), std::string::npos);
    std::ostringstream clip;
    NodeVector notes;
    notes.push_back(note);
    ASSERT_TRUE(TalvikWriter(&doc).ToClip(clip, notes));
    EXPECT_NE(clip.str().find("<attribute name=\"DueDate\">2017-07-14T02:40:00Z</attribute>"), std::string::npos)
        << clip.str();
    EXPECT_NE(clip.str().find("<attribute name=\"StartDate\">2000-07-01T00:00:00Z</attribute>"), std::string::npos)
        << clip.str();
}
