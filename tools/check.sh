#!/usr/bin/env bash
# Static analysis of everything but the tests, which the sanitizers watch: cppcheck, then clang-tidy with the
# rules of .clang-tidy. Silent but for remarks; ends with their status.
set -uo pipefail
cd "$(dirname "$0")/.."
. tools/setup.sh

install_packages "${TEST_PACKAGES[@]}" clang clang-tidy cppcheck libbenchmark-dev
remarks=0

# What is suppressed is wrong here: records that are read by structured bindings count as unused, seams that are
# bound at link time as defined twice, seam and callback parameters as open to "const"; -Wshadow keeps the
# names apart that can be mistaken; and a loop is at times plainer than an algorithm.
suppressed=(missingIncludeSystem unusedStructMember ctuOneDefinitionRuleViolation constParameter
    constParameterCallback constVariable shadowFunction useStlAlgorithm)
cppcheck --std=c++20 --language=c++ --library=googletest --enable=warning,style,performance,portability \
    --quiet --error-exitcode=1 "${suppressed[@]/#/--suppress=}" -I. \
    app program setup files comm monitor library convert bench fuzz tools || remarks=1

# tidy PRESET PATTERN ARGUMENT...: the sources of the preset whose path the pattern finds
tidy() {
    local preset=$1 pattern=$2
    shift 2
    cmake --preset "$preset" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >/dev/null || exit
    run-clang-tidy -quiet -p "build/$preset" -extra-arg=-Wno-unknown-warning-option "$@" "$pattern" 2>/dev/null |
        grep -vE '^clang-tidy|^$'
    ((PIPESTATUS[0] == 0)) || remarks=1
}

tidy fuzz "$PWD/[a-z]+/"
tidy bench "$PWD/bench/" "-checks=-clang-analyzer-*" # which takes the variable of a benchmark's loop for dead
# clang does not know where Debian keeps the C++ headers for Windows; GCC's own headers it must not see.
mapfile -t headers < <(x86_64-w64-mingw32-g++-posix -E -x c++ -v /dev/null 2>&1 | sed -n 's|^ \(/.*/c++.*\)|-extra-arg=-isystem\1|p')
screens=$(sed -nE 's|^    ([a-z]+/[A-Za-z0-9_]+)\.cpp\)?$|\1|p' cmake/program.cmake | paste -sd'|')
tidy win64 "$PWD/(app/main|bench/start_up|$screens)\\.cpp" -extra-arg-before=--target=x86_64-w64-mingw32 "${headers[@]}"
exit $remarks
