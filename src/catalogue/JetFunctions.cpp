#include "catalogue/JetFunctions.h"

#include "catalogue/JetSql.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
#include <sqlite3.h>

#include <cmath>

namespace vd::db {

// --- the routines themselves, usable without the engine ------------------------------------

namespace {

bool isValBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n') ||
           c == QLatin1Char('\r');
}

// The characters Val looks at: everything but blanks.
QString withoutBlanks(QStringView text)
{
    QString s;
    s.reserve(text.size());
    for (QChar c : text) {
        if (!isValBlank(c))
            s.append(c);
    }
    return s;
}

// The value of a digit in bases up to 16, or 16 for a character that is none.
int digitValue(QChar c)
{
    const char16_t u = QChar::toUpper(c.unicode());
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return 16;
}

double radixVal(QStringView digits, int radix)
{
    double v = 0;
    for (QChar c : digits) {
        const int d = digitValue(c);
        if (d >= radix)
            break;
        v = v * radix + d;
    }
    return v;
}

// The length of the leading decimal number of `s` (sign, digits, point, exponent).
qsizetype decimalLength(const QString& s)
{
    qsizetype i = 0;
    if (i < s.size() && (s[i] == QLatin1Char('+') || s[i] == QLatin1Char('-')))
        ++i;
    bool digits = false;
    while (i < s.size() && s[i].isDigit() && s[i].unicode() < 128) {
        ++i;
        digits = true;
    }
    if (i < s.size() && s[i] == QLatin1Char('.')) {
        ++i;
        while (i < s.size() && s[i].isDigit() && s[i].unicode() < 128) {
            ++i;
            digits = true;
        }
    }
    if (!digits)
        return 0;
    if (i < s.size() &&
        (s[i].toUpper() == QLatin1Char('E') || s[i].toUpper() == QLatin1Char('D'))) {
        qsizetype j = i + 1;
        if (j < s.size() && (s[j] == QLatin1Char('+') || s[j] == QLatin1Char('-')))
            ++j;
        const qsizetype firstDigit = j;
        while (j < s.size() && s[j].isDigit() && s[j].unicode() < 128)
            ++j;
        if (j > firstDigit)
            i = j;
    }
    return i;
}

} // namespace

QVariant vbVal(const QString& text)
{
    // Val reads a number from the start of a text, passing over blanks anywhere in it.
    const QString s = withoutBlanks(text);
    if (s.startsWith(QLatin1String("&H"), Qt::CaseInsensitive) ||
        s.startsWith(QLatin1String("&O"), Qt::CaseInsensitive)) {
        const double v = radixVal(QStringView(s).mid(2), s[1].toUpper() == QLatin1Char('H') ? 16 : 8);
        return v < 9.0e18 ? QVariant(qlonglong(v)) : QVariant(v);
    }
    const qsizetype n = decimalLength(s);
    if (n == 0)
        return QVariant(qlonglong(0));
    QString number = s.left(n);
    bool ok = false;
    const qlonglong whole = number.toLongLong(&ok);
    if (ok)
        return QVariant(whole);
    number.replace(QLatin1Char('d'), QLatin1Char('e')).replace(QLatin1Char('D'), QLatin1Char('e'));
    const double v = number.toDouble(&ok);
    return ok && std::isfinite(v) ? QVariant(v) : QVariant(qlonglong(0));
}

