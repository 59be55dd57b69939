# Shared by demo.sh and test.sh: installing what is missing, and building. To be sourced from the repository's root.

# What building, running and testing take, by Debian package.
build_packages=(
    ca-certificates ccache cmake g++ ninja-build
    flatbuffers-compiler libflatbuffers-dev libfmt-dev
    libcli11-dev libprotobuf-dev libprotozero-dev libsqlite3-dev libsqlitecpp-dev nlohmann-json3-dev protobuf-compiler
    qt6-base-dev libgl-dev qt6-qpa-plugins qt6-l10n-tools qt6-tools-dev qtkeychain-qt6-dev
    qt6-declarative-dev qml6-module-qtqml qml6-module-qtqml-workerscript qml6-module-qtquick # views
    libqt6svg6 qt6-svg-dev qt6-image-formats-plugins # read SVG and WebP
    qt6-httpserver-dev qt6-websockets-dev # the second since the first is of no use without it, and does not ask for it
)
test_packages=(
    dbus-daemon git gnome-keyring libgmock-dev libgtest-dev libsecret-1-0 python3-cbor2
    fonts-dejavu-core # the one font of pictures that are compared
    libgl1-mesa-dri xvfb # windows on a display
)
bench_packages=(
    libbenchmark-dev libfasttext-dev libxapian-dev
)

# install_packages PACKAGE…: installs those that are missing, quietly. Does nothing where there is no apt-get.
install_packages() {
    command -v apt-get >/dev/null || return 0
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    local as_root=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || { echo "Missing packages, and no right to install them: ${missing[*]}" >&2; return 1; }
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" apt-get -qq update &&
           "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install -y --no-install-recommends \
               "${missing[@]}"; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

# build PRESET [CMAKE ARGUMENT…]: configures and builds, telling of it only what goes wrong.
build() {
    local preset=$1
    shift
    echo "Building ($preset)"
    local log
    log=$(mktemp)
    if ! { cmake --preset "$preset" "$@" && cmake --build --preset "$preset"; } >"$log" 2>&1; then
        # The whole of a long build log helps nobody; what failed stands at its end.
        tail -n 100 "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
