#include "SimulatorCertificates.h"

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <QRandomGenerator>

#include <cstdint>
#include <memory>

namespace {

template <typename T, void (*Free)(T*)>
struct Deleter
{
    void operator()(T* p) const { Free(p); }
};
using Key = std::unique_ptr<EVP_PKEY, Deleter<EVP_PKEY, EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Deleter<X509, X509_free>>;
using Bio = std::unique_ptr<BIO, Deleter<BIO, BIO_free_all>>;

QByteArray readAll(BIO* bio)
{
    char* data = nullptr;
    const long size = BIO_get_mem_data(bio, &data);
    return size > 0 ? QByteArray(data, size) : QByteArray();
}

Key toOpenSsl(const QSslKey& key)
{
    const QByteArray pem = key.toPem();
    Bio bio(BIO_new_mem_buf(pem.constData(), int(pem.size())));
    return Key(bio ? PEM_read_bio_PrivateKey(bio.get(), nullptr, nullptr, nullptr) : nullptr);
}

Certificate toOpenSsl(const QSslCertificate& certificate)
{
    const QByteArray pem = certificate.toPem();
    Bio bio(BIO_new_mem_buf(pem.constData(), int(pem.size())));
    return Certificate(bio ? PEM_read_bio_X509(bio.get(), nullptr, nullptr, nullptr) : nullptr);
}

bool addExtension(X509* certificate, X509* issuer, int nid, const char* value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, nid, value);
    if (!extension)
        return false;
    const bool added = X509_add_ext(certificate, extension, -1) == 1;
    X509_EXTENSION_free(extension);
    return added;
}

bool setName(X509_NAME* name, const QList<std::pair<const char*, QString>>& parts)
{
    for (const auto& [field, value] : parts) {
        const QByteArray bytes = value.toUtf8();
        if (X509_NAME_add_entry_by_txt(name, field, MBSTRING_UTF8,
                                       reinterpret_cast<const unsigned char*>(bytes.constData()),
                                       int(bytes.size()), -1, 0) != 1)
            return false;
    }
    return true;
}

/// Signs a certificate for `subject` with `key` by `issuerKey` (itself when null); CA or bridge leaf.
QSslCertificate make(const QList<std::pair<const char*, QString>>& subject, EVP_PKEY* key,
                     X509* issuerCertificate, EVP_PKEY* issuerKey, bool authority, int notBeforeDays,
                     int notAfterDays)
{
    // A random serial, as authorities give them: simulators of other processes sign with authorities of the
    // same name, and a client that trusts several of them must never see one issuer and serial twice.
    const std::uint64_t serial = QRandomGenerator::system()->generate64() >> 1;
    Certificate certificate(X509_new());
    if (!certificate || X509_set_version(certificate.get(), 2) != 1 ||
        ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial) != 1 ||
        !X509_gmtime_adj(X509_getm_notBefore(certificate.get()), long(notBeforeDays) * 86400) ||
        !X509_gmtime_adj(X509_getm_notAfter(certificate.get()), long(notAfterDays) * 86400) ||
        X509_set_pubkey(certificate.get(), key) != 1 ||
        !setName(X509_get_subject_name(certificate.get()), subject))
        return QSslCertificate();
    X509* issuer = issuerCertificate ? issuerCertificate : certificate.get();
    if (X509_set_issuer_name(certificate.get(), X509_get_subject_name(issuer)) != 1)
        return QSslCertificate();
    // Every authority is named alike: the key identifiers let a client that trusts several of them (two
    // simulated bridges, each with its own) find the one that signed, instead of the first of that name.
    const bool extended =
        authority
            ? addExtension(certificate.get(), issuer, NID_basic_constraints, "critical,CA:TRUE") &&
                  addExtension(certificate.get(), issuer, NID_key_usage, "critical,keyCertSign,cRLSign") &&
                  addExtension(certificate.get(), issuer, NID_subject_key_identifier, "hash")
            : addExtension(certificate.get(), issuer, NID_basic_constraints, "critical,CA:FALSE") &&
                  addExtension(certificate.get(), issuer, NID_ext_key_usage, "serverAuth") &&
                  (!issuerCertificate ||
                   addExtension(certificate.get(), issuer, NID_authority_key_identifier, "keyid:always"));
    if (!extended || X509_sign(certificate.get(), issuerKey ? issuerKey : key, EVP_sha256()) == 0)
        return QSslCertificate();
    Bio out(BIO_new(BIO_s_mem()));
    if (!out || PEM_write_bio_X509(out.get(), certificate.get()) != 1)
        return QSslCertificate();
    return QSslCertificate(readAll(out.get()), QSsl::Pem);
}

} // namespace

namespace SimulatorCertificates {

QSslKey makeKey()
{
    Key key(EVP_EC_gen("P-256"));
    Bio out(BIO_new(BIO_s_mem()));
    if (!key || !out ||
        PEM_write_bio_PrivateKey(out.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) != 1)
        return QSslKey();
    return QSslKey(readAll(out.get()), QSsl::Ec, QSsl::Pem, QSsl::PrivateKey);
}

SimulatorIdentity makeAuthority(const QString& commonName)
{
    const QSslKey key = makeKey();
    Key openSslKey = toOpenSsl(key);
    if (!openSslKey)
        return SimulatorIdentity{QSslCertificate(), QSslKey()};
    return {make({{"C", QStringLiteral("NL")}, {"O", QStringLiteral("Glowdeck tests")}, {"CN", commonName}},
                 openSslKey.get(), nullptr, nullptr, true, -1, 20 * 365),
            key};
}

QSslCertificate makeLeaf(const QString& bridgeId, const QSslKey& key, const SimulatorIdentity* issuer,
                         int notBeforeDays, int notAfterDays)
{
    Key leafKey = toOpenSsl(key);
    Key issuerKey = issuer ? toOpenSsl(issuer->key) : Key();
    Certificate issuerCertificate = issuer ? toOpenSsl(issuer->certificate) : Certificate();
    if (!leafKey || (issuer && (!issuerKey || !issuerCertificate)))
        return QSslCertificate();
    // The subject every bridge's certificate has; no subjectAltName, as on a real bridge.
    return make({{"C", QStringLiteral("NL")}, {"O", QStringLiteral("Philips Hue")}, {"CN", bridgeId}},
                leafKey.get(), issuerCertificate.get(), issuerKey.get(), false, notBeforeDays, notAfterDays);
}

} // namespace SimulatorCertificates
