// The window as the desktop sees it, on several screens, with window managers and without one.

#include <sys/types.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include "tests/e2e/E2eTest.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using Manager = VirtualDisplay::WindowManager;

constexpr char kCookie[] = "KXSAMLEMBID=launch";

struct Desk {
  const char* name;
  Manager manager;
  int width;
  int height;
  int dpi;
  int left = 0;  // edge of the primary monitor, which is on the right of another
};

struct Place {
  int x = 0, y = 0, width = 0, height = 0;
};

class WindowTest : public E2eTest, public testing::WithParamInterface<Desk> {
 protected:
  std::string Property(const std::string& window, const std::string& name) const {
    return display_->Run({"xprop", "-notype", "-id", window, name}).output;
  }
  Place PlaceOf(const std::string& window) const {
    std::istringstream lines(display_->Xdotool({"getwindowgeometry", "--shell", window}).output);
    Place place;
    for (std::string line; std::getline(lines, line);) {
      for (const auto& [name, value] : {std::pair{"X=", &place.x},
                                        {"Y=", &place.y},
                                        {"WIDTH=", &place.width},
                                        {"HEIGHT=", &place.height}}) {
        if (line.rfind(name, 0) == 0) *value = std::stoi(line.substr(line.find('=') + 1));
      }
    }
    return place;
  }
};

TEST_P(WindowTest, BelongsToTheProductAndStaysOnTheScreen) {
  const Desk& desk = GetParam();
  display_.reset();
  display_ = std::make_unique<VirtualDisplay>(
      desk.manager, std::to_string(desk.width) + "x" + std::to_string(desk.height), desk.dpi);
  if (desk.left != 0) {
    const std::string rest = "/1x" + std::to_string(desk.height) + "/1+";
    const std::string right = std::to_string(desk.width - desk.left) + rest;
    display_->Run(
        {"xrandr", "--setmonitor", "first", std::to_string(desk.left) + rest + "0+0", "screen"});
    display_->Run(
        {"xrandr", "--setmonitor", "*second", right + std::to_string(desk.left) + "+0", "none"});
  }
  Subprocess starter(StarterCommand({"saml-login", "/saml-popup/start", kCookie, false, {}}));
  const std::string popup =
      display_->WaitForWindow("^idp[.]localhost:[0-9]+ – Sign in to your account$", kPatience);
  const std::string first =
      display_->WaitForWindow("^idp[.]localhost:[0-9]+ – Waiting for your sign-in$", kPatience);
  ASSERT_FALSE(popup.empty() || first.empty());

  std::ostringstream group;
  group << "group leader: 0x" << std::hex << std::stoul(first);
  const auto browser = std::to_string(BrowserProcesses("").front());
  for (const std::string& window : {first, popup}) {
    EXPECT_THAT(Property(window, "WM_CLASS"), HasSubstr("\"embedded-browser\", \"CorvaneSecure\""));
    EXPECT_THAT(Property(window, "WM_HINTS"), HasSubstr(group.str()));
    EXPECT_EQ(Property(window, "_NET_WM_PID"), "_NET_WM_PID = " + browser + "\n");
    EXPECT_TRUE(WaitFor([&] {
      return Property(window, "_NET_WM_ICON").find("Icon (128 x 128)") != std::string::npos;
    }));
    EXPECT_TRUE(WaitFor([&] {
      const Place place = PlaceOf(window);
      return place.x >= desk.left && place.y >= 0 && place.x + place.width <= desk.width &&
             place.y + place.height <= desk.height;
    })) << "beyond the screen";
  }
  EXPECT_THAT(Property(popup, "WM_TRANSIENT_FOR"), HasSubstr(group.str().substr(14)));

  const int scale = std::max(1, desk.dpi / 96);
  const Place place = PlaceOf(first);
  EXPECT_NEAR(place.x + place.width / 2, (desk.left + desk.width) / 2, 50);
  EXPECT_NEAR(place.y + place.height / 2, desk.height / 2, 50);
  EXPECT_EQ(place.width, std::min(1000 * scale, desk.width - 16 * scale));
  EXPECT_TRUE(WaitFor([&] { return PlaceOf(popup).width == 600 * scale; }));
  EXPECT_TRUE(WaitFor([&] { return PlaceOf(popup).x > place.x; })) << "covers its opener";

  starter.Signal(SIGTERM);
  EXPECT_EQ(Report(starter).verdict, "stopped");
}

INSTANTIATE_TEST_SUITE_P(All, WindowTest,
                         testing::Values(Desk{"SecondMonitor", Manager::kOpenbox, 2200, 900, 0,
                                              900},
                                         Desk{"Small", Manager::kNone, 800, 600, 0},
                                         Desk{"SmallOpenbox", Manager::kOpenbox, 800, 600, 0},
                                         Desk{"Xfwm", Manager::kXfwm, 1280, 900, 0},
                                         Desk{"Fine", Manager::kNone, 2560, 1600, 192},
                                         Desk{"FineXfwm", Manager::kXfwm, 2560, 1600, 192}),
                         [](const auto& info) { return std::string(info.param.name); });

class KeysTest : public WindowTest {};

// F12 is for developers, who run a staged build like this one.
TEST_F(KeysTest, OpenNothingOfTheBrowserAndClose) {
  const std::string form = "– Sign in to your account$";
  for (const char* quit : {"ctrl+q", "ctrl+w"}) {
    Subprocess starter(StarterCommand({"saml-login", "/saml-redirect/start", kCookie, false, {}}));
    const std::string window = display_->WaitForWindow(form, kPatience);
    ASSERT_NE(window, "");
    // Windows take keys only a moment after they show; the field has the focus by then.
    ASSERT_TRUE(WaitFor([&] {
      display_->Xdotool({"windowactivate", "--sync", window, "key", "F1"});
      return display_->Xdotool({"getwindowfocus"}).output == window + "\n";
    }));
    // What a key has opened that came too early for the page is closed at once.
    EXPECT_TRUE(WaitFor([&] {
      return display_->Xdotool({"search", "--onlyvisible", "--name", " - Chromium$"}).status != 0;
    }));
    for (const char* key :
         {"F1", "shift+Escape", "ctrl+t", "ctrl+n", "ctrl+shift+n", "ctrl+shift+t", "ctrl+o",
          "ctrl+j", "ctrl+h", "ctrl+u", "ctrl+s", "ctrl+shift+o", "ctrl+shift+Delete"}) {
      display_->Xdotool({"key", key});
      EXPECT_EQ(display_->WaitForWindow(" - Chromium$|^Save File$", std::chrono::milliseconds(200)),
                "")
          << key;
    }
    while (display_->Xdotool({"search", "--onlyvisible", "--name", form}).status == 0) {
      display_->Xdotool({"key", quit});
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
    }
    EXPECT_EQ(Report(starter).verdict, "closed by user") << quit;
  }
}

}  // namespace
