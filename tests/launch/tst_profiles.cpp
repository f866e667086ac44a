// Option strings, the built-in emulators and profile sets, and their assignment to extensions.

#include "launch/OptionString.h"
#include "launch/Profiles.h"

#include <QTest>

using namespace vd::launch;

Q_DECLARE_METATYPE(vd::launch::OptionTable)

class TestProfiles : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void parse_data();
    void parse();
    void joinSkipsEmptyTextsAndRoundTrips();

    void firstRunDefaults();
    void defaultSetsParseAsDesigned_data();
    void defaultSetsParseAsDesigned();
    void keyCounterAndKeys();
    void outOfRangeCreatesNothing();

    void extensionAssignments();
    void profilCaption();
};

void TestProfiles::init()
{
    gProfilKeyCounter = 0;
}

void TestProfiles::parse_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<OptionTable>("rows");

    QTest::newRow("empty is one row flagged -1") << "" << OptionTable{{"", "-1"}};
    QTest::newRow("on") << "-autorun=@=1" << OptionTable{{"-autorun", "1"}};
    QTest::newRow("off") << "-window=@=0" << OptionTable{{"-window", "0"}};
    QTest::newRow("any other flag is on") << "x=@=2" << OptionTable{{"x", "1"}};
    QTest::newRow("empty flag is on") << "x=@=" << OptionTable{{"x", "1"}};
    QTest::newRow("without =@= is off") << "-autorun" << OptionTable{{"-autorun", "0"}};
    QTest::newRow("three pieces are off, first piece kept")
        << "1=@=1=@=1" << OptionTable{{"1", "0"}};
    QTest::newRow("blanks and quotes kept")
        << "-8 \"<$filepath$>\"=@=1@@@ -x  y =@=0"
        << OptionTable{{"-8 \"<$filepath$>\"", "1"}, {" -x  y ", "0"}};
    QTest::newRow("empty item in the middle")
        << "a=@=1@@@@@@b=@=0" << OptionTable{{"a", "1"}, {"", "0"}, {"b", "0"}};
}

void TestProfiles::parse()
{
    QFETCH(QString, options);
    QFETCH(OptionTable, rows);
    QCOMPARE(ParseOptions(options), rows);
    QCOMPARE(HasNoItems(ParseOptions(options)), options.isEmpty());
}

void TestProfiles::joinSkipsEmptyTextsAndRoundTrips()
{
    QCOMPARE(JoinOptions(ParseOptions(QString())), QString());

    OptionTable rows = ParseOptions("a=@=1@@@b c=@=0@@@d=@=1");
    rows[1].text.clear(); // deleting the middle item
    QCOMPARE(JoinOptions(rows), QString("a=@=1@@@d=@=1"));

    // Deleting the only item leaves nothing, and the next parse says "no items" again.
    OptionTable single = ParseOptions("only=@=1");
    single[0].text.clear();
    QCOMPARE(JoinOptions(single), QString());
    QVERIFY(HasNoItems(ParseOptions(JoinOptions(single))));

    // The normalisation of flags: "2" and a missing separator are written as 1 and 0.
    QCOMPARE(JoinOptions(ParseOptions("x=@=2@@@y")), QString("x=@=1@@@y=@=0"));
}

