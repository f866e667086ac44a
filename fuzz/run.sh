#!/usr/bin/env bash
# run.sh [SECONDS]: builds the fuzz targets with clang in build-fuzz/, writes seed inputs made
# by cc1541 (and the shared real files when they are there), and runs each target for SECONDS
# (default 120). Findings are written to build-fuzz/findings/<target>/.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
seconds="${1:-120}"
out="$root/build-fuzz"
if [ ! -f "$out/build.ninja" ]; then
    CC=clang CXX=clang++ cmake -S "$root" -B "$out" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DVD_FUZZ=ON -DVD_BUILD_TESTS=OFF -DVD_BUILD_BENCH=OFF >/dev/null
fi
cmake --build "$out" --target fuzz_targets

corpus="$out/corpus"
mkdir -p "$corpus"/{disk_directory,tape_directory,single_file,gcr_decoder,archive}
mkdir -p "$corpus"/{settings_file,option_string,filter_string,layout_string,jet_sql,flip_file}
mkdir -p "$corpus"/language_file
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
head -c 3000 /dev/urandom >"$work/a.prg"
cc1541 -q -n "seed disk" -f "one" -w "$work/a.prg" -f "two" -T SEQ -w "$work/a.prg" \
    -f "three" -P -w "$work/a.prg" -g "$work/s.g64" "$work/s.d64"
cc1541 -q -n "seed 1581" -f "one" -w "$work/a.prg" "$work/s.d81"
python3 - "$work" "$corpus" "${VD_TESTDATA:-$root/../shared/testdata}/c64" <<'PY'
import os, struct, sys, glob
work, corpus, real = sys.argv[1:4]
def save(target, name, data):
    open(os.path.join(corpus, target, name), "wb").write(data)
def disk(path, kind):
    data = open(path, "rb").read()
    start = 0x16500 if kind < 2 else 0x61800
    return bytes([kind]) + data[start:start + 40 * 256]
def track18(path):
    g = open(path, "rb").read()
    at = struct.unpack_from("<I", g, 12 + 34 * 4)[0]
    n = struct.unpack_from("<H", g, at)[0]
    return bytes([0]) + g[at + 2:at + 2 + n]
save("disk_directory", "d64", disk(os.path.join(work, "s.d64"), 0))
save("disk_directory", "d81", disk(os.path.join(work, "s.d81"), 2))
save("gcr_decoder", "track18", track18(os.path.join(work, "s.g64")))
t64 = bytearray(64 + 32 * 3)
t64[0:20] = b"C64S tape image file"; t64[36] = 3; t64[40:44] = b"TAPE"
for i, start in enumerate((160, 1000, 600)):
    e = 64 + 32 * i; t64[e] = 1; struct.pack_into("<I", t64, e + 8, start)
    t64[e + 16:e + 20] = b"NAME"
save("tape_directory", "t64", bytes(t64) + bytes(1000))
save("single_file", "p00", bytes([8]) + b"GAME.P00" + b"C64File\0GAME\0" + bytes(300))
save("single_file", "crt", bytes([8]) + b"CART.CRT" + b"C64 CARTRIDGE   " + bytes(16) + b"NAME" + bytes(100))
for path in glob.glob(os.path.join(real, "*")):
    base = os.path.basename(path).lower()
    if base.endswith((".d64", ".d71")):
        save("disk_directory", base, disk(path, 0 if base.endswith("64") else 1))
    elif base.endswith(".d81"):
        save("disk_directory", base, disk(path, 2))
    elif base.endswith(".g64"):
        save("gcr_decoder", base, track18(path))
    elif base.endswith(".t64"):
        save("tape_directory", base, open(path, "rb").read())
    elif base.endswith((".p00", ".crt")):
        save("single_file", base, bytes([12]) + base[-12:].encode().rjust(12, b"_") + open(path, "rb").read()[:4096])
PY

