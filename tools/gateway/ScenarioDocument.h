// The JSON of a scenario file: syntax, base, and the schema that says what may stand where.

#ifndef TOOLS_GATEWAY_SCENARIODOCUMENT_H_
#define TOOLS_GATEWAY_SCENARIODOCUMENT_H_

#include <rapidjson/document.h>

#include <memory>
#include <stdexcept>
#include <string>

// One line: file (and for a syntax error line and column), place in the document as a JSON pointer,
// what is wrong.
class ScenarioError : public std::runtime_error {
 public:
  ScenarioError(const std::string& file, const std::string& place, const std::string& what)
      : std::runtime_error(file + ": " + (place.empty() ? "" : place + ": ") + what) {}
};

// The text of FOLDER/NAME.json. Throws ScenarioError.
std::string ReadScenarioText(const std::string& folder, const std::string& name);

// Reads the text of FOLDER/NAME.json, completes it from its base ("like"), which is another file of
// the folder, and validates the whole. A member of the text replaces the base's, except that
// objects are merged by their keys, one level deep. Throws ScenarioError.
std::unique_ptr<rapidjson::Document> ParseScenarioDocument(const std::string& folder,
                                                           const std::string& name,
                                                           const std::string& text);

#endif  // TOOLS_GATEWAY_SCENARIODOCUMENT_H_
