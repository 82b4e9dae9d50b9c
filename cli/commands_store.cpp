// qpm store dump: the raw tree of any store file.
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/cli.h"
#include "cli/text_format.h"
#include "interface/host_api.h"

namespace quillon::qpm {
namespace {

struct StoreArgs {
  std::string file;
};

const char* TypeText(host::StoreType type) {
  switch (type) {
    case host::StoreType::kKey:
      return "key";
    case host::StoreType::kInt:
      return "int";
    case host::StoreType::kInt64:
      return "int64";
    case host::StoreType::kString:
      return "string";
    case host::StoreType::kList:
      return "list";
    case host::StoreType::kBuffer:
      return "buffer";
    case host::StoreType::kWords:
      return "words";
  }
  return "unknown";
}

std::string HexBytes(std::string_view bytes) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string out = "<";
  for (size_t i = 0; i < bytes.size(); ++i) {
    auto byte = static_cast<unsigned char>(bytes[i]);
    if (i > 0) out += ' ';
    out += kHex[byte >> 4];
    out += kHex[byte & 15];
  }
  return out + ">";
}

std::string Numbers(const std::vector<int64_t>& numbers, const char* separator) {
  std::string out;
  for (size_t i = 0; i < numbers.size(); ++i) {
    out += (i > 0 ? separator : "") + std::to_string(numbers[i]);
  }
  return out;
}

// The value as the line's last field; keys have none.
std::string ValueText(const host::StoreEntry& entry) {
  switch (entry.type) {
    case host::StoreType::kKey:
      break;
    case host::StoreType::kInt:
    case host::StoreType::kInt64:
      return Numbers(entry.numbers, " ");
    case host::StoreType::kWords:
      return "[" + Numbers(entry.numbers, ", ") + "]";
    case host::StoreType::kString:
      return Quote(entry.texts[0]);
    case host::StoreType::kBuffer:
      return HexBytes(entry.texts[0]);
    case host::StoreType::kList:
      return QuoteList(entry.texts);
  }
  return std::string();
}

// One line per node: indent by depth, type, name, value.
Status DumpStore(const StoreArgs& args, std::ostream& out) {
  return host::ReadStore(args.file, [&](const host::StoreEntry& entry) {
    out << std::string(2 * entry.depth, ' ') << TypeText(entry.type) << ' '
        << QuoteIfNeeded(entry.name);
    if (entry.type != host::StoreType::kKey) out << ' ' << ValueText(entry);
    out << '\n';
  });
}

}  // namespace

void AddStoreCommands(Cli& cli) {
  CLI::App* group = cli.AddGroup("store", "Look into store files");
  auto args = std::make_shared<StoreArgs>();
  CLI::App* command = cli.AddCommand(
      *group, "dump",
      "Print every node of a store file, one a line: type, name, value; two spaces of indent "
      "per depth, children in stored (sorted) order",
      [args, &cli] { return DumpStore(*args, cli.out()); });
  command->add_option("STOREFILE", args->file, "any store file, e.g. a .qpj or .qpj.user")
      ->required();
}

}  // namespace quillon::qpm