namespace {

QString formatNumber(double value, const QString& fmt)
{
    // "0", "00", "#,0", "0.00", "#,0.0#": leading zeros, decimals, thousands grouping.
    const int point = fmt.indexOf(QLatin1Char('.'));
    const QString intPart = point < 0 ? fmt : fmt.left(point);
    const QString fracPart = point < 0 ? QString() : fmt.mid(point + 1);
    const int minInt = int(intPart.count(QLatin1Char('0')));
    const int minFrac = int(fracPart.count(QLatin1Char('0')));
    const int maxFrac = minFrac + int(fracPart.count(QLatin1Char('#')));
    const bool group = intPart.contains(QLatin1Char(','));
    QString s = QString::number(std::fabs(value), 'f', maxFrac);
    if (maxFrac > minFrac) {
        while (s.endsWith(QLatin1Char('0')) && s.size() - s.indexOf(QLatin1Char('.')) - 1 > minFrac)
            s.chop(1);
        if (s.endsWith(QLatin1Char('.')))
            s.chop(1);
    }
    QString ip = s.section(QLatin1Char('.'), 0, 0);
    const QString fp = s.contains(QLatin1Char('.')) ? s.section(QLatin1Char('.'), 1) : QString();
    if (ip == QLatin1String("0") && minInt == 0)
        ip.clear();
    while (ip.size() < minInt)
        ip.prepend(QLatin1Char('0'));
    if (group) {
        for (int k = ip.size() - 3; k > 0; k -= 3)
            ip.insert(k, QLatin1Char(','));
    }
    QString out = ip;
    if (!fp.isEmpty())
        out += QLatin1Char('.') + fp;
    if (value < 0 && out.contains(QRegularExpression(QStringLiteral("[1-9]"))))
        out.prepend(QLatin1Char('-'));
    return out;
}

QString formatDate(const QDateTime& dt, const QString& fmt)
{
    const QString lower = fmt.toLower();
    if (lower == QLatin1String("short date"))
        return QLocale().toString(dt.date(), QLocale::ShortFormat);
    if (lower == QLatin1String("long date"))
        return QLocale().toString(dt.date(), QLocale::LongFormat);
    if (lower == QLatin1String("general date") || lower.isEmpty())
        return dt.time() == QTime(0, 0) ? QLocale().toString(dt.date(), QLocale::ShortFormat)
                                        : QLocale().toString(dt, QLocale::ShortFormat);
    QString out;
    bool afterHour = false;
    int i = 0;
    auto run = [&](QChar c) {
        int n = 0;
        while (i + n < fmt.size() && fmt[i + n].toLower() == c)
            ++n;
        return n;
    };
    while (i < fmt.size()) {
        const QChar c = fmt[i].toLower();
        if (c == QLatin1Char('"')) {
            const int end = fmt.indexOf(QLatin1Char('"'), i + 1);
            out += fmt.mid(i + 1, (end < 0 ? fmt.size() : end) - i - 1);
            i = end < 0 ? fmt.size() : end + 1;
            continue;
        }
        if (c == QLatin1Char('\\') && i + 1 < fmt.size()) {
            out += fmt[i + 1];
            i += 2;
            continue;
        }
        if (lower.mid(i, 5) == QLatin1String("am/pm")) {
            const bool pm = dt.time().hour() >= 12;
            const QString s = pm ? QStringLiteral("pm") : QStringLiteral("am");
            out += fmt[i].isUpper() ? s.toUpper() : s;
            i += 5;
            continue;
        }
        const int n = run(c);
        if (c == QLatin1Char('d')) {
            out += n == 1 ? QString::number(dt.date().day())
                          : n == 2 ? QStringLiteral("%1").arg(dt.date().day(), 2, 10, QLatin1Char('0'))
                                   : QLocale(QLocale::English).toString(dt.date(), n == 3 ? QStringLiteral("ddd") : QStringLiteral("dddd"));
        } else if (c == QLatin1Char('m')) {
            if (afterHour && n <= 2) {
                out += n == 1 ? QString::number(dt.time().minute())
                              : QStringLiteral("%1").arg(dt.time().minute(), 2, 10, QLatin1Char('0'));
            } else {
                out += n == 1 ? QString::number(dt.date().month())
                              : n == 2 ? QStringLiteral("%1").arg(dt.date().month(), 2, 10, QLatin1Char('0'))
                                       : QLocale(QLocale::English).toString(dt.date(), n == 3 ? QStringLiteral("MMM") : QStringLiteral("MMMM"));
            }
        } else if (c == QLatin1Char('y')) {
            out += n <= 2 ? QStringLiteral("%1").arg(dt.date().year() % 100, 2, 10, QLatin1Char('0'))
                          : QString::number(dt.date().year());
        } else if (c == QLatin1Char('h')) {
            int h = dt.time().hour();
            if (lower.contains(QLatin1String("am/pm")))
                h = h % 12 == 0 ? 12 : h % 12;
            out += n == 1 ? QString::number(h) : QStringLiteral("%1").arg(h, 2, 10, QLatin1Char('0'));
            afterHour = true;
            i += n;
            continue;
        } else if (c == QLatin1Char('n')) {
            out += n == 1 ? QString::number(dt.time().minute())
                          : QStringLiteral("%1").arg(dt.time().minute(), 2, 10, QLatin1Char('0'));
        } else if (c == QLatin1Char('s')) {
            out += n == 1 ? QString::number(dt.time().second())
                          : QStringLiteral("%1").arg(dt.time().second(), 2, 10, QLatin1Char('0'));
        } else {
            out += QString(n, fmt[i]);
        }
        if (c != QLatin1Char(' ') && c != QLatin1Char(':'))
            afterHour = false;
        i += n;
    }
    return out;
}

} // namespace

