#include "NotificationCenter.h"

#include <algorithm>
#include <memory>

std::string Notification::Text(const std::string& key) const {
    auto it = userInfo.find(key);
    if (it == userInfo.end())
        return std::string();
    const std::string* text = std::get_if<std::string>(&it->second);
    return text ? *text : std::string();
}

long Notification::Number(const std::string& key) const {
    auto it = userInfo.find(key);
    if (it == userInfo.end())
        return 0;
    const long* number = std::get_if<long>(&it->second);
    return number ? *number : 0;
}

const void* Notification::Object(const std::string& key) const {
    auto it = userInfo.find(key);
    if (it == userInfo.end())
        return nullptr;
    const void* const* object = std::get_if<const void*>(&it->second);
    return object ? *object : nullptr;
}

NotificationCenter& NotificationCenter::Default() {
    static NotificationCenter center;
    return center;
}

NotificationCenter::ObserverID NotificationCenter::AddObserver(const std::string& name, const void* object,
                                                               Observer observer) {
    std::lock_guard<std::mutex> guard(mutex);
    ObserverID id = nextID++;
    observers.push_back(Entry{id, name, object, std::move(observer)});
    return id;
}

void NotificationCenter::RemoveObserver(ObserverID id) {
    std::lock_guard<std::mutex> guard(mutex);
    observers.erase(std::remove_if(observers.begin(), observers.end(), [id](const Entry& e) { return e.id == id; }),
                    observers.end());
}

void NotificationCenter::Post(Notification notification) {
    Poster to;
    {
        std::lock_guard<std::mutex> guard(mutex);
        to = poster;
    }
    if (!to) {
        PostNow(notification);
        return;
    }
    auto shared = std::make_shared<Notification>(std::move(notification));
    to([this, shared] { PostNow(*shared); });
}

void NotificationCenter::PostNow(const Notification& notification) {
    // Observers are called outside the lock, so that one may add or remove
    // observers, or post again.
    std::vector<Observer> to;
    {
        std::lock_guard<std::mutex> guard(mutex);
        for (const Entry& e : observers) {
            if ((e.name.empty() || e.name == notification.name) && (!e.object || e.object == notification.object))
                to.push_back(e.observer);
        }
    }
    for (const Observer& observer : to)
        observer(notification);
}

NotificationCenter::Poster NotificationCenter::SetMainThreadPoster(Poster newPoster) {
    std::lock_guard<std::mutex> guard(mutex);
    Poster previous = std::move(poster);
    poster = std::move(newPoster);
    return previous;
}

StMainThreadPoster::StMainThreadPoster(NotificationCenter& center, NotificationCenter::Poster poster)
    : center(center), previous(center.SetMainThreadPoster(std::move(poster))) {}

StMainThreadPoster::~StMainThreadPoster() { center.SetMainThreadPoster(std::move(previous)); }
