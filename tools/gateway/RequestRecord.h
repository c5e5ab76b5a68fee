// The record of the requests that the box has taken.

#ifndef TOOLS_GATEWAY_REQUESTRECORD_H_
#define TOOLS_GATEWAY_REQUESTRECORD_H_

#include <deque>
#include <mutex>
#include <string>
#include <vector>

struct RecordedRequest {
  unsigned long number = 0;  // counted from 1
  std::string scheme;        // "http" or "https"
  std::string host;          // as sent, with the port
  std::string method;
  std::string target;  // path and query
  std::string cookies;
  std::string user_agent;
};

// Keeps the last 10,000 requests. All operations may be called by any thread.
class RequestRecord {
 public:
  // Sets the request's number.
  void Add(RecordedRequest request);
  std::vector<RecordedRequest> All() const;
  // A JSON array of objects with the members of RecordedRequest; bytes that are not printable ASCII
  // become "?".
  std::string ToJson() const;

 private:
  mutable std::mutex mutex_;
  std::deque<RecordedRequest> requests_;
  unsigned long count_ = 0;
};

#endif  // TOOLS_GATEWAY_REQUESTRECORD_H_
