// The fast handlers: each carries out one instruction form directly on a
// thread's cpu_state at the fixed vector length. One header per family.
#pragma once

#include "bitwise.h"
#include "compare.h"
#include "count.h"
#include "fp_arith.h"
#include "gather_scatter.h"
#include "int_arith.h"
#include "load_store.h"
#include "permute.h"
#include "predicate.h"
#include "reduce.h"
