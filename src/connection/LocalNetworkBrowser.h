#pragma once

#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

/// Looks for bridges that announce themselves on the local network (DNS-SD service "_hue._tcp" over mDNS),
/// through the desktop's own mDNS service. Linux asks Avahi over D-Bus; elsewhere there is none.
class LocalNetworkBrowser
{
public:
    struct Found
    {
        QString address; // IPv4, as announced
        quint16 port = 0;
        QString bridgeId; // the TXT record's "bridgeid", upper case; empty when it had none
    };

    virtual ~LocalNetworkBrowser() = default;

    /// Answers once, never before returning: the bridges resolved, in the order they resolved, once
    /// everything announced so far is resolved or `limit` has passed; none when there is no mDNS service, no
    /// bridge announced or every resolve failed. A new call abandons one still under way.
    virtual void browse(std::chrono::milliseconds limit, std::function<void(QList<Found>)> done) = 0;
};

/// The platform's browser, or null where there is no mDNS service to ask.
std::unique_ptr<LocalNetworkBrowser> createLocalNetworkBrowser();
