#include "CollectionGenerator.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSettings>

#include <archive.h>
#include <archive_entry.h>

namespace vd::bench {

namespace {

constexpr qint64 kD64Length = 174848;
constexpr qint64 kD71Length = 349696;
constexpr qint64 kD81Length = 819200;
constexpr qint64 kTrack18 = 0x16500;
constexpr qint64 kTrack40 = 0x61800; // track 40 of a 1581
constexpr int kDirectoryOrder[] = {1, 4, 7, 10, 13, 16, 2, 5, 8, 11, 14, 17, 3, 6, 9, 12, 15, 18};
const char* const kMarker = "collection.ini";

QByteArray padded(const QByteArray& name)
{
    return name.left(16) + QByteArray(16 - std::min<qsizetype>(name.size(), 16), char(0xA0));
}

QByteArray randomName(QRandomGenerator& rng, int minLength, int maxLength)
{
    static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 -";
    const int n = minLength + int(rng.bounded(maxLength - minLength + 1));
    QByteArray name;
    for (int i = 0; i < n; ++i)
        name.append(letters[rng.bounded(int(sizeof(letters) - 1))]);
    return name;
}

// Writes `head` at `at` of a file of `length` bytes; the rest stays a hole.
bool writeSparse(const QString& path, qint64 at, const QByteArray& head, qint64 length)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.resize(length) && f.seek(at) &&
           f.write(head) == head.size();
}

void fillSlots(QRandomGenerator& rng, QByteArray& track, qsizetype base, int first, int entries,
               int* live)
{
    for (int k = 0; k < 8 && first + k < entries; ++k) {
        const qsizetype slot = base + k * 32;
        const quint32 kind = rng.bounded(100u);
        const quint8 type = kind < 3 ? 0x00 : kind < 10 ? 0x81 : kind < 15 ? 0xC2 : 0x82;
        track[slot + 2] = char(type);
        track[slot + 3] = char(1 + rng.bounded(35));
        track[slot + 4] = char(rng.bounded(21));
        track.replace(slot + 5, 16, padded(randomName(rng, 1, 16)));
        const int blocks = int(rng.bounded(200));
        track[slot + 30] = char(blocks & 0xFF);
        track[slot + 31] = char(blocks >> 8);
        if (type != 0)
            ++*live;
    }
}

// The directory track of a D64 or D71 with `entries` slots in use; returns the live entries.
int d64Track(QRandomGenerator& rng, int entries, QByteArray& track)
{
    track = QByteArray(19 * 256, '\0');
    track.replace(0x90, 16, padded(randomName(rng, 4, 16)));
    const int sectors = (entries + 7) / 8;
    int live = 0;
    for (int i = 0; i < sectors; ++i) {
        const int s = kDirectoryOrder[i];
        const qsizetype base = qsizetype(s) * 256;
        const bool last = i + 1 == sectors;
        track[base] = char(last ? 0 : 18);
        track[base + 1] = char(last ? 0xFF : kDirectoryOrder[i + 1]);
        fillSlots(rng, track, base, i * 8, entries, &live);
    }
    return live;
}

// Track 40 of a D81: the header in sector 0 (disk name at 4), the directory from sector 3 on.
int d81Track(QRandomGenerator& rng, int entries, QByteArray& track)
{
    track = QByteArray(40 * 256, '\0');
    track[0] = 40;
    track[1] = 3;
    track[2] = 'D';
    track.replace(4, 16, padded(randomName(rng, 4, 16)));
    const int sectors = std::min(37, (entries + 7) / 8);
    int live = 0;
    for (int i = 0; i < sectors; ++i) {
        const int s = 3 + i;
        const qsizetype base = qsizetype(s) * 256;
        const bool last = i + 1 == sectors;
        track[base] = char(last ? 0 : 40);
        track[base + 1] = char(last ? 0xFF : s + 1);
        fillSlots(rng, track, base, i * 8, entries, &live);
    }
    return live;
}

// --- G64: the GCR bit stream of a 1541 disk ----------------------------------------------------

const quint8 kGcr[16] = {0x0A, 0x0B, 0x12, 0x13, 0x0E, 0x0F, 0x16, 0x17,
                         0x09, 0x19, 0x1A, 0x1B, 0x0D, 0x1D, 0x1E, 0x15};

class BitWriter
{
public:
    void bits(quint32 value, int count)
    {
        for (int i = count - 1; i >= 0; --i) {
            m_acc = quint8((m_acc << 1) | ((value >> i) & 1));
            if (++m_n == 8) {
                m_out.append(char(m_acc));
                m_n = 0;
                m_acc = 0;
            }
        }
    }
    void gcr(const QByteArray& plain)
    {
        for (char c : plain) {
            bits(kGcr[quint8(c) >> 4], 5);
            bits(kGcr[quint8(c) & 15], 5);
        }
    }
    void raw(quint8 byte, int count)
    {
        for (int i = 0; i < count; ++i)
            bits(byte, 8);
    }
    QByteArray take() { return m_out; }

private:
    QByteArray m_out;
    quint8 m_acc = 0;
    int m_n = 0;
};

int sectorsOn(int track)
{
    return track <= 17 ? 21 : track <= 24 ? 19 : track <= 30 ? 18 : 17;
}

// One track of sectors with standard gaps; `data` holds the track's sectors one after another
// (zeros where it is short).
QByteArray encodeTrack(int track, const QByteArray& data)
{
    constexpr quint8 kId1 = '0', kId2 = '0';
    BitWriter w;
    for (int s = 0; s < sectorsOn(track); ++s) {
        const char bytes[] = {char(0x08), char(s ^ track ^ kId2 ^ kId1),
                              char(s),    char(track),
                              char(kId2), char(kId1),
                              char(0x0F), char(0x0F)};
        const QByteArray header(bytes, sizeof bytes);
        w.raw(0xFF, 5);
        w.gcr(header);
        w.raw(0x55, 9);
        QByteArray sector = data.mid(s * 256, 256);
        sector.append(QByteArray(256 - sector.size(), '\0'));
        quint8 sum = 0;
        for (char c : sector)
            sum ^= quint8(c);
        w.raw(0xFF, 5);
        w.gcr(char(0x07) + sector + char(sum) + QByteArray(2, '\0'));
        w.raw(0x55, 8);
    }
    return w.take();
}

// A G64 of a D64 that is empty but for its directory track 18.
QByteArray g64Image(const QByteArray& track18)
{
    constexpr int kHalfTracks = 84;
    constexpr int kMaxTrack = 7928;
    // The empty tracks are the same in every image; only track 18 is encoded each time.
    static const QVector<QByteArray> emptyTracks = [] {
        QVector<QByteArray> t(36);
        for (int n = 1; n <= 35; ++n)
            t[n] = encodeTrack(n, {});
        return t;
    }();
    QByteArray g64("GCR-1541");
    g64.append(char(0));
    g64.append(char(kHalfTracks));
    g64.append(char(kMaxTrack & 0xFF));
    g64.append(char(kMaxTrack >> 8));
    const qint64 tableEnd = 12 + kHalfTracks * 8;
    QByteArray offsets(kHalfTracks * 4, '\0');
    QByteArray speeds(kHalfTracks * 4, '\0');
    QByteArray tracks;
    for (int t = 1; t <= 35; ++t) {
        const QByteArray bits = t == 18 ? encodeTrack(18, track18) : emptyTracks[t];
        const qint64 at = tableEnd + tracks.size();
        const int half = (t - 1) * 2;
        for (int b = 0; b < 4; ++b)
            offsets[half * 4 + b] = char((at >> (8 * b)) & 0xFF);
        speeds[half * 4] = char(t <= 17 ? 3 : t <= 24 ? 2 : t <= 30 ? 1 : 0);
        tracks.append(char(bits.size() & 0xFF));
        tracks.append(char(bits.size() >> 8));
        tracks.append(bits);
        tracks.append(QByteArray(kMaxTrack - bits.size(), char(0x55)));
    }
    return g64 + offsets + speeds + tracks;
}

// --- ZIP -------------------------------------------------------------------------------------

la_ssize_t appendToArray(archive*, void* data, const void* buffer, size_t length)
{
    static_cast<QByteArray*>(data)->append(static_cast<const char*>(buffer), qsizetype(length));
    return la_ssize_t(length);
}

// A ZIP (deflate) of one member.
QByteArray zipOf(const QString& name, const QByteArray& bytes)
{
    QByteArray zip;
    archive* a = archive_write_new();
    archive_write_set_format_zip(a);
    archive_write_set_bytes_per_block(a, 0);
    archive_write_open(a, &zip, nullptr, appendToArray, nullptr);
    archive_entry* e = archive_entry_new();
    archive_entry_set_pathname(e, name.toUtf8().constData());
    archive_entry_set_filetype(e, AE_IFREG);
    archive_entry_set_perm(e, 0644);
    archive_entry_set_size(e, bytes.size());
    archive_entry_set_mtime(e, 1700000000, 0);
    bool ok = archive_write_header(a, e) == ARCHIVE_OK &&
              archive_write_data(a, bytes.constData(), size_t(bytes.size())) == bytes.size();
    archive_entry_free(e);
    ok = archive_write_close(a) == ARCHIVE_OK && ok;
    archive_write_free(a);
    return ok ? zip : QByteArray();
}

bool writeWhole(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return !bytes.isEmpty() && f.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           f.write(bytes) == bytes.size();
}

// Puts one file of the collection in place: loose (sparse), or packed into a ZIP beside it,
// chosen by a generator of its own so that the files' contents do not depend on the packing.
class Placer
{
public:
    Placer(const CollectionRecipe& recipe, CollectionStats& stats)
        : m_recipe(recipe), m_stats(stats), m_rng(recipe.seed ^ 0x5A5A5A5Au)
    {}

