// Catalogue filters: the WHERE term of each compare word, adding and expanding conditions,
// the stored form in section MAIN with the default filters, and the icon of a filter's row.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "browser/Filters.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace vd;
using namespace vd::browser;

class TestFilters : public QObject
{
    Q_OBJECT

private slots:
    void compareText_data();
    void compareText();
    void addCondition();
    void expandFilter();
    void storedForm();
    void defaultsOfANewFile_data();
    void defaultsOfANewFile();
    void savedThroughTheSettingsWriter();
    void iconKeys_data();
    void iconKeys();

private:
    void useIni(const QByteArray& text);
    QTemporaryDir m_dir;
};

void TestFilters::useIni(const QByteArray& text)
{
    app::setProgramFolder(m_dir.path());
    QFile f(app::gIniFile);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(text);
    f.close();
    app::reloadIni();
    app::loadSettings();
}

void TestFilters::compareText_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("compare");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("contains") << "tFile"
                              << "( )"
                              << "ab"
                              << "tFile Like'*ab*'";
    QTest::newRow("begins") << "tImage"
                            << ">"
                            << "ab"
                            << "tImage Like'ab*'";
    QTest::newRow("ends") << "tPath"
                          << "<"
                          << "ab"
                          << "tPath Like'*ab'";
    QTest::newRow("not like") << "tFile"
                              << "<>"
                              << "a'b"
                              << "tFile Not Like'*a''b*'";
    QTest::newRow("contains doubles quote") << "tFile"
                                            << "( )"
                                            << "O'B"
                                            << "tFile Like'*O''B*'";
    QTest::newRow("equals keeps quote") << "tFile"
                                        << "="
                                        << "O'B"
                                        << "tFile ='O'B'";
    QTest::newRow("own star is the pattern") << "tFile"
                                             << "( )"
                                             << "a*b"
                                             << "tFile Like'a*b'";
    QTest::newRow("empty text") << "tUnpackPath"
                                << "<>"
                                << ""
                                << "tUnpackPath <>NULL";
    QTest::newRow("empty text, contains") << "tImage"
                                          << "( )"
                                          << ""
                                          << "tImage =NULL";
    QTest::newRow("empty comment") << "Comment"
                                   << ">"
                                   << ""
                                   << "Comment =''";
    QTest::newRow("number") << "iFileType"
                            << "="
                            << "4"
                            << "iFileType =4";
    QTest::newRow("number greater") << "lSize"
                                    << ">"
                                    << "100"
                                    << "lSize >100";
    QTest::newRow("empty number") << "lSize"
                                  << "="
                                  << ""
                                  << "";
    QTest::newRow("empty year") << "Y.YEAR"
                                << "<"
                                << ""
                                << "";
    QTest::newRow("user category contains") << "Category_User"
                                            << "( )"
                                            << ""
                                            << "Category_User =0";
    QTest::newRow("user category value") << "Category_User"
                                         << "( )"
                                         << "7"
                                         << "Category_User ( )7";
    QTest::newRow("GameBase key") << "GE_ID"
                                  << "="
                                  << ""
                                  << "GE_ID =Null";
}

void TestFilters::compareText()
{
    QFETCH(QString, field);
    QFETCH(QString, compare);
    QFETCH(QString, value);
    QFETCH(QString, expected);
    QCOMPARE(CompareText(clsFilterDef{field, compare, value, QString()}), expected);
}

void TestFilters::addCondition()
{
    clsFilter f;
    QVERIFY(!AddCondition(f, "tFile", "X", "abc", ""));
    QVERIFY(!AddCondition(f, "tFile", "( )", "", ""));
    QVERIFY(!AddCondition(f, "tFile", ">", "", ""));
    QCOMPARE(f.Defs.size(), 0);
    QVERIFY(AddCondition(f, "tUnpackPath", "<>", "", "")); // "<>" and "=" take an empty value
    QVERIFY(AddCondition(f, "tFile", "=", "", "And"));
    QVERIFY(AddCondition(f, "tFile", "( )", "@Sanxion", "And", "GB_ID", "101"));
    QVERIFY(AddCondition(f, "tFile", "( )", "Sanxion", "And", "GB_ID", "101"));
    QVERIFY(AddCondition(f, "YEAR", ">", "1985", "And", "Y.YEAR", "1985"));
    QCOMPARE(f.Defs.size(), 5);
    QCOMPARE(f.Defs[2].Field, QStringLiteral("GB_ID"));
    QCOMPARE(f.Defs[2].Value, QStringLiteral("101"));
    QCOMPARE(f.Defs[3].Field, QStringLiteral("tFile"));
    QCOMPARE(f.Defs[3].Value, QStringLiteral("Sanxion"));
    QCOMPARE(f.Defs[4].Field, QStringLiteral("Y.YEAR"));
}

void TestFilters::expandFilter()
{
    clsFilter f;
    f.Name = "x";
    f.Key = 3;
    f.Add("tFile", "( )", "a", "");
    f.Add("tPath", ">", "/c64", "And");
    const clsFilter e = ExpandFilter(f);
    QCOMPARE(e.Key, 3);
    QCOMPARE(e.Defs.size(), 3);
    QCOMPARE(e.Defs[1].Field, QStringLiteral("tPath"));
    QCOMPARE(e.Defs[1].Join, QString());
    QCOMPARE(e.Defs[2].Field, QStringLiteral("tUnpackPath"));
    QCOMPARE(e.Defs[2].Compare, QStringLiteral(">"));
    QCOMPARE(e.Defs[2].Value, QStringLiteral("/c64"));
    QCOMPARE(e.Defs[2].Join, QStringLiteral("Or"));
    QCOMPARE(f.Defs.size(), 2);
}

