#!/usr/bin/env bash
# Takes the README's pictures of the real windows into docs/screenshots/: builds what it needs
# (if needed), writes a small collection and a GameBase into a temporary folder, prepares a
# program folder for them with vellumdock-cli, and runs the window program under Xvfb.
#
#   scripts/screenshots.sh [BUILD_DIR [PICTURE...]]   (default: build/, configured when missing)
#
# With PICTUREs (e.g. options.png) only those are taken again.
# Pictures: main-window.png, preview.png, gamebase.png, wizard.png and options.png (the last two
# only when the program has those windows). Needs xvfb-run, xdotool and ImageMagick's import.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="$(realpath -m "${1:-$root/build}")"
wanted=("${@:2}")
out="$root/docs/screenshots"
"$root/scripts/deps.sh"

# The benchmarks' generators write the collection and the GameBase.
targets=(vellumdock vellumdock-cli vellumdock-bench-generate vellumdock-bench-gbwindow)
if [ ! -f "$build/build.ninja" ] || ! ninja -C "$build" -t targets all 2>/dev/null |
    grep -q '^vellumdock-bench-gbwindow:'; then
    cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVD_BUILD_BENCH=ON >/dev/null
fi
cmake --build "$build" --target "${targets[@]}" -- -j"$(nproc)"

work="$(mktemp -d /tmp/vellumdock-screenshots.XXXXXX)"
trap 'rm -rf "$work"' EXIT
cli() { "$build/src/vellumdock-cli" --home "$work/home" "$@"; }
mkdir -p "$out" "$work/Sammlung/Demos"

# --- The collection ------------------------------------------------------------------------
"$build/bench/vellumdock-bench-generate" "$work/Sammlung/Spiele" --d64 120 --seed 7 >/dev/null

# A disk with directory art, as demo groups made them: a frame of PETSCII lines around a title,
# entries of type DEL without blocks. cc1541 takes PETSCII codes as "#xx".
line() { printf '#%s' "$@"; }
frame_top="$(line b0 c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 ae)"
frame_bottom="$(line ad c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 c0 bd)"
blocks="$(line a6 a6 a6 a6 a6 a6 a6 a6 a6 a6 a6 a6 a6 a6 a6 a6)"
head -c 9000 /dev/urandom >"$work/main.prg"
head -c 2000 /dev/urandom >"$work/part.prg"
head -c 300 /dev/urandom >"$work/scores.seq"
# cc1541 writes lower-case ASCII as the C64's capital letters.
art_disk() { # FILE DISKNAME TITLE(14 characters) SUBTITLE(14 characters)
    local name="${2,,}" title="${3,,}" subtitle="${4,,}"
    cc1541 -q -n "$name" -i "89 2a" \
        -f "$frame_top" -T DEL -L \
        -f "#dd$title#dd" -T DEL -L \
        -f "#dd$subtitle#dd" -T DEL -L \
        -f "$frame_bottom" -T DEL -L \
        -f "${title// /}" -w "$work/main.prg" \
        -f "part 2" -w "$work/part.prg" \
        -f "hiscores" -T SEQ -w "$work/scores.seq" \
        -f "$blocks" -T DEL -L \
        -f "(c) 1989 vellum" -w "$work/part.prg" \
        "$1" >/dev/null
}
art_disk "$work/Sammlung/Demos/Aurora Express.d64" "AURORA EXPRESS" "AURORA EXPRESS" "  VELLUMSOFT  "
art_disk "$work/Sammlung/Demos/Harbour Lights (Disk 1).d64" "HARBOUR LIGHTS" "HARBOUR LIGHTS" "    DISK 1    "
art_disk "$work/Sammlung/Demos/Harbour Lights (Disk 2).d64" "HARBOUR LIGHTS" "HARBOUR LIGHTS" "    DISK 2    "

# --- The program folder: settings, catalogue, GameBase -------------------------------------
catalogue="$work/Sammlung.vdb"
cli settings init >/dev/null
cli new "$catalogue" >/dev/null
cli import "$catalogue" "$work/Sammlung" >/dev/null
cli settings set MAIN Database "$catalogue"
cli settings set MAIN ListSplitPos 3300
# Window places in twips (15 a pixel): "Top;Left;Height;Width;State".
width=1120
height=720
cli settings set WINDOWS frmMain "0;0;$((height * 15));$((width * 15));0"
cli settings set WINDOWS frmPreview "1500;$((560 * 15));$((270 * 15));$((420 * 15));0"
cli settings set WINDOWS frmGB "0;0;$((height * 15));$((width * 15));0"

# The GameBase of 3,000 games; the generator also draws the screenshots of the fourth game.
"$build/bench/vellumdock-bench-gbwindow" --games 3000 --dir "$work/gb" \
    --screenshot "$work/gb/generator.png" >/dev/null
