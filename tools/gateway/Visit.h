// One request to the box, as the hosts it plays see it.

#ifndef TOOLS_GATEWAY_VISIT_H_
#define TOOLS_GATEWAY_VISIT_H_

#include <httplib.h>

#include <string>

class Visit {
 public:
  // `scheme` is "http" or "https", by the server that took the request.
  Visit(const std::string& scheme, const httplib::Request& request, httplib::Response& response);

  const std::string& path() const { return request_.path; }
  const std::string& method() const { return request_.method; }
  // The host it came to: "gateway", "idp" or "third", whatever its certificate; else empty.
  const std::string& host() const { return host_; }
  // The path is "/SCENARIO/rest": the scenario's name, and its page as "HOST/rest".
  std::string scenario() const;
  std::string page() const;

  // "scheme://NAME.localhost:port", with this request's scheme and port.
  std::string Origin(const std::string& name) const;
  // A parameter of the query or of the form; empty when missing.
  std::string Parameter(const std::string& name) const;
  // A header of the request; empty when missing.
  std::string Header(const std::string& name) const {
    return request_.get_header_value(name.c_str());
  }
  // The value of a cookie that came with the request; empty when missing.
  std::string Cookie(const std::string& name) const;
  // True when the pages that come next shall fill themselves in ("auto=1").
  bool automatic() const { return Parameter("auto") == "1"; }

  void Page(const std::string& html, int status = 200);
  void Send(const std::string& body, const std::string& type);
  httplib::Response& response() { return response_; }
  // Ends the connection at once. Whatever is answered afterwards goes nowhere.
  void CutConnection();

 private:
  const std::string scheme_;
  const httplib::Request& request_;
  httplib::Response& response_;
  std::string port_suffix_;
  std::string host_;
};

// 128 random bits in hexadecimal.
std::string RandomToken();

#endif  // TOOLS_GATEWAY_VISIT_H_
