// The temporary disk copy puts the wanted program first; the source image stays untouched.

#include "app/Globals.h"
#include "formats/ByteSource.h"
#include "formats/DiskImage.h"
#include "launch/MakeTempDisk.h"
#include "platform/ScriptedDialogService.h"
#include "support/C64ImageWriter.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace vd;
using vd::test::DiskWriter;
using vd::test::Slot;

namespace {

QByteArray fileBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QStringList directoryOf(const QString& path, formats::DiskKind kind)
{
    const QByteArray bytes = fileBytes(path);
    const formats::MemoryBytes source(bytes);
    QStringList names;
    for (const formats::DirEntry& e :
         formats::readDiskDirectory(formats::diskGeometry(kind), source).entries)
        names
            << QString("%1/%2/%3").arg(formats::trimPadding(e.name)).arg(e.blocks).arg(e.fileTrack);
    return names;
}

// Ten programs over two directory sectors; the eighth has no name.
QVector<Slot> tenPrograms()
{
    QVector<Slot> list;
    for (int i = 1; i <= 10; ++i)
        list.append(Slot{0x82, i == 8 ? QByteArray("\x01") : "GAME" + QByteArray::number(i), i * 3,
                         quint8(i), 0});
    return list;
}

} // namespace

class TestMakeTempDisk : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void wantedProgramComesFirst_data();
    void wantedProgramComesFirst();
    void secondStartOnTheSameCopy();
    void d81UsesItsOwnDirectory();
    void copyFailureIsReported();

private:
    QString makeD64();
    QTemporaryDir m_dir;
    platform::ScriptedDialogService m_dialogs;
};

void TestMakeTempDisk::init()
{
    QVERIFY(m_dir.isValid());
    app::setProgramFolder(m_dir.path());
    QDir(app::gTempPath).removeRecursively();
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
}

void TestMakeTempDisk::cleanup()
{
    platform::setDialogService(nullptr);
}

QString TestMakeTempDisk::makeD64()
{
    const QString path = m_dir.filePath("disks/Games.D64");
    QDir().mkpath(m_dir.filePath("disks"));
    DiskWriter::d64().entries(tenPrograms()).save(path);
    return path;
}

void TestMakeTempDisk::wantedProgramComesFirst_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("first");
    QTest::addColumn<int>("swappedPlace");

    QTest::newRow("fifth") << "GAME5" << 15 << 5 << "GAME5/15/5" << 5;
    QTest::newRow("in the second sector") << "GAME10" << 30 << 10 << "GAME10/30/10" << 10;
    QTest::newRow("nameless by its place") << "" << 24 << 8 << "\x01/24/8" << 8;
    QTest::newRow("first already") << "GAME1" << 3 << 1 << "GAME1/3/1" << 0;
    QTest::newRow("size does not match") << "GAME5" << 16 << 5 << "GAME1/3/1" << 0;
}

void TestMakeTempDisk::wantedProgramComesFirst()
{
    QFETCH(QString, name);
    QFETCH(int, size);
    QFETCH(int, index);
    QFETCH(QString, first);
    QFETCH(int, swappedPlace);

    const QString source = makeD64();
    const QByteArray before = fileBytes(source);
    const QString copy = launch::MakeTempDisk(source, 42, 1, name, size, index);
    QCOMPARE(copy, app::gTempPath + "/42.D64");
    QCOMPARE(fileBytes(source), before);

    const QStringList original = directoryOf(source, formats::DiskKind::D64);
    QStringList expected = original;
    if (swappedPlace > 0)
        expected.swapItemsAt(0, swappedPlace - 1);
    const QStringList dir = directoryOf(copy, formats::DiskKind::D64);
    QCOMPARE(dir.first(), first);
    QCOMPARE(dir, expected);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestMakeTempDisk::secondStartOnTheSameCopy()
{
    const QString source = makeD64();
    const QString copy = launch::MakeTempDisk(source, 7, 1, "GAME5", 15, 5);
    QCOMPARE(directoryOf(copy, formats::DiskKind::D64).first(), QString("GAME5/15/5"));
    // GAME1 now stands at place 5 of the copy; the catalogue still says 1, which only matters
    // for nameless entries: the match goes by name and size.
    const QString again = launch::MakeTempDisk(source, 7, 1, "GAME3", 9, 3);
    QCOMPARE(again, copy);
    const QStringList dir = directoryOf(copy, formats::DiskKind::D64);
    QCOMPARE(dir.first(), QString("GAME3/9/3"));
    QCOMPARE(dir.at(2), QString("GAME5/15/5"));
    QCOMPARE(dir.at(4), QString("GAME1/3/1"));
}

void TestMakeTempDisk::d81UsesItsOwnDirectory()
{
    const QString path = m_dir.filePath("Big.d81");
    DiskWriter::d81().entries(tenPrograms()).save(path);
    const QString copy = launch::MakeTempDisk(path, 9, 13, "GAME9", 27, 9);
    QCOMPARE(copy, app::gTempPath + "/9.d81");
    QCOMPARE(directoryOf(copy, formats::DiskKind::D81).first(), QString("GAME9/27/9"));
}

void TestMakeTempDisk::copyFailureIsReported()
{
    const QString copy = launch::MakeTempDisk(m_dir.filePath("missing.d64"), 3, 1, "X", 1, 2);
    QCOMPARE(copy, QString());
    QCOMPARE(m_dialogs.messages().size(), 1);
    QVERIFY2(m_dialogs.messages().first().startsWith("Fehler beim Erstellen der Temp-Datei: "),
             qPrintable(m_dialogs.messages().first()));
}

QTEST_GUILESS_MAIN(TestMakeTempDisk)
#include "tst_maketempdisk.moc"
