// rylvane: the command-line front end of the engine.
#include "Commands.h"

int main(int argc, char** argv) { return RunRylvane(argc, argv); }
