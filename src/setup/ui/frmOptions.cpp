// frmOptions: building the tabs, filling each at its first showing, the buttons beside the
// fields, the sample list of the preview's look, and "OK". The tree is in frmOptionsTree.cpp.

#include "setup/ui/frmOptions.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "app/ui/CbmFont.h"
#include "app/ui/TranslateForm.h"
#include "app/ui/WindowGeometry.h"
#include "browser/ui/PreviewPane.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "launch/Profiles.h"
#include "launch/StartMenu.h"
#include "platform/DialogService.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace vd::setup {

using app::Translate;

namespace {

const app::FormDesign kDesign{QStringLiteral("frmOptions"), 9600, 7200, false};

// The size is the scroll value plus 6; the settings allow 6 to 20.
constexpr int kSizeOffset = 6;
constexpr int kMaxFontSize = 20;
constexpr int kColumnsOfTypes = 6;

QPushButton* button(const QString& name, const QString& caption, QWidget* parent)
{
    auto* b = new QPushButton(Translate(caption), parent);
    b->setObjectName(name);
    return b;
}

QCheckBox* checkBox(const QString& name, const QString& caption, QWidget* parent)
{
    auto* c = new QCheckBox(Translate(caption), parent);
    c->setObjectName(name);
    return c;
}

QLineEdit* lineEdit(const QString& name, QWidget* parent)
{
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    return e;
}

QLabel* label(const QString& name, const QString& caption, QWidget* parent)
{
    auto* l = new QLabel(Translate(caption), parent);
    l->setObjectName(name);
    return l;
}

// A path field with its "..." button in one row.
QHBoxLayout* pathRow(QLineEdit* field, QPushButton* browse)
{
    auto* row = new QHBoxLayout;
    row->addWidget(field, 1);
    browse->setMaximumWidth(browse->fontMetrics().horizontalAdvance(QStringLiteral("...")) * 4);
    row->addWidget(browse);
    return row;
}

QString quoted(const QString& name)
{
    return QLatin1Char('"') + name + QLatin1Char('"');
}

// The sample rows: a disk directory in sixteen-character names.
QVector<browser::PreviewRow> sampleRows()
{
    const QString stars(16, QLatin1Char('*'));
    QString address = app::gHomepageUrl.section(QLatin1Char('|'), 0, 0).trimmed();
    address.remove(QStringLiteral("https://"));
    address.remove(QStringLiteral("http://"));
    if (address.isEmpty())
        address = stars; // no page set
    const QString del = QStringLiteral("DEL");
    return {
        {1, QStringLiteral("64"), quoted(stars), QStringLiteral("PRG")},
        {2, QStringLiteral("0"), quoted(QStringLiteral("   VELLUMDOCK   ")), del},
        {3, QStringLiteral("0"), quoted(stars), del},
        {4, QStringLiteral("0"), quoted(address.left(16)), del},
        {5, QStringLiteral("0"), quoted(stars), del},
    };
}

// Reading a new GameBase into its cache takes a while: the window keeps painting meanwhile,
// under the wait cursor.
class WaitProgress : public platform::Progress
{
public:
    WaitProgress() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitProgress() override { QApplication::restoreOverrideCursor(); }
    void setStatus(const QString& text) override
    {
        (void)text;
        yield();
    }
    void yield() override { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }
};

QString colorStyle(qint64 bgr)
{
    return QStringLiteral("background-color: %1;").arg(browser::settingsColor(bgr).name());
}

} // namespace

frmOptions::frmOptions(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmOptions"));
    setModal(true);
    buildForm();
    Form_Load();
}

