// The page's first module, run before the others are loaded: it learns
// whether a server serves the page and, when none does, starts the keymap
// module's worker at once, so that the module downloads and compiles while
// the rest of the page loads.
//
// The server hands the page a token in its address. It leaves the address
// bar (and so the history) at once, kept for this tab only, where a reload
// finds it, and goes out as a Bearer header.

export const token = new URLSearchParams(location.search).get('token') ||
  sessionStorage.getItem('zuno-keymap-token') || '';
if (token) {
  sessionStorage.setItem('zuno-keymap-token', token);
  history.replaceState(null, '', location.pathname);
}

/// The keymap module's worker (worker.js) of a page served as static files.
export const worker = token ? null : new Worker('worker.js');
