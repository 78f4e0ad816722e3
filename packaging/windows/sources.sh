# Debian's source packages, fetched for the builds for Windows. To be sourced by a bash script.

# The folder that holds fetched sources and built libraries, outside the checkout.
windows_cache=${ROWVANE_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/rowvane/windows}

# as_root COMMAND...
as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# The addresses, releases and components of Debian's own repositories that this machine uses. Not those of security
# updates: not every mirror holds their sources, and each point release takes them over.
debian_repositories() {
  apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
    grep -v -e '-security ' | sort -u
}

# Package lists of our own, so that the machine's list of repositories stays as it is.
prepare_source_lists() {
  local apt=$windows_cache/apt repositories
  [ -z "${apt_options:-}" ] || return 0
  repositories=$(debian_repositories)
  if [ -z "$repositories" ]; then
    as_root apt-get update -qq
    repositories=$(debian_repositories)
  fi
  if [ -z "$repositories" ]; then
    echo "No Debian package repository is set up on this machine." >&2
    return 1
  fi
  mkdir -p "$apt/sources" "$apt/state/lists/partial" "$apt/cache/archives/partial"
  sed 's,^,deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] ,' <<<"$repositories" >"$apt/sources/debian.list"
  apt_options=(-qq -o "Dir::Etc::SourceList=/dev/null" -o "Dir::Etc::SourceParts=$apt/sources"
    -o "Dir::State=$apt/state" -o "Dir::Cache=$apt/cache" -o "APT::Sandbox::User=$(id -un)")
  apt-get "${apt_options[@]}" update
}

# fetch_source PACKAGE ORIGINAL_TAR SHA256 FOLDER
# Unpacks the source package, with Debian's patches, as FOLDER. Fails when the original archive is not the expected
# one: another version needs its recipe looked at.
fetch_source() {
  local package=$1 tar=$2 sha256=$3 folder=$4 download=$windows_cache/download/$1
  prepare_source_lists || return 1
  rm -rf "$download" "$folder"
  mkdir -p "$download" "$(dirname "$folder")"
  (cd "$download" && apt-get "${apt_options[@]}" source --only-source --download-only "$package") || return 1
  if ! (cd "$download" && sha256sum --quiet --check - <<<"$sha256  $tar"); then
    echo "The source package $package does not hold the expected $tar." >&2
    return 1
  fi
  dpkg-source --no-check -x "$download"/*.dsc "$folder" >"$download/unpack.log" 2>&1 || { cat "$download/unpack.log" >&2; return 1; }
  rm -rf "$download"
}
