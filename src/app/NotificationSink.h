#pragma once

#include <QString>

/// Where Glowdeck's desktop notifications go: the desktop's notification service, or a stand-in.
class NotificationSink
{
public:
    virtual ~NotificationSink() = default;

    /// Shows @p summary with @p body. A notification shown before under the same @p topic is replaced, not
    /// joined by a second one. Nothing happens, and nothing is reported, where no service shows them.
    virtual void show(const QString& topic, const QString& summary, const QString& body) = 0;
};