    bool place(const QString& path, qint64 at, const QByteArray& head, qint64 length)
    {
        if (m_recipe.zipPercent <= 0 || int(m_rng.bounded(100u)) >= m_recipe.zipPercent)
            return writeSparse(path, at, head, length);
        QByteArray whole(qsizetype(length), '\0');
        whole.replace(qsizetype(at), head.size(), head);
        return placePacked(path, whole);
    }
    bool placeWhole(const QString& path, const QByteArray& bytes)
    {
        if (m_recipe.zipPercent <= 0 || int(m_rng.bounded(100u)) >= m_recipe.zipPercent)
            return writeWhole(path, bytes);
        return placePacked(path, bytes);
    }

private:
    bool placePacked(const QString& path, const QByteArray& bytes)
    {
        const int dot = int(path.lastIndexOf(QLatin1Char('.')));
        const int slash = int(path.lastIndexOf(QLatin1Char('/')));
        const QString base = path.left(dot);
        const QString name = path.mid(slash + 1);
        QByteArray zip = zipOf(name, bytes);
        ++m_stats.zips;
        if (m_recipe.nestedPercent > 0 && int(m_rng.bounded(100u)) < m_recipe.nestedPercent) {
            zip = zipOf(base.mid(slash + 1) + QStringLiteral(".zip"), zip);
            ++m_stats.nestedZips;
            return writeWhole(base + QStringLiteral(" (Pack).zip"), zip);
        }
        return writeWhole(base + QStringLiteral(".zip"), zip);
    }

