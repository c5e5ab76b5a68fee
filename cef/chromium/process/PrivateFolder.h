// Folders that belong to one process and carry its id in their name, so that those of dead
// processes can be told and removed.

#ifndef CEF_CHROMIUM_PROCESS_PRIVATEFOLDER_H_
#define CEF_CHROMIUM_PROCESS_PRIVATEFOLDER_H_

#include <string>

namespace engine {

// The system's folder for temporary files, absolute and without a slash at its end.
std::string TemporaryFolder();

// Makes the folder `stem`-<process id>-XXXXXX, mode 0700. Returns its path, or "" (errno says why).
// If lock_fd is given, it receives the folder opened and locked for as long as it stays open.
std::string MakePrivateFolder(const std::string& stem, int* lock_fd);

// Removes the folders of that stem that are ours, whose process is dead and that nobody has locked.
void SweepPrivateFolders(const std::string& stem);

// Opens the folder (close-on-exec) and locks it for this process. -1 if it cannot be opened or is
// locked by another process; *busy tells the latter. File systems without locks count as free.
int LockFolder(const std::string& dir, bool* busy);

// Removes a file or a folder with everything in it; false if something stays.
bool RemoveTree(const std::string& path);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_PRIVATEFOLDER_H_
