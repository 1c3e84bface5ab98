#pragma once
// Named notifications for observers: a part of the program posts one (a
// name, the object it concerns and some user information) and every
// observer of that name receives it on the main thread. Which thread is the
// main one is told by the poster installed with SetMainThreadPoster (the
// running loop installs its own); with none installed, a notification is
// delivered at once on the thread that posts it.
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

struct Notification {
    using Item = std::variant<std::string, long, const void*>;

    std::string name;
    // The object the notification is about (a document), or null.
    const void* object = nullptr;
    std::map<std::string, Item> userInfo;

    // The user information of a key as text, as a number or as an object;
    // the empty text, 0 or null when the key is missing or holds another kind.
    std::string Text(const std::string& key) const;
    long Number(const std::string& key) const;
    const void* Object(const std::string& key) const;
};

class NotificationCenter {
public:
    using Observer = std::function<void(const Notification&)>;
    using ObserverID = uint64_t;
    // Hands a block to the main thread, to run there later.
    using Poster = std::function<void(std::function<void()>)>;

    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    // The program's centre.
    static NotificationCenter& Default();

    // Observes notifications of `name` (every name when empty) about
    // `object` (any object when null). Answers an id for RemoveObserver.
    ObserverID AddObserver(const std::string& name, const void* object, Observer observer);
    void RemoveObserver(ObserverID id);

    // Delivers the notification on the main thread, to the observers there
    // at the time of delivery.
    void Post(Notification notification);
    // Delivers it now, on this thread.
    void PostNow(const Notification& notification);

    // Installs the main thread's poster; answers the one it replaces. An
    // empty poster makes delivery immediate again.
    Poster SetMainThreadPoster(Poster poster);

private:
    struct Entry {
        ObserverID id;
        std::string name;
        const void* object;
        Observer observer;
    };

    std::mutex mutex;
    std::vector<Entry> observers;
    ObserverID nextID = 1;
    Poster poster;
};

// Installs a main-thread poster for as long as it lives, and puts the one
// before it back.
class StMainThreadPoster {
public:
    StMainThreadPoster(NotificationCenter& center, NotificationCenter::Poster poster);
    ~StMainThreadPoster();
    StMainThreadPoster(const StMainThreadPoster&) = delete;
    StMainThreadPoster& operator=(const StMainThreadPoster&) = delete;

private:
    NotificationCenter& center;
    NotificationCenter::Poster previous;
};