    const CollectionRecipe& m_recipe;
    CollectionStats& m_stats;
    QRandomGenerator m_rng;
};

QByteArray t64Head(QRandomGenerator& rng, int count, qint64* length)
{
    QByteArray head(64 + count * 32, '\0');
    head.replace(0, 20, "C64S tape image file");
    head[35] = char(count >> 8);
    head[36] = char(count & 0xFF);
    head.replace(40, 24, randomName(rng, 4, 24).leftJustified(24, ' '));
    qint64 at = head.size();
    for (int i = 0; i < count; ++i) {
        const qsizetype e = 64 + i * 32;
        head[e] = 1;
        head[e + 1] = char(0x82);
        for (int b = 0; b < 4; ++b)
            head[e + 8 + b] = char((at >> (8 * b)) & 0xFF);
        head.replace(e + 16, 16, randomName(rng, 1, 16).leftJustified(16, ' '));
        at += 200 + rng.bounded(20000);
    }
    *length = at;
    return head;
}

QString folderFor(const QString& root, int n)
{
    return root + QLatin1Char('/') + QChar(u'A' + n % 26);
}

} // namespace

CollectionRecipe scaleRecipe(int files, quint32 seed)
{
    CollectionRecipe r;
    r.seed = seed;
    const auto share = [files](int perThousand) { return int(qint64(files) * perThousand / 1000); };
    r.d71 = share(30);
    r.d81 = share(30);
    r.g64 = share(5);
    r.t64 = share(40);
    r.prg = share(135);
    r.tap = share(30);
    r.crt = share(30);
    r.d64 = files - r.d71 - r.d81 - r.g64 - r.t64 - r.prg - r.tap - r.crt;
    r.maxD64Entries = 20;
    r.zipPercent = 10;
    r.nestedPercent = 10;
    return r;
}