void TestFilters::storedForm()
{
    clsFilter f;
    f.Add("iFileType", "=", "4", "");
    f.Add("iFileType", "=", "5", "Or");
    QCOMPARE(joinFilterDefs(f), QStringLiteral("iFileType!@!=!@!4!@!@@@iFileType!@!=!@!5!@!Or"));
    // A definition that does not split into four parts is skipped.
    const auto defs = splitFilterDefs("tFile!@!=!@!a!@!@@@broken!@!=@@@lSize!@!<!@!9!@!And");
    QCOMPARE(defs.size(), 2);
    QCOMPARE(defs[1].Field, QStringLiteral("lSize"));
    QCOMPARE(defs[1].Join, QStringLiteral("And"));
    QVERIFY(splitFilterDefs("").isEmpty());
}

void TestFilters::defaultsOfANewFile_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("new file") << QByteArray()
                              << QStringList{"Disketten", "Kassetten", "PDF", "PRG + P00",
                                             "Bilder"};
    QTest::newRow("3.4 without filters")
        << QByteArray("[MAIN]\r\nVersion=3.4\r\n")
        << QStringList{"Disketten", "Kassetten", "PDF", "PRG + P00"};
    QTest::newRow("3.3 with its own filters")
        << QByteArray("[MAIN]\r\nVersion=3.3\r\nFilterName1=Mine\r\nFilterDef1=tFile!@!( "
                      ")!@!a!@!\r\nFilterName2=\r\nFilterName3=Lost\r\n")
        << QStringList{"Mine", "Bilder"};
}

void TestFilters::defaultsOfANewFile()
{
    QFETCH(QByteArray, ini);
    QFETCH(QStringList, names);
    useIni(ini);
    LoadMainFilters();
    QStringList got;
    for (int i = 0; i < gFilters.count(); ++i) {
        got << gFilters.at(i).Name;
        QCOMPARE(gFilters.at(i).Key, i + 1);
    }
    QCOMPARE(got, names);
    const clsFilter* pictures = gFilters.findByName("Bilder");
    if (pictures) {
        QCOMPARE(joinFilterDefs(*pictures),
                 QStringLiteral("Type!@!=!@!BMP!@!Or@@@Type!@!=!@!GIF!@!Or@@@Type!@!=!@!JPG!@!Or@@@"
                                "Type!@!=!@!PNG!@!Or@@@Type!@!=!@!TIFF!@!"));
    }
}

void TestFilters::savedThroughTheSettingsWriter()
{
    useIni(QByteArray());
    LoadMainFilters();
    gFilters.remove(3);
    AddFilter(gFilters, "Spiele", gFilters.nextKey()).Add("tPath", "( )", "game", "");
    const QString text = app::settingsText();
    QVERIFY(text.contains("\r\nFilterName1=Disketten\r\nFilterDef1=iFileType!@!=!@!1!@!\r\n"));
    QVERIFY(text.contains("\r\nFilterName3=PRG + P00\r\n"
                          "FilterDef3=iFileType!@!=!@!4!@!@@@iFileType!@!=!@!5!@!Or\r\n"));
    QVERIFY(text.contains("\r\nFilterName5=Spiele\r\nFilterDef5=tPath!@!( )!@!game!@!\r\n"));
    QVERIFY(!text.contains("FilterName6"));

    // Read back after the exit: the same filters, keys given anew, no second "Bilder".
    QVERIFY(app::writeSettings());
    app::reloadIni();
    app::loadSettings();
    LoadMainFilters();
    QCOMPARE(gFilters.count(), 5);
    QCOMPARE(gFilters.at(4).Name, QStringLiteral("Spiele"));
    QCOMPARE(gFilters.at(4).Key, 5);
    app::setIniPartWriter(app::IniPart::MainFilters, {});
}

void TestFilters::iconKeys_data()
{
    QTest::addColumn<QStringList>("defs"); // field|value
    QTest::addColumn<QString>("icon");
    QTest::newRow("disk") << QStringList{"iFileType|1"} << "1";
    QTest::newRow("two types") << QStringList{"iFileType|4", "iFileType|5"} << "FILTER";
    QTest::newRow("pictures") << QStringList{"Type|BMP", "Type|TIFF"} << "GFX";
    QTest::newRow("archives") << QStringList{"Type|RAR", "Type|7Z", "Type|CAB"} << "ZIP";
    QTest::newRow("texts") << QStringList{"Type|NFO", "Type|DIZ"} << "TXT";
    QTest::newRow("plain extension") << QStringList{"Type|ZIP"} << "ZIP";
    QTest::newRow("no type") << QStringList{"tFile|a"} << "FILTER";
}

void TestFilters::iconKeys()
{
    QFETCH(QStringList, defs);
    QFETCH(QString, icon);
    clsFilter f;
    for (const QString& d : defs)
        f.Add(d.section('|', 0, 0), "=", d.section('|', 1), "Or");
    QCOMPARE(FilterIconKey(f), icon);
}

QTEST_GUILESS_MAIN(TestFilters)
#include "tst_filters.moc"
