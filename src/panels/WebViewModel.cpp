#include "panels/WebViewModel.h"

WebViewModel::WebViewModel(QObject* parent) : QObject(parent) {}

void WebViewModel::setLink(const QUrl& link)
{
    if (m_link == link)
        return;
    m_link = link;
    Q_EMIT linkChanged();
}

void WebViewModel::setDidFinishLoading(bool finished)
{
    if (m_didFinishLoading == finished)
        return;
    m_didFinishLoading = finished;
    Q_EMIT didFinishLoadingChanged();
}

void WebViewModel::setPageTitle(const QString& title)
{
    if (m_pageTitle == title)
        return;
    m_pageTitle = title;
    Q_EMIT pageTitleChanged();
}

void WebViewModel::setDarkMode(bool dark)
{
    if (m_darkMode == dark)
        return;
    m_darkMode = dark;
    Q_EMIT darkModeChanged();
}