void TestProfiles::firstRunDefaults()
{
    Emulators emulators;
    Profils profils;
    const int order[6][2] = {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 0}};
    for (const auto& kt : order)
        QVERIFY(AddDefaultEmulator(kt[0], kt[1], emulators, profils, true));

    QCOMPARE(emulators.count(), 6);
    QCOMPARE(profils.count(), 14);
    QCOMPARE(gProfilKeyCounter, 14);
    const QStringList names{"VICE", "CCS64", "HOXS64", "EMU64", "MICRO64", "File-Tool"};
    const QStringList paths{"VICE", "CCS64", "HOXS64", "EMU64", "MICRO64", "xxxTool.exe"};
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(emulators.at(i)->Name, names[i]);
        QCOMPARE(emulators.at(i)->Path, paths[i]);
        QCOMPARE(emulators.at(i)->Key, QString::number(i + 1));
        QVERIFY(emulators.at(i)->Aktiv);
    }
    // Each set is found under its own number and belongs to the emulator of its type.
    const int emulOfSet[15] = {0, 2, 2, 1, 1, 1, 1, 3, 3, 1, 4, 4, 6, 5, 1};
    for (int set = 1; set <= 14; ++set) {
        const ProfilPtr p = profils.find(QString::number(set));
        QVERIFY2(p, qPrintable(QString::number(set)));
        QCOMPARE(p->EmulKey, QString::number(emulOfSet[set]));
        QCOMPARE(p->Name, DefaultProfilName(set));
        QCOMPARE(p->Options, DefaultProfilOptions(set));
        QVERIFY(p->Aktiv);
    }
    // Collection order follows the emulators, each emulator's sets in the designed order.
    QStringList keys;
    for (const ProfilPtr& p : profils)
        keys << p->Key;
    QCOMPARE(keys.join(','), QString("3,4,5,6,9,14,1,2,7,8,10,11,13,12"));
}

void TestProfiles::defaultSetsParseAsDesigned_data()
{
    QTest::addColumn<int>("set");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("firstItem");
    QTest::addColumn<QString>("flags");

    QTest::newRow("1") << 1 << "Autorun"
                       << "\"<$filepath$>,<$c64fileindex$>\""
                       << "111001";
    QTest::newRow("2") << 2 << "Attach"
                       << "\"<$filepath$>,<$c64fileindex$>\""
                       << "10101";
    QTest::newRow("3") << 3 << "Autostart (Original File)"
                       << "-confirmexit"
                       << "1101";
    QTest::newRow("4") << 4 << "Autostart Disc (Temporary File)"
                       << "+confirmexit"
                       << "11011";
    QTest::newRow("5") << 5 << "Attach Disc"
                       << "+confirmexit"
                       << "1101";
    QTest::newRow("6") << 6 << "Attach Tape"
                       << "+confirmexit"
                       << "1101";
    QTest::newRow("7") << 7 << "Autoload (Temporary File)"
                       << "-autoload \"<$filepath$>\" 0"
                       << "101";
    QTest::newRow("8") << 8 << "Attach"
                       << "-autoload \"<$filepath$>\" 999"
                       << "10";
    QTest::newRow("9") << 9 << "Cartridge"
                       << "-cartcrt \"<$filepath$>\""
                       << "101";
    QTest::newRow("10") << 10 << "Autoload"
                        << "\"<$filepath$>\" <$c64fileindex$>"
                        << "11";
    QTest::newRow("11") << 11 << "Mount Disc"
                        << "\"<$filepath$>\""
                        << "111";
    QTest::newRow("12") << 12 << "Open"
                        << "\"<$filepath$>\""
                        << "1";
    QTest::newRow("13") << 13 << "Attach"
                        << "+link \"<$filepath$>\""
                        << "1";
    QTest::newRow("14") << 14 << "Attach Flip list"
                        << "-flipname \"<$filepath$>\""
                        << "101";
}

void TestProfiles::defaultSetsParseAsDesigned()
{
    QFETCH(int, set);
    QFETCH(QString, name);
    QFETCH(QString, firstItem);
    QFETCH(QString, flags);

    QCOMPARE(DefaultProfilName(set), name);
    const QString options = DefaultProfilOptions(set);
    const OptionTable rows = ParseOptions(options);
    QCOMPARE(rows.first().text, firstItem);
    QString parsedFlags;
    for (const OptionRow& row : rows)
        parsedFlags += row.flag;
    QCOMPARE(parsedFlags, flags);
    QCOMPARE(JoinOptions(rows), options); // written back byte for byte
}

