#pragma once

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace velmora {

// The calls of OpenSSL the TLS line makes.
#define VELMORA_OPENSSL_CALLS(X)                                                                   \
    X(TLS_client_method)                                                                           \
    X(SSL_CTX_new)                                                                                 \
    X(SSL_CTX_free)                                                                                \
    X(SSL_CTX_ctrl)                                                                                \
    X(SSL_CTX_set_options)                                                                         \
    X(SSL_CTX_set_ciphersuites)                                                                    \
    X(SSL_CTX_set_verify)                                                                          \
    X(SSL_CTX_get_cert_store)                                                                      \
    X(SSL_CTX_load_verify_file)                                                                    \
    X(SSL_new)                                                                                     \
    X(SSL_free)                                                                                    \
    X(SSL_set_fd)                                                                                  \
    X(SSL_ctrl)                                                                                    \
    X(SSL_set_ex_data)                                                                             \
    X(SSL_get_ex_data)                                                                             \
    X(SSL_get_ex_data_X509_STORE_CTX_idx)                                                          \
    X(SSL_connect)                                                                                 \
    X(SSL_read)                                                                                    \
    X(SSL_write)                                                                                   \
    X(SSL_get_error)                                                                               \
    X(SSL_shutdown)                                                                                \
    X(SSL_get0_peer_certificate)                                                                   \
    X(SSL_get_verify_result)                                                                       \
    X(X509_STORE_add_lookup)                                                                       \
    X(X509_LOOKUP_hash_dir)                                                                        \
    X(X509_LOOKUP_ctrl)                                                                            \
    X(X509_STORE_CTX_get_error)                                                                    \
    X(X509_STORE_CTX_get_ex_data)                                                                  \
    X(X509_check_host)                                                                             \
    X(X509_check_ip_asc)                                                                           \
    X(X509_get_subject_name)                                                                       \
    X(X509_NAME_get_index_by_NID)                                                                  \
    X(X509_NAME_get_entry)                                                                         \
    X(X509_NAME_ENTRY_get_data)                                                                    \
    X(ASN1_STRING_to_UTF8)                                                                         \
    X(CRYPTO_free)                                                                                 \
    X(ERR_get_error)                                                                               \
    X(ERR_error_string_n)                                                                          \
    X(ERR_clear_error)

struct OpenSslLibrary {
#define VELMORA_OPENSSL_POINTER(name) decltype(&::name) name = nullptr;
    VELMORA_OPENSSL_CALLS(VELMORA_OPENSSL_POINTER)
#undef VELMORA_OPENSSL_POINTER
};

// Loaded when the first TLS connection is opened, not with the program: a
// plain check never needs it, and a TLS check loads it while the server
// accepts. Null when the library or one of its calls is missing.
const OpenSslLibrary* OpenSsl();

} // namespace velmora
