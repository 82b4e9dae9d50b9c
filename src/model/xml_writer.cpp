#include "model/xml_writer.h"

#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t kMaxEscaped = 16384;
// Text files end their lines as the host's editors expect.
constexpr std::string_view kLineEnd = kPathSeparator == '\\' ? "\r\n" : "\n";

}  // namespace

std::string XmlEscape(std::string_view text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '"':
        out += "&quot";
        break;
      case '&':
        out += "&amp";
        break;
      case '\'':
        out += "&apos";
        break;
      case '<':
        out += "&lt";
        break;
      case '>':
        out += "&gt";
        break;
      default:
        out += c;
    }
    if (out.size() > kMaxEscaped) break;
  }
  return out;
}

bool CXmlWriter::Open(const std::string& path) {
  std::unique_ptr<WritableFile> file;
  if (!fs_.NewWritableFile(path, &file).ok()) return false;
  file_ = std::move(file);
  status_ = Status::OK();
  current_ = nullptr;
  depth_ = 0;
  Line("<?xml version=\"1.0\" standalone=\"yes\"?>", 0);
  return true;
}

void CXmlWriter::Line(const std::string& text, int depth) {
  if (!file_ || !status_.ok()) return;
  std::string line = indent_ < 0 ? std::string(depth, '\t') : std::string(depth * indent_, ' ');
  line += text;
  line += kLineEnd;
  status_ = file_->Write(line.data(), line.size());
}

void CXmlWriter::Comment(std::string_view text) { Line("<!-- " + std::string(text) + "-->", 0); }

const char* CXmlWriter::BeginElement(const char* name, const char* attribute,
                                     const std::string* value) {
  std::string line = "<" + XmlEscape(name);
  if (value != nullptr) {
    line += " " + XmlEscape(attribute ? attribute : "") + "=\"" + XmlEscape(*value) + "\"";
  }
  Line(line + ">", depth_);
  const char* previous = current_;
  current_ = name;
  ++depth_;
  return previous;
}

void CXmlWriter::EndElement(const char* previous) {
  if (depth_ > 0) --depth_;
  Line("</" + XmlEscape(current_ ? current_ : "") + ">", depth_);
  current_ = previous;
}

void CXmlWriter::LeafElement(const char* name, std::string_view text) {
  const std::string escaped = XmlEscape(name);
  Line("<" + escaped + ">" + XmlEscape(text) + "</" + escaped + ">", depth_);
}

Status CXmlWriter::Close() {
  if (!file_) return status_;
  Status closed = file_->Close();
  file_.reset();
  return status_.ok() ? closed : status_;
}

}  // namespace quillon
