#!/usr/bin/env bash
# check_the_profile_maker.sh MAKER: proves that check-profiles fails when the program's own import or export disagrees with
# a file. Prints one line a case, and ends with 1 when the check said the wrong thing.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
maker=$(realpath "$1")
scripts=$here/../../scripts
source "$here/profiles.sh"
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
wrong=0

# expect SAYING CHANGE: what the check says after sed has made a CHANGE of a file; nothing for a good one.
expect() {
  local saying=$1 change=$2 said
  lay_out_profiles "$place/tree"
  sed -i "$change" "$place/tree/profiles/Chess.prf"
  said=$("$scripts/check-profiles" --with "$maker" "$place/tree" || true)
  if [ -z "$saying" ] && [ -z "$said" ] || [ -n "$saying" ] && [[ $said == *"$saying"* ]]; then
    echo "ok: check-profiles says: ${saying:-nothing}"
  else
    echo "WRONG: check-profiles says: ${said:-nothing}; and should say: ${saying:-nothing}"
    wrong=1
  fi
}

expect '' ''
expect 'Chess.prf: the import says: Unable to parse file' 's/BeginPort=4000/BeginPort=many/'
expect 'Chess.prf: the import says: Some portions of the file could not be parsed.' '0,/^<.Mapping>/{/^<.Mapping>/d}'
# The same profile twice: the second one gets a number behind its name.
expect 'Chess.prf: the import takes in: ' '1h;1!H;$!d;g;G'
expect 'Chess.prf: the export writes something else' 's/^<\/MapProfile>/ &/'
exit "$wrong"
