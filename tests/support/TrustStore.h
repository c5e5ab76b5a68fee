// Making a browser trust a test authority.

#ifndef TESTS_SUPPORT_TRUSTSTORE_H_
#define TESTS_SUPPORT_TRUSTSTORE_H_

#include <string>

// Adds the certificate (PEM) as a trusted server authority to the certificate database below
// `home`, where Chromium looks, as docs/examples/trust-authority does. Throws std::runtime_error
// with the words of that when it fails.
void TrustAuthority(const std::string& home, const std::string& authority_pem);

#endif  // TESTS_SUPPORT_TRUSTSTORE_H_