# Archive seeds: small ZIP, 7Z and CAB files of the seed disk, when the tools are there.
if command -v 7z >/dev/null; then
    (cd "$work" && 7z a -bd -tzip "$corpus/archive/s.zip" s.d64 a.prg >/dev/null &&
        7z a -bd -t7z "$corpus/archive/s.7z" s.d64 >/dev/null)
fi
if command -v gcab >/dev/null; then (cd "$work" && gcab -c -z "$corpus/archive/s.cab" a.prg); fi

# Text seeds: what the program itself writes and reads.
printf '[MAIN]\r\nDatabase=/c64/Meine.vdb\r\nFont="CBM"\r\n[EMULATORS]\r\nEmu1=VICE@@@x64sc\r\n' \
    >"$corpus/settings_file/ini"
printf '\xff\xfe[\x00M\x00' >"$corpus/settings_file/utf16"
printf -- '-autostart "@FILEPATH@"=@=1@@@-fastload=@=0@@@-VICIIdsize=@=1' >"$corpus/option_string/vice"
printf 'tPath!@!( )!@!game!@!@@@iFileType!@!=!@!4!@!Or@@@lSize!@!>!@!!@!And' \
    >"$corpus/filter_string/mixed"
printf "tFile!@!=!@!it's!@!" >"$corpus/filter_string/quote"
printf 'ID!Hidden=2;Width=0;Fixed=0;Order=0$tFile!Hidden=0;Width=120;Fixed=2;Order=1' \
    >"$corpus/layout_string/new"
printf '6;0;1;2;3;4;5;800;1200;900;400;300;200' >"$corpus/layout_string/old"
printf "Select F.ID,F.tProgram,C.tCategory From C64Files as F Left Join Category as C on F.Category_File=C.ID where F.tProgram Like'*game*' And C.iFileType IN (1,2) order by lIndex" \
    >"$corpus/jet_sql/select"
printf "Delete Category.* From Category Left Join C64Files on Category.ID = C64Files.Category_File where isNull(Category_File) and Category.iType=1" \
    >"$corpus/jet_sql/delete"
printf "PARAMETERS XXX VALUE; Select Top 10 IIF(isNull(GB_ID),'',ucase(tFile)) & '#' From Category where tsLastStarted>#01/02/2003 04:05:06 pm#" \
    >"$corpus/jet_sql/functions"
printf "Select * From [;database=/tmp/gb.sqlite].Games as G where G.Name<>'x' and Nz(G.YE_ID,0)>5" \
    >"$corpus/jet_sql/attached"
printf '# Vice fliplist file\n\nUNIT 8\n/c64/a b.d64\n/c64/disk2.d64' >"$corpus/flip_file/two"
printf '# Vice fliplist file\r\n\r\nUNIT 9\r\n  /x.d64  \r\n\r\n' >"$corpus/flip_file/crlf"
printf 'Abbrechen@@Cancel\r\nDateien@@Files\r\n&Speichern@@&Save\r\n' >"$corpus/language_file/crlf"
printf 'Abbrechen@@Cancel\nGr\xc3\xb6\xc3\x9fe@@Size\n' >"$corpus/language_file/lf"
printf '\xff\xfeA\x00@\x00@\x00B\x00\r\x00\n\x00' >"$corpus/language_file/utf16"
printf 'Neu@@New@@x\r\nEnde@@End\r\n' >"$corpus/language_file/three_parts"
printf 'Datei @1 fehlt@@File @1 is missing\r\nGr\xf6\xdfe@@Taille \x80\r\n' \
    >"$corpus/language_file/param_cp1252"

for target in disk_directory tape_directory single_file gcr_decoder archive settings_file \
    option_string filter_string layout_string jet_sql flip_file language_file; do
    mkdir -p "$out/findings/$target"
    echo "== fuzz_$target for ${seconds}s"
    (cd "$out/findings/$target" &&
        "$out/fuzz/fuzz_$target" -max_total_time="$seconds" -max_len=20000 -print_final_stats=1 \
            "$corpus/$target" 2>&1 | tail -n 12)
done
