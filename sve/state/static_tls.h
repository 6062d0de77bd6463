// Thread-locals read on the handler paths live in static TLS: the library is
// loaded with the program (as the loader's audit module, or linked in), so
// the initial-exec model reads them at a fixed offset from the thread
// pointer, without the descriptor call of the dynamic model. `__thread`
// rather than `thread_local`: for zero-initialised trivial variables it also
// drops the per-access initialisation check.
#pragma once

#define ZORVO_STATIC_TLS __thread __attribute__((tls_model("initial-exec")))
