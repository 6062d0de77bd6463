// The region of interest: marker words switch tracing on and off per thread.
#pragma once

// Carries out a marker: start when `start`, otherwise stop.
void roi_marker(bool start);