QString vbFormat(const QVariant& value, const QString& fmt)
{
    if (value.isNull())
        return {};
    if (value.typeId() == QMetaType::QDateTime)
        return formatDate(value.toDateTime(), fmt);
    if (value.typeId() == QMetaType::QString) {
        const QDateTime dt = dateFromStorage(value.toString());
        if (dt.isValid())
            return formatDate(dt, fmt);
        bool ok = false;
        const double d = value.toString().toDouble(&ok);
        if (!ok || fmt.isEmpty())
            return value.toString();
        return formatNumber(d, fmt);
    }
    if (fmt.isEmpty())
        return value.toString();
    return formatNumber(value.toDouble(), fmt);
}

// --- the engine's side ---------------------------------------------------------------------

namespace {

QString argText(sqlite3_value* v)
{
    const auto* t = reinterpret_cast<const char*>(sqlite3_value_text(v));
    return QString::fromUtf8(t, sqlite3_value_bytes(v));
}

void resultText(sqlite3_context* ctx, const QString& s)
{
    const QByteArray b = s.toUtf8();
    sqlite3_result_text(ctx, b.constData(), int(b.size()), SQLITE_TRANSIENT);
}

bool anyNull(int argc, sqlite3_value** argv)
{
    for (int i = 0; i < argc; ++i)
        if (sqlite3_value_type(argv[i]) == SQLITE_NULL)
            return true;
    return false;
}

void fnLike(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    // like(pattern, value): the engine calls it for "value LIKE pattern".
    if (anyNull(argc, argv)) {
        sqlite3_result_null(ctx);
        return;
    }
    auto* pattern = static_cast<JetPattern*>(sqlite3_get_auxdata(ctx, 0));
    if (!pattern) {
        pattern = new JetPattern(argText(argv[0]));
        sqlite3_set_auxdata(ctx, 0, pattern, [](void* p) { delete static_cast<JetPattern*>(p); });
        pattern = static_cast<JetPattern*>(sqlite3_get_auxdata(ctx, 0));
        if (!pattern) {
            JetPattern once(argText(argv[0]));
            sqlite3_result_int(ctx, once.matches(argText(argv[1])) ? 1 : 0);
            return;
        }
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(argv[1]));
    sqlite3_result_int(ctx, pattern->matchesUtf8(text, sqlite3_value_bytes(argv[1])) ? 1 : 0);
}

template <typename F>
void textFn(sqlite3_context* ctx, int argc, sqlite3_value** argv, F f)
{
    if (anyNull(argc, argv)) {
        sqlite3_result_null(ctx);
        return;
    }
    resultText(ctx, f(argText(argv[0])));
}

void fnUcase(sqlite3_context* c, int n, sqlite3_value** v)
{
    textFn(c, n, v, [](const QString& s) { return s.toUpper(); });
}
void fnLcase(sqlite3_context* c, int n, sqlite3_value** v)
{
    textFn(c, n, v, [](const QString& s) { return s.toLower(); });
}
void fnLeft(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    const qint64 k = std::max<qint64>(0, sqlite3_value_int64(v[1]));
    resultText(c, argText(v[0]).left(k));
}
void fnRight(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    const qint64 k = std::max<qint64>(0, sqlite3_value_int64(v[1]));
    resultText(c, argText(v[0]).right(k));
}
void fnMid(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    const qint64 start = std::max<qint64>(1, sqlite3_value_int64(v[1]));
    const qint64 len = n > 2 ? std::max<qint64>(0, sqlite3_value_int64(v[2])) : -1;
    resultText(c, argText(v[0]).mid(start - 1, len));
}
void fnLen(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    sqlite3_result_int64(c, argText(v[0]).size());
}
void fnInstr(sqlite3_context* c, int n, sqlite3_value** v)
{
    // InStr([start,] text, sought [, compare]); compare 0 is exact, else without case.
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    int first = 0;
    qint64 start = 1;
    if (n >= 3 && sqlite3_value_type(v[0]) != SQLITE_TEXT) {
        start = sqlite3_value_int64(v[0]);
        first = 1;
    }
    Qt::CaseSensitivity cs = Qt::CaseInsensitive;
    if (n >= first + 3)
        cs = sqlite3_value_int(v[first + 2]) == 0 ? Qt::CaseSensitive : Qt::CaseInsensitive;
    const QString text = argText(v[first]);
    const QString sought = argText(v[first + 1]);
    if (start < 1)
        start = 1;
    if (start > text.size() + 1)
        return sqlite3_result_int(c, 0);
    if (sought.isEmpty())
        return sqlite3_result_int64(c, start);
    sqlite3_result_int64(c, text.indexOf(sought, start - 1, cs) + 1);
}
void fnVal(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    const QVariant r = vbVal(argText(v[0]));
    if (r.typeId() == QMetaType::LongLong)
        sqlite3_result_int64(c, r.toLongLong());
    else
        sqlite3_result_double(c, r.toDouble());
}
QVariant argVariant(sqlite3_value* v)
{
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
        return QVariant(qlonglong(sqlite3_value_int64(v)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_value_double(v));
    case SQLITE_NULL:
        return {};
    default:
        return QVariant(argText(v));
    }
}
void fnFormat(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (sqlite3_value_type(v[0]) == SQLITE_NULL)
        return sqlite3_result_null(c);
    resultText(c, vbFormat(argVariant(v[0]), n > 1 ? argText(v[1]) : QString()));
}
void fnStr(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    const QString s = argText(v[0]);
    resultText(c, s.startsWith(QLatin1Char('-')) ? s : QLatin1Char(' ') + s);
}
void fnCstr(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    resultText(c, argText(v[0]));
}
void fnChr(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    resultText(c, QString(QChar(char16_t(sqlite3_value_int(v[0]) & 0xFFFF))));
}
void fnAsc(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    const QString s = argText(v[0]);
    if (s.isEmpty())
        return sqlite3_result_null(c);
    sqlite3_result_int(c, s[0].unicode());
}
void fnInt(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    sqlite3_result_int64(c, qint64(std::floor(sqlite3_value_double(v[0]))));
}
void fnFix(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    sqlite3_result_int64(c, qint64(std::trunc(sqlite3_value_double(v[0]))));
}
void fnRound(sqlite3_context* c, int n, sqlite3_value** v)
{
    // CInt and CLng round halves to the even neighbour.
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    sqlite3_result_int64(c, qint64(std::nearbyint(sqlite3_value_double(v[0]))));
}
void fnPow(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    sqlite3_result_double(c, std::pow(sqlite3_value_double(v[0]), sqlite3_value_double(v[1])));
}
void fnPlus(sqlite3_context* c, int n, sqlite3_value** v)
{
    // "+" joins two texts and adds anything else.
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    const int ta = sqlite3_value_type(v[0]), tb = sqlite3_value_type(v[1]);
    if (ta == SQLITE_TEXT && tb == SQLITE_TEXT)
        return resultText(c, argText(v[0]) + argText(v[1]));
    const int na = sqlite3_value_numeric_type(v[0]), nb = sqlite3_value_numeric_type(v[1]);
    if (na == SQLITE_INTEGER && nb == SQLITE_INTEGER)
        return sqlite3_result_int64(c, sqlite3_value_int64(v[0]) + sqlite3_value_int64(v[1]));
    sqlite3_result_double(c, sqlite3_value_double(v[0]) + sqlite3_value_double(v[1]));
}
void fnNow(sqlite3_context* c, int, sqlite3_value**)
{
    resultText(c, dateToStorage(QDateTime::currentDateTime()));
}
void fnDate(sqlite3_context* c, int, sqlite3_value**)
{
    resultText(c, dateToStorage(QDateTime(QDate::currentDate(), QTime(0, 0))));
}
template <int Part>
void fnDatePart(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    const QDateTime dt = dateFromStorage(argText(v[0]));
    if (!dt.isValid())
        return sqlite3_result_null(c);
    const int parts[] = {dt.date().year(), dt.date().month(), dt.date().day(),
                         dt.time().hour(), dt.time().minute(), dt.time().second()};
    sqlite3_result_int(c, parts[Part]);
}
void fnSpace(sqlite3_context* c, int n, sqlite3_value** v)
{
    if (anyNull(n, v))
        return sqlite3_result_null(c);
    resultText(c, QString(std::clamp(sqlite3_value_int(v[0]), 0, 65535), QLatin1Char(' ')));
}

} // namespace

