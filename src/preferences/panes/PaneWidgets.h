#pragma once

#include <QAbstractButton>
#include <QColor>

class QLabel;
class QWidget;

/// What every preference pane is built from, so they look alike.
namespace PaneWidgets {

/// The width of a pane's content, in points; wrapped texts break at it.
inline constexpr int contentWidth = 440;
/// The margin around a pane's content.
inline constexpr int margin = 20;

/// A pane's title line: the system font, larger and bold.
QLabel* heading(const QString& text, QWidget* parent);
/// A section's title within a pane.
QLabel* subheading(const QString& text, QWidget* parent);
/// A text that breaks into lines at the pane's width.
QLabel* wrappedText(const QString& text, QWidget* parent);

/// Whether the widget is shown in the dark appearance (its window colour is dark).
bool isDark(const QWidget* widget);
/// Green for good news and red for bad, each readable on the light and the dark window colour.
QColor goodColor(bool dark);
QColor badColor(bool dark);

} // namespace PaneWidgets

/// A text in the link colour that acts when clicked or, with the keyboard focus on it, on Space; underlined
/// under the pointer. A button to assistive technology, so screen readers can press it.
class LinkButton final : public QAbstractButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LinkButton)

public:
    explicit LinkButton(const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    bool m_hovered = false;
};
