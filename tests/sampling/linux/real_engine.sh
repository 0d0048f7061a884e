#!/bin/bash
# A container engine of its own for one test, in a folder of its own.
#   real_engine.sh start FOLDER   starts it at FOLDER/d.sock with five running containers t1 to t5 (t1 last)
#   real_engine.sh stop FOLDER    removes the containers and ends the engine
# Exit status 77: this machine lacks what it takes, with the reason on standard output.
set -euo pipefail
action=$1
folder=$2
socket=unix://$folder/d.sock
engine() { docker -H "$socket" "$@"; }

lacking() {
  echo "$1"
  exit 77
}

start() {
  [ "$(id -u)" = 0 ] || lacking "starting a container engine takes root"
  for tool in dockerd docker busybox tar; do
    command -v "$tool" >/dev/null || lacking "$tool is not installed"
  done
  local root=$folder/rootfs
  mkdir -p "$root"/{bin,etc,proc,sys,dev,tmp}
  cp "$(command -v busybox)" "$root/bin/"
  ln -s busybox "$root/bin/sleep"
  echo 'root:x:0:0:root:/:/bin/sleep' >"$root/etc/passwd"
  setsid dockerd --iptables=false --ip6tables=false --bridge=none --storage-driver=vfs \
    --data-root "$folder/data" --exec-root "$folder/exec" --pidfile "$folder/d.pid" -H "$socket" \
    >"$folder/d.log" 2>&1 </dev/null &
  local tries
  for tries in $(seq 300); do
    engine version >/dev/null 2>&1 && break
    sleep 0.1
  done
  engine version >/dev/null 2>&1 || lacking "dockerd does not run here: $(tail -n 1 "$folder/d.log")"
  tar -C "$root" -c . | engine import - tiny:1 >/dev/null
  local number
  for number in 5 4 3 2 1; do
    engine run -d --init=false --name "t$number" --network=none -m 64m tiny:1 sleep 600 >/dev/null
  done
}

stop() {
  [ -f "$folder/d.pid" ] || exit 0
  local pid
  pid=$(cat "$folder/d.pid")
  engine ps -aq | xargs -r docker -H "$socket" rm -f >/dev/null
  kill "$pid"
  local tries
  for tries in $(seq 300); do
    kill -0 "$pid" 2>/dev/null || exit 0
    sleep 0.1
  done
  kill -9 "$pid"
}

"$action"
