# shellcheck shell=bash
# How sources become a Mach-O library for the phone: arm64, iOS 12.0, and the slice of it for processors
# with pointer authentication (arm64e). Sourced, from the top folder, by what builds one:
# scripts/device-build, and the tests of the checker.

# Folders of the machine have no place in a build for another system.
unset CPATH C_INCLUDE_PATH CPLUS_INCLUDE_PATH OBJC_INCLUDE_PATH LIBRARY_PATH SDKROOT
export LC_ALL=C

readonly deviceInstallName=/Library/MobileSubstrate/DynamicLibraries/VelMoranth.dylib
readonly deviceCxxSymbols=device/libcxx-ios12-symbols.txt

deviceCompiler=(clang++-19)
if command -v ccache >/dev/null; then
    deviceCompiler=(ccache clang++-19)
fi

# Without -isysroot the compiler would take the headers of this machine's own system.
readonly deviceTarget=arm64-apple-ios12.0
deviceCompileFlags=(
    -target "$deviceTarget"
    -isysroot "$PWD/device/sysroot"
    -nostdinc++ -isystem device/cxx -isystem /usr/lib/llvm-19/include/c++/v1
    -std=c++20 -Oz -DNDEBUG -fvisibility=hidden -fvisibility-inlines-hidden
    -ffunction-sections -fdata-sections "-ffile-prefix-map=$PWD=."
    # What lasts as long as the process is not taken apart at its end: other threads may still use it.
    -fno-c++-static-destructors
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
)

# Classic fix-ups, absolute method lists and a signature of its own are what iOS 12 loads; the linker
# would choose them by the target, and is told all the same.
deviceLinkFlags=(
    -arch arm64 -dylib -install_name "$deviceInstallName"
    -current_version 1.0 -compatibility_version 1.0
    -syslibroot "$PWD/device/sysroot" -F "$PWD/device/sysroot/Library/Frameworks"
    -no_fixup_chains -no_objc_relative_method_lists -adhoc_codesign
    -dead_strip -dead_strip_dylibs -undefined error
    --icf=safe # functions that are the same, of which templates make many, are kept once
    -lobjc -lSystem -lc++ -framework CoreFoundation -framework Foundation -framework UIKit
    -framework CoreGraphics -framework CydiaSubstrate
)
devicePlatform=(-platform_version ios 12.0 13.0)

# compile_for_device OBJECTS FLAGS... <SOURCES: OBJECTS/<source>.o for each source, a line each.
compile_for_device() {
    local objects=$1 source sources
    shift
    mapfile -t sources
    for source in "${sources[@]}"; do
        mkdir -p "$objects/${source%/*}"
    done
    printf '%s\n' "${sources[@]}" |
        xargs -P "${VELMORANTH_JOBS:-$(nproc)}" -I{} \
            "${deviceCompiler[@]}" "${deviceCompileFlags[@]}" "$@" -c {} -o "$objects/{}.o"
}

# For the slice. Its target would be arm64e, but for that the compiler raises the system to iOS 14. What
# else of pointers it could tell apart by their types is the platform's own way only since then.
readonly deviceProcessor=-mcpu=apple-a12
deviceSigningFlags=("$deviceProcessor" -fptrauth-intrinsics -fptrauth-calls -fptrauth-returns)

# compile_signed_for_device OBJECTS FLAGS... <SOURCES: as compile_for_device, with pointers signed. They are
# so in the assembly, and would be lost on the way into an object file.
compile_signed_for_device() {
    local objects=$1 jobs=${VELMORANTH_JOBS:-$(nproc)} source sources
    shift
    mapfile -t sources
    for source in "${sources[@]}"; do
        mkdir -p "$objects/${source%/*}"
    done
    printf '%s\n' "${sources[@]}" | xargs -P "$jobs" -I{} \
        "${deviceCompiler[@]}" "${deviceCompileFlags[@]}" "${deviceSigningFlags[@]}" "$@" -S {} -o "$objects/{}.s"
    printf '%s\n' "${sources[@]}" | xargs -P "$jobs" -n 20 scripts/arm64e/sign_assembly.py "$objects"
    printf '%s\n' "${sources[@]}" | xargs -P "$jobs" -I{} \
        clang++-19 -target "$deviceTarget" "$deviceProcessor" -c "$objects/{}.signed.s" -o "$objects/{}.o"
}

# write_cxx_stub FOLDER: what to link in place of the phone's C++ library. It has the symbols that are
# known to be in it, so that the linker refuses all others.
write_cxx_stub() {
    mkdir -p "$1"
    {
        echo "--- !tapi-tbd"
        echo "tbd-version:     4"
        echo "targets:         [ arm64-ios, arm64e-ios ]"
        echo "install-name:    '/usr/lib/libc++.1.dylib'"
        echo "current-version: 400.9"
        echo "exports:"
        echo "  - targets:     [ arm64-ios, arm64e-ios ]"
        echo "    symbols:     [ $(grep -v -e '^#' -e '^$' "$deviceCxxSymbols" | sort -u | paste -sd, -) ]"
        echo "..."
    } >"$1/libc++.tbd"
}

# Of what the linker says of an undefined symbol, one line.
# shellcheck disable=SC2016 # the fields are awk's
readonly undefinedSymbols='
    /error: undefined symbol: / { symbol = $NF; next }
    /^>>> referenced by / && symbol != "" {
        if (/-exported_symbol/) {
            print "device/exports.txt: lists " symbol ", which no source defines; take one away or write the other"
            symbol = ""
            next
        }
        sub(/^>>> referenced by (.*\/objects\/)?/, "")
        sub(/\.o:\(.*/, "")
        print $0 ": needs " symbol ", which the phone is not known to have; do without it, or list it in " \
            "the stub of the library that has it on iOS 12 (device/sysroot, device/libcxx-ios12-symbols.txt)"
        symbol = ""
        next
    }
    /^>>> / { next }
    { print }'

# link_for_device OUTPUT STUBS FLAGS-AND-OBJECTS...: the C++ library's stub is looked for in STUBS.
link_for_device() {
    local output=$1 stubs=$2
    shift 2
    ld64.lld-19 "${deviceLinkFlags[@]}" "${devicePlatform[@]}" -L"$stubs" "$@" -o "$output" 2>&1 |
        awk "$undefinedSymbols" >&2
}

# link_slice_for_device OUTPUT STUBS FLAGS-AND-OBJECTS...: of objects that are signed. What the linker leaves
# lies beside it.
link_slice_for_device() {
    local output=$1
    local argument objects=()
    for argument in "${@:3}"; do
        if [[ $argument == *.o ]]; then
            objects+=("$argument")
        fi
    done
    link_for_device "$output.linked" "${@:2}"
    scripts/arm64e/make_slice.py "$output.linked" "$output" "${objects[@]}"
}
