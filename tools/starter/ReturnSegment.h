// The reader's side of the shared-memory segment in which the helper leaves its result.

#ifndef TOOLS_STARTER_RETURNSEGMENT_H_
#define TOOLS_STARTER_RETURNSEGMENT_H_

#include <sys/types.h>

#include <string>

namespace ebStarter {

// The folder that the segment's key is made from, with its trailing slash.
std::string DataFolder(const std::string& home);

// The segment belongs to the folder, so two steps with the same HOME share it: a caller must not
// read while another step's helper may still write. Not for use by several threads.
class ReturnSegment {
 public:
  // Makes the folder where it is missing. Throws std::runtime_error when that fails or no key can
  // be made from it.
  explicit ReturnSegment(const std::string& folder);

  // Zeroes a segment that an earlier step left behind, or removes it when it cannot be used. To be
  // called before the helper starts: the helper writes no terminator, so a short result over a
  // longer old one would read as both. False when the old content can be neither zeroed nor
  // removed.
  bool Clear() const;

  // The bytes up to the first NUL; empty when there is no segment.
  std::string Read() const;

  // Removes the segment from the system; nothing happens when there is none.
  void Remove() const;

 private:
  key_t key_;
};

}  // namespace ebStarter

#endif  // TOOLS_STARTER_RETURNSEGMENT_H_
