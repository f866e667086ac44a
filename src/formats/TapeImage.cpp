#include "formats/TapeImage.h"

#include "formats/CbmText.h"
#include "platform/Latin1.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vd::formats {

namespace {

QString textUntilZero(const ByteSource& tape, qint64 offset, int length)
{
    return platform::latin1ToText(untilZero(tape.bytes(offset, length)));
}

// Start offsets as the directory states them, signed as a 32-bit number.
qint64 startOffset(const ByteSource& tape, qint64 entry)
{
    const QByteArray b = tape.bytes(entry + kT64EntryStart, 4);
    return qint64(qint32(littleEndian(b, 0, 4)));
}

} // namespace

bool isT64Header(const QString& header)
{
    const QString upper = upperLatin1(header);
    return upper.contains(QLatin1String("TAPE")) && !upper.contains(QLatin1String("RAW")) &&
           header.startsWith(QLatin1String("C64"));
}

QString readT64Header(const ByteSource& tape)
{
    return textUntilZero(tape, kT64HeaderText, kT64HeaderTextLength);
}

TapeDirectory readT64Directory(const ByteSource& file)
{
    TapeDirectory dir;
    const QByteArray head = file.bytes(0, kT64Directory);
    const MemoryBytes headBytes(head);
    dir.header = readT64Header(headBytes);
    const int count = headBytes.byteAt(kT64CountHigh) * 256 + headBytes.byteAt(kT64CountLow);
    dir.count = std::min(count, kT64MaxEntries);
    dir.tapeName = trimRightBlanks(textUntilZero(headBytes, kT64TapeName, kT64TapeNameLength));

    // The directory is read in one piece; what lies beyond the file reads as 0.
    const int n = dir.count;
    const QByteArray directory = file.bytes(0, kT64Directory + qint64(n) * kT64EntrySize);
    const MemoryBytes tape(directory);
    std::vector<qint64> start(size_t(n) + 1, 0);
    std::vector<int> order(size_t(n) + 1, 0);
    QVector<TapeEntry> entries(n);
    for (int i = 0; i < n; ++i) {
        const qint64 entry = kT64Directory + qint64(i) * kT64EntrySize;
        entries[i].index = i + 1;
        if (tape.byteAt(entry + kT64EntryUsed) == 0)
            continue;
        entries[i].used = true;
        start[i] = startOffset(tape, entry);
        order[i] = i;
        // One exchange with the first earlier entry that starts later: right for a directory
        // whose entries are at most one step out of file order, and no more is attempted.
        for (int j = 0; j < i; ++j)
            if (start[j] > start[i]) {
                order[i] = order[j];
                order[j] = i;
                break;
            }
        entries[i].name =
            trimRightBlanks(textUntilZero(tape, entry + kT64EntryName, kT64EntryNameLength));
    }
    start[n] = file.size();
    order[n] = n;

    for (int i = 0; i < n; ++i) {
        for (int j = 0; j <= n; ++j)
            if (order[j] - 1 == order[i]) {
                const double bytes = double(start[j] - start[i] + kLoadAddressBytes);
                entries[i].blocks = roundHalfEven(bytes / kBlockBytes);
                break;
            }
    }
    dir.entries = entries;
    return dir;
}

qint64 roundHalfEven(double value)
{
    const double floor = std::floor(value);
    const double diff = value - floor;
    double result = floor;
    if (diff > 0.5 || (diff == 0.5 && std::fmod(floor, 2.0) != 0.0))
        result = floor + 1.0;
    return qint64(result);
}

} // namespace vd::formats
