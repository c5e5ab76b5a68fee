// The numbers of the messages that the starter asks the catalogs for.

#ifndef TOOLS_STARTER_MESSAGES_H_
#define TOOLS_STARTER_MESSAGES_H_

namespace ebStarter {

// The one list of them.
#define EB_MESSAGES(MESSAGE)          \
  MESSAGE(kClosed, 1700)              \
  MESSAGE(kTimedOut, 1701)            \
  MESSAGE(kRefused, 1702)             \
  MESSAGE(kUnavailable, 1703)         \
  MESSAGE(kLogoutUnfinished, 1704)    \
  MESSAGE(kUnreachable, 1705)         \
  MESSAGE(kCertificateRefused, 1706)  \
  MESSAGE(kNoAnswer, 1707)            \
  MESSAGE(kCertificateQuestion, 1708) \
  MESSAGE(kNoDisplay, 1709)           \
  MESSAGE(kNoBrowser, 1710)           \
  MESSAGE(kHostCheckNeeded, 1711)     \
  MESSAGE(kHostCheckFailed, 1712)     \
  MESSAGE(kStopped, 1713)             \
  MESSAGE(kProgress, 1714)            \
  MESSAGE(kHint, 1715)                \
  MESSAGE(kBusy, 1716)

enum class Message : unsigned int {
  kNone = 0,
#define EB_MESSAGE(name, number) name = number,
  EB_MESSAGES(EB_MESSAGE)
#undef EB_MESSAGE
};

// All of them, for those who look catalogs through.
inline constexpr Message kMessages[] = {
#define EB_MESSAGE(name, number) Message::name,
    EB_MESSAGES(EB_MESSAGE)
#undef EB_MESSAGE
};

}  // namespace ebStarter

#endif  // TOOLS_STARTER_MESSAGES_H_
