// A window without tabs hands every new tab to a window that has some: the whole browser, with its
// address bar. DevTools hears of it when it is too late, with the page inside. So what asks for a
// tab is made to ask for a window: scripts by way of window.open and form.submit, which look as
// before to them, links and forms in a world of their own, after the page had its turn.
//
// Keys pass by the page first in such windows, all of them, so there they can be stopped as well.

#include "cef/chromium/browser/PageManners.h"

namespace engine {
namespace {

constexpr char kWorld[] = "pageManners";
constexpr char kCloseBinding[] = "closeWindow";

// "popup" counts when it is the last of its name; a size is given where the page names none.
constexpr char kOpenScript[] = R"((() => {
  window.open = new Proxy(window.open, {apply(open, self, [url, name, features, ...rest]) {
    const wanted = features === undefined || features === null ? '' : String(features);
    const size = /(^|[\s,;])(inner)?(width|height)\s*=/i.test(wanted) ? ''
        : `,width=${outerWidth},height=${outerHeight}`;
    return Reflect.apply(open, self, [url, name, (wanted ? wanted + ',' : '') + 'popup=1' + size,
                                      ...rest]);
  }});
  // Unlike a click on its button, this tells nobody.
  HTMLFormElement.prototype.submit = new Proxy(HTMLFormElement.prototype.submit, {
    apply(submit, form) {
      const former = form.getAttribute('target');
      const target = former ?? document.querySelector('base[target]')?.target ?? '';
      const name = 'window' + crypto.getRandomValues(new Uint32Array(2)).join('');
      const opened = /^_blank$/i.test(target) && open('about:blank', name);
      if (!opened) return Reflect.apply(submit, form, []);
      if (!/(^|\s)opener(\s|$)/.test(form.rel)) opened.opener = null;
      form.setAttribute('target', name);
      Reflect.apply(submit, form, []);
      former === null ? form.removeAttribute('target') : form.setAttribute('target', former);
    }
  });
})())";

constexpr char kMannersScript[] = R"(((developer) => {
  const letters = {ctrl: 'tnojhusd', shift: 'tnojhusdabmi', developer: 'cij'};
  addEventListener('keydown', (event) => {
    const {key, code} = event;
    const command = event.ctrlKey && !event.altKey;
    const letter = /^[a-z]$/i.test(key) ? key.toLowerCase()
        : code.startsWith('Key') ? code[3].toLowerCase() : '';
    const tools = key === 'F12' ||
        (command && event.shiftKey && letter && letters.developer.includes(letter));
    const surface = key === 'F1' || (key === 'Escape' && event.shiftKey) ||
        (command && event.shiftKey && key === 'Delete') ||
        (command && letter && letters[event.shiftKey ? 'shift' : 'ctrl'].includes(letter));
    const quit = command && letter === 'q';
    if (tools ? developer : !surface && !quit) return;
    event.preventDefault();
    if (quit && event.isTrusted) closeWindow('');
  }, true);

  // What it offers besides is for fields: cut, copy and paste.
  addEventListener('contextmenu', (event) => {
    const field = event.composedPath()[0];
    const editable = field.isContentEditable || /^(input|textarea)$/i.test(field.localName);
    if (!developer && !editable) event.preventDefault();
  });

  const base = () => document.querySelector('base[target]')?.target || '';
  const elsewhere = (name) => name && !/^_(self|parent|top)$/i.test(name);
  const blank = (name) => /^_blank$/i.test(name);
  const size = () => `popup,width=${outerWidth},height=${outerHeight}`;

  const follow = (event) => {
    if (event.defaultPrevented || event.button > 1) return;
    const link = event.composedPath().find((node) => /^(a|area)$/.test(node.localName) && node.href);
    if (!link || !/^(https?|about|blob):$/.test(link.protocol) || link.hasAttribute('download')) {
      return;
    }
    const asked = event.button === 1 || event.ctrlKey || event.metaKey || event.shiftKey;
    const name = asked ? '_blank' : link.target || base();
    if (!elsewhere(name)) return;
    event.preventDefault();
    const rel = link.relList;
    let features = size();
    if (rel.contains('noreferrer')) features += ',noreferrer';
    if (rel.contains('noopener') || (blank(name) && !rel.contains('opener'))) features += ',noopener';
    // While the keys of a click are at hand, they make a tab of any window.
    const address = link.href;
    setTimeout(() => open(address, name, features));
  };
  addEventListener('click', follow);
  addEventListener('auxclick', follow);

  // The answer to a form goes to a window that is there by then.
  addEventListener('submit', (event) => {
    const form = event.target;
    const button = event.submitter;
    const holder = button?.hasAttribute('formtarget') ? button : form;
    const attribute = holder === form ? 'target' : 'formtarget';
    const former = holder.getAttribute(attribute);
    if (event.defaultPrevented || !blank(former || base())) return;
    const name = 'window' + crypto.getRandomValues(new Uint32Array(2)).join('');
    const opened = open('about:blank', name, size());
    if (!opened) return;
    if (!/(^|\s)opener(\s|$)/.test(form.rel)) opened.opener = null;
    holder.setAttribute(attribute, name);
    setTimeout(() => former === null ? holder.removeAttribute(attribute)
                                     : holder.setAttribute(attribute, former));
  });
}))";

}  // namespace

bool AsksToClose(const JsonValue& call) { return TextAt(call, "name") == kCloseBinding; }

void EnablePageManners(DevToolsConnection& connection, const std::string& session) {
  connection.Send(session, "Runtime.addBinding",
                  JsonObject().Add("name", kCloseBinding).Add("executionContextName", kWorld));
  connection.Send(session, "Page.addScriptToEvaluateOnNewDocument",
                  JsonObject().Add("source", kOpenScript));
  connection.Send(
      session, "Page.addScriptToEvaluateOnNewDocument",
      JsonObject()
          .Add("worldName", kWorld)
          .Add("source", std::string(kMannersScript) + (kDeveloper ? "(true)" : "(false)")));
}

}  // namespace engine
