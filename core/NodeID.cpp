#include "NodeID.h"

#include <chrono>
#include <mutex>
#include <unordered_set>

#include "Hypertext.h"
#include "RylSerial.h"

namespace {

RylSerial& IDQueue() {
    static RylSerial queue("com.morvent.rylvane.IDqueue");
    return queue;
}

uint32_t& LastIDStorage() {
    static uint32_t lastID = 0;
    return lastID;
}

} // namespace

const std::string* NodeID::Intern(const std::string& name) {
    static std::mutex mutex;
    static std::unordered_set<std::string>* names = new std::unordered_set<std::string>();
    std::lock_guard<std::mutex> guard(mutex);
    return &*names->insert(name).first;
}

NodeID::NodeID(uint32_t i, std::string c) : id(i), creator(Intern(c)) {
    IDQueue().Sync([&] {
        uint32_t& lastID = LastIDStorage();
        if (lastID >= 0xFFFFFFF1u)
            lastID = 0;
        if (lastID == id)
            lastID = id + 1;
    });
}

NodeID::NodeID(const Hypertext* hypertext) {
    creator = Intern(hypertext ? hypertext->CreatorName() : std::string("system"));
    MakeUnique(hypertext);
}

void NodeID::MakeUnique(const Hypertext*) {
    using namespace std::chrono;
    const auto now = duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
    IDQueue().Sync([&] {
        uint32_t& lastID = LastIDStorage();
        if (now >= 0 && static_cast<uint64_t>(now) >= lastID)
            lastID = static_cast<uint32_t>(now) + 1;
        id = lastID;
        lastID = id + 1;
    });
}

int NodeID::Compare(const NodeID& other) const {
    if (other.id < id)
        return 1;
    if (other.id > id)
        return -1;
    if (*other.creator < *creator)
        return 1;
    if (*other.creator > *creator)
        return -1;
    return 0;
}

uint32_t NodeID::LastID() {
    return IDQueue().Sync([] { return LastIDStorage(); });
}

void NodeID::SetLastID(uint32_t value) {
    IDQueue().Sync([&] { LastIDStorage() = value; });
}
