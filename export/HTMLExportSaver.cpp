#include "HTMLExportSaver.h"

#include <cctype>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "CommandTrust.h"
#include "Node.h"

namespace {

bool IsBlank(const std::string& text) {
    for (char c : text)
        if (!std::isspace(static_cast<unsigned char>(c)))
            return false;
    return true;
}

}  // namespace

bool HTMLExportSaver::FileContentsUnchanged(const std::string& path, const std::string& text) {
    // One open answers both whether the file exists and, with fstat, its
    // length: no separate stat of the path. Never blocking: a pipe found at
    // the path must not hold the export up.
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return false;
    struct stat info;
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || static_cast<size_t>(info.st_size) != text.size()) {
        ::close(fd);
        return false;
    }
    // The pages of one export are read one after another: one buffer per
    // thread serves them all.
    thread_local std::string old;
    old.resize(text.size());
    size_t got = 0;
    while (got < old.size()) {
        ssize_t n = ::read(fd, old.data() + got, old.size() - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += static_cast<size_t>(n);
    }
    ::close(fd);
    if (got != text.size())
        return false;
    for (size_t i = 0; i < text.size(); ++i)
        if (old[i] != text[i] && !std::isspace(static_cast<unsigned char>(text[i])))
            return false;
    return true;
}

bool HTMLExportSaver::NothingToExport(const std::string& path, const std::string& text) {
    // The text first: a page with anything to show needs no look at the disk.
    if (!IsBlank(text))
        return false;
    struct stat info;
    return ::stat(path.c_str(), &info) != 0;
}

bool HTMLExportSaver::Save(const std::string& path, const std::string& text, std::string& error) {
    auto fail = [&](int code) {
        error = "cannot write " + path + ": " + std::strerror(code ? code : EIO);
        return false;
    };
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666);
    if (fd < 0)
        return fail(errno);
    size_t done = 0;
    while (done < text.size()) {
        ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            int code = n < 0 ? errno : ENOSPC;
            ::close(fd);
            return fail(code);
        }
        done += static_cast<size_t>(n);
    }
    if (::close(fd) != 0)
        return fail(errno);
    return true;
}

HTMLExportSaver::Outcome HTMLExportSaver::Export(Node* node, const std::string& path, const std::string& text,
                                                 std::string& error, bool fresh) {
    std::string command = node ? node->GetString("HTMLExportCommand") : std::string();
    if (command.empty())
        return Write(path, text, error, fresh);
    // An outside program: only when the user allowed commands. A refused
    // command (reported once by CommandTrust) leaves the page as it was.
    if (!CommandTrust::Allowed()) {
        CommandTrust::Run(node, command, text, "~");
        return kSkipped;
    }
    std::string result = CommandTrust::Run(node, command, text, "~");
    if (NothingToExport(path, result))
        return kSkipped;
    if (FileContentsUnchanged(path, result))
        return kUnchanged;
    return Save(path, result, error) ? kWritten : kFailed;
}

HTMLExportSaver::Outcome HTMLExportSaver::Write(const std::string& path, const std::string& text, std::string& error,
                                                bool fresh) {
    if (!fresh && FileContentsUnchanged(path, text))
        return kUnchanged;
    if (fresh ? IsBlank(text) : NothingToExport(path, text))
        return kSkipped;
    return Save(path, text, error) ? kWritten : kFailed;
}
