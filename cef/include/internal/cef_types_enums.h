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
  TID_FILE_BACKGROUND = 1,
  TID_FILE = TID_FILE_BACKGROUND,
  TID_FILE_USER_VISIBLE = 2,
  TID_FILE_USER_BLOCKING = 3,
  TID_PROCESS_LAUNCHER = 4,
  TID_IO = 5,
  TID_RENDERER = 6,
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
  UR_FLAG_NONE = 0,
  UR_FLAG_SKIP_CACHE = 1 << 0,
  UR_FLAG_ONLY_FROM_CACHE = 1 << 1,
  UR_FLAG_DISABLE_CACHE = 1 << 2,
  UR_FLAG_ALLOW_STORED_CREDENTIALS = 1 << 3,
  UR_FLAG_REPORT_UPLOAD_PROGRESS = 1 << 4,
  UR_FLAG_NO_DOWNLOAD_DATA = 1 << 5,
  UR_FLAG_NO_RETRY_ON_5XX = 1 << 6,
  UR_FLAG_STOP_ON_REDIRECT = 1 << 7,
} cef_urlrequest_flags_t;

// How far a request has come.
typedef enum {
  UR_UNKNOWN = 0,
  UR_SUCCESS,
  UR_IO_PENDING,
  UR_CANCELED,
  UR_FAILED,
} cef_urlrequest_status_t;

// What led to a navigation: one source, and qualifier bits above it.
typedef enum {
  TT_LINK = 0,
  TT_EXPLICIT = 1,
  TT_AUTO_SUBFRAME = 3,
  TT_MANUAL_SUBFRAME = 4,
  TT_FORM_SUBMIT = 7,
  TT_RELOAD = 8,
  TT_SOURCE_MASK = 0xFF,
  TT_BLOCKED_FLAG = 0x00800000,
  TT_FORWARD_BACK_FLAG = 0x01000000,
  TT_DIRECT_LOAD_FLAG = 0x02000000,
  TT_CHAIN_START_FLAG = 0x10000000,
  TT_CHAIN_END_FLAG = 0x20000000,
  TT_CLIENT_REDIRECT_FLAG = 0x40000000,
  TT_SERVER_REDIRECT_FLAG = 0x80000000,
  TT_IS_REDIRECT_MASK = 0xC0000000,
  TT_QUALIFIER_MASK = 0xFFFFFF00,
} cef_transition_type_t;

// Where a link wants to open.
typedef enum {
  WOD_UNKNOWN,
  WOD_CURRENT_TAB,
  WOD_SINGLETON_TAB,
  WOD_NEW_FOREGROUND_TAB,
  WOD_NEW_BACKGROUND_TAB,
  WOD_NEW_POPUP,
  WOD_NEW_WINDOW,
  WOD_SAVE_TO_DISK,
  WOD_OFF_THE_RECORD,
  WOD_IGNORE_ACTION,
} cef_window_open_disposition_t;

// How a renderer process ended.
typedef enum {
  TS_ABNORMAL_TERMINATION,
  TS_PROCESS_WAS_KILLED,
  TS_PROCESS_CRASHED,
  TS_PROCESS_OOM,
} cef_termination_status_t;

// Whether a plug-in runs.
typedef enum {
  PLUGIN_POLICY_ALLOW,
  PLUGIN_POLICY_DETECT_IMPORTANT,
  PLUGIN_POLICY_BLOCK,
  PLUGIN_POLICY_DISABLE,
} cef_plugin_policy_t;

// How much of the referrer a request tells.
typedef enum {
  REFERRER_POLICY_CLEAR_REFERRER_ON_TRANSITION_FROM_SECURE_TO_INSECURE,
  REFERRER_POLICY_DEFAULT = REFERRER_POLICY_CLEAR_REFERRER_ON_TRANSITION_FROM_SECURE_TO_INSECURE,
  REFERRER_POLICY_REDUCE_REFERRER_GRANULARITY_ON_TRANSITION_CROSS_ORIGIN,
  REFERRER_POLICY_ORIGIN_ONLY_ON_TRANSITION_CROSS_ORIGIN,
  REFERRER_POLICY_NEVER_CLEAR_REFERRER,
  REFERRER_POLICY_ORIGIN,
  REFERRER_POLICY_CLEAR_REFERRER_ON_TRANSITION_CROSS_ORIGIN,
  REFERRER_POLICY_ORIGIN_CLEAR_ON_TRANSITION_FROM_SECURE_TO_INSECURE,
  REFERRER_POLICY_NO_REFERRER,
} cef_referrer_policy_t;

// The kinds of processes that exchange messages.
typedef enum {
  PID_BROWSER,
  PID_RENDERER,
} cef_process_id_t;

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
