// What the program says to people, in their language.

#ifndef TOOLS_STARTER_SENTENCES_H_
#define TOOLS_STARTER_SENTENCES_H_

#include <string>

#include "libs/catalogUtil/MessageCatalog.h"
#include "tools/starter/Messages.h"
#include "tools/starter/ebStarter.h"

// English sentences are the program's and the library's own. Those of other languages, and those
// that a branding puts in the place of any, come from the installed message catalogs; what these
// lack stays English.
class Sentences {
 public:
  Sentences();

  // The outcome's detail.
  std::string DetailOf(const ebStarter::Outcome& outcome, ebStarter::StepType type) const;
  // While the step runs.
  std::string Progress(long long seconds_left) const;
  // Where to look when a run has failed.
  std::string Hint() const;

 private:
  // The message's long text, {0} and {1} filled in; empty when there is none.
  std::string Find(ebStarter::Message message, const std::string& first = "",
                   const std::string& second = "") const;

  orb::CatalogUtil::MessageCatalog catalog_;
};

#endif  // TOOLS_STARTER_SENTENCES_H_