void registerJetFunctions(sqlite3* db)
{
    struct Fn
    {
        const char* name;
        int args;
        void (*fn)(sqlite3_context*, int, sqlite3_value**);
        bool deterministic;
    };
    static const Fn fns[] = {
        {"like", 2, fnLike, true},
        {"vd_ucase", 1, fnUcase, true},
        {"vd_lcase", 1, fnLcase, true},
        {"vd_left", 2, fnLeft, true},
        {"vd_right", 2, fnRight, true},
        {"vd_mid", 2, fnMid, true},
        {"vd_mid", 3, fnMid, true},
        {"vd_len", 1, fnLen, true},
        {"vd_instr", 2, fnInstr, true},
        {"vd_instr", 3, fnInstr, true},
        {"vd_instr", 4, fnInstr, true},
        {"vd_val", 1, fnVal, true},
        {"vd_format", 1, fnFormat, true},
        {"vd_format", 2, fnFormat, true},
        {"vd_str", 1, fnStr, true},
        {"vd_cstr", 1, fnCstr, true},
        {"vd_chr", 1, fnChr, true},
        {"vd_asc", 1, fnAsc, true},
        {"vd_int", 1, fnInt, true},
        {"vd_fix", 1, fnFix, true},
        {"vd_round", 1, fnRound, true},
        {"vd_pow", 2, fnPow, true},
        {"vd_plus", 2, fnPlus, true},
        {"vd_now", 0, fnNow, false},
        {"vd_date", 0, fnDate, false},
        {"vd_year", 1, fnDatePart<0>, true},
        {"vd_month", 1, fnDatePart<1>, true},
        {"vd_day", 1, fnDatePart<2>, true},
        {"vd_hour", 1, fnDatePart<3>, true},
        {"vd_minute", 1, fnDatePart<4>, true},
        {"vd_second", 1, fnDatePart<5>, true},
        {"vd_space", 1, fnSpace, true},
    };
    for (const Fn& f : fns)
        sqlite3_create_function_v2(db, f.name, f.args,
                                   SQLITE_UTF8 | (f.deterministic ? SQLITE_DETERMINISTIC : 0),
                                   nullptr, f.fn, nullptr, nullptr, nullptr);
}

} // namespace vd::db