void TestProfiles::keyCounterAndKeys()
{
    Profils profils;
    // A given key is used, but the counter goes up all the same.
    QCOMPARE(AddProfil(profils, "1", "A", "", true, 7)->Key, QString("7"));
    QCOMPARE(gProfilKeyCounter, 1);
    QCOMPARE(AddProfil(profils, "1", "B", "", false, 0)->Key, QString("2"));
    QVERIFY(!profils.find("2")->Aktiv);
    // Key 0 takes the counter, which may meet a taken key: nothing is added then.
    gProfilKeyCounter = 6;
    QVERIFY(!AddProfil(profils, "1", "C", "", true, 0));
    QCOMPARE(profils.count(), 2);

    Emulators emulators;
    QVERIFY(AddDefaultEmulator(1, 1, emulators, profils, false));
    QVERIFY(!AddEmulator(1, 2, "Other", "/x", emulators, true)); // key 1 is taken
    QCOMPARE(emulators.count(), 1);
    // Without set numbers, the six VICE profiles take the counter's next values.
    QStringList keys;
    for (const ProfilPtr& p : profils)
        if (p->EmulKey == "1" && p->Name != "A" && p->Name != "B")
            keys << p->Key;
    QCOMPARE(keys.join(','), QString("8,9,10,11,12,13"));
}

void TestProfiles::outOfRangeCreatesNothing()
{
    Emulators emulators;
    Profils profils;
    QVERIFY(!AddDefaultEmulator(1, -1, emulators, profils, true));
    QVERIFY(!AddDefaultEmulator(1, 6, emulators, profils, true));
    QVERIFY(!AddDefaultProfile("1", 0, profils, true));
    QVERIFY(!AddDefaultProfile("1", 15, profils, true));
    QCOMPARE(emulators.count(), 0);
    QCOMPARE(profils.count(), 0);
    QCOMPARE(gProfilKeyCounter, 0);
}

void TestProfiles::extensionAssignments()
{
    QCOMPARE(StartExtensions().size(), kStartExtensionCount);
    QCOMPARE(StartExtensionIndex(".d64"), 0);
    QCOMPARE(StartExtensionIndex(".VFL"), 11);
    QCOMPARE(StartExtensionIndex(".ZIP"), -1);

    const QList<int> vice{4, 4, 3, 3, 3, 3, 3, 1, 9, 3, 3, 14};
    for (int i = 0; i < kStartExtensionCount; ++i)
        QCOMPARE(DefaultProfilForExtension(1, i), vice[i]);
    QCOMPARE(DefaultProfilForExtension(0, 0), 0);
    QCOMPARE(DefaultProfilForExtension(6, 0), 0);
    QCOMPARE(DefaultProfilForExtension(1, 12), 0);

    // For every type, an extension gets one of the type's own sets, or, for the images the
    // type cannot read (.D71, .VSF, .C64, .D81, .VFL), a set of VICE or CCS64.
    const QList<int> foreign{0, 1, 0, 0, 0, 0, 1, 1, 0, 0, 1, 1};
    for (int type = 1; type <= 5; ++type) {
        for (int i = 0; i < kStartExtensionCount; ++i) {
            const int set = DefaultProfilForExtension(type, i);
            const bool own = DefaultProfilSets(type).contains(set);
            const bool viceOrCcs =
                DefaultProfilSets(1).contains(set) || DefaultProfilSets(2).contains(set);
            QVERIFY2(own || (foreign[i] && viceOrCcs),
                     qPrintable(QString("type %1 %2").arg(type).arg(StartExtensions()[i])));
        }
    }
}

void TestProfiles::profilCaption()
{
    Emulators emulators;
    Profils profils;
    AddDefaultEmulator(1, 1, emulators, profils, true);
    QCOMPARE(GetProfilCaption(emulators, profils, "4"),
             QString("VICE - Autostart Disc (Temporary File)"));
    QCOMPARE(GetProfilCaption(emulators, profils, "99"), QString());
    profils.find("4")->EmulKey = "42"; // emulator gone: the profile part stays
    QCOMPARE(GetProfilCaption(emulators, profils, "4"),
             QString(" - Autostart Disc (Temporary File)"));
}

QTEST_APPLESS_MAIN(TestProfiles)
#include "tst_profiles.moc"
