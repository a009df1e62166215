#pragma once

#include <QObject>
#include <QUrl>

/// What the in-application web page shows: the address to load, and whether the page is asked to switch to
/// its dark look once loaded. (How far the page got and its title belong here too, once a web view reports
/// them.)
class WebViewModel final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WebViewModel)

    Q_PROPERTY(QUrl link READ link WRITE setLink NOTIFY linkChanged)
    Q_PROPERTY(bool darkMode READ darkMode WRITE setDarkMode NOTIFY darkModeChanged)

public:
    explicit WebViewModel(QObject* parent = nullptr);

    QUrl link() const { return m_link; }
    bool darkMode() const { return m_darkMode; }

    void setLink(const QUrl& link);
    void setDarkMode(bool dark);

Q_SIGNALS:
    void linkChanged();
    void darkModeChanged();

private:
    QUrl m_link;
    bool m_darkMode = false;
};
