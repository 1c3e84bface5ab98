#include "NodeID.h"

#include <chrono>
#include <mutex>
#include <unordered_map>

#include "Hypertext.h"
#include "RylSerial.h"
#include "Value.h"

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

namespace {

// Every creator name seen, each with the value notes store as their Creator:
// one shared value per name instead of a string value per note. Both live as
// long as the program.
std::mutex& CreatorsLock() {
    static std::mutex mutex;
    return mutex;
}

std::unordered_map<std::string, Value*>& Creators() {
    static auto* creators = new std::unordered_map<std::string, Value*>();
    return *creators;
}

}  // namespace

const NodeID::Creator* NodeID::Intern(const std::string& name) {
    std::lock_guard<std::mutex> guard(CreatorsLock());
    auto [entry, added] = Creators().try_emplace(name, nullptr);
    if (added) {
        Value* value = Value::Create(name);
        if (!value->IsShared()) {
            value->Delete();
            value = new CountedStringValue(name);
        }
        entry->second = value;
    }
    return &*entry;
}

Value* NodeID::CreatorValue() const { return creator->second->Clone(); }

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
    if (other.creator->first < creator->first)
        return 1;
    if (other.creator->first > creator->first)
        return -1;
    return 0;
}

uint32_t NodeID::LastID() {
    return IDQueue().Sync([] { return LastIDStorage(); });
}

void NodeID::SetLastID(uint32_t value) {
    IDQueue().Sync([&] { LastIDStorage() = value; });
}
