#include "PathFinder.h"

#include <unordered_set>
#include <vector>

#include "Link.h"
#include "NodeLinks.h"

PathFinder::PathFinder(Node* from, Node* to, const std::string& linkTypes)
    : from(from), to(to), linkTypes(linkTypes) {}

PathFinder::~PathFinder() = default;

NodeVector PathFinder::Run() {
    path.clear();
    if (!from || from->Invalid())
        return path;
    // The queue of paths, kept as one list of steps: each step is a note and
    // the step it was reached from, so a path is read back along the steps
    // instead of being copied for every extension.
    struct Step {
        Node* note;
        long previous;
    };
    std::vector<Step> steps{{from, -1}};
    std::unordered_set<const Node*> visited{from};
    long reached = -1;
    size_t front = 0;
    for (; front < steps.size(); ++front) {
        Node* last = steps[front].note;
        if (to && last == to) {
            reached = static_cast<long>(front);
            break;
        }
        for (Link* link : NodeLinks(last).OutboundLinks().OnPath(linkTypes)) {
            Node* next = link->DestNode();
            if (!next || next->Invalid() || !visited.insert(next).second)
                continue;
            steps.push_back({next, static_cast<long>(front)});
        }
    }
    if (!to)
        reached = static_cast<long>(steps.size()) - 1;
    for (long i = reached; i >= 0; i = steps[i].previous)
        path.push_back(steps[i].note);
    path.reverse();
    return path;
}
