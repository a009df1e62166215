#pragma once

#include <QSslCertificate>
#include <QSslKey>
#include <QString>

/// A certificate with its private key.
struct SimulatorIdentity
{
    QSslCertificate certificate;
    QSslKey key;

    bool isNull() const { return certificate.isNull() || key.isNull(); }
};

/// Makes the keys and certificates a simulated bridge presents, as the real ones are made: EC P-256 keys, a
/// leaf with the subject "C=NL, O=Philips Hue, CN=<bridge id>" and no subjectAltName, signed directly by an
/// authority (or by itself, as bridges with old firmware do). Everything is made in memory, fresh for every
/// simulator; nothing is shipped or installed.
namespace SimulatorCertificates {

/// A new authority (CA:TRUE) named `commonName`, valid from yesterday for twenty years.
SimulatorIdentity makeAuthority(const QString& commonName);
/// A new key.
QSslKey makeKey();
/// A bridge's leaf for `bridgeId` with `key`, signed by `issuer` (or self-signed when `issuer` is null),
/// valid from `notBeforeDays` to `notAfterDays` days from now (negative: in the past).
QSslCertificate makeLeaf(const QString& bridgeId, const QSslKey& key, const SimulatorIdentity* issuer,
                         int notBeforeDays = -1, int notAfterDays = 3650);

} // namespace SimulatorCertificates
