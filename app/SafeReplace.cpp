#include "SafeReplace.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <random>
#include <streambuf>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char* kTemporaryMark = ".rylvane-";

// A stream buffer over a file descriptor that remembers the first failed write.
class DescriptorBuffer : public std::streambuf {
public:
    explicit DescriptorBuffer(int d) : fd(d), buffer(1 << 20) { setp(buffer.data(), buffer.data() + buffer.size()); }
    int Failure() const { return failure; }

protected:
    int_type overflow(int_type c) override {
        if (!Flush())
            return traits_type::eof();
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(c);
            pbump(1);
        }
        return traits_type::not_eof(c);
    }
    int sync() override { return Flush() ? 0 : -1; }

private:
    bool Flush() {
        const char* p = pbase();
        while (p < pptr() && !failure) {
            ssize_t n = ::write(fd, p, static_cast<size_t>(pptr() - p));
            if (n < 0) {
                if (errno != EINTR)
                    failure = errno;
                continue;
            }
            p += n;
        }
        setp(buffer.data(), buffer.data() + buffer.size());
        return !failure;
    }

    int fd;
    std::vector<char> buffer;
    int failure = 0;
};

// The temporary a signal handler removes: its folder's descriptor and name.
// The name is written before the descriptor is published.
char pendingName[NAME_MAX + 1];
std::atomic<int> pendingFolder{-1};

constexpr int kCleanupSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

extern "C" void RemovePendingAndDie(int signal) {
    int folder = pendingFolder.exchange(-1);
    if (folder >= 0)
        ::unlinkat(folder, pendingName, 0);
    // SA_RESETHAND restored the default action; SA_NODEFER lets it act now.
    ::raise(signal);
}

// Installs the clean-up handlers for the length of one save.
class SignalGuard {
public:
    SignalGuard() {
        struct sigaction action {};
        action.sa_handler = RemovePendingAndDie;
        action.sa_flags = SA_RESETHAND | SA_NODEFER;
        sigemptyset(&action.sa_mask);
        // A signal the process ignores (as under nohup) stays ignored.
        for (size_t i = 0; i < std::size(kCleanupSignals); ++i)
            installed[i] = ::sigaction(kCleanupSignals[i], nullptr, &previous[i]) == 0 &&
                           previous[i].sa_handler != SIG_IGN &&
                           ::sigaction(kCleanupSignals[i], &action, nullptr) == 0;
    }
    ~SignalGuard() {
        pendingFolder.store(-1);
        for (size_t i = 0; i < std::size(kCleanupSignals); ++i)
            if (installed[i])
                ::sigaction(kCleanupSignals[i], &previous[i], nullptr);
    }

    void Pending(int folder, const std::string& name) {
        pendingFolder.store(-1);
        std::strncpy(pendingName, name.c_str(), NAME_MAX);
        pendingName[NAME_MAX] = '\0';
        pendingFolder.store(folder);
    }
    void Done() { pendingFolder.store(-1); }

private:
    struct sigaction previous[std::size(kCleanupSignals)] {};
    bool installed[std::size(kCleanupSignals)] {};
};

class Descriptor {
public:
    explicit Descriptor(int d = -1) : fd(d) {}
    ~Descriptor() { Reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const { return fd; }
    void Reset(int d = -1) {
        if (fd >= 0)
            ::close(fd);
        fd = d;
    }
    int Release() {
        int d = fd;
        fd = -1;
        return d;
    }

private:
    int fd;
};

std::string TemporaryName(const std::string& base) {
    static std::mt19937_64 random{std::random_device{}()};
    static const char kLetters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::string name = "." + base + kTemporaryMark + std::to_string(::getpid()) + "-";
    for (int i = 0; i < 6; ++i)
        name += kLetters[random() % (sizeof kLetters - 1)];
    return name;
}

// Removes temporaries that saves of `base` left behind when their process
// was killed where no unnamed temporary could be had.
void RemoveStaleTemporaries(int folder, const std::string& base) {
    const std::string prefix = "." + base + kTemporaryMark;
    int fd = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    DIR* dir = ::fdopendir(fd);
    if (!dir) {
        ::close(fd);
        return;
    }
    std::vector<std::string> stale;
    while (dirent* entry = ::readdir(dir)) {
        std::string name = entry->d_name;
        if (name.compare(0, prefix.size(), prefix) != 0)
            continue;
        char* end = nullptr;
        long pid = std::strtol(name.c_str() + prefix.size(), &end, 10);
        if (pid <= 0 || *end != '-')
            continue;
        if (::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH)
            stale.push_back(name);
    }
    for (const std::string& name : stale)
        ::unlinkat(folder, name.c_str(), 0);
    ::closedir(dir);
}

mode_t CreationMode() {
    mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

bool ReplaceFile(const std::string& path, const std::function<bool(std::ostream&)>& produce, std::string& error) {
    auto fail = [&](const std::string& what, int code = 0) {
        error = path + ": " + what + (code ? std::string(": ") + std::strerror(code) : std::string());
        return false;
    };

    // The file really replaced: the target of a symbolic link.
    std::string target = path;
    struct stat link {};
    if (::lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode)) {
        char resolved[PATH_MAX];
        if (!::realpath(path.c_str(), resolved))
            return fail("cannot follow the link", errno);
        target = resolved;
    }
    struct stat old {};
    bool exists = ::stat(target.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode))
        return fail("not a regular file");
    if (exists && old.st_nlink > 1)
        return fail("has " + std::to_string(old.st_nlink) +
                    " hard links, which a save would break (it replaces the file); copy it to keep one");

