#include "app/cli/terminal_layout.h"

#include <algorithm>

#include "app/cli/terminal_text.h"
#include "app/cli/terminal_width.h"

namespace tarnwick {
namespace {

constexpr std::string_view plain = "\x1B[0m";

std::string_view codeOf(Tint tint) {
  switch (tint) {
    case Tint::none:
      break;
    case Tint::heading:
      return "\x1B[1;36m";
    case Tint::remedy:
      return "\x1B[32m";
  }
  return "";
}

// Puts the words of one line after the other, in as many rows as they take.
class Rows {
 public:
  Rows(std::string& text, const TerminalLook& look, std::size_t indent)
      : text_(text), look_(look), indent_(indent), width_(indent) {
    text_.append(indent, ' ');
  }

  // A word and the blanks before it.
  void add(std::size_t blanks, std::string_view word, Tint tint) {
    const std::size_t cells = cellWidth(word);
    if (!isFresh_ && look_.columns && width_ + blanks + cells > *look_.columns) {
      end();
      text_.append("\n").append(indent_, ' ');
      width_ = indent_;
      blanks = 0;
    }
    text_.append(blanks, ' ');
    use(tint);
    text_ += word;
    width_ += blanks + cells;
    isFresh_ = false;
  }

  // No colour reaches into the next row.
  void end() { use(Tint::none); }

 private:
  void use(Tint tint) {
    if (look_.colour && tint != tint_) text_ += tint == Tint::none ? plain : codeOf(tint);
    tint_ = tint;
  }

  std::string& text_;
  const TerminalLook& look_;
  const std::size_t indent_;
  std::size_t width_;
  bool isFresh_ = true;  // no word yet in all the line
  Tint tint_ = Tint::none;
};

void addWords(Rows& rows, std::string_view text, Tint tint) {
  while (!text.empty()) {
    const std::size_t blanks = std::min(text.find_first_not_of(' '), text.size());
    const std::size_t end = std::min(text.find(' ', blanks), text.size());
    rows.add(blanks, text.substr(blanks, end - blanks), tint);
    text.remove_prefix(end);
  }
}

}  // namespace

bool wantsColour(const std::optional<std::string>& noColour, const std::optional<std::string>& terminal) {
  if (noColour && !noColour->empty()) return false;
  return terminal && !terminal->empty() && *terminal != "dumb";
}

std::string laidOut(const std::vector<TintedLine>& lines, const TerminalLook& look) {
  std::string text;
  for (const TintedLine& line : lines) {
    const std::string_view whole = line.text;
    const std::size_t split =
        line.tint == Tint::none ? whole.size() : std::min(line.tintedFrom, whole.size());
    const std::string before = harmlessInLine(whole.substr(0, split));
    const std::string tinted = harmlessInLine(whole.substr(split));
    const std::size_t indent = std::min(before.find_first_not_of(' '), before.size());
    Rows rows(text, look, indent);
    addWords(rows, std::string_view(before).substr(indent), Tint::none);
    addWords(rows, tinted, line.tint);
    rows.end();
    text += '\n';
  }
  return text;
}

}  // namespace tarnwick
