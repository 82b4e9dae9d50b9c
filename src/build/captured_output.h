// Showing what a translator printed: the captured files as blocks of lines on
// the translator-output channel, and the lines an external make has written
// so far while it still runs.
#ifndef QUILLON_BUILD_CAPTURED_OUTPUT_H
#define QUILLON_BUILD_CAPTURED_OUTPUT_H

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace quillon {

class FileSystem;

inline constexpr const char* kNotATextFile =
    "*** ERROR *** This is not a text file or lines are too long!";

// Calls `line` for every line of `contents`, read in pieces of at most 2000
// bytes: a piece without a line feed that is not the end of the file is not
// text, and ends the walk with kNotATextFile. A carriage return before the
// line feed is dropped; the last line is reported even when empty.
void ForEachCapturedLine(std::string_view contents,
                         const std::function<void(std::string_view)>& line);

// Prints `header`, then the file's lines, or the can't-be-opened line.
void PrintCapturedFile(FileSystem& fs, const std::string& header, const std::string& path,
                       const std::function<void(const std::string&)>& print);

// Hands out the complete lines that a growing file has gained since the last
// call; what follows the last line feed waits for the next call.
class LiveLineReader {
 public:
  LiveLineReader(FileSystem& fs, std::string path) : fs_(fs), path_(std::move(path)) {}
  void Poll(const std::function<void(const std::string&)>& print);

 private:
  FileSystem& fs_;
  std::string path_;
  size_t consumed_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_BUILD_CAPTURED_OUTPUT_H