cli settings set GAMEBASE GameBaseDB "$work/gb/GBC_bench_3000.db"
cli settings set GAMEBASE Screenshots "$work/gb/Screenshots"
cli settings set GAMEBASE FilterName1 "Klassiker"
cli settings set GAMEBASE FilterDef1 'Classic!@!=!@!1!@!'
cli settings set GAMEBASE FilterName2 "Achtziger"
cli settings set GAMEBASE FilterDef2 'Y.YEAR!@!<!@!1990!@!'

# --- The pictures ----------------------------------------------------------------------------
# One run of the window program per picture, on a screen the size of the main window. The
# inner script is run by xvfb-run; "--show NAME" runs a menu command after the start.
cat >"$work/shoot.sh" <<'EOF'
#!/usr/bin/env bash
# shoot.sh BUILD HOME PICTURE CROP ACTIONS [--show NAME...]
set -uo pipefail
build="$1" home="$2" picture="$3" crop="$4" actions="$5"
shift 5
"$build/src/vellumdock" --home "$home" "$@" >"$picture.log" 2>&1 &
pid=$!
main=""
for _ in $(seq 1 100); do
    main="$(xdotool search --onlyvisible --name '^Vellumdock' 2>/dev/null | head -n 1)"
    [ -n "$main" ] && break
    sleep 0.1
done
sleep 2.5
if [ -n "$main" ] && [ "$actions" = "select-disk" ]; then
    # The tree's root, then its first file: the first demo disk, first by name.
    xdotool mousemove --window "$main" 190 63 click 1
    sleep 0.5
    xdotool key Down
    sleep 1.5
elif [ "$actions" = "open-emulator" ]; then
    # The first emulator's profiles, opened in the dialog's tree.
    dialog="$(xdotool search --onlyvisible --name 'Optionen' 2>/dev/null | head -n 1)"
    if [ -n "$dialog" ]; then
        xdotool mousemove --window "$dialog" 90 67 click 1
        sleep 0.3
        xdotool key Right
        sleep 1
    fi
elif [ "$actions" = "select-game" ]; then
    gb="$(xdotool search --onlyvisible --name 'Gamebase' 2>/dev/null | head -n 1)"
    if [ -n "$gb" ]; then
        xdotool mousemove --window "$gb" 100 220 click 1
        sleep 0.3
        # Up to the first game (the list takes no Home key), then to the fourth, whose
        # screenshots the generator drew.
        xdotool key --delay 50 Up Up Up Up Up Up Up Up Up Up Up Up Down Down Down
        sleep 1.5
    fi
fi
if [ "$crop" = "-" ]; then
    import -window root "$picture"
else
    import -window root -crop "$crop" +repage "$picture"
fi
# The run ends here, without writing settings; the shell's notice of that is not wanted.
{ kill "$pid" && wait "$pid"; } 2>/dev/null
exit 0
EOF
chmod +x "$work/shoot.sh"

shoot() { # PICTURE CROP ACTIONS [--show NAME...]
    local picture="$1"
    shift
    if [ ${#wanted[@]} -gt 0 ] && [[ " ${wanted[*]} " != *" $picture "* ]]; then
        return 0
    fi
    # Each picture starts from the same settings: a run that ends writes them.
    local ini="$work/home/Vellumdock.ini" kept="$work/Vellumdock.ini.start"
    rm -f "$kept"
    if [ -f "$ini" ]; then cp "$ini" "$kept"; fi
    xvfb-run -a -s "-screen 0 ${width}x${height}x24" \
        "$work/shoot.sh" "$build" "$work/home" "$work/$picture" "$@"
    if [ -f "$kept" ]; then cp "$kept" "$ini"; else rm -f "$ini"; fi
    if [ -s "$work/$picture" ]; then
        cp "$work/$picture" "$out/$picture"
        echo "wrote docs/screenshots/$picture"
    else
        echo "no picture: $picture ($(tr '\n' ' ' <"$work/$picture.log" 2>/dev/null))" >&2
    fi
}

shoot main-window.png - select-disk
shoot preview.png 420x270+560+100 select-disk --show mnuOpenPreview
shoot gamebase.png - select-game --show mnuGBOpen

# The first start: no settings at all, so the wizard comes after the window.
if grep -q 'frmWizard' "$root/src/setup/ui/"*.cpp 2>/dev/null; then
    mv "$work/home/Vellumdock.ini" "$work/Vellumdock.ini.kept"
    # Only the window's place: no emulators and no catalogue are what makes a first run.
    printf '[WINDOWS]\r\nfrmMain=0;0;%d;%d;0\r\n' $((height * 15)) $((width * 15)) \
        >"$work/home/Vellumdock.ini"
    shoot wizard.png - none
    mv "$work/Vellumdock.ini.kept" "$work/home/Vellumdock.ini"
fi
if grep -q 'frmOptions' "$root/src/setup/ui/"*.cpp 2>/dev/null; then
    shoot options.png - open-emulator --show mnuOption
fi
