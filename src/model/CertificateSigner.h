#pragma once

#include <QMetaType>
#include <QString>

/// Who vouched for the certificate a bridge presented over HTTPS, as the program's trusted authorities tell
/// it. Learnt at every connection, never stored.
struct CertificateSigner
{
    enum class Kind
    {
        unknown, ///< not learnt (yet), or not over HTTPS
        maker,   ///< one of the bridge maker's authorities, shipped with the program
        added,   ///< an authority added to the trusted ones (--trust-root, GLOWDECK_BRIDGE_TRUST_ROOTS)
        pinned,  ///< nobody: the bridge signed it itself, and its key was trusted when it was paired
    };

    Kind kind = Kind::unknown;
    /// The authority's name, as its certificate's subject gives it (common name, else organisation); empty
    /// for `pinned` and `unknown`.
    QString name;

    bool operator==(const CertificateSigner&) const = default;
};
Q_DECLARE_METATYPE(CertificateSigner)
