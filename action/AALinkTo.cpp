#include "AALinkTo.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <deque>
#include <set>

#include "AAArguments.h"
#include "AttributeType.h"
#include "HTPath.h"
#include "Link.h"
#include "LinkBundle.h"
#include "LinkManager.h"
#include "LinkType.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeLinks.h"
#include "PathFinder.h"
#include "Parser.h"

namespace {

// The notes an argument designates: its text as written (a path or a group
// word), and when that names nothing, its computed value read as one.
NodeVector Designated(const AAValue* argument, Node* note, MatchList& matches) {
    if (!argument || !note)
        return {};
    std::string written = Parser::TrimQuotes(Parser::Trim(argument->Token()));
    NodeVector found = written.empty() ? NodeVector{note} : HTPath::All(note, written, matches);
    if (!found.empty())
        return found;
    std::string computed = Parser::TrimQuotes(Parser::Trim(ArgumentText(argument, note, matches)));
    if (computed.empty() || computed == written)
        return {};
    return HTPath::All(note, computed, matches);
}

// The link type an argument names, trimmed of quotes; `otherwise` when the
// argument is missing or empty.
std::string LinkTypeArgument(const AAValue* argument, Node* note, MatchList& matches, const std::string& otherwise) {
    std::string type = Parser::TrimQuotes(Parser::Trim(ArgumentText(argument, note, matches)));
    return type.empty() ? otherwise : type;
}

bool Usable(const Node* n) { return n && !n->IsHidden() && !n->Invalid(); }

// The live links from `source` to `dest` of `type` ("" or "*": every type).
LinkBundle LinksBetween(Node* source, Node* dest, const std::string& type) {
    LinkBundle out = NodeLinks(source).OutboundLinks().Collect(
        [dest](const Link* link) { return link->DestNode() == dest && !link->IsPrototype(); });
    return type.empty() || type == "*" ? out : out.OnPath(type);
}

enum class Direction { kTo, kFrom };

// Makes a link of the type between the note and each designated note.
ActionResult MakeLinks(const AAValue* first, Node* note, MatchList& matches, Direction direction, bool originals) {
    if (!Usable(note))
        return AAValue::kFalseResult();
    std::string type = LinkTypeArgument(NthArgument(first, 1), note, matches, LinkType::kUntitled);
    bool made = false;
    for (Node* other : Designated(first, note, matches)) {
        Node* here = originals ? note->GetOriginal() : note;
        Node* there = originals && other ? other->GetOriginal() : other;
        if (!Usable(here) || !Usable(there) || here == there)
            continue;
        Node* source = direction == Direction::kTo ? here : there;
        Node* dest = direction == Direction::kTo ? there : here;
        if (!source->CanLink() || !dest->CanLink() || !LinksBetween(source, dest, type).empty())
            continue;
        made = NodeLinks(source).CreateLink(dest, type) != nullptr || made;
    }
    return made ? AAValue::kTrueResult() : AAValue::kFalseResult();
}

ActionResult RemoveLinks(const AAValue* first, Node* note, MatchList& matches, Direction direction, bool originals) {
    if (!Usable(note))
        return AAValue::kFalseResult();
    std::string type = LinkTypeArgument(NthArgument(first, 1), note, matches, "*");
    bool removed = false;
    for (Node* other : Designated(first, note, matches)) {
        Node* here = originals ? note->GetOriginal() : note;
        Node* there = originals && other ? other->GetOriginal() : other;
        if (!Usable(here) || !Usable(there))
            continue;
        LinkBundle links = direction == Direction::kTo ? LinksBetween(here, there, type) : LinksBetween(there, here, type);
        if (links.empty())
            continue;
        links.DeleteLinks();
        removed = true;
    }
    return removed ? AAValue::kTrueResult() : AAValue::kFalseResult();
}

// The notes one or more links away from `start` (either way, of the types),
// in the order a breadth-first walk meets them; `start` is left out.
void Neighbours(const NodeVector& start, int steps, const std::string& types, NodeVector& out) {
    std::set<const Node*> seen(start.begin(), start.end());
    std::vector<Node*> frontier(start.begin(), start.end());
    for (int step = 0; step < steps && !frontier.empty(); ++step) {
        std::vector<Node*> next;
        for (Node* n : frontier) {
            if (!Usable(n))
                continue;
            NodeLinks links(n);
            auto visit = [&](Node* other) {
                if (Usable(other) && seen.insert(other).second) {
                    out.push_back(other);
                    next.push_back(other);
                }
            };
            for (Link* link : links.OutboundLinks().OmitPrototypes().OnPath(types))
                visit(link->DestNode());
            for (Link* link : links.InboundLinks().OmitPrototypes().OnPath(types))
                visit(link->SourceNode());
        }
        frontier.swap(next);
    }
}

// The neighbours `steps` links away from the notes the first argument
// designates, by the link types of the argument at `typesAt` (all when it is
// missing).
NodeVector NeighboursOf(const AAValue* first, Node* note, MatchList& matches, int steps, int typesAt,
                        NodeVector* designated = nullptr) {
    std::string types = LinkTypeArgument(NthArgument(first, typesAt), note, matches, "*");
    NodeVector start = Designated(first, note, matches);
    NodeVector out;
    Neighbours(start, steps, types, out);
    if (designated)
        *designated = std::move(start);
    return out;
}

// Kilometres along the earth's surface between two notes, by their Latitude
// and Longitude (a note without them stands at 0, 0).
double GreatCircleKm(const Node* a, const Node* b) {
    constexpr double kEarthRadiusKm = 6371.0;
    constexpr double kRadians = M_PI / 180.0;
    double lat1 = a->GetDouble("Latitude") * kRadians;
    double lon1 = a->GetDouble("Longitude") * kRadians;
    double lat2 = b->GetDouble("Latitude") * kRadians;
    double lon2 = b->GetDouble("Longitude") * kRadians;
    // The haversine form keeps short distances exact.
    double h = std::pow(std::sin((lat2 - lat1) / 2), 2) +
               std::cos(lat1) * std::cos(lat2) * std::pow(std::sin((lon2 - lon1) / 2), 2);
    h = std::min(1.0, std::max(0.0, h));
    return 2 * kEarthRadiusKm * std::asin(std::sqrt(h));
}

// The distance between the first notes of two groups; "" when either group
// is empty or its first note is gone.
ActionResult DistanceBetween(const NodeVector& a, const NodeVector& b) {
    if (a.empty() || b.empty() || !Usable(a.front()) || !Usable(b.front()))
        return ActionResult(std::string());
    return ActionResult(GreatCircleKm(a.front(), b.front()));
}

// A number read from the whole of an argument's text; false when the
// argument is missing or its text is not a number.
bool NumberArgument(const AAValue* argument, Node* note, MatchList& matches, double& number) {
    if (!argument)
        return false;
    std::string text = Parser::TrimQuotes(Parser::Trim(ArgumentText(argument, note, matches)));
    if (text.empty())
        return false;
    char* end = nullptr;
    number = std::strtod(text.c_str(), &end);
    return end && *end == '\0' && !std::isnan(number);
}

// The neighbours (one or two links away) that lie at most the argument's
// kilometres from the first designated note: `name(designator, km[, types])`.
ActionResult NeighboursWithin(const AAValue* first, Node* note, MatchList& matches, int steps) {
    double km = 0;
    if (!NumberArgument(NthArgument(first, 1), note, matches, km))
        return ActionResult(NodeVector());
    NodeVector designated;
    NodeVector near = NeighboursOf(first, note, matches, steps, 2, &designated);
    if (designated.empty() || !Usable(designated.front()))
        return ActionResult(NodeVector());
    const Node* centre = designated.front();
    NodeVector kept;
    for (Node* n : near)
        if (GreatCircleKm(centre, n) <= km)
            kept.push_back(n);
    return ActionResult(kept);
}

// Computes every argument for its side effects; the answer is "".
ActionResult ComputeAll(const AAValue* first, Node* note, MatchList& matches) {
    for (const AAValue* argument = first; argument; argument = argument->GetNextArgument())
        ArgumentText(argument, note, matches);
    return ActionResult(std::string());
}

}  // namespace

