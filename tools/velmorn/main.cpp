// The command-line tool velmorn.
#include "velmorn/command_line.h"

int main(int argc, char** argv) { return velmorn::tool::runCommandLine(argc, argv); }
