#!/usr/bin/env bash
# An exec chain under zorvo prints what its programs print on the reference
# one by one (the reference processor cannot follow an exec or a spawn into
# another AArch64 program), and ends with the last program's status. The
# first program spawns the second (its output through a pipe that a file
# action of the spawn sets up), then executes it; the second executes,
# through PATH, a shell script without a #! line. Then the first spawns the
# second found on PATH, by posix_spawnp.
# usage: check_exec_chain.sh FIRST SECOND
# environment: ZORVO (the launcher), REFERENCE (the reference command)
set -uo pipefail
first=$1 second=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
read -r -a reference <<<"$REFERENCE"
mkdir "$work/bin"
printf 'echo "chain done: $*"\n' >"$work/bin/chain_end"
chmod 755 "$work/bin/chain_end"
export PATH="$work/bin:$PATH"

{
  "${reference[@]}" "$first"
  "${reference[@]}" "$second" | sed 's/^/child: /'
  echo "spawned child: status ${PIPESTATUS[0]}"
  "${reference[@]}" "$second" chain_end last
} >"$work/ref.out" 2>"$work/ref.err"
ref_status=$?
"$ZORVO" -- "$first" --spawn "$second" "$second" chain_end last >"$work/zorvo.out" 2>"$work/zorvo.err"
zorvo_status=$?
ln -s "$second" "$work/bin/spawned_by_name"
{
  "${reference[@]}" "$first"
  "${reference[@]}" "$second" | sed 's/^/child: /'
  echo "spawned child: status ${PIPESTATUS[0]}"
} >"$work/ref_spawnp.out" 2>&1
"$ZORVO" -- "$first" --spawn spawned_by_name >"$work/zorvo_spawnp.out" 2>&1
spawnp_status=$?

failed=0
if ! cmp -s "$work/ref.out" "$work/zorvo.out"; then
  echo "FAIL: standard output differs (reference <, zorvo >):" >&2
  diff "$work/ref.out" "$work/zorvo.out" >&2
  cat "$work/zorvo.err" >&2
  failed=1
fi
if [ "$ref_status" != "$zorvo_status" ]; then
  echo "FAIL: exit status $zorvo_status under zorvo, $ref_status on the reference" >&2
  failed=1
fi
if ! cmp -s "$work/ref_spawnp.out" "$work/zorvo_spawnp.out" || [ "$spawnp_status" != 0 ]; then
  echo "FAIL: posix_spawnp through PATH (status $spawnp_status; reference <, zorvo >):" >&2
  diff "$work/ref_spawnp.out" "$work/zorvo_spawnp.out" >&2
  failed=1
fi
# A second program that lost zorvo would have died on its first SVE word.
grep -q "^child: second:" "$work/zorvo.out" && grep -q "^second:" "$work/zorvo.out" || failed=1
# Each program of the chain writes its own trace, the first before its exec;
# the spawned second program has a trace of its own too.
EXEC_CHAIN_TRACE=1 "$ZORVO" --trace-dir "$work" -- "$first" --spawn "$second" "$second" chain_end \
  last >/dev/null 2>&1 || failed=1
for expected in "$first 1" "$second 2"; do
  read -r program count <<<"$expected"
  name=$(basename "$program")
  found=$(ls "$work"/zorvo."$name".*.trace 2>/dev/null | wc -l)
  if [ "$found" != "$count" ]; then
    echo "FAIL: $found trace files of $name in the trace directory, not $count:" >&2
    ls "$work" >&2
    failed=1
  fi
done
exit $failed
