#include "app/Translate.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "platform/DialogService.h"

#include <memory>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QStringConverter>
#include <QStringList>

namespace vd::app {

namespace {

// Case-folded key -> text. Every lookup folds once, so the hot path is one hash probe.
using Texts = QHash<QString, QString>;

const QString kMainForm = QStringLiteral("frmMain");
// Language files are a few hundred lines; anything this large is not one.
constexpr qint64 kMaxLanguageFileBytes = 16 * 1024 * 1024;

struct Language
{
    QString name;                                 // sLanguage: "" is German
    QHash<QString, std::shared_ptr<Texts>> forms; // colForms; "frmMain" holds the file
    Texts* main = nullptr;                        // the "frmMain" collection
    Texts* current = nullptr;                     // colCurrent
    QStringList stack;                            // asFormStack, "frmMain" at the bottom
    Texts reverse;                                // translation -> German key, from the file
    QStringList collected;                        // "NEW": the texts in the order first asked
};

Language& lang()
{
    static Language state;
    return state;
}

void install(const QString& name, std::shared_ptr<Texts> texts, Texts reverse)
{
    Language& l = lang();
    l.name = name;
    l.forms.clear();
    l.main = l.current = texts.get();
    l.forms.insert(kMainForm, std::move(texts));
    l.stack = QStringList{kMainForm};
    l.reverse = std::move(reverse);
    l.collected.clear();
}

void resetToGerman()
{
    install(QString(), std::make_shared<Texts>(), Texts());
}

// Simple case folding, character by character: QString::toCaseFolded costs some microseconds
// for a caption with an umlaut, and every caption of every window comes through here.
QString foldKey(QStringView text)
{
    QString key(text.size(), Qt::Uninitialized);
    QChar* out = key.data();
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u < 0x80)
            *out++ = QChar(u >= u'A' && u <= u'Z' ? char16_t(u + 32) : u);
        else
            *out++ = QChar(char16_t(QChar::toCaseFolded(char32_t(u))));
    }
    return key;
}

// A leading "&" goes, a trailing ": " or ":" is kept apart: keys are stored without both.
void splitText(QString& text, QString& suffix)
{
    if (text.startsWith(QLatin1Char('&')))
        text.remove(0, 1);
    if (text.endsWith(QLatin1String(": "))) {
        suffix = QStringLiteral(": ");
        text.chop(2);
    } else if (text.endsWith(QLatin1Char(':'))) {
        suffix = QStringLiteral(":");
        text.chop(1);
    }
}

// A collected text must come back as one line of exactly two parts.
bool collectable(const QString& text)
{
    return IsProgramText(text) && !text.contains(QLatin1String("@@")) &&
           !text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r'));
}

// Windows-1252 differs from Latin-1 only in 0x80 to 0x9F; its five unused codes stay as they are.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString fromWindows1252(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        *out++ = QChar(b >= 0x80 && b < 0xA0 ? kCp1252High[b - 0x80] : char16_t(b));
    }
    return text;
}

bool failLoad(const QString& name)
{
    resetToGerman();
    platform::dialogs().msgBox(Translate(QStringLiteral("Fehler beim Einlesen der Sprachdatei: ")) +
                               name);
    return false;
}

} // namespace

QString Translate(const QString& text, const QString& param)
{
    Language& l = lang();
    QString s;
    QLatin1String suffix;
    if (text.isEmpty() || l.name.isEmpty()) {
        s = text;
    } else {
        // The key is a view into the text: no copy until one is needed.
        QStringView core(text);
        if (core.startsWith(QLatin1Char('&')))
            core = core.sliced(1);
        if (core.endsWith(QLatin1String(": "))) {
            suffix = QLatin1String(": ");
            core.chop(2);
        } else if (core.endsWith(QLatin1Char(':'))) {
            suffix = QLatin1String(":");
            core.chop(1);
        }
        const QString key = foldKey(core);
        const auto cached = l.current->constFind(key);
        if (cached != l.current->constEnd()) {
            s = *cached;
        } else if (l.name != kNewLanguage) {
            const auto found = l.main->constFind(key);
            s = found != l.main->constEnd() ? *found : core.toString();
            l.current->insert(key, s); // found nowhere: cached as it is, so it stays German
        } else {
            s = core.toString();
            if (!l.main->contains(key) && collectable(s)) {
                l.main->insert(key, s);
                l.collected << s;
            }
        }
    }
    if (!param.isEmpty())
        s.replace(QStringLiteral("@1"), param, Qt::CaseInsensitive);
    return suffix.isEmpty() ? s : s + suffix;
}

QString TranslateText(const QString& text, bool reverse)
{
    if (!reverse)
        return Translate(text);
    const Language& l = lang();
    if (text.isEmpty() || l.name.isEmpty())
        return text;
    QString s = text;
    QString suffix;
    splitText(s, suffix);
    const auto found = l.reverse.constFind(foldKey(s));
    return found == l.reverse.constEnd() ? text : *found + suffix;
}

