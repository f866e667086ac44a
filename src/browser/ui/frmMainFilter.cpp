#include "browser/ui/frmMainFilter.h"

#include "app/Translate.h"
#include "app/ui/IconSet.h"
#include "app/ui/TranslateForm.h"
#include "browser/Filters.h"
#include "browser/ui/frmLegend.h"
#include "browser/ViewBuilder.h"
#include "controls/ui/DBCombo.h"
#include "platform/DialogService.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace vd::browser {

using app::Translate;

namespace {

FilterEditorRunner& runner()
{
    static FilterEditorRunner r;
    return r;
}

// Behind a compare button that holds a condition.
const QString kCompareColour = QStringLiteral("QToolButton { background-color: #80ffff; }");

constexpr int kTagRole = Qt::UserRole;

// The node kinds of treeFiles: leaves become conditions, the others only group them.
bool isLeaf(const QTreeWidgetItem* item)
{
    return item->childCount() == 0 && item->parent();
}

void forEachLeaf(QTreeWidgetItem* item, const std::function<void(QTreeWidgetItem*)>& f)
{
    for (int i = 0; i < item->childCount(); ++i) {
        QTreeWidgetItem* child = item->child(i);
        if (isLeaf(child))
            f(child);
        else
            forEachLeaf(child, f);
    }
}

// The file types of a C64 directory entry. A fixed list: asking the catalogue for its distinct
// types reads every entry, seconds at a million entries; others can be typed.
const char* const kEntryTypes[] = {"PRG", "SEQ", "USR", "REL", "DEL"};

} // namespace

void setFilterEditorRunner(FilterEditorRunner r)
{
    runner() = std::move(r);
}

frmMainFilter::frmMainFilter(FilterCollection& filters, db::Database* database, QWidget* parent)
    : QDialog(parent), m_filters(filters), m_db(database)
{
    setObjectName(QStringLiteral("frmMainFilter"));
    setWindowTitle(Translate(QStringLiteral("Filter")));
    buildControls();
    fillExtensions();
    fillFilterBox(0);
    app::ui::TranslateForm(this, true);
}

frmMainFilter::~frmMainFilter() = default;

// --- building ------------------------------------------------------------------------------

void frmMainFilter::buildControls()
{
    tbFilter = new QToolBar(this);
    tbFilter->setObjectName(QStringLiteral("tbFilter"));
    tbFilter->setToolButtonStyle(Qt::ToolButtonTextOnly);
    const std::pair<const char*, const char*> tools[] = {{"cmdNew", "Neu"},
                                                         {"cmdEdit", "Umbenennen"},
                                                         {"cmdDelete", "Löschen"},
                                                         {"cmdReset", "Zurücksetzen"},
                                                         {"cmdInfo", "Legende"}};
    for (const auto& [key, caption] : tools) {
        const QString name = QString::fromUtf8(key);
        QAction* action = tbFilter->addAction(Translate(QString::fromUtf8(caption)));
        action->setObjectName(name);
        connect(action, &QAction::triggered, this, [this, name] { tbFilter_ButtonClick(name); });
        m_tools.insert(name, action);
    }

    cboFilter = new QComboBox(this);
    cboFilter->setObjectName(QStringLiteral("cboFilter"));
    connect(cboFilter, &QComboBox::activated, this, &frmMainFilter::cboFilter_Click);

    chkCompressed = new QCheckBox(Translate(QStringLiteral("Archiv-Dateien")), this);
    chkCompressed->setObjectName(QStringLiteral("chkCompressed"));

    buildTree();

    cmdApply = new QPushButton(Translate(QStringLiteral("Übernehmen")), this);
    cmdApply->setObjectName(QStringLiteral("cmdApply"));
    cmdOK = new QPushButton(Translate(QStringLiteral("OK")), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdExit = new QPushButton(Translate(QStringLiteral("Beenden")), this);
    cmdExit->setObjectName(QStringLiteral("cmdExit"));
    connect(cmdApply, &QPushButton::clicked, this, [this] { cmdApply_Click(); });
    connect(cmdOK, &QPushButton::clicked, this, &frmMainFilter::cmdOK_Click);
    connect(cmdExit, &QPushButton::clicked, this, &QDialog::reject);

    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(Translate(QStringLiteral("Filter")) + QLatin1Char(':'), this));
    top->addWidget(cboFilter, 1);

    auto* body = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addWidget(buildInputs());
    left->addWidget(chkCompressed);
    left->addStretch(1);
    body->addLayout(left, 3);
    body->addWidget(treeFiles, 2);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdApply);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdExit);

    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(tbFilter);
    layout->addLayout(top);
    layout->addLayout(body, 1);
    layout->addLayout(buttons);
    resize(640, 420);
}

