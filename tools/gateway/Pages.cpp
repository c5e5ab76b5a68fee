#include "tools/gateway/Pages.h"

namespace {

constexpr char kStyle[] =
    "*{box-sizing:border-box}"
    "body{margin:0;min-height:100vh;font:16px/1.5 'DejaVu Sans',system-ui,sans-serif;color:#1d2733;"
    "background:linear-gradient(160deg,#eef2f6,#dbe4ec)}"
    "header{padding:14px 28px;color:#fff;font-weight:600;letter-spacing:.02em}"
    "main{max-width:440px;margin:9vh auto 24px;padding:30px 34px;background:#fff;"
    "border-radius:10px;box-shadow:0 8px 30px rgba(20,40,60,.14)}"
    "main.wide{max-width:1240px;margin-top:32px}h1{margin:0 0 14px;font-size:23px}"
    "label{display:block;margin:14px 0 4px;font-size:14px;color:#4a5968}"
    "input{width:100%;padding:9px 11px;font:inherit;border:1px solid #b6c2ce;border-radius:6px}"
    "button{width:100%;margin-top:22px;padding:10px;font:inherit;font-weight:600;color:#fff;"
    "border:0;border-radius:6px;cursor:pointer}"
    ".hint{margin-top:18px;font-size:13px;color:#6a7885}.error{color:#b3261e}"
    "table{border-collapse:collapse;width:100%}td,th{padding:7px 10px 7px 0;text-align:left;"
    "vertical-align:top;border-bottom:1px solid #e2e8ee;font-size:14px}code{font-size:13px}"
    ".pixel{position:absolute;width:1px;height:1px}";

const struct {
  const char* color;
  const char* brand;
} kLooks[] = {
    {"#0b5c8a", "Corvane Secure &middot; Gateway"},
    {"#5b3a8c", "Hollowgate Identity"},
    {"#44606b", "Third Host"},
};

std::string Hidden(const Fields& fields) {
  std::string html;
  for (const auto& [name, value] : fields) {
    html +=
        "<input type=hidden name=\"" + EscapeHtml(name) + "\" value=\"" + EscapeHtml(value) + "\">";
  }
  return html;
}

std::string AfterLoad(const std::string& statements) {
  return "<script>addEventListener('load',()=>setTimeout(()=>{" + statements + "},0))</script>";
}

// The fields the user sees, with a button and what is to be typed.
std::string Asked(const Fields& asked) {
  std::string html;
  std::string hint;
  for (const auto& [name, value] : asked) {
    const std::string id = EscapeHtml(name);
    std::string label = id;
    if (label[0] >= 'a' && label[0] <= 'z') label[0] -= 'a' - 'A';
    html += "<label for=\"" + id + "\">" + label + "</label><input id=\"" + id + "\" name=\"" + id +
            "\" autocomplete=off" + (hint.empty() ? " autofocus" : "") +
            (name == "password" ? " type=password>" : ">");
    hint += (hint.empty() ? "" : ", ") + id + " <b>" + EscapeHtml(value) + "</b>";
  }
  return html + "<button>Sign in</button><p class=hint>For trying it out: " + hint + "</p>";
}

// Browsers obey "autofocus" in a page, but not in a frame from another site.
constexpr char kCaret[] =
    "<script>function caret(){if(!f.contains(document.activeElement))"
    "f.querySelector('input:not([type=hidden])').focus()}"
    "addEventListener('focus',caret);if(document.hasFocus())caret()</script>";

std::string Form(const PageParts& parts) {
  std::string html =
      "<form id=f method=post action=\"" + EscapeHtml(parts.action) + "\">" + Hidden(parts.hidden);
  if (!parts.error.empty()) html += "<p class=error>" + EscapeHtml(parts.error) + "</p>";
  if (!parts.asked.empty()) html += Asked(parts.asked);
  html += "</form>";
  if (!parts.asked.empty()) html += kCaret;
  return html;
}

}  // namespace

std::string EscapeHtml(const std::string& text) {
  std::string html;
  for (const char c : text) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      default:
        html += c;
    }
  }
  return html;
}

std::string ScriptText(const std::string& text) {
  std::string literal = "\"";
  for (const char c : text) {
    // "<" could end the script.
    if (c == '"' || c == '\\') literal += '\\';
    literal += c == '<' ? std::string("\\x3c") : std::string(1, c);
  }
  return literal + "\"";
}

Look LookOf(const std::string& host) {
  if (host == "idp") return Look::kIdentityProvider;
  return host == "third" ? Look::kThird : Look::kGateway;
}

std::string Page(Look look, const std::string& title, const std::string& body) {
  const auto& style = kLooks[static_cast<int>(look)];
  const std::string escaped = EscapeHtml(title);
  const bool wide = body.find("<table") != std::string::npos;
  return "<!DOCTYPE html><html lang=en><head><meta charset=utf-8><title>" + escaped +
         "</title><link rel=icon href=\"data:,\"><style>" + kStyle +
         "header,button{background:" + style.color + "}</style></head><body><header>" +
         style.brand + "</header><main" + (wide ? " class=wide" : "") + "><h1>" + escaped +
         "</h1>" + body + "</main></body></html>";
}

std::string Notice(Look look, const std::string& title, const std::string& text) {
  return Page(look, title, "<p>" + EscapeHtml(text) + "</p>");
}

std::string WholePage(Look look, const PageParts& parts) {
  std::string body = parts.text.empty() ? "" : "<p>" + EscapeHtml(parts.text) + "</p>";
  if (!parts.action.empty()) body += Form(parts);
  body += parts.html;
  if (!parts.action.empty() && parts.by_itself) {
    std::string statements;
    for (const auto& [name, value] : parts.asked) {
      statements += "f.elements[" + ScriptText(name) + "].value=" + ScriptText(value) + ";";
    }
    body += AfterLoad(statements + "f.submit()");
  }
  if (!parts.next.empty()) {
    body += AfterLoad("setTimeout(()=>location.replace(" + ScriptText(parts.next) + ")," +
                      std::to_string(parts.after_ms) + ")");
  }
  if (!parts.script.empty()) body += "<script>" + parts.script + "</script>";
  return Page(look, parts.title, body);
}
