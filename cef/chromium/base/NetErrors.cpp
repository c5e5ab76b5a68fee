#include "cef/chromium/base/NetErrors.h"

#include <algorithm>
#include <iterator>

#include "cef/chromium/base/Text.h"

namespace engine {

namespace {

constexpr int kFailed = -2;

struct NetError {
  int code;
  const char* name;
};

constexpr NetError kErrors[] = {
#define NET_ERROR(label, value) {value, "ERR_" #label},
#include "include/base/internal/cef_net_error_list.h"
#undef NET_ERROR
};

struct CertError {
  int code;
  uint32_t bit;
};

// The numbers are Chromium's, the bits those of cef_cert_status_t.
constexpr CertError kCertErrors[] = {
    {-150, 1u << 13},  // pinned key missing
    {-200, 1u << 0},   // common name
    {-201, 1u << 1},   // date
    {-202, 1u << 2},   // authority
    {-203, 1u << 7},   // contains errors: counts as invalid
    {-204, 1u << 4},   // no revocation mechanism
    {-205, 1u << 5},   // revocation cannot be checked
    {-206, 1u << 6},   // revoked
    {-207, 1u << 7},   // invalid
    {-208, 1u << 8},   // weak signature
    {-210, 1u << 10},  // name not unique
    {-211, 1u << 11},  // weak key
    {-212, 1u << 14},  // name constraint
    {-213, 1u << 15},  // valid for too long
    {-214, 1u << 24},  // transparency required
    {-215, 1u << 25},  // distrusted old authority
    {-217, 1u << 26},  // known interception
    {-219, 1u << 2},   // self-signed in the local network: new, to clients an unknown authority
};

}  // namespace

int NetErrorCode(std::string_view name) {
  constexpr std::string_view kPrefix = "net::";
  if (StartsWith(name, kPrefix)) name.remove_prefix(kPrefix.size());
  const auto found = std::find_if(std::begin(kErrors), std::end(kErrors),
                                  [&](const NetError& error) { return name == error.name; });
  return found == std::end(kErrors) ? kFailed : found->code;
}

uint32_t CertStatusBit(int net_error) {
  for (const CertError& error : kCertErrors) {
    if (error.code == net_error) return error.bit;
  }
  return 0;
}

}  // namespace engine
