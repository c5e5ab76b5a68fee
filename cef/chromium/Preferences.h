// The preferences a new profile starts with.

#ifndef CEF_CHROMIUM_PREFERENCES_H_
#define CEF_CHROMIUM_PREFERENCES_H_

#include <string>

namespace engine {

// The JSON text of a new profile's preferences: cookie rules as in generation 80 (cookies without
// SameSite go everywhere, third-party cookies are sent), no bubbles, no background traffic, and
// permission requests refused without a question.
std::string SeedPreferencesJson();

// Writes them to <profile_dir>/Default/Preferences unless that file exists. Chromium must not be
// running on the profile. False and a reason in *err when the file cannot be written.
bool SeedPreferences(const std::string& profile_dir, std::string* err);

}  // namespace engine

#endif  // CEF_CHROMIUM_PREFERENCES_H_
