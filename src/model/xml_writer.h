// A minimal line-oriented XML writer: one element per line, nested by
// depth. The entities it writes carry no semicolon ("&amp", "&lt"): the
// tools that read our exports expect exactly these forms.
#ifndef QUILLON_MODEL_XML_WRITER_H
#define QUILLON_MODEL_XML_WRITER_H

#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace quillon {

// Escapes `"&'<>`; stops copying once the result is longer than 16384
// characters, so a result holds at most that plus one entity.
std::string XmlEscape(std::string_view text);

class CXmlWriter {
 public:
  // `indent` spaces per level, or one tab per level when negative.
  CXmlWriter(FileSystem& fs, int indent) : fs_(fs), indent_(indent) {}

  // Creates or truncates `path` and writes the declaration line. False,
  // with nothing written, when the file cannot be created.
  bool Open(const std::string& path);
  // Written as given, unescaped.
  void Comment(std::string_view text);
  // One opening line; the attribute only when `value` is given. Answers the
  // element that was current before, for EndElement.
  const char* BeginElement(const char* name, const char* attribute = nullptr,
                           const std::string* value = nullptr);
  void EndElement(const char* previous);
  void LeafElement(const char* name, std::string_view text);
  // The first failure of any write, or of closing.
  Status Close();

 private:
  void Line(const std::string& text, int depth);

  FileSystem& fs_;
  int indent_;
  std::unique_ptr<WritableFile> file_;
  Status status_;
  const char* current_ = nullptr;
  int depth_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_XML_WRITER_H
