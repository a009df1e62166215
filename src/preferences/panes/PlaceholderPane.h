#pragma once

#include <QWidget>

/// A pane that only says what will be there: keeps a tab's place until its real content comes.
class PlaceholderPane final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PlaceholderPane)

public:
    PlaceholderPane(const QString& heading, const QString& text, QWidget* parent = nullptr);
};
