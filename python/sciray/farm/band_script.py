# band_script.py - the shell script that renders one band on whichever
# machine runs it, the same for every engine, and the result line it leaves:
#
#   sh -c SCRIPT sh SCIRAY SCENE I/N BAND_FILE LOG_FILE [SCIRAY_ARGUMENTS...]
#
# sciray writes under a temporary name that becomes BAND_FILE only when it
# succeeds, so a band file that exists was finished; a band that holds no
# row of the picture (more bands than rows) gets an empty BAND_FILE.
# sciray's standard error goes to LOG_FILE, which then ends with the result
# line "exit STATUS after MS ms", also printed on standard output.
import re

# No braces in the text: GNU parallel would take some for its replacement strings.
SCRIPT = r'''sciray=$1 scene=$2 band=$3 out=$4 log=$5
shift 5
mkdir -p "$(dirname "$out")" || exit 1
start=$(date +%s%N)
"$sciray" "$scene" "$out.tmp" -band "$band" "$@" >/dev/null 2>"$log"
status=$?
if [ "$status" -ne 0 ]; then
  rm -f "$out.tmp"
elif [ -e "$out.tmp" ]; then
  mv -f "$out.tmp" "$out" 2>>"$log" || status=1
else
  : >"$out"
fi
result="exit $status after $((($(date +%s%N) - start) / 1000000)) ms"
echo "$result" >>"$log"
echo "$result"
exit "$status"
'''

RESULT = re.compile(r'exit (\d+) after (\d+) ms')


def arguments(sciray, scene, task, band_file, log_file, threads):
    """The arguments after "sh -c SCRIPT sh" for one band."""
    return [sciray, scene, f'{task.index}/{task.count}', band_file, log_file, '-threads', str(threads)]


def parse_result(line):
    """(status, seconds) from a result line, or None when it is not one."""
    match = RESULT.fullmatch(line.strip())
    return (int(match[1]), int(match[2]) / 1000) if match else None


def log_lines(log_file):
    try:
        with open(log_file, errors='replace') as f:
            return f.read().splitlines(keepends=True)
    except OSError:
        return []


def logged_result(log_file):
    """The result of a band from its log, or None when it has none yet."""
    lines = log_lines(log_file)
    return parse_result(lines[-1]) if lines and lines[-1].endswith('\n') else None


def logged_error(log_file):
    """The last line sciray wrote on standard error before the result, if any."""
    lines = [line.strip() for line in log_lines(log_file) if line.strip()]
    if lines and parse_result(lines[-1]):
        lines.pop()
    return lines[-1] if lines else ''