bool sameRecipe(const CollectionRecipe& a, const CollectionRecipe& b)
{
    return a.seed == b.seed && a.d64 == b.d64 && a.t64 == b.t64 && a.prg == b.prg &&
           a.tap == b.tap && a.crt == b.crt && a.d71 == b.d71 && a.d81 == b.d81 && a.g64 == b.g64 &&
           a.maxD64Entries == b.maxD64Entries && a.zipPercent == b.zipPercent &&
           a.nestedPercent == b.nestedPercent;
}

bool generateCollection(const QString& folder, const CollectionRecipe& recipe,
                        CollectionStats* stats, QString* error)
{
    QDir(folder).removeRecursively();
    for (int i = 0; i < 26; ++i)
        QDir().mkpath(folderFor(folder, i));
    QRandomGenerator rng(recipe.seed);
    CollectionStats s;
    Placer placer(recipe, s);
    auto fail = [&](const QString& path) {
        if (error)
            *error = QStringLiteral("cannot write %1").arg(path);
        return false;
    };
    for (int i = 0; i < recipe.d64; ++i) {
        const int entries =
            rng.bounded(100u) == 0 ? 144 : 1 + int(rng.bounded(recipe.maxD64Entries));
        QByteArray track;
        const int live = d64Track(rng, entries, track);
        const QString path =
            folderFor(folder, i) + QStringLiteral("/Game %1 (Disk %2).d64").arg(i).arg(1 + i % 3);
        if (!placer.place(path, kTrack18, track, kD64Length))
            return fail(path);
        if (live > 0) {
            ++s.files;
            s.entries += live;
        }
        ++s.d64Files;
    }
    for (int i = 0; i < recipe.t64; ++i) {
        const int count = 1 + int(rng.bounded(30));
        qint64 length = 0;
        const QByteArray head = t64Head(rng, count, &length);
        const QString path = folderFor(folder, i) + QStringLiteral("/Tape %1.t64").arg(i);
        if (!placer.place(path, 0, head, length))
            return fail(path);
        ++s.files;
        s.entries += count;
    }
    struct Single
    {
        int count;
        const char* pattern;
        QByteArray head;
        qint64 minLength, maxLength;
    };
    const Single singles[] = {
        {recipe.prg, "/Program %1.prg", QByteArray("\x01\x08", 2), 100, 50000},
        {recipe.tap, "/Raw Tape %1.tap", QByteArray("C64-TAPE-RAW\x01", 13), 100000, 1000000},
        {recipe.crt, "/Cart %1.crt",
         QByteArray("C64 CARTRIDGE   ") + QByteArray(16, '\0') + "CARTRIDGE NAME", 8192, 65536},
    };
    for (const Single& kind : singles)
        for (int i = 0; i < kind.count; ++i) {
            const qint64 length =
                kind.minLength + qint64(rng.bounded(quint32(kind.maxLength - kind.minLength)));
            const QString path = folderFor(folder, i) + QString::fromLatin1(kind.pattern).arg(i);
            if (!placer.place(path, 0, kind.head, length))
                return fail(path);
            ++s.files;
            ++s.entries;
        }
    // The kinds of the collection at scale come after the others, so that a recipe without
    // them writes the same files as before.
    for (int i = 0; i < recipe.d71; ++i) {
        QByteArray track;
        const int live = d64Track(rng, 1 + int(rng.bounded(40)), track);
        const QString path = folderFor(folder, i) + QStringLiteral("/Double %1.d71").arg(i);
        if (!placer.place(path, kTrack18, track, kD71Length))
            return fail(path);
        if (live > 0) {
            ++s.files;
            s.entries += live;
        }
    }
    for (int i = 0; i < recipe.d81; ++i) {
        QByteArray track;
        const int live = d81Track(rng, 1 + int(rng.bounded(60)), track);
        const QString path = folderFor(folder, i) + QStringLiteral("/Disk %1.d81").arg(i);
        if (!placer.place(path, kTrack40, track, kD81Length))
            return fail(path);
        if (live > 0) {
            ++s.files;
            s.entries += live;
        }
    }
    for (int i = 0; i < recipe.g64; ++i) {
        QByteArray track;
        const int live = d64Track(rng, 1 + int(rng.bounded(recipe.maxD64Entries)), track);
        const QString path = folderFor(folder, i) + QStringLiteral("/Nibble %1.g64").arg(i);
        if (!placer.placeWhole(path, g64Image(track)))
            return fail(path);
        if (live > 0) {
            ++s.files;
            s.entries += live;
        }
    }
    QSettings marker(folder + QLatin1Char('/') + QLatin1String(kMarker), QSettings::IniFormat);
    marker.setValue(QStringLiteral("seed"), recipe.seed);
    marker.setValue(QStringLiteral("d64"), recipe.d64);
    marker.setValue(QStringLiteral("t64"), recipe.t64);
    marker.setValue(QStringLiteral("prg"), recipe.prg);
    marker.setValue(QStringLiteral("tap"), recipe.tap);
    marker.setValue(QStringLiteral("crt"), recipe.crt);
    marker.setValue(QStringLiteral("d71"), recipe.d71);
    marker.setValue(QStringLiteral("d81"), recipe.d81);
    marker.setValue(QStringLiteral("g64"), recipe.g64);
    marker.setValue(QStringLiteral("maxD64Entries"), recipe.maxD64Entries);
    marker.setValue(QStringLiteral("zipPercent"), recipe.zipPercent);
    marker.setValue(QStringLiteral("nestedPercent"), recipe.nestedPercent);
    marker.setValue(QStringLiteral("files"), s.files);
    marker.setValue(QStringLiteral("d64Files"), s.d64Files);
    marker.setValue(QStringLiteral("entries"), s.entries);
    marker.setValue(QStringLiteral("zips"), s.zips);
    marker.setValue(QStringLiteral("nestedZips"), s.nestedZips);
    marker.sync();
    if (stats)
        *stats = s;
    return marker.status() == QSettings::NoError;
}

