// frmMain: the language menu, SetupLanguage and the change of language while the program runs.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/frmPreview.h"
#include "browser/ui/PreviewPane.h"
#include "launch/Profiles.h"
#include "launch/ui/frmFlipList.h"
#include "platform/DialogService.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTreeWidget>

namespace vd::browser {

using app::Translate;

namespace {

// The name of the language file in `folder`: as given, or spelt otherwise in case only (a
// setting written on a system that ignores case). "" when there is none, or when the name
// would leave the folder.
QString languageFileIn(const QString& folder, const QString& name)
{
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) ||
        name == QLatin1String(".") || name == QLatin1String(".."))
        return {};
    if (QFileInfo(folder + name).isFile())
        return name;
    const QStringList files = QDir(folder).entryList(QDir::Files);
    for (const QString& file : files)
        if (file.compare(name, Qt::CaseInsensitive) == 0)
            return file;
    return {};
}

} // namespace

// Load step 13: after "Deutsch", one entry for each language file, in name order (the order
// the directory listing of the original platform gave). Each entry keeps its file name.
void frmMain::loadLanguageMenu()
{
    QMenu* menu = m_entries.value(QStringLiteral("mnuLanguage"))->menu();
    const QStringList files =
        QDir(app::gLangPath)
            .entryList({QStringLiteral("*.lng")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    int index = 2;
    for (const QString& file : files) {
        QString caption = app::LanguageCaption(file);
        QAction* entry = menu->addAction(caption.replace(QLatin1Char('&'), QStringLiteral("&&")));
        entry->setObjectName(QStringLiteral("mnuLang%1").arg(index));
        entry->setData(file);
        entry->setCheckable(true);
        connect(entry, &QAction::triggered, this, [this, index] { mnuLang_Click(index); });
        ++index;
    }
}

// Load step 14 and each change of language.
void frmMain::SetupLanguage()
{
    QString& language = app::gLanguageFile;
    if (!language.isEmpty() && language != app::kNewLanguage) { // 1
        const QString file = languageFileIn(app::gLangPath, language);
        if (file.isEmpty()) {
            platform::dialogs().msgBox(
                Translate(QStringLiteral("Ungültiger Pfad der Sprachdatei: ")) + app::gLangPath +
                    language,
                platform::vbExclamation);
            language.clear();
        } else {
            language = file;
        }
    }
    if (!app::LoadLanguage()) // 2
        language.clear();

    // 3: "Sonstige" is the first emulator type; the captions of the lists (ViewCaptions) are
    // read through Translate each time a view is built, with the same fall-back to German.
    launch::SetEmulTypeNames();
    if (launch::gEmulTypeNames[0].isEmpty())
        launch::gEmulTypeNames[0] = QStringLiteral("Sonstige");

    for (QAction* entry : m_entries.value(QStringLiteral("mnuLanguage"))->menu()->actions()) // 4
        entry->setChecked(entry->data().toString() == language);

    // 5: the open forms. The preview window's caption is the name of what it shows.
    if (m_previewPane)
        m_previewPane->label()->setProperty(app::ui::kNoTranslate, true);
    app::ui::TranslateForm(this, true);
    if (m_previewWindow)
        app::ui::TranslateForm(m_previewWindow, false);
    if (m_flipList)
        app::ui::TranslateForm(m_flipList, true);

    // The rows of the side lists that are program texts; the others hold the user's filters
    // and profiles.
    if (lvViews)
        for (int row = 0; row < lvViews->topLevelItemCount(); ++row) {
            QTreeWidgetItem* item = lvViews->topLevelItem(row);
            item->setText(0, ViewName(item->text(2).toInt()));
        }
    if (lvFilter && lvFilter->topLevelItemCount() > 0 && lvFilter->topLevelItem(0)->text(2) == "0")
        lvFilter->topLevelItem(0)->setText(0, Translate(QStringLiteral("Filter aus")));
    if (lvSearch) {
        const ViewCaptions captions = ViewCaptions::current();
        const QString names[4] = {captions.file, captions.disk,
                                  Translate(QStringLiteral("Dateipfad")),
                                  Translate(QStringLiteral("Neue Dateien"))};
        for (int row = 0; row < 4 && row < lvSearch->topLevelItemCount(); ++row)
            lvSearch->topLevelItem(row)->setText(0, names[row]);
        for (size_t i = 0; i < cboSearch.size(); ++i)
            if (cboSearch[i])
                cboSearch[i]->lineEdit()->setPlaceholderText(names[i]);
        if (chkNewFiles)
            chkNewFiles->setAccessibleName(names[3]);
    }
}

void frmMain::mnuLang_Click(int index)
{
    const QList<QAction*> entries =
        m_entries.value(QStringLiteral("mnuLanguage"))->menu()->actions();
    if (index < 1 || index > entries.size())
        return;
    QAction* entry = entries[index - 1];
    const QString file = entry->data().toString(); // "" for "Deutsch"
    if (file == app::gLanguageFile) {
        entry->setChecked(true); // the chosen one stays checked
        return;
    }
    SaveColumnLayout();
    if (app::CurrentLanguage() == app::kNewLanguage)
        app::WriteNewLanguageFile(); // what was collected so far is not lost
    if (!app::CurrentLanguage().isEmpty()) {
        app::ui::TranslateForm(this, true, true);
        if (m_previewWindow)
            app::ui::TranslateForm(m_previewWindow, false, true);
        if (m_flipList)
            app::ui::TranslateForm(m_flipList, true, true);
    }
    app::gLanguageFile = file;
    SetupLanguage();
    BuildView(iViewMode, m_viewSql.withCategory ? 1 : 0, 0);
}

} // namespace vd::browser
