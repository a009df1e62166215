#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

/// The address of a resource of the bridge at `bridgeIP`, a base with its transport ("https://HOST[:PORT]" or
/// "http://HOST[:PORT]", as the connection found it): "<bridgeIP>/api/<apiKey>/<segment>/...". The key and
/// every segment are percent-encoded whole, so an id sent by the bridge such as "1/../../config" stays one
/// path segment and cannot reach another resource. Invalid when `bridgeIP` names no transport (whether the
/// key may travel in clear is not for this function to guess) or is more than a host and port, or when a part
/// cannot be a path segment at all ("", "." and ".." mean something else to every HTTP server).
QUrl bridgeResourceUrl(const QString& bridgeIP, const QString& apiKey, const QStringList& segments);
/// "<bridgeIP>/api" or "<bridgeIP>/api/config" and the like, for requests without a key.
QUrl bridgePublicUrl(const QString& bridgeIP, const QStringList& segments = {});

/// "<bridgeIP>/clip/v2/resource/<segment>/...", a resource of the bridge's current interface, whose key goes
/// in a header; invalid as above.
QUrl bridgeClipUrl(const QString& bridgeIP, const QStringList& segments = {});

/// "<bridgeIP>/eventstream/clip/v2", where the bridge streams its changes; invalid as above.
QUrl bridgeEventStreamUrl(const QString& bridgeIP);

/// The path of a bridge address below "/api/<key>", decoded, as a person reads it: "/lights/2/state"; the
/// current interface's below "/clip/v2/resource": "/light/<uuid>".
QString bridgeResourcePath(const QUrl& url);