// ---------------------------------------------------------------------------
// Making and removing links

ActionResult AALinkTo::ActionValue(Node* note, MatchList& matches) const {
    return MakeLinks(operand.get(), note, matches, Direction::kTo, false);
}

ActionResult AALinkToOriginal::ActionValue(Node* note, MatchList& matches) const {
    return MakeLinks(operand.get(), note, matches, Direction::kTo, true);
}

ActionResult AALinkFrom::ActionValue(Node* note, MatchList& matches) const {
    return MakeLinks(operand.get(), note, matches, Direction::kFrom, false);
}

ActionResult AALinkFromOriginal::ActionValue(Node* note, MatchList& matches) const {
    return MakeLinks(operand.get(), note, matches, Direction::kFrom, true);
}

ActionResult AAUnlinkTo::ActionValue(Node* note, MatchList& matches) const {
    return RemoveLinks(operand.get(), note, matches, Direction::kTo, false);
}

ActionResult AAUnlinkToOriginal::ActionValue(Node* note, MatchList& matches) const {
    return RemoveLinks(operand.get(), note, matches, Direction::kTo, true);
}

ActionResult AAUnlinkFrom::ActionValue(Node* note, MatchList& matches) const {
    return RemoveLinks(operand.get(), note, matches, Direction::kFrom, false);
}

