# shellcheck shell=bash
# How ./dev tells a person what it does: sourced by it. A step keeps its whole output in a file below
# $logs, shows one line that moves on a terminal and a line a tenth elsewhere, and when it fails its
# first error. The sourcing script says where $logs is.

onTerminal=
if [[ -t 2 ]]; then
    onTerminal=yes
fi

# say_passing TEXT: a line that the next one takes the place of on a terminal.
say_passing() {
    if [[ -n $onTerminal ]]; then
        printf '\r\033[K%s' "$1" >&2
    fi
}

clear_line() {
    say_passing ""
}

# minutes SECONDS: as 1:05.
minutes() {
    printf '%d:%02d' $(($1 / 60)) $(($1 % 60))
}

# tell_progress NAME DONE TOTAL UNIT: of a step that began at $SECONDS = 0.
toldTenth=-1
tell_progress() {
    local name=$1 done=$2 total=$3 unit=$4 left=
    if [[ $total -eq 0 ]]; then
        return
    fi
    if [[ -n $onTerminal ]]; then
        if [[ $done -gt 0 && $SECONDS -ge 2 ]]; then
            left=", $(minutes $((SECONDS * (total - done) / done))) left"
        fi
        say_passing "$name: $done of $total $unit, $((100 * done / total)) %$left"
    elif [[ $((10 * done / total)) -gt $toldTenth ]]; then
        toldTenth=$((10 * done / total))
        if [[ $toldTenth -gt 0 && $total -ge 10 ]]; then
            echo "$name: $done of $total $unit" >&2
        fi
    fi
}

# Reads what ninja prints, and tells the progress.
watch_build() {
    local name=$1 line
    toldTenth=-1
    while IFS= read -r line; do
        if [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]]; then
            tell_progress "$name" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}" steps
        fi
    done
}

# Reads what apt prints, and tells how far fetching and installing are, which it says for programs.
watch_packages() {
    local kind rest percent phase=""
    while IFS=: read -r kind _ percent rest; do
        case $kind in
            dlstatus) kind="packages fetched" ;;
            pmstatus) kind="packages installed" ;;
            *) continue ;;
        esac
        if [[ $kind != "$phase" ]]; then
            phase=$kind
            toldTenth=-1
            SECONDS=0
        fi
        tell_progress "$kind" "${percent%%.*}" 100 %
    done
}

# What went wrong, in one line where the cause is known: a pattern of the output, and what to do.
known_cause() {
    local log=$1 free
    free=$(df -Pm . | awk 'NR == 2 { print $4 }')
    if grep -qiE 'No space left on device|not enough free space' "$log" || [[ $free -lt 20 ]]; then
        echo "the disk is full ($free MB free in $PWD): make room and run it again"
    elif grep -qE 'Unable to locate package|has no installation candidate' "$log"; then
        echo "$(grep -m1 -oE 'Unable to locate package [^ ]+|Package .* has no installation candidate' "$log"):" \
            "add a package source that has it (Debian 12 and 13 do) and run it again"
    elif grep -qE 'Failed to fetch|Could not resolve|Could not connect|Unable to connect|Temporary failure' "$log"; then
        echo "packages cannot be fetched: see that this machine reaches its package sources, and run it again"
    elif grep -qE '(Killed|fatal error: Killed) signal terminated program|ran out of memory|virtual memory exhausted' "$log"; then
        echo "memory ran out: run it again with fewer jobs (VELMORANTH_JOBS=1 ./dev ...)"
    else
        return 1
    fi
}

# The first error in a file of output, with what belongs to it.
first_error() {
    local log=$1 error
    # A failed build step names its command first, which helps nobody; one that went well may name a file
    # called Error.
    error=$(awk '!length(seen) && (/^FAILED: / || /^\[[0-9]+\/[0-9]+\] /) { next }
         /(^|[^[:alnum:]_])(fatal error|[Ee]rror|undefined reference|Traceback)([^[:alnum:]_]|$)|^E: / {
             if (!length(seen) && length($0) < 2000) { seen = NR }
         }
         length(seen) && NR < seen + 12 { print }' "$log")
    if [[ -n $error ]]; then
        printf '%s\n' "$error"
    else
        tail -n 15 "$log"
    fi
}

# step NAME [--watch FUNCTION] COMMAND...: one line when it succeeds, the first error when not. Its output
# goes to the function too.
step() {
    local name=$1 watch="" log status=0
    shift
    if [[ $1 == --watch ]]; then
        watch=$2
        shift 2
    fi
    mkdir -p "$logs"
    log=$logs/${name// /-}.log
    SECONDS=0
    if [[ -n $watch ]]; then
        NINJA_STATUS='[%f/%t] ' "$@" </dev/null 2>&1 | tee "$log" | "$watch" "$name" || status=$?
    else
        say_passing "$name ..."
        "$@" </dev/null >"$log" 2>&1 || status=$?
    fi
    clear_line
    if [[ $status -eq 0 ]]; then
        echo "$name: OK ($(minutes "$SECONDS"))"
        return
    fi
    if ! known_cause "$log" | sed "s/^/$name: /" >&2; then
        first_error "$log" >&2
    fi
    echo "$name: FAIL (whole output in $log)" >&2
    return 1
}
