#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "Hypertext.h"
#include "Lynx.h"
#include "LynxDictionary.h"
#include "LynxUpdater.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NodeIndexing.h"
#include "WordList.h"

namespace {

Node* Make(Hypertext& doc, const std::string& name, const std::string& text, Node* parent = nullptr) {
    Node* n = NodeMaker(&doc).MakeNode(name, parent, nullptr, 0, 0);
    NodeText(n).SetText(text);
    return n;
}

std::vector<std::string> Words(const std::vector<WordRecord>& records) {
    std::vector<std::string> words;
    for (const auto& r : records)
        words.push_back(r.word);
    return words;
}

} // namespace

TEST(LynxFilterTest, LowerCaseSeparatorsAndDigits) {
    EXPECT_EQ(Lynx::Filter("Hello, World! x2 don't"), "hello world don t");
    EXPECT_EQ(Lynx::Filter("  \xC3\x9C" "ber-Stra\xC3\x9F" "e\n\t(2024) r2d2 \xE2\x82\xAC" "5 caf\xC3\xA9  "),
              "\xC3\xBC" "ber stra\xC3\x9F" "e caf\xC3\xA9");
    EXPECT_EQ(Lynx::Filter("\xD9\xA3" "abc next"), "next") << "any decimal digit drops its token";
    EXPECT_EQ(Lynx::Filter(""), "");
    EXPECT_EQ(Lynx::Filter("...!!!"), "");
    EXPECT_EQ(Lynx::Filter(std::string("bad\xFF" "byte")), "bad byte");
}

TEST(LynxTest, CountsMinimumLengthAndArithmetic) {
    Lynx lynx("The cat and the hat; the CAT sat. Ox 42 b4 at");
    EXPECT_EQ(lynx.Get("the"), 3);
    EXPECT_EQ(lynx.Get("Cat"), 2) << "the word asked for is filtered too";
    EXPECT_EQ(lynx.Get("ox"), 0) << "two letters are too short";
    EXPECT_EQ(lynx.Get("at"), 0);
    EXPECT_EQ(lynx.Get("b4"), 0);
    EXPECT_EQ(lynx.Get("missing"), 0);
    EXPECT_EQ(lynx.size(), 5u);
    EXPECT_TRUE(lynx.LastIndexed().IsNever());
    EXPECT_FALSE(Lynx().LastIndexed().IsNever());

    Lynx longer("cat horse horse", 5);
    EXPECT_EQ(longer.Get("cat"), 0);
    EXPECT_EQ(longer.Get("horse"), 2);

    Lynx sum;
    sum.Add(lynx);
    sum.Add(lynx);
    EXPECT_EQ(sum.Get("the"), 6);
    sum.Subtract(lynx);
    EXPECT_EQ(sum.Get("the"), 3);
    Lynx notes;
    notes.Merge(lynx);
    notes.Merge(Lynx("the dog"));
    EXPECT_EQ(notes.Get("the"), 2) << "a merge counts notes, not words";
    EXPECT_EQ(notes.Get("dog"), 1);
    notes.Scan("fresh start");
    EXPECT_EQ(notes.Get("the"), 0);
    EXPECT_EQ(notes.Get("fresh"), 1);

    LynxDictionary dictionary;
    dictionary["apple"] += 4;
    dictionary.Add("apple", 1);
    EXPECT_EQ(dictionary.Get("apple"), 5);
    EXPECT_EQ(dictionary.Words(), (std::vector<std::pair<std::string, int>>{{"apple", 5}}));
}

