#include "services/certificate.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <memory>

namespace NelvoDevkit {

namespace {

template <auto release>
struct Deleter {
    template <typename T>
    void operator()(T* object) const
    {
        release(object);
    }
};

using Key = std::unique_ptr<EVP_PKEY, Deleter<EVP_PKEY_free>>;
using X509Certificate = std::unique_ptr<X509, Deleter<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Deleter<X509_EXTENSION_free>>;
using Bio = std::unique_ptr<BIO, Deleter<BIO_free_all>>;

constexpr long DaySeconds = 24L * 60 * 60;

bool setSerial(X509* certificate)
{
    // A client that remembers the certificate of an earlier run would reject another one with the same serial
    // number.
    quint32 serial = 0;
    return RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) == 1 &&
           ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate), serial) == 1;
}

bool setName(X509* certificate)
{
    X509_NAME* name = X509_get_subject_name(certificate);
    const auto* text = reinterpret_cast<const unsigned char*>("127.0.0.1");
    return X509_NAME_add_entry_by_NID(name, NID_commonName, MBSTRING_ASC, text, -1, -1, 0) == 1 &&
           X509_set_issuer_name(certificate, name) == 1;
}

bool setValidity(X509* certificate)
{
    return X509_gmtime_adj(X509_getm_notBefore(certificate), -DaySeconds) != nullptr &&
           X509_gmtime_adj(X509_getm_notAfter(certificate), 30 * DaySeconds) != nullptr;
}

bool addExtension(X509* certificate, int nid, const char* value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, nid, value));
    return extension && X509_add_ext(certificate, extension.get(), -1) == 1;
}

X509Certificate selfSigned(EVP_PKEY* key)
{
    X509Certificate certificate(X509_new());
    X509* x509 = certificate.get();
    const bool ok = x509 != nullptr && X509_set_version(x509, X509_VERSION_3) == 1 && setSerial(x509) &&
                    setName(x509) && setValidity(x509) && X509_set_pubkey(x509, key) == 1 &&
                    addExtension(x509, NID_basic_constraints, "critical,CA:TRUE") &&
                    addExtension(x509, NID_subject_alt_name, "IP:127.0.0.1,DNS:localhost") &&
                    X509_sign(x509, key, EVP_sha256()) != 0;
    if (!ok)
        certificate.reset();
    return certificate;
}

template <typename Write>
QByteArray pem(const Write& write)
{
    const Bio bio(BIO_new(BIO_s_mem()));
    if (!bio || write(bio.get()) != 1)
        return {};
    char* data = nullptr;
    const long size = BIO_get_mem_data(bio.get(), &data);
    return {data, static_cast<int>(size)};
}

} // namespace

std::optional<Certificate> makeCertificate()
{
    const Key key(EVP_EC_gen("P-256"));
    if (!key)
        return std::nullopt;
    const X509Certificate certificate = selfSigned(key.get());
    if (!certificate)
        return std::nullopt;
    return Certificate{
        pem([&certificate](BIO* bio) { return PEM_write_bio_X509(bio, certificate.get()); }),
        pem([&key](BIO* bio) {
            return PEM_write_bio_PrivateKey(bio, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
        }),
    };
}

} // namespace NelvoDevkit
