#!/usr/bin/env bash
# Builds the library and uses it: eight threads in four processes log a real file line by line into one file, which
# rotates meanwhile. Then counts the records.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

log_folder=$PWD/build/quickstart-log
log=$log_folder/server.log
# The beginning of a record of the example: the time, and the header's groups up to the dispatcher's name.
record='^[0-9-]{10} [0-9:.]{12}([+-][0-9:]{5})? \[HOST:.*\]\[log_lines\]\[Info\]\['

choose_inputs() {
  inputs=(/var/log/dpkg.log)
  [[ -s ${inputs[0]} && -r ${inputs[0]} ]] && return
  inputs=(/usr/share/common-licenses/*)
  [[ -s ${inputs[0]} ]] && return
  inputs=(/usr/share/doc/*/copyright)
}

choose_limit() {
  local lines bytes
  lines=$(cat "${inputs[@]}" | wc -l)
  bytes=$(cat "${inputs[@]}" | wc -c)
  # A header is about 130 bytes. So the file fills up about six times, and twenty backups keep every record.
  limit=$(((bytes + lines * 130) / 6 + 500))
}

scripts/install-dependencies.sh build
echo "Building the library and its example (preset quickstart)."
cmake --preset quickstart --log-level=WARNING >/dev/null
cmake --build --preset quickstart

choose_inputs
choose_limit
rm -rf "$log_folder"
echo "Logging each line of ${#inputs[@]} file(s), beginning with ${inputs[0]}, to $log"
output=$(build/quickstart/examples/log_lines --threads 2 --processes 4 --limit "$limit" --backups 20 \
  --file "$log" "${inputs[@]}")

echo
echo "The beginning and the end of the file:"
head -n 3 "$log"
echo "..."
tail -n 2 "$log"

echo
echo "The file and its backups, newest first, each with its size; the limit was $limit bytes:"
stat --printf='%10s  %n\n' "$log"*

echo
logged=${output%% *}
found=$(cat "$log"* | LC_ALL=C grep --text --count --extended-regexp "$record" || true)
echo "$logged lines were logged, $found records were found."
((logged > 0 && logged == found))
