#pragma once

#include <QLineEdit>

/// The field above a long list that narrows it to the entries whose name holds the typed text, whatever its
/// case and accents ("lampe" finds "Lampe", "cafe" finds "Café"). Escape empties it first; in an empty field
/// Escape goes on to the window (which closes).
class FilterField final : public QLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FilterField)

public:
    /// Lists of more entries than this show their field.
    static constexpr int threshold = 20;

    /// @p name is the placeholder and the name screen readers announce.
    FilterField(const QString& name, QWidget* parent = nullptr);

    /// The typed text as `matches` compares it.
    QString folded() const;
    /// Whether @p name holds @p foldedText (from `folded`); an empty text matches every name.
    static bool matches(const QString& name, const QString& foldedText);
    /// @p text without case or accents.
    static QString fold(const QString& text);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};
