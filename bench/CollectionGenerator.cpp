#include "CollectionGenerator.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSettings>

namespace vd::bench {

namespace {

constexpr qint64 kD64Length = 174848;
constexpr qint64 kTrack18 = 0x16500;
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

// The directory track of a D64 with `entries` slots in use; returns the live entries.
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
        for (int k = 0; k < 8 && i * 8 + k < entries; ++k) {
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
                ++live;
        }
    }
    return live;
}

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

bool generateCollection(const QString& folder, const CollectionRecipe& recipe, CollectionStats* stats,
                        QString* error)
{
    QDir(folder).removeRecursively();
    for (int i = 0; i < 26; ++i)
        QDir().mkpath(folderFor(folder, i));
    QRandomGenerator rng(recipe.seed);
    CollectionStats s;
    auto fail = [&](const QString& path) {
        if (error)
            *error = QStringLiteral("cannot write %1").arg(path);
        return false;
    };
    for (int i = 0; i < recipe.d64; ++i) {
        const int entries = rng.bounded(100u) == 0 ? 144 : 1 + int(rng.bounded(40));
        QByteArray track;
        const int live = d64Track(rng, entries, track);
        const QString path =
            folderFor(folder, i) + QStringLiteral("/Game %1 (Disk %2).d64").arg(i).arg(1 + i % 3);
        if (!writeSparse(path, kTrack18, track, kD64Length))
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
        if (!writeSparse(path, 0, head, length))
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
        {recipe.tap, "/Tape %1.tap", QByteArray("C64-TAPE-RAW\x01", 13), 100000, 1000000},
        {recipe.crt, "/Cart %1.crt",
         QByteArray("C64 CARTRIDGE   ") + QByteArray(16, '\0') + "CARTRIDGE NAME", 8192, 65536},
    };
    for (const Single& kind : singles)
        for (int i = 0; i < kind.count; ++i) {
            const qint64 length =
                kind.minLength + qint64(rng.bounded(quint32(kind.maxLength - kind.minLength)));
            const QString path = folderFor(folder, i) + QString::fromLatin1(kind.pattern).arg(i);
            if (!writeSparse(path, 0, kind.head, length))
                return fail(path);
            ++s.files;
            ++s.entries;
        }
    QSettings marker(folder + QLatin1Char('/') + QLatin1String(kMarker), QSettings::IniFormat);
    marker.setValue(QStringLiteral("seed"), recipe.seed);
    marker.setValue(QStringLiteral("d64"), recipe.d64);
    marker.setValue(QStringLiteral("t64"), recipe.t64);
    marker.setValue(QStringLiteral("prg"), recipe.prg);
    marker.setValue(QStringLiteral("tap"), recipe.tap);
    marker.setValue(QStringLiteral("crt"), recipe.crt);
    marker.setValue(QStringLiteral("files"), s.files);
    marker.setValue(QStringLiteral("d64Files"), s.d64Files);
    marker.setValue(QStringLiteral("entries"), s.entries);
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
    recipe->seed = marker.value(QStringLiteral("seed")).toUInt();
    recipe->d64 = marker.value(QStringLiteral("d64")).toInt();
    recipe->t64 = marker.value(QStringLiteral("t64")).toInt();
    recipe->prg = marker.value(QStringLiteral("prg")).toInt();
    recipe->tap = marker.value(QStringLiteral("tap")).toInt();
    recipe->crt = marker.value(QStringLiteral("crt")).toInt();
    stats->files = marker.value(QStringLiteral("files")).toLongLong();
    stats->d64Files = marker.value(QStringLiteral("d64Files")).toLongLong();
    stats->entries = marker.value(QStringLiteral("entries")).toLongLong();
    return true;
}

} // namespace vd::bench
