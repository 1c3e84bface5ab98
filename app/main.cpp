// rylvane: the command-line front end of the engine.
#include "Commands.h"
#include "TalvikWriter.h"

int main(int argc, char** argv) {
    // Every document this program writes names the version that wrote it.
    TalvikWriter::SetSavedBy(RYLVANE_VERSION);
    return RunRylvane(argc, argv);
}
