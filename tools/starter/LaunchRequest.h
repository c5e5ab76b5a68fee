// What the caller asks of the helper: one step of signing in or out.

#ifndef TOOLS_STARTER_LAUNCHREQUEST_H_
#define TOOLS_STARTER_LAUNCHREQUEST_H_

#include <optional>
#include <string>

// The numbers travel in the request.
enum class StepType { kSamlLogin = 1, kCustom = 2, kSamlLogout = 3 };

// The kind of that name: "saml-login", "custom", "saml-logout"; nothing for any other text.
std::optional<StepType> StepTypeNamed(const std::string& name);

struct LaunchRequest {
  StepType type = StepType::kSamlLogin;
  std::string url;                // opened first
  std::string cookie;             // the gateway's cookies, planted before
  std::string clear_cookies_url;  // a sign-in clears all cookies first when this is not empty

  // The JSON document that the helper takes as its argv[0]. All four members are always there.
  std::string ToJson() const;
};

#endif  // TOOLS_STARTER_LAUNCHREQUEST_H_