TEST(LynxTest, SimilarityIsATfIdfSum) {
    Hypertext doc;
    Node* a = Make(doc, "", "apple banana cherry");
    Node* b = Make(doc, "", "apple banana banana");
    Node* c = Make(doc, "", "zebra");
    Node* empty = Make(doc, "", "");
    LynxUpdater index(&doc);
    index.IndexAll();
    Lynx* la = index.GetLynx(a);
    ASSERT_TRUE(la && index.GetLynx(b));
    // Six notes with the root, fewer than 12: k is 0. apple and banana each
    // stand in 2 notes; b holds 2 different words.
    const double n = static_cast<double>(HypertextFacade(&doc).NodeCount());
    ASSERT_EQ(n, 5.0);
    EXPECT_NEAR(la->Similarity(*index.GetLynx(b), &doc), 2 * (1.0 / 2) * std::log(n / 2), 1e-12);
    EXPECT_EQ(la->Similarity(*index.GetLynx(c), &doc), 0.0);
    EXPECT_EQ(la->Similarity(*index.GetLynx(empty), &doc), 0.0) << "no word in common, no division by 0";
    EXPECT_EQ(Lynx("apple").Similarity(Lynx("apple"), nullptr), 0.0) << "no document index";

    // From 12 notes on, k is 3.
    for (int i = 0; i < 8; ++i)
        Make(doc, "", "filler");
    index.IndexAll();
    const double big = static_cast<double>(HypertextFacade(&doc).NodeCount());
    ASSERT_GE(big, 12.0);
    EXPECT_NEAR(la->Similarity(*index.GetLynx(b), &doc), std::log(big / (2 + 3.0)), 1e-12);
    // A word in nearly every note gives a negative term, kept as it is.
    Hypertext common;
    std::vector<Node*> notes;
    for (int i = 0; i < 12; ++i)
        notes.push_back(Make(common, "", "common"));
    LynxUpdater commonIndex(&common);
    commonIndex.IndexAll();
    EXPECT_NEAR(commonIndex.GetLynx(notes[0])->Similarity(*commonIndex.GetLynx(notes[1]), &common),
                std::log(13.0 / (12 + 3.0)), 1e-12);
}

TEST(LynxTest, FactorsAndMostSimilar) {
    Hypertext doc;
    Node* proto = Make(doc, "Proto", "");
    Node* other = Make(doc, "Other", "");
    Node* base = Make(doc, "Base", "");
    Node* query = Make(doc, "Query", "river boat fishing");
    Node* shared = Make(doc, "Shared", "river boat fishing");
    Node* plain = Make(doc, "Single", "river boat fishing");
    Node* unrelated = Make(doc, "Unrelated", "mountain snow");
    EXPECT_EQ(Lynx::PrototypeFactor(query, plain), 1.0);
    query->SetPrototype(proto, false);
    EXPECT_EQ(Lynx::PrototypeFactor(query, plain), 0.75);
    shared->SetPrototype(proto, false);
    EXPECT_EQ(Lynx::PrototypeFactor(query, shared), 2.0);
    proto->SetPrototype(base, false);
    other->SetPrototype(base, false);
    plain->SetPrototype(other, false);
    EXPECT_EQ(Lynx::PrototypeFactor(query, plain), 1.25) << "the chains end in the same note";
    plain->SetPrototype(unrelated, false);
    EXPECT_EQ(Lynx::PrototypeFactor(query, plain), 0.75);
    plain->SetPrototype(nullptr, false);
    query->SetPrototype(nullptr, false);
    shared->SetPrototype(nullptr, false);

    double p = 0 + 5 + 50, q = 18 + 6 + 50;
    EXPECT_NEAR(Lynx::TextLengthFactor(proto, shared), p * q / ((p + q) * std::sqrt(p * p + q * q)), 1e-12);

    LynxUpdater index(&doc);
    index.IndexAll();
    auto similar = NodeIndexing(query).MostSimilar(10);
    ASSERT_EQ(similar.size(), 2u) << "the unrelated note scores 0 and is left out";
    EXPECT_NEAR(similar[0].score, similar[1].score, 1e-12);
    // Two notes of one prototype score twice as high as with none.
    query->SetPrototype(proto, false);
    shared->SetPrototype(proto, false);
    plain->SetPrototype(nullptr, false);
    similar = NodeIndexing(query).MostSimilar(10);
    ASSERT_EQ(similar.size(), 2u);
    EXPECT_EQ(similar[0].node, shared);
    EXPECT_NEAR(similar[0].score, 2.0 / 0.75 * similar[1].score, 1e-9);
    EXPECT_EQ(NodeIndexing(query).MostSimilar(1).size(), 1u);

    // An alias's note leaves out its original; exportable only leaves out
    // what is not exported.
    Node* alias = NodeMaker(&doc).MakeAlias(shared, doc.Root(), nullptr);
    ASSERT_TRUE(alias);
    index.IndexNow(shared);
    similar = index.GetLynx(shared)->MostSimilarTo(alias, 10, false);
    for (const auto& r : similar)
        EXPECT_NE(r.node, shared);
    plain->SetBoolean("HTMLDontExport", true);
    EXPECT_FALSE(Lynx::IsExportable(plain));
    similar = NodeIndexing(query).MostSimilar(10, true);
    ASSERT_EQ(similar.size(), 1u);
    EXPECT_EQ(similar[0].node, shared);
    Node* child = Make(doc, "Child", "", shared);
    shared->SetBoolean("HTMLExportChildren", false);
    EXPECT_FALSE(Lynx::IsExportable(child));
}

