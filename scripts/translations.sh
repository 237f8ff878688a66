#!/bin/sh
# Brings the catalogues in translations/ up to date with the texts in the source. With --check it
# changes nothing and fails when a catalogue is out of date or a text has no translation.
set -eu
cd "$(dirname "$0")/.."
lupdate=$(command -v lupdate || echo /usr/lib/qt6/bin/lupdate)
languages="de es fr ja"

catalogues=translations
if [ "${1-}" = --check ]; then
  catalogues=$(mktemp -d)
  trap 'rm -rf "$catalogues"' EXIT
  cp translations/*.ts "$catalogues"
fi
result=0
for language in $languages; do
  name=tarnwick_$language.ts
  "$lupdate" -silent -I . core common utility bar -tr-function-alias QT_TRANSLATE_NOOP+=translatable \
    -locations none -no-obsolete -source-language en -target-language "$language" \
    -ts "$catalogues/$name" 2>/dev/null
  [ "${1-}" = --check ] || continue
  if ! cmp -s "translations/$name" "$catalogues/$name"; then
    echo "translations/$name is out of date: run scripts/translations.sh" >&2
    result=1
  fi
  if grep -n 'type="unfinished"' "translations/$name" >&2; then
    echo "translations/$name is not complete" >&2
    result=1
  fi
done
exit $result
