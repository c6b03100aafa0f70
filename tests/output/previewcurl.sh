#!/usr/bin/env bash
# `vetra preview` as a user meets it: the sample, copied to a temporary folder, is previewed; curl
# fetches the page from the printed URL, a byte range of the sample's video, and is refused a file
# outside the served folders and a request for another host. An interrupt ends the server
# cleanly and takes the preview files away.
#
# previewcurl.sh VETRA SOURCE_DIR. The player comes from VETRA_SHARE_DIR when it was built there,
# else a stand-in with the source tree's templates is used.
set -euo pipefail

vetra=$1
source_dir=$2
if ! command -v curl >/dev/null 2>&1; then
    echo "skipped: curl is not installed"
    exit 77
fi

work=$(mktemp -d)
pid=
cleanup() {
    if [[ -n $pid ]] && kill -0 "$pid" 2>/dev/null; then
        kill -TERM "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap cleanup EXIT
fail() {
    echo "FAIL: $*" >&2
    [[ -f $work/err ]] && sed 's/^/vetra: /' "$work/err" >&2
    exit 1
}

cp -r "$source_dir/examples/welcome" "$work/"
share=${VETRA_SHARE_DIR:-}
if [[ -z $share || ! -f $share/resources/canvas/player/vtplayer.js ]]; then
    share=$work/share
    mkdir -p "$share/resources/canvas/player"
    cp "$source_dir/resources/canvas/player/vtplayer.html" "$source_dir/resources/canvas/player/vtplayer.css" \
        "$share/resources/canvas/player/"
    echo 'var KorvelVetra = {loadedDocs: []};' >"$share/resources/canvas/player/vtplayer.js"
fi

VETRA_RESOURCE_PATH=$share "$vetra" preview "$work/welcome/welcome.vetra" >"$work/out" 2>"$work/err" &
pid=$!
for _ in $(seq 100); do
    [[ -s $work/out ]] && break
    kill -0 "$pid" 2>/dev/null || fail "vetra preview ended before it printed a URL"
    sleep 0.1
done
url=$(head -n1 "$work/out")
preview=$work/welcome/welcome_res/preview
[[ $url =~ ^http://127\.0\.0\.1:([0-9]+)/(/.*)$ ]] || fail "no URL printed: '$url'"
port=${BASH_REMATCH[1]}
[[ ${BASH_REMATCH[2]} == "$preview/welcome.html" ]] || fail "the URL names ${BASH_REMATCH[2]}"

# The page, as the preview folder holds it.
status=$(curl -sS -o "$work/page.html" -D "$work/page.headers" -w '%{http_code}' "$url")
[[ $status == 200 ]] || fail "page: status $status"
cmp -s "$work/page.html" "$preview/welcome.html" || fail "page: the body differs from the written page"
grep -qi '^content-type: text/html' "$work/page.headers" || fail "page: no HTML content type"
grep -qi '^server: Vetra Studio' "$work/page.headers" || fail "page: no server field"
grep -q 'welcome.js' "$work/page.html" || fail "page: the data script is not loaded"

# A range of the video, one folder up from the page as the page itself asks for it.
video=${url%/preview/welcome.html}/clip.webm
size=$(stat -c %s "$work/welcome/welcome_res/clip.webm")
status=$(curl -sS -r 100-1123 -o "$work/part" -D "$work/part.headers" -w '%{http_code}' "$video")
[[ $status == 206 ]] || fail "video range: status $status"
grep -qi "^content-range: bytes 100-1123/$size" "$work/part.headers" || fail "video range: wrong content-range"
dd if="$work/welcome/welcome_res/clip.webm" of="$work/expected" bs=1 skip=100 count=1024 status=none
cmp -s "$work/part" "$work/expected" || fail "video range: wrong bytes"
# A range past the end is no range: the whole file.
status=$(curl -sS -r "0-$((size + 10))" -o "$work/whole" -w '%{http_code}' "$video")
[[ $status == 200 ]] && cmp -s "$work/whole" "$work/welcome/welcome_res/clip.webm" || fail "video past the end"

# The project file lies outside every served folder; another host name is refused.
status=$(curl -sS -o /dev/null -w '%{http_code}' "http://127.0.0.1:$port/$work/welcome/welcome.vetra")
[[ $status == 403 ]] || fail "project file: status $status"
status=$(curl -sS -o /dev/null -w '%{http_code}' --path-as-is "http://127.0.0.1:$port/$preview/../../welcome.vetra")
[[ $status == 403 ]] || fail "dot-dot path: status $status"
status=$(curl -sS -o /dev/null -w '%{http_code}' -H 'Host: rebound.example' "$url")
[[ $status == 403 ]] || fail "other host: status $status"

kill -INT "$pid"
code=0
wait "$pid" || code=$?
pid=
[[ $code == 0 ]] || fail "vetra preview ended with $code after the interrupt"
[[ ! -e $preview ]] || fail "the preview folder is left behind"
if curl -sS -o /dev/null --max-time 2 "$url" 2>/dev/null; then
    fail "the server still answers"
fi
echo "preview served the page and ranges on port $port"
