// qpm store dump: the raw tree of any store file.
#include <memory>
#include <ostream>
#include <string>

#include "cli/cli.h"
#include "cli/project_io.h"
#include "cli/text_format.h"

namespace quillon::qpm {
namespace {

struct StoreArgs {
  std::string file;
};

const char* TypeText(uint8_t type) {
  switch (type) {
    case kRegKey:
      return "key";
    case kRegInt:
      return "int";
    case kRegInt64:
      return "int64";
    case kRegString:
      return "string";
    case kRegStringList:
      return "list";
    case kRegBuffer:
      return "buffer";
    case kRegWords:
      return "words";
  }
  return "unknown";
}

std::string HexBytes(const std::string& bytes) {
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

std::string WordList(const std::vector<uint32_t>& words) {
  std::string out = "[";
  for (size_t i = 0; i < words.size(); ++i) out += (i > 0 ? ", " : "") + std::to_string(words[i]);
  return out + "]";
}

// The value as the line's last field; keys have none.
std::string ValueText(const RegistryNode& node) {
  switch (node.type) {
    case kRegInt:
      return std::to_string(node.int_value);
    case kRegInt64:
      return std::to_string(node.words64[0]) + " " + std::to_string(node.words64[1]);
    case kRegString:
      return Quote(node.string_value);
    case kRegStringList:
      return QuoteList(node.list_value);
    case kRegBuffer:
      return HexBytes(node.string_value);
    case kRegWords:
      return WordList(node.words_value);
  }
  return std::string();
}

// Depth first in stored order, without recursion: a store may nest deeply.
void DumpTree(const RegistryNode& root, std::ostream& out) {
  std::vector<std::pair<const RegistryNode*, int>> pending{{&root, 0}};
  while (!pending.empty()) {
    auto [node, depth] = pending.back();
    pending.pop_back();
    out << std::string(2 * depth, ' ') << TypeText(node->type) << ' ' << QuoteIfNeeded(node->name);
    if (node->type != kRegKey) out << ' ' << ValueText(*node);
    out << '\n';
    for (size_t i = node->child_count(); i-- > 0;) {
      pending.emplace_back((*node->children)[i].get(), depth + 1);
    }
  }
}

Status DumpStore(const StoreArgs& args, std::ostream& out) {
  std::string bytes;
  std::unique_ptr<CSettingsRegistry> store;
  Status status = ReadStoreFile(args.file, nullptr, &bytes, &store);
  if (status.ok()) DumpTree(store->root(), out);
  return status;
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
