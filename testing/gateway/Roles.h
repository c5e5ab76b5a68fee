// The three kinds of step, each played by one function. A function answers the visit and returns
// true, or leaves it alone and returns false.

#ifndef TESTING_GATEWAY_ROLES_H_
#define TESTING_GATEWAY_ROLES_H_

#include <functional>

#include "testing/gateway/Visit.h"

// Waits so many milliseconds, or until the box stops.
using Delay = std::function<void(int milliseconds)>;

// /saml/... and its assertion consumer on the gateway, /sso/... on the identity provider.
bool ServeSamlSignIn(Visit& visit, const Delay& delay);

// /custom/... on the gateway.
bool ServeCustomSignIn(Visit& visit);

// /logout/... and /vora-na/auth/... on the gateway, /slo/... on the other two.
bool ServeSamlLogout(Visit& visit);

#endif  // TESTING_GATEWAY_ROLES_H_
