#include "panels/WebViewModel.h"

WebViewModel::WebViewModel(QObject* parent) : QObject(parent) {}

void WebViewModel::setLink(const QUrl& link)
{
    if (m_link == link)
        return;
    m_link = link;
    Q_EMIT linkChanged();
}

void WebViewModel::setDarkMode(bool dark)
{
    if (m_darkMode == dark)
        return;
    m_darkMode = dark;
    Q_EMIT darkModeChanged();
}
