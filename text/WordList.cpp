#include "WordList.h"

#include <fstream>
#include <sstream>

#include "Configuration.h"
#include "Hypertext.h"
#include "Lynx.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"

namespace {

const char* const kBuiltInStopList =
    "a about after all also an and any are as at be because been but by can could did do does for from had "
    "has have he her his how if in into is it its just more most my no not of on one only or other our out "
    "over she so some such than that the their them then there these they this those to too under up very "
    "was we were what when where which while who will with would you your";

Node* Child(Node* parent, const std::string& name) {
    for (Node* c = parent ? parent->Son() : nullptr; c; c = c->Brother())
        if (!c->IsHidden() && c->Name() == name)
            return c;
    return nullptr;
}

} // namespace

void WordList::Filter(std::istream& stream) {
    std::string word;
    while (stream >> word) {
        std::string filtered = Lynx::Filter(word);
        if (!filtered.empty())
            words.insert(filtered);
    }
}

WordList WordList::FromStream(std::istream& stream) {
    WordList list;
    list.Filter(stream);
    return list;
}

WordList WordList::FromFile(const std::string& path) {
    std::ifstream in(path);
    return FromStream(in);
}

WordList WordList::StopList(Hypertext*) {
    std::istringstream in(ConfigurationText("stoplist.txt", kBuiltInStopList));
    return FromStream(in);
}

WordList WordList::For(Hypertext* hypertext) {
    if (!hypertext)
        return WordList();
    Node* note = Child(Child(hypertext->Root(), "Hints"), "stopList");
    if (!note)
        note = HypertextFacade(hypertext).First([](Node* n) { return !n->IsHidden() && n->Name() == "stoplist"; });
    if (!note)
        return WordList();
    std::istringstream in(NodeText(note).GetText());
    return FromStream(in);
}
