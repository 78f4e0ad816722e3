#!/bin/sh
# Protected databases that we write are decrypted by another library from the manifest alone, and those that it encrypts
# open here. Skipped (exit code 77) without python3 or libgcrypt.
#   protected_files.sh DATABASE_TOOL
set -eu

tool=$1
here=$(dirname "$0")
command -v python3 >/dev/null 2>&1 || exit 77
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
RVB_PASSWORD="Schlüssel 1"
export RVB_PASSWORD

"$tool" make "$work/plain.rvb"
"$tool" dump "$work/plain.rvb" >"$work/expected.txt"

for cipher in "Blowfish CFB" "Twofish CFB"; do
  cp "$work/plain.rvb" "$work/ours.rvb"
  "$tool" protect "$work/ours.rvb" "$cipher"
  "$tool" dump "$work/ours.rvb" | cmp - "$work/expected.txt"
  python3 "$here/protected_rvb.py" decrypt "$work/ours.rvb" "$work/decrypted.rvb"
  "$tool" dump "$work/decrypted.rvb" | cmp - "$work/expected.txt"
  python3 "$here/read_rvb.py" "$work/decrypted.rvb" | cmp - "$work/expected.txt"
  if RVB_PASSWORD="Schlüssel 2" python3 "$here/protected_rvb.py" decrypt "$work/ours.rvb" "$work/x.rvb" 2>"$work/log"; then
    echo "another password decrypts $cipher"; exit 1
  fi
  grep -q 'digest of config.dat' "$work/log"
  if python3 "$here/protected_rvb.py" decrypt-public "$work/ours.rvb" "$work/x.rvb" 2>"$work/log"; then
    echo "no password decrypts $cipher"; exit 1
  fi

  "$tool" protect-read-only "$work/ours.rvb" "$cipher"
  env -u RVB_PASSWORD python3 "$here/protected_rvb.py" decrypt-public "$work/ours.rvb" "$work/public.rvb"
  "$tool" dump "$work/public.rvb" | cmp - "$work/expected.txt"
  env -u RVB_PASSWORD "$tool" dump "$work/ours.rvb" | cmp - "$work/expected.txt"

  python3 "$here/protected_rvb.py" encrypt "$work/plain.rvb" "$work/theirs.rvb" "$cipher"
  "$tool" dump "$work/theirs.rvb" | cmp - "$work/expected.txt"
  if RVB_PASSWORD="Schlüssel 2" "$tool" dump "$work/theirs.rvb" >/dev/null 2>"$work/log"; then
    echo "another password opens $cipher"; exit 1
  fi
  grep -q 'error 37' "$work/log"
  echo "$cipher agrees"
done
