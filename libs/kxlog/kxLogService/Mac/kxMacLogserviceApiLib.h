// Joining and leaving the shared log, and the names of what is shared.

#ifndef LIBS_KXLOG_KXLOGSERVICE_MAC_KXMACLOGSERVICEAPILIB_H_
#define LIBS_KXLOG_KXLOGSERVICE_MAC_KXMACLOGSERVICEAPILIB_H_

#include <string>

// The product's name of the control block's shared-memory object, machine-wide or the user's own.
const char* GetMmfName(bool global);

// The name by which the system knows that object.
std::string ControlBlockName(bool global);

// The log file, machine-wide or the user's own. The text lives as long as the process.
const char* GetPrivShareLogName(bool global);

// Joins the shared log: the machine-wide one or, when its lock cannot be had, the user's own. Maps
// the control block and initialises it when it is new or names an unacceptable file. Succeeds at
// once when the process has joined already. When the control block cannot be had, the process holds
// the log lock until it ends, and every further attempt fails at once. From then on the process
// ignores SIGXFSZ if it did nothing about it, and is guarded by BlockGuard.
bool KXLogProcessAttachInit();

// Leaves the shared log; the log file stays open. Returns true.
bool KXLogProcessDetachInit();

#endif  // LIBS_KXLOG_KXLOGSERVICE_MAC_KXMACLOGSERVICEAPILIB_H_
