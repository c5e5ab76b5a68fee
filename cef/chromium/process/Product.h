// What the user knows the program by. Both come from the build, which alone knows the product.

#ifndef CEF_CHROMIUM_PROCESS_PRODUCT_H_
#define CEF_CHROMIUM_PROCESS_PRODUCT_H_

namespace engine {

inline constexpr char kProductName[] = EB_PRODUCT_NAME;
// A window whose page has no host, or is not known. Never the product's name: a page could bring
// this about, and pass for the product.
inline constexpr char kUnknownTitle[] = "Unknown page";
// WM_CLASS of every window; the second is what a .desktop file has as StartupWMClass.
inline constexpr char kWindowInstance[] = "embedded-browser";
inline constexpr char kWindowClass[] = EB_WINDOW_CLASS;

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_PRODUCT_H_
