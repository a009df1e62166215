#include "preferences/panes/PlaceholderPane.h"

#include "preferences/panes/PaneWidgets.h"

#include <QLabel>
#include <QVBoxLayout>

PlaceholderPane::PlaceholderPane(const QString& heading, const QString& text, QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(PaneWidgets::margin, PaneWidgets::margin, PaneWidgets::margin,
                               PaneWidgets::margin);
    layout->setSpacing(10);
    layout->addWidget(PaneWidgets::heading(heading, this));
    layout->addWidget(PaneWidgets::wrappedText(text, this));
    layout->addStretch();
}
