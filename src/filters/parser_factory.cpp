#include "filters/parser_factory.h"

namespace quillon {

// Each family's file defines its maker; parser_registry.def names them.
#define QUILLON_FILTER_PARSER(name, maker) std::unique_ptr<COutputParser> maker();
#include "filters/parser_registry.def"
#undef QUILLON_FILTER_PARSER

namespace {

struct Registration {
  const char* filter_name;
  std::unique_ptr<COutputParser> (*make)();
};

constexpr Registration kRegistrations[] = {
#define QUILLON_FILTER_PARSER(name, maker) {name, &maker},
#include "filters/parser_registry.def"
#undef QUILLON_FILTER_PARSER
};

}  // namespace

std::unique_ptr<COutputParser> MakeParser(std::string_view filter_name) {
  for (const Registration& registration : kRegistrations) {
    if (filter_name == registration.filter_name) return registration.make();
  }
  return nullptr;
}

std::vector<std::string_view> ParserFilterNames() {
  std::vector<std::string_view> names;
  for (const Registration& registration : kRegistrations) names.push_back(registration.filter_name);
  return names;
}

}  // namespace quillon
