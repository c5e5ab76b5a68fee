// The numbers of the resource texts that this program asks for.

#ifndef LIBS_CATALOGUTIL_RESOURCEIDS_H_
#define LIBS_CATALOGUTIL_RESOURCEIDS_H_

// The buttons of the question about a certificate.
enum ResourceIdsOrbUI : unsigned int {
  kResourceAcceptCertificate = 179,
  kResourceRefuseCertificate = 180,
};

// Its texts.
inline constexpr unsigned int kUntrustedAuthorityText = 1150;
inline constexpr unsigned int kOtherFaultText = 1151;
inline constexpr unsigned int kContinueQuestion = 1152;

#endif  // LIBS_CATALOGUTIL_RESOURCEIDS_H_
