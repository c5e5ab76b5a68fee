// Small questions about files and processes that several checks ask.
//
// Processes are looked up in /proc: Linux only.

#ifndef TOOLS_DOCTOR_LOOKS_H_
#define TOOLS_DOCTOR_LOOKS_H_

#include <sys/types.h>

#include <string>

namespace doctor {

// The path itself, or the nearest of its parents that exists.
std::string NearestExisting(const std::string& path);

// Why the folder neither exists nor can be created by us; empty when all is well.
std::string WhyNoFolder(const std::string& path);

// Why the folder, which exists, is not ours alone to use; empty when it is.
std::string WhyNotOurs(const std::string& folder);

// The user's name, or the number when it has none.
std::string UserName(uid_t user);

// False as well when no such process can be seen from here.
bool IsAlive(pid_t process);

// "NAME (process ID)", as far as it is known.
std::string ProcessText(pid_t process);

// Who listens on a TCP port of this machine: empty when nobody does, else ProcessText() or, when
// the process is another user's, "another user's process".
std::string ListenerOn(int port);

}  // namespace doctor

#endif  // TOOLS_DOCTOR_LOOKS_H_
