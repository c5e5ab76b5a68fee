// The numbers of the resource texts that this program asks for.

#ifndef LIBS_CATALOGUTIL_RESOURCEIDS_H_
#define LIBS_CATALOGUTIL_RESOURCEIDS_H_

// The one list of them, of the question about a certificate: its buttons, then its texts.
#define EB_RESOURCE_TEXTS(TEXT)         \
  TEXT(kResourceAcceptCertificate, 179) \
  TEXT(kResourceRefuseCertificate, 180) \
  TEXT(kUntrustedAuthorityText, 1150)   \
  TEXT(kOtherFaultText, 1151)           \
  TEXT(kContinueQuestion, 1152)

enum ResourceIdsOrbUI : unsigned int {
#define EB_TEXT(name, number) name = number,
  EB_RESOURCE_TEXTS(EB_TEXT)
#undef EB_TEXT
};

// All of them, for those who look catalogs through.
inline constexpr unsigned int kResourceTexts[] = {
#define EB_TEXT(name, number) name,
    EB_RESOURCE_TEXTS(EB_TEXT)
#undef EB_TEXT
};

#endif  // LIBS_CATALOGUTIL_RESOURCEIDS_H_
