#!/usr/bin/env bash
# The preview server against nginx, both serving the same files on loopback and both on one core
# (the preview server is single-threaded; nginx runs one worker), measured with wrk:
#   - requests per second for a 10 KB file over kept-alive connections,
#   - MB/s for a 100 MB file,
# and the preview server's share of nginx's figure.
#
# bench_preview.sh [VETRA]   (default: build-preview-rel/bin/vetra, then build/bin/vetra)
# BENCH_DURATION (10s), BENCH_ROUNDS (3), BENCH_SMALL_CONNECTIONS (32), BENCH_LARGE_CONNECTIONS (4)
# tune the runs.
# wrk and nginx are installed from Debian when missing. Nothing is left running afterwards.
set -euo pipefail

repo=$(cd "$(dirname "$0")/.." && pwd)
vetra=${1:-}
if [[ -z $vetra ]]; then
    for candidate in "$repo/build-preview-rel/bin/vetra" "$repo/build/bin/vetra"; do
        [[ -x $candidate ]] && vetra=$candidate && break
    done
fi
[[ -n $vetra && -x $vetra ]] || { echo "bench_preview: no vetra binary; pass its path" >&2; exit 1; }
duration=${BENCH_DURATION:-10s}
rounds=${BENCH_ROUNDS:-3}
small_connections=${BENCH_SMALL_CONNECTIONS:-32}
large_connections=${BENCH_LARGE_CONNECTIONS:-4}