TEST(LynxTest, CommonWordsStopListAndSections) {
    Hypertext doc;
    Node* hints = Make(doc, "Hints", "");
    Make(doc, "stopList", "The AND of", hints);
    Node* top = Make(doc, "Top", "the river the river the river and sea sea of");
    Make(doc, "Child", "sea lake", top);
    WordList stop = WordList::For(&doc);
    EXPECT_TRUE(stop.Has("the"));
    EXPECT_TRUE(stop.Has("and"));
    EXPECT_TRUE(stop.Has("of")) << "a stop word may be shorter than what the index keeps";
    std::istringstream in("Alpha, BETA 42");
    WordList fromStream = WordList::FromStream(in);
    EXPECT_TRUE(fromStream.Has("alpha"));
    EXPECT_TRUE(fromStream.Has("beta"));
    EXPECT_EQ(fromStream.size(), 2u);
    EXPECT_TRUE(WordList::StopList(&doc).Has("the"));

    LynxUpdater index(&doc);
    index.IndexAll();
    EXPECT_EQ(Words(NodeIndexing(top).CommonWords(2)), (std::vector<std::string>{"river", "sea"}));
    EXPECT_EQ(Words(NodeIndexing(top).CommonWords(10, false, true)), (std::vector<std::string>{"river", "sea", "top"}));
    auto section = NodeIndexing(top).CommonWords(1, true);
    ASSERT_EQ(section.size(), 1u);
    EXPECT_EQ(section[0].word, "river");
    EXPECT_EQ(NodeIndexing(top).CommonWords(10, true, true).size(), 5u) << "child, lake, river, sea, top";
    EXPECT_EQ(index.DocumentLynx().Get("sea"), 2) << "the document counts notes";
    EXPECT_EQ(index.DocumentLynx().Get("river"), 1);
}

TEST(LynxQueueTest, ChangedTextIsReindexedOnTheQueue) {
    Hypertext doc;
    Node* a = Make(doc, "A", "old words");
    LynxUpdater index(&doc);
    index.IndexAll();
    EXPECT_TRUE(NodeIndexing(a).HasWord("old"));
    NodeText(a).SetText("fresh content");
    index.Wait();
    EXPECT_FALSE(NodeIndexing(a).HasWord("old"));
    EXPECT_TRUE(NodeIndexing(a).HasWord("fresh"));
    a->SetName("Renamed");
    index.Wait();
    EXPECT_TRUE(NodeIndexing(a).HasWord("renamed"));

    // Suspended, changes wait; resumed, they are indexed.
    index.Suspend();
    NodeText(a).SetText("later");
    index.Wait();
    EXPECT_TRUE(NodeIndexing(a).HasWord("fresh"));
    index.Resume();
    index.Wait();
    EXPECT_TRUE(NodeIndexing(a).HasWord("later"));

    // The document index merges at once when it is old, and waits when it
    // was merged within the last 20 seconds.
    Lynx& document = index.DocumentLynx();
    EXPECT_EQ(document.Get("later"), 0);
    document.LastIndexed(STime::Now());
    document.Merge(&doc);
    document.Wait();
    EXPECT_EQ(document.Get("later"), 0) << "a merge timer waits";
    document.LastIndexed(STime::Never());
    document.Merge(&doc);
    document.Wait();
    EXPECT_EQ(document.Get("later"), 0) << "a pending timer blocks another merge";
    document.MergeNow(&doc);
    EXPECT_EQ(document.Get("later"), 1);
}

