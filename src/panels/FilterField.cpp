#include "panels/FilterField.h"

#include <QKeyEvent>

FilterField::FilterField(const QString& name, QWidget* parent) : QLineEdit(parent)
{
    setPlaceholderText(name);
    setAccessibleName(name);
    setClearButtonEnabled(true);
}

QString FilterField::fold(const QString& text)
{
    // Decomposed, "é" is "e" followed by a combining accent: dropping the marks leaves the letter.
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() != QChar::Mark_NonSpacing)
            folded.append(c);
    }
    return folded.toCaseFolded();
}

QString FilterField::folded() const
{
    return fold(text().trimmed());
}

bool FilterField::matches(const QString& name, const QString& foldedText)
{
    return foldedText.isEmpty() || fold(name).contains(foldedText);
}

void FilterField::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier && !text().isEmpty()) {
        clear();
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}
