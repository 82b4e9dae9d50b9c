// Reads a translator's captured output through the parser of the project's
// filter and sends what it finds to a message-list sink.
//
// Used on the thread that runs the translators, after the translator has
// ended; knows nothing of the make driver, which hands over the file names.
#ifndef QUILLON_FILTERS_OUTPUT_FILTER_H
#define QUILLON_FILTERS_OUTPUT_FILTER_H

#include <string>

#include "build/message_table.h"
#include "filters/message_list.h"
#include "filters/output_parser.h"
#include "platform/file_system.h"

namespace quillon {

class COutputFilter {
 public:
  // `filter_name` is the project's FilterName. The table raises message 0
  // when Run is asked to report an unreadable captured file.
  COutputFilter(std::string filter_name, FileSystem& fs, MessageListSink& sink,
                CMessageTable& table);

  // Filter the captured output of one translation of project file `file`
  // (full path) or of the link. Each answers true: an unknown filter name
  // or an unreadable captured file filters nothing, silently; "No filter"
  // does nothing at all.
  bool FilterCompilerOutput(const std::string& file, const std::string& captured);
  bool FilterAssemblerOutput(const std::string& file, const std::string& captured);
  bool FilterLinkerOutput(const std::string& captured);

  // Runs the operation of `parser` for `kind` (kCompilerMessage,
  // kAssemblerMessage or kLinkerMessage) over the file parser.captured_file().
  // False when that file cannot be read (raising message 0 first when
  // `report` is set) or the kind is none of the three.
  bool Run(COutputParser& parser, int kind, bool report);

  const std::string& filter_name() const { return filter_name_; }

 private:
  bool Filter(const std::string& file, const std::string& captured, int kind);

  std::string filter_name_;
  FileSystem& fs_;
  MessageListSink& sink_;
  CMessageTable& table_;
};

}  // namespace quillon

#endif  // QUILLON_FILTERS_OUTPUT_FILTER_H
