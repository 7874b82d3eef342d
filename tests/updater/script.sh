#!/bin/sh
# Replaces the batch file on systems without cmd: copies the unpacked files over the installation, one by one. If the
# installation contains a pipe NAME.gate, the script waits before the file NAME until the pipe is opened.
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
