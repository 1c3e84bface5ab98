#include "DocumentSession.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "DocumentFile.h"
#include "Hypertext.h"
#include "TalvikReader.h"

namespace {

// How long a writer waits for another writer of the same document to finish
// before it gives up with a line saying so.
constexpr auto kLockPatience = std::chrono::seconds(60);
constexpr auto kLockPoll = std::chrono::milliseconds(20);

// Takes the writer's lock on the document at `path`: an exclusive flock on
// the file itself. A save replaces the file by a rename, so a writer that
// waited may hold the lock of a file that is no longer the document; it then
// tries again on the file now at the path. Answers the locked descriptor, or
// -1 with `error` set.
int LockDocument(const std::string& path, std::string& error) {
    const auto deadline = std::chrono::steady_clock::now() + kLockPatience;
    for (;;) {
        // Not blocking: the file was checked to be a regular file, but it may
        // have been replaced by a FIFO since.
        int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
        if (fd < 0) {
            error = DescribeOpenFailure(path, errno);
            return -1;
        }
        struct stat opened {};
        if (::fstat(fd, &opened) != 0 || !S_ISREG(opened.st_mode)) {
            ::close(fd);
            error = path + ": not a regular file";
            return -1;
        }
        while (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
            if (errno != EWOULDBLOCK && errno != EINTR) {
                error = path + ": cannot lock: " + std::strerror(errno);
                ::close(fd);
                return -1;
            }
            if (std::chrono::steady_clock::now() >= deadline) {
                error = path + ": another rylvane command is still changing it; try again later";
                ::close(fd);
                return -1;
            }
            std::this_thread::sleep_for(kLockPoll);
        }
        struct stat current {};
        if (::stat(path.c_str(), &current) == 0 && current.st_dev == opened.st_dev &&
            current.st_ino == opened.st_ino)
            return fd;
        ::close(fd);
    }
}

} // namespace

DocumentSession::DocumentSession(std::string f, bool change) : file(std::move(f)), forChange(change) {}

DocumentSession::~DocumentSession() {
    // Closing the descriptor releases the lock.
    if (lockDescriptor >= 0)
        ::close(lockDescriptor);
}

std::unique_ptr<DocumentSession> DocumentSession::Open(const std::string& file, bool forChange, std::string& error) {
    std::unique_ptr<DocumentSession> session(new DocumentSession(file, forChange));
    if (!CheckDocumentFile(file, error))
        return nullptr;
    if (forChange) {
        session->lockDescriptor = LockDocument(file, error);
        if (session->lockDescriptor < 0)
            return nullptr;
    }
    session->hypertext = OpenDocument(file, error, &session->version, &session->revision);
    if (!session->hypertext)
        return nullptr;
    return session;
}

Hypertext* DocumentSession::Document() const {
    return hypertext.get();
}

const std::string& DocumentSession::File() const {
    return file;
}

Node* DocumentSession::Note(const std::string& path, std::string& error) const {
    return FindNote(hypertext.get(), file, path, error);
}

const Attribute* DocumentSession::AttributeNamed(const std::string& name, std::string& error) const {
    return FindAttribute(hypertext.get(), file, name, error);
}

bool DocumentSession::CanHoldDepth(int levels, std::string& error) const {
    if (levels <= TalvikReader::kMaxNoteDepth)
        return true;
    error = file + ": notes would be nested " + std::to_string(levels) + " deep; a document holds at most " +
            std::to_string(TalvikReader::kMaxNoteDepth);
    return false;
}

bool DocumentSession::Save(std::string& error) {
    if (!forChange) {
        error = file + ": opened for reading, not saved";
        return false;
    }
    // What could not be read back is not written.
    if (!CanHoldDepth(HeightOfNote(hypertext->Root()), error))
        return false;
    return SaveDocument(hypertext.get(), file, error);
}