ActionResult AAUnlinkFromOriginal::ActionValue(Node* note, MatchList& matches) const {
    return RemoveLinks(operand.get(), note, matches, Direction::kFrom, true);
}

// ---------------------------------------------------------------------------
// Reading links

ActionResult AALinks::ActionValue(Node* note, MatchList& matches) const {
    // The query: direction, type and attribute, each optional, with "."
    // between. "outbound" (or "out", "to") and "inbound" (or "in", "from")
    // choose the direction; any other word is taken as the type when no
    // direction was given first. The attribute defaults to Name.
    std::vector<std::string> parts;
    size_t start = 0;
    while (start <= query.size()) {
        size_t end = query.find('.', start);
        if (end == std::string::npos)
            end = query.size();
        parts.push_back(Parser::TrimQuotes(Parser::Trim(query.substr(start, end - start))));
        start = end + 1;
    }
    bool outbound = true;
    size_t next = 0;
    if (next < parts.size()) {
        const std::string& word = parts[next];
        if (word == "outbound" || word == "out" || word == "to")
            ++next;
        else if (word == "inbound" || word == "in" || word == "from") {
            outbound = false;
            ++next;
        }
    }
    std::string type = next < parts.size() ? parts[next++] : std::string();
    std::string attribute = next < parts.size() ? parts[next] : std::string();
    if (!attribute.empty() && attribute[0] == '$')
        attribute.erase(0, 1);
    if (attribute.empty())
        attribute = "Name";
    if (type.empty())
        type = "*";

    std::string written = Parser::TrimQuotes(Parser::Trim(designator));
    NodeVector notes = written.empty() || written == "this" ? NodeVector{note} : HTPath::All(note, written, matches);
    std::vector<std::string> values;
    for (Node* n : notes) {
        if (!Usable(n))
            continue;
        NodeLinks links(n);
        LinkBundle bundle = (outbound ? links.OutboundLinks() : links.InboundLinks()).OmitPrototypes().OnPath(type);
        for (Link* link : bundle) {
            Node* other = outbound ? link->DestNode() : link->SourceNode();
            if (Usable(other))
                values.push_back(other->GetString(attribute));
        }
    }
    std::string out;
    for (size_t i = 0; i < values.size(); ++i) {
        if (i)
            out += ';';
        out += values[i];
    }
    return ActionResult(out);
}

int AALinks::ResultType(Node*, MatchList&) const { return AttributeType::kList; }

// ---------------------------------------------------------------------------
// Paths and distances

ActionResult AAOnPath::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = operand.get();
    if (!Usable(note) || !first)
        return ActionResult(std::string());
    NodeVector targets = Designated(first, note, matches);
    std::string types = LinkTypeArgument(NthArgument(first, 1), note, matches, "*");
    if (targets.empty())
        return ActionResult(std::string());
    PathFinder finder(note, targets.front(), types);
    return ActionResult(finder.Run());
}

ActionResult AADistance::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = operand.get();
    const AAValue* second = NthArgument(first, 1);
    if (!first || !second)
        return ActionResult(std::string());
    NodeVector a = Designated(first, note, matches);
    return DistanceBetween(a, Designated(second, note, matches));
}

ActionResult AADistanceBetween::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = operand.get();
    if (!first || !note)
        return ActionResult(std::string());
    return DistanceBetween(NodeVector{note}, Designated(first, note, matches));
}

ActionResult AADrivingTime::ActionValue(Node* note, MatchList& matches) const {
    return ComputeAll(operand.get(), note, matches);
}

// ---------------------------------------------------------------------------
// Neighbours

ActionResult AANeighbors::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(NeighboursOf(operand.get(), note, matches, 1, 1));
}

ActionResult AANeighbors2::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(NeighboursOf(operand.get(), note, matches, 2, 1));
}

ActionResult AANeighborsWithin::ActionValue(Node* note, MatchList& matches) const {
    return NeighboursWithin(operand.get(), note, matches, 1);
}

ActionResult AANeighbors2Within::ActionValue(Node* note, MatchList& matches) const {
    return NeighboursWithin(operand.get(), note, matches, 2);
}
