// zorvo-trace: stats, dump and csv views of a trace file.
#pragma once

#include <cstdio>

// The whole command line tool, with its streams as parameters so tests can
// run it in-process. Returns the exit status: 0 done (also for a truncated
// file, after a warning), 1 bad input file, 2 usage error.
int zorvo_trace_main(int argc, char** argv, FILE* out, FILE* err);