QString DecodeLanguageFile(const QByteArray& bytes)
{
    const QByteArrayView view(bytes);
    if (view.startsWith("\xFF\xFE"))
        return QStringDecoder(QStringConverter::Utf16LE).decode(view.sliced(2));
    if (view.startsWith("\xFE\xFF"))
        return QStringDecoder(QStringConverter::Utf16BE).decode(view.sliced(2));
    if (view.startsWith("\xEF\xBB\xBF"))
        return QStringDecoder(QStringConverter::Utf8).decode(view.sliced(3));
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = utf8.decode(view);
    return utf8.hasError() ? fromWindows1252(view) : text;
}

bool LoadLanguageData(const QByteArray& bytes, const QString& language)
{
    auto texts = std::make_shared<Texts>();
    Texts reverse;
    const QString text = DecodeLanguageFile(bytes);
    for (QStringView line : QStringView(text).split(QLatin1Char('\n'))) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        // Exactly two parts at "@@"; anything else is a comment.
        const qsizetype at = line.indexOf(QLatin1String("@@"));
        if (at <= 0 || line.indexOf(QLatin1String("@@"), at + 2) >= 0)
            continue;
        const QString key = line.left(at).toString();
        const QString translation = line.mid(at + 2).toString();
        // A repeated key (or translation) keeps its first line.
        const QString folded = foldKey(key);
        if (!texts->contains(folded))
            texts->insert(folded, translation);
        QString plain = translation;
        QString suffix;
        splitText(plain, suffix);
        const QString back = foldKey(plain);
        if (!back.isEmpty() && !reverse.contains(back))
            reverse.insert(back, key);
    }
    if (texts->isEmpty())
        return failLoad(language);
    install(language, std::move(texts), std::move(reverse));
    return true;
}

bool LoadLanguage()
{
    const QString name = gLanguageFile;
    if (name.isEmpty()) {
        resetToGerman();
        return true;
    }
    if (name == kNewLanguage) {
        if (lang().name != kNewLanguage) // a second load keeps what was collected
            install(kNewLanguage, std::make_shared<Texts>(), Texts());
        return true;
    }
    const QString path = gLangPath + name;
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return failLoad(name);
    const QByteArray bytes = file.read(kMaxLanguageFileBytes + 1);
    if (file.error() != QFileDevice::NoError || bytes.size() > kMaxLanguageFileBytes)
        return failLoad(name);
    return LoadLanguageData(bytes, name);
}

QString CurrentLanguage()
{
    return lang().name;
}

bool IsProgramText(QStringView text)
{
    // A path begins with "/", "\\" or "~/" at the start or after a blank, or has a drive letter.
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (i > 0 && !text[i - 1].isSpace())
            continue;
        const QStringView rest = text.sliced(i);
        if (rest.startsWith(QLatin1Char('/')) || rest.startsWith(QLatin1Char('\\')) ||
            rest.startsWith(QLatin1String("~/")))
            return false;
    }
    if (text.contains(QLatin1String(":\\")) || text.contains(QLatin1String(":/")))
        return false;
    for (const QChar c : text)
        if (c.isLetter())
            return true;
    return false;
}

QString LanguageCaption(const QString& fileName)
{
    QString base = fileName;
    if (base.endsWith(QLatin1String(".lng"), Qt::CaseInsensitive))
        base.chop(4);
    static const QHash<QString, QString> german = {
        {QStringLiteral("english"), QStringLiteral("Englisch")},
        {QStringLiteral("french"), QStringLiteral("Französisch")},
        {QStringLiteral("italian"), QStringLiteral("Italienisch")},
        {QStringLiteral("spanish"), QStringLiteral("Spanisch")},
    };
    return german.value(base.toLower(), base);
}

void EnterForm(const QString& name)
{
    Language& l = lang();
    if (l.name.isEmpty() || name.isEmpty())
        return;
    std::shared_ptr<Texts>& texts = l.forms[name];
    if (!texts)
        texts = std::make_shared<Texts>();
    l.current = texts.get();
    if (name != kMainForm) {
        l.stack.removeAll(name); // a window translated again comes back to the top
        l.stack << name;
    }
}

void LeaveForm()
{
    Language& l = lang();
    if (l.name.isEmpty())
        return;
    if (l.stack.size() > 1) // "frmMain" stays at the bottom
        l.stack.removeLast();
    const auto texts = l.forms.constFind(l.stack.last());
    l.current = texts != l.forms.constEnd() ? texts->get() : l.main;
}

int MsgBoxT(const QString& prompt, int style, const QString& title)
{
    return platform::dialogs().msgBox(Translate(prompt), style, Translate(title));
}

bool WriteNewLanguageFile()
{
    const Language& l = lang();
    if (l.name != kNewLanguage || l.collected.isEmpty())
        return false;
    if (!QDir().mkpath(gLangPath))
        return false;
    QByteArray bytes;
    for (const QString& text : l.collected)
        bytes += (text + QStringLiteral("@@") + text + QStringLiteral("\r\n")).toUtf8();
    QSaveFile file(gLangPath + QStringLiteral("NEW.lng"));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

} // namespace vd::app
