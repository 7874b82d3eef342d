#!/bin/sh
# Plays the batch file where there is no cmd: lays what was unpacked over the installation, file by file. At a
# file that has a pipe NAME.gate beside it, it waits until that is opened.
echo "started with $# arguments" > "$0.started"
echo $$ > "$0.pid"
cd "$(dirname "$0")" || exit
[ -d NelvoUnCompress ] || exit
rm -f NelvoUnCompress/NelvoUpdateLog.txt NelvoUnCompress/updateConfig.json NelvoUnCompress/NelvoUpdateState.dat
for file in NelvoUnCompress/*; do
    name=${file#*/}
    echo "$name" > "$0.at"
    [ -p "$name.gate" ] && read -r _ < "$name.gate"
    cp -R "$file" .
done
rm -rf NelvoUnCompress
rm "$0"
