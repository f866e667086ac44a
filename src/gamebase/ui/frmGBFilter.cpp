#include "gamebase/ui/frmGBFilter.h"

#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "catalogue/Database.h"
#include "controls/ui/DBCombo.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseViews.h"
#include "platform/DialogService.h"

#include <QAction>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QToolBar>
#include <QVBoxLayout>

namespace vd::gamebase {

using app::Translate;

namespace {

const QString kNone = QStringLiteral("X");
const QString kYearField = QStringLiteral("Y.YEAR");

QString compareTip(const QString& compare)
{
    if (compare == u">")
        return Translate(QStringLiteral("beginnt mit / größer als"));
    if (compare == u"<")
        return Translate(QStringLiteral("endet mit / kleiner als"));
    if (compare == u"<>")
        return Translate(QStringLiteral("ist nicht gleich"));
    if (compare == u"=")
        return Translate(QStringLiteral("ist genau gleich"));
    if (compare == u"( )")
        return Translate(QStringLiteral("enthält"));
    return Translate(QStringLiteral("keine Bedingung"));
}

} // namespace

frmGBFilter::frmGBFilter(browser::FilterCollection& filters, QWidget* parent)
    : QDialog(parent), m_filters(filters)
{
    setObjectName(QStringLiteral("frmGBFilter"));
    setWindowTitle(Translate(QStringLiteral("Filter")));
    auto* layout = new QVBoxLayout(this);

    tbFilter = new QToolBar(this);
    tbFilter->setObjectName(QStringLiteral("tbFilter"));
    const struct
    {
        const char* key;
        const char* caption;
        void (frmGBFilter::*handler)();
    } commands[] = {
        {"cmdNew", "Neu", &frmGBFilter::cmdNew_Click},
        {"cmdEdit", "Umbenennen", &frmGBFilter::cmdEdit_Click},
        {"cmdDelete", "Löschen", &frmGBFilter::cmdDelete_Click},
        {"cmdReset", "Zurücksetzen", &frmGBFilter::cmdReset_Click},
        {"cmdInfo", "Legende", &frmGBFilter::cmdInfo_Click},
    };
    for (const auto& c : commands) {
        QAction* a = tbFilter->addAction(Translate(QString::fromUtf8(c.caption)));
        a->setObjectName(QString::fromLatin1(c.key));
        connect(a, &QAction::triggered, this, c.handler);
    }
    layout->addWidget(tbFilter);

    cboFilter = new QComboBox(this);
    cboFilter->setObjectName(QStringLiteral("cboFilter"));
    layout->addWidget(cboFilter);
    connect(cboFilter, &QComboBox::activated, this,
            [this](int index) { showFilter(cboFilter->itemData(index).toInt()); });

    auto* grid = new QGridLayout;
    layout->addLayout(grid);
    setLayout(layout);
    const QString keys = QStringLiteral("=,<>");
    addRow(GBFieldCaption(QStringLiteral("Publisher")), QStringLiteral("PU_ID"), keys,
           QStringLiteral("Publisher|Publishers|PU_ID"));
    addRow(GBFieldCaption(QStringLiteral("Programmer")), QStringLiteral("PR_ID"), keys,
           QStringLiteral("Programmer|Programmers|PR_ID"));
    addRow(GBFieldCaption(QStringLiteral("Cracker")), QStringLiteral("CR_ID"), keys,
           QStringLiteral("Cracker|Crackers|CR_ID"));
    addRow(GBFieldCaption(QStringLiteral("Musician")), QStringLiteral("MU_ID"), keys,
           QStringLiteral("Musician|Musicians|MU_ID"));
    addRow(GBFieldCaption(QStringLiteral("Language")), QStringLiteral("LA_ID"), keys,
           QStringLiteral("Language|Languages|LA_ID"));
    addRow(GBFieldCaption(QStringLiteral("Genre")), QStringLiteral("GE_ID"), keys,
           QStringLiteral("Genre|Genres|GE_ID"));
    addRow(GBFieldCaption(QStringLiteral("Year")), QStringLiteral("YE_ID"),
           QStringLiteral("=,>,<,<>"), QStringLiteral("Year|Years|YE_ID"));
    addRow(GBFieldCaption(QStringLiteral("Comment")), QStringLiteral("Comment"),
           QStringLiteral("( ),=,>,<,<>"), QString());
    addRow(GBFieldCaption(QStringLiteral("V_Length")), QStringLiteral("V_Length"),
           QStringLiteral("=,<,>,<>"), QString());
    for (int i = 0; i < rows.size(); ++i) {
        auto* label = new QLabel(rows[i].cmdCompare->property("caption").toString(), this);
        grid->addWidget(label, i, 0);
        grid->addWidget(rows[i].cmdCompare, i, 1);
        grid->addWidget(rows[i].combo ? static_cast<QWidget*>(rows[i].combo) : rows[i].text, i, 2);
    }
    txtComment = rows[rowOf(QStringLiteral("Comment"))].text;
    txtComment->setObjectName(QStringLiteral("txtComment"));
    txtSize = rows[rowOf(QStringLiteral("V_Length"))].text;
    txtSize->setObjectName(QStringLiteral("txtSize"));
    // Only digits pass.
    txtSize->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), txtSize));

    auto* buttons = new QHBoxLayout;
    cmdApply = new QPushButton(Translate(QStringLiteral("Übernehmen")), this);
    cmdApply->setObjectName(QStringLiteral("cmdApply"));
    cmdOk = new QPushButton(Translate(QStringLiteral("OK")), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdExit = new QPushButton(Translate(QStringLiteral("Beenden")), this);
    cmdExit->setObjectName(QStringLiteral("cmdExit"));
    buttons->addStretch();
    buttons->addWidget(cmdApply);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdExit);
    layout->addLayout(buttons);
    connect(cmdApply, &QPushButton::clicked, this, &frmGBFilter::cmdApply_Click);
    connect(cmdOk, &QPushButton::clicked, this, [this] {
        cmdApply_Click();
        accept();
    });
    connect(cmdExit, &QPushButton::clicked, this, &QDialog::reject);
    app::ui::TranslateForm(this, true);
}

