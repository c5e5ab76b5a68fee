// What Chromium says in a conversation, as it should be, and twisted.

#ifndef FUZZ_EVENTS_H_
#define FUZZ_EVENTS_H_

#include <cstddef>
#include <string>

// Whoever recurses so deeply uses up the stack that a conversation has.
constexpr size_t kDeep = 20000, kStack = 1 << 20;

// "^" stands for the page that the event is about, "~" for another one, "`" for a number. In the
// order of a sign-in that meets everything.
inline constexpr const char* kEvents[] = {
    R"("Target.attachedToTarget","params":{"sessionId":"S^","targetInfo":{"targetId":"T^","type":"page","url":"data:,"}})",
    R"("Target.attachedToTarget","params":{"sessionId":"S^","targetInfo":{"targetId":"T^","type":"page","url":"","openerId":"T~"}})",
    R"("Target.attachedToTarget","params":{"sessionId":"S^","targetInfo":{"targetId":"T^","type":"page","url":"chrome://newtab/"}})",
    R"("Target.attachedToTarget","params":{"sessionId":"P`","targetInfo":{"targetId":"F`","type":"iframe","url":"https://i.test/"}},"sessionId":"S~")",
    R"("Target.attachedToTarget","params":{"sessionId":"P`","targetInfo":{"targetId":"W`","type":"worker","url":"https://i.test/"}},"sessionId":"S~")",
    R"("Page.frameAttached","params":{"frameId":"F`","parentFrameId":"T~"},"sessionId":"S~")",
    R"("Network.requestWillBeSent","params":{"requestId":"N`","loaderId":"N`","type":"Document","frameId":"T^","request":{"url":"https://bad.test/a","urlFragment":"#f","method":"GET"}},"sessionId":"S^")",
    R"("Fetch.requestPaused","params":{"requestId":"job-`.0","networkId":"N`","resourceType":"Document","frameId":"T^","request":{"url":"https://bad.test/a","method":"GET","initialPriority":"High","headers":{"Cookie":"SID=1","Referer":"https://r.test/","Accept":"*/*"}}})",
    R"("Security.certificateError","params":{"eventId":`,"errorType":"ERR_CERT_DATE_INVALID","requestURL":"https://bad.test/a"})",
    R"("Fetch.requestPaused","params":{"requestId":"job-`.0","frameId":"T^","request":{"url":"https://bad.test/a"},"responseStatusCode":302,"responseHeaders":[{"name":"location","value":"/b"}]})",
    R"("Fetch.requestPaused","params":{"requestId":"job-`.1","redirectedRequestId":"job-`.0","resourceType":"Document","frameId":"T^","request":{"url":"https://bad.test/b","headers":{}}})",
    R"("Fetch.requestPaused","params":{"requestId":"job-`.1","frameId":"T^","request":{"url":"https://bad.test/b"},"responseStatusCode":200,"responseHeaders":[{"name":"Content-Type","value":"text/html; x"}]})",
    R"("Page.frameNavigated","params":{"frame":{"id":"T^","loaderId":"N`","url":"https://bad.test/b","securityOrigin":"https://bad.test"}},"sessionId":"S^")",
    R"("Runtime.bindingCalled","params":{"name":"reportTitle","payload":"A title"},"sessionId":"S^")",
    R"("Runtime.consoleAPICalled","params":{"type":"log","args":[{"type":"object","value":{"a":[1]}},{"type":"string","value":"x"},{"unserializableValue":"NaN"}],"stackTrace":{"callFrames":[{"url":"u","lineNumber":3}]}},"sessionId":"S^")",
    R"("Runtime.exceptionThrown","params":{"exceptionDetails":{"text":"t","url":"u","lineNumber":1,"exception":{"description":"d"}}},"sessionId":"S^")",
    R"("Log.entryAdded","params":{"entry":{"level":"error","text":"t","url":"u","lineNumber":1}},"sessionId":"S^")",
    R"("Fetch.authRequired","params":{"requestId":"job-`.0"})",
    R"("Fetch.requestPaused","params":{"requestId":"job-`.0","resourceType":"Image","frameId":"F`","request":{"url":"https://i.test/i"}})",
    R"("Fetch.requestPaused","params":{"requestId":"job-`.0","frameId":"T^","request":{},"responseErrorReason":"Failed"})",
    R"("Network.loadingFailed","params":{"requestId":"N`","errorText":"net::ERR_NAME_NOT_RESOLVED","type":"Document"},"sessionId":"S^")",
    R"("Page.frameNavigated","params":{"frame":{"id":"T^","loaderId":"N`","url":"chrome-error://chromewebdata/","unreachableUrl":"https://bad.test/a"}},"sessionId":"S^")",
    R"("Page.documentOpened","params":{"frame":{"id":"T^","loaderId":"N`","url":"about:blank"}},"sessionId":"S^")",
    R"("Page.frameStartedNavigating","params":{"frameId":"T^","url":"https://bad.test/a","loaderId":"N`","navigationType":"differentDocument"},"sessionId":"S^")",
    R"("Page.frameDetached","params":{"frameId":"F`","reason":"remove"},"sessionId":"S^")",
    R"("Runtime.bindingCalled","params":{"name":"closeWindow","payload":""},"sessionId":"S^")",
    R"("Target.detachedFromTarget","params":{"sessionId":"P`"})",
    R"("Target.targetDestroyed","params":{"targetId":"T^"})"};

// The message of an event. `ids`: which two pages.
std::string EventText(size_t kind, int ids, const std::string& number);

// The message with something else in the place of a field: `way` 0 takes it away, 1 has it twice;
// any number will do. "" when there is no such field.
std::string Twisted(const std::string& json, int way, int place);

#endif  // FUZZ_EVENTS_H_
