#include "build/captured_output.h"

#include <algorithm>

#include "platform/file_system.h"

namespace quillon {
namespace {

constexpr size_t kPieceSize = 2000;

}  // namespace

void ForEachCapturedLine(std::string_view contents,
                         const std::function<void(std::string_view)>& line) {
  size_t position = 0;
  for (;;) {
    std::string_view piece = contents.substr(position, kPieceSize);
    size_t feed = piece.find('\n');
    if (feed == std::string_view::npos) {
      if (piece.size() == kPieceSize && position + piece.size() < contents.size()) {
        line(kNotATextFile);
      } else {
        line(piece);
      }
      return;
    }
    std::string_view text = piece.substr(0, feed);
    if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
    line(text);
    position += feed + 1;
  }
}

void PrintCapturedFile(FileSystem& fs, const std::string& header, const std::string& path,
                       const std::function<void(const std::string&)>& print) {
  std::string contents;
  bool readable = fs.ReadFile(path, &contents).ok();
  print(header);
  if (!readable) {
    print("File \"" + path + "\" can't be opened for reading");
    return;
  }
  ForEachCapturedLine(contents, [&](std::string_view line) { print(std::string(line)); });
}

void LiveLineReader::Poll(const std::function<void(const std::string&)>& print) {
  std::string contents;
  if (!fs_.ReadFile(path_, &contents).ok() || contents.size() <= consumed_) return;
  size_t end = contents.rfind('\n');
  if (end == std::string::npos || end < consumed_) return;
  std::string_view fresh(contents.data() + consumed_, end + 1 - consumed_);
  consumed_ = end + 1;
  while (!fresh.empty()) {
    size_t feed = fresh.find('\n');
    std::string_view line = fresh.substr(0, feed);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    print(std::string(line));
    fresh.remove_prefix(feed + 1);
  }
}

}  // namespace quillon
