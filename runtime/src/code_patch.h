// Changing one word of the application's code while other threads may be
// running it.
#pragma once

#include "dr_api.h"

// Makes the page that holds at writable as well, keeping whatever else it
// allows (so it stays executable throughout); returns the protection to put
// back, or -1 when the page cannot be made writable.
int open_code_page(app_pc at);
// One aligned 4-byte store, so a thread running the word sees the old word
// or the new one, never a mix; then the cache maintenance that makes the new
// word the one fetched.
void store_code_word(app_pc at, uint32_t word);
// The process's mappings changed (an object opened or closed, a munmap or
// mprotect): what open_code_page remembers of them is read again.
void mappings_changed();
// Puts back the protection open_code_page returned.
void close_code_page(app_pc at, int protection);
// The three above for one word; false when its page cannot be made
// writable.
bool replace_code_word(app_pc at, uint32_t word);
