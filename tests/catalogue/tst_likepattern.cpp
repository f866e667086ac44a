// The LIKE pattern on the bytes the engine hands over: the search boxes' plain shapes ("*x*",
// "x*", "*x", "x") take a short way over ASCII texts, and every answer must be the one the full
// comparison of folded characters gives, for those shapes and for the rest.

#include "catalogue/JetSql.h"

#include <QtTest>

using vd::db::JetPattern;

namespace {

bool viaBytes(const JetPattern& p, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    return p.matchesUtf8(utf8.constData(), int(utf8.size()));
}

} // namespace

class TestLikePattern : public QObject
{
    Q_OBJECT

private slots:
    void plainShapesMatchAsTheyShould_data();
    void plainShapesMatchAsTheyShould();
    void bytesAgreeWithTheFullComparison();
};

void TestLikePattern::plainShapesMatchAsTheyShould_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("match");

    // Contains, as a search box asks.
    QTest::newRow("inside") << "*4711*"
                            << "PROGRAM 47110" << true;
    QTest::newRow("digits in another order") << "*4711*"
                                             << "PROGRAM 4171" << false;
    QTest::newRow("at the start") << "*sanx*"
                                  << "SANXION" << true;
    QTest::newRow("at the end") << "*ion*"
                                << "SANXION" << true;
    QTest::newRow("the whole text") << "*sanxion*"
                                    << "Sanxion" << true;
    QTest::newRow("longer than the text") << "*sanxion hi*"
                                          << "SANXION" << false;
    QTest::newRow("after a false start") << "*aab*"
                                         << "xaaab" << true;
    QTest::newRow("cut off at the end") << "*aab*"
                                        << "xaaa" << false;
    QTest::newRow("empty text") << "*a*"
                                << "" << false;
    QTest::newRow("runs of stars") << "**ura**"
                                   << "URIDIUM" << false;
    QTest::newRow("quote inside") << "*o'b*"
                                  << "O'BRIEN" << true;
    // Prefix, suffix and the whole text.
    QTest::newRow("prefix") << "pro*"
                            << "PROGRAM 1" << true;
    QTest::newRow("prefix elsewhere") << "ram*"
                                      << "PROGRAM" << false;
    QTest::newRow("suffix") << "*.D64"
                            << "game.d64" << true;
    QTest::newRow("suffix elsewhere") << "*.d6"
                                      << "game.d64" << false;
    QTest::newRow("exact in another case") << "Commando"
                                           << "COMMANDO" << true;
    QTest::newRow("exact but longer") << "Commando"
                                      << "COMMANDO 2" << false;
    // Texts beyond ASCII take the full comparison: the Kelvin sign folds to "k".
    QTest::newRow("Kelvin sign") << "*kid*" << QString(QChar(0x212A)) + "ID" << true;
    QTest::newRow("umlaut in the text") << "*ber*" << QString::fromUtf8("Über") << true;
    QTest::newRow("umlaut in the pattern")
        << QString::fromUtf8("*ä*") << QString::fromUtf8("SPÄT") << true;
    QTest::newRow("sharp s is no ss") << "*ss*" << QString::fromUtf8("straße") << false;
}

void TestLikePattern::plainShapesMatchAsTheyShould()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QFETCH(bool, match);
    const JetPattern p(pattern);
    QCOMPARE(viaBytes(p, text), match);
    QCOMPARE(p.matches(text), match);
}

void TestLikePattern::bytesAgreeWithTheFullComparison()
{
    // Every pattern against every text: the short way never answers otherwise than the full one.
    const QStringList patterns = {"*a*",    "a*",    "*a",    "a",     "*ab*",  "ab*",
                                  "*ab",    "ab",    "*aba*", "*zz*",  "*a?a*", "*#*",
                                  "[a-b]*", "*[!a]", "a*b",   "*a*b*", "*",     "**",
                                  "*ÄB*",   "?",     "*.*",   "*a b*", "*[*",   "*]*"};
    const QStringList texts = {"",
                               "a",
                               "A",
                               "ab",
                               "AB",
                               "ba",
                               "abab",
                               "aab",
                               "bab",
                               "xyz",
                               "a1a",
                               "a.b",
                               "a b",
                               "[",
                               "x]",
                               "äb",
                               "ÄB",
                               "aäb",
                               QString(QChar(0x212A)),
                               "abc\u00e9",
                               "ABA",
                               "zz top"};
    for (const QString& pattern : patterns) {
        const JetPattern p(pattern);
        for (const QString& text : texts) {
            if (viaBytes(p, text) != p.matches(text))
                QFAIL(qPrintable(QStringLiteral("'%1' like '%2': the bytes give %3")
                                     .arg(text, pattern)
                                     .arg(viaBytes(p, text))));
        }
    }
}

QTEST_GUILESS_MAIN(TestLikePattern)
#include "tst_likepattern.moc"
