# What ./run, ./test and the scripts of tools/ share: packages, building and Wine. Sourced from the project's root.

PROGRAM_PACKAGES=(cmake ninja-build g++ g++-mingw-w64-x86-64-posix wine wine64 fonts-wine lrzsz python3)
TEST_PACKAGES=("${PROGRAM_PACKAGES[@]}" g++-mingw-w64-i686-posix libgtest-dev googletest nsis)

# Quiet, without the parts that want a download, and without a crash box or menu entries on this desktop.
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml,winedbg.exe,winemenubuilder.exe="

# Installs those of the given packages that are missing; asks nothing of apt when all are there.
install_packages() {
    local package missing=() as_root=()
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    echo "Installing ${missing[*]}"
    ((EUID == 0)) || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" </dev/null
}

# build PRESET [TARGET...]
build() {
    local preset=$1 target targets=()
    shift
    for target in "$@"; do
        targets+=(--target "$target")
    done
    cmake --preset "$preset" >/dev/null || return # each time: what it looks for may have been installed since
    cmake --build "build/$preset" "${targets[@]}"
}

# Makes DIRECTORY the Wine prefix of everything that follows, with PORT (a path) behind its COM1. GRAPHICS is
# "null" for a prefix that draws nothing and needs no display. A prefix that was made with the same
# arguments is kept.
use_prefix() {
    local directory=$1 port=$2 graphics=$3
    local made_with="$directory $port $graphics" stamp=$directory/made-with
    export WINEPREFIX=$directory
    [[ -O $directory && $(cat "$stamp" 2>/dev/null) == "$made_with" ]] && return
    echo "Preparing Wine in ${directory#"$PWD"/}"
    rm -rf "$directory"
    mkdir -p "$directory"
    start_wine
    wine reg add 'HKLM\Software\Wine\Ports' /v COM1 /d "$port" /f </dev/null >/dev/null 2>&1
    wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d "$graphics" /f </dev/null >/dev/null 2>&1
    stop_wine
    echo "$made_with" >"$stamp"
}

# Starts the server and its services with their output thrown away: they keep the streams of their first client.
# Ports are named at this moment.
start_wine() {
    wineserver >/dev/null 2>&1 || true # it may run already
    wine wineboot </dev/null >/dev/null 2>&1
}

stop_wine() {
    wineserver -k >/dev/null 2>&1 || true
    wineserver -w >/dev/null 2>&1 || true
}