QWidget* frmMainFilter::buildInputs()
{
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);

    const auto combo = [this](const char* name, const QString& sql, const QString& text,
                              const QString& value, int invisibleCols) {
        auto* c = new controls::DBCombo(this);
        c->setObjectName(QString::fromUtf8(name));
        controls::DBComboProperties& p = c->props();
        p.TextField = text;
        p.ValueField = value;
        // No completion while typing: a filter looks for parts of names, and a completed
        // name would narrow what the user typed. The list offers the names to choose.
        p.AutoSearch = 0;
        p.NullAllowed = true; // an empty input is no error here: it adds no condition
        p.IgnoreWhere = false;
        p.InvisibleCols = invisibleCols;
        c->setRecordSource(sql);
        c->propertiesChanged();
        if (m_db)
            c->setDataBase(m_db);
        return c;
    };
    cboFile = combo("cboFile",
                    // Only files have a name and a disk name: no iType condition, so that the
                    // index on tFile gives the first rows at once.
                    QStringLiteral("SELECT DISTINCT tFile FROM Category WHERE tFile<>'' "
                                   "ORDER BY tFile"),
                    QStringLiteral("tFile"), QStringLiteral("tFile"), 0);
    cboImage = combo("cboImage",
                     QStringLiteral("SELECT DISTINCT tImage FROM Category WHERE tImage<>'' "
                                    "ORDER BY tImage"),
                     QStringLiteral("tImage"), QStringLiteral("tImage"), 0);
    cboCategory = combo("cboCategory",
                        QStringLiteral("SELECT tCategory, ID FROM Category WHERE iType=3 "
                                       "ORDER BY tCategory"),
                        QStringLiteral("tCategory"), QStringLiteral("ID"), 1);
    cboExtension = new QComboBox(this);
    cboExtension->setObjectName(QStringLiteral("cboExtension"));
    cboExtension->setEditable(true);
    cboExtension->setInsertPolicy(QComboBox::NoInsert);
    txtPath = new QLineEdit(this);
    txtPath->setObjectName(QStringLiteral("txtPath"));
    txtSize = new QLineEdit(this);
    txtSize->setObjectName(QStringLiteral("txtSize"));
    // Only digits pass, typed or pasted.
    txtSize->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), txtSize));
    txtSize->setMaxLength(10);

    const ViewCaptions captions = ViewCaptions::current();
    struct Row
    {
        int index;
        QString caption;
        QWidget* input;
    };
    const Row rows[] = {
        {kCompareFile, captions.disk, cboFile},
        {kCompareImage, Translate(QStringLiteral("Disk/Tape-Name")), cboImage},
        {kCompareExtension, Translate(QStringLiteral("Filetyp")), cboExtension},
        {kCompareCategory, captions.category, cboCategory},
        {kComparePath, Translate(QStringLiteral("Dateipfad")), txtPath},
        {kCompareSize, captions.size, txtSize},
    };
    int line = 0;
    for (const Row& row : rows) {
        auto* button = new QToolButton(box);
        button->setObjectName(QStringLiteral("cmdCompare%1").arg(row.index));
        button->setFixedWidth(32);
        cmdCompare[size_t(row.index)] = button;
        setCompare(row.index, kCompareNone);
        const int index = row.index;
        connect(button, &QToolButton::clicked, this, [this, index] { cmdCompare_Click(index); });
        grid->addWidget(new QLabel(row.caption, box), line, 0);
        grid->addWidget(button, line, 1);
        grid->addWidget(row.input, line, 2);
        ++line;
    }
    grid->setColumnStretch(2, 1);

    connect(cboFile, &controls::DBCombo::Change, this, [this] { inputTyped(kCompareFile); });
    connect(cboImage, &controls::DBCombo::Change, this, [this] { inputTyped(kCompareImage); });
    connect(cboCategory, &controls::DBCombo::Change, this,
            [this] { inputTyped(kCompareCategory); });
    connect(cboExtension, &QComboBox::editTextChanged, this,
            [this] { inputTyped(kCompareExtension); });
    connect(txtPath, &QLineEdit::textEdited, this, [this] { inputTyped(kComparePath); });
    connect(txtSize, &QLineEdit::textEdited, this, [this] { inputTyped(kCompareSize); });
    return box;
}