void frmGBFilter::addRow(const QString& caption, const QString& field, const QString& compares,
                         const QString& lookup)
{
    FieldRow row;
    row.field = field;
    row.compares = compares;
    row.cmdCompare = new QPushButton(this);
    row.cmdCompare->setObjectName(QStringLiteral("cmdCompare%1").arg(rows.size()));
    row.cmdCompare->setProperty("caption", caption);
    row.cmdCompare->setFixedWidth(40);
    if (lookup.isEmpty()) {
        row.text = new QLineEdit(this);
    } else {
        const QStringList parts = lookup.split(QLatin1Char('|')); // text, table, key
        row.combo = new controls::DBCombo(this);
        row.combo->setObjectName(QStringLiteral("cbo") + parts[0]);
        row.combo->props().ValueField = parts[2];
        row.combo->props().TextField = parts[0];
        row.combo->props().InvisibleCols = 1;
        row.combo->props().NullAllowed = true;
        if (gGB) {
            row.combo->setDataBase(gGB.get());
            row.combo->setRecordSource(QStringLiteral("Select ") + parts[2] + QLatin1Char(',') +
                                       parts[0] + QStringLiteral(" From ") + parts[1] +
                                       QStringLiteral(" order by ") + parts[0]);
        }
    }
    const int index = int(rows.size());
    connect(row.cmdCompare, &QPushButton::clicked, this,
            [this, index] { cmdCompare_Click(index); });
    rows.append(row);
    setCompare(index, kNone);
}

