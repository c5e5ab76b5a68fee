// The name by which a record refers to its source file: the last part of the path, without its
// extension. Worked out by the compiler, so that programs hold no paths of the machine that built
// them.

#ifndef LIBS_KXLOG_KXLOGSERVICE_SOURCENAME_H_
#define LIBS_KXLOG_KXLOGSERVICE_SOURCENAME_H_

#include <cstddef>
#include <string_view>

constexpr std::string_view SourceStem(std::string_view path) {
  const size_t slash = path.rfind('/');
  if (slash != std::string_view::npos) path.remove_prefix(slash + 1);
  const size_t dot = path.rfind('.');
  return dot == std::string_view::npos || dot == 0 ? path : path.substr(0, dot);
}

// Just the characters, so that nothing else of the path reaches the program.
template <size_t kLength>
struct SourceName {
  char text[kLength + 1] = {};

  constexpr explicit SourceName(std::string_view stem) {
    for (size_t i = 0; i < kLength; ++i) text[i] = stem[i];
  }
};

// A SourceName for a string literal, usually __FILE__; a constant expression.
#define EB_SOURCE_NAME(path) (SourceName<SourceStem(path).size()>(SourceStem(path)))

#endif  // LIBS_KXLOG_KXLOGSERVICE_SOURCENAME_H_
