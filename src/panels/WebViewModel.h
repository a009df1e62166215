#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

/// What the in-application web page shows and how far it got: the address to load, whether the page has
/// finished loading, its title, and whether the page is asked to switch to its dark look once loaded.
class WebViewModel final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WebViewModel)

    Q_PROPERTY(QUrl link READ link WRITE setLink NOTIFY linkChanged)
    Q_PROPERTY(
        bool didFinishLoading READ didFinishLoading WRITE setDidFinishLoading NOTIFY didFinishLoadingChanged)
    Q_PROPERTY(QString pageTitle READ pageTitle WRITE setPageTitle NOTIFY pageTitleChanged)
    Q_PROPERTY(bool darkMode READ darkMode WRITE setDarkMode NOTIFY darkModeChanged)

public:
    explicit WebViewModel(QObject* parent = nullptr);

    QUrl link() const { return m_link; }
    bool didFinishLoading() const { return m_didFinishLoading; }
    QString pageTitle() const { return m_pageTitle; }
    bool darkMode() const { return m_darkMode; }

    void setLink(const QUrl& link);
    void setDidFinishLoading(bool finished);
    void setPageTitle(const QString& title);
    void setDarkMode(bool dark);

Q_SIGNALS:
    void linkChanged();
    void didFinishLoadingChanged();
    void pageTitleChanged();
    void darkModeChanged();

private:
    QUrl m_link;
    bool m_didFinishLoading = false; // stays false when the page fails to load
    QString m_pageTitle;
    bool m_darkMode = false;
};