bool readCollectionMarker(const QString& folder, CollectionRecipe* recipe, CollectionStats* stats)
{
    const QString path = folder + QLatin1Char('/') + QLatin1String(kMarker);
    if (!QFile::exists(path))
        return false;
    QSettings marker(path, QSettings::IniFormat);
    const auto number = [&](const char* key, int fallback = 0) {
        return marker.value(QLatin1String(key), fallback).toInt();
    };
    recipe->seed = marker.value(QStringLiteral("seed")).toUInt();
    recipe->d64 = number("d64");
    recipe->t64 = number("t64");
    recipe->prg = number("prg");
    recipe->tap = number("tap");
    recipe->crt = number("crt");
    recipe->d71 = number("d71");
    recipe->d81 = number("d81");
    recipe->g64 = number("g64");
    recipe->maxD64Entries = number("maxD64Entries", 40);
    recipe->zipPercent = number("zipPercent");
    recipe->nestedPercent = number("nestedPercent");
    stats->files = marker.value(QStringLiteral("files")).toLongLong();
    stats->d64Files = marker.value(QStringLiteral("d64Files")).toLongLong();
    stats->entries = marker.value(QStringLiteral("entries")).toLongLong();
    stats->zips = marker.value(QStringLiteral("zips")).toLongLong();
    stats->nestedZips = marker.value(QStringLiteral("nestedZips")).toLongLong();
    return true;
}

} // namespace vd::bench
