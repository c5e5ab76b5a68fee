// The enumerations of the API.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_ENUMS_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_ENUMS_H_

extern "C" {

// How grave a message is, and from which gravity on messages are written.
typedef enum {
  LOGSEVERITY_DEFAULT = 0,
  LOGSEVERITY_VERBOSE = 1,
  LOGSEVERITY_DEBUG = LOGSEVERITY_VERBOSE,
  LOGSEVERITY_INFO = 2,
  LOGSEVERITY_WARNING = 3,
  LOGSEVERITY_ERROR = 4,
  LOGSEVERITY_FATAL = 5,
  LOGSEVERITY_DISABLE = 99,
} cef_log_severity_t;

// A setting that may be left to the framework.
typedef enum {
  STATE_DEFAULT = 0,
  STATE_ENABLED,
  STATE_DISABLED,
} cef_state_t;

// What becomes of a request: ended, continued, or decided later through the callback.
typedef enum {
  RV_CANCEL = 0,
  RV_CONTINUE,
  RV_CONTINUE_ASYNC,
} cef_return_value_t;

// The framework's threads. UI is the one that called CefInitialize.
typedef enum {
  TID_UI = 0,
  TID_IO = 5,
} cef_thread_id_t;

// What a request is for. SUB_RESOURCE stands for everything without a kind of its own.
typedef enum {
  RT_MAIN_FRAME = 0,
  RT_SUB_FRAME,
  RT_STYLESHEET,
  RT_SCRIPT,
  RT_IMAGE,
  RT_FONT_RESOURCE,
  RT_SUB_RESOURCE,
  RT_OBJECT,
  RT_MEDIA,
  RT_WORKER,
  RT_SHARED_WORKER,
  RT_PREFETCH,
  RT_FAVICON,
  RT_XHR,
  RT_PING,
  RT_SERVICE_WORKER,
  RT_CSP_REPORT,
  RT_PLUGIN_RESOURCE,
} cef_resource_type_t;

// Bits for CefRequest::SetFlags. ALLOW_STORED_CREDENTIALS keeps cookies and authentication data.
typedef enum {
  UR_FLAG_ALLOW_STORED_CREDENTIALS = 1 << 3,
} cef_urlrequest_flags_t;

// Whether a plug-in runs.
typedef enum {
  PLUGIN_POLICY_ALLOW,
  PLUGIN_POLICY_DETECT_IMPORTANT,
  PLUGIN_POLICY_BLOCK,
  PLUGIN_POLICY_DISABLE,
} cef_plugin_policy_t;

// Why a certificate was not accepted, one bit a reason; the last ones are properties, no errors.
typedef enum {
  CERT_STATUS_NONE = 0,
  CERT_STATUS_COMMON_NAME_INVALID = 1 << 0,
  CERT_STATUS_DATE_INVALID = 1 << 1,
  CERT_STATUS_AUTHORITY_INVALID = 1 << 2,
  CERT_STATUS_NO_REVOCATION_MECHANISM = 1 << 4,
  CERT_STATUS_UNABLE_TO_CHECK_REVOCATION = 1 << 5,
  CERT_STATUS_REVOKED = 1 << 6,
  CERT_STATUS_INVALID = 1 << 7,
  CERT_STATUS_WEAK_SIGNATURE_ALGORITHM = 1 << 8,
  CERT_STATUS_NON_UNIQUE_NAME = 1 << 10,
  CERT_STATUS_WEAK_KEY = 1 << 11,
  CERT_STATUS_PINNED_KEY_MISSING = 1 << 13,
  CERT_STATUS_NAME_CONSTRAINT_VIOLATION = 1 << 14,
  CERT_STATUS_VALIDITY_TOO_LONG = 1 << 15,
  CERT_STATUS_IS_EV = 1 << 16,
  CERT_STATUS_REV_CHECKING_ENABLED = 1 << 17,
  CERT_STATUS_SHA1_SIGNATURE_PRESENT = 1 << 19,
  CERT_STATUS_CT_COMPLIANCE_FAILED = 1 << 20,
} cef_cert_status_t;

// Network errors: ERR_ABORTED is -3 and so on; ERR_NONE is success.
typedef enum {
  ERR_NONE = 0,
#define NET_ERROR(label, value) ERR_##label = value,
#include "include/base/internal/cef_net_error_list.h"
#undef NET_ERROR
} cef_errorcode_t;

}  // extern "C"

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_ENUMS_H_
