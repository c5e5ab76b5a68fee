// POSIX shared memory that the processes of all users may write.

#ifndef PLATFORM_SHAREDMEMORYOBJECT_H_
#define PLATFORM_SHAREDMEMORYOBJECT_H_

#include <cstddef>
#include <string>

// Opens the object of this name (see SharedMemoryName) for reading and writing, creating an empty
// one with the mode 0666 when there is none, whatever the process's umask. Returns the descriptor,
// closed on exec, or -1, which an object made by another user for itself is a reason for.
int OpenSharedMemory(const std::string& name);

// Sees to it that the object has at least `size` bytes of memory. Returns false when there is none
// left.
bool SizeSharedMemory(int descriptor, size_t size);

#endif  // PLATFORM_SHAREDMEMORYOBJECT_H_
