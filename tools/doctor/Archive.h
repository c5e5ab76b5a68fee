// Texts as files of one archive.

#ifndef TOOLS_DOCTOR_ARCHIVE_H_
#define TOOLS_DOCTOR_ARCHIVE_H_

#include <string>
#include <vector>

namespace doctor {

struct ArchivedFile {
  std::string name;
  std::string text;
};

// Why no new file can be made there: one that exists counts, too. Empty when it can.
std::string WhyNoNewFile(const std::string& path);

// Writes the files as the folder `folder` of a .tar.gz that only the user can read, with the
// system's tar; takes 20 seconds at most. What was given in the temporary folder for it is gone
// when the function returns, and after SIGHUP, SIGINT and SIGTERM too, which end the process only
// then, without an archive. Returns an empty text, or why there is no archive: a file that was
// there before stays as it is. For one thread.
std::string WriteArchive(const std::string& path, const std::string& folder,
                         const std::vector<ArchivedFile>& files);

}  // namespace doctor

#endif  // TOOLS_DOCTOR_ARCHIVE_H_
