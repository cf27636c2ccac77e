# shellcheck shell=sh
# Packages of Debian, for tools/setup-*: sourced, not run.
# What can't be had makes it 1.
# shellcheck disable=SC2034 # who sources this exits with it
status=0

# What can't be had is said in capitals.
missing()
{
    echo "NOT TO BE HAD: $*" >&2
    # shellcheck disable=SC2034 # as above
    status=1
}

as_root()
{
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# Installs the packages named that aren't there.
install_packages()
{
    wanted=""
    for package in "$@"; do
        dpkg-query -W -f='${Status}\n' "$package" 2>/dev/null | grep -q '^install ok installed$' ||
            wanted="$wanted $package"
    done
    [ -n "$wanted" ] || return 0
    as_root apt-get update -q || echo "$0: apt-get update failed, trying with the lists at hand" >&2
    # shellcheck disable=SC2086 # a list of names
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $wanted ||
        missing "PACKAGES$wanted"
}

# unpack_foreign ARCHITECTURE DIRECTORY PACKAGE[=VERSION]...
#
# Unpacks packages of another architecture into DIRECTORY/tree. apt gets private lists, so that the machine's own
# architecture settings stay as they are.
unpack_foreign()
{
    foreign=$1
    directory=$2
    shift 2
    mkdir -p "$directory/lists/partial" "$directory/cache/archives/partial" "$directory/tree" || return 1
    for package in "$@"; do
        name=${package%%=*}
        set -- "$@" "$name:$foreign${package#"$name"}"
        shift
    done
    (
        cd "$directory" || exit 1
        private_apt()
        {
            apt-get -q -o APT::Architecture="$foreign" -o APT::Architectures::="$foreign" \
                -o Dir::State::Lists="$directory/lists" -o Dir::Cache="$directory/cache" \
                -o APT::Sandbox::User=root "$@"
        }
        # An index that can't be had need not matter: the download tells.
        private_apt update || true
        private_apt download "$@"
    ) || return 1
    for package in "$directory"/*.deb; do
        dpkg -x "$package" "$directory/tree" || return 1
    done
}