void frmMainFilter::buildTree()
{
    treeFiles = new QTreeWidget(this);
    treeFiles->setObjectName(QStringLiteral("treeFiles"));
    treeFiles->setHeaderHidden(true);
    auto* root = new QTreeWidgetItem(treeFiles, {Translate(QStringLiteral("Dateiendung"))});
    root->setData(0, kTagRole, QStringLiteral("FILES"));
    root->setIcon(0, app::IconSet::keyIcon(QStringLiteral("FILES")));
    const auto checkable = [](QTreeWidgetItem* item, bool group) {
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable |
                       (group ? Qt::ItemIsAutoTristate : Qt::NoItemFlags));
        item->setCheckState(0, Qt::Unchecked);
    };
    checkable(root, true);
    for (const FileTypeGroup& group : FileTypeGroups()) {
        QTreeWidgetItem* parent = root;
        if (!group.caption.isEmpty()) {
            parent = new QTreeWidgetItem(root, {Translate(group.caption)});
            parent->setData(0, kTagRole, group.tag);
            parent->setIcon(0, app::IconSet::keyIcon(group.tag));
            checkable(parent, true);
        }
        for (const FileTypeNode& node : group.nodes) {
            auto* item = new QTreeWidgetItem(parent, {node.text});
            item->setData(0, kTagRole, node.tag);
            // A typed node shows its file type's image, the others their extension's.
            const bool named = node.tag.toInt() == 0;
            item->setIcon(0, app::IconSet::keyIcon(named ? node.text : node.tag));
            checkable(item, false);
        }
    }
    treeFiles->expandAll();
}

void frmMainFilter::fillFilterBox(qint32 select)
{
    m_filling = true;
    cboFilter->clear();
    for (int i = 0; i < m_filters.count(); ++i)
        cboFilter->addItem(m_filters.at(i).Name, m_filters.at(i).Key);
    // A new filter shows its name until it is stored.
    if (select == 0 && !m_name.isEmpty())
        cboFilter->addItem(m_name, 0);
    cboFilter->setCurrentIndex(select == 0 && m_name.isEmpty() ? -1 : cboFilter->findData(select));
    m_filling = false;
}

void frmMainFilter::fillExtensions()
{
    for (const char* type : kEntryTypes)
        cboExtension->addItem(QString::fromLatin1(type));
    cboExtension->setCurrentIndex(-1);
}

// --- showing a filter ----------------------------------------------------------------------

void frmMainFilter::InitForm(qint32 key)
{
    m_name.clear();
    readFilter(m_filters.find(key) ? key : 0);
}