    size_t slash = target.rfind('/');
    std::string folderPath = slash == std::string::npos ? "." : slash == 0 ? "/" : target.substr(0, slash);
    std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    Descriptor folder(::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.Get() < 0)
        return fail("cannot write beside it", errno);

    SignalGuard signals;
    RemoveStaleTemporaries(folder.Get(), base);

    // An unnamed temporary where the file system can make one.
    std::string name;
    bool named = false;
    Descriptor file(::openat(folder.Get(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666));
    if (file.Get() < 0) {
        if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL && errno != ENOENT)
            return fail("cannot write beside it", errno);
        for (int attempt = 0; attempt < 100 && file.Get() < 0; ++attempt) {
            name = TemporaryName(base);
            signals.Pending(folder.Get(), name);
            file.Reset(::openat(folder.Get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
            if (file.Get() < 0 && errno != EEXIST) {
                signals.Done();
                return fail("cannot write beside it", errno);
            }
        }
        if (file.Get() < 0) {
            signals.Done();
            return fail("cannot write beside it", EEXIST);
        }
        named = true;
    }
    auto discard = [&](const std::string& what, int code) {
        if (named)
            ::unlinkat(folder.Get(), name.c_str(), 0);
        signals.Done();
        return fail(what, code);
    };

    DescriptorBuffer buffer(file.Get());
    std::ostream out(&buffer);
    bool produced = produce(out);
    out.flush();
    if (buffer.Failure())
        return discard("cannot write", buffer.Failure());
    if (!produced || !out)
        return discard("the document could not be written", 0);

    // The old file's owner where this process may give it, then its mode
    // (a change of owner clears the set-id bits).
    if (exists) {
        if (::fchown(file.Get(), old.st_uid, old.st_gid) != 0)
            (void)::fchown(file.Get(), static_cast<uid_t>(-1), old.st_gid);
        ::fchmod(file.Get(), old.st_mode & 07777);
    } else {
        ::fchmod(file.Get(), CreationMode());
    }
    if (::fsync(file.Get()) != 0)
        return discard("cannot write", errno);

    if (!named) {
        // Give the complete file a name; it is renamed over the old one at once.
        std::string self = "/proc/self/fd/" + std::to_string(file.Get());
        for (int attempt = 0; attempt < 100; ++attempt) {
            name = TemporaryName(base);
            signals.Pending(folder.Get(), name);
            int linked = ::linkat(AT_FDCWD, self.c_str(), folder.Get(), name.c_str(), AT_SYMLINK_FOLLOW);
            if (linked != 0 && errno == ENOENT)
                linked = ::linkat(file.Get(), "", folder.Get(), name.c_str(), AT_EMPTY_PATH);
            if (linked == 0) {
                named = true;
                break;
            }
            if (errno != EEXIST) {
                signals.Done();
                return fail("cannot write beside it", errno);
            }
        }
        if (!named) {
            signals.Done();
            return fail("cannot write beside it", EEXIST);
        }
    }
    if (::close(file.Release()) != 0)
        return discard("cannot write", errno);
    if (::renameat(folder.Get(), name.c_str(), folder.Get(), base.c_str()) != 0)
        return discard("cannot replace", errno);
    signals.Done();
    // The rename is part of the folder: flush it so that it survives a power cut.
    if (::fsync(folder.Get()) != 0 && errno != EINVAL && errno != EROFS)
        return fail("saved, but the folder could not be flushed to disk", errno);
    return true;
}
