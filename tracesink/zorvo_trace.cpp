#include "trace_tool.h"

int main(int argc, char** argv) { return zorvo_trace_main(argc, argv, stdout, stderr); }