void frmMainFilter::readFilter(qint32 key)
{
    const clsFilter* filter = m_filters.find(key);
    m_key = filter ? key : 0;
    if (filter)
        m_name = filter->Name;
    fillFilterBox(m_key);
    showForm(filter ? ReadFilterForm(*filter) : FilterFormState());
}

int frmMainFilter::showModal()
{
    if (!runner())
        return exec();
    setModal(false);
    show();
    runner()(*this);
    if (isVisible())
        reject();
    return result();
}

QTreeWidgetItem* frmMainFilter::fileNode(const QString& text) const
{
    QTreeWidgetItem* found = nullptr;
    forEachLeaf(treeFiles->topLevelItem(0), [&](QTreeWidgetItem* item) {
        if (!found && item->text(0).compare(text, Qt::CaseInsensitive) == 0)
            found = item;
    });
    return found;
}

FilterFormState frmMainFilter::formState() const
{
    FilterFormState form;
    form.compressed = chkCompressed->isChecked();
    for (int i = 0; i < kCompareCount; ++i)
        form.compare[i] = cmdCompare[size_t(i)]->text();
    form.file = cboFile->Text();
    form.image = cboImage->Text();
    form.extension = cboExtension->currentText();
    form.categoryText = cboCategory->Text();
    if (!cboCategory->Value().isNull())
        form.categoryID = cboCategory->Value().toString();
    form.path = txtPath->text();
    form.size = txtSize->text();
    forEachLeaf(treeFiles->topLevelItem(0), [&](QTreeWidgetItem* item) {
        if (item->checkState(0) == Qt::Checked)
            form.checked.push_back(FileTypeNode{item->text(0), item->data(0, kTagRole).toString()});
    });
    return form;
}

void frmMainFilter::showForm(const FilterFormState& form)
{
    m_filling = true;
    chkCompressed->setChecked(form.compressed);
    for (int i = 0; i < kCompareCount; ++i)
        setCompare(i, form.compare[i]);
    // A value the list holds shows as chosen from it; any other as typed.
    const auto showText = [](controls::DBCombo* combo, const QString& text) {
        if (text.isEmpty())
            combo->setValue(QVariant());
        else
            combo->setText(text);
    };
    showText(cboFile, form.file);
    showText(cboImage, form.image);
    if (!form.categoryID.isEmpty())
        cboCategory->setValue(form.categoryID.toLongLong());
    else
        showText(cboCategory, form.categoryText);
    cboExtension->setEditText(form.extension);
    txtPath->setText(form.path);
    txtSize->setText(form.size);
    forEachLeaf(treeFiles->topLevelItem(0), [&](QTreeWidgetItem* item) {
        const FileTypeNode node{item->text(0), item->data(0, kTagRole).toString()};
        item->setCheckState(0, form.checked.contains(node) ? Qt::Checked : Qt::Unchecked);
    });
    m_filling = false;
}

// --- the inputs ----------------------------------------------------------------------------

void frmMainFilter::cboFilter_Click(int index)
{
    if (m_filling || index < 0)
        return;
    const qint32 key = cboFilter->itemData(index).toInt();
    if (key == m_key)
        return;
    // Leaving a new filter that was never stored drops its name.
    if (key != 0)
        m_name.clear();
    readFilter(key);
}

void frmMainFilter::cmdCompare_Click(int index)
{
    setCompare(index, NextCompare(index, cmdCompare[size_t(index)]->text()));
}

void frmMainFilter::setCompare(int index, const QString& caption)
{
    QToolButton* button = cmdCompare[size_t(index)];
    button->setText(caption);
    button->setToolTip(Translate(CompareTip(caption)));
    button->setStyleSheet(caption == kCompareNone ? QString() : kCompareColour);
}

// Typing into an input whose button says "no condition" turns the condition on: otherwise
// the text would be dropped silently at the next "Übernehmen".
void frmMainFilter::inputTyped(int index)
{
    if (m_filling || cmdCompare[size_t(index)]->text() != kCompareNone)
        return;
    setCompare(index, CompareList(index).value(0));
}

