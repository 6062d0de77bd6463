/* Compiled as C for a processor without SVE: the markers must still build. */
#include <zorvo/roi.h>

void zorvo_probe_start(void) { ZORVO_ROI_START(); }
void zorvo_probe_stop(void) { ZORVO_ROI_STOP(); }
