#pragma once
// The preview's three kinds of content in one widget: lvPreview (a directory or a text's
// lines), picGrafic with imgGrafic (a picture), lblPreview (the name, or why nothing shows).
// The main window's pane fits a picture into itself; the stand-alone window scrolls it.

#include "browser/Preview.h"

#include <QColor>
#include <QFont>
#include <QWidget>

class QLabel;
class QScrollArea;
class QTreeWidget;

namespace vd::browser {

class GlyphDelegate;

class PreviewPane : public QWidget
{
    Q_OBJECT
public:
    // Columns of lvPreview for a directory: Size, File, Extension and the hidden row key.
    enum Column
    {
        kColSize = 0,
        kColFile = 1,
        kColExtension = 2,
        kColKey = 3
    };

    // `scrollPicture`: a picture larger than the pane gets scroll bars instead of being fitted.
    explicit PreviewPane(bool scrollPicture, QWidget* parent = nullptr);

    // Font and colours of the list; names are drawn through the C64 glyph table when the font
    // is the C-64 family.
    void setLook(const QFont& font, const QColor& fore, const QColor& back, const QColor& select);

    // Shows `content` (kind Picture shows the label only until setPicture).
    void showContent(const PreviewContent& content);
    void setPicture(const QImage& image);
    // A picture that could not be loaded: its message in the label.
    void setPictureMessage(const QString& message);
    // Selects the row whose key is `key`; without one, no row is selected.
    void selectKey(qint64 key);

    // The list's tag: the Category row on show (0 for none).
    qint64 container() const { return m_container; }
    void forgetContainer() { m_container = 0; }

    QTreeWidget* list() const { return lvPreview; }
    QLabel* label() const { return lblPreview; }
    QLabel* picture() const { return imgGrafic; }
    QScrollArea* pictureArea() const { return picGrafic; }
    bool drawsC64Glyphs() const;
    // The key of the selected row, 0 when none or the row has none.
    qint64 selectedKey() const;

signals:
    // A double click or Enter on a row with a key.
    void rowActivated(qint64 key);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void setupDirectoryColumns();
    void setupTextColumn();
    void fitPicture();

    bool m_scrollPicture;
    bool m_lookSet = false;
    QFont m_font;
    QColor m_fore, m_back, m_select;
    qint64 m_container = 0;
    QImage m_image;
    QTreeWidget* lvPreview = nullptr;
    QScrollArea* picGrafic = nullptr;
    QLabel* imgGrafic = nullptr;
    QLabel* lblPreview = nullptr;
    GlyphDelegate* m_delegate = nullptr;
};

// A colour of the settings (0xBBGGRR) as a QColor.
QColor settingsColor(qint64 bgr);

} // namespace vd::browser