missing=()
command -v wrk >/dev/null 2>&1 || missing+=(wrk)
command -v nginx >/dev/null 2>&1 || [[ -x /usr/sbin/nginx ]] || missing+=(nginx)
if ((${#missing[@]})); then
    sudo=""
    [[ $(id -u) -ne 0 ]] && sudo=sudo
    echo "bench_preview: installing ${missing[*]}" >&2
    $sudo apt-get install -y --no-install-recommends "${missing[@]}" >/dev/null
fi
nginx_bin=$(command -v nginx || echo /usr/sbin/nginx)

work=$(mktemp -d)
vetra_pid=
nginx_pid=
cleanup() {
    [[ -n $vetra_pid ]] && kill -INT "$vetra_pid" 2>/dev/null && wait "$vetra_pid" 2>/dev/null || true
    [[ -n $nginx_pid ]] && kill -QUIT "$nginx_pid" 2>/dev/null && wait "$nginx_pid" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

# The sample, with two more files in its resource folder, readable by the unprivileged nginx.
cp -r "$repo/examples/welcome" "$work/"
resources=$work/welcome/welcome_res
head -c 10240 /dev/urandom >"$resources/small.bin"
head -c $((100 * 1024 * 1024)) /dev/urandom >"$resources/large.bin"
chmod -R a+rX "$work"

share=${VETRA_RESOURCE_PATH:-}
if [[ -z $share ]]; then
    for candidate in "$(dirname "$(dirname "$vetra")")/share/vetra-studio" "$repo/build/share/vetra-studio"; do
        [[ -f $candidate/resources/canvas/player/vtplayer.js ]] && share=$candidate && break
    done
fi
if [[ -z $share ]]; then
    # A stand-in player: the page is not what is measured.
    share=$work/share
    mkdir -p "$share/resources/canvas/player"
    cp "$repo/resources/canvas/player/vtplayer.html" "$repo/resources/canvas/player/vtplayer.css" \
        "$share/resources/canvas/player/"
    echo 'var KorvelVetra = {loadedDocs: []};' >"$share/resources/canvas/player/vtplayer.js"
fi

VETRA_RESOURCE_PATH=$share "$vetra" preview "$work/welcome/welcome.vetra" --port 0 >"$work/vetra.out" 2>"$work/vetra.err" &
vetra_pid=$!
for _ in $(seq 100); do
    [[ -s $work/vetra.out ]] && break
    sleep 0.1
done
url=$(head -n1 "$work/vetra.out")
[[ $url == http://* ]] || { echo "bench_preview: vetra preview printed no URL" >&2; cat "$work/vetra.err" >&2; exit 1; }
vetra_base=${url%/preview/*}

nginx_port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
mkdir -p "$work/nginx/tmp"
cat >"$work/nginx/nginx.conf" <<EOF
worker_processes 1;
daemon off;
pid $work/nginx/nginx.pid;
error_log $work/nginx/error.log warn;
events { worker_connections 1024; }
http {
    access_log off;
    sendfile on;
    tcp_nopush on;
    keepalive_requests 1000000;
    keepalive_timeout 60;
    types { application/octet-stream bin; }
    client_body_temp_path $work/nginx/tmp/body;
    proxy_temp_path $work/nginx/tmp/proxy;
    fastcgi_temp_path $work/nginx/tmp/fastcgi;
    uwsgi_temp_path $work/nginx/tmp/uwsgi;
    scgi_temp_path $work/nginx/tmp/scgi;
    server {
        listen 127.0.0.1:$nginx_port;
        root $resources;
    }
}
EOF
chmod -R a+rwX "$work/nginx"
# Never as root: as the nobody user when started by root, else as the caller.
run_as=()
if [[ $(id -u) -eq 0 ]]; then
    run_as=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
fi
"${run_as[@]}" "$nginx_bin" -p "$work/nginx" -e "$work/nginx/error.log" -c "$work/nginx/nginx.conf" &
nginx_pid=$!
for _ in $(seq 50); do
    curl -s -o /dev/null "http://127.0.0.1:$nginx_port/small.bin" && break
    sleep 0.1
done

# One wrk run; prints requests per second and MB/s.
measure() {
    local connections=$1 target=$2
    wrk -t1 -c"$connections" -d"$duration" "$target" | awk '
        /^Requests\/sec:/ { rps = $2 }
        /^Transfer\/sec:/ {
            v = $2; unit = v; sub(/[0-9.]+/, "", unit); sub(/[A-Za-z]+$/, "", v)
            f = (unit == "GB") ? 1024 : (unit == "MB") ? 1 : (unit == "KB") ? 1 / 1024 : 1 / 1048576
            mbs = v * f
        }
        /Non-2xx/ { bad = 1 }
        END { if (bad) print "ERROR"; else printf "%.1f %.1f\n", rps, mbs }'
}

for check in "$vetra_base/small.bin" "http://127.0.0.1:$nginx_port/small.bin"; do
    [[ $(curl -s -o /dev/null -w '%{http_code}' "$check") == 200 ]] || { echo "bench_preview: $check is not served" >&2; exit 1; }
done

# The servers take turns, and each keeps its best round: other work on the machine only ever
# lowers a figure.
best() { awk -v a="$1" -v b="$2" 'BEGIN { print (a == "ERROR" || b == "ERROR") ? "ERROR" : (a > b ? a : b) }'; }
vetra_small_rps=0 nginx_small_rps=0 vetra_large_mbs=0 nginx_large_mbs=0
for ((round = 1; round <= rounds; ++round)); do
    read -r rps _ < <(measure "$small_connections" "$vetra_base/small.bin")
    vetra_small_rps=$(best "$vetra_small_rps" "$rps")
    read -r rps _ < <(measure "$small_connections" "http://127.0.0.1:$nginx_port/small.bin")
    nginx_small_rps=$(best "$nginx_small_rps" "$rps")
    read -r _ mbs < <(measure "$large_connections" "$vetra_base/large.bin")
    vetra_large_mbs=$(best "$vetra_large_mbs" "$mbs")
    read -r _ mbs < <(measure "$large_connections" "http://127.0.0.1:$nginx_port/large.bin")
    nginx_large_mbs=$(best "$nginx_large_mbs" "$mbs")
done

ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%.0f%%", 100 * a / b; else print "n/a" }'; }
printf '%-28s %14s %14s %8s\n' "" "vetra preview" "nginx" "share"
printf '%-28s %14s %14s %8s\n' "10 KB file, requests/s" "$vetra_small_rps" "$nginx_small_rps" \
    "$(ratio "$vetra_small_rps" "$nginx_small_rps")"
printf '%-28s %14s %14s %8s\n' "100 MB file, MB/s" "$vetra_large_mbs" "$nginx_large_mbs" \
    "$(ratio "$vetra_large_mbs" "$nginx_large_mbs")"
echo "(wrk, 1 thread, best of $rounds rounds of $duration; $small_connections and $large_connections connections;"
echo " nginx with 1 worker and sendfile)"
