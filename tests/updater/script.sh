#!/bin/sh
echo "started with $# arguments" > "$0.started"
