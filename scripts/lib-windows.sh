# shellcheck shell=bash
#
# What the scripts for 32-bit Windows share beyond lib.sh, which they have sourced before; sourced by bash, never run.

# shellcheck disable=SC2034,SC2154 # variables of the scripts that source this file, and of lib.sh
windows_compiler=i686-w64-mingw32-g++-posix

# Xerces-C and what else programs for Windows are built with: made once, by windows-dependencies.sh.
windows_dependencies=$top/build/windows-dependencies

# Wine: its programs, those of the distribution, unpacked here and nowhere else, and its drive C.
wine_folder=$top/build/wine
wine_root=$wine_folder/root
wine_prefix=$wine_folder/prefix

# own_apt FOLDER ARCHITECTURE COMMAND...: an apt program whose lists, state and cache lie in FOLDER, and which knows only
# ARCHITECTURE, and the distribution's own packages and sources. It needs no root, and the system's packages stay what they
# are: to the system, a foreign architecture means the same version of a library on both, at every moment.
own_apt() {
    local folder=$1 architecture=$2
    shift 2
    if [ ! -f "$folder/apt.conf" ]; then
        own_apt_root "$folder" "$architecture"
    fi
    APT_CONFIG=$folder/apt.conf "$@"
}

# The distribution's mirrors, as the system's apt knows them: a line "ADDRESS RELEASE" each, security and updates among them.
distribution_mirrors() {
    local codename
    codename=$(. /etc/os-release && printf '%s' "${VERSION_CODENAME:-stable}")
    apt-get indextargets --format "\$(REPO_URI) \$(RELEASE) \$(COMPONENT)" 'Created-By: Packages' |
        awk -v codename="$codename" '$3 == "main" && ($2 == codename || $2 ~ "^(" codename "|stable)(-security|-updates|/updates)?$") {
            print $1, $2
        }' | sort -u
}

own_apt_root() {
    local folder=$1 architecture=$2 mirror release
    mkdir -p "$folder/state/lists/partial" "$folder/cache/archives/partial"
    : >"$folder/state/status"
    while read -r mirror release; do
        printf 'deb [arch=%s] %s %s main\ndeb-src %s %s main\n' "$architecture" "$mirror" "$release" "$mirror" "$release"
    done < <(distribution_mirrors) >"$folder/sources.list"
    # The system's own Signed-By goes with the system's lists: here the distribution's keys are named at once.
    local keys=/usr/share/keyrings/debian-archive-keyring.gpg
    if [ -f "$keys" ]; then
        sed -i -e "s|^deb \[|deb [signed-by=$keys |" -e "s|^deb-src |deb-src [signed-by=$keys] |" "$folder/sources.list"
    fi
    cat >"$folder/apt.conf" <<CONFIGURATION
Dir::State "$folder/state";
Dir::State::status "$folder/state/status";
Dir::Cache "$folder/cache";
Dir::Etc::SourceList "$folder/sources.list";
Dir::Etc::SourceParts "-";
APT::Architecture "$architecture";
APT::Architectures { "$architecture"; };
APT::Install-Recommends "false";
APT::Sandbox::User "$(id -un)";
CONFIGURATION
}

# own_apt_update FOLDER ARCHITECTURE: a mirror that is just being filled gives some lists and not others; whether they are
# enough is seen when a package is asked for.
own_apt_update() {
    own_apt "$1" "$2" apt-get update -qq || say "Not every list of packages could be had"
}

# in_wine COMMAND...: one of Wine's programs, with what it finds the others and its drives by. No window, no debugger. Names of
# files and arguments come in UTF-8. USER names the user, whose application data lie where KELVOBASE_APPDATA says.
in_wine() (
    export LC_ALL=C.UTF-8
    export USER=${USER:-somebody}
    export KELVOBASE_APPDATA=${KELVOBASE_APPDATA:-C:\\users\\$USER\\AppData\\Roaming}
    unset DISPLAY WAYLAND_DISPLAY
    unset TMPDIR # by which programs look for Wine's server
    export WINEPREFIX=$wine_prefix WINEARCH=win32 WINEDEBUG=${WINEDEBUG:--all}
    export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe,winedbg.exe="
    if [ -d "$wine_root" ]; then
        export LD_LIBRARY_PATH=$wine_root/lib/i386-linux-gnu:$wine_root/usr/lib/i386-linux-gnu
        export PATH=$wine_root/usr/lib/wine:$PATH
    fi
    exec "$@"
)

# keep_wine_running: from here on, until stop_wine, programs need not wait for Wine's server and its services. The first program
# starts the services, which hold its streams as long as they run: so that is one whose output nobody waits for.
keep_wine_running() {
    stop_wine
    in_wine wineserver --persistent
    in_wine timeout 60 wine cmd /c exit </dev/null >/dev/null 2>&1
}

stop_wine() {
    in_wine timeout 30 wineserver --kill --wait || true
}
