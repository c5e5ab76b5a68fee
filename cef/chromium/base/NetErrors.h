// Chromium's network errors: names, numbers, and what they mean for a certificate.

#ifndef CEF_CHROMIUM_BASE_NETERRORS_H_
#define CEF_CHROMIUM_BASE_NETERRORS_H_

#include <cstdint>
#include <string_view>

namespace engine {

// The number of an error by its name, "net::ERR_X" or "ERR_X"; -2 (failed) for an unknown name.
int NetErrorCode(std::string_view name);

// The certificate status bit that belongs to a certificate error; 0 for any other error.
uint32_t CertStatusBit(int net_error);

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_NETERRORS_H_
