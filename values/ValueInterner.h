#pragma once
// Shared copies of repeated values.
//
// A document read from a file holds the same few texts over and over: the
// creator, a status, a colour, small numbers, positions on a grid. An
// interner gives every note that holds the same text one reference-counted
// value instead of a copy each. Values are immutable apart from caches that
// fill under their own locks, so a shared value reads exactly like a private
// one; only its Clone hands out another reference to itself.
#include <atomic>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "Value.h"

// A value of class V that is shared by reference counting: Clone returns the
// same object with one more reference, Delete drops one and destroys the
// object at the last.
template <class V>
class SharedValue final : public V {
public:
    template <class... Args>
    explicit SharedValue(Args&&... args) : V(std::forward<Args>(args)...) {}

    Value* Clone() const override {
        count.fetch_add(1, std::memory_order_relaxed);
        return const_cast<SharedValue*>(this);
    }
    void Delete() const override {
        if (count.fetch_sub(1, std::memory_order_acq_rel) <= 1)
            V::Delete();
    }
    bool IsShared() const override { return true; }
    long Count() const { return count.load(std::memory_order_acquire); }

private:
    mutable std::atomic<int32_t> count{1};
};

// The values of one attribute type made from texts, shared between the
// holders of equal texts. It stops sharing (and lets go of what it holds)
// once it has seen more distinct texts than kMaxDistinct: such an attribute
// holds mostly unique texts (names, dates), where a table only costs.
class ValueInterner {
public:
    static constexpr size_t kMaxDistinct = 256;
    // Texts longer than this are not looked up: long texts rarely repeat.
    static constexpr size_t kMaxTextSize = 64;

    explicit ValueInterner(int type) : type(type) {}
    ~ValueInterner();
    ValueInterner(const ValueInterner&) = delete;
    ValueInterner& operator=(const ValueInterner&) = delete;

    // A new reference to a value equal to Value::Create(type, text).
    Value* Make(const std::string& text);
    // Whether the interner still shares (false once it gave up).
    bool Sharing() const { return sharing; }
    size_t Size() const { return values.size(); }

    // The shared form of `made` (which was made from text by Value::Create
    // and whose reference is taken over), or null when its class is not
    // shared this way; `made` is then left to the caller.
    static Value* Share(Value* made);

private:
    void Clear();

    int type;
    bool sharing = true;
    std::unordered_map<std::string, Value*> values;
};
