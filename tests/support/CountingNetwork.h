#pragma once

#include <QNetworkAccessManager>

/// A network access manager that counts the requests made through it, so a test can prove that nothing was
/// sent at all.
class CountingNetwork final : public QNetworkAccessManager
{
public:
    int requests = 0;

protected:
    QNetworkReply* createRequest(Operation op, const QNetworkRequest& request, QIODevice* body) override
    {
        ++requests;
        return QNetworkAccessManager::createRequest(op, request, body);
    }
};
