// The preferences that every run starts with.

#ifndef CEF_CHROMIUM_PROCESS_PREFERENCES_H_
#define CEF_CHROMIUM_PROCESS_PREFERENCES_H_

#include <string>

namespace engine {

// Writes into <profile_dir>/Default/Preferences what must hold: cookie rules as in generation 80
// (cookies without SameSite go everywhere, third-party cookies are sent), no bubbles, no background
// traffic, no history, and permission requests refused without a question. What else the file holds
// is kept; one that cannot be read is replaced. The file is whole at any time. Chromium must not be
// running on the profile. False and a reason in *err when the file cannot be written.
bool SeedPreferences(const std::string& profile_dir, std::string* err);

// Keeps Chromium from writing down, in <profile_dir>, the windows of the run with all that was
// posted in them, and removes what an earlier one wrote, its history as well. Chromium must not be
// running on the profile.
void KeepNoSessions(const std::string& profile_dir);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_PREFERENCES_H_
