// The parameter string of a profile is split like a Windows program splits its command line.

#include "launch/CommandLine.h"

#include <QTest>

using vd::launch::SplitCommandLine;

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void split_data();
    void split();
    void literalValuesSurviveTheSplit_data();
    void literalValuesSurviveTheSplit();
};

void TestCommandLine::split_data()
{
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QStringList>("args");

    QTest::newRow("empty") << "" << QStringList{};
    QTest::newRow("only blanks") << " \t  " << QStringList{};
    QTest::newRow("plain words") << "-autostart game.d64" << QStringList{"-autostart", "game.d64"};
    QTest::newRow("double blank kept apart")
        << "-1 \"/c64/a b.tap\"  -fastload" << QStringList{"-1", "/c64/a b.tap", "-fastload"};
    QTest::newRow("leading and trailing blanks, tabs") << "\t a\tb  " << QStringList{"a", "b"};
    QTest::newRow("quotes inside a word join")
        << "-autostart \"/g/x y.d64\":MY GAME"
        << QStringList{"-autostart", "/g/x y.d64:MY", "GAME"};
    QTest::newRow("quoted program name with colon")
        << "-autostart \"/g/x y.d64:MY GAME\"" << QStringList{"-autostart", "/g/x y.d64:MY GAME"};
    QTest::newRow("empty argument") << "a \"\" b" << QStringList{"a", "", "b"};
    QTest::newRow("only an empty argument") << "\"\"" << QStringList{""};
    QTest::newRow("two quotes inside quotes") << "\"say \"\"hi\"\"\"" << QStringList{"say \"hi\""};
    QTest::newRow("unclosed quote runs to the end") << "\"a b" << QStringList{"a b"};
    QTest::newRow("backslashes alone are kept")
        << "C:\\Games\\c64 \\\\server\\x" << QStringList{"C:\\Games\\c64", "\\\\server\\x"};
    QTest::newRow("one backslash before quote is a literal quote")
        << "a\\\"b" << QStringList{"a\"b"};
    QTest::newRow("two backslashes before quote halve and quote")
        << "\"a\\\\\" b" << QStringList{"a\\", "b"};
    QTest::newRow("three backslashes before quote") << "a\\\\\\\"b" << QStringList{"a\\\"b"};
    QTest::newRow("trailing backslashes in quotes")
        << "\"C:\\dir\\\\\"" << QStringList{"C:\\dir\\"};
    QTest::newRow("backslash at the end") << "a\\" << QStringList{"a\\"};
    QTest::newRow("no shell expansion")
        << "$HOME `ls` ; | > * ~" << QStringList{"$HOME", "`ls`", ";", "|", ">", "*", "~"};
}

void TestCommandLine::split()
{
    QFETCH(QString, raw);
    QFETCH(QStringList, args);
    QCOMPARE(SplitCommandLine(raw), args);
}

// A path or a C64 name put into a template comes back from the split as it was, whatever
// quotes and backslashes it holds and whether the template quotes it or not.
void TestCommandLine::literalValuesSurviveTheSplit_data()
{
    QTest::addColumn<QString>("value");
    for (const char* value : {"/c64/plain.d64", "/c64/a \"b\" c.d64", "x\\\"y", "ends\\",
                              "ends\\\\", "\"", "\\\"\\\"", "'$HOME`id`;*"})
        QTest::newRow(value) << QString::fromLatin1(value);
}

void TestCommandLine::literalValuesSurviveTheSplit()
{
    QFETCH(QString, value);
    QString quoted = QStringLiteral("-autostart \"@FILEPATH@\" -x");
    vd::launch::ReplaceWithLiteral(quoted, QStringLiteral("@FILEPATH@"), value);
    QCOMPARE(SplitCommandLine(quoted), QStringList({"-autostart", value, "-x"}));
    QString named = QStringLiteral("\"@FILEPATH@:@FILEPATH@\"");
    vd::launch::ReplaceWithLiteral(named, QStringLiteral("@FILEPATH@"), value);
    QCOMPARE(SplitCommandLine(named), QStringList({value + ':' + value}));
    if (!value.contains(u' ')) {
        QString bare = QStringLiteral("-1 @FILEPATH@");
        vd::launch::ReplaceWithLiteral(bare, QStringLiteral("@FILEPATH@"), value);
        QCOMPARE(SplitCommandLine(bare), QStringList({"-1", value}));
    }
}

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
