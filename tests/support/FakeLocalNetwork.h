#pragma once

#include "connection/LocalNetworkBrowser.h"

#include <QCoreApplication>

/// The local network's mDNS service as a test sets it: announces the bridges it is given.
class FakeLocalNetwork final : public LocalNetworkBrowser
{
public:
    QList<Found> announced;
    int asked = 0;

    void browse(std::chrono::milliseconds, std::function<void(QList<Found>)> done) override
    {
        ++asked;
        QMetaObject::invokeMethod(
            qApp, [this, done = std::move(done)] { done(announced); }, Qt::QueuedConnection);
    }
};
