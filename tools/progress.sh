# What the scripts of this folder say while somebody waits; read with “.” by the others. Everything goes to
# standard error: standard output belongs to the program that is built. POSIX sh.

# Started with an empty environment, a shell finds its tools, but CMake not its own files.
PATH=${PATH:-/usr/local/bin:/usr/bin:/bin}
[ ! -d /opt/homebrew/bin ] || PATH=$PATH:/opt/homebrew/bin  # not in a path that nobody has prepared
export PATH

say() { echo "tarnwick: $*" >&2; }
fail() {
  say "$*"
  exit 1
}

# Shows how far something is: over one line on a terminal, as a line of its own elsewhere.
show_step() {
  if [ -t 2 ]; then
    columns=$(stty size 2>/dev/null <&2 | cut -d' ' -f2)
    printf '\r\033[K%.*s' "$((${columns:-80} - 1))" "$1" >&2
  else
    echo "$1" >&2
  fi
}
end_steps() { if [ -t 2 ]; then printf '\r\033[K' >&2; fi; }

# quote_log FILE: the end of a log, and where the rest is.
quote_log() {
  tail -n 30 "$1" >&2
  say "the whole log is $1"
}

# hold_build: at most one build of this checkout at a time; a second one waits for the first. The lock is the
# open file, so that it ends with the process, however that ends.
hold_build() {
  (mkdir -p build && : >>build/lock) 2>/dev/null \
    || fail "this folder cannot be written: $PWD. Please copy the checkout to a folder of yours."
  exec 9>>build/lock
  if command -v flock >/dev/null 2>&1; then
    flock --nonblock 9 || { say "another build of this checkout is running; waiting for it"; flock 9; }
  elif command -v perl >/dev/null 2>&1; then
    perl -MFcntl=:flock -e 'open my $lock, ">>&=", 9 or die; flock $lock, LOCK_EX or die'
  fi
}
