#include "browser/ui/PreviewPane.h"

#include "formats/PetsciiGlyphs.h"

#include <algorithm>
#include <QFontInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace vd::browser {

// Draws the names of a directory with the C64's glyphs; the items keep the names as stored.
class GlyphDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    bool mapGlyphs = false;

    // The style's item margins would clip the full-height C64 glyphs; rows get the font's
    // whole line and a pixel above and below.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        size.setHeight(std::max(size.height(), option.fontMetrics.height() + 2));
        return size;
    }

    QString displayText(const QVariant& value, const QLocale& locale) const override
    {
        const QString text = QStyledItemDelegate::displayText(value, locale);
        return mapGlyphs ? formats::toC64Glyphs(text) : text;
    }
};

namespace {

constexpr int kKeyRole = Qt::UserRole;

} // namespace

QColor settingsColor(qint64 bgr)
{
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

PreviewPane::PreviewPane(bool scrollPicture, QWidget* parent)
    : QWidget(parent), m_scrollPicture(scrollPicture)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    lblPreview = new QLabel(this);
    lblPreview->setObjectName(QStringLiteral("lblPreview"));
    lblPreview->setWordWrap(true);
    lblPreview->setTextFormat(Qt::PlainText);
    layout->addWidget(lblPreview);

    lvPreview = new QTreeWidget(this);
    lvPreview->setObjectName(QStringLiteral("lvPreview"));
    lvPreview->setRootIsDecorated(false);
    lvPreview->setUniformRowHeights(true);
    lvPreview->setSelectionMode(QAbstractItemView::SingleSelection);
    lvPreview->setAllColumnsShowFocus(true);
    lvPreview->setFrameShape(QFrame::NoFrame);
    lvPreview->header()->setStretchLastSection(false);
    m_delegate = new GlyphDelegate(lvPreview);
    lvPreview->setItemDelegate(m_delegate);
    lvPreview->installEventFilter(this);
    connect(lvPreview, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        const qint64 key = item->data(0, kKeyRole).toLongLong();
        if (key != 0)
            emit rowActivated(key);
    });
    layout->addWidget(lvPreview, 1);

    picGrafic = new QScrollArea(this);
    picGrafic->setObjectName(QStringLiteral("picGrafic"));
    picGrafic->setFrameShape(QFrame::NoFrame);
    picGrafic->setAlignment(Qt::AlignCenter);
    picGrafic->setWidgetResizable(false);
    if (!m_scrollPicture) {
        picGrafic->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        picGrafic->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    imgGrafic = new QLabel;
    imgGrafic->setObjectName(QStringLiteral("imgGrafic"));
    imgGrafic->setAlignment(Qt::AlignCenter);
    picGrafic->setWidget(imgGrafic);
    picGrafic->setVisible(false);
    layout->addWidget(picGrafic, 1);
}

void PreviewPane::setLook(const QFont& font, const QColor& fore, const QColor& back,
                          const QColor& select)
{
    // Every selection asks for the look; only a change is applied.
    if (m_lookSet && font == m_font && fore == m_fore && back == m_back && select == m_select)
        return;
    m_lookSet = true;
    m_font = font;
    m_fore = fore;
    m_back = back;
    m_select = select;
    lvPreview->setFont(font);
    QPalette colours = lvPreview->palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        colours.setColor(group, QPalette::Base, back);
        colours.setColor(group, QPalette::Window, back);
        colours.setColor(group, QPalette::Text, fore);
        colours.setColor(group, QPalette::WindowText, fore);
        colours.setColor(group, QPalette::Highlight, select);
        colours.setColor(group, QPalette::HighlightedText, back);
    }
    lvPreview->setPalette(colours);
    picGrafic->setPalette(colours);
    picGrafic->setBackgroundRole(QPalette::Base);
    QPalette labelColours = lblPreview->palette();
    labelColours.setColor(QPalette::WindowText, fore);
    lblPreview->setPalette(labelColours);
    m_delegate->mapGlyphs = QFontInfo(font).family() == formats::kC64GlyphFamily;
    lvPreview->viewport()->update();
}

bool PreviewPane::drawsC64Glyphs() const
{
    return m_delegate->mapGlyphs;
}

