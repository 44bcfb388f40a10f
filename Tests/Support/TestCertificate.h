#pragma once

#include <memory>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <string>

/// A self-signed certificate for "localhost", made anew, with its key.
class TestCertificate {
public:
    TestCertificate() : key_(EVP_RSA_gen(2048), EVP_PKEY_free), certificate_(X509_new(), X509_free) {
        X509_set_version(certificate_.get(), 2);
        ASN1_INTEGER_set(X509_get_serialNumber(certificate_.get()), 1);
        X509_gmtime_adj(X509_getm_notBefore(certificate_.get()), -3600);
        X509_gmtime_adj(X509_getm_notAfter(certificate_.get()), 3600);
        X509_set_pubkey(certificate_.get(), key_.get());
        X509_NAME* name = X509_get_subject_name(certificate_.get());
        X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("localhost"), -1,
                                   -1, 0);
        X509_set_issuer_name(certificate_.get(), name);
        X509_EXTENSION* names = X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "DNS:localhost");
        X509_add_ext(certificate_.get(), names, -1);
        X509_EXTENSION_free(names);
        X509_sign(certificate_.get(), key_.get(), EVP_sha256());
    }

    X509* certificate() const { return certificate_.get(); }
    EVP_PKEY* key() const { return key_.get(); }

    /// Writes the certificate as PEM.
    void save(const std::string& path) const {
        const std::unique_ptr<BIO, decltype(&BIO_free)> file(BIO_new_file(path.c_str(), "w"), BIO_free);
        PEM_write_bio_X509(file.get(), certificate_.get());
    }

private:
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key_;
    const std::unique_ptr<X509, decltype(&X509_free)> certificate_;
};
