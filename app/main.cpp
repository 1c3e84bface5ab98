// rylvane: the command-line front end of the engine.
#include <cerrno>
#include <fcntl.h>

#include "Commands.h"
#include "TalvikWriter.h"

int main(int argc, char** argv) {
    // A standard descriptor the caller closed would be handed to the next
    // file opened (the document, or the temporary a save writes), and output
    // meant for the terminal would go there. Hold each such slot with a
    // descriptor that cannot be written, so that printing fails as it should.
    for (int fd = 0; fd <= 2; ++fd)
        if (::fcntl(fd, F_GETFD) == -1 && errno == EBADF)
            ::open("/dev/null", O_RDONLY);
    // Every document this program writes names the version that wrote it.
    TalvikWriter::SetSavedBy(RYLVANE_VERSION);
    return RunRylvane(argc, argv);
}
