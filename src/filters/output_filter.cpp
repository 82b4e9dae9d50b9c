#include "filters/output_filter.h"

#include <memory>
#include <string_view>
#include <utility>

#include "filters/parser_factory.h"
#include "model/project_target_set.h"

namespace quillon {
namespace {

constexpr int kCantOpenErrorOutput = 0;

// The captured output, read once: mapped where the file system can map it
// (a build's capture can run to hundreds of megabytes), else read whole.
class CapturedText {
 public:
  Status Open(FileSystem& fs, const std::string& path) {
    mapped_ = fs.MapReadOnly(path);
    if (mapped_) return Status::OK();
    return fs.ReadFile(path, &contents_);
  }

  std::string_view view() const {
    if (mapped_) return {mapped_->data(), mapped_->size()};
    return contents_;
  }

 private:
  std::unique_ptr<MappedFile> mapped_;
  std::string contents_;
};

// The platform's messages read "cannot open 'path': reason"; the message
// names the file already, so only the reason goes into the parentheses.
std::string ReasonOf(const Status& status) {
  const std::string& message = status.message();
  const size_t quote = message.rfind("': ");
  return quote == std::string::npos ? message : message.substr(quote + 3);
}

}  // namespace

COutputFilter::COutputFilter(std::string filter_name, FileSystem& fs, MessageListSink& sink,
                             CMessageTable& table)
    : filter_name_(std::move(filter_name)), fs_(fs), sink_(sink), table_(table) {}

bool COutputFilter::FilterCompilerOutput(const std::string& file, const std::string& captured) {
  return Filter(file, captured, kCompilerMessage);
}

bool COutputFilter::FilterAssemblerOutput(const std::string& file, const std::string& captured) {
  return Filter(file, captured, kAssemblerMessage);
}

bool COutputFilter::FilterLinkerOutput(const std::string& captured) {
  return Filter(std::string(), captured, kLinkerMessage);
}

bool COutputFilter::Filter(const std::string& file, const std::string& captured, int kind) {
  if (filter_name_ == kNoFilter) return true;
  if (kind != kLinkerMessage) sink_.SetCurrentFile(file);
  std::unique_ptr<COutputParser> parser = MakeParser(filter_name_);
  if (!parser) return true;
  parser->set_captured_file(captured);
  parser->set_project_file(file);
  Run(*parser, kind, false);
  return true;
}

bool COutputFilter::Run(COutputParser& parser, int kind, bool report) {
  if (kind != kCompilerMessage && kind != kAssemblerMessage && kind != kLinkerMessage) {
    return false;
  }
  CapturedText text;
  const Status status = text.Open(fs_, parser.captured_file());
  if (!status.ok()) {
    if (report) {
      table_.ReportMessage(kCantOpenErrorOutput, parser.captured_file().c_str(), true,
                           ReasonOf(status).c_str());
    }
    return false;
  }
  parser.Attach(text.view(), &sink_);
  switch (kind) {
    case kCompilerMessage:
      parser.Compiler();
      break;
    case kAssemblerMessage:
      parser.Assembler();
      break;
    default:
      parser.Linker();
      break;
  }
  parser.Attach({}, nullptr);  // the text goes away with this call
  return true;
}

}  // namespace quillon
