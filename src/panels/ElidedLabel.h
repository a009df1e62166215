#pragma once

#include <QLabel>

/// A one-line label that cuts a text too long for its width with "…" and then shows the whole text as its
/// tooltip. Its accessible name stays the whole text.
class ElidedLabel final : public QLabel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ElidedLabel)

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// Shows @p text, cut to the width when needed.
    void setFullText(const QString& text);
    /// Draws the text at @p opacity (a dimmed row).
    void setTextOpacity(qreal opacity);
    /// Whether the text is cut at the current width.
    bool isElided() const { return m_elided; }

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void updateElision();

    QString m_shown;
    QString m_forText; // the text m_shown was made for
    int m_forWidth = -1;
    qreal m_opacity = 1;
    bool m_elided = false;
};