// --- the toolbar ---------------------------------------------------------------------------

void frmMainFilter::tbFilter_ButtonClick(const QString& key)
{
    if (key == QLatin1String("cmdNew"))
        cmdNew_Click();
    else if (key == QLatin1String("cmdEdit"))
        cmdEdit_Click();
    else if (key == QLatin1String("cmdDelete"))
        cmdDelete_Click();
    else if (key == QLatin1String("cmdReset"))
        cmdReset_Click();
    else if (key == QLatin1String("cmdInfo"))
        cmdInfo_Click();
}

QString frmMainFilter::askName(const QString& prompt, const QString& title,
                               const QString& clashTitle, const QString& start, qint32 ownKey)
{
    QString text = start;
    for (;;) {
        const std::optional<QString> answer =
            platform::dialogs().inputBox(Translate(prompt), Translate(title), text);
        if (!answer)
            return {};
        text = answer->trimmed();
        if (text.isEmpty())
            return {};
        const clsFilter* same = m_filters.findByName(text);
        if (!same || same->Key == ownKey)
            return text;
        platform::dialogs().msgBox(Translate(QStringLiteral("Dieser Name besteht schon!")),
                                   platform::vbExclamation, Translate(clashTitle));
    }
}

void frmMainFilter::cmdNew_Click()
{
    const QString name =
        askName(QStringLiteral("Bitte geben Sie eine Filter-Bezeichnung an:"),
                QStringLiteral("Neue Selektion"), QStringLiteral("Neue Selektion"), QString(), -1);
    if (name.isEmpty())
        return;
    m_name = name;
    m_key = 0;
    fillFilterBox(0);
    showForm(FilterFormState());
}

void frmMainFilter::cmdEdit_Click()
{
    if (m_name.isEmpty())
        return;
    const QString name =
        askName(QStringLiteral("Selektion ändern:"), QStringLiteral("Filter"),
                QStringLiteral("Selektion ändern"), m_name, m_key == 0 ? -1 : m_key);
    if (name.isEmpty() || name == m_name)
        return;
    m_name = name;
    if (clsFilter* filter = m_filters.find(m_key)) {
        filter->Name = name;
        emit filterRenamed(m_key);
    }
    fillFilterBox(m_key);
}

void frmMainFilter::cmdDelete_Click()
{
    const qint32 key = m_key;
    m_name.clear();
    if (key != 0) {
        m_filters.remove(key);
        emit filterRemoved(key);
    }
    readFilter(m_filters.count() > 0 ? m_filters.at(0).Key : 0);
}

void frmMainFilter::cmdReset_Click()
{
    showForm(FilterFormState());
}

void frmMainFilter::cmdInfo_Click()
{
    if (!m_legend) {
        m_legend = new frmLegend(this);
        m_legend->setObjectName(QStringLiteral("frmLegend"));
    }
    m_legend->show();
    m_legend->raise();
}

// --- storing -------------------------------------------------------------------------------

bool frmMainFilter::cmdApply_Click()
{
    // Nothing to store into yet: the name comes first, as with a new filter.
    if (m_name.isEmpty()) {
        const FilterFormState form = formState();
        cmdNew_Click();
        if (m_name.isEmpty())
            return false;
        showForm(form);
    }
    clsFilter* filter = m_filters.find(m_key);
    if (!filter) {
        filter = &AddFilter(m_filters, m_name, m_filters.nextKey());
        m_key = filter->Key;
    }
    StoreFilterForm(formState(), *filter);
    fillFilterBox(m_key);
    emit filterStored(m_key);
    return true;
}

void frmMainFilter::cmdOK_Click()
{
    // An empty form that belongs to no filter has nothing to store and needs no name.
    clsFilter probe;
    StoreFilterForm(formState(), probe);
    if ((m_name.isEmpty() && probe.Defs.isEmpty()) || cmdApply_Click())
        accept();
}

} // namespace vd::browser
