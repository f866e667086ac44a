#pragma once
// frmPreview, the stand-alone preview: the same content as the main window's pane, its label
// as the caption, a picture larger than the window with scroll bars. A double click or Enter
// on an entry asks the owner to start it.

#include <QWidget>

namespace vd::browser {

class PreviewPane;

class frmPreview : public QWidget
{
    Q_OBJECT
public:
    static constexpr double kDesignWidthTwips = 5000;
    static constexpr double kDesignHeightTwips = 6000;

    explicit frmPreview(QWidget* parent = nullptr);
    ~frmPreview() override;

    PreviewPane* pane() const { return m_pane; }
    // The caption follows lblPreview.
    void updateCaption();

signals:
    void PreviewFileStart(qint32 id);
    void FormIsHiding();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    PreviewPane* m_pane = nullptr;
};

} // namespace vd::browser