void frmOptions::buildForm()
{
    auto* layout = new QVBoxLayout(this);
    MyTab = new QTabWidget(this);
    MyTab->setObjectName(QStringLiteral("MyTab"));
    MyTab->addTab(buildEmulTab(), Translate(QStringLiteral("Emulatoren")));
    MyTab->addTab(buildFilesTab(), Translate(QStringLiteral("Dateitypen")));
    MyTab->addTab(buildDbTab(), Translate(QStringLiteral("Datenbank")));
    MyTab->addTab(buildGbTab(), Translate(QStringLiteral("GameBase")));
    MyTab->addTab(buildPreviewTab(), Translate(QStringLiteral("Voransicht")));
    layout->addWidget(MyTab, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdOk = button(QStringLiteral("cmdOk"), QStringLiteral("OK"), this);
    cmdOk->setDefault(true);
    cmdCancel = button(QStringLiteral("cmdCancel"), QStringLiteral("Abbrechen"), this);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    layout->addLayout(buttons);
    connect(cmdOk, &QPushButton::clicked, this, &frmOptions::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(MyTab, &QTabWidget::currentChanged, this, &frmOptions::MyTab_Click);
}

QWidget* frmOptions::buildEmulTab()
{
    auto* frame = new QWidget(this);
    frame->setObjectName(QStringLiteral("fraTabEmulator"));
    auto* layout = new QHBoxLayout(frame);
    treeProfils = new QTreeWidget(frame);
    treeProfils->setObjectName(QStringLiteral("treeProfils"));
    treeProfils->setHeaderHidden(true);
    treeProfils->setContextMenuPolicy(Qt::CustomContextMenu);
    layout->addWidget(treeProfils, 1);

    auto* column = new QVBoxLayout;
    mnuPopUp = new QMenu(this);
    mnuPopUp->setObjectName(QStringLiteral("mnuPopUp"));
    const char* const captions[kTreeCommandCount] = {
        "Neu", "Bearbeiten", "Löschen", "Kopieren", "Einfügen", "Standard- Emulator"};
    for (int i = 0; i < kTreeCommandCount; ++i) {
        cmdTree[size_t(i)] =
            button(QStringLiteral("cmdTree%1").arg(i), QString::fromUtf8(captions[i]), frame);
        column->addWidget(cmdTree[size_t(i)]);
        connect(cmdTree[size_t(i)], &QPushButton::clicked, this, [this, i] { cmdTree_Click(i); });
        QAction* entry = mnuPopUp->addAction(Translate(QString::fromUtf8(captions[i])));
        entry->setObjectName(QStringLiteral("mnuTree%1").arg(i));
        connect(entry, &QAction::triggered, this, [this, i] { cmdTree_Click(i); });
    }
    column->addStretch(1);
    layout->addLayout(column);

    connect(treeProfils, &QTreeWidget::itemChanged, this,
            [this](QTreeWidgetItem* node, int) { treeProfils_NodeCheck(node); });
    connect(treeProfils, &QTreeWidget::currentItemChanged, this, [this] { updateTreeButtons(); });
    connect(treeProfils, &QTreeWidget::customContextMenuRequested, this,
            &frmOptions::treeProfils_MouseUp);
    return frame;
}

QWidget* frmOptions::buildFilesTab()
{
    auto* frame = new QWidget(this);
    frame->setObjectName(QStringLiteral("fraTabFiles"));
    auto* grid = new QGridLayout(frame);
    const QStringList& extensions = launch::StartExtensions();
    for (int i = 0; i < extensions.size(); ++i) {
        auto* caption = new QLabel(extensions[i], frame);
        caption->setObjectName(QStringLiteral("lblExtension%1").arg(i));
        auto* combo = new QComboBox(frame);
        combo->setObjectName(QStringLiteral("cboProfils%1").arg(i));
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setMinimumContentsLength(30);
        const int column = (i % 2) * 2;
        grid->addWidget(caption, i / 2, column);
        grid->addWidget(combo, i / 2, column + 1);
        lblExtension << caption;
        cboProfils << combo;
        connect(combo, &QComboBox::currentIndexChanged, this,
                [this, i](int) { cboProfils_Click(i); });
    }
    grid->setRowStretch(int(extensions.size() + 1) / 2, 1);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    return frame;
}

QWidget* frmOptions::buildDbTab()
{
    auto* frame = new QWidget(this);
    frame->setObjectName(QStringLiteral("fraTabDB"));
    auto* layout = new QVBoxLayout(frame);
    chkMD5 = checkBox(QStringLiteral("chkMD5"), QStringLiteral("MD5-Checksumme erzeugen (langsam)"),
                      frame);
    chkRefreshFiles =
        checkBox(QStringLiteral("chkRefreshFiles"),
                 QStringLiteral("Bestehende Dateien erneut aktualisieren (langsam)"), frame);
    m_archivCaption = Translate(
        QStringLiteral("Bestehende komprimierte Dateien '@1' erneut aktualisieren (langsam)"),
        app::gArchiveExtensions.join(QLatin1Char(',')));
    chkArchiv = new QCheckBox(m_archivCaption, frame);
    chkArchiv->setObjectName(QStringLiteral("chkArchiv"));
    chkGBFiles = checkBox(QStringLiteral("chkGBFiles"),
                          QStringLiteral("Zip-Dateiname in der GameBase suchen (langsam)"), frame);
    for (QCheckBox* box : {chkMD5, chkRefreshFiles, chkArchiv, chkGBFiles})
        layout->addWidget(box);

    auto* fraCheckDB = new QGroupBox(Translate(QStringLiteral("Datenbank überprüfen")), frame);
    fraCheckDB->setObjectName(QStringLiteral("fraCheckDB"));
    auto* checkLayout = new QVBoxLayout(fraCheckDB);
    chkC64FilesDB =
        checkBox(QStringLiteral("chkC64FilesDB"),
                 QStringLiteral("Bekannte Dateien erneut einlesen (langsam)"), fraCheckDB);
    checkLayout->addWidget(chkC64FilesDB);
    layout->addWidget(fraCheckDB);

    auto* form = new QFormLayout;
    txtSize = lineEdit(QStringLiteral("txtSize"), frame);
    txtSize->setValidator(new QIntValidator(0, 999999, txtSize));
    txtSize->setMaximumWidth(txtSize->fontMetrics().horizontalAdvance(QStringLiteral("0")) * 10);
    form->addRow(label(QStringLiteral("lblSize"),
                       QStringLiteral("Archive nachfragen ab (MB, 0 = nie):"), frame),
                 txtSize);
    txtEditor = lineEdit(QStringLiteral("txtEditor"), frame);
    cmdEditor = button(QStringLiteral("cmdEditor"), QStringLiteral("..."), frame);
    form->addRow(label(QStringLiteral("lblEditor"), QStringLiteral("Text-Viewer:"), frame),
                 pathRow(txtEditor, cmdEditor));
    layout->addLayout(form);

    auto* fraFiles = new QGroupBox(Translate(QStringLiteral("Importieren")), frame);
    fraFiles->setObjectName(QStringLiteral("fraFiles"));
    auto* grid = new QGridLayout(fraFiles);
    const QStringList types = ImportTypeCaptions(app::gImportFiles);
    for (int i = 0; i < types.size(); ++i) {
        auto* box = new QCheckBox(types[i], fraFiles);
        box->setObjectName(QStringLiteral("chkFiles%1").arg(i));
        grid->addWidget(box, i / kColumnsOfTypes, i % kColumnsOfTypes);
        chkFiles << box;
    }
    chkAllFiles = checkBox(QStringLiteral("chkAllFiles"), QStringLiteral("Alle"), fraFiles);
    grid->addWidget(chkAllFiles, int(types.size() + kColumnsOfTypes - 1) / kColumnsOfTypes, 0);
    layout->addWidget(fraFiles);
    layout->addStretch(1);

    connect(chkRefreshFiles, &QCheckBox::toggled, this, &frmOptions::chkRefreshFiles_Click);
    connect(chkAllFiles, &QCheckBox::clicked, this, &frmOptions::chkAllFiles_Click);
    connect(cmdEditor, &QPushButton::clicked, this, &frmOptions::cmdEditor_Click);
    return frame;
}

QWidget* frmOptions::buildGbTab()
{
    auto* frame = new QWidget(this);
    frame->setObjectName(QStringLiteral("fraTabGB"));
    auto* layout = new QVBoxLayout(frame);
    auto* form = new QFormLayout;
    txtGBDB = lineEdit(QStringLiteral("txtGBDB"), frame);
    txtGBDB->setPlaceholderText(gamebase::kGameBaseHint);
    auto* cmdGBDB = button(QStringLiteral("cmdGBDB"), QStringLiteral("..."), frame);
    form->addRow(label(QStringLiteral("lblGBDB"), QStringLiteral("Datenbankpfad:"), frame),
                 pathRow(txtGBDB, cmdGBDB));
    txtGBShots = lineEdit(QStringLiteral("txtGBShots"), frame);
    auto* cmdGBShots = button(QStringLiteral("cmdGBShots"), QStringLiteral("..."), frame);
    lblShots = label(QStringLiteral("lblShots"), QStringLiteral("Screenshots:"), frame);
    form->addRow(lblShots, pathRow(txtGBShots, cmdGBShots));
    txtDownload = lineEdit(QStringLiteral("txtDownload"), frame);
    auto* cmdDownloadPath = button(QStringLiteral("cmdDownloadPath"), QStringLiteral("..."), frame);
    lblDownload =
        label(QStringLiteral("lblDownload"), QStringLiteral("Games bzw. Download-Pfad:"), frame);
    form->addRow(lblDownload, pathRow(txtDownload, cmdDownloadPath));
    layout->addLayout(form);

    chkAskDown = checkBox(QStringLiteral("chkAskDown"),
                          QStringLiteral("Beim Download nach dem Pfad fragen"), frame);
    chkArchivFile = checkBox(QStringLiteral("chkArchivFile"),
                             QStringLiteral("Nach dem Download Datei archivieren"), frame);
    chkArchivOnlyGame = checkBox(
        QStringLiteral("chkArchivOnlyGame"),
        QStringLiteral("Bei GameBase-Dateien nur das Spiel archivieren (empfohlen)"), frame);
    chkAdultContent =
        checkBox(QStringLiteral("chkAdultContent"), QStringLiteral("Adult Content"), frame);
    for (QCheckBox* box : {chkAskDown, chkArchivFile, chkArchivOnlyGame, chkAdultContent})
        layout->addWidget(box);
    auto* row = new QHBoxLayout;
    cmdGB = button(QStringLiteral("cmdGB"), QStringLiteral("Download"), frame);
    row->addWidget(cmdGB);
    row->addStretch(1);
    layout->addLayout(row);
    layout->addStretch(1);

    connect(cmdGBDB, &QPushButton::clicked, this, &frmOptions::cmdGBDB_Click);
    connect(cmdGBShots, &QPushButton::clicked, this, [this] { chooseFolder(txtGBShots); });
    connect(cmdDownloadPath, &QPushButton::clicked, this, [this] { chooseFolder(txtDownload); });
    connect(cmdGB, &QPushButton::clicked, this, &frmOptions::cmdGB_Click);
    return frame;
}

QWidget* frmOptions::buildPreviewTab()
{
    auto* frame = new QWidget(this);
    frame->setObjectName(QStringLiteral("fraPreview"));
    auto* layout = new QHBoxLayout(frame);
    auto* left = new QVBoxLayout;
    left->addWidget(label(QStringLiteral("lblFont"), QStringLiteral("Schriftart:"), frame));
    lstFont = new QListWidget(frame);
    lstFont->setObjectName(QStringLiteral("lstFont"));
    left->addWidget(lstFont, 1);

    auto* form = new QFormLayout;
    auto* sizeRow = new QHBoxLayout;
    txtFontSize = lineEdit(QStringLiteral("txtFontSize"), frame);
    txtFontSize->setReadOnly(true);
    txtFontSize->setMaximumWidth(txtFontSize->fontMetrics().horizontalAdvance(u'0') * 6);
    SizeScroll = new QScrollBar(Qt::Vertical, frame);
    SizeScroll->setObjectName(QStringLiteral("SizeScroll"));
    SizeScroll->setRange(0, kMaxFontSize - kSizeOffset);
    SizeScroll->setInvertedControls(true);
    SizeScroll->setInvertedAppearance(true); // up makes it larger
    SizeScroll->setFixedHeight(txtFontSize->sizeHint().height());
    sizeRow->addWidget(txtFontSize);
    sizeRow->addWidget(SizeScroll);
    sizeRow->addStretch(1);
    form->addRow(label(QStringLiteral("lblSize"), QStringLiteral("Größe:"), frame), sizeRow);
    const char* const names[3] = {"picForeColor", "picBackColor", "picSelectColor"};
    const char* const captions[3] = {"Schriftfarbe:", "Hintergrund:", "Auswahl:"};
    for (int i = 0; i < 3; ++i) {
        picColor[size_t(i)] = new QPushButton(frame);
        picColor[size_t(i)]->setObjectName(QString::fromLatin1(names[i]));
        picColor[size_t(i)]->setFixedWidth(60);
        form->addRow(
            label(QStringLiteral("lblColor%1").arg(i), QString::fromUtf8(captions[i]), frame),
            picColor[size_t(i)]);
        connect(picColor[size_t(i)], &QPushButton::clicked, this, [this, i] { pickColor(i); });
    }
    auto* cmdReset = button(QStringLiteral("cmdReset"), QStringLiteral("Standard"), frame);
    form->addRow(QString(), cmdReset);
    left->addLayout(form);
    layout->addLayout(left);

    m_sample = new browser::PreviewPane(false, frame);
    m_sample->setObjectName(QStringLiteral("fraSample"));
    layout->addWidget(m_sample, 1);

    connect(lstFont, &QListWidget::currentTextChanged, this, [this](const QString& name) {
        if (!m_tabFilled[Preview] || name.isEmpty())
            return;
        m_state.fontName = name;
        showSample();
    });
    connect(SizeScroll, &QScrollBar::valueChanged, this, &frmOptions::SizeScroll_Change);
    connect(cmdReset, &QPushButton::clicked, this, &frmOptions::cmdReset_Click);
    return frame;
}

// The load: the fields from the globals, the copies, the first tab, the translation and the
// place of the window.
void frmOptions::Form_Load()
{
    setWindowTitle(Translate(QStringLiteral("Optionen")));
    m_state = LoadOptionsState();
    chkMD5->setChecked(m_state.md5);
    chkRefreshFiles->setChecked(m_state.refreshFiles);
    chkArchiv->setChecked(m_state.archiv);
    chkArchiv->setEnabled(m_state.refreshFiles);
    chkC64FilesDB->setChecked(m_state.c64FilesDB);
    chkGBFiles->setChecked(m_state.gbFiles);
    txtEditor->setText(m_state.editor);
    txtGBDB->setText(m_state.gameBaseDB);
    txtGBShots->setText(m_state.screenshots);
    txtDownload->setText(m_state.download);
    chkAskDown->setChecked(m_state.askDown);
    chkArchivFile->setChecked(m_state.archivFile);
    chkArchivOnlyGame->setChecked(m_state.archivOnlyGame);
    chkAdultContent->setChecked(m_state.adultContent);
    cmdGB->setEnabled(!gamebase::gGBHomepageUrl.trimmed().isEmpty());
    MyTab_Click(MyTab->currentIndex());
    app::ui::TranslateForm(this, true);
    app::RestoreWindowPos(*this, kDesign);
}

void frmOptions::MyTab_Click(int index)
{
    if (index < 0 || index >= kTabCount || m_tabFilled[size_t(index)])
        return;
    m_tabFilled[size_t(index)] = true;
    switch (index) {
    case EMUL:
        fillTree();
        break;
    case FILES:
        fillFilesTab();
        break;
    case DB:
        fillDbTab();
        break;
    case GB:
        break; // its fields were set at the load
    case Preview:
        fillPreviewTab();
        break;
    }
}

void frmOptions::fillFilesTab()
{
    const launch::ProfilConfig& c = m_state.config;
    const QList<launch::StartMenuEntry> entries = launch::StartMenuEntries(c.emulators, c.profils);
    const QString standard = Translate(QStringLiteral("Standardprofil")) + QStringLiteral(" (") +
                             launch::GetProfilCaption(c.emulators, c.profils, c.defaultProfil) +
                             QLatin1Char(')');
    for (int i = 0; i < cboProfils.size(); ++i) {
        QComboBox* combo = cboProfils[i];
        const QSignalBlocker block(combo);
        combo->clear();
        combo->addItem(standard, QString());
        for (const launch::StartMenuEntry& e : entries)
            combo->addItem(e.caption, launch::ProfilKeyFromTag(e.tag));
        const QString assigned = c.startProfils[size_t(i)];
        combo->setCurrentIndex(std::max(0, combo->findData(assigned)));
    }
}

void frmOptions::cboProfils_Click(int index)
{
    if (index < 0 || index >= cboProfils.size())
        return;
    m_state.config.startProfils[size_t(index)] = cboProfils[index]->currentData().toString();
}

void frmOptions::fillDbTab()
{
    txtSize->setText(m_state.size);
    for (QCheckBox* box : chkFiles)
        box->setChecked(m_state.importTypes.contains(box->text(), Qt::CaseInsensitive));
}

void frmOptions::chkRefreshFiles_Click()
{
    chkArchiv->setEnabled(chkRefreshFiles->isChecked());
}

void frmOptions::chkAllFiles_Click()
{
    for (QCheckBox* box : chkFiles)
        box->setChecked(chkAllFiles->isChecked());
}

void frmOptions::cmdEditor_Click()
{
    const QString current = txtEditor->text();
    const QString start = QFileInfo(current).isAbsolute() ? current : app::gDialogPath;
    // Programs here carry no extension: every file is offered.
    const QString chosen = platform::dialogs().openFile(
        Translate(QStringLiteral("Text-Editor auswählen")),
        Translate(QStringLiteral("Programme (*)")) + QStringLiteral("|*"), start);
    if (!chosen.isEmpty())
        txtEditor->setText(chosen);
}

void frmOptions::cmdGBDB_Click()
{
    const QString chosen = gamebase::SelectGameBaseFile(txtGBDB->text());
    if (chosen.isEmpty())
        return;
    txtGBDB->setText(chosen);
    const QString pictures = gamebase::GetGameBasePictures(chosen);
    if (!pictures.isEmpty())
        txtGBShots->setText(pictures);
}

void frmOptions::chooseFolder(QLineEdit* field)
{
    const QString chosen = platform::dialogs().chooseFolder(
        Translate(QStringLiteral("Bitte wählen Sie einen Ordner aus")), field->text());
    if (!chosen.isEmpty())
        field->setText(chosen);
}

void frmOptions::cmdGB_Click()
{
    const QString page = gamebase::gGBHomepageUrl.trimmed();
    if (!page.isEmpty())
        QDesktopServices::openUrl(QUrl::fromUserInput(page));
}

void frmOptions::fillPreviewTab()
{
    {
        const QSignalBlocker block(lstFont);
        lstFont->addItems(FontsBelowSymbol(QFontDatabase::families()));
        // The font in use is offered even when the system's list doesn't hold it (the
        // program's own "CBM").
        QList<QListWidgetItem*> found = lstFont->findItems(m_state.fontName, Qt::MatchFixedString);
        if (found.isEmpty() && !m_state.fontName.isEmpty()) {
            lstFont->insertItem(0, m_state.fontName);
            found = lstFont->findItems(m_state.fontName, Qt::MatchFixedString);
        }
        if (!found.isEmpty())
            lstFont->setCurrentItem(found.first());
    }
    {
        const QSignalBlocker block(SizeScroll);
        SizeScroll->setValue(std::clamp(m_state.fontSize, kSizeOffset, kMaxFontSize) - kSizeOffset);
    }
    txtFontSize->setText(QString::number(m_state.fontSize));
    showColors();
    showSample();
}

void frmOptions::SizeScroll_Change()
{
    m_state.fontSize = SizeScroll->value() + kSizeOffset;
    txtFontSize->setText(QString::number(m_state.fontSize));
    showSample();
}

void frmOptions::pickColor(int which)
{
    qint64* colors[3] = {&m_state.foreColor, &m_state.backColor, &m_state.selectColor};
    const std::optional<qint64> chosen =
        platform::dialogs().chooseColor(*colors[which], windowTitle());
    if (!chosen)
        return;
    *colors[which] = *chosen;
    showColors();
    showSample();
}

void frmOptions::cmdReset_Click()
{
    m_state.foreColor = app::kPreviewForeColor;
    m_state.backColor = app::kPreviewBackColor;
    m_state.selectColor = app::kPreviewSelectColor;
    m_state.fontName = QStringLiteral("CBM");
    m_state.fontSize = 8;
    {
        const QSignalBlocker block(lstFont);
        QList<QListWidgetItem*> found = lstFont->findItems(m_state.fontName, Qt::MatchFixedString);
        if (found.isEmpty()) {
            lstFont->insertItem(0, m_state.fontName);
            found = lstFont->findItems(m_state.fontName, Qt::MatchFixedString);
        }
        lstFont->setCurrentItem(found.first());
    }
    {
        const QSignalBlocker block(SizeScroll);
        SizeScroll->setValue(m_state.fontSize - kSizeOffset);
    }
    txtFontSize->setText(QString::number(m_state.fontSize));
    showColors();
    showSample();
}

void frmOptions::showColors()
{
    picColor[0]->setStyleSheet(colorStyle(m_state.foreColor));
    picColor[1]->setStyleSheet(colorStyle(m_state.backColor));
    picColor[2]->setStyleSheet(colorStyle(m_state.selectColor));
}

// The sample list with the chosen font and colours, drawn as the preview draws its lists.
void frmOptions::showSample()
{
    m_sample->setLook(
        app::cbmFont(m_state.fontName, m_state.fontSize), browser::settingsColor(m_state.foreColor),
        browser::settingsColor(m_state.backColor), browser::settingsColor(m_state.selectColor));
    if (m_sample->container() != 0)
        return;
    browser::PreviewContent content;
    content.kind = browser::PreviewKind::Directory;
    content.container = -1; // not a catalogue row: filled once
    content.rows = sampleRows();
    m_sample->showContent(content);
    m_sample->selectKey(1);
}

// The form's fields into the record that the steps of "OK" read.
void frmOptions::collectFields()
{
    OptionsState& s = m_state;
    s.dbShown = m_tabFilled[DB];
    s.gbShown = m_tabFilled[GB];
    s.previewShown = m_tabFilled[Preview];
    s.md5 = chkMD5->isChecked();
    s.refreshFiles = chkRefreshFiles->isChecked();
    s.archiv = chkArchiv->isChecked();
    s.c64FilesDB = chkC64FilesDB->isChecked();
    s.gbFiles = chkGBFiles->isChecked();
    s.size = txtSize->text().trimmed();
    s.editor = txtEditor->text().trimmed();
    s.importTypes.clear();
    for (QCheckBox* box : chkFiles)
        if (box->isChecked())
            s.importTypes << box->text();
    s.gameBaseDB = txtGBDB->text().trimmed();
    s.screenshots = txtGBShots->text().trimmed();
    s.download = txtDownload->text().trimmed();
    s.lblShots = lblShots->text();
    s.lblDownload = lblDownload->text();
    s.askDown = chkAskDown->isChecked();
    s.archivFile = chkArchivFile->isChecked();
    s.archivOnlyGame = chkArchivOnlyGame->isChecked();
    s.adultContent = chkAdultContent->isChecked();
}

void frmOptions::cmdOk_Click()
{
    collectFields();
    OptionsResult result;
    {
        WaitProgress progress;
        result = ApplyOptions(m_state, m_closeGameBase, progress);
    }
    if (result.close) {
        accept();
        return;
    }
    QWidget* field = nullptr;
    int tab = -1;
    switch (result.focus) {
    case OptionsField::Archiv:
        field = chkArchiv;
        tab = DB;
        break;
    case OptionsField::Editor:
        field = txtEditor;
        tab = DB;
        break;
    case OptionsField::GameBaseDB:
        field = txtGBDB;
        tab = GB;
        break;
    case OptionsField::Screenshots:
        field = txtGBShots;
        tab = GB;
        break;
    case OptionsField::Download:
        field = txtDownload;
        tab = GB;
        break;
    case OptionsField::None:
        break;
    }
    if (tab >= 0)
        MyTab->setCurrentIndex(tab);
    if (field)
        field->setFocus();
}

void frmOptions::done(int result)
{
    app::SaveWindowPos(*this, kDesign.name);
    QDialog::done(result);
}

} // namespace vd::setup
