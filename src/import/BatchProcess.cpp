// The batch driver: Form_Load's rows, the dispatch of the first activation, the import modes,
// the texts of the labels. The check lives in CatalogueCheck.cpp, the other modes in
// BatchModes.cpp.

#include "import/BatchProcess.h"

#include "app/Translate.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/DbError.h"
#include "import/clsFileManager.h"
#include "platform/DialogService.h"

#include <exception>
#include <QElapsedTimer>

namespace vd::import {

using app::Translate;

namespace {

qint64 monotonicMs()
{
    static QElapsedTimer clock;
    if (!clock.isValid())
        clock.start();
    return clock.elapsed();
}

} // namespace

BatchProcess::BatchProcess(clsFileManager& fileManager, BatchReport& report)
    : clock(monotonicMs), m_fm(fileManager), m_report(report)
{}

BatchProcess::~BatchProcess() = default;

QString BatchProcess::Heading(int mode, const QString& sParam)
{
    switch (mode) {
    case kModeAddFolder:
    case kModeAddFile:
    case kModeConnectGameBase:
        return Translate(QStringLiteral("Neue Dateien"));
    case kModeCheck:
        return Translate(QStringLiteral("Nicht gefundene Dateien"));
    case kModeMd5:
    case kModeExportDirs:
        return InitialStatus(mode, sParam);
    default:
        return {};
    }
}

QString BatchProcess::InitialStatus(int mode, const QString& sParam)
{
    switch (mode) {
    case kModeCompact:
        return Translate(QStringLiteral("Datenbank wird komprimiert..."));
    case kModeUpgrade:
        return Translate(QStringLiteral("Datenbank wird aktualisiert..."));
    case kModeMd5:
        return Translate(QStringLiteral("Fehlende MD5-Checksummen erzeugen"));
    case kModeExportDirs:
        return Translate(QStringLiteral("Directory als txt-Datei speichern")) +
               QStringLiteral(" -> ") + sParam;
    default:
        return {};
    }
}

bool BatchProcess::ShowsProgress(int mode)
{
    return mode == kModeCheck || mode == kModeUpgrade || mode == kModeConnectGameBase ||
           mode == kModeMd5 || mode == kModeExportDirs;
}

QString BatchProcess::DurationText(qint64 milliseconds)
{
    const qint64 seconds = milliseconds / 1000;
    const QString dauer = Translate(QStringLiteral("Dauer:")) + QLatin1Char(' ');
    if (seconds < 60)
        return dauer + QString::number(seconds) + QLatin1Char('s');
    return dauer + QStringLiteral("%1:%2")
                       .arg(seconds / 60, 2, 10, QLatin1Char('0'))
                       .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

void BatchProcess::AddResultLine(const QString& sText, int iType)
{
    ResultRow row;
    row.Name = sText;
    if (iType < kNoIcon)
        row.Filetyp = iType;
    m_rows.append(row);
    m_report.rowAdded(m_rows.size() - 1, row);
}

void BatchProcess::changeRow(qsizetype index)
{
    m_report.rowChanged(index, m_rows[index]);
}

void BatchProcess::AddOptionLines()
{
    const ImportOptions& o = m_fm.options;
    switch (iMode) {
    case kModeAddFolder:
    case kModeAddFile:
    case kModeConnectGameBase:
        addWorkOptions(o);
        break;
    case kModeMd5:
    case kModeExportDirs:
        AddResultLine(InitialStatus(iMode, sParam), kNoIcon);
        if (iMode == kModeExportDirs)
            AddResultLine(Translate(QStringLiteral("Dateien: ")) +
                              QStringLiteral("D64, D71, D81, G64"),
                          kNoIcon);
        AddResultLine(Translate(QStringLiteral("Anzahl der markierten Dateien:")) +
                          QLatin1Char(' ') + QString::number(selectedIds.size()),
                      kNoIcon);
        break;
    default:
        break;
    }
    const QString heading = Heading(iMode, sParam);
    if (!heading.isEmpty()) {
        if (!m_rows.isEmpty())
            AddResultLine(QString(), kNoIcon);
        AddResultLine(heading + QLatin1Char(':'), kNoIcon);
    }
    m_firstWorkRow = m_rows.size();
}

void BatchProcess::addWorkOptions(const ImportOptions& o)
{
    AddResultLine(Translate(QStringLiteral("Optionen")) + QLatin1Char(':'), kNoIcon);
    if (o.CreateMd5Hash)
        AddResultLine(Translate(QStringLiteral("MD5-Checksumme erzeugen (langsam)")), kNoIcon);
    if (o.RefreshC64Files)
        AddResultLine(
            Translate(QStringLiteral("Bestehende Dateien erneut aktualisieren (langsam)")),
            kNoIcon);
    if (o.SerachArchivFiles)
        AddResultLine(Translate(QStringLiteral("Bestehende komprimierte Dateien '@1' erneut "
                                               "aktualisieren (langsam)"),
                                catalogue::kArchiveExtensions),
                      kNoIcon);
    if (o.ConnectFilesToGB && iMode != kModeConnectGameBase)
        AddResultLine(Translate(QStringLiteral("Zip-Dateiname in der GameBase suchen (langsam)")),
                      kNoIcon);
    if (iMode != kModeAddFile)
        AddResultLine(Translate(QStringLiteral("Dateien")) + QStringLiteral(": ") + o.ImportFiles,
                      kNoIcon);
}

void BatchProcess::Run()
{
    failure.clear();
    cancelled = false;
    m_changed = false;
    m_timed = false;
    // Messages of the importer: status texts to the label, anything else to the list. The
    // import modes take them through their batch.
    QMetaObject::Connection messages;
    if (iMode != kModeAddFolder && iMode != kModeAddFile)
        messages = QObject::connect(&m_fm, &clsFileManager::ShowMessage,
                                    [this](const QString& text, int type) {
                                        if (type == kMessageStatus)
                                            m_report.setStatus(text);
                                        else
                                            AddResultLine(text, type);
                                    });
    try {
        if (iMode != kModeUpgrade)
            m_fm.InitSearch(false, false, {}, 0);
        switch (iMode) {
        case kModeAddFolder:
        case kModeAddFile:
            runImport();
            break;
        case kModeCheck:
            CheckCatalogue();
            break;
        case kModeCompact:
            runCompact();
            break;
        case kModeUpgrade:
            runUpgrade();
            break;
        case kModeConnectGameBase:
            runConnectGameBase();
            break;
        case kModeMd5:
            runMd5();
            break;
        case kModeExportDirs:
            runExportDirs();
            break;
        default:
            failure = QStringLiteral("Unknown mode %1").arg(iMode);
            break;
        }
    } catch (const db::DbError& e) {
        reportFailure(e.statement().isEmpty()
                          ? e.description()
                          : e.description() + QLatin1Char('\n') + e.statement());
    } catch (const std::exception& e) {
        reportFailure(QString::fromLocal8Bit(e.what()));
    }
    QObject::disconnect(messages);
    cancelled = cancelled || m_report.cancelled();
    if (m_changed)
        iMode = kModeChanged;
}

void BatchProcess::reportFailure(const QString& text)
{
    failure = text;
    platform::dialogs().msgBox(text, platform::vbCritical);
}

void BatchProcess::runImport()
{
    m_fm.CountFiles(); // the growth is measured from the catalogue as it is now
    ImportBatch batch(m_fm, m_report);
    QObject::connect(&batch, &ImportBatch::resultLine, &batch,
                     [this](const QString& text, int type) { AddResultLine(text, type); });
    m_timed = true;
    const qint64 start = clock();
    const BatchResult r = batch.run(iMode, sParam);
    m_elapsedMs = clock() - start;
    lResultID = r.lResultID;
    sResultText = r.sResultText();
    cancelled = r.cancelled;
    if (r.iMode == kModeChanged)
        m_changed = true;
    if (!r.failure.isEmpty())
        reportFailure(r.failure);
}

QString BatchProcess::StatusText() const
{
    if (m_timed)
        return DurationText(m_elapsedMs);
    return Translate(QStringLiteral("Status:")) + QLatin1Char(' ') + sResultText;
}

QString BatchProcess::CallerText() const
{
    QString text = sResultText;
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return text;
}

void BatchProcess::tableStep(qint64 done, qint64 total)
{
    if (done % 5 != 0)
        return;
    m_report.setValue(done);
    m_report.setStatus(Translate(QStringLiteral("Dateien")) + QStringLiteral(": ") +
                       QString::number(done) + QLatin1Char('/') + QString::number(total));
    m_report.yield();
}

bool BatchProcess::stopRequested()
{
    if (m_report.cancelled())
        cancelled = true;
    return cancelled;
}

} // namespace vd::import