void PreviewPane::setupDirectoryColumns()
{
    lvPreview->setColumnCount(4);
    lvPreview->setHeaderLabels({QStringLiteral("Size"), QStringLiteral("File"),
                                QStringLiteral("Extension"), QStringLiteral("Key")});
    lvPreview->setHeaderHidden(true);
    lvPreview->setColumnHidden(kColKey, true);
    QHeaderView* header = lvPreview->header();
    header->setSectionResizeMode(kColSize, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(kColFile, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(kColExtension, QHeaderView::Stretch);
}

void PreviewPane::setupTextColumn()
{
    lvPreview->setColumnCount(1);
    lvPreview->setHeaderLabels({QStringLiteral("Text")});
    lvPreview->setHeaderHidden(true);
    lvPreview->setColumnHidden(0, false);
    lvPreview->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
}

void PreviewPane::showContent(const PreviewContent& content)
{
    m_container = content.container;
    m_image = QImage();
    imgGrafic->clear();
    lvPreview->clear();
    lblPreview->setText(content.label);
    const bool picture = content.kind == PreviewKind::Picture;
    const bool list = content.kind == PreviewKind::Directory || content.kind == PreviewKind::Text;
    lvPreview->setVisible(list);
    picGrafic->setVisible(picture);
    QList<QTreeWidgetItem*> items;
    if (content.kind == PreviewKind::Directory) {
        setupDirectoryColumns();
        m_delegate->mapGlyphs = QFontInfo(lvPreview->font()).family() == formats::kC64GlyphFamily;
        for (const PreviewRow& row : content.rows) {
            auto* item = new QTreeWidgetItem(
                QStringList{row.size, row.file, row.extension, QString::number(row.key)});
            item->setData(0, kKeyRole, row.key);
            item->setTextAlignment(kColSize, Qt::AlignRight | Qt::AlignVCenter);
            items.append(item);
        }
    } else if (content.kind == PreviewKind::Text) {
        setupTextColumn();
        // A text is no C64 name: its bytes are the letters they are.
        m_delegate->mapGlyphs = false;
        for (const QString& line : content.lines)
            items.append(new QTreeWidgetItem(QStringList{line}));
    }
    lvPreview->addTopLevelItems(items);
}

void PreviewPane::setPicture(const QImage& image)
{
    m_image = image;
    if (m_scrollPicture) {
        imgGrafic->setPixmap(QPixmap::fromImage(image));
        imgGrafic->resize(image.size());
    } else {
        fitPicture();
    }
}

void PreviewPane::setPictureMessage(const QString& message)
{
    picGrafic->setVisible(false);
    lblPreview->setText(message);
}

void PreviewPane::fitPicture()
{
    if (m_image.isNull())
        return;
    const QSize room = picGrafic->viewport()->size();
    if (room.isEmpty())
        return;
    const QSize target = m_image.size().scaled(room, Qt::KeepAspectRatio);
    // Pixel pictures of the C64 stay crisp when enlarged; large photos are smoothed down.
    const Qt::TransformationMode mode =
        target.width() > m_image.width() ? Qt::FastTransformation : Qt::SmoothTransformation;
    imgGrafic->setPixmap(QPixmap::fromImage(m_image.scaled(target, Qt::KeepAspectRatio, mode)));
    imgGrafic->resize(room);
}

void PreviewPane::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (!m_scrollPicture)
        fitPicture();
}

void PreviewPane::selectKey(qint64 key)
{
    for (int i = 0; i < lvPreview->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = lvPreview->topLevelItem(i);
        if (item->data(0, kKeyRole).toLongLong() == key && key != 0) {
            lvPreview->setCurrentItem(item);
            lvPreview->scrollToItem(item);
            return;
        }
    }
    // The container itself, or an entry without a row: nothing stays marked.
    lvPreview->setCurrentItem(nullptr);
    lvPreview->clearSelection();
}

qint64 PreviewPane::selectedKey() const
{
    const QTreeWidgetItem* item = lvPreview->currentItem();
    return item && item->isSelected() ? item->data(0, kKeyRole).toLongLong() : 0;
}

bool PreviewPane::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lvPreview && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            if (const qint64 id = selectedKey(); id != 0)
                emit rowActivated(id);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace vd::browser
