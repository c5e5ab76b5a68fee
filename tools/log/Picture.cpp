#include "tools/log/Picture.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "tools/log/Texts.h"

namespace log_reader {

namespace {

using Tone = Mark::Tone;

// In pixels.
constexpr int kTimes = 100;  // the column of times
constexpr int kLane = 235;   // from one lane to the next
constexpr int kRow = 30;
constexpr int kTop = 120;  // above the first row
constexpr int kLine = 20;  // of running text
constexpr int kMargin = 24;
constexpr int kTitleLetter = 12;  // of the widest usual font

constexpr size_t kMostMarks = 60;
constexpr size_t kFew = 3;
constexpr size_t kMostLanes = 5;       // the program's included; the last one takes all others
constexpr long long kLongWait = 5000;  // milliseconds; told by a break in the lanes
constexpr size_t kLabelLength = 60;    // bytes
constexpr char kOthers[] = "other hosts";

struct Colour {
  const char* line;
  const char* fill;
};

Colour ColourOf(Tone tone) {
  switch (tone) {
    case Tone::kGood:
      return {"#1a7f37", "#e6f4ea"};
    case Tone::kBad:
      return {"#c62828", "#fdecea"};
    case Tone::kQuestion:
      return {"#a15c00", "#fff4e0"};
    case Tone::kMinor:
      return {"#8a8a8a", "#f4f4f4"};
    default:
      return {"#24476b", "#eef3f8"};
  }
}

std::string Escape(const std::string& text) {
  std::string escaped;
  for (const char c : Printable(text, 1000)) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

// Breaks a text between its words.
std::vector<std::string> Wrap(const std::string& text, size_t length) {
  std::vector<std::string> lines(1);
  for (size_t begin = 0; begin < text.size();) {
    const size_t end = std::min(text.find(' ', begin), text.size());
    const std::string word = text.substr(begin, end - begin);
    if (!lines.back().empty() && lines.back().size() + word.size() >= length) lines.emplace_back();
    lines.back() += (lines.back().empty() ? "" : " ") + word;
    begin = end + 1;
  }
  return lines;
}

// The marks that are shown. Where many are left out, one mark has their number.
std::vector<Mark> Choose(const std::vector<Mark>& marks) {
  std::vector<bool> shown(marks.size(), true);
  size_t count = marks.size();
  const auto drop = [&](size_t i) {
    if (shown[i] && count > kMostMarks) {
      shown[i] = false;
      --count;
    }
  };
  for (size_t i = 0; i < marks.size(); ++i) {
    if (marks[i].tone == Tone::kMinor) drop(i);
  }
  // The beginning tells where it went, the end why it did not.
  for (size_t i = kMostMarks / 3; i < marks.size(); ++i) drop(i);
  std::vector<Mark> chosen;
  size_t left_out = 0;
  for (size_t i = 0; i <= marks.size(); ++i) {
    if (i < marks.size() && !shown[i]) {
      ++left_out;
      continue;
    }
    // A few small things between others that are shown are not worth a row.
    if (left_out > kFew) {
      Mark rest{Tone::kMinor, marks[i - 1].at, "", "", "", "", nullptr};
      rest.label = "… " + std::to_string(left_out) + " more, not shown";
      chosen.push_back(rest);
    }
    left_out = 0;
    if (i < marks.size()) chosen.push_back(marks[i]);
  }
  return chosen;
}

class Drawing {
 public:
  Drawing(const Story& story, std::ostream& out)
      : story_(story), out_(out), marks_(Choose(story.marks)) {
    AddLane(story.gateway, "gateway");
    AddLane(story.provider, "identity provider");
    for (const Mark& mark : marks_) {
      AddLane(mark.from, "another host");
      AddLane(mark.to, "another host");
    }
  }

  void Draw() {
    std::string rows;
    int y = kTop;
    long long before = 0;
    for (const Mark& mark : marks_) {
      if (mark.at - before >= kLongWait) {
        rows += Break(y, mark.at - before);
        y += kRow;
      }
      before = mark.at;
      rows += Row(y, mark);
      y += kRow;
    }
    const int bottom = y;
    const std::string end = End(y);
    out_ << "<svg xmlns='http://www.w3.org/2000/svg' width='" << Width() << "' height='" << y
         << "' viewBox='0 0 " << Width() << ' ' << y
         << "' font-family='sans-serif' font-size='13'>\n<title>" << Escape(story_.title)
         << "</title>\n<rect width='100%' height='100%' fill='white'/>\n"
         << Text(kMargin, 26, Heading(), "#111", "font-size='17' font-weight='bold'")
         << Text(kMargin, 44, story_.title.substr(Heading().size() + 2), "#555");
    Lanes(bottom);
    out_ << rows << end << "</svg>\n";
  }

 private:
  struct Lane {
    std::string role;
    std::string host;
  };

  void AddLane(const std::string& host, const std::string& role) {
    if (host.empty() || lane_of_.count(host)) return;
    if (lanes_.size() + 1 < kMostLanes) {
      lanes_.push_back({role, host});
      lane_of_[host] = lanes_.size();
      return;
    }
    if (lanes_.size() < kMostLanes) lanes_.push_back({kOthers, ""});
    lane_of_[host] = lanes_.size();
  }

  // What of the title stands in the first line. The second begins with "process".
  std::string Heading() const { return story_.title.substr(0, story_.title.rfind(", process ")); }

  int Width() const {
    const int title = 2 * kMargin + static_cast<int>(Heading().size()) * kTitleLetter;
    const int lanes = kTimes + static_cast<int>(lanes_.size() + 1) * kLane + kMargin;
    return std::max({1000, title, lanes});
  }

  int X(size_t lane) const { return kTimes + 70 + static_cast<int>(lane) * kLane; }
  int X(const std::string& host) const {
    const auto found = lane_of_.find(host);
    return X(found == lane_of_.end() ? 0 : found->second);
  }

  static std::string Text(int x, int y, const std::string& text, const std::string& colour,
                          const std::string& more = "") {
    return "<text x='" + std::to_string(x) + "' y='" + std::to_string(y) + "' fill='" + colour +
           "' " + more + ">" + Escape(text) + "</text>\n";
  }

  void Lanes(int bottom) const {
    for (size_t lane = 0; lane <= lanes_.size(); ++lane) {
      const std::string x = std::to_string(X(lane));
      out_ << "<line x1='" << x << "' y1='96' x2='" << x << "' y2='" << bottom
           << "' stroke='#cfd6dd' stroke-width='2'/>\n";
      const std::string role = lane ? lanes_[lane - 1].role : "this program";
      const std::string host = lane ? lanes_[lane - 1].host : "its window";
      out_ << Text(X(lane), 70, role, "#111", "font-weight='bold' text-anchor='middle'")
           << Text(X(lane), 88,
                   host.size() > 32 ? host.substr(0, 15) + "…" + host.substr(host.size() - 15)
                                    : host,
                   "#555", "text-anchor='middle'");
    }
  }

  std::string Break(int y, long long wait) const {
    return "<rect x='0' y='" + std::to_string(y - 12) + "' width='" + std::to_string(Width()) +
           "' height='22' fill='#f3f3f3'/>\n" +
           Text(X(0) + 12, y + 4, "· · ·  " + Duration(wait) + " pass  · · ·", "#555",
                "font-style='italic'");
  }

  // A mark on a white ground, so that the lanes do not cross its words.
  std::string Label(int x, int y, const Mark& mark, const std::string& anchor) const {
    std::string label = Printable(mark.label, kLabelLength);
    const std::string weight =
        mark.tone == Tone::kBad || mark.tone == Tone::kGood || mark.tone == Tone::kQuestion
            ? " font-weight='bold'"
            : "";
    return Text(x, y, label, ColourOf(mark.tone).line,
                "text-anchor='" + anchor + "' stroke='white' stroke-width='4' " +
                    "paint-order='stroke'" + weight);
  }

  std::string Row(int y, const Mark& mark) const {
    std::string row = Text(kTimes - 10, y + 4, Duration(mark.at), "#777", "text-anchor='end'");
    const int from = X(mark.from);
    const int to = X(mark.to);
    const std::string colour = ColourOf(mark.tone).line;
    row += "<g><title>" + Escape(mark.text) + "</title>\n";
    if (from == to) {
      row += "<circle cx='" + std::to_string(from) + "' cy='" + std::to_string(y) +
             "' r='5' fill='" + colour + "'/>\n";
      // At the last lane there is more room on the left.
      const bool left = from > X(0) && from >= X(lanes_.size());
      row += Label(from + (left ? -12 : 12), y + 4, mark, left ? "end" : "start");
    } else {
      const int tip = to + (to > from ? -2 : 2);
      const int back = tip + (to > from ? -9 : 9);
      row += "<line x1='" + std::to_string(from) + "' y1='" + std::to_string(y + 6) + "' x2='" +
             std::to_string(tip) + "' y2='" + std::to_string(y + 6) + "' stroke='" + colour +
             "' stroke-width='1.6'/>\n<polygon fill='" + colour + "' points='" +
             std::to_string(tip) + "," + std::to_string(y + 6) + " " + std::to_string(back) + "," +
             std::to_string(y + 2) + " " + std::to_string(back) + "," + std::to_string(y + 10) +
             "'/>\n";
      row += Label(std::min(from, to) + 14, y, mark, "start");
    }
    return row + "</g>\n";
  }

  std::string End(int& y) const {
    const Ending& ending = story_.ending;
    const Colour colour = ColourOf(ending.tone == Ending::Tone::kGood  ? Tone::kGood
                                   : ending.tone == Ending::Tone::kBad ? Tone::kBad
                                                                       : Tone::kQuestion);
    const size_t length = static_cast<size_t>(Width() - 4 * kMargin) / 8;
    std::string words;
    int line = y + 34;
    const auto add = [&](const std::string& text, const std::string& more) {
      for (const std::string& part : Wrap(text, length)) {
        words += Text(2 * kMargin, line, part, "#111", more);
        line += kLine;
      }
    };
    words += Text(2 * kMargin, line, "The end: " + ending.verdict, colour.line,
                  "font-size='17' font-weight='bold'");
    line += kLine + 4;
    add(ending.what.text, "");
    if (!ending.why.empty()) {
      words += Text(2 * kMargin, line + 4, "Why", colour.line, "font-weight='bold'");
      line += kLine + 4;
    }
    for (const Sentence& why : ending.why) add("– " + why.text, "font-size='14'");
    if (!ending.more.empty()) add(ending.more, "fill-opacity='0.7' font-style='italic'");
    const std::string box =
        "<rect x='" + std::to_string(kMargin) + "' y='" + std::to_string(y + 6) + "' width='" +
        std::to_string(Width() - 2 * kMargin) + "' height='" + std::to_string(line - y - 8) +
        "' rx='6' fill='" + colour.fill + "' stroke='" + colour.line + "'/>\n";
    y = line + kMargin;
    return box + words;
  }

  const Story& story_;
  std::ostream& out_;
  const std::vector<Mark> marks_;
  std::vector<Lane> lanes_;  // without the program's
  std::map<std::string, size_t> lane_of_;
};

}  // namespace

void Draw(const Story& story, std::ostream& out) { Drawing(story, out).Draw(); }

}  // namespace log_reader
