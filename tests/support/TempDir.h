// A folder of a test's own under the system's temporary folder, removed with everything in it.

#ifndef TESTS_SUPPORT_TEMPDIR_H_
#define TESTS_SUPPORT_TEMPDIR_H_

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "eb-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }

  // Writes a file below the folder, making the folders on the way; returns its full path.
  std::string write(const std::string& name, const std::string& content) const {
    const std::string full = file(name);
    std::filesystem::create_directories(std::filesystem::path(full).parent_path());
    std::ofstream(full, std::ios::binary) << content;
    return full;
  }

 private:
  std::string path_;
};

// The whole content of a file; empty when it cannot be read, as that of a process that has ended.
inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  // An iterator over the stream would let errors in reading through as exceptions.
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

#endif  // TESTS_SUPPORT_TEMPDIR_H_