int frmGBFilter::rowOf(const QString& field) const
{
    const QString wanted =
        field.compare(kYearField, Qt::CaseInsensitive) == 0 ? QStringLiteral("YE_ID") : field;
    for (int i = 0; i < rows.size(); ++i)
        if (rows[i].field.compare(wanted, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

void frmGBFilter::setCompare(int row, const QString& compare)
{
    QPushButton* button = rows[row].cmdCompare;
    button->setText(compare);
    button->setToolTip(compareTip(compare));
    button->setStyleSheet(compare == kNone ? QString()
                                           : QStringLiteral("background-color: #80FFFF;"));
}

void frmGBFilter::cmdCompare_Click(int row)
{
    const QStringList list = rows[row].compares.split(QLatin1Char(','));
    const QString now = rows[row].cmdCompare->text();
    const qsizetype at = list.indexOf(now);
    QString next;
    if (now == kNone)
        next = list.first();
    else
        next = at + 1 < list.size() ? list[at + 1] : kNone;
    setCompare(row, next);
}

void frmGBFilter::fillFilterBox()
{
    cboFilter->clear();
    for (int i = 0; i < m_filters.count(); ++i)
        cboFilter->addItem(m_filters.at(i).Name, m_filters.at(i).Key);
}

void frmGBFilter::InitForm(qint32 key)
{
    fillFilterBox();
    if (m_filters.count() == 0) {
        browser::AddFilter(m_filters, Translate(QStringLiteral("Neue Selektion")),
                           m_filters.nextKey());
        fillFilterBox();
    }
    showFilter(m_filters.find(key) ? key : m_filters.at(0).Key);
}

void frmGBFilter::showFilter(qint32 key)
{
    cmdReset_Click();
    m_key = key;
    const browser::clsFilter* filter = m_filters.find(key);
    cboFilter->setCurrentIndex(cboFilter->findData(key));
    if (!filter)
        return;
    for (const browser::clsFilterDef& def : filter->Defs) {
        const int row = rowOf(def.Field);
        if (row < 0)
            continue;
        setCompare(row, def.Compare);
        FieldRow& r = rows[row];
        if (r.text) {
            r.text->setText(def.Value);
        } else if (def.Field.compare(kYearField, Qt::CaseInsensitive) == 0) {
            r.combo->setText(def.Value); // the year itself
            r.combo->Search(def.Value);
        } else if (!def.Value.isEmpty()) {
            r.combo->setValue(def.Value.toLongLong());
        }
    }
}

void frmGBFilter::cmdReset_Click()
{
    for (int i = 0; i < rows.size(); ++i) {
        setCompare(i, kNone);
        if (rows[i].text)
            rows[i].text->clear();
        else
            rows[i].combo->setValue(QVariant());
    }
}

void frmGBFilter::cmdApply_Click()
{
    browser::clsFilter* filter = m_filters.find(m_key);
    if (!filter)
        return;
    filter->Defs.clear();
    for (const FieldRow& r : rows) {
        const QString compare = r.cmdCompare->text();
        if (r.text) {
            browser::AddCondition(*filter, r.field, compare, r.text->text(), QString());
            continue;
        }
        const QVariant value = r.combo->Value();
        const QString key = value.isNull() ? QString() : value.toString();
        // A year compared as greater or less goes by the year, not by its key.
        browser::AddCondition(*filter, r.field, compare, key, QString(),
                              r.field == u"YE_ID" ? kYearField : QString(), r.combo->Text());
    }
    emit applied(m_key);
}

std::optional<QString> frmGBFilter::askName(const QString& prompt, const QString& title,
                                            const QString& start, qint32 ownKey)
{
    QString name = start;
    for (;;) {
        const auto answer = platform::dialogs().inputBox(prompt, title, name);
        if (!answer || answer->isEmpty())
            return std::nullopt;
        const browser::clsFilter* clash = m_filters.findByName(*answer);
        if (!clash || clash->Key == ownKey)
            return answer;
        platform::dialogs().msgBox(Translate(QStringLiteral("Dieser Name besteht schon!")),
                                   platform::vbExclamation, title);
        name = *answer;
    }
}

void frmGBFilter::cmdNew_Click()
{
    const auto name =
        askName(Translate(QStringLiteral("Bitte geben Sie eine Filter-Bezeichnung an:")),
                Translate(QStringLiteral("Neue Selektion")),
                Translate(QStringLiteral("Neue Selektion")), -1);
    if (!name)
        return;
    const qint32 key = m_filters.nextKey();
    browser::AddFilter(m_filters, *name, key);
    fillFilterBox();
    showFilter(key);
}

void frmGBFilter::cmdEdit_Click()
{
    browser::clsFilter* filter = m_filters.find(m_key);
    if (!filter)
        return;
    const auto name = askName(Translate(QStringLiteral("Selektion ändern:")),
                              Translate(QStringLiteral("Selektion ändern")), filter->Name, m_key);
    if (!name)
        return;
    filter->Name = *name;
    fillFilterBox();
    cboFilter->setCurrentIndex(cboFilter->findData(m_key));
}

void frmGBFilter::cmdDelete_Click()
{
    if (!m_filters.find(m_key))
        return;
    m_filters.remove(m_key);
    fillFilterBox();
    if (m_filters.count() > 0)
        showFilter(m_filters.at(0).Key);
    else {
        m_key = 0;
        cmdReset_Click();
    }
}

void frmGBFilter::cmdInfo_Click()
{
    QStringList lines;
    for (const char* c : {"X", ">", "<", "<>", "=", "( )"})
        lines << QString::fromLatin1(c) + QStringLiteral("\t") + compareTip(QString::fromLatin1(c));
    platform::dialogs().msgBox(lines.join(QLatin1Char('\n')), platform::vbInformation,
                               Translate(QStringLiteral("Legende")));
}

} // namespace vd::gamebase
