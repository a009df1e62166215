#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

/// The address of a resource of the bridge at `bridgeIP` (host or host:port, as stored):
/// "http://<bridgeIP>/api/<apiKey>/<segment>/...". The key and every segment are percent-encoded whole, so an
/// id sent by the bridge such as "1/../../config" stays one path segment and cannot reach another resource.
/// Invalid when `bridgeIP` is more than a host and port, or a part cannot be a path segment at all ("", "."
/// and ".." mean something else to every HTTP server).
QUrl bridgeResourceUrl(const QString& bridgeIP, const QString& apiKey, const QStringList& segments);

/// The path of a bridge address below "/api/<key>", decoded, as a person reads it: "/lights/2/state".
QString bridgeResourcePath(const QUrl& url);
