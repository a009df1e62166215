#pragma once

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

/// Takes the place of the desktop's browser while it lives: addresses the program opens are collected here
/// instead of leaving the machine.
class UrlCatcher final : public QObject
{
    Q_OBJECT

public:
    UrlCatcher()
    {
        for (const char* scheme : {"http", "https"})
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "open");
    }
    ~UrlCatcher() override
    {
        for (const char* scheme : {"http", "https"})
            QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
    }

    QList<QUrl> opened;

public slots:
    void open(const QUrl& url) { opened.append(url); }
};
