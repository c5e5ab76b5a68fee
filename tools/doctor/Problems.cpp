#include "tools/doctor/Problems.h"

#include <stdexcept>

namespace doctor {

namespace {

using ebStarter::Verdict;

const std::vector<Problem> kProblems = {
    {"program", true, "Signing in does nothing at all",
     "The program is missing, may not be executed, or lacks a shared library",
     "Install the program again, and the library that is named with the system's package manager",
     Verdict::kNotStarted},
    {"catalogs", true, "Signing in does nothing at all",
     "A text catalog is missing or damaged; without the English ones the program ends at once",
     "Install the program again; a catalog must be UTF-8 and begin with the byte-order mark",
     Verdict::kNothingWritten},
    {"catalog-encoding", true, "A text of a question is cut off in its middle",
     "A text catalog was saved in another encoding than UTF-8",
     "Save the file as UTF-8 with byte-order mark, or install the program again",
     Verdict::kSignedIn},
    {"main-menu", true, "The shortcut for quitting does nothing", "The program's menu is missing",
     "Install the program again", Verdict::kSignedIn},
    {"framework", true, "Signing in does nothing at all",
     "The framework is missing, damaged, or of another version than the program",
     "Install program and framework again, from the same package", Verdict::kNothingWritten},
    {"temporary-folder", true, "No window appears",
     "The folder for temporary files cannot be written, or its disk is full",
     "Make room there, or let TMPDIR name a folder that you can write", Verdict::kBrowserFailed},
    {"chromium", true, "No window appears",
     "None of Chromium, Chrome, Edge and Brave is installed at one of the usual places",
     "Install the package chromium", Verdict::kBrowserFailed},
    {"chromium-start", true, "No window appears, not even after a quarter of a minute",
     "Chromium does not start or does not answer",
     "Start chromium in a terminal and see what it says; install it again",
     Verdict::kBrowserFailed},
    {"chromium-calls", true, "No window appears, or the window never finishes",
     "Chromium is too old, or too new: it does not know a command that is needed",
     "Update the package chromium", Verdict::kBrowserFailed},
    {"chromium-old", true, "Something about a page is odd",
     "Chromium is older than any version that the program has been tried with",
     "Update the package chromium", Verdict::kSignedIn},
    {"chromium-policy", true, "No window appears",
     "The administrator's policies do not let other programs use the browser",
     "Let the administrator allow RemoteDebuggingAllowed and DeveloperToolsAvailability, or "
     "install "
     "another of Chromium, Chrome, Edge and Brave",
     Verdict::kBrowserFailed},
    {"chromium-sandbox", true, "Pages are shown without Chromium's sandbox",
     "The system forbids users to make namespaces, which the sandbox is built from",
     "Let root install the package chromium-sandbox, or allow user namespaces", Verdict::kSignedIn},
    {"chromium-language", true, "The browser's own questions and menus are in English",
     "Chromium's texts in your language are not installed", "Install the package chromium-l10n",
     Verdict::kSignedIn},
    {"display", true, "No window appears", "There is no X display, or it does not let you in",
     "Sign in from a graphical session; under Wayland install XWayland; over ssh use ssh -X; see "
     "that DISPLAY and XAUTHORITY are those of the session",
     Verdict::kBrowserFailed},
    {"home", true, "Signing in does nothing, or I signed in and nothing happened",
     "HOME is unset or wrong, so that program and client look for the result in different places",
     "Set HOME to your home folder for the client that starts the program", Verdict::kNotStarted},
    {"data-folder", true, "I signed in and nothing happened, or I have to sign in every time",
     "The data folder below your home cannot be created or used",
     "Remove what stands in its place; make the folder your own and writable for you alone",
     Verdict::kNotStarted},
    {"disk-space", true, "I have to type my password every time",
     "The disk with your home folder is nearly full, so that the browser keeps nothing",
     "Make room", Verdict::kSignedIn},
    {"profile", true, "I have to type my password every time",
     "The browser's profile folder cannot be used, so each run starts with an empty one",
     "Remove the folder, or make it your own and writable for you alone", Verdict::kSignedIn},
    {"profile-lock", true, "I have to sign in again after using another computer",
     "A browser on another computer uses the same home folder, or died there; a run here takes the "
     "profile over",
     "Sign in on one computer at a time; if nobody signs in elsewhere, nothing is to be done",
     Verdict::kSignedIn},
    {"other-sign-in", true, "I have to type my password although I am signed in",
     "Another sign-in is going on; a second one starts with an empty profile",
     "Finish the other sign-in first", Verdict::kSignedIn},
    {"return-segment", true, "I signed in and nothing happened",
     "The shared memory for the result belongs to another user",
     "Let that user, or root, remove it: ipcrm -m NUMBER", Verdict::kNotStarted},
    {"return-segment-size", true, "I signed in and nothing happened",
     "The shared memory for the result has the wrong size; embedded-browser-start replaces it, "
     "other callers may not",
     "Remove it: ipcrm -m NUMBER", Verdict::kSignedIn},
    {"shared-memory-limit", true, "I signed in and nothing happened",
     "The system's limit of shared-memory segments is reached, or nearly",
     "Remove what is left over (ipcs -m shows it), or raise kernel.shmmni",
     Verdict::kNothingWritten},
    {"semaphore-limit", true, "The log stays empty",
     "The system's limit of semaphores is reached, or nearly",
     "Remove what is left over (ipcs -s shows it), or raise kernel.sem", Verdict::kSignedIn},
    {"shared-memory-folder", true, "Pages are slow",
     "/dev/shm is too small, as in many containers; the browser uses temporary files instead",
     "Give the container more: --shm-size=256m", Verdict::kSignedIn},
    {"user-entry", true, "The log does not name me, or there is no log",
     "Your user id has no entry in the user database, as in some containers",
     "Add one to /etc/passwd, with a home folder that you can write", Verdict::kSignedIn},
    {"log-folder", true, "There is no log",
     "The machine's log folder is missing or cannot be used, and nothing is written to one in a "
     "home "
     "folder",
     "Let root make the folder, with the mode 0777, or install the program again",
     Verdict::kSignedIn},
    {"log-file", true, "There is no log of my sign-in, or only half of it",
     "The log file cannot be created, is another user's and not writable for all, is a link or not "
     "a "
     "plain file, or is full and can be renamed by root only",
     "Let its owner, or root, set its mode to 0666, or rename or remove it", Verdict::kSignedIn},
    {"log-lock", true, "The window comes 2 seconds late, and there is no log",
     "A process keeps the log's lock: it is stopped, or cannot have the log's control block",
     "End the process that is named; if it is gone: ipcrm -s NUMBER", Verdict::kSignedIn},
    {"log-control-block", true, "There is no log, neither of my sign-in nor of others meanwhile",
     "The log's control block was made by another user, who keeps you out, or it holds something "
     "else; while you sign in, nobody else on the machine can log",
     "Let that user, or root, sign in with the present version, or remove the file",
     Verdict::kSignedIn},
    {"developer-port", true, "The developer tools show somebody else's pages",
     "The developer tools' port is taken; signing in does not need it",
     "Nothing, or end the process that is named", Verdict::kSignedIn},
    {"process-limits", true, "Pages crash, or no window appears",
     "A limit of your session (see ulimit -a) is lower than a browser needs",
     "Raise the limit that is named", Verdict::kBrowserFailed},

    {"display-lost", false, "The window vanished, and the session with it",
     "The X server ended during the step", "Sign in again; what had been gathered is not lost",
     Verdict::kBrowserFailed},
    {"chromium-ended", false, "The window vanished",
     "Chromium crashed, was killed, or the system ran out of memory",
     "Sign in again; if it happens again, look for \"Out of memory\" in the system's log",
     Verdict::kBrowserFailed},
    {"page-crashed", false, "The window shows a crashed page", "The process of the page has died",
     "Reload the page, or close the window and sign in again", Verdict::kClosedByUser},
    {"certificate-refused", false, "The window closed after a question about a certificate",
     "The question was answered with no, as Return and Escape do, or there was no display to ask "
     "it on",
     "Compare the address; if it is right, ask your administrator to fix the certificate",
     Verdict::kClosedByUser},
    {"client-certificate", false, "The page says ERR_BAD_SSL_CLIENT_AUTH_CERT",
     "The site wants a certificate of yours: the certificate store below your home holds none for "
     "it, or the question about it was cancelled",
     "Import it (pk12util -d sql:$HOME/.pki/nssdb -i FILE.p12, from the package libnss3-tools), "
     "close the window and sign in again",
     Verdict::kClosedByUser},
    {"security-key", false, "The window keeps asking for my security key",
     "The key is not at the computer that the program runs on, as over ssh or in a container, or "
     "your session may not open it",
     "Plug it in there, and sign in at that computer's own screen; or cancel and choose another "
     "way",
     Verdict::kClosedByUser},
    {"http-authentication", false,
     "The page says 401 or unauthorised, and nobody asked me for a password",
     "The site asks by HTTP (Basic, Digest, NTLM), which is refused, or by Kerberos, which "
     "Chromium "
     "gives to listed sites only",
     "Let the administrator list the site in Chromium's policy AuthServerAllowlist for Kerberos, "
     "or "
     "let the site offer a form",
     Verdict::kClosedByUser},
    {"page-unreachable", false, "The window says that a site can not be reached",
     "The network is down, a server is, or a name is wrong; the window tries again by itself",
     "Check the network; F5 tries at once. If only this site fails, ask your administrator",
     Verdict::kClosedByUser},
    {"window-closed", false, "The client says that the window was closed",
     "The window was closed before the last page had come", "Sign in again",
     Verdict::kClosedByUser},
    {"time-limit", false, "The window closed while I was typing",
     "The client's time limit for a sign-in has passed",
     "Sign in again without delay; with embedded-browser-start use --timeout", Verdict::kTimedOut},
    {"account-refused", false, "I signed in, and the client says that I am refused",
     "The identity provider knows the account, but the gateway does not let it in",
     "Use another account, or ask your administrator", Verdict::kRefused},
    {"starter-killed", false, "The window vanished with the client",
     "The client, or embedded-browser-start, was ended; the program ends with it",
     "Start the client again; nothing is left behind", Verdict::kStopped},
    {"program-crashed", false, "The window vanished",
     "The program was ended by a signal that it could not answer",
     "Report it, with the end of the log", Verdict::kCrashed},
    {"result-cut", false, "I am signed in, but logging out asks for a password",
     "The result did not fit into the shared memory, so the identity provider's cookies were "
     "dropped",
     "Nothing; the log says \"dropping the IdP cookies\"", Verdict::kSignedIn},
    {"result-damaged", false, "I signed in and the client reports a damaged result",
     "Something else writes into the same shared memory, or the client is of another version",
     "Let one client run at a time; install client and program again", Verdict::kUnreadable},
};

}  // namespace

const std::vector<Problem>& AllProblems() { return kProblems; }

const Problem& ProblemOf(const std::string& id) {
  for (const Problem& problem : kProblems) {
    if (problem.id == id) return problem;
  }
  throw std::logic_error("no such problem: " + id);
}

}  // namespace doctor
