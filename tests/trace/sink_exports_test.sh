#!/usr/bin/env bash
# libtracesink exports exactly the five operations, under the link names the
# emulator uses: four plain C names and trace_mem with its parameter type.
# Usage: sink_exports_test.sh NM LIBRARY
set -euo pipefail
actual=$("$1" -D --defined-only "$2" | awk '$2 == "T" { print $3 }' | sort)
expected=$(printf '%s\n' _Z9trace_memRK13sve_mem_ref_t incr_count sve_exit sve_init sve_vector_length | sort)
if [ "$actual" != "$expected" ]; then
  printf 'exported functions:\n%s\nexpected:\n%s\n' "$actual" "$expected"
  exit 1
fi
