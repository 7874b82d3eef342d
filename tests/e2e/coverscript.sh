#!/bin/sh
# Started in place of the batch file that its one argument names, seen from where it is started. Lays what was
# unpacked over the installation, file by file, and waits at one that has a pipe NAME.gate beside it until that
# is opened.
echo "$@" > "$0.started"
echo $$ > "$0.pid"
cd "$0 ${1%/*}" || exit # what stands before the blank and behind it
for file in NelvoUnCompress/*; do
    name=${file#*/}
    echo "$name" > "$0.at"
    [ -p "$name.gate" ] && read -r _ < "$name.gate"
    cp -R "$file" .
done
rm -rf NelvoUnCompress