TEST(LynxUpdaterQueueTest, DocumentOwnedUpdaterAndRememberedAnswers) {
    Hypertext doc;
    Node* query = Make(doc, "Query", "river boat fishing");
    Node* shared = Make(doc, "Shared", "river boat");
    Node* unrelated = Make(doc, "Unrelated", "mountain snow");
    Node* proto = Make(doc, "Proto", "");
    // Two notes that ask, as a query asks note after note.
    Node* first = Make(doc, "First", "");
    Node* second = Make(doc, "Second", "");
    ASSERT_EQ(LynxUpdater::For(&doc), nullptr);
    LynxUpdater& owned = LynxUpdater::Ensure(&doc);
    EXPECT_EQ(LynxUpdater::For(&doc), &owned);
    EXPECT_EQ(&LynxUpdater::Ensure(&doc), &owned);
    EXPECT_TRUE(owned.HasWord(query, "Fishing"));
    EXPECT_FALSE(owned.HasWord(query, "snow"));
    EXPECT_EQ(owned.MostSimilar(query, 5), std::vector<Node*>{shared});
    EXPECT_TRUE(owned.MostSimilar(query, 0).empty());
    EXPECT_EQ(owned.MostSimilar(query, 1, first), std::vector<Node*>{shared});
    EXPECT_EQ(owned.MostSimilar(query, 1, second), std::vector<Node*>{shared});

    // A change of words is answered anew at once, through the reindexing
    // that the change queues.
    InstallTextHooks();
    NodeText(unrelated).SetText("river boat fishing");
    EXPECT_EQ(owned.MostSimilar(query, 1, second), std::vector<Node*>{unrelated});
    // A change the indexes do not see (prototypes weigh the score) shows
    // from the next pass on: when the note that asked first asks again.
    query->SetPrototype(proto, false);
    shared->SetPrototype(proto, false);
    EXPECT_EQ(owned.MostSimilar(query, 1, first), std::vector<Node*>{unrelated});
    EXPECT_EQ(owned.MostSimilar(query, 1, second), std::vector<Node*>{shared});
    // A note that comes is counted at once.
    Node* late = Make(doc, "Late", "river boat fishing");
    owned.IndexNow(late);
    EXPECT_EQ(owned.MostSimilar(query, 5, second).size(), 3u);
    EXPECT_TRUE(owned.HasWord(late, "boat"));

    // A command's updater stands in for a while; the document's own comes
    // back when it goes.
    {
        LynxUpdater command(&doc);
        EXPECT_EQ(LynxUpdater::For(&doc), &command);
        EXPECT_EQ(&LynxUpdater::Ensure(&doc), &command);
    }
    EXPECT_EQ(LynxUpdater::For(&doc), nullptr);
    EXPECT_EQ(&LynxUpdater::Ensure(&doc), &owned);
}

TEST(LynxUpdaterQueueTest, RelatedWordsReadABoundedNumberOfNotes) {
    Hypertext doc;
    NodeMaker maker(&doc);
    Node* early = maker.MakeNode("Early", nullptr, nullptr, 0, 0);
    Node* late = maker.MakeNode("Late", nullptr, early, 0, 0);
    Node* last = nullptr;
    for (size_t i = 0; i + 1 < LynxUpdater::kRelatedWordsNoteLimit; ++i) {
        last = maker.MakeNode("x" + std::to_string(i), early, last, 0, 0);
        NodeText(last).SetText("common alpha");
    }
    Node* after = nullptr;
    for (int i = 0; i < 3; ++i) {
        after = maker.MakeNode("y" + std::to_string(i), late, after, 0, 0);
        NodeText(after).SetText(i == 0 ? "common omega zebra" : "common omega");
    }
    LynxUpdater& updater = LynxUpdater::Ensure(&doc);
    // One note short of the bound: the first note under Late is read too.
    EXPECT_EQ(updater.RelatedWords("Common", 10), (std::vector<std::string>{"alpha", "omega", "zebra"}));
    EXPECT_EQ(updater.RelatedWords("omega", 10), (std::vector<std::string>{"common", "zebra"}));
    EXPECT_TRUE(updater.RelatedWords("common", 0).empty());
    EXPECT_TRUE(updater.RelatedWords("unheard", 10).empty());
    // Questions of one pass, asked for notes, give the same answers.
    EXPECT_EQ(updater.RelatedWords("omega", 10, early), (std::vector<std::string>{"common", "zebra"}));
    EXPECT_EQ(updater.RelatedWords("common", 10, late), (std::vector<std::string>{"alpha", "omega", "zebra"}));
    EXPECT_EQ(updater.RelatedWords("zebra", 10, last), (std::vector<std::string>{"common", "omega"}));
    EXPECT_EQ(updater.RelatedWords("common", 2, last), (std::vector<std::string>{"alpha", "omega"}));
    // At the bound, the notes after it are not read.
    Node* one = maker.MakeNode("z", early, last, 0, 0);
    NodeText(one).SetText("common alpha");
    updater.IndexNow(one);
    EXPECT_EQ(updater.RelatedWords("common", 10), std::vector<std::string>{"alpha"});
    EXPECT_EQ(updater.RelatedWords("omega", 10, early), (std::vector<std::string>{"common", "zebra"}));
    EXPECT_EQ(updater.RelatedWords("common", 10, late), std::vector<std::string>{"alpha"});
}
