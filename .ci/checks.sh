# shellcheck shell=bash
# What .ci/run and ./dev nightly share: sourced by them. Runs one ./dev after the other, says how long
# each took, and at the end what failed; the tests' own counts stand last.
failed=()
done_steps=()
counted=()

# run NAME ARGUMENTS...: ./dev with these arguments.
run() {
    local name=$1 output status begin=$SECONDS counts
    shift
    echo "== ./dev $*"
    output=$(./dev "$@" 2>&1)
    status=$?
    printf '%s\n' "$output"
    # One line a run; of a command that has several, headed "== NAME", each.
    while IFS= read -r counts; do
        counted+=("$name$counts")
    done < <(awk '/^== / {part = ", " $2}
        /^[0-9]+ passed, [0-9]+ failed(, [0-9]+ skipped)?$/ {told[part] = $0; order[part] = NR}
        END {for (part in told) print order[part] "\t" part ": " told[part]}' <<<"$output" | sort -n | cut -f 2-)
    done_steps+=("$((SECONDS - begin)) s  ./dev $*")
    if [[ $status -ne 0 ]]; then
        failed+=("$*")
    fi
    return "$status"
}

# Prints all that; fails when one failed. The first counts are the README's test command's.
summarise() {
    echo "== summary"
    printf '%s\n' "${done_steps[@]}"
    echo "$SECONDS s in all"
    if [[ ${#failed[@]} -gt 0 ]]; then
        printf 'FAIL: ./dev %s\n' "${failed[@]}"
    else
        echo "OK: every step"
    fi
    if [[ ${#counted[@]} -gt 1 ]]; then
        printf '%s\n' "${counted[@]:1}"
    fi
    echo "${counted[0]#*: }"
    [[ ${#failed[@]} -eq 0 ]]
}
