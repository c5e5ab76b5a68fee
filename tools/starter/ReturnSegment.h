// The reader's side of the shared-memory segment in which the helper leaves its result.

#ifndef TOOLS_STARTER_RETURNSEGMENT_H_
#define TOOLS_STARTER_RETURNSEGMENT_H_

#include <sys/types.h>

#include <string>
#include <system_error>

namespace ebStarter {

// The folder that the segment's key is made from, with its trailing slash.
std::string DataFolder(const std::string& home);

// Makes it where it is missing: the folder itself for its user alone, those above it as the user
// has them.
std::error_code MakeDataFolder(const std::string& folder);

// The segment belongs to the folder, so two steps with the same HOME share it: a caller must not
// read while another step's helper may still write. Not for use by several threads.
class ReturnSegment {
 public:
  // Makes the folder where it is missing. Throws std::runtime_error when that fails or no key can
  // be made from it.
  explicit ReturnSegment(const std::string& folder);
  // Removes the segment from the system, if it is ours to remove.
  ~ReturnSegment();
  // The process that has made the segment which is there now; 0 when there is none.
  static int CreatorIn(const std::string& folder);
  ReturnSegment(const ReturnSegment&) = delete;
  ReturnSegment& operator=(const ReturnSegment&) = delete;

  // Replaces whatever an earlier step left behind by an empty segment with mode 0600. To be called
  // before the helper starts: one that the helper creates can be read by every user, and since it
  // writes no terminator, a short result over a longer old one would read as both. False when there
  // is a segment that we may not remove. Where the system has no room for a new one, the helper
  // will say so.
  bool Prepare() const;

  // The bytes up to the first NUL; empty when there is no segment. Throws std::system_error when
  // there is one that cannot be read.
  std::string Read() const;

 private:
  // True when there is none afterwards.
  bool Remove() const;

  key_t key_;
};

}  // namespace ebStarter

#endif  // TOOLS_STARTER_RETURNSEGMENT_H_
